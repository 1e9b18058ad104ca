#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "host/interface/array.h"
#include "host/interface/platform.h"
#include "host/values/value.h"

using fl::i18n::codecvt_mode;
using fl::i18n::codecvt_string_to_ustring;
using fl::i18n::detect_charset;
using fl::i18n::KvLocale;
using fl::i18n::to_ustring;
using namespace std::string_literals;

namespace {

/// Makes a locale current and, at its end, the one before.
class ScopedLocale {
  public:
    explicit ScopedLocale(const char* name) : previous_(std::setlocale(LC_ALL, nullptr)) {
        found_ = std::setlocale(LC_ALL, name) != nullptr;
    }
    ~ScopedLocale() { std::setlocale(LC_ALL, previous_.c_str()); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;
    [[nodiscard]] bool found() const noexcept { return found_; }

  private:
    std::string previous_;
    bool found_;
};

struct BadUtf8 {
    std::string bytes;
    std::u16string text;
};

/// By the Unicode standard's practice for maximal subparts.
const BadUtf8 badUtf8[] = {
    {"a\xC3", u"a\uFFFD"},                      // cut after a lead byte
    {"\xE2\x82", u"\uFFFD"},                    // cut after two of three
    {"\xE2\x82z", u"\uFFFDz"},                  //
    {"\xF0\x9F\x98z", u"\uFFFDz"},              // three of four are one subpart
    {"\xF0\x9F\x98\xC3\xA9", u"\uFFFD\u00E9"},  // the next sequence starts anew
    {"\xC0\x80", u"\uFFFD\uFFFD"},              // overlong: no byte of it can start one
    {"\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"},    // overlong
    {"\xF0\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // a surrogate
    {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond U+10FFFF
    {"\xFE\xFF", u"\uFFFD\uFFFD"},
    {"\x80\x80", u"\uFFFD\uFFFD"},
    {"\xE2\x82\xAC\xE2\x82", u"\u20AC\uFFFD"},
    {"\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64",
     u"a\uFFFD\uFFFD\uFFFD"
     u"b\uFFFD"
     u"c\uFFFD\uFFFD"
     u"d"},
};

std::u16string convert(const std::string& bytes, const std::string& charset) {
    return codecvt_string_to_ustring(bytes, charset, codecvt_mode::lenient, KvLocale::system);
}

std::string detected(const std::string& bytes) {
    return detect_charset(bytes.data(), bytes.size(), "?");
}

}  // namespace

TEST(LocaleText, IsUtf8InAUtf8Locale) {
    const ScopedLocale locale("C.UTF-8");
    ASSERT_TRUE(locale.found());
    EXPECT_EQ(to_ustring("gr\xC3\xBC\xC3\x9F"), u"gr\u00FC\u00DF");
    EXPECT_EQ(to_ustring(""), u"");
    EXPECT_EQ(to_ustring(std::string("a\0b", 3)), std::u16string(u"a\0b", 3));
    for (const BadUtf8& sample : badUtf8) {
        EXPECT_EQ(to_ustring(sample.bytes), sample.text);
    }
}

TEST(LocaleText, IsAsciiInTheCLocale) {
    const ScopedLocale locale("C");
    EXPECT_EQ(to_ustring("plain"), u"plain");
    EXPECT_EQ(to_ustring("a\xC3\xBC"), u"a\uFFFD\uFFFD");
    EXPECT_EQ(to_ustring("\x1A"), u"\x1A");
}

TEST(LocaleText, FollowsTheLocaleAsItChanges) {
    {
        const ScopedLocale locale("C.UTF-8");
        ASSERT_TRUE(locale.found());
        EXPECT_EQ(to_ustring("\xC3\xBC"), u"\u00FC");
    }
    const ScopedLocale locale("C");
    EXPECT_EQ(to_ustring("\xC3\xBC"), u"\uFFFD\uFFFD");
}

TEST(LocaleText, OneConversionLeavesNothingToTheNext) {
    const ScopedLocale locale("C.UTF-8");
    ASSERT_TRUE(locale.found());
    EXPECT_EQ(to_ustring("\xE2\x82"), u"\uFFFD");
    EXPECT_EQ(to_ustring("\xAC"), u"\uFFFD");
}

TEST(LocaleText, BadSequencesAcrossTheInnerLimitsOfLongTextsAreOneToo) {
    const ScopedLocale locale("C.UTF-8");
    ASSERT_TRUE(locale.found());
    for (std::size_t before = (1U << 20U) - 4; before <= (1U << 20U) + 1; ++before) {
        const std::u16string text = to_ustring(std::string(before, 'x') + "\xF0\x9F\x98z");
        ASSERT_EQ(text.size(), before + 2);
        EXPECT_EQ(text.substr(before), u"\uFFFDz");
    }
}

TEST(NarrowText, IsUtf8WhateverTheLocale) {
    const ScopedLocale locale("C");
    for (const BadUtf8& sample : badUtf8) {
        EXPECT_EQ(host::textOf(*matrix::create(sample.bytes.data(), sample.bytes.size())),
                  sample.text);
    }
}

TEST(NamedCharset, ConvertsFromThatSet) {
    EXPECT_EQ(convert("caf\xE9", "ISO-8859-1"), u"caf\u00E9");
    EXPECT_EQ(convert("caf\xC3\xA9", "UTF-8"), u"caf\u00E9");
    EXPECT_EQ(convert("\xCF\xF0\xE8", "windows-1251"), u"\u041F\u0440\u0438");
    EXPECT_EQ(convert("\x93\xFA\x96\x7B", "Shift_JIS"), u"\u65E5\u672C");
    EXPECT_EQ(convert(std::string("\0a\0b", 4), "UTF-16BE"), u"ab");
}

TEST(NamedCharset, WithoutAConverterIsLatin1) {
    for (const char* name : {"<unknown>", "", "no such set", "IBM424_rtl"}) {
        EXPECT_EQ(convert("caf\xE9\x80", name), u"caf\u00E9\x80") << name;
    }
}

TEST(NamedCharset, LenientModeReplacesBadSequences) {
    for (const BadUtf8& sample : badUtf8) {
        EXPECT_EQ(convert(sample.bytes, "UTF-8"), sample.text);
    }
    EXPECT_EQ(convert("a\xFF", "Shift_JIS"), u"a\uFFFD");
    EXPECT_EQ(convert("a\x81", "windows-1253"), u"a\x81");
    EXPECT_EQ(convert("\xFF", "EUC-JP"), u"\uFFFD");
    EXPECT_EQ(convert("\xFF", "US-ASCII"), u"\uFFFD");
}

TEST(NamedCharset, StrictModeRaises) {
    const auto strict = [](const std::string& bytes) {
        return codecvt_string_to_ustring(bytes, "UTF-8", codecvt_mode::strict, KvLocale::system);
    };
    EXPECT_EQ(strict("\xC3\xA9"), u"\u00E9");
    EXPECT_THROW(strict("\xC3"), std::range_error);
    EXPECT_THROW(strict("\xFFz"), std::range_error);
}

TEST(CharsetDetection, TakesBytesThatAreValidUtf8ForUtf8) {
    for (const std::string& text : {
             "24-70mm f/2.8"s,
             "EF-S18-55mm f/3.5-5.6 IS\0"s,  // with the zero that closes a text
             "0000304011\0"s,
             "2019:07:04 18:02:51\0"s,
             "N\0"s,
             "7"s,
             "12\0\0\0\0\0\0\0\0"s,  // filled up to a fixed length
             "M\0o\0d\0e\0l\0"s,     // UTF-16 without a mark cannot be told from it
             "Gr\xC3\xBC\xC3\x9F aus M\xC3\xBCnchen \xE2\x82\xAC\0"s,
             "\xE6\x97\xA5\xE6\x9C\xAC"s,
             "\xEF\xBB\xBFwith a mark"s,
         }) {
        EXPECT_EQ(detected(text), "UTF-8") << text;
    }
}

TEST(CharsetDetection, NamesTheSingleByteSetOfATypicalText) {
    const std::string latin1 =
        "Le ch\xE2teau \xE9tait d\xE9j\xE0 ferm\xE9 quand nous sommes arriv\xE9s \xE0 la gare";
    EXPECT_EQ(detected(latin1), "ISO-8859-1");
    EXPECT_EQ(detected(latin1 + '\0'), "ISO-8859-1");
    EXPECT_EQ(detected("Foto: J\xFCrgen M\xFCller, M\xFCnchen\0"s), "ISO-8859-1");
}

TEST(CharsetDetection, NamesTheMultiByteSetOfATypicalText) {
    // A sentence in kanji, hiragana and full stops.
    const std::string japanese =
        "\x82\xB1\x82\xCC\x8E\xCA\x90\x5E\x82\xCD\x93\x8C\x8B\x9E\x82\xC5\x8E\x42\x82\xE8\x82\xDC"
        "\x82\xB5\x82\xBD\x81\x42\x93\xFA\x96\x7B\x8C\xEA\x82\xC5\x82\xB7\x81\x42";
    EXPECT_EQ(detected(japanese), "Shift_JIS");
    EXPECT_EQ(detected(japanese + '\0'), "Shift_JIS");
}

TEST(CharsetDetection, NamesUtf16AndUtf32WhereTheirByteOrderMarkStandsFirst) {
    EXPECT_EQ(detected("\xFE\xFF\0a\0b\0c"s), "UTF-16BE");
    EXPECT_EQ(detected("\xFF\xFE\x61\0\x62\0\x63\0"s), "UTF-16LE");
    EXPECT_EQ(detected("\xFF\xFE\x61\0\0\0"s), "UTF-16LE");
    EXPECT_EQ(detected("\0\0\xFE\xFF\0\0\0a"s), "UTF-32BE");
    EXPECT_EQ(detected("\xFF\xFE\0\0\x61\0\0\0"s), "UTF-32LE");
}

TEST(CharsetDetection, NamesNoUtf16OrUtf32WithoutAByteOrderMark) {
    for (int first = 0x80; first < 0x100; ++first) {
        for (int second = 0; second < 0x100; ++second) {
            const std::string text{static_cast<char>(first),
                                   '\0',
                                   static_cast<char>(second),
                                   '\0',
                                   'a',
                                   '\0',
                                   'b',
                                   '\0'};
            const std::string name = detected(text);
            ASSERT_FALSE(name.starts_with("UTF-16")) << first << " " << second;
            ASSERT_FALSE(name.starts_with("UTF-32")) << first << " " << second;
        }
    }
}

TEST(CharsetDetection, LooksForValidUtf8InAllOfALongText) {
    const std::string ascii(std::size_t{1} << 20U, 'x');
    EXPECT_EQ(detected(ascii + "\xC3\xA9"), "UTF-8");
    EXPECT_NE(detected("\xE9" + ascii), "UTF-8");
}

TEST(CharsetDetection, TakesATextThatIsCutInALetterForWhatItWasBefore) {
    EXPECT_EQ(detected("Gr\xC3\xBC\xC3\x9F aus M\xC3\xBCnchen und K\xC3\xB6ln, \xE2\x82"), "UTF-8");
}

TEST(CharsetDetection, GivesTheCallersNameForNothing) {
    EXPECT_EQ(detect_charset(nullptr, 0, "<unknown>"), "<unknown>");
    EXPECT_EQ(detect_charset("a", 0, "none"), "none");
    EXPECT_EQ(detect_charset("\0\0\0", 3, "none"), "none");
}

TEST(CharsetDetection, AnswersForAnyShortBytesWithASetThatConverts) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; second += 5) {
            const std::string bytes = {static_cast<char>(first), static_cast<char>(second)};
            const std::string name = detect_charset(bytes.data(), bytes.size(), "<unknown>");
            EXPECT_FALSE(name.empty());
            EXPECT_LE(convert(bytes, name).size(), 2U);
        }
    }
}

TEST(CharsetDetection, TakesLargeInputs) {
    const std::string bytes(std::size_t{64} << 20U, '\xE9');
    EXPECT_FALSE(detect_charset(bytes.data(), bytes.size(), "<unknown>").empty());
}
