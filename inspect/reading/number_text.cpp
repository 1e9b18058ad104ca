#include "inspect/reading/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstddef>

namespace corvinex::inspect::reading {
namespace {

/// Up to here every digit of a double is shown; beyond, most of them would mean nothing.
constexpr double mostShown = 1e15;
/// Below this a number has an exponent. With it the longest text is a sign, "0.", four zeros and 17
/// digits.
constexpr double leastShown = 1e-5;
constexpr int mostDecimals = 12;

template <std::integral Number>
std::string allDigits(Number value) {
    std::array<char, 32> text{};
    char* const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

bool isShownWhole(double value) {
    const double size = std::abs(value);
    return size >= leastShown && size < mostShown;
}

char* writeDigits(double value, char* place) {
    char* const end = place + longestShortestText;
    return isShownWhole(value) ? std::to_chars(place, end, value, std::chars_format::fixed).ptr
                               : std::to_chars(place, end, value).ptr;
}

char* writeDigits(float value, char* place) {
    char* const end = std::to_chars(place, place + longestShortestText, value).ptr;
    // Beyond 2^24 the digits of the number itself are more than those that tell it from others.
    double shortest = 0;
    std::from_chars(place, end, shortest);
    return isShownWhole(shortest) ? writeDigits(shortest, place) : end;
}

template <std::floating_point Number>
std::string shortestDigits(Number value) {
    if (!std::isfinite(value)) {
        return std::isnan(value) ? "NaN" : value > 0 ? "Infinity" : "-Infinity";
    }
    std::array<char, longestShortestText> text{};
    return {text.data(), writeDigits(value, text.data())};
}

}  // namespace

std::optional<std::string> decimalText(double value, int decimals) {
    if (!std::isfinite(value) || std::abs(value) > mostShown) {
        return std::nullopt;
    }
    std::array<char, 40> digits{};
    char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                    std::chars_format::fixed, decimals)
                          .ptr;
    std::string text(digits.data(), end);
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') {
            text.pop_back();
        }
    }
    return text == "-0" ? "0" : text;
}

std::optional<std::string> decimalText(double value) {
    constexpr int significant = 6;
    const double size = std::abs(value);
    if (!(size > 0)) {
        return decimalText(value, 0);
    }
    const double decimals = significant - 1 - std::floor(std::log10(size));
    return decimalText(value, static_cast<int>(std::clamp<double>(decimals, 0, mostDecimals)));
}

std::string shortestText(double value) {
    return shortestDigits(value);
}

std::string shortestText(float value) {
    return shortestDigits(value);
}

char* writeShortestText(double value, char* place) {
    return writeDigits(value, place);
}

std::string integerText(std::uint64_t value) {
    return allDigits(value);
}

std::string integerText(std::int64_t value) {
    return allDigits(value);
}

std::string paddedText(std::uint64_t value, std::size_t digits) {
    std::string text = integerText(value);
    text.insert(0, digits - std::min(digits, text.size()), '0');
    return text;
}

std::string groupedText(std::uint64_t value) {
    constexpr std::size_t group = 3;
    std::string text = integerText(value);
    for (std::size_t place = text.size(); place > group;) {
        place -= group;
        text.insert(place, 1, ',');
    }
    return text;
}

std::string concat(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        text += part;
    }
    return text;
}

std::string countText(std::uint64_t number, std::string_view one, std::string_view several) {
    return concat({groupedText(number), " ", number == 1 ? one : several});
}

std::string byteCountText(std::uint64_t bytes) {
    return countText(bytes, "byte", "bytes");
}

}  // namespace corvinex::inspect::reading
