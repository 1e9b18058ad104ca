#pragma once

#include <cstddef>
#include <string>

namespace tool {

/// The shortest decimal text that reads back to the same double, whatever the locale: 8 is "8".
/// Not-a-number and the infinities are "NaN", "Infinity" and "-Infinity".
std::string numberText(double value);

/// Most characters that numberText gives.
constexpr std::size_t longestNumberText = 24;
/// Writes the same to a place with room for the longest; gives the end of what is written.
char* writeNumberText(double value, char* place);

}  // namespace tool
