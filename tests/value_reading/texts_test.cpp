#include <gtest/gtest.h>

#include "tests/value_reading/entries.h"

// Texts, comments and versions.

namespace {

using namespace test;
using namespace std::string_view_literals;

TEST(Texts, ATextIsItsOwnReading) {
    EXPECT_EQ(mainReading(271, ascii("EO")), "-");
    EXPECT_EQ(mainReading(271, ascii("")), "-");
    EXPECT_EQ(mainReading(271, shorts({69})), "-");
}

TEST(Texts, BlanksThatFillAFieldAreLeftOut) {
    EXPECT_EQ(mainReading(271, ascii("EO OPTICS  \t ")), "EO OPTICS");
    EXPECT_EQ(mainReading(271, ascii("     ")), "-");
    EXPECT_EQ(mainReading(271, ascii("\xC9milie  ")), "\xC3\x89milie");
}

TEST(Texts, CopyrightsOfPhotographerAndEditorAreJoined) {
    EXPECT_EQ(mainReading(33432, ascii("A. Person\0B. Person"sv)), "A. Person; B. Person");
    EXPECT_EQ(mainReading(33432, ascii(" \0B. Person"sv)), "B. Person");
    EXPECT_EQ(mainReading(33432, ascii("A. Person")), "-");
    EXPECT_EQ(mainReading(333, ascii("Cyan\0Gold\0"sv)), "Cyan; Gold");
}

TEST(Texts, OfVeryManyTextsTheFirstAreRead) {
    std::string inks;
    for (int ink = 0; ink < 1000; ++ink) {
        inks += "a";
        inks += '\0';
    }
    const std::string reading = mainReading(333, ascii(inks));
    EXPECT_TRUE(reading.ends_with("; a; ...")) << reading;
    EXPECT_LT(reading.size(), 300u);
}

TEST(Texts, CommentsAreReadWithoutTheirFilling) {
    EXPECT_EQ(exifReading(37510, undefined("ASCII\0\0\0sea and sky    "sv)), "sea and sky");
    EXPECT_EQ(exifReading(37510, undefined("ASCII\0\0\0sea and sky"sv)), "-");
    EXPECT_EQ(exifReading(37510, undefined("UNICODE\0s\0e\0a\0 \0"sv)), "sea");
    EXPECT_EQ(exifReading(37510, undefined("WHAT"sv)), "-");
}

TEST(Texts, WideTextsAreReadWithoutTheirFilling) {
    EXPECT_EQ(mainReading(40091, bytes("s\0e\0a\0 \0\0\0"sv)), "sea");
    EXPECT_EQ(mainReading(40091, bytes("s\0e\0a\0\0\0"sv)), "-");
    EXPECT_EQ(mainReading(40091, bytes("s"sv)), "-");
}

TEST(Versions, BytesAreParted) {
    EXPECT_EQ(gpsReading(0, bytes("\2\3\0\0"sv)), "2.3.0.0");
    EXPECT_EQ(mainReading(50706, bytes("\1\7\1\0"sv)), "1.7.1.0");
    EXPECT_EQ(gpsReading(0, bytes("\2\3"sv)), "-");
    EXPECT_EQ(gpsReading(0, ascii("2.3")), "-");
    // Here the value is this text already.
    EXPECT_EQ(gpsReading(0, undefined("\2\3\0\0"sv)), "-");
}

TEST(Versions, DigitsAreMajorAndMinor) {
    EXPECT_EQ(exifReading(36864, undefined("0232")), "2.32");
    EXPECT_EQ(exifReading(36864, undefined("0220")), "2.2");
    EXPECT_EQ(exifReading(40960, undefined("0100")), "1.0");
    EXPECT_EQ(exifReading(36864, undefined("1234")), "12.34");
    EXPECT_EQ(exifReading(36864, undefined("02x0")), "-");
    EXPECT_EQ(exifReading(36864, undefined("232")), "-");
}

TEST(Opaque, ShortBytesAreDigitsAndLongOnesACount) {
    EXPECT_EQ(mainReading(50781, bytes("\x00\x7F\xFF"sv)), "007fff");
    EXPECT_EQ(mainReading(37724, undefined(std::string(3144, 'x'))), "3,144 bytes");
    EXPECT_EQ(mainReading(33628, longs({1, 2})), "-");
    EXPECT_EQ(mainReading(20485, ascii("flags")), "-");
}

TEST(FilterPattern, IsReadRowByRow) {
    EXPECT_EQ(exifReading(41730, undefined("\2\0\2\0\0\1\1\2"sv)), "Red,Green / Green,Blue");
    EXPECT_EQ(readingIn(DirectoryKind::Exif, 41730, undefined("\0\2\0\2\2\1\1\0"sv), {},
                        std::endian::big),
              "Blue,Green / Green,Red");
}

TEST(FilterPattern, ItsHeadMayHaveTheOtherByteOrder) {
    EXPECT_EQ(exifReading(41730, undefined("\0\3\0\1\0\1\2"sv)), "Red,Green,Blue");
}

TEST(FilterPattern, OfAnotherSizeIsOnlyBytes) {
    EXPECT_EQ(exifReading(41730, undefined("\2\0\2\0\0\1\1"sv)), "02000200000101");
    EXPECT_EQ(exifReading(41730, undefined("\0\0\0\0\1"sv)), "0000000001");
    EXPECT_EQ(exifReading(41730, undefined("\2\0\2\0"sv)), "02000200");
}

TEST(MakerNote, IsNamedByTheMakerWhoseMarkItBears) {
    EXPECT_EQ(exifReading(37500, undefined("Nikon\0\2\0"sv)), "Nikon maker note, 8 bytes");
    EXPECT_EQ(exifReading(37500, undefined(std::string(5000, '\0'))), "maker note, 5,000 bytes");
    EXPECT_EQ(exifReading(37500, undefined("N"sv)), "maker note, 1 byte");
}

TEST(Positions, OffsetsAndPointersAreTheirOwnReading) {
    EXPECT_EQ(mainReading(273, longs({8, 4096})), "-");
    EXPECT_EQ(mainReading(34665, longs({8})), "-");
}

}  // namespace
