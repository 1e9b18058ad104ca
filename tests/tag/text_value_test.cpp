#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tag/tiff_tag.h"
#include "tests/support/scoped_locale.h"
#include "tests/support/single_directory.h"

// Texts of known tags: trailing zero bytes go, the rest is in the locale's encoding.

namespace {

using namespace test;
using namespace std::string_view_literals;
using corvinex::TiffTag;

/// The text of tag 305 with these bytes, read in a UTF-8 locale.
std::u16string softwareOf(std::string_view bytes) {
    const ScopedLocale utf8("C.UTF-8");
    const Result result = readDirectory({ascii(305, bytes)});
    EXPECT_EQ(result.warnings(), Reports{});
    EXPECT_EQ(host::sizeOf(result.value("Software")).rows, 1U);
    return std::u16string(host::textOf(result.value("Software")));
}

TEST(TextValues, LoseTheirTrailingZeroBytes) {
    EXPECT_EQ(softwareOf("abc\0\0\0"sv), u"abc");
    EXPECT_EQ(softwareOf("abc\0"sv), u"abc");
}

TEST(TextValues, NeedNoClosingZero) {
    EXPECT_EQ(softwareOf("a"), u"a");
    EXPECT_EQ(softwareOf("abcd"), u"abcd");
}

TEST(TextValues, KeepTheirInnerZeroBytes) {
    EXPECT_EQ(softwareOf("ab\0cd\0\0"sv), u"ab\0cd"sv);
    EXPECT_EQ(softwareOf("\0a"sv), u"\0a"sv);
}

TEST(TextValues, AreCharacterRows) {
    const Result result = readDirectory({text(305, "abcdef")});
    EXPECT_EQ(host::classOf(result.value("Software")), host::ValueClass::Char);
    EXPECT_EQ(host::sizeOf(result.value("Software")), (host::Size{1, 6}));
}

TEST(TextValues, OfZeroBytesAloneAreEmptyOfNoRows) {
    for (const std::size_t count : {1U, 3U, 9U}) {
        const Result result = readDirectory({ascii(305, std::string(count, '\0'))});
        EXPECT_EQ(host::classOf(result.value("Software")), host::ValueClass::Char);
        EXPECT_EQ(host::sizeOf(result.value("Software")), (host::Size{0, 0}));
    }
}

TEST(TextValues, ReadTheSameInEveryContainerAndDirectory) {
    for (const Container& container : containers) {
        SCOPED_TRACE(container);
        EXPECT_EQ(readDirectory({text(305, "Test 1.0")}, container).text("Software"), "Test 1.0");
        const Result exif = readSubDirectory(exifPointer, {text(305, "Test 1.0")}, container);
        EXPECT_EQ(textOf(fieldOf(exif.value(exifPointer.field), "Software")), "Test 1.0");
        const Result gps = readSubDirectory(gpsPointer, {text(1, "N")}, container);
        EXPECT_EQ(textOf(fieldOf(gps.value(gpsPointer.field), "GPSLatitudeRef")), "N");
    }
}

TEST(TextValues, MayStandInATagOfNumbers) {
    const Result result = readDirectory({text(50714, "dark")});
    EXPECT_EQ(result.text("BlackLevel"), "dark");
}

TEST(Utf8Locale, WholeSequencesBecomeTheirCharacters) {
    EXPECT_EQ(softwareOf("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\xB7"), u"é€\U0001F4F7");
}

TEST(Utf8Locale, EachMaximalInvalidSubpartBecomesOneReplacement) {
    EXPECT_EQ(softwareOf("\xE2\x82"
                         "A"),
              u"\uFFFDA");
    EXPECT_EQ(softwareOf("\xF0\x9F\x93"), u"\uFFFD");
    EXPECT_EQ(softwareOf("a\xC3"), u"a\uFFFD");
    EXPECT_EQ(softwareOf("\xC0\x80z"), u"\uFFFD\uFFFDz");
    EXPECT_EQ(softwareOf("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(softwareOf("\xF0\x80\x80z"), u"\uFFFD\uFFFD\uFFFDz");
    EXPECT_EQ(softwareOf("\xFF\xFE"), u"\uFFFD\uFFFD");
    EXPECT_EQ(softwareOf("\x80\x80"), u"\uFFFD\uFFFD");
    EXPECT_EQ(softwareOf("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(softwareOf("\xE2\x82\xE2\x82\xAC"), u"\uFFFD€");
}

TEST(CLocale, BytesBeyondAsciiBecomeReplacements) {
    const ScopedLocale plain("C");
    const Result result = readDirectory({ascii(305, "a\xC3\xA9z")});
    EXPECT_EQ(host::textOf(result.value("Software")), u"a\uFFFD\uFFFDz");
}

TEST(TextLocale, IsTheOneOfTheMomentOfTheCall) {
    const Bytes bytes = tiffOf({ascii(305, "\xC3\xA9")});
    std::u16string texts[2];
    {
        const ScopedLocale utf8("C.UTF-8");
        texts[0] = host::textOf(read(bytes).value("Software"));
    }
    {
        const ScopedLocale plain("C");
        texts[1] = host::textOf(read(bytes).value("Software"));
    }
    EXPECT_EQ(texts[0], u"é");
    EXPECT_EQ(texts[1], u"\uFFFD\uFFFD");
}

TEST(TrimNulls, RemovesOnlyTrailingZeroBytes) {
    EXPECT_EQ(textOf(*TiffTag::trim_nulls("a\0b\0\0"sv)), "a\0b"sv);
    EXPECT_EQ(textOf(*TiffTag::trim_nulls("ab")), "ab");
}

TEST(TrimNulls, GivesNoRowsWhenNothingIsLeft) {
    EXPECT_EQ(host::sizeOf(*TiffTag::trim_nulls("")), (host::Size{0, 0}));
    EXPECT_EQ(host::sizeOf(*TiffTag::trim_nulls("\0"sv)), (host::Size{0, 0}));
    EXPECT_EQ(host::classOf(*TiffTag::trim_nulls("\0"sv)), host::ValueClass::Char);
}

}  // namespace
