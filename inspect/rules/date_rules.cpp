#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>

#include "inspect/rules/directory_rules.h"
#include "inspect/rules/text_argument.h"
#include "inspect/stored_value.h"

// Dates of the form "YYYY:MM:DD HH:MM:SS", whose parts may be blank where they are not known.

namespace corvinex::inspect {

namespace {

constexpr std::size_t mostExamined = 64;
constexpr std::size_t mostTold = 32;

/// A part of a date, and whether it may be blank for unknown.
struct DatePart {
    std::uint8_t start;
    std::uint8_t length;
};
constexpr std::array<DatePart, 6> dateParts{{{0, 4}, {5, 2}, {8, 2}, {11, 2}, {14, 2}, {17, 2}}};
constexpr std::string_view dateShape = "dddd:dd:dd dd:dd:dd";
constexpr std::size_t dateLength = 10;  ///< of the date alone, of three parts

/// The numbers of a date's parts; nothing where one is blank.
using DateNumbers = std::array<std::optional<int>, dateParts.size()>;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// False when the text is neither digits nor blank.
bool readPart(std::string_view text, std::optional<int>& number) {
    if (std::ranges::all_of(text, [](char c) { return c == ' '; })) {
        return true;
    }
    if (!std::ranges::all_of(text, isDigit)) {
        return false;
    }
    number = 0;
    for (const char c : text) {
        number = *number * 10 + (c - '0');
    }
    return true;
}

/// The numbers of a date of this form; nothing for other texts.
std::optional<DateNumbers> readDate(std::string_view text, DateForm form) {
    const std::string_view shape =
        form == DateForm::Date ? dateShape.substr(0, dateLength) : dateShape;
    if (text.size() > shape.size()) {
        return std::nullopt;
    }
    std::array<char, dateShape.size()> padded{};
    padded.fill(' ');
    std::ranges::copy(text, padded.begin());
    for (std::size_t i = 0; i < shape.size(); ++i) {
        if (shape[i] != 'd' && padded.at(i) != shape[i]) {
            return std::nullopt;
        }
    }
    DateNumbers numbers;
    for (std::size_t i = 0; i < dateParts.size(); ++i) {
        const DatePart part = dateParts.at(i);
        const std::string_view all(padded.data(), padded.size());
        if (!readPart(all.substr(part.start, part.length), numbers.at(i))) {
            return std::nullopt;
        }
    }
    return numbers;
}

int daysOf(std::optional<int> year, std::optional<int> month) {
    constexpr std::array<int, 12> days{31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (!month || *month < 1 || *month > 12) {
        return 31;
    }
    const bool isLeap = !year || (*year % 4 == 0 && (*year % 100 != 0 || *year % 400 == 0));
    return *month == 2 && !isLeap ? 28 : days.at(static_cast<std::size_t>(*month) - 1);
}

bool isWithin(std::optional<int> number, int least, int most) {
    return !number || (*number >= least && *number <= most);
}

bool isPossible(const DateNumbers& date) {
    const auto& [year, month, day, hour, minute, second] = date;
    return isWithin(month, 1, 12) && isWithin(day, 1, daysOf(year, month)) &&
           isWithin(hour, 0, 23) && isWithin(minute, 0, 59) &&
           isWithin(second, 0, 60);  // a leap second
}

/// Whether there is nothing but what clocks and writers put for a date that they do not know.
bool isUnset(std::string_view text) {
    return text.find_first_not_of(" :0") == std::string_view::npos;
}

}  // namespace

void checkDate(RuleContext& context, KnownTag tag, DateForm form) {
    const SoundEntry entry = context.tags.sound(tag);
    if (!entry || entry.record->type != static_cast<std::uint16_t>(FieldType::Ascii)) {
        return;
    }
    std::array<char, mostExamined> buffer{};
    const auto length =
        static_cast<std::size_t>(std::min<std::uint64_t>(entry.record->count, buffer.size()));
    if (!readValueBytes(context.file, *entry.record, 0,
                        std::as_writable_bytes(std::span(buffer).first(length)))) {
        return;
    }
    std::string_view text(buffer.data(), length);
    text = text.substr(0, text.find('\0'));
    while (text.ends_with(' ')) {
        text.remove_suffix(1);
    }
    if (isUnset(text)) {
        return;
    }
    const std::optional<DateNumbers> date = readDate(text, form);
    if (date && isPossible(*date)) {
        return;
    }
    std::array<unsigned char, mostTold> told{};
    const std::string_view start = text.substr(0, told.size());
    std::ranges::copy(start, told.begin());
    context.report(date ? Rule::DateImpossible : Rule::DateForm, tag,
                   makeTextArgument(std::span(told).first(start.size())));
}

}  // namespace corvinex::inspect
