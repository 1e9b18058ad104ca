#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "format/byte_order.h"

namespace corvinex {

// The header that a TIFF structure begins with (TIFF 6.0, BigTIFF): the byte order, the version,
// in BigTIFF the size of offsets and a reserved field, and the offset of the first directory.
// Positions are in bytes from the header's start.

namespace tiff_header {

inline constexpr std::size_t versionPosition = 2;
inline constexpr std::uint16_t classicVersion = 42;
inline constexpr std::uint16_t bigVersion = 43;

inline constexpr std::size_t classicFirstOffsetPosition = 4;
inline constexpr std::size_t classicSize = 8;

inline constexpr std::size_t bigOffsetSizePosition = 4;
inline constexpr std::size_t bigReservedPosition = 6;
inline constexpr std::size_t bigFirstOffsetPosition = 8;
inline constexpr std::size_t bigSize = 16;

}  // namespace tiff_header

/// The order that "II" or "MM" tells; nothing for other bytes.
[[nodiscard]] constexpr std::optional<std::endian> findByteOrder(
    std::span<const unsigned char, 2> mark) noexcept {
    if (mark[0] != mark[1]) {
        return std::nullopt;
    }
    if (mark[0] == 'I') {
        return std::endian::little;
    }
    return mark[0] == 'M' ? std::optional(std::endian::big) : std::nullopt;
}

/// The version that stands behind a right byte-order mark, in that order; nothing without one.
[[nodiscard]] constexpr std::optional<std::uint16_t> findTiffVersion(
    std::span<const unsigned char, 4> start) {
    const std::optional<std::endian> order = findByteOrder(start.first<2>());
    if (!order) {
        return std::nullopt;
    }
    return loadFromFile<std::uint16_t>(start, tiff_header::versionPosition,
                                       *order != std::endian::native);
}

}  // namespace corvinex
