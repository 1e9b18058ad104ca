#include <gtest/gtest.h>

#include "tests/inspect/sound_image.h"

// Values, strips, tiles and streams that share bytes with the structure or with one another.

namespace {

using inspect_test::changed;
using inspect_test::Fields;
using inspect_test::imageFile;
using inspect_test::inspect;
using inspect_test::pixelPosition;
using inspect_test::sentencesOf;
using inspect_test::soundImage;
using inspect_test::Texts;
using inspect_test::toldOf;

/// The image with four strips of one row of two bytes, at these offsets.
Fields strips(const test::Numbers& offsets, const test::Numbers& byteCounts = {2, 2, 2, 2}) {
    return {test::number(257, test::SHORT, 4), test::longs(273, offsets),
            test::number(278, test::SHORT, 1), test::longs(279, byteCounts)};
}

}  // namespace

TEST(RangeRules, TellNothingOfRangesThatTouch) {
    EXPECT_EQ(toldOf(strips({2048, 2050, 2052, 2054})), Texts());
    // The directory takes the bytes 8 to 146, and its two values those from 146 to 162.
    EXPECT_EQ(toldOf({test::at(700, test::BYTE, 8, 174)}), Texts());
}

TEST(RangeRules, TellOfValuesOverTheHeaderOrADirectory) {
    EXPECT_EQ(toldOf({test::at(700, test::BYTE, 8, 0)}),
              Texts{"warning valueOverStructure [0] 700, 0, 8: The value of XMP (700), bytes 0 to "
                    "8, lies over a directory or the header."});
    EXPECT_EQ(toldOf({test::at(700, test::BYTE, 8, 152)}),
              Texts{"warning valueOverStructure [0] 700, 152, 160: The value of XMP (700), bytes "
                    "152 to 160, lies over a directory or the header."});
    EXPECT_EQ(toldOf({test::at(700, test::BYTE, 6, 158)}),
              Texts{"warning rangesOverlap [0] 282, 158, 166, 700, 0: Bytes 158 to 166 of "
                    "XResolution (282) overlap those of tag 700 in directory 0."});
}

TEST(RangeRules, TellOfImageDataOverADirectory) {
    EXPECT_EQ(toldOf({test::number(273, test::LONG, 0)}),
              Texts{"error dataOverStructure [0] 273, 0, 4: Image data, bytes 0 to 4, lie over a "
                    "directory or the header."});
    EXPECT_EQ(
        toldOf({test::number(513, test::LONG, 8), test::number(514, test::LONG, 3)}, {273, 279}),
        (Texts{"error dataOverStructure [0] 513, 8, 11: Image data, bytes 8 to 11, lie over a "
               "directory or the header.",
               "warning jpegStreamNoStart [0] 513, 8: The JPEG stream at 8 does not begin like "
               "one."}));
}

TEST(RangeRules, TellWhichRangeAnotherOverlaps) {
    EXPECT_EQ(toldOf(strips({2048, 2049, 2052, 2054})),
              Texts{"warning rangesOverlap [0] 273, 2049, 2051, 273, 0: Bytes 2049 to 2051 of "
                    "StripOffsets (273) overlap those of tag 273 in directory 0."});
    // What lies over the structure is compared with nothing else.
    EXPECT_EQ(toldOf({test::at(700, test::BYTE, 8, 4), test::at(34377, test::BYTE, 8, 6)}),
              (Texts{"warning valueOverStructure [0] 700, 4, 12: The value of XMP (700), bytes 4 "
                     "to 12, lies over a directory or the header.",
                     "warning valueOverStructure [0] 34377, 6, 14: The value of ImageResources "
                     "(34377), bytes 6 to 14, lies over a directory or the header."}));
}

