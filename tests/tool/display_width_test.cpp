#include "tool/display_width.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

Lines brokenInto(std::string_view text, std::size_t columns) {
    Lines lines;
    while (!text.empty()) {
        lines.emplace_back(tool::takeLine(text, columns));
    }
    return lines;
}

/// A locale that knows characters other than ASCII.
class DisplayWidth : public testing::Test {
  protected:
    void SetUp() override {
        if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) {
            GTEST_SKIP() << "there is no such locale";
        }
    }
    void TearDown() override { std::setlocale(LC_CTYPE, "C"); }
};

}  // namespace

TEST_F(DisplayWidth, CountsColumnsAndNotBytes) {
    EXPECT_EQ(tool::columnsOf("abc"), 3U);
    EXPECT_EQ(tool::columnsOf("\xC3\xA4\xE2\x82\xAC"), 2U);
    EXPECT_EQ(tool::columnsOf("\xE5\x86\x99\xE7\x9C\x9F"), 4U);  // two Chinese characters
    EXPECT_EQ(tool::columnsOf("a\xCC\x88"), 1U);                 // a combining accent
}

TEST_F(DisplayWidth, CutsBetweenCharacters) {
    EXPECT_EQ(tool::firstColumns("\xE5\x86\x99\xE7\x9C\x9F", 3), "\xE5\x86\x99");
    EXPECT_EQ(tool::firstColumns("abc", 3), "abc");
    EXPECT_EQ(tool::firstColumns("abcd", 3), "abc");
}

TEST_F(DisplayWidth, BreaksLinesAtBlanks) {
    EXPECT_EQ(brokenInto("one two three", 7), (Lines{"one two", "three"}));
    EXPECT_EQ(brokenInto("one two three", 6), (Lines{"one", "two", "three"}));
    EXPECT_EQ(brokenInto("one   two", 4), (Lines{"one", "two"}));
}

TEST_F(DisplayWidth, BreaksWordsThatAreTooLongAndKeepsIndentation) {
    EXPECT_EQ(brokenInto("abcdefgh", 3), (Lines{"abc", "def", "gh"}));
    EXPECT_EQ(brokenInto("  abcdef", 5), (Lines{"  abc", "def"}));
    EXPECT_EQ(brokenInto("\xE5\x86\x99\xE7\x9C\x9F", 1), (Lines{"\xE5\x86\x99", "\xE7\x9C\x9F"}));
}
