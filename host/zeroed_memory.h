#pragma once

#include <cstddef>

namespace host {

/// Memory of zeros for one value: small pieces from the thread's pool, large ones from the library,
/// which has them from the system as zeros and need not write them; their pages are provided at
/// once.
struct ZeroedMemory {
    /// Raises std::bad_alloc.
    [[nodiscard]] static void* allocate(std::size_t size);
    /// Gives back what was allocated with this size.
    static void release(void* memory, std::size_t size) noexcept;
};

}  // namespace host
