#include "inspect/reading/words.h"

#include <gtest/gtest.h>

#include "tests/value_reading/entries.h"

// Codes and flags come out as words.

namespace {

using namespace test;
using corvinex::inspect::reading::codeWords;
using corvinex::inspect::reading::flagWords;
using corvinex::registry::findTag;

TEST(Words, ACodeReadsAsItsWord) {
    EXPECT_EQ(mainReading(259, shorts({50000})), "ZSTD");
    EXPECT_EQ(mainReading(259, longs({5})), "LZW");
    EXPECT_EQ(mainReading(274, shorts({6})), "right-top");
}

TEST(Words, AnUnknownCodeKeepsItsNumber) {
    EXPECT_EQ(mainReading(259, shorts({50010})), "unknown (50010)");
    EXPECT_EQ(mainReading(259, elements<std::int16_t>(FieldType::SShort, {-3})), "unknown (-3)");
    EXPECT_EQ(mainReading(259, elements<std::uint64_t>(FieldType::Long8, {~std::uint64_t{0}})),
              "unknown (18446744073709551615)");
}

TEST(Words, EachElementHasItsWord) {
    EXPECT_EQ(mainReading(338, shorts({0, 2})), "Unspecified, Unassociated alpha");
    EXPECT_EQ(exifReading(37121, undefined(std::string_view("\1\2\3\0", 4))), "Y, Cb, Cr, -");
}

TEST(Words, OfVeryManyCodesTheFirstAreRead) {
    const std::string reading = mainReading(339, shorts(std::vector<std::uint16_t>(1000, 3)));
    EXPECT_EQ(reading.substr(0, 42), "IEEE floating point, IEEE floating point, ");
    EXPECT_TRUE(reading.ends_with(", ... (1,000 in all)")) << reading;
}

TEST(Words, BehindTheOneCodeOfATagNothingIsRead) {
    EXPECT_EQ(exifReading(41728, undefined(std::string_view("\3\0\0\0", 4))),
              "Digital still camera, ... (4 in all)");
}

TEST(Words, WhatHoldsNoCodeHasNoWord) {
    EXPECT_EQ(mainReading(259, ascii("5")), "-");
    EXPECT_EQ(mainReading(259, elements<float>(FieldType::Float, {5})), "-");
    EXPECT_EQ(mainReading(259, rationals({{5, 1}})), "-");
    EXPECT_EQ(mainReading(259, shorts({})), "-");
}

TEST(Words, ATextReadsAsItsWord) {
    EXPECT_EQ(gpsReading(1, ascii("N")), "North");
    EXPECT_EQ(gpsReading(1, bytes("N")), "North");
    EXPECT_EQ(gpsReading(1, ascii("N ")), "North");
    EXPECT_EQ(gpsReading(10, ascii("3")), "3-dimensional measurement");
    EXPECT_EQ(gpsReading(1, ascii("Q")), "unknown (Q)");
    EXPECT_EQ(gpsReading(1, ascii("")), "-");
    EXPECT_EQ(gpsReading(1, ascii("\xFF")), "-");
    EXPECT_EQ(readingIn(DirectoryKind::Interop, 1, ascii("R98")), "DCF basic file (sRGB)");
}

TEST(Words, FlagsAreLookedUpWholeFirst) {
    EXPECT_EQ(mainReading(254, longs({0})), "Full-resolution image");
    EXPECT_EQ(mainReading(254, longs({3})), "Reduced-resolution page of a multi-page image");
    EXPECT_EQ(exifReading(37385, shorts({16})), "Flash did not fire, compulsory suppression");
}

TEST(Words, OtherFlagsAreJoinedBitByBit) {
    EXPECT_EQ(mainReading(292, longs({5})), "Two-dimensional coding, Fill bits before EOL");
    EXPECT_EQ(exifReading(37385, shorts({17})),
              "Flash fired, No return detection, Compulsory suppression");
    EXPECT_EQ(exifReading(41997, shorts({0x0402})), "Not default settings, Extreme differences");
}

TEST(Words, BitsWithoutAMeaningStayANumber) {
    EXPECT_EQ(mainReading(292, longs({0x101})), "Two-dimensional coding, unknown (256)");
    EXPECT_EQ(mainReading(292, longs({0x80000000})), "unknown (2147483648)");
    EXPECT_EQ(mainReading(292, longs({0})), "-");
    EXPECT_EQ(mainReading(292, longs({1, 1})), "-");
}

TEST(Words, AListOfWordsKeepsUnknownCodesAsNumbers) {
    const Entries none;
    const auto wordsOf = [&](DirectoryKind kind, std::uint16_t number, const Elements& held) {
        const Value value = held.value();
        return codeWords({kind, number, *findTag(kind, number), value, none, std::endian::little});
    };
    EXPECT_EQ(wordsOf(DirectoryKind::Main, 338, shorts({2, 77})),
              (std::vector<std::string>{"Unassociated alpha", "77"}));
    EXPECT_EQ(wordsOf(DirectoryKind::Gps, 1, ascii("Q")), std::vector<std::string>{"Q"});
    EXPECT_EQ(wordsOf(DirectoryKind::Main, 259, ascii("5")), std::nullopt);
    EXPECT_EQ(wordsOf(DirectoryKind::Main, 256, shorts({5})), std::nullopt);
}

TEST(Words, FlagsOfOtherTagsAreNone) {
    const Value value = shorts({1}).value();
    const Entries none;
    EXPECT_EQ(flagWords({DirectoryKind::Main, 259, *findTag(DirectoryKind::Main, 259), value, none,
                         std::endian::little}),
              std::nullopt);
}

}  // namespace
