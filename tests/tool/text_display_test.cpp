#include "tool/text_display.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "tool/number_options.h"
#include "tool/number_text.h"

namespace {

using namespace std::string_literals;

TEST(TextDisplay, PrintableTextStaysAsItIs) {
    EXPECT_EQ(tool::visibleText(u"Grüße, 世界 \U0001F4F7"), "Grüße, 世界 \U0001F4F7");
}

TEST(TextDisplay, ControlsAndDirectionMarksAreMadeVisible) {
    EXPECT_EQ(tool::visibleText(u"a\nb\rc\td\u001b[31m\u0000e\u202e\u009b"s),
              "a\\nb\\rc\\td\\u001b[31m\\u0000e\\u202e\\u009b");
}

TEST(TextDisplay, LoneSurrogatesAreMadeVisible) {
    EXPECT_EQ(tool::visibleText(u"a\xD83D\xDCF7\xD83D"s), "a\U0001F4F7\\ud83d");
    EXPECT_EQ(tool::visibleText(u"\xDCF7x"s), "\\udcf7x");
}

TEST(TextDisplay, QuotesAndBackslashesAreEscapedInsideQuotesOnly) {
    EXPECT_EQ(tool::quotedText(u"a\"b\\c"), R"("a\"b\\c")");
    EXPECT_EQ(tool::visibleText(u"a\"b\\c"), R"(a"b\c)");
}

TEST(TextDisplay, EachByteThatIsNotUtf8IsAReplacementCharacter) {
    EXPECT_EQ(tool::visibleText("a\xE4\n\xC3\xBC.tif\xE2\x82"s), "a\uFFFD\\nü.tif\uFFFD\uFFFD");
    EXPECT_EQ(tool::visibleText("\xED\xA0\x80"s), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(tool::visibleText("\xFF\xF0\x9F\x93\xB7\x9F"s), "\uFFFD\U0001F4F7\uFFFD");
}

TEST(TextDisplay, Utf8IsShownAsItsUtf16Is) {
    // Each byte in front of each start of a character, whole and cut.
    const std::string characters = "\u00A0\u061C\u200B\uFFF9\uFFFD\U0001F4F7 ~\x7F";
    for (int first = 0; first < 256; ++first) {
        for (std::size_t start = 0; start < characters.size(); ++start) {
            const std::string text = static_cast<char>(first) + characters.substr(start);
            const std::string cut = text.substr(0, text.size() / 2);
            EXPECT_EQ(tool::visibleText(text), tool::visibleText(tool::lenientUtf16(text)));
            EXPECT_EQ(tool::visibleText(cut), tool::visibleText(tool::lenientUtf16(cut)));
        }
    }
}

TEST(NumberText, HasTheFewestDigitsThatReadBack) {
    EXPECT_EQ(tool::numberText(8), "8");
    EXPECT_EQ(tool::numberText(0.1), "0.1");
    EXPECT_EQ(tool::numberText(-2.5), "-2.5");
    EXPECT_EQ(tool::numberText(1e30), "1e+30");
    EXPECT_EQ(tool::numberText(0), "0");
    EXPECT_EQ(tool::numberText(-0.0), "-0");
    EXPECT_EQ(tool::numberText(99999), "99999");
    EXPECT_EQ(tool::numberText(100000), "100000");
    EXPECT_EQ(tool::numberText(0.0001), "0.0001");
    EXPECT_EQ(tool::numberText(0.00001), "0.00001");
    EXPECT_EQ(tool::numberText(0.000009), "9e-06");
    EXPECT_EQ(tool::numberText(-0.000012345678901234567), "-0.000012345678901234568");
    EXPECT_EQ(tool::numberText(1e16), "1e+16");
    EXPECT_EQ(tool::numberText(-123456789), "-123456789");
    EXPECT_EQ(tool::numberText(9007199254740991), "9007199254740991");
    EXPECT_EQ(tool::numberText(9007199254740992), "9007199254740992");
    EXPECT_EQ(tool::numberText(1.0 / 3), "0.3333333333333333");
}

TEST(NumberText, NamesWhatIsNotFinite) {
    EXPECT_EQ(tool::numberText(std::numeric_limits<double>::quiet_NaN()), "NaN");
    EXPECT_EQ(tool::numberText(std::numeric_limits<double>::infinity()), "Infinity");
    EXPECT_EQ(tool::numberText(-std::numeric_limits<double>::infinity()), "-Infinity");
}

TEST(NumberOptions, WholeNumbersGoUpToTheLastExactDouble) {
    EXPECT_EQ(tool::wholeNumber("0"), 0U);
    EXPECT_EQ(tool::wholeNumber("010"), 10U);
    EXPECT_EQ(tool::wholeNumber("9007199254740992"), 9007199254740992U);
    EXPECT_EQ(tool::wholeNumber("9007199254740993"), std::nullopt);
    EXPECT_EQ(tool::wholeNumber("18446744073709551616"), std::nullopt);
    for (const char* text : {"", "-1", "+1", "1.0", "1e3", "0x10", " 1", "1 "}) {
        EXPECT_EQ(tool::wholeNumber(text), std::nullopt) << text;
    }
}

TEST(NumberOptions, AnyNumberIsAnyDouble) {
    EXPECT_EQ(tool::anyNumber("-1"), -1.0);
    EXPECT_EQ(tool::anyNumber("2.9"), 2.9);
    EXPECT_EQ(tool::anyNumber("1e30"), 1e30);
    EXPECT_EQ(tool::anyNumber("-inf"), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(tool::anyNumber("nan").value()));
    for (const char* text : {"", "one", "1,5", "1.5x", "0x10"}) {
        EXPECT_EQ(tool::anyNumber(text), std::nullopt) << text;
    }
}

}  // namespace
