#include <algorithm>
#include <array>
#include <string>

#include "host-kit/check.h"
#include "host/interface/platform.h"

// Character sets: detection and conversion.

namespace hostkit {

namespace {

using namespace std::string_literals;

std::u16string lenient(std::string_view bytes, const std::string& charset) {
    return fl::i18n::codecvt_string_to_ustring(
        std::string(bytes), charset, fl::i18n::codecvt_mode::lenient, fl::i18n::KvLocale::system);
}

std::string detected(std::string_view bytes) {
    return fl::i18n::detect_charset(bytes.data(), bytes.size(), "<unknown>");
}

bool narrowTextsAreConverted(Context& /*context*/) {
    return fl::i18n::to_ustring("02-Jan-2020 03:04:05") == u"02-Jan-2020 03:04:05" &&
           fl::i18n::to_ustring("M\xC3\xA4rz \xF0\x9F\x98\x80") == u"M\u00E4rz \U0001F600" &&
           fl::i18n::to_ustring("").empty() &&
           fl::i18n::to_ustring("a\0b"s) == std::u16string(u"a\0b", 3);
}

bool narrowInvalidIsReplaced(Context& /*context*/) {
    return fl::i18n::to_ustring("a\xE2\x82 b") == u"a\uFFFD b" &&
           fl::i18n::to_ustring("\xF0\x9F\x98") == u"\uFFFD" &&
           fl::i18n::to_ustring("\xED\xA0\x80") == u"\uFFFD\uFFFD\uFFFD" &&
           fl::i18n::to_ustring("\xE9t\xE9") == u"\uFFFDt\uFFFD";
}

// Long enough that a statistical detector is sure.
constexpr std::string_view utf8Text =
    "Gr\xC3\xB6\xC3\x9F"
    "e und \xC3\x9C"
    "berma\xC3\x9F, na\xC3\xAFve caf\xC3\xA9, "
    "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E \xE4\xB8\xAD\xE6\x96\x87";
constexpr std::u16string_view utf16Text =
    u"Gr\u00F6\u00DFe und \u00DCberma\u00DF, na\u00EFve caf\u00E9, \u65E5\u672C\u8A9E "
    u"\u4E2D\u6587";

bool utf8IsDetected(Context& /*context*/) {
    return lenient(utf8Text, detected(utf8Text)) == utf16Text;
}

bool plainTextIsDetected(Context& /*context*/) {
    const std::string text = "The quick brown fox jumps over the lazy dog, and back again.";
    return lenient(text, detected(text)) == std::u16string(text.begin(), text.end());
}

bool shortTextIsDetected(Context& /*context*/) {
    const std::array texts{"NIKON\0"s, "Canon EOS 5D\0"s, "x\0"s,
                           "Fax"s,     "50 mm\0"s,        "2020:01:02 03:04:05\0"s};
    return std::ranges::all_of(texts, [](const std::string& text) {
        return lenient(text, detected(text)) == std::u16string(text.begin(), text.end());
    });
}

bool nothingIsUnrecognized(Context& /*context*/) {
    return fl::i18n::detect_charset("", 0, "<unknown>") == "<unknown>" &&
           fl::i18n::detect_charset("", 0, "another name") == "another name";
}

bool countIsRespected(Context& /*context*/) {
    const std::string text = std::string(utf8Text) + std::string(400, '\xFF');
    return lenient(utf8Text, fl::i18n::detect_charset(text.data(), utf8Text.size(), "<unknown>")) ==
           utf16Text;
}

bool charsetsAreConverted(Context& /*context*/) {
    return lenient(utf8Text, "UTF-8") == utf16Text &&
           lenient("\xE9t\xE9", "ISO-8859-1") == u"\u00E9t\u00E9" && lenient("", "UTF-8").empty() &&
           lenient("a\0b"s, "UTF-8") == std::u16string(u"a\0b", 3);
}

bool unknownCharsetsAreLatin1(Context& /*context*/) {
    const std::string bytes = "a\0\xE9\xFF"s;
    const std::u16string units{u'a', u'\0', u'\u00E9', u'\u00FF'};
    return lenient(bytes, "<unknown>") == units && lenient(bytes, "no such set") == units;
}

bool badSequencesAreReplaced(Context& /*context*/) {
    return lenient("a\xFFz", "UTF-8") == u"a\uFFFDz" && lenient("\xE2\x82", "UTF-8") == u"\uFFFD" &&
           lenient("\xF0\x9F\x98 b", "UTF-8") == u"\uFFFD b";
}

constexpr Check checks[] = {
    {"narrow-text", "to_ustring", "It must read narrow text in the encoding of the locale.",
     narrowTextsAreConverted},
    {"narrow-invalid", "to_ustring", "Each maximal invalid subpart must become one U+FFFD.",
     narrowInvalidIsReplaced},
    {"detect-utf8", "detect_charset",
     "A UTF-8 text must get a name under which codecvt_string_to_ustring reads it rightly.",
     utf8IsDetected},
    {"detect-plain", "detect_charset",
     "An ASCII text must get a name under which codecvt_string_to_ustring reads it rightly.",
     plainTextIsDetected},
    {"detect-short", "detect_charset",
     "A short ASCII text with its closing zero must not be taken for UTF-16.", shortTextIsDetected},
    {"detect-nothing", "detect_charset",
     "No bytes must give the name for what is not recognised, as the caller wrote it.",
     nothingIsUnrecognized},
    {"detect-count", "detect_charset", "It must look at no more bytes than it is told.",
     countIsRespected},
    {"convert", "codecvt_string_to_ustring",
     "It must convert all bytes, zeros among them, from the set that is named.",
     charsetsAreConverted},
    {"convert-unknown", "codecvt_string_to_ustring",
     "A set without a converter must be read as ISO-8859-1.", unknownCharsetsAreLatin1},
    {"convert-lenient", "codecvt_string_to_ustring",
     "In lenient mode bad sequences must become U+FFFD, and it must not raise.",
     badSequencesAreReplaced},
};

}  // namespace

std::span<const Check> textServiceChecks() {
    return checks;
}

}  // namespace hostkit
