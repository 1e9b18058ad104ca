#pragma once

#include <cstdint>
#include <cstdio>

namespace bench {

/// How much a program has read, over all files and rounds. A value is an entry that does not point
/// to a further directory, whatever its count of elements.
struct Totals {
    std::uint64_t directories = 0;
    std::uint64_t values = 0;

    void print() const {
        std::printf("directories %llu\nvalues %llu\n", static_cast<unsigned long long>(directories),
                    static_cast<unsigned long long>(values));
    }
};

/// Makes the compiler take the memory at a pointer for read, so that it keeps what writes there.
inline void keep(const void* memory) noexcept {
    asm volatile("" : : "r"(memory) : "memory");
}

}  // namespace bench
