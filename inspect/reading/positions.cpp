#include "inspect/reading/positions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>

#include "inspect/reading/elements.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {
namespace {

constexpr double inWhole = 60;
/// Turns around more often than this are no angle and no time.
constexpr double largestPart = 1e6;

/// A whole number, sixtieths of it and sixtieths of these, of which the last may be missing.
std::optional<double> sexagesimalOf(const Value& value) {
    constexpr std::size_t mostParts = 3;
    // From the smallest part on, so that less is lost: 151 deg 12' 55.08" is 151.2153.
    double sum = 0;
    for (std::size_t left = std::min(value.size(), mostParts); left > 0; --left) {
        const std::size_t part = left - 1;
        const auto number = numberAt(value, part);
        if (number && !(std::abs(*number) <= largestPart)) {
            return std::nullopt;
        }
        if (!number && part == 0) {
            return std::nullopt;
        }
        sum = number.value_or(0) + sum / inWhole;
    }
    return value.size() == 0 || charactersOf(value) ? std::nullopt : std::optional(sum);
}

/// Whole seconds with two digits, and their fraction when there is one: "09", "09.5".
std::string secondsText(std::uint64_t hundredths) {
    constexpr std::uint64_t inSecond = 100;
    std::string text = paddedText(hundredths / inSecond, 2);
    const std::uint64_t fraction = hundredths % inSecond;
    if (fraction != 0) {
        text += '.';
        text += paddedText(fraction, 2);
        text.erase(text.find_last_not_of('0') + 1);
    }
    return text;
}

/// Hours, minutes and seconds that are each in their range, as cameras write them. Leap seconds
/// stay.
bool isClock(const Value& value) {
    constexpr std::array limits{24.0, 60.0, 61.0};
    for (std::size_t part = 0; part < limits.size(); ++part) {
        const auto number = numberAt(value, part);
        const bool isWhole = number && (part == 2 || *number == std::floor(*number));
        if (!isWhole || !(*number >= 0 && *number < limits[part])) {
            return false;
        }
    }
    return value.size() == limits.size();
}

}  // namespace

std::optional<double> degreesOf(const Value& value) {
    return sexagesimalOf(value);
}

std::optional<char> hemisphereOf(const Siblings& siblings, std::uint16_t number) {
    constexpr std::string_view hemispheres = "NSEW";
    const auto value = siblings.find(number, fewBytes);
    const auto text = value ? textBytesOf(*value) : std::nullopt;
    const std::string_view letter = trimmed(text.value_or(""));
    if (letter.empty() || hemispheres.find(letter.front()) == std::string_view::npos) {
        return std::nullopt;
    }
    return letter.front();
}

std::optional<std::string> angleText(double degrees) {
    constexpr double inDegree = 360'000;  // hundredths of a second
    constexpr std::uint64_t inMinute = 6'000;
    constexpr std::uint64_t inSecond = 100;
    if (!(std::abs(degrees) <= largestPart)) {
        return std::nullopt;
    }
    const auto hundredths = static_cast<std::uint64_t>(std::llround(std::abs(degrees) * inDegree));
    const std::uint64_t minutes = hundredths / inMinute;
    const std::string_view sign = degrees < 0 && hundredths > 0 ? "-" : "";
    return concat({sign, integerText(minutes / 60), " deg ", integerText(minutes % 60), "' ",
                   integerText(hundredths % inMinute / inSecond), ".",
                   paddedText(hundredths % inSecond, 2), "\""});
}

Text readGpsCoordinate(const Subject& subject) {
    const auto degrees = degreesOf(subject.value);
    auto text = degrees ? angleText(*degrees) : std::nullopt;
    if (text) {
        // Each coordinate comes behind the tag that names its hemisphere.
        const auto reference = static_cast<std::uint16_t>(subject.number - 1);
        if (const auto hemisphere = hemisphereOf(subject.siblings, reference)) {
            *text += ' ';
            *text += *hemisphere;
        }
    }
    return text;
}

Text readGpsTime(const Subject& subject) {
    constexpr double inSecond = 100;
    constexpr double inHour = 3600;
    constexpr std::uint64_t inMinute = 6'000;
    constexpr std::uint64_t inDay = std::uint64_t{24} * 60 * inMinute;
    if (isClock(subject.value)) {
        const auto hour = static_cast<std::uint64_t>(numberAt(subject.value, 0).value_or(0));
        const auto minute = static_cast<std::uint64_t>(numberAt(subject.value, 1).value_or(0));
        // Cut, not rounded: a time shall not pass into the next minute.
        const auto hundredths = static_cast<std::uint64_t>(
            std::floor(numberAt(subject.value, 2).value_or(0) * inSecond + 1e-6));
        return paddedText(hour, 2) + ":" + paddedText(minute, 2) + ":" + secondsText(hundredths) +
               " UTC";
    }
    const auto hours = sexagesimalOf(subject.value);
    if (!hours || *hours < 0) {
        return std::nullopt;
    }
    const auto hundredths = static_cast<std::uint64_t>(std::llround(*hours * inHour * inSecond));
    if (hundredths >= inDay) {
        return std::nullopt;
    }
    const std::uint64_t minutes = hundredths / inMinute;
    return paddedText(minutes / 60, 2) + ":" + paddedText(minutes % 60, 2) + ":" +
           secondsText(hundredths % inMinute) + " UTC";
}

}  // namespace corvinex::inspect::reading
