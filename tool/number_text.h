#pragma once

#include <cstddef>
#include <string>

#include "inspect/reading/number_text.h"

namespace tool {

/// The fewest digits that read back to the same double, whatever the locale: 8 is "8". Whole
/// numbers below 2^53 and what is from 0.00001 to 1e15 has no exponent. Not-a-number and the
/// infinities are "NaN", "Infinity" and "-Infinity".
std::string numberText(double value);

/// Most characters that numberText gives.
constexpr std::size_t longestNumberText = corvinex::inspect::reading::longestShortestText;
/// Writes the same to a place with room for the longest; gives the end of what is written.
char* writeNumberText(double value, char* place);

}  // namespace tool
