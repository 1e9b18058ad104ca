#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "corvinex/value.h"
#include "inspect/reading/siblings.h"

// Single elements of a value, whatever its type. An index past the end gives nothing.

namespace corvinex::inspect::reading {

/// A number of any type; of a rational with a zero denominator nothing, and of characters and
/// UNDEFINED nothing.
[[nodiscard]] std::optional<double> numberAt(const Value& value, std::size_t index);

/// An exact integer that is not negative, from any integer type.
[[nodiscard]] std::optional<std::uint64_t> unsignedAt(const Value& value, std::size_t index);
/// An exact integer from any integer type, as far as it fits.
[[nodiscard]] std::optional<std::int64_t> signedAt(const Value& value, std::size_t index);

/// Numerator and denominator of either kind of rational.
struct Fraction {
    std::int64_t numerator;
    std::int64_t denominator;
};
[[nodiscard]] std::optional<Fraction> fractionAt(const Value& value, std::size_t index);

/// The characters of ASCII or UTF-8 up to the first zero; nothing for other types.
[[nodiscard]] std::optional<std::string_view> charactersOf(const Value& value);

/// The bytes of BYTE, UNDEFINED and characters, zeros included; nothing for other types. An unknown
/// type's bytes are none of these.
[[nodiscard]] std::optional<std::span<const std::uint8_t>> bytesOf(const Value& value);

/// Bytes as characters, of which each may be any byte.
[[nodiscard]] std::string_view asCharacters(std::span<const std::uint8_t> bytes) noexcept;

/// The same as characters up to the first zero: a text, whichever of these types it is stored in.
[[nodiscard]] std::optional<std::string_view> textBytesOf(const Value& value);

/// Whether the type is RATIONAL or SRATIONAL.
[[nodiscard]] bool isRational(const Value& value) noexcept;

/// The first element of a sibling.
[[nodiscard]] std::optional<std::uint64_t> unsignedOf(const Siblings& siblings,
                                                      std::uint16_t number);
[[nodiscard]] std::optional<double> numberOf(const Siblings& siblings, std::uint16_t number);

/// Without blanks and control characters at the end.
[[nodiscard]] std::string_view withoutEndBlanks(std::string_view text) noexcept;
/// Without them on either side.
[[nodiscard]] std::string_view trimmed(std::string_view text) noexcept;

}  // namespace corvinex::inspect::reading
