#include "tool/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

namespace tool {
namespace {

char* copied(std::string_view text, char* place) {
    return std::copy(text.begin(), text.end(), place);
}

/// Whether the shortest text of a number is that of the integer it is, which costs a fraction of
/// finding it: most numbers in files are. Those with five zeros at the end may be shorter with an
/// exponent, and zero may have a sign.
bool isPlainInteger(double value) {
    constexpr double exact = std::uint64_t{1} << std::numeric_limits<double>::digits;
    if (!(std::abs(value) < exact)) {
        return false;
    }
    const auto integer = static_cast<std::int64_t>(value);
    return static_cast<double>(integer) == value && integer % 100000 != 0;
}

}  // namespace

std::string numberText(double value) {
    std::array<char, longestNumberText> text{};
    return {text.data(), writeNumberText(value, text.data())};
}

char* writeNumberText(double value, char* place) {
    char* const end = place + longestNumberText;
    if (isPlainInteger(value)) {
        return std::to_chars(place, end, static_cast<std::int64_t>(value)).ptr;
    }
    if (std::isfinite(value)) {
        return std::to_chars(place, end, value).ptr;
    }
    if (std::isnan(value)) {
        return copied("NaN", place);
    }
    return copied(value > 0 ? "Infinity" : "-Infinity", place);
}

}  // namespace tool