TEST(RangeRules, CompareARangeWithTheOneThatReachesFarthest) {
    EXPECT_EQ(toldOf({test::at(700, test::BYTE, 100, 2100), test::at(34377, test::BYTE, 8, 2110),
                      test::at(34675, test::UNDEFINED, 8, 2150)}),
              (Texts{"warning rangesOverlap [0] 34377, 2110, 2118, 700, 0: Bytes 2110 to 2118 of "
                     "ImageResources (34377) overlap those of tag 700 in directory 0.",
                     "warning rangesOverlap [0] 34675, 2150, 2158, 700, 0: Bytes 2150 to 2158 of "
                     "ICCProfile (34675) overlap those of tag 700 in directory 0.",
                     "warning iccProfile [0] 34675, 8, 0: ICCProfile (34675) holds 8 bytes of a "
                     "profile of 0, or no profile."}));
}

TEST(RangeRules, CountRangesThatAreTheSameBytes) {
    EXPECT_EQ(toldOf(strips({2050, 2050, 2048, 2050})),
              Texts{"note rangeShared [0], 2, 2050: 2 values or blocks share their bytes with "
                    "others, the first at 2050."});
}

TEST(RangeRules, TellOfARangeInTheDirectoryOfTheLaterOne) {
    test::TiffBuilder builder;
    const auto first = builder.add(soundImage());
    const auto second =
        builder.add(changed(soundImage(), {test::number(273, test::LONG, pixelPosition + 2)}));
    const auto third = builder.add(soundImage());
    builder.chain({first, second, third});
    inspect_test::Bytes bytes = builder.bytes();
    bytes.resize(inspect_test::imageFileSize);
    EXPECT_EQ(sentencesOf(inspect(bytes)),
              (Texts{"warning rangesOverlap [1] 273, 2050, 2054, 273, 0: Bytes 2050 to 2054 of "
                     "StripOffsets (273) overlap those of tag 273 in directory 0.",
                     "note rangeShared [2], 1, 2048: 1 values or blocks share their bytes with "
                     "others, the first at 2048."}));
}

TEST(RangeRules, PutFindingsInOrderByTheirPlaceInTheFile) {
    EXPECT_EQ(toldOf(strips({2060, 2059, 2051, 2050})),
              (Texts{"warning rangesOverlap [0] 273, 2051, 2053, 273, 0: Bytes 2051 to 2053 of "
                     "StripOffsets (273) overlap those of tag 273 in directory 0.",
                     "warning rangesOverlap [0] 273, 2060, 2062, 273, 0: Bytes 2060 to 2062 of "
                     "StripOffsets (273) overlap those of tag 273 in directory 0."}));
}

TEST(RangeRules, TakeAStreamForImageDataWithoutStripsOnly) {
    const Fields stream{test::number(513, test::LONG, 2100), test::number(514, test::LONG, 20),
                        test::at(700, test::BYTE, 8, 2110)};
    Fields fields = changed(soundImage(), stream, {273, 279});
    inspect_test::Bytes bytes = imageFile(fields);
    bytes[2100] = 0xFF;
    bytes[2101] = 0xD8;
    EXPECT_EQ(sentencesOf(inspect(bytes)),
              Texts{"warning rangesOverlap [0] 700, 2110, 2118, 513, 0: Bytes 2110 to 2118 of XMP "
                    "(700) overlap those of tag 513 in directory 0."});
    bytes = imageFile(changed(soundImage(), stream));
    bytes[2100] = 0xFF;
    bytes[2101] = 0xD8;
    EXPECT_EQ(sentencesOf(inspect(bytes)), Texts());
}

TEST(RangeRules, LeaveOutWhatHasNoBytesOrLiesPastTheEnd) {
    EXPECT_EQ(
        toldOf({test::longs(273, {2048, 2048}), test::longs(279, {4, 0}),
                test::number(257, test::SHORT, 4)}),
        Texts{"warning zeroByteCount [0] 279, 1, 2048: Image data block 1 at 2048 has no bytes."});
    EXPECT_EQ(toldOf({test::at(700, test::BYTE, 8, 2044), test::at(34377, test::BYTE, 9000, 2046)}),
              (Texts{"error valuePastEnd [0] 34377, 2046, 9000: The value of ImageResources "
                     "(34377), 9000 bytes at 2046, ends past the end of the file.",
                     "warning rangesOverlap [0] 273, 2048, 2052, 700, 0: Bytes 2048 to 2052 of "
                     "StripOffsets (273) overlap those of tag 700 in directory 0."}));
}
