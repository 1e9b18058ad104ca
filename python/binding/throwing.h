#pragma once

#include <exception>

namespace python {

/// Has the system give the calling thread the memory that the first exception of a thread needs.
/// The loader ends the process where there is none left when it is thrown.
inline void prepareToThrow() noexcept {
    // The count lies in that memory. A volatile object keeps the compiler from leaving it out.
    [[maybe_unused]] const volatile int count = std::uncaught_exceptions();
}

}  // namespace python
