#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/scoped_locale.h"
#include "tests/support/single_directory.h"

// Tags without a name: their number, offset and value.

namespace {

using namespace test;
using namespace std::string_view_literals;

// Enough text for a character set to be told.
constexpr const char* latin1Text =
    "Les \xE9l\xE8"
    "ves fran\xE7"
    "ais sont l\xE0 o\xF9 l'\xE9t\xE9 a \xE9t\xE9 tr\xE8s agr\xE9"
    "able pour la for\xEAt";
constexpr const char* frenchText =
    "Les élèves français sont là où l'été a été très agréable pour la forêt";

const zxArray& valueOf(const Result& result, std::size_t index = 0) {
    return fieldOf(unknownTagsOf(result), "Value", index);
}

TEST(UnknownTags, AreRecordsOfNumberOffsetAndValueInEntryOrder) {
    TiffBuilder builder;
    builder.add({number(60003, SHORT, 5), longs(60001, {7, 8, 9}), text(60002, "plain text")});
    const Result result = read(builder.bytes());
    const zxArray& records = unknownTagsOf(result);
    EXPECT_EQ(fieldsOf(records), (std::vector<std::string>{"ID", "Offset", "Value"}));
    EXPECT_EQ(host::sizeOf(records), (host::Size{3, 1}));
    EXPECT_EQ(numberOf(fieldOf(records, "ID", 0)), 60003);
    EXPECT_EQ(numberOf(fieldOf(records, "Offset", 0)), 0);
    EXPECT_EQ(numberOf(fieldOf(records, "Value", 0)), 5);
    EXPECT_EQ(numberOf(fieldOf(records, "ID", 1)), 60001);
    EXPECT_EQ(numberOf(fieldOf(records, "Offset", 1)), static_cast<double>(builder.valueOf(0, 1)));
    EXPECT_EQ(numbersOf(fieldOf(records, "Value", 1)), (std::vector<double>{7, 8, 9}));
    EXPECT_EQ(host::sizeOf(fieldOf(records, "Value", 1)), (host::Size{1, 3}));
    EXPECT_EQ(numberOf(fieldOf(records, "ID", 2)), 60002);
    EXPECT_EQ(textOf(fieldOf(records, "Value", 2)), "plain text");
}

TEST(UnknownTags, OfOneNumberAreAllKept) {
    const Result result = readDirectory({number(60001, SHORT, 1), number(60001, SHORT, 2)});
    EXPECT_EQ(host::sizeOf(unknownTagsOf(result)), (host::Size{2, 1}));
    EXPECT_EQ(numberOf(valueOf(result, 1)), 2);
}

TEST(UnknownTags, TextInUtf8IsReadAsUtf8WhateverTheLocale) {
    for (const char* locale : {"C", "C.UTF-8"}) {
        const ScopedLocale scope(locale);
        EXPECT_EQ(textOf(valueOf(readDirectory({text(60001, frenchText)}))), frenchText);
    }
}

TEST(UnknownTags, ShortTextsInAsciiAreReadAsTheyStand) {
    for (const char* words : {"24-70mm f/2.8", "0000304011", "2019:07:04 18:02:51", "N", "7"}) {
        EXPECT_EQ(textOf(valueOf(readDirectory({text(60001, words)}))), words);
    }
}

TEST(UnknownTags, TextInLatin1IsReadAsLatin1) {
    EXPECT_EQ(textOf(valueOf(readDirectory({text(60001, latin1Text)}))), frenchText);
}

TEST(UnknownTags, TextIsCutAtItsFirstZeroByte) {
    EXPECT_EQ(textOf(valueOf(readDirectory({ascii(60001, "first\0second\0"sv)}))), "first");
    const std::string utf8 = frenchText;
    EXPECT_EQ(textOf(valueOf(readDirectory({ascii(60001, utf8 + '\0' + utf8)}))), utf8);
}

TEST(UnknownTags, TheCharacterSetIsToldFromAllBytes) {
    // The first string alone would do for either set; the second one decides.
    const std::string utf8 = std::string("\xC3\xA9") + '\0' + frenchText;
    EXPECT_EQ(textOf(valueOf(readDirectory({ascii(60001, utf8)}))), "é");
    const std::string latin1 = std::string("\xE9") + '\0' + latin1Text;
    EXPECT_EQ(textOf(valueOf(readDirectory({ascii(60001, latin1)}))), "é");
}

TEST(UnknownTags, TextThatIsEmptyAfterTheCutIsARowOfNoCharacters) {
    for (const std::string_view bytes : {"\0"sv, "\0\0\0"sv, "\0later text"sv}) {
        const Result result = readDirectory({ascii(60001, bytes)});
        EXPECT_EQ(host::classOf(valueOf(result)), host::ValueClass::Char);
        EXPECT_EQ(host::sizeOf(valueOf(result)), (host::Size{1, 0}));
    }
    const Result utf8 = readDirectory({ascii(60001, std::string(1, '\0') + frenchText)});
    EXPECT_EQ(host::sizeOf(valueOf(utf8)), (host::Size{1, 0}));
}

TEST(UnknownTags, WithoutComponentsHaveARowOfNoNumbers) {
    for (const Type type : {SHORT, ASCII, RATIONAL, DOUBLE}) {
        const Result result = readDirectory({at(60001, type, 0, 1234)});
        EXPECT_EQ(host::classOf(valueOf(result)), host::ValueClass::Double);
        EXPECT_EQ(host::sizeOf(valueOf(result)), (host::Size{1, 0}));
        EXPECT_EQ(numberOf(fieldOf(unknownTagsOf(result), "Offset")), 0);
        EXPECT_EQ(result.warnings(), Reports{report("zeroComponentCount", {""})});
    }
}

TEST(UnknownTags, ShowNoImageSourceBytes) {
    const Result result = readSubDirectory(gpsPointer, {numbers(37724, BYTE, {1, 2, 3})});
    const zxArray& records = fieldOf(result.value(gpsPointer.field), "UnknownTags");
    EXPECT_EQ(numberOf(fieldOf(records, "ID")), 37724);
    EXPECT_EQ(host::classOf(fieldOf(records, "Value")), host::ValueClass::Double);
    EXPECT_EQ(host::sizeOf(fieldOf(records, "Value")), (host::Size{1, 0}));
}

TEST(UnknownTags, ShowTheNumbersOfTagsThatAreDecodedElsewhere) {
    const Result result = readSubDirectory(
        gpsPointer, {number(259, SHORT, 5), shorts(320, {65535, 0, 1}), number(339, SHORT, 3)});
    const zxArray& records = fieldOf(result.value(gpsPointer.field), "UnknownTags");
    EXPECT_EQ(numberOf(fieldOf(records, "Value", 0)), 5);
    EXPECT_EQ(numbersOf(fieldOf(records, "Value", 1)), (std::vector<double>{65535, 0, 1}));
    EXPECT_EQ(numberOf(fieldOf(records, "Value", 2)), 3);
}

TEST(UnknownTags, OffsetsBeyondThirtyTwoBitsAreNeverSeenWithoutTheirBytes) {
    const Container big{Order::Little, Layout::Big};
    const Result result = readDirectory({at(60001, LONG, 3, std::uint64_t{1} << 40)}, big);
    EXPECT_FALSE(result.hasField("UnknownTags"));
}

}  // namespace
