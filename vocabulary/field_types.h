#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// The field types of directory entries: TIFF 6.0, the technical notes of 1995 (IFD) and BigTIFF
// (the last three).

namespace corvinex {

struct FieldType {
    std::string_view name;   ///< as messages tell it, empty for a code that is no type
    std::uint8_t width = 0;  ///< bytes of one element
    bool isKnown = false;    ///< whether an entry may state the code
};

/// By code.
inline constexpr std::array<FieldType, 19> fieldTypes{{
    {"TIFF_NOTYPE", 0, true},
    {"TIFF_BYTE", 1, true},
    {"TIFF_ASCII", 1, true},
    {"TIFF_SHORT", 2, true},
    {"TIFF_LONG", 4, true},
    {"TIFF_RATIONAL", 8, true},
    {"TIFF_SBYTE", 1, true},
    {"TIFF_UNDEFINED", 1, true},
    {"TIFF_SSHORT", 2, true},
    {"TIFF_SLONG", 4, true},
    {"TIFF_SRATIONAL", 8, true},
    {"TIFF_FLOAT", 4, true},
    {"TIFF_DOUBLE", 8, true},
    {"TIFF_IFD", 4, true},
    {},  // 14
    {},  // 15
    {"TIFF_LONG8", 8, true},
    {"TIFF_SLONG8", 8, true},
    {"TIFF_IFD8", 8, true},
}};

/// Whether a type code of a directory entry is a type or 0 (no type): 0 to 13 and 16 to 18.
[[nodiscard]] constexpr bool isKnownTypeCode(std::uint32_t code) noexcept {
    return code < fieldTypes.size() && fieldTypes[code].isKnown;
}

/// Bytes of one element of a known type: 1, 2, 4 or 8, and 0 for no type.
[[nodiscard]] constexpr std::uint64_t getElementWidth(std::uint32_t code) noexcept {
    return fieldTypes[code].width;
}

}  // namespace corvinex
