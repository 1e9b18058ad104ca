#include "inspect/reading/charset.h"

#include <unicode/unistr.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <new>

#include "icu/icu_memory.h"
#include "inspect/reading/elements.h"
#include "inspect/reading/icu_charsets.h"
#include "inspect/reading/text_guesses.h"

namespace corvinex::inspect::reading {
namespace {

char16_t unitAt(std::span<const std::uint8_t> bytes, std::size_t index, std::endian order) {
    const std::uint8_t first = bytes[2 * index];
    const std::uint8_t second = bytes[2 * index + 1];
    const auto [high, low] =
        order == std::endian::big ? std::pair(first, second) : std::pair(second, first);
    return static_cast<char16_t>(high << 8 | low);
}

constexpr char16_t byteOrderMark = 0xFEFF;
/// UTF-16 is turned to UTF-8 in parts of so many units, for the sake of memory.
constexpr std::int32_t longestPart = 1 << 16;

/// The bytes of a character by its first one, or 0 when none begins so.
std::size_t encodedLength(std::uint8_t first) noexcept {
    struct Row {
        std::uint8_t mask;
        std::uint8_t value;
        std::size_t length;
    };
    constexpr std::array rows{Row{0x80, 0x00, 1}, Row{0xE0, 0xC0, 2}, Row{0xF0, 0xE0, 3},
                              Row{0xF8, 0xF0, 4}};
    const auto* row = std::ranges::find_if(
        rows, [&](const Row& each) { return (first & each.mask) == each.value; });
    return row != rows.end() ? row->length : 0;
}

std::endian orderOfUtf16(std::span<const std::uint8_t> bytes, std::endian fileOrder) {
    const std::size_t units = bytes.size() / 2;
    if (units > 0 && unitAt(bytes, 0, std::endian::big) == byteOrderMark) {
        return std::endian::big;
    }
    if (units > 0 && unitAt(bytes, 0, std::endian::little) == byteOrderMark) {
        return std::endian::little;
    }
    std::size_t smallBig = 0;
    std::size_t smallLittle = 0;
    for (std::size_t unit = 0; unit < units; ++unit) {
        smallBig += bytes[2 * unit] == 0 ? 1 : 0;
        smallLittle += bytes[2 * unit + 1] == 0 ? 1 : 0;
    }
    if (smallBig == smallLittle) {
        return fileOrder;
    }
    return smallBig > smallLittle ? std::endian::big : std::endian::little;
}

std::string decodeJis(std::span<const std::uint8_t> bytes) {
    // The set is told as JIS X 0208, and written with escapes, or as one of the sets built on it.
    constexpr std::uint8_t escape = 0x1B;
    if (std::ranges::find(bytes, escape) != bytes.end() && bytes.size() <= longestIcuText) {
        if (auto text = convertFrom(asCharacters(bytes), "ISO-2022-JP")) {
            return *std::move(text);
        }
    }
    return decodeText(asCharacters(bytes));
}

}  // namespace

std::int32_t takeCharacter(std::string_view& text) noexcept {
    constexpr std::int32_t invalid = -1;
    const auto first = static_cast<std::uint8_t>(text.front());
    const std::size_t length = encodedLength(first);
    std::array<char16_t, 2> units{};
    std::int32_t count = 0;
    UErrorCode status = U_ZERO_ERROR;
    if (length > 1 && length <= text.size()) {
        u_strFromUTF8(units.data(), units.size(), &count, text.data(),
                      static_cast<std::int32_t>(length), &status);
    }
    if (length != 1 && (count == 0 || U_FAILURE(status))) {
        text.remove_prefix(1);
        return invalid;
    }
    text.remove_prefix(length);
    if (length == 1) {
        return first;
    }
    return count == 1 ? units[0] : U16_GET_SUPPLEMENTARY(units[0], units[1]);
}

bool isUtf8(std::string_view bytes) noexcept {
    const auto isAscii = [](char character) { return static_cast<std::uint8_t>(character) < 0x80; };
    const auto* start = std::ranges::find_if_not(bytes, isAscii);
    bytes.remove_prefix(static_cast<std::size_t>(start - bytes.begin()));
    while (!bytes.empty()) {
        if (takeCharacter(bytes) < 0) {
            return false;
        }
    }
    return true;
}

std::string decodeText(std::string_view bytes) {
    if (isUtf8(bytes)) {
        return std::string(bytes);
    }
    if (bytes.size() > longestIcuText) {
        return convertFromFallback(bytes);
    }
    if (TextGuesses* guesses = TextGuesses::inUse()) {
        return guesses->decode(bytes);
    }
    auto text = convertFrom(bytes, guessCharset(bytes));
    return text ? *std::move(text) : convertFromFallback(bytes);
}

std::string decodeUtf16(std::span<const std::uint8_t> bytes, std::endian order) {
    const std::size_t units = bytes.size() / 2;
    std::size_t unit = units > 0 && unitAt(bytes, 0, order) == byteOrderMark ? 1 : 0;
    std::string result;
    while (unit < units) {
        icu::UnicodeString part;
        // A part ends at a character.
        while (unit < units &&
               (part.length() < longestPart || U16_IS_LEAD(part.charAt(part.length() - 1)))) {
            part.append(unitAt(bytes, unit, order));
            ++unit;
        }
        if (part.isBogus()) {
            throw std::bad_alloc();
        }
        part.toUTF8String(result);
    }
    return result;
}

CutBytes cutAtZero(std::span<const std::uint8_t> bytes) noexcept {
    const auto zero = std::ranges::find(bytes, std::uint8_t{0});
    const auto length = static_cast<std::size_t>(zero - bytes.begin());
    return {bytes.first(length), bytes.subspan(std::min(length + 1, bytes.size()))};
}

CutBytes cutAtWideZero(std::span<const std::uint8_t> bytes) noexcept {
    for (std::size_t unit = 0; unit < bytes.size() / 2; ++unit) {
        if (bytes[2 * unit] == 0 && bytes[2 * unit + 1] == 0) {
            return {bytes.first(2 * unit), bytes.subspan(2 * unit + 2)};
        }
    }
    return {bytes, {}};
}

std::optional<Comment> decodeComment(std::span<const std::uint8_t> bytes, std::endian fileOrder) {
    using std::string_view_literals::operator""sv;
    struct Prefix {
        std::string_view bytes;
        std::string_view set;
    };
    static constexpr std::array prefixes{
        Prefix{"ASCII\0\0\0"sv, "ASCII"}, Prefix{"JIS\0\0\0\0\0"sv, "JIS"},
        Prefix{"UNICODE\0"sv, "UNICODE"}, Prefix{"\0\0\0\0\0\0\0\0"sv, "UNDEFINED"}};
    constexpr std::size_t prefixLength = 8;
    if (bytes.size() < prefixLength) {
        return std::nullopt;
    }
    const auto* prefix =
        std::ranges::find(prefixes, asCharacters(bytes.first(prefixLength)), &Prefix::bytes);
    if (prefix == prefixes.end()) {
        return std::nullopt;
    }
    const auto text = bytes.subspan(prefixLength);
    if (prefix->set == "UNICODE") {
        const CutBytes cut = cutAtWideZero(text);
        return Comment{prefix->set, decodeUtf16(cut.text, orderOfUtf16(cut.text, fileOrder)),
                       cut.behind};
    }
    const CutBytes cut = cutAtZero(text);
    return Comment{prefix->set,
                   prefix->set == "JIS" ? decodeJis(cut.text) : decodeText(asCharacters(cut.text)),
                   cut.behind};
}

}  // namespace corvinex::inspect::reading
