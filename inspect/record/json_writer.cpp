#include "inspect/record/json_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace corvinex::inspect {

namespace {

constexpr std::string_view hexDigits = "0123456789abcdef";

/// The escape of a character by its code.
std::array<char, 6> escapeOf(unsigned unit) {
    std::array<char, 6> escape{'\\', 'u'};
    for (std::size_t i = 2; i < escape.size(); ++i) {
        escape[i] = hexDigits[unit >> (20U - 4U * i) & 0xFU];
    }
    return escape;
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

/// For each byte whether it stands as it is, whatever follows.
constexpr std::array<bool, 256> plainBytes = [] {
    std::array<bool, 256> plain{};
    for (std::size_t byte = 0x20; byte < plain.size(); ++byte) {
        plain[byte] = byte != '"' && byte != '\\' && byte != 0x7F && byte != 0xC2 && byte != 0xE2;
    }
    return plain;
}();

}  // namespace

// The part is not set, which would take longer than to write a record.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
JsonWriter::JsonWriter(TextSink& sink, Style style) : sink_(sink), style_(style) {}

void JsonWriter::flush() {
    sink_.write({part_.data(), length_});
    length_ = 0;
}

void JsonWriter::putInParts(std::string_view text) {
    while (!text.empty()) {
        if (length_ == partSize) {
            flush();
        }
        const std::string_view start = text.substr(0, partSize - length_);
        std::ranges::copy(start, part_.data() + length_);
        length_ += start.size();
        text.remove_prefix(start.size());
    }
}

void JsonWriter::newLine() {
    put('\n');
    for (std::size_t blank = 0; blank < 2 * levels_.size(); ++blank) {
        put(' ');
    }
}

void JsonWriter::indent(const Level& level) {
    if (level.layout == Layout::Open) {
        newLine();
    } else if (!level.isEmpty) {
        put(' ');
    }
}

JsonWriter& JsonWriter::begin(char bracket, Layout layout) {
    const bool isInRow = !levels_.empty() && levels_.back().layout == Layout::Inline;
    beginValue();
    put(bracket);
    levels_.push_back({.isEmpty = true, .layout = isInRow ? Layout::Inline : layout});
    return *this;
}

JsonWriter& JsonWriter::end(char bracket) {
    const Level level = levels_.back();
    levels_.pop_back();
    if (style_ == Style::Indented && level.layout == Layout::Open && !level.isEmpty) {
        newLine();
    }
    put(bracket);
    endValue();
    return *this;
}

JsonWriter& JsonWriter::key(std::string_view name) {
    beginValue();
    put('"');
    putEscaped(name);
    put("\":");
    endKey();
    return *this;
}

JsonWriter& JsonWriter::string(std::string_view text) {
    beginValue();
    put('"');
    putEscaped(text);
    put('"');
    endValue();
    return *this;
}

/// Puts what needs no escape at the start of a text, as far as there is room, and returns the rest.
std::string_view JsonWriter::putPlainStart(std::string_view text) {
    const std::size_t most = std::min(text.size(), partSize - length_);
    char* const target = part_.data() + length_;
    std::size_t plain = 0;
    while (plain < most && plainBytes[static_cast<std::uint8_t>(text[plain])]) {
        target[plain] = text[plain];
        ++plain;
    }
    length_ += plain;
    return text.substr(plain);
}

void JsonWriter::putEscaped(std::string_view text) {
    for (text = putPlainStart(text); !text.empty(); text = putPlainStart(text)) {
        const Escape escape = escapeAt(text);
        if (escape.length != 0) {
            const std::array<char, 6> characters = escapeOf(escape.code);
            put({characters.data(), characters.size()});
            text.remove_prefix(escape.length);
            continue;
        }
        if (text.front() == '"' || text.front() == '\\') {
            put('\\');
        }
        put(text.front());  // also one for which there was no room
        text.remove_prefix(1);
    }
}

template <class Number, class... Format>
void JsonWriter::digits(Number number, Format... format) {
    constexpr std::size_t mostDigits = 32;
    char* const start = room(mostDigits);
    const auto result = std::to_chars(start, start + mostDigits, number, format...);
    length_ += static_cast<std::size_t>(result.ptr - start);
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
        return word("NaN");
    }
    if (std::isinf(number)) {
        return word(number > 0 ? "Infinity" : "-Infinity");
    }
    beginValue();
    if (number == 0 && std::signbit(number)) {
        put("-0.0");  // "-0" is read as a whole number, which has no sign
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
    put(truth ? "true" : "false");
    endValue();
    return *this;
}

JsonWriter& JsonWriter::null() {
    beginValue();
    put("null");
    endValue();
    return *this;
}

JsonWriter& JsonWriter::bytes(std::span<const std::uint8_t> bytes) {
    return beginObject().key<"base64">().base64(bytes).endObject();
}

JsonWriter& JsonWriter::base64(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    beginValue();
    put('"');
    for (; !bytes.empty(); bytes = bytes.subspan(std::min<std::size_t>(3, bytes.size()))) {
        unsigned bits = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            bits = bits << 8U | (i < bytes.size() ? bytes[i] : 0U);
        }
        std::array<char, 4> digits{};
        for (std::size_t i = 0; i < digits.size(); ++i) {
            const std::size_t digit = bits >> (18U - 6U * i) & 0x3FU;
            digits[i] = i <= bytes.size() ? alphabet[digit] : '=';
        }
        put({digits.data(), digits.size()});
    }
    put('"');
    endValue();
    return *this;
}

}  // namespace corvinex::inspect
