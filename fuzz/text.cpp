#include <array>
#include <clocale>
#include <stdexcept>
#include <string>

#include "fuzz/target.h"
#include "fuzz/value_walk.h"
#include "host/interface/array.h"
#include "host/interface/platform.h"
#include "host/platform/unicode.h"
#include "host/values/value.h"

// Text conversion and character-set detection. The input's first byte chooses the way, the rest are
// the bytes to convert.

namespace {

using fl::i18n::codecvt_mode;
using fl::i18n::KvLocale;

std::u16string converted(const std::string& bytes, const std::string& charset, codecvt_mode mode) {
    return fl::i18n::codecvt_string_to_ustring(bytes, charset, mode, KvLocale::system);
}

/// As the module takes a text of unknown character set.
void convertDetected(const std::string& bytes) {
    const std::string charset = fl::i18n::detect_charset(bytes.data(), bytes.size(), "none");
    fuzz::require(!charset.empty(), "a character set without a name");
    static_cast<void>(converted(bytes, charset, codecvt_mode::lenient));
}

void convertFrom(const std::string& bytes, std::uint8_t choice) {
    constexpr std::array<const char*, 12> charsets{
        "UTF-8",     "UTF-16LE",    "UTF-16BE",    "UTF-32LE", "ISO-8859-1", "windows-1252",
        "Shift_JIS", "ISO-2022-JP", "ISO-2022-CN", "GB18030",  "Big5",       "no such set"};
    const char* const charset = charsets[choice % charsets.size()];
    const std::u16string lenient = converted(bytes, charset, codecvt_mode::lenient);
    try {
        const std::u16string strict = converted(bytes, charset, codecvt_mode::strict);
        fuzz::require(strict == lenient, "what is sound converts in two ways");
    } catch (const std::range_error&) {
        // The bytes are not sound in the set.
    }
}

void makeValue(const std::string& bytes) {
    const matrix::unique_zxArray value = matrix::create(bytes.data(), bytes.size());
    static_cast<void>(fuzz::digestOf(value.get()));
    const auto strict = host::utf16FromUtf8(bytes);
    fuzz::require(!strict || *strict == host::textOf(*value), "sound UTF-8 converts in two ways");
    fuzz::require(!strict || host::utf8FromUtf16(*strict) == bytes, "UTF-8 does not come back");
}

void convertFromLocale(const std::string& bytes, const char* locale) {
    fuzz::require(std::setlocale(LC_ALL, locale) != nullptr, "no such locale");
    static_cast<void>(host::displayText(fl::i18n::to_ustring(bytes)));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string bytes(data + 1, data + size);
    const std::uint8_t choice = data[0];
    switch (choice) {
        case 0:
            convertFromLocale(bytes, "C");
            break;
        case 1:
            convertFromLocale(bytes, "C.UTF-8");
            break;
        case 2:
            convertDetected(bytes);
            break;
        case 3:
            makeValue(bytes);
            break;
        default:
            convertFrom(bytes, choice);
    }
    fuzz::require(host::livingValues() == 0, "a value was not destroyed");
    return 0;
}
