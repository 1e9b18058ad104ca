#pragma once

#include <cstdint>
#include <span>

// The published tag names as constant data, one row a tag, in registry order. A name serves as a
// field name of the result, so its spelling is fixed ("Width" for 256, "ICCProfileOffset" for
// 34675). Nothing here depends on the rest of the module.

namespace corvinex {

struct TagName {
    std::uint16_t number;
    const char* name;
};

/// TIFF, TIFF extension, DNG, GeoTIFF, private and EXIF tags: 320 rows, 347 listed twice.
std::span<const TagName> primaryTagTable() noexcept;
/// GPS tags 0 to 30.
std::span<const TagName> gpsTagTable() noexcept;
/// Interoperability tags.
std::span<const TagName> interopTagTable() noexcept;

}  // namespace corvinex
