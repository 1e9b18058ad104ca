#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "vocabulary/field_types.h"

// Which field types TIFF 6.0 and its extensions allow a tag.

namespace corvinex {

/// A set of field types: bit i stands for code i.
using TypeSet = std::uint32_t;

/// The types that a text names, as reports list them: "TIFF_SHORT, TIFF_LONG".
constexpr TypeSet typesNamedIn(std::string_view text) {
    constexpr std::string_view separator = ", ";
    TypeSet types = 0;
    while (!text.empty()) {
        const std::string_view name = text.substr(0, text.find(separator));
        std::size_t code = 0;
        while (fieldTypes.at(code).name != name) {
            ++code;
        }
        types |= TypeSet{1} << code;
        text.remove_prefix(name.size() < text.size() ? name.size() + separator.size()
                                                     : name.size());
    }
    return types;
}

/// Tags that are allowed the same types.
struct TypeGroup {
    /// Opens the key under which a warning is issued once for a file.
    std::string_view word;
    /// The types as the warning tells them, empty for any.
    std::string_view told;
    TypeSet allowed = told.empty() ? ~TypeSet{0} : typesNamedIn(told);

    [[nodiscard]] constexpr bool allowsSeveral() const noexcept {
        return std::popcount(allowed) > 1;
    }
};

enum class TypeGroupId : std::uint8_t {
    Any,
    Long,
    Short,
    ShortOrLong,
    Ascii,
    Offset,
    Rational,
    Directory,
    ByteOrShort,
    Byte,
    Undefined,
};

// The words are fixed texts, and most fit one tag of their group only: "YCbCrPosition" opens the
// key of every tag that must be SHORT. They are kept on purpose. They decide which warnings of a
// file count as the same, so whoever counts warnings would notice another word that joined or split
// keys.
inline constexpr std::array<TypeGroup, 11> typeGroups{{
    {"", ""},
    {"JpegActTables", "TIFF_LONG"},
    {"YCbCrPosition", "TIFF_SHORT"},
    {"ConsecutiveBadFaxlines", "TIFF_SHORT, TIFF_LONG"},
    {"Copyright", "TIFF_ASCII"},
    {"TileOffsets", "TIFF_SHORT, TIFF_LONG, TIFF_LONG8"},
    {"ReferenceBlackWhite", "TIFF_RATIONAL"},
    {"SubIFD", "TIFF_IFD, TIFF_LONG, TIFF_IFD8"},
    {"Dotrange", "TIFF_BYTE, TIFF_SHORT"},
    {"XMLPacket", "TIFF_BYTE"},
    {"JpegTables", "TIFF_UNDEFINED"},
}};

[[nodiscard]] constexpr const TypeGroup& getTypeGroup(TypeGroupId id) noexcept {
    return typeGroups[static_cast<std::size_t>(id)];
}

}  // namespace corvinex
