#include "inspect/reading/times.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

#include "inspect/reading/elements.h"
#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {
namespace {

/// The tags that tell of another one's time how far it is within the second, and from UTC.
struct TimeTags {
    std::uint16_t time;
    std::uint16_t fraction;
    std::uint16_t offset;
};
constexpr std::array timeTags{
    TimeTags{306, 37520, 36880},
    TimeTags{36867, 37521, 36881},
    TimeTags{36868, 37522, 36882},
};

bool isDigit(char character) noexcept {
    return character >= '0' && character <= '9';
}

/// The number that the digits at a place make; nothing when they are no digits.
std::optional<int> numberAt(std::string_view text, std::size_t place, std::size_t digits) {
    const std::string_view part = text.substr(place, digits);
    if (part.size() != digits || !std::ranges::all_of(part, isDigit)) {
        return std::nullopt;
    }
    int number = 0;
    for (const char digit : part) {
        number = 10 * number + (digit - '0');
    }
    return number;
}

bool isNumberAt(std::string_view text, std::size_t place, std::size_t digits, int most) {
    const auto number = numberAt(text, place, digits);
    return number && *number <= most;
}

/// Whether there is such a day. Clocks that were never set tell the year 0.
bool isDay(std::optional<int> year, std::optional<int> month, std::optional<int> day) {
    return year && month && day && *year != 0 &&
           std::chrono::year_month_day(std::chrono::year(*year),
                                       std::chrono::month(static_cast<unsigned>(*month)),
                                       std::chrono::day(static_cast<unsigned>(*day)))
               .ok();
}

bool isClock(std::string_view text) {
    constexpr int leapSecond = 60;
    return text.size() == 8 && text[2] == ':' && text[5] == ':' && isNumberAt(text, 0, 2, 23) &&
           isNumberAt(text, 3, 2, 59) && isNumberAt(text, 6, 2, leapSecond);
}

bool isOffset(std::string_view text) {
    return text == "Z" ||
           (text.size() == 6 && (text[0] == '+' || text[0] == '-') && text[3] == ':' &&
            isNumberAt(text, 1, 2, 23) && isNumberAt(text, 4, 2, 59));
}

std::string siblingText(const Siblings& siblings, std::uint16_t number) {
    const auto value = siblings.find(number, fewBytes);
    const auto text = value ? textBytesOf(*value) : std::nullopt;
    return std::string(trimmed(text.value_or("")));
}

}  // namespace

std::optional<std::string> dateOf(std::string_view text) {
    text = trimmed(text);
    // Writers that do not follow the standard part the numbers by other signs.
    constexpr std::string_view signs = ":-/.";
    const bool isDate = text.size() == 10 && signs.find(text[4]) != std::string_view::npos &&
                        text[7] == text[4] &&
                        isDay(numberAt(text, 0, 4), numberAt(text, 5, 2), numberAt(text, 8, 2));
    if (!isDate) {
        return std::nullopt;
    }
    std::string date(text);
    date[4] = '-';
    date[7] = '-';
    return date;
}

std::optional<Moment> momentOf(std::string_view text) {
    constexpr std::size_t dateLength = 10;
    text = trimmed(text);
    if (text.size() <= dateLength || (text[dateLength] != ' ' && text[dateLength] != 'T')) {
        return std::nullopt;
    }
    auto date = dateOf(text.substr(0, dateLength));
    const std::string_view clock = text.substr(dateLength + 1);
    if (!date || !isClock(clock)) {
        return std::nullopt;
    }
    return Moment{*std::move(date), std::string(clock), "", ""};
}

std::optional<Moment> momentOf(std::uint16_t number, const Value& value, const Siblings& siblings) {
    constexpr std::size_t mostDigits = 9;
    const auto text = textBytesOf(value);
    auto moment = text ? momentOf(*text) : std::nullopt;
    const auto* tags = std::ranges::find(timeTags, number, &TimeTags::time);
    if (!moment || tags == timeTags.end()) {
        return moment;
    }
    if (auto fraction = siblingText(siblings, tags->fraction);
        fraction.size() <= mostDigits && std::ranges::all_of(fraction, isDigit)) {
        moment->fraction = std::move(fraction);
    }
    if (auto offset = siblingText(siblings, tags->offset); isOffset(offset)) {
        moment->offset = std::move(offset);
    }
    return moment;
}

Text readDateTime(const Subject& subject) {
    const auto moment = momentOf(subject.number, subject.value, subject.siblings);
    if (!moment) {
        return std::nullopt;
    }
    std::string text = moment->date + " " + moment->time;
    text += moment->fraction.empty() ? "" : "." + moment->fraction;
    return text + (moment->offset.empty() ? "" : " " + moment->offset);
}

Text readDate(const Subject& subject) {
    const auto text = textBytesOf(subject.value);
    return text ? dateOf(*text) : std::nullopt;
}

}  // namespace corvinex::inspect::reading
