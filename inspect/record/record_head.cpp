#include "inspect/record/record_head.h"

#include <array>
#include <chrono>
#include <span>
#include <vector>

#include "inspect/reading/charset.h"
#include "inspect/record/value_json.h"

namespace corvinex::inspect {

namespace {

void putDigits(std::span<char> place, unsigned number) {
    constexpr unsigned ten = 10;
    for (std::size_t digit = place.size(); digit > 0; --digit) {
        place[digit - 1] = static_cast<char>('0' + number % ten);
        number /= ten;
    }
}

/// In the C library, where all threads wait for each other at the lock of its time zone.
std::string isoTimeOfAnyYear(std::time_t time) {
    std::tm parts{};
    if (gmtime_r(&time, &parts) == nullptr) {
        return {};
    }
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

}  // namespace

void writeName(JsonWriter& json, const FileFacts& facts) {
    json.key<"file">();
    if (reading::isUtf8(facts.name)) {
        json.string(facts.name);
        return;
    }
    json.string(validUtf8(facts.name));
    const std::vector<std::uint8_t> bytes(facts.name.begin(), facts.name.end());
    json.key<"file_bytes">().base64(bytes);
}

Status statusOf(const File* file) {
    return file == nullptr ? Status::Unreadable : file->status();
}

std::string isoTime(std::time_t time) {
    using std::chrono::days;
    using std::chrono::hh_mm_ss;
    using std::chrono::sys_days;
    using std::chrono::sys_seconds;
    using std::chrono::year;
    using std::chrono::year_month_day;
    constexpr sys_seconds firstYear = sys_days(year(0) / 1 / 1);
    constexpr sys_seconds behindLastYear = sys_days(year(10'000) / 1 / 1);
    const sys_seconds moment{std::chrono::seconds(time)};
    if (moment < firstYear || moment >= behindLastYear) {
        return isoTimeOfAnyYear(time);
    }
    const sys_days day = std::chrono::floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss clock(moment - day);
    std::string text = "0000-00-00T00:00:00Z";
    putDigits(std::span(text).subspan(0, 4), static_cast<unsigned>(int(date.year())));
    putDigits(std::span(text).subspan(5, 2), unsigned(date.month()));
    putDigits(std::span(text).subspan(8, 2), unsigned(date.day()));
    putDigits(std::span(text).subspan(11, 2), static_cast<unsigned>(clock.hours().count()));
    putDigits(std::span(text).subspan(14, 2), static_cast<unsigned>(clock.minutes().count()));
    putDigits(std::span(text).subspan(17, 2), static_cast<unsigned>(clock.seconds().count()));
    return text;
}

}  // namespace corvinex::inspect
