#include "inspect/reading/icu_charsets.h"

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <new>

#include "icu/icu_memory.h"

namespace corvinex::inspect::reading {
namespace {

struct CloseDetector {
    void operator()(UCharsetDetector* detector) const noexcept { ucsdet_close(detector); }
};
struct CloseConverter {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
};
using Detector = std::unique_ptr<UCharsetDetector, CloseDetector>;
using Converter = std::unique_ptr<UConverter, CloseConverter>;

/// Sets that are taken from a guess. Not UTF-16 or UTF-32: what a field of single bytes looks like
/// them by is chance.
bool isTrusted(std::string_view set) {
    constexpr std::array families{std::string_view("ISO-8859-"), std::string_view("windows-125")};
    constexpr std::array sets{std::string_view("Shift_JIS"), std::string_view("EUC-JP"),
                              std::string_view("EUC-KR"),    std::string_view("GB18030"),
                              std::string_view("Big5"),      std::string_view("KOI8-R")};
    return std::ranges::find(sets, set) != sets.end() ||
           std::ranges::any_of(families, [&](auto family) { return set.starts_with(family); });
}

/// A lack of memory is no property of the text.
void raiseWithoutMemory(UErrorCode status) {
    if (status == U_MEMORY_ALLOCATION_ERROR) {
        throw std::bad_alloc();
    }
}

std::string toUtf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

struct Utf8Character {
    std::array<char, 4> bytes{};  ///< a power of two, to be copied at once
    std::uint8_t length = 0;
};

/// By their bytes in the fallback set.
constexpr std::array<Utf8Character, 256> fallbackCharacters() {
    // Bytes 0x80 to 0x9F; the others are the characters of their codes.
    constexpr std::array<std::uint16_t, 32> others{
        0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    std::array<Utf8Character, 256> characters{};
    for (std::size_t byte = 0; byte < characters.size(); ++byte) {
        const bool isOther = byte >= 0x80 && byte <= 0x9F;
        const auto code = isOther ? others.at(byte - 0x80) : static_cast<std::uint16_t>(byte);
        Utf8Character& character = characters.at(byte);
        std::array<std::uint8_t, U8_MAX_LENGTH> units{};
        U8_APPEND_UNSAFE(units, character.length, code);
        std::ranges::copy(units, character.bytes.begin());
    }
    return characters;
}

}  // namespace

std::string_view guessCharset(std::string_view bytes) {
    constexpr std::int32_t leastConfidence = 50;
    bytes = bytes.substr(0, mostGuessedBytes);
    const IcuMemory memory;
    UErrorCode status = U_ZERO_ERROR;
    const Detector detector(ucsdet_open(&status));
    ucsdet_setText(detector.get(), bytes.data(), static_cast<std::int32_t>(bytes.size()), &status);
    const UCharsetMatch* match = ucsdet_detect(detector.get(), &status);
    raiseWithoutMemory(status);
    if (U_FAILURE(status) || match == nullptr ||
        ucsdet_getConfidence(match, &status) < leastConfidence) {
        return fallbackCharset;
    }
    // Names are constant data of ICU, which the match does not own.
    const char* name = ucsdet_getName(match, &status);
    return U_SUCCESS(status) && isTrusted(name) ? std::string_view(name) : fallbackCharset;
}

std::optional<std::string> convertFrom(std::string_view bytes, std::string_view set) {
    if (set == fallbackCharset) {
        return convertFromFallback(bytes);
    }
    const IcuMemory memory;
    UErrorCode status = U_ZERO_ERROR;
    const Converter converter(ucnv_open(std::string(set).c_str(), &status));
    raiseWithoutMemory(status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    const icu::UnicodeString text(bytes.data(), static_cast<std::int32_t>(bytes.size()),
                                  converter.get(), status);
    raiseWithoutMemory(status);
    return U_SUCCESS(status) ? std::optional(toUtf8(text)) : std::nullopt;
}

std::string convertFromFallback(std::string_view bytes) {
    static constexpr std::array<Utf8Character, 256> characters = fallbackCharacters();
    // All bytes of a character's row are copied: that is quicker than as many as it has.
    constexpr std::size_t partSize = 512;
    std::array<char, partSize * sizeof(Utf8Character::bytes)> part{};
    std::string result;
    constexpr std::size_t usualGrowth = 2;
    result.reserve(usualGrowth * bytes.size());
    while (!bytes.empty()) {
        const std::string_view taken = bytes.substr(0, partSize);
        char* end = part.data();
        for (const char byte : taken) {
            const Utf8Character& character = characters[static_cast<std::uint8_t>(byte)];
            std::ranges::copy(character.bytes, end);
            end += character.length;
        }
        result.append(part.data(), end);
        bytes.remove_prefix(taken.size());
    }
    return result;
}

}  // namespace corvinex::inspect::reading
