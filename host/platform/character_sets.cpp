#include "host/platform/character_sets.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>
#include <unicode/ucsdet.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <span>
#include <stdexcept>
#include <utility>

#include "host/platform/ascii.h"
#include "host/platform/unicode.h"
#include "icu/icu_memory.h"

namespace host {

namespace {

// ICU counts the units of one call in 32 bits; longer texts go through in parts.
constexpr std::size_t partLength = std::size_t{1} << 20;
constexpr std::size_t bufferLength = 1024;

struct CloseConverter {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
};
using ConverterPtr = std::unique_ptr<UConverter, CloseConverter>;

struct CloseDetector {
    void operator()(UCharsetDetector* detector) const noexcept { ucsdet_close(detector); }
};
using DetectorPtr = std::unique_ptr<UCharsetDetector, CloseDetector>;

// ICU's own substituting callback writes U+001A for single bytes of some character sets.
void U_CALLCONV replaceBytes(const void*, UConverterToUnicodeArgs* arguments, const char*, int32_t,
                             UConverterCallbackReason reason, UErrorCode* status) {
    if (reason <= UCNV_IRREGULAR) {
        constexpr char16_t replacement = u'\uFFFD';
        *status = U_ZERO_ERROR;
        ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
    }
}

/// Whether a set is one of those that most locales and files have, which begin with ASCII.
bool beginsWithAscii(std::string_view charset) noexcept {
    constexpr std::string_view names[] = {"UTF-8", "ANSI_X3.4-1968", "US-ASCII", "ISO-8859-1",
                                          "windows-1252"};
    return std::find(std::begin(names), std::end(names), charset) != std::end(names);
}

void raiseOnFailure(UErrorCode status) {
    if (status == U_MEMORY_ALLOCATION_ERROR) {
        throw std::bad_alloc();
    }
    if (U_FAILURE(status)) {
        throw std::range_error(std::string("the text cannot be converted: ") + u_errorName(status));
    }
}

/// Puts a text through a converter.
std::u16string convert(UConverter& converter, std::string_view bytes) {
    std::u16string result;
    result.reserve(bytes.size());
    std::array<char16_t, bufferLength> buffer{};
    const char* source = bytes.data();
    const char* const end = source + bytes.size();
    bool done = bytes.empty();
    while (!done) {
        const auto left = static_cast<std::size_t>(end - source);
        const char* const partEnd = source + std::min(left, partLength);
        const bool last = partEnd == end;
        char16_t* target = buffer.data();
        UErrorCode status = U_ZERO_ERROR;
        ucnv_toUnicode(&converter, &target, buffer.data() + buffer.size(), &source, partEnd,
                       nullptr, static_cast<UBool>(last), &status);
        result.append(buffer.data(), target);
        if (status != U_BUFFER_OVERFLOW_ERROR) {
            raiseOnFailure(status);
            done = last;
        }
    }
    return result;
}

/// Null when ICU has none of that name.
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

ConverterPtr openOrFallback(const std::string& charset) {
    ConverterPtr converter = openConverter(charset);
    // What every byte sequence can be read as.
    return converter != nullptr ? std::move(converter) : openConverter("ISO-8859-1");
}

std::u16string utf16OfUtf8(std::string_view bytes, BadSequences badSequences) {
    if (badSequences == BadSequences::Replaced) {
        return lenientUtf16FromUtf8(bytes);
    }
    std::optional<std::u16string> text = utf16FromUtf8(bytes);
    if (!text) {
        throw std::range_error("the text is not valid UTF-8");
    }
    return std::move(*text);
}

/// Whether a text can be in a set. The detector takes many short texts for UTF-16 or UTF-32, and
/// these are believed only where a byte-order mark stands first.
bool isCredible(std::string_view charset, std::string_view bytes) noexcept {
    using namespace std::string_view_literals;
    if (charset.starts_with("UTF-16")) {
        return bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE");
    }
    if (charset.starts_with("UTF-32")) {
        return bytes.starts_with("\0\0\xFE\xFF"sv) || bytes.starts_with("\xFF\xFE\0\0"sv);
    }
    return true;
}

DetectorPtr openDetector() {
    UErrorCode status = U_ZERO_ERROR;
    DetectorPtr detector(ucsdet_open(&status));
    if (U_FAILURE(status) || detector == nullptr) {
        throw std::bad_alloc();
    }
    return detector;
}

}  // namespace

std::u16string utf16From(const std::string& charset, std::string_view bytes,
                         BadSequences badSequences) {
    if (isAscii(bytes) && beginsWithAscii(charset)) {
        return {bytes.begin(), bytes.end()};
    }
    if (charset == "UTF-8") {
        return utf16OfUtf8(bytes, badSequences);
    }
    const corvinex::IcuMemory memory;
    const ConverterPtr converter = openOrFallback(charset);
    if (converter == nullptr) {
        throw std::runtime_error("ICU has no converter for ISO-8859-1");
    }
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(
        converter.get(),
        badSequences == BadSequences::Replaced ? replaceBytes : UCNV_TO_U_CALLBACK_STOP, nullptr,
        nullptr, nullptr, &status);
    raiseOnFailure(status);
    return convert(*converter, bytes);
}

std::string likelyCharset(std::string_view bytes) {
    const corvinex::IcuMemory memory;
    const DetectorPtr detector = openDetector();
    UErrorCode status = U_ZERO_ERROR;
    // The detector takes time by the byte, and what lies beyond cannot change much.
    constexpr std::size_t most = std::size_t{64} << 10;
    ucsdet_setText(detector.get(), bytes.data(),
                   static_cast<std::int32_t>(std::min(bytes.size(), most)), &status);
    std::int32_t count = 0;
    const UCharsetMatch** const matches = ucsdet_detectAll(detector.get(), &count, &status);
    if (status == U_MEMORY_ALLOCATION_ERROR) {
        throw std::bad_alloc();
    }
    if (U_FAILURE(status) || matches == nullptr) {
        return {};
    }
    // The best first.
    for (const UCharsetMatch* match : std::span(matches, static_cast<std::size_t>(count))) {
        const char* const name = ucsdet_getName(match, &status);
        if (U_SUCCESS(status) && name != nullptr && isCredible(name, bytes)) {
            return name;
        }
    }
    return {};
}

}  // namespace host
