#include "inspect/reading/charset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

// Bytes of a file's texts come out as UTF-8.

namespace {

using namespace corvinex::inspect::reading;
using namespace std::string_view_literals;

std::vector<std::uint8_t> bytesOf(std::string_view characters) {
    return {characters.begin(), characters.end()};
}

std::string utf16(std::string_view characters, std::endian order) {
    return decodeUtf16(bytesOf(characters), order);
}

TEST(Charset, ValidUtf8IsKnown) {
    EXPECT_TRUE(isUtf8(""));
    EXPECT_TRUE(isUtf8("plain"));
    EXPECT_TRUE(isUtf8("\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"));
    EXPECT_FALSE(isUtf8("\x80"));
    EXPECT_FALSE(isUtf8("plain, then \xE2\x82"));
    EXPECT_FALSE(isUtf8("\xC0\x80"));
    EXPECT_FALSE(isUtf8("\xED\xA0\x80"));
    EXPECT_FALSE(isUtf8("\xF4\x90\x80\x80"));
}

TEST(Charset, Utf8StaysAsItIs) {
    EXPECT_EQ(decodeText("\xC3\xA9t\xC3\xA9"), "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(decodeText(""), "");
    // A mark and control characters as well.
    EXPECT_EQ(decodeText("\xEF\xBB\xBF\x01"), "\xEF\xBB\xBF\x01");
}

TEST(Charset, AShortTextInNoCertainSetIsWindows1252) {
    EXPECT_EQ(decodeText("\xA9"), "\xC2\xA9");
    EXPECT_EQ(decodeText("\x80"), "\xE2\x82\xAC");
}

TEST(Charset, TheHolesOfWindows1252AreControlCharacters) {
    EXPECT_EQ(decodeText("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
}

TEST(Charset, AMultibyteSetIsGuessedFromTheText) {
    // "Photographed in the park in spring" in Japanese, as Shift_JIS and as EUC-JP.
    const std::string expected =
        "\xE6\x98\xA5\xE3\x81\xAE\xE5\x85\xAC\xE5\x9C\x92\xE3\x81\xA7\xE6\x92\xAE\xE5\xBD\xB1\xE3"
        "\x81\x97\xE3\x81\xBE\xE3\x81\x97\xE3\x81\x9F";
    EXPECT_EQ(decodeText("\x8F\x74\x82\xCC\x8C\xF6\x89\x80\x82\xC5\x8E\x42\x89\x65\x82\xB5\x82\xDC"
                         "\x82\xB5\x82\xBD"),
              expected);
    EXPECT_EQ(decodeText("\xBD\xD5\xA4\xCE\xB8\xF8\xB1\xE0\xA4\xC7\xBB\xA3\xB1\xC6\xA4\xB7\xA4\xDE"
                         "\xA4\xB7\xA4\xBF"),
              expected);
}

TEST(Charset, ACyrillicSetIsGuessedFromTheText) {
    // "This and that on the other side ..." in Russian, in KOI8-R.
    EXPECT_EQ(decodeText(
                  "\xFC\xD4\xCF\xD4 \xC9 \xD4\xCF\xD4, \xC9 \xD4\xCF\xC7\xCF, \xC9 \xCE\xC1 \xD4"
                  "\xCF\xCA \xD3\xD4\xCF\xD2\xCF\xCE\xC5, \xC9 \xDC\xD4\xCF \xCE\xC5 \xD4\xCF, \xDE"
                  "\xD4\xCF \xD0\xCF \xD4\xCF\xCA \xD3\xD4\xCF\xD2\xCF\xCE\xC5"),
              "\xD0\xAD\xD1\x82\xD0\xBE\xD1\x82 \xD0\xB8 \xD1\x82\xD0\xBE\xD1\x82, \xD0\xB8 "
              "\xD1\x82\xD0\xBE\xD0\xB3\xD0\xBE, \xD0\xB8 \xD0\xBD\xD0\xB0 \xD1\x82\xD0\xBE\xD0"
              "\xB9 \xD1\x81\xD1\x82\xD0\xBE\xD1\x80\xD0\xBE\xD0\xBD\xD0\xB5, \xD0\xB8 \xD1\x8D"
              "\xD1\x82\xD0\xBE \xD0\xBD\xD0\xB5 \xD1\x82\xD0\xBE, \xD1\x87\xD1\x82\xD0\xBE "
              "\xD0\xBF\xD0\xBE \xD1\x82\xD0\xBE\xD0\xB9 \xD1\x81\xD1\x82\xD0\xBE\xD1\x80\xD0"
              "\xBE\xD0\xBD\xD0\xB5");
}

TEST(Charset, AGuessThatIsNotSureIsNotTaken) {
    // ICU takes this for KOI8-R, at a confidence of 43.
    EXPECT_EQ(decodeText(
                  "\xE6\xCF\xD4\xCF\xC7\xD2\xC1\xC6\xC9\xD1 \xD3\xCE\xD1\xD4\xC1 \xD7\xC5\xD3\xCE"
                  "\xCF\xCA \xD7 \xC7\xCF\xD2\xCF\xC4\xD3\xCB\xCF\xCD \xD0\xC1\xD2\xCB\xC5, \xCB"
                  "\xCF\xC7\xC4\xC1 \xD0\xCF\xC7\xCF\xC4\xC1 \xC2\xD9\xCC\xC1 \xC8\xCF\xD2\xCF\xDB"
                  "\xC1\xD1 \xC9 \xD3\xCF\xCC\xCE\xC3\xC5 \xD3\xD7\xC5\xD4\xC9\xCC\xCF \xCE\xC1\xC4"
                  " \xD2\xC5\xCB\xCF\xCA \xC9 \xCE\xC1\xC4 \xD3\xD4\xC1\xD2\xD9\xCD \xCD\xCF\xD3"
                  "\xD4\xCF\xCD.")
                  .substr(0, 4),
              "\xC3\xA6\xC3\x8F");
}

TEST(Charset, ATextReadsTheSameWheneverItComes) {
    // More texts than are kept, so that each drives others out.
    for (int round = 0; round < 2; ++round) {
        for (int character = 0xA1; character < 0x100; ++character) {
            const std::string text(1, static_cast<char>(character));
            const std::string expected{static_cast<char>(0xC0 | character >> 6),
                                       static_cast<char>(0x80 | (character & 0x3F))};
            EXPECT_EQ(decodeText(text), expected);
        }
    }
}

TEST(Charset, EveryStringOfTwoBytesComesOutAsUtf8) {
    std::string text(2, '\0');
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; second += 5) {
            text[0] = static_cast<char>(first);
            text[1] = static_cast<char>(second);
            ASSERT_TRUE(isUtf8(decodeText(text))) << first << " " << second;
        }
    }
}

TEST(Charset, Utf16ComesInEitherOrder) {
    EXPECT_EQ(utf16("s\0\xE9\0\xAC\x20"sv, std::endian::little), "s\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ(utf16("\0s\0\xE9\x20\xAC"sv, std::endian::big), "s\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ(utf16("\x3D\xD8\x00\xDE"sv, std::endian::little), "\xF0\x9F\x98\x80");
    EXPECT_EQ(utf16("\xFF\xFEs\0"sv, std::endian::little), "s");
}

TEST(Charset, LoneSurrogatesAreReplaced) {
    EXPECT_EQ(utf16("\x3D\xD8s\0"sv, std::endian::little), "\xEF\xBF\xBDs");
    EXPECT_EQ(utf16("\x00\xDE"sv, std::endian::little), "\xEF\xBF\xBD");
    EXPECT_EQ(utf16("\x3D\xD8"sv, std::endian::little), "\xEF\xBF\xBD");
}

TEST(Charset, AnOddByteIsNoCharacter) {
    EXPECT_EQ(utf16("s\0x"sv, std::endian::little), "s");
    EXPECT_EQ(utf16("x"sv, std::endian::little), "");
}

TEST(Charset, TextsEndAtTheirFirstZero) {
    const auto narrow = bytesOf("ab\0cd"sv);
    EXPECT_EQ(cutAtZero(narrow).text.size(), 2u);
    EXPECT_EQ(cutAtZero(narrow).behind.size(), 2u);
    const auto open = bytesOf("ab"sv);
    EXPECT_EQ(cutAtZero(open).text.size(), 2u);
    EXPECT_TRUE(cutAtZero(open).behind.empty());
    // Two zero bytes that belong to two characters are no end.
    const auto wide = bytesOf("\1\0\0\1\0\0ab"sv);
    EXPECT_EQ(cutAtWideZero(wide).text.size(), 4u);
    EXPECT_EQ(cutAtWideZero(wide).behind.size(), 2u);
    EXPECT_TRUE(cutAtWideZero(open).behind.empty());
}

struct Read {
    std::string_view set;
    std::string text;
    std::size_t behind;
    friend bool operator==(const Read&, const Read&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Read& read) {
        return out << read.set << " \"" << read.text << "\" " << read.behind;
    }
};

Read comment(std::string_view characters, std::endian fileOrder = std::endian::little) {
    const auto bytes = bytesOf(characters);
    const auto decoded = decodeComment(bytes, fileOrder);
    return decoded ? Read{decoded->charset, decoded->text, decoded->behind.size()} : Read{};
}

TEST(Comment, NamesItsCharacterSet) {
    EXPECT_EQ(comment("ASCII\0\0\0sea\0rest"sv), (Read{"ASCII", "sea", 4}));
    EXPECT_EQ(comment("\0\0\0\0\0\0\0\0sea"sv), (Read{"UNDEFINED", "sea", 0}));
    EXPECT_EQ(comment("JIS\0\0\0\0\0\x1B$B=U\x1B(B"sv), (Read{"JIS", "\xE6\x98\xA5", 0}));
    EXPECT_EQ(comment("JIS\0\0\0\0\0sea"sv), (Read{"JIS", "sea", 0}));
    EXPECT_EQ(comment("ASCII\0\0\0"sv), (Read{"ASCII", "", 0}));
}

TEST(Comment, UnknownOrMissingNamesGiveNothing) {
    EXPECT_EQ(comment("Unicode\0s\0"sv), Read{});
    EXPECT_EQ(comment("ASCII"sv), Read{});
    EXPECT_EQ(comment(""sv), Read{});
    EXPECT_EQ(comment("sea and sky"sv), Read{});
}

TEST(Comment, UnicodeHasTheOrderOfItsMark) {
    EXPECT_EQ(comment("UNICODE\0\xFE\xFF\x67\x08"sv), (Read{"UNICODE", "\xE6\x9C\x88", 0}));
    EXPECT_EQ(comment("UNICODE\0\xFF\xFE\x08\x67"sv), (Read{"UNICODE", "\xE6\x9C\x88", 0}));
}

TEST(Comment, UnicodeWithoutAMarkHasTheOrderOfMoreSmallUnits) {
    EXPECT_EQ(comment("UNICODE\0s\0e\0\x08\x67"sv, std::endian::big),
              (Read{"UNICODE", "se\xE6\x9C\x88", 0}));
    EXPECT_EQ(comment("UNICODE\0\0s\0e\x67\x08"sv, std::endian::little),
              (Read{"UNICODE", "se\xE6\x9C\x88", 0}));
}

TEST(Comment, UnicodeWithoutAnySignHasTheOrderOfTheFile) {
    EXPECT_EQ(comment("UNICODE\0\x67\x08"sv, std::endian::big),
              (Read{"UNICODE", "\xE6\x9C\x88", 0}));
    EXPECT_EQ(comment("UNICODE\0\x08\x67"sv, std::endian::little),
              (Read{"UNICODE", "\xE6\x9C\x88", 0}));
}

TEST(Comment, UnicodeEndsAtAWideZero) {
    EXPECT_EQ(comment("UNICODE\0s\0\0\0ab"sv), (Read{"UNICODE", "s", 2}));
}

}  // namespace
