#include "inspect/record/json_writer.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace corvinex::inspect {

namespace {

// Enough that handing on costs nothing beside the text, and little enough for many files at once.
constexpr std::size_t partSize = std::size_t{64} << 10U;

constexpr std::string_view hexDigits = "0123456789abcdef";

void appendEscape(std::string& text, unsigned unit) {
    text += "\\u";
    for (unsigned shift = 16; shift != 0;) {
        shift -= 4;
        text += hexDigits[unit >> shift & 0xFU];
    }
}

constexpr std::uint8_t byteAt(std::string_view text, std::size_t index) {
    return index < text.size() ? static_cast<std::uint8_t>(text[index]) : 0;
}

/// Bytes of the character at the start of a text that must not stand as it is, and its code; none
/// for others.
struct Escape {
    std::size_t length = 0;
    unsigned code = 0;
};
constexpr Escape escapeAt(std::string_view text) {
    const std::uint8_t first = byteAt(text, 0);
    const std::uint8_t second = byteAt(text, 1);
    const std::uint8_t third = byteAt(text, 2);
    if (first < 0x20 || first == 0x7F) {
        return {1, first};
    }
    if (first == 0xC2 && second >= 0x80 && second <= 0x9F) {
        return {2, second};  // U+0080 to U+009F
    }
    if (first == 0xE2 && second == 0x80 && (third == 0xA8 || third == 0xA9)) {
        return {3, 0x2000U + (third & 0x3FU)};  // U+2028 and U+2029
    }
    return {};
}

constexpr bool mayNeedEscape(char character) {
    const auto byte = static_cast<std::uint8_t>(character);
    return byte < 0x20 || byte == '"' || byte == '\\' || byte == 0x7F || byte == 0xC2 ||
           byte == 0xE2;
}

}  // namespace

void JsonWriter::flush() {
    sink_.write(text_);
    text_.clear();
}

void JsonWriter::newLine() {
    text_ += '\n';
    text_.append(2 * levels_.size(), ' ');
}

void JsonWriter::beginValue() {
    if (isAfterKey_) {
        isAfterKey_ = false;
        return;
    }
    if (levels_.empty()) {
        return;
    }
    Level& level = levels_.back();
    if (!level.isEmpty) {
        text_ += ',';
    }
    if (style_ == Style::Indented && level.layout == Layout::Open) {
        newLine();
    } else if (style_ == Style::Indented && !level.isEmpty) {
        text_ += ' ';
    }
    level.isEmpty = false;
}

void JsonWriter::endValue() {
    if (levels_.empty()) {
        text_ += '\n';
    }
    if (text_.size() >= partSize) {
        flush();
    }
}

JsonWriter& JsonWriter::begin(char bracket, Layout layout) {
    const bool isInRow = !levels_.empty() && levels_.back().layout == Layout::Inline;
    beginValue();
    text_ += bracket;
    levels_.push_back({.isEmpty = true, .layout = isInRow ? Layout::Inline : layout});
    return *this;
}

JsonWriter& JsonWriter::end(char bracket) {
    const Level level = levels_.back();
    levels_.pop_back();
    if (style_ == Style::Indented && level.layout == Layout::Open && !level.isEmpty) {
        newLine();
    }
    text_ += bracket;
    endValue();
    return *this;
}

JsonWriter& JsonWriter::key(std::string_view name) {
    beginValue();
    text_ += '"';
    escaped(name);
    text_ += style_ == Style::Indented ? "\": " : "\":";
    isAfterKey_ = true;
    return *this;
}

JsonWriter& JsonWriter::string(std::string_view text) {
    beginValue();
    text_ += '"';
    escaped(text);
    text_ += '"';
    endValue();
    return *this;
}

void JsonWriter::escaped(std::string_view text) {
    while (!text.empty()) {
        std::size_t plain = 0;
        while (plain < text.size() && plain < partSize && !mayNeedEscape(text[plain])) {
            ++plain;
        }
        text_ += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text_.size() >= partSize) {
            flush();
        }
        if (text.empty() || plain == partSize) {
            continue;
        }
        const Escape escape = escapeAt(text);
        if (text.front() == '"' || text.front() == '\\') {
            text_ += '\\';
            text_ += text.front();
        } else if (escape.length != 0) {
            appendEscape(text_, escape.code);
        } else {
            text_ += text.front();
        }
        text.remove_prefix(escape.length == 0 ? 1 : escape.length);
    }
}

template <class Number, class... Format>
void JsonWriter::digits(Number number, Format... format) {
    std::array<char, 32> digits{};
    const auto result =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, format...);
    text_.append(digits.data(), result.ptr);
}

JsonWriter& JsonWriter::integer(std::uint64_t number) {
    beginValue();
    digits(number);
    endValue();
    return *this;
}

JsonWriter& JsonWriter::integer(std::int64_t number) {
    beginValue();
    digits(number);
    endValue();
    return *this;
}

template <class Number>
JsonWriter& JsonWriter::floating(Number number) {
    // Written out, a number from 2^63 on would have no point and no exponent, and readers that take
    // such numbers for integers of 64 bits refuse it.
    constexpr Number leastWithExponent = 0x1p63F;
    if (std::isnan(number)) {
        return string("NaN");
    }
    if (std::isinf(number)) {
        return string(number > 0 ? "Infinity" : "-Infinity");
    }
    beginValue();
    if (number == 0 && std::signbit(number)) {
        text_ += "-0.0";  // "-0" is read as a whole number, which has no sign
    } else if (std::abs(number) >= leastWithExponent) {
        digits(number, std::chars_format::scientific);
    } else {
        digits(number);
    }
    endValue();
    return *this;
}

JsonWriter& JsonWriter::number(double number) {
    return floating(number);
}

JsonWriter& JsonWriter::number(float number) {
    return floating(number);
}

JsonWriter& JsonWriter::boolean(bool truth) {
    beginValue();
    text_ += truth ? "true" : "false";
    endValue();
    return *this;
}

JsonWriter& JsonWriter::null() {
    beginValue();
    text_ += "null";
    endValue();
    return *this;
}

JsonWriter& JsonWriter::bytes(std::span<const std::uint8_t> bytes) {
    return beginObject().key("base64").base64(bytes).endObject();
}

JsonWriter& JsonWriter::base64(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    beginValue();
    text_ += '"';
    for (; !bytes.empty(); bytes = bytes.subspan(std::min<std::size_t>(3, bytes.size()))) {
        unsigned bits = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            bits = bits << 8U | (i < bytes.size() ? bytes[i] : 0U);
        }
        for (std::size_t i = 0; i < 4; ++i) {
            const std::size_t digit = bits >> (18U - 6U * i) & 0x3FU;
            text_ += i <= bytes.size() ? alphabet[digit] : '=';
        }
        if (text_.size() >= partSize) {
            flush();
        }
    }
    text_ += '"';
    endValue();
    return *this;
}

}  // namespace corvinex::inspect
