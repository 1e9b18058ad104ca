#pragma once

#include <cstdint>
#include <cstdio>

namespace bench {

/// What a program has read, over all files and rounds. A value is an entry that is no pointer to a
/// further directory, whatever its count of elements.
struct Totals {
    std::uint64_t directories = 0;
    std::uint64_t values = 0;

    void print() const {
        std::printf("directories %llu\nvalues %llu\n", static_cast<unsigned long long>(directories),
                    static_cast<unsigned long long>(values));
    }
};

/// Makes the compiler believe that the memory at a pointer is read here.
inline void keep(const void* memory) noexcept {
    asm volatile("" : : "r"(memory) : "memory");
}

}  // namespace bench
