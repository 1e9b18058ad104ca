#include <langinfo.h>

#include <string_view>

#include "host/interface/platform.h"
#include "host/platform/character_sets.h"
#include "host/platform/unicode.h"

namespace fl::i18n {

namespace {

/// The bytes of a text that may have zeros behind it to its full length.
std::string_view withoutClosingZeros(std::string_view bytes) noexcept {
    const std::size_t last = bytes.find_last_not_of('\0');
    return bytes.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

}  // namespace

std::u16string to_ustring(const std::string& text) {
    return host::utf16From(::nl_langinfo(CODESET), text, host::BadSequences::Replaced);
}

std::string detect_charset(const char* bytes, std::size_t count,
                           const std::string& unrecognizedName) {
    const std::string_view text = withoutClosingZeros({bytes, count});
    if (text.empty()) {
        return unrecognizedName;
    }
    if (host::isUtf8(text)) {
        return "UTF-8";
    }
    const std::string charset = host::likelyCharset(text);
    return charset.empty() ? unrecognizedName : charset;
}

std::u16string codecvt_string_to_ustring(const std::string& bytes, const std::string& charset,
                                         codecvt_mode mode, KvLocale /*locale*/) {
    return host::utf16From(
        charset, bytes,
        mode == codecvt_mode::lenient ? host::BadSequences::Replaced : host::BadSequences::Refused);
}

}  // namespace fl::i18n
