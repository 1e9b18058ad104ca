#include <langinfo.h>
#include <unicode/ucsdet.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "host/interface/platform.h"
#include "host/platform/converter.h"

namespace {

struct CloseDetector {
    void operator()(UCharsetDetector* detector) const noexcept { ucsdet_close(detector); }
};
using DetectorPtr = std::unique_ptr<UCharsetDetector, CloseDetector>;

/// This thread's detector. It is kept because the library does not tell, and does not survive, a
/// lack of memory while it makes one: the memory is asked for beforehand, once.
UCharsetDetector& charsetDetector() {
    thread_local DetectorPtr detector;
    if (detector == nullptr) {
        constexpr std::size_t moreThanItTakes = std::size_t{64} << 10;
        ::operator delete(::operator new(moreThanItTakes));
        UErrorCode status = U_ZERO_ERROR;
        detector.reset(ucsdet_open(&status));
        if (detector == nullptr) {
            throw std::bad_alloc();
        }
    }
    return *detector;
}

// What every byte sequence can be read as.
constexpr const char* fallbackCharset = "ISO-8859-1";

host::ConverterPtr openOrFallback(const std::string& charset) {
    host::ConverterPtr converter = host::openConverter(charset);
    return converter != nullptr ? std::move(converter) : host::openConverter(fallbackCharset);
}

/// A converter for the character set of the locale that is current now.
UConverter& localeConverter() {
    thread_local std::pair<std::string, host::ConverterPtr> current;
    const char* const codeset = nl_langinfo(CODESET);
    if (current.second == nullptr || current.first != codeset) {
        current = {codeset, openOrFallback(codeset)};
    }
    return *current.second;
}

}  // namespace

namespace fl::i18n {

std::u16string to_ustring(const std::string& text) {
    return host::lenientUtf16(localeConverter(), text);
}

std::string detect_charset(const char* bytes, std::size_t count,
                           const std::string& unrecognizedName) {
    if (count == 0) {
        return unrecognizedName;
    }
    UCharsetDetector* const detector = &charsetDetector();
    UErrorCode status = U_ZERO_ERROR;
    // The detector counts in 32 bits; what lies beyond cannot change much.
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
    ucsdet_setText(detector, bytes, static_cast<std::int32_t>(std::min(count, most)), &status);
    const UCharsetMatch* const match = ucsdet_detect(detector, &status);
    const char* const name = match == nullptr ? nullptr : ucsdet_getName(match, &status);
    if (status == U_MEMORY_ALLOCATION_ERROR) {
        throw std::bad_alloc();
    }
    return U_FAILURE(status) || name == nullptr ? unrecognizedName : name;
}

std::u16string codecvt_string_to_ustring(const std::string& bytes, const std::string& charset,
                                         codecvt_mode mode, KvLocale /*locale*/) {
    const host::ConverterPtr converter = openOrFallback(charset);
    return mode == codecvt_mode::lenient ? host::lenientUtf16(*converter, bytes)
                                         : host::strictUtf16(*converter, bytes);
}

}  // namespace fl::i18n
