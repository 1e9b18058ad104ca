#include "tool/text_display.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <utility>

#include "host/platform/unicode.h"

namespace tool {
namespace {

struct UnitRange {
    char16_t first;
    char16_t last;
};

// What a terminal would act on or hide instead of showing.
constexpr std::array invisibleUnits{
    UnitRange{0x0000, 0x001F},  // C0 controls
    UnitRange{0x007F, 0x009F},  // delete and C1 controls
    UnitRange{0x061C, 0x061C},  // Arabic letter mark
    UnitRange{0x200B, 0x200F},  // zero-width and direction marks
    UnitRange{0x2028, 0x202E},  // line and paragraph separators, direction overrides
    UnitRange{0x2060, 0x206F},  // invisible operators, direction isolates
    UnitRange{0xD800, 0xDFFF},  // surrogates that stand alone
    UnitRange{0xFEFF, 0xFEFF},  // byte-order mark
    UnitRange{0xFFF9, 0xFFFB},  // interlinear annotation
};

constexpr std::string_view hexDigits = "0123456789abcdef";

bool isInvisible(char16_t unit) {
    return std::any_of(invisibleUnits.begin(), invisibleUnits.end(),
                       [unit](const UnitRange& r) { return r.first <= unit && unit <= r.last; });
}

/// The character at a place of a text in UTF-8, which then is that of the next one. Negative where
/// none begins.
UChar32 takePoint(std::string_view text, std::size_t& place) {
    UChar32 point = 0;
    // The macro narrows bits that it has masked.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
    U8_NEXT(text, place, text.size(), point);
#pragma GCC diagnostic pop
    return point;
}

bool isInvisible(UChar32 point) {
    constexpr UChar32 latin1 = 0xA0;
    constexpr UChar32 arabicMark = 0x061C;
    const bool isUsual = (point >= ' ' && point <= '~') || (point >= latin1 && point < arabicMark);
    return !isUsual && U_IS_BMP(point) && isInvisible(static_cast<char16_t>(point));
}

bool isPairAt(std::u16string_view text, std::size_t index) {
    return text[index] >= 0xD800 && text[index] <= 0xDBFF && index + 1 < text.size() &&
           text[index + 1] >= 0xDC00 && text[index + 1] <= 0xDFFF;
}

/// The bytes of a UTF-8 character by its first one.
std::size_t sequenceLength(char first) {
    const auto ones = std::countl_one(static_cast<unsigned char>(first));
    return ones == 0 ? 1 : static_cast<std::size_t>(ones);
}

void appendEscape(std::string& out, char16_t unit) {
    switch (unit) {
        case u'\n':
            out += "\\n";
            return;
        case u'\r':
            out += "\\r";
            return;
        case u'\t':
            out += "\\t";
            return;
        default:
            break;
    }
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        out += hexDigits[static_cast<std::size_t>((unit >> shift) & 0xF)];
    }
}

void appendVisible(std::string& out, std::u16string_view text, bool quoted) {
    std::size_t plainFrom = 0;
    const auto flushPlain = [&](std::size_t end) {
        out += host::displayText(text.substr(plainFrom, end - plainFrom));
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isPairAt(text, i)) {
            ++i;
            continue;
        }
        const char16_t unit = text[i];
        const bool needsBackslash = quoted && (unit == u'"' || unit == u'\\');
        if (!needsBackslash && !isInvisible(unit)) {
            continue;
        }
        flushPlain(i);
        plainFrom = i + 1;
        if (needsBackslash) {
            out += '\\';
            out += static_cast<char>(unit);
        } else {
            appendEscape(out, unit);
        }
    }
    flushPlain(text.size());
}

}  // namespace

std::string visibleText(std::u16string_view text) {
    std::string out;
    appendVisible(out, text, false);
    return out;
}

std::string visibleText(std::string_view text) {
    std::string out;
    std::size_t plainFrom = 0;
    for (std::size_t place = 0; place < text.size();) {
        const std::size_t start = place;
        const UChar32 point = takePoint(text, place);
        if (point >= 0 && !isInvisible(point)) {
            continue;
        }
        out += text.substr(plainFrom, start - plainFrom);
        if (point < 0) {
            out += "\uFFFD";
            place = start + 1;
        } else {
            appendEscape(out, static_cast<char16_t>(point));
        }
        plainFrom = place;
    }
    return out += text.substr(plainFrom);
}

std::u16string lenientUtf16(std::string_view text) {
    if (auto decoded = host::utf16FromUtf8(text)) {
        return *std::move(decoded);
    }
    std::u16string out;
    while (!text.empty()) {
        const std::size_t length = std::min(sequenceLength(text.front()), text.size());
        const auto decoded = host::utf16FromUtf8(text.substr(0, length));
        out += decoded.value_or(u"\uFFFD");
        text.remove_prefix(decoded ? length : 1);
    }
    return out;
}

std::string quotedText(std::u16string_view text) {
    std::string out = "\"";
    appendVisible(out, text, true);
    out += '"';
    return out;
}

void writeQuotedText(OutputBuffer& out, std::u16string_view text) {
    out.append('"');
    if (isPlainText(text)) {
        out.appendAscii(text);
        text = {};
    }
    // Other texts go out in parts, so that a long one does not become a second long text.
    constexpr std::size_t longPart = 4096;
    while (!text.empty()) {
        std::size_t length = std::min(text.size(), longPart);
        length += isPairAt(text, length - 1) ? 1 : 0;
        std::string visible;
        appendVisible(visible, text.substr(0, length), true);
        out.append(visible);
        text.remove_prefix(length);
    }
    out.append('"');
}

bool isPlainText(std::u16string_view text) {
    // Without a branch for each unit, so that several are looked at at once.
    unsigned other = 0;
    for (const char16_t unit : text) {
        other |= static_cast<unsigned>(unit < 0x20) | static_cast<unsigned>(unit > 0x7E) |
                 static_cast<unsigned>(unit == u'"') | static_cast<unsigned>(unit == u'\\');
    }
    return other == 0;
}

}  // namespace tool
