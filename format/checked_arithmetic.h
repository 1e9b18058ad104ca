#pragma once

#include <cstdint>
#include <limits>

namespace corvinex {

// Sums and products of numbers taken from a file. A result that would pass 2^64 - 1 is held at that
// number, which lies past the end of every file and beyond every seek.

inline constexpr std::uint64_t saturated = std::numeric_limits<std::uint64_t>::max();

[[nodiscard]] constexpr std::uint64_t saturatingAdd(std::uint64_t a, std::uint64_t b) noexcept {
    return a > saturated - b ? saturated : a + b;
}

[[nodiscard]] constexpr std::uint64_t saturatingMultiply(std::uint64_t a,
                                                         std::uint64_t b) noexcept {
    return b != 0 && a > saturated / b ? saturated : a * b;
}

/// Whether length bytes from position lie inside size bytes.
[[nodiscard]] constexpr bool liesWithin(std::uint64_t position, std::uint64_t length,
                                        std::uint64_t size) noexcept {
    return length <= size && position <= size - length;
}

}  // namespace corvinex
