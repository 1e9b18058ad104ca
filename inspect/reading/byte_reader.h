#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

// Blocks of other standards inside a value: all of them keep the high byte first. Nothing is read
// past their end.

namespace corvinex::inspect::reading {

using Bytes = std::span<const std::uint8_t>;

/// The bytes at a place, or nothing when not all of them are there.
[[nodiscard]] constexpr std::optional<Bytes> bytesAt(Bytes block, std::size_t place,
                                                     std::size_t length) noexcept {
    if (place > block.size() || length > block.size() - place) {
        return std::nullopt;
    }
    return block.subspan(place, length);
}

/// The number in so many bytes at a place, at most four.
[[nodiscard]] constexpr std::optional<std::uint32_t> numberIn(Bytes block, std::size_t place,
                                                              std::size_t length) noexcept {
    const auto bytes = bytesAt(block, place, length);
    if (!bytes || length > sizeof(std::uint32_t)) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    for (const std::uint8_t byte : *bytes) {
        number = number << 8U | byte;
    }
    return number;
}

}  // namespace corvinex::inspect::reading
