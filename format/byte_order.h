#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <span>

namespace corvinex {

/// Reverses the bytes of each of count contiguous elements in place when swap is true; elements of
/// 0 or 1 byte stay as they are. Every multi-byte value taken from a file passes through here.
void raw2native(void* data, unsigned long elementSize, unsigned long count, bool swap);

/// Raises std::out_of_range.
[[noreturn]] void refuseOutside();

/// The native value of type T that starts at a byte position in bytes. Raises std::out_of_range
/// when it does not lie inside of them.
template <class T>
[[nodiscard]] constexpr T loadNative(std::span<const unsigned char> bytes, std::size_t position) {
    if (position > bytes.size() || bytes.size() - position < sizeof(T)) {
        refuseOutside();
    }
    std::array<unsigned char, sizeof(T)> element{};
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(position), sizeof(T), element.begin());
    return std::bit_cast<T>(element);
}

/// The same for a value still in the file's byte order.
template <class T>
[[nodiscard]] constexpr T loadFromFile(std::span<const unsigned char> bytes, std::size_t position,
                                       bool swap) {
    auto element =
        std::bit_cast<std::array<unsigned char, sizeof(T)>>(loadNative<T>(bytes, position));
    if (swap) {
        std::reverse(element.begin(), element.end());
    }
    return std::bit_cast<T>(element);
}

}  // namespace corvinex
