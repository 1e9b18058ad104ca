#pragma once

#include <dlfcn.h>

#include <stdexcept>
#include <string_view>

// One operation of the host misbehaves: this program's own definitions stand before those of the
// host's library, and pass on what the fault does not touch.

namespace test {

/// The fault that the program was asked for.
inline std::string_view chosenFault;

inline bool isFault(std::string_view name) {
    return chosenFault == name;
}

/// The host's operation behind this program's own definition of the same.
template <auto* own>
decltype(own) hosts() {
    static const decltype(own) next = [] {
        Dl_info information{};
        void* symbol = nullptr;
        if (::dladdr(reinterpret_cast<void*>(own), &information) != 0 &&
            information.dli_sname != nullptr) {
            symbol = ::dlsym(RTLD_NEXT, information.dli_sname);
        }
        if (symbol == nullptr) {
            throw std::logic_error("the host does not define the operation");
        }
        return reinterpret_cast<decltype(own)>(symbol);
    }();
    return next;
}

}  // namespace test
