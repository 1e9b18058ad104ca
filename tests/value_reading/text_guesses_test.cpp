#include "inspect/reading/text_guesses.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "inspect/reading/charset.h"

// How many of a file's texts have their character sets guessed.

namespace {

using corvinex::inspect::reading::decodeText;
using corvinex::inspect::reading::TextGuesses;

/// "Photographed in the park in spring" in Japanese, as Shift_JIS, behind a number of its own.
std::string japaneseText(std::size_t number) {
    return std::to_string(number) +
           "\x8F\x74\x82\xCC\x8C\xF6\x89\x80\x82\xC5\x8E\x42\x89\x65\x82\xB5\x82\xDC\x82\xB5\x82"
           "\xBD";
}

/// How its first character reads when the set is known.
const std::string spring = "\xE6\x98\xA5";

bool isRead(const std::string& text) {
    return decodeText(text).find(spring) != std::string::npos;
}

/// How many of the first texts are read in their set, and whether all behind them are not.
std::size_t countRead(std::size_t texts, bool& isNoneBehind) {
    std::size_t first = 0;
    while (first < texts && isRead(japaneseText(first))) {
        ++first;
    }
    isNoneBehind = true;
    for (std::size_t number = first; number < texts; ++number) {
        isNoneBehind = isNoneBehind && !isRead(japaneseText(number));
    }
    return first;
}

TEST(TextGuesses, AreMadeForSomeThousandDifferentTextsOfASmallFileAndForNoneBehindThem) {
    TextGuesses guesses(0);
    const TextGuesses::Use use(guesses);
    bool isNoneBehind = false;
    const std::size_t read = countRead(10'000, isNoneBehind);
    EXPECT_GT(read, 2'000U);
    EXPECT_LT(read, 10'000U);
    EXPECT_TRUE(isNoneBehind);
}

TEST(TextGuesses, AreMadeForMoreTextsOfALargerFile) {
    TextGuesses guesses(100'000'000);
    const TextGuesses::Use use(guesses);
    bool isNoneBehind = false;
    EXPECT_EQ(countRead(10'000, isNoneBehind), 10'000U);
}

TEST(TextGuesses, AreMadeOnceForATextThatPagesRepeat) {
    TextGuesses guesses(0);
    const TextGuesses::Use use(guesses);
    // More different texts than are kept decoded.
    constexpr std::size_t textsOfAPage = 50;
    for (std::size_t page = 0; page < 1'000; ++page) {
        for (std::size_t number = 0; number < textsOfAPage; ++number) {
            ASSERT_TRUE(isRead(japaneseText(number))) << "page " << page;
        }
    }
    EXPECT_TRUE(isRead(japaneseText(textsOfAPage)));
}

TEST(TextGuesses, AreForgottenWithTheirFile) {
    {
        TextGuesses guesses(0);
        const TextGuesses::Use use(guesses);
        bool isNoneBehind = false;
        static_cast<void>(countRead(10'000, isNoneBehind));
        EXPECT_FALSE(isRead(japaneseText(10'000)));
    }
    EXPECT_TRUE(isRead(japaneseText(10'000)));
}

TEST(TextGuesses, TextsThatCannotBeGuessedAreReadAsWindows1252) {
    TextGuesses guesses(0);
    const TextGuesses::Use use(guesses);
    bool isNoneBehind = false;
    static_cast<void>(countRead(10'000, isNoneBehind));
    EXPECT_EQ(decodeText("\x83\x80 ku\xF1\x6F"), "\xC6\x92\xE2\x82\xAC ku\xC3\xB1o");
}

}  // namespace
