#include "inspect/reading/exposure.h"

#include <cmath>

#include "inspect/reading/elements.h"
#include "inspect/reading/joined_elements.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {
namespace {

/// No exposure and no aperture is beyond these, only damaged files and unset values are.
constexpr double shortestTime = 1e-9;
constexpr double longestTime = 1e9;
constexpr double largestRatio = 1e5;
constexpr double largestApex = 60;

/// Whether a value is a whole number but for the rounding of whoever wrote it.
bool isNearlyWhole(double value) {
    constexpr double slack = 0.005;
    return std::abs(value - std::round(value)) < slack;
}

std::optional<std::string> withUnit(std::optional<std::string> number, std::string_view unit) {
    if (number) {
        *number += unit;
    }
    return number;
}

template <class Read>
Text readNumbers(const Value& value, Read read) {
    return joinElements(value, [&](std::size_t index) -> Text {
        const auto number = numberAt(value, index);
        return number ? read(*number) : std::nullopt;
    });
}

}  // namespace

std::optional<std::string> exposureTimeText(double seconds) {
    // Cameras write times below this as fractions, and other ones too that are whole fractions.
    constexpr double alwaysFraction = 0.25;
    constexpr double withHundredths = 10;
    if (!(seconds >= shortestTime && seconds <= longestTime)) {
        return std::nullopt;
    }
    const double inverse = 1 / seconds;
    if (seconds < alwaysFraction || (seconds < 1 && isNearlyWhole(inverse))) {
        return concat({"1/", decimalText(std::round(inverse), 0).value_or(""), " s"});
    }
    return withUnit(decimalText(seconds, seconds < withHundredths ? 2 : 1), " s");
}

std::optional<std::string> fNumberText(double ratio, int decimals) {
    if (!(ratio > 0 && ratio <= largestRatio)) {
        return std::nullopt;
    }
    auto number = decimalText(ratio, decimals);
    return number ? "f/" + *number : number;
}

std::optional<std::string> exposureValueText(double steps) {
    if (!(std::abs(steps) <= largestApex)) {
        return std::nullopt;
    }
    const std::string_view sign = steps > 0 ? "+" : "";
    for (const int parts : {1, 2, 3}) {
        if (isNearlyWhole(steps * parts)) {
            // Not "-0": the steps may round to nothing.
            const auto number = decimalText(std::round(steps * parts), 0).value_or("");
            if (parts == 1) {
                return concat({number == "0" ? "" : sign, number, " EV"});
            }
            return concat({sign, number, "/", integerText(std::uint64_t(parts)), " EV"});
        }
    }
    return concat({sign, decimalText(steps, 2).value_or(""), " EV"});
}

std::optional<std::string> apexTimeText(double value) {
    return std::abs(value) <= largestApex ? exposureTimeText(std::exp2(-value)) : std::nullopt;
}

std::optional<std::string> apexApertureText(double value) {
    return std::abs(value) <= largestApex ? fNumberText(std::exp2(value / 2), 1) : std::nullopt;
}

std::optional<std::string> apexBrightnessText(double value) {
    return std::abs(value) <= largestApex ? withUnit(decimalText(value, 2), " EV") : std::nullopt;
}

Text readExposureTime(const Subject& subject) {
    return readNumbers(subject.value, exposureTimeText);
}

Text readFNumber(const Subject& subject) {
    constexpr int decimals = 2;
    return readNumbers(subject.value, [](double ratio) { return fNumberText(ratio, decimals); });
}

}  // namespace corvinex::inspect::reading
