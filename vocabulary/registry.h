#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "corvinex/directory_kind.h"
#include "corvinex/value.h"

// What the published standards and the makers of private tags say of each tag: its name, what it
// may hold and how a person wants it read. Constant data; the names of the module's result are
// another table (tag_table.h).

namespace corvinex::registry {

/// The field types that a standard allows for a tag.
class FieldTypes {
  public:
    constexpr FieldTypes() = default;
    // A single type is a set as well, so that a row may name one type or several.
    // NOLINTNEXTLINE(google-explicit-constructor)
    constexpr FieldTypes(inspect::FieldType type)
        : bits_(std::uint32_t{1} << bitOf(static_cast<std::uint16_t>(type))) {}

    /// True when no source states the types.
    [[nodiscard]] constexpr bool isEmpty() const noexcept { return bits_ == 0; }
    /// Whether the type with this code is allowed. Unknown codes are not.
    [[nodiscard]] constexpr bool contains(std::uint16_t typeCode) const noexcept {
        const bool isKnown = (typeCode >= 1 && typeCode <= lastPlainCode) || typeCode == utf8Code;
        return isKnown && (bits_ >> bitOf(typeCode) & 1) != 0;
    }
    friend constexpr FieldTypes operator|(FieldTypes left, FieldTypes right) noexcept {
        left.bits_ |= right.bits_;
        return left;
    }

  private:
    static constexpr std::uint16_t lastPlainCode = 18;
    static constexpr std::uint16_t utf8Code = 129;
    static constexpr unsigned bitOf(std::uint16_t typeCode) noexcept {
        return typeCode == utf8Code ? 31 : typeCode;
    }

    std::uint32_t bits_ = 0;
};

constexpr FieldTypes operator|(inspect::FieldType left, inspect::FieldType right) noexcept {
    return FieldTypes(left) | FieldTypes(right);
}

/// How a person wants a value read.
enum class Encoding : std::uint8_t {
    Number,
    Text,
    Code,             // enumerated values, with words
    Flags,            // bits to be combined, with words
    Offsets,          // positions or byte counts
    Pointer,          // position of a directory
    Opaque,           // private structure, digest or table
    RationalUnit,     // a number with a unit
    ExposureTime,     // seconds
    FNumber,          // ratio of focal length and aperture
    LensRange,        // shortest and longest focal length, lowest f-number at each
    VersionBytes,     // one number a byte
    TextInUndefined,  // ASCII digits in raw bytes
    Comment,          // text behind 8 bytes that name its character set
    Utf16Bytes,       // UTF-16, low byte first, in bytes
    DateTime,         // YYYY:MM:DD HH:MM:SS
    Date,             // YYYY:MM:DD
    GpsCoordinate,    // degrees, minutes, seconds
    GpsTime,          // hours, minutes, seconds of UTC
    GeoKeys,          // the GeoTIFF key directory and its parameters
    GdalMetadata,     // XML of items
    Xmp,
    Icc,
    Iptc,
    PhotoshopIrb,
    MakerNote,
};

/// A whole value and its word.
struct ValueWord {
    std::uint32_t code;
    std::string_view word;
};
/// A text and its word.
struct TextWord {
    std::string_view code;
    std::string_view word;
};
/// The word of the bits low to high when they hold this value. A single bit holds 1.
struct BitWord {
    std::uint8_t low;
    std::uint8_t high;
    std::uint32_t value;
    std::string_view word;
};

/// The words of one tag's values. A value is looked up whole first, then by its bits.
struct Words {
    std::span<const ValueWord> values = {};
    std::span<const BitWord> bits = {};
    std::span<const TextWord> texts = {};

    /// The word for the whole value.
    [[nodiscard]] std::optional<std::string_view> find(std::uint64_t code) const noexcept;
    /// The word for a text without its closing zero.
    [[nodiscard]] std::optional<std::string_view> find(std::string_view code) const noexcept;
};

/// One tag in one kind of directory.
struct TagFact {
    std::uint16_t number;
    /// The standard's spelling as an identifier.
    std::string_view name;
    FieldTypes types;
    Encoding encoding;
    /// The standard or the owner ("private:OWNER") that defines it.
    std::string_view source;
    /// How many values: a number, "N" (any), "2..4", "1 or N", or an expression over other tags.
    std::string_view count;
    /// Empty, a unit ("s", "px"), or "by X" where tag X holds the unit.
    std::string_view unit = {};
    /// Null for tags without words.
    const Words* words = nullptr;
};

/// Tables by kind of directory, ascending by number. Main and sub directories share one.
[[nodiscard]] std::span<const TagFact> tagsOf(inspect::DirectoryKind kind) noexcept;

/// The row of a tag in a directory of a kind, or null. Main and exif fall back on each other,
/// because writers put tags of one into the other; gps and interop have numbers of their own.
[[nodiscard]] const TagFact* findTag(inspect::DirectoryKind kind, std::uint16_t number) noexcept;

/// Whether a numeric tag holds exactly one value, so that it is given as a scalar. The photographic
/// tags of a main directory hold there what they hold in an exif directory.
[[nodiscard]] bool isScalar(inspect::DirectoryKind kind, std::uint16_t number) noexcept;

/// One key of a GeoTIFF key directory.
struct GeoKey {
    std::uint16_t number;
    std::string_view name;
    /// Short, Double or Ascii.
    inspect::FieldType type;
    std::string_view meaning;
    /// Null for keys without words.
    const Words* words = nullptr;
};

/// All keys, ascending by number.
[[nodiscard]] std::span<const GeoKey> geoKeys() noexcept;
/// The key with this number, or null.
[[nodiscard]] const GeoKey* findGeoKey(std::uint16_t number) noexcept;

}  // namespace corvinex::registry
