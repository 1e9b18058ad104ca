#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tool {

/// The largest whole number up to which a double holds every one exactly.
inline constexpr std::uint64_t largestExactNumber = std::uint64_t{1} << 53U;

/// A whole number in decimal digits, at most largestExactNumber; nothing for any other text.
std::optional<std::uint64_t> wholeNumber(std::string_view text);

/// Any number that a double can be, also negative, "nan" and "inf", whatever the locale; nothing
/// for any other text.
std::optional<double> anyNumber(std::string_view text);

}  // namespace tool
