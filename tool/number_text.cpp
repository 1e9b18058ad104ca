#include "tool/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

#include "inspect/reading/number_text.h"

namespace tool {
namespace {

char* copied(std::string_view text, char* place) {
    return std::copy(text.begin(), text.end(), place);
}

/// Whether all digits of a number are those of the integer it is, which cost a fraction of finding
/// the fewest: most numbers in files are. Zero may have a sign.
bool isPlainInteger(double value) {
    constexpr double exact = std::uint64_t{1} << std::numeric_limits<double>::digits;
    return std::abs(value) < exact && value != 0 &&
           static_cast<double>(static_cast<std::int64_t>(value)) == value;
}

}  // namespace

std::string numberText(double value) {
    std::array<char, longestNumberText> text{};
    return {text.data(), writeNumberText(value, text.data())};
}

char* writeNumberText(double value, char* place) {
    if (isPlainInteger(value)) {
        return std::to_chars(place, place + longestNumberText, static_cast<std::int64_t>(value))
            .ptr;
    }
    if (std::isfinite(value)) {
        return corvinex::inspect::reading::writeShortestText(value, place);
    }
    if (std::isnan(value)) {
        return copied("NaN", place);
    }
    return copied(value > 0 ? "Infinity" : "-Infinity", place);
}

}  // namespace tool
