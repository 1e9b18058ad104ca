#include "host/platform/converter.h"

#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>

namespace host {

namespace {

// ICU counts the units of one call in 32 bits; longer texts go through in pieces.
constexpr std::size_t pieceLength = std::size_t{1} << 20;
constexpr std::size_t bufferLength = 1024;

constexpr char16_t replacement = u'\uFFFD';
constexpr std::string_view replacementUtf8 = "\xEF\xBF\xBD";

// ICU's own substituting callback writes U+001A for single bytes of some character sets.
void U_CALLCONV replaceBytes(const void*, UConverterToUnicodeArgs* arguments, const char*, int32_t,
                             UConverterCallbackReason reason, UErrorCode* status) {
    if (reason <= UCNV_IRREGULAR) {
        *status = U_ZERO_ERROR;
        ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
    }
}

void U_CALLCONV replaceUnits(const void*, UConverterFromUnicodeArgs* arguments, const UChar*,
                             int32_t, UChar32, UConverterCallbackReason reason,
                             UErrorCode* status) {
    if (reason <= UCNV_IRREGULAR) {
        *status = U_ZERO_ERROR;
        ucnv_cbFromUWriteBytes(arguments, replacementUtf8.data(),
                               static_cast<int32_t>(replacementUtf8.size()), 0, status);
    }
}

bool startsWithAscii(const UConverter& converter) {
    const UConverterType type = ucnv_getType(&converter);
    return type == UCNV_UTF8 || type == UCNV_US_ASCII || type == UCNV_LATIN_1;
}

void raiseOnFailure(UErrorCode status) {
    if (status == U_MEMORY_ALLOCATION_ERROR) {
        throw std::bad_alloc();
    }
    if (U_FAILURE(status)) {
        throw std::range_error(std::string("the text cannot be converted: ") + u_errorName(status));
    }
}

/// Puts a text through a converter in one direction, from the converter's initial state.
template <typename Output, typename Input, typename Convert>
std::basic_string<Output> convert(UConverter& converter, std::basic_string_view<Input> input,
                                  Convert&& convertPiece) {
    ucnv_reset(&converter);
    std::basic_string<Output> result;
    result.reserve(input.size());
    std::array<Output, bufferLength> buffer{};
    const Input* source = input.data();
    const Input* const end = source + input.size();
    bool done = input.empty();
    while (!done) {
        const auto left = static_cast<std::size_t>(end - source);
        const Input* const pieceEnd = source + std::min(left, pieceLength);
        const bool last = pieceEnd == end;
        Output* target = buffer.data();
        UErrorCode status = U_ZERO_ERROR;
        convertPiece(&converter, &target, buffer.data() + buffer.size(), &source, pieceEnd, nullptr,
                     static_cast<UBool>(last), &status);
        result.append(buffer.data(), target);
        if (status != U_BUFFER_OVERFLOW_ERROR) {
            raiseOnFailure(status);
            done = last;
        }
    }
    return result;
}

std::u16string utf16Of(UConverter& converter, std::string_view bytes, UConverterToUCallback onBad) {
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(&converter, onBad, nullptr, nullptr, nullptr, &status);
    raiseOnFailure(status);
    return convert<char16_t>(converter, bytes, ucnv_toUnicode);
}

std::string utf8Of(std::u16string_view text, UConverterFromUCallback onBad) {
    if (isAscii(text)) {
        std::string ascii(text.size(), '\0');
        std::transform(text.begin(), text.end(), ascii.begin(),
                       [](char16_t unit) { return static_cast<char>(unit); });
        return ascii;
    }
    UConverter& converter = utf8Converter();
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setFromUCallBack(&converter, onBad, nullptr, nullptr, nullptr, &status);
    raiseOnFailure(status);
    return convert<char>(converter, text, ucnv_fromUnicode);
}

}  // namespace

// All units together, so that several are looked at at once.
bool isAscii(std::string_view bytes) noexcept {
    unsigned char units = 0;
    for (const char c : bytes) {
        units |= static_cast<unsigned char>(c);
    }
    return units < 0x80;
}

bool widenAscii(std::string_view bytes, char16_t* units) noexcept {
    unsigned char all = 0;
    for (const char c : bytes) {
        all |= static_cast<unsigned char>(c);
        *units = static_cast<unsigned char>(c);
        ++units;
    }
    return all < 0x80;
}

bool isAscii(std::u16string_view text) noexcept {
    char16_t units = 0;
    for (const char16_t unit : text) {
        units |= unit;
    }
    return units < 0x80;
}

ConverterPtr openConverter(const std::string& charset) {
    // ICU takes no name at all as its default converter's.
    if (charset.empty()) {
        return nullptr;
    }
    UErrorCode status = U_ZERO_ERROR;
    ConverterPtr converter(ucnv_open(charset.c_str(), &status));
    if (status == U_MEMORY_ALLOCATION_ERROR) {
        throw std::bad_alloc();
    }
    return U_SUCCESS(status) ? std::move(converter) : nullptr;
}

UConverter& utf8Converter() {
    thread_local const ConverterPtr converter = openConverter("UTF-8");
    if (converter == nullptr) {
        throw std::runtime_error("ICU has no UTF-8 converter");
    }
    return *converter;
}

// Most texts are ASCII, and most character sets have it at their start: these need no converter.
std::u16string lenientUtf16(UConverter& converter, std::string_view bytes) {
    if (isAscii(bytes) && startsWithAscii(converter)) {
        return {bytes.begin(), bytes.end()};
    }
    return utf16Of(converter, bytes, replaceBytes);
}

std::u16string strictUtf16(UConverter& converter, std::string_view bytes) {
    if (isAscii(bytes) && startsWithAscii(converter)) {
        return {bytes.begin(), bytes.end()};
    }
    return utf16Of(converter, bytes, UCNV_TO_U_CALLBACK_STOP);
}

std::string lenientUtf8(std::u16string_view text) {
    return utf8Of(text, replaceUnits);
}

std::string strictUtf8(std::u16string_view text) {
    return utf8Of(text, UCNV_FROM_U_CALLBACK_STOP);
}

}  // namespace host
