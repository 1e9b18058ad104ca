#include <gtest/gtest.h>

#include "tests/inspect/sound_image.h"

// What lays an image out, and where its data lie.

namespace {

using inspect_test::Bytes;
using inspect_test::changed;
using inspect_test::Fields;
using inspect_test::imageFile;
using inspect_test::inspect;
using inspect_test::pixelPosition;
using inspect_test::sentencesOf;
using inspect_test::soundImage;
using inspect_test::Texts;
using inspect_test::toldOf;

/// The changes that make the image one of a tile of 16 x 16 pixels.
const Fields tile{test::number(322, test::SHORT, 16), test::number(323, test::SHORT, 16),
                  test::number(324, test::LONG, pixelPosition), test::number(325, test::LONG, 256)};
const std::vector<std::uint16_t> stripTags{273, 278, 279};

Texts toldOfTile(const Fields& put, const std::vector<std::uint16_t>& removed = {}) {
    return sentencesOf(
        inspect(imageFile(changed(changed(soundImage(), tile, stripTags), put, removed))));
}

}  // namespace

TEST(ImageRules, TellNothingOfSoundImages) {
    EXPECT_EQ(toldOf({}), Texts());
    EXPECT_EQ(toldOfTile({}), Texts());
    for (const test::Order order : {test::Order::Little, test::Order::Big}) {
        EXPECT_EQ(sentencesOf(inspect(imageFile(soundImage(), test::Layout::Big, order))), Texts());
    }
}

TEST(ImageRules, TellOfDirectoriesWithoutImageData) {
    EXPECT_EQ(toldOf({}, {273, 279}),
              Texts{"warning noImageData [0]: Directory 0 holds no image."});
    EXPECT_EQ(toldOf({test::number(513, test::LONG, 0)}, {273, 279}), Texts());
}

TEST(ImageRules, TellOfStripsTogetherWithTiles) {
    EXPECT_EQ(toldOf(tile),
              Texts{"warning stripsAndTiles [0]: Directory 0 describes both strips and tiles."});
    EXPECT_EQ(toldOf({test::number(323, test::SHORT, 2)}),
              Texts{"warning stripsAndTiles [0]: Directory 0 describes both strips and tiles."});
}

TEST(ImageRules, TellOfTagsWithoutWhichNothingIsLaidOut) {
    EXPECT_EQ(toldOf({}, {256, 257, 273}),
              (Texts{"error requiredTagMissing [0] 256: ImageWidth (256) is missing: the image "
                     "cannot be laid out.",
                     "error requiredTagMissing [0] 257: ImageLength (257) is missing: the image "
                     "cannot be laid out.",
                     "error requiredTagMissing [0] 273: StripOffsets (273) is missing: the image "
                     "cannot be laid out."}));
    EXPECT_EQ(toldOfTile({}, {322, 323, 324}),
              (Texts{"error requiredTagMissing [0] 322: TileWidth (322) is missing: the image "
                     "cannot be laid out.",
                     "error requiredTagMissing [0] 323: TileLength (323) is missing: the image "
                     "cannot be laid out.",
                     "error requiredTagMissing [0] 324: TileOffsets (324) is missing: the image "
                     "cannot be laid out."}));
    EXPECT_EQ(toldOf({test::number(322, test::SHORT, 16)}),
              (Texts{"warning stripsAndTiles [0]: Directory 0 describes both strips and tiles.",
                     "error requiredTagMissing [0] 323: TileLength (323) is missing: the image "
                     "cannot be laid out."}));
    // Streams of the first JPEG scheme tell their size themselves.
    EXPECT_EQ(
        toldOf({test::number(259, test::SHORT, 6)}, {256, 257, 262}),
        Texts{"note oldStyleJpeg [0] 259: Old-style JPEG compression: few readers get it right."});
}

TEST(ImageRules, TellOfTagsWithoutWhichReadersGuess) {
    EXPECT_EQ(
        toldOf({test::number(262, test::SHORT, 3), test::shorts(320, {0, 1, 0, 1, 0, 1})}, {258}),
        (Texts{"warning expectedTagMissing [0] 258: BitsPerSample (258) is missing: readers must "
               "guess.",
               "note dataLonger [0] 279, 0, 4, 2: Uncompressed block 0 has 4 bytes, more than the "
               "2 of a whole one."}));
    EXPECT_EQ(
        toldOf({test::number(259, test::SHORT, 7), test::number(262, test::SHORT, 2)}, {258, 277}),
        Texts());
    EXPECT_EQ(toldOf({}, {258, 262, 279}),
              (Texts{"warning expectedTagMissing [0] 262: PhotometricInterpretation (262) is "
                     "missing: readers must guess.",
                     "warning expectedTagMissing [0] 279: StripByteCounts (279) is missing: "
                     "readers must guess."}));
    EXPECT_EQ(toldOf({test::number(513, test::LONG, 2048)}, {273, 279}),
              Texts{"warning expectedTagMissing [0] 514: JPEGInterchangeFormatLength (514) is "
                    "missing: readers must guess."});
    // A compression that cannot be read is no exception.
    EXPECT_EQ(toldOf({test::at(259, test::SHORT, 0, 0)}, {262}),
              (Texts{"note zeroCount [0] 259: Compression (259) has no value.",
                     "warning expectedTagMissing [0] 262: PhotometricInterpretation (262) is "
                     "missing: readers must guess."}));
}

TEST(ImageRules, TellOfMissingTagsOnlyWhereTheDirectoryIsWhole) {
    // The file ends where the offset of the next directory should be.
    Bytes bytes = inspect_test::fileWith(changed(soundImage(), {}, {257, 282, 283}));
    bytes.resize(8 + 2 + 12 * 8);
    const Texts told = sentencesOf(inspect(bytes));
    EXPECT_EQ(told, (Texts{"error directoryTruncated [0], 8, 8: Directory 0 has 8 of its 8 entries "
                           "before the data ends.",
                           "error dataPastEnd [0] 273, 0, 2048, 4: Image data block 0, 4 bytes at "
                           "2048, ends past the end of the file."}));
}

TEST(ImageRules, TellOfSizesOfZero) {
    EXPECT_EQ(
        toldOf({test::number(256, test::SHORT, 0), test::number(257, test::SHORT, 0),
                test::number(258, test::SHORT, 0), test::number(277, test::SHORT, 0)}),
        (Texts{"error zeroGeometry [0] 256: ImageWidth (256) is 0.",
               "error zeroGeometry [0] 257: ImageLength (257) is 0.",
               "error zeroGeometry [0] 258: BitsPerSample (258) is 0.",
               "error more [], zeroGeometry, 1: 1 more findings zeroGeometry are not shown."}));
    EXPECT_EQ(toldOf({test::number(278, test::SHORT, 0)}),
              Texts{"error zeroGeometry [0] 278: RowsPerStrip (278) is 0."});
    EXPECT_EQ(toldOfTile({test::number(322, test::SHORT, 0), test::number(323, test::SHORT, 0),
                          test::number(278, test::SHORT, 0)}),
              (Texts{"error zeroGeometry [0] 322: TileWidth (322) is 0.",
                     "error zeroGeometry [0] 323: TileLength (323) is 0."}));
}

TEST(ImageRules, CompareTablesWithTheBlocksThatTheImageNeeds) {
    EXPECT_EQ(toldOf({test::number(257, test::SHORT, 3)}),
              (Texts{"error dataTableTooShort [0] 273, 1, 2: StripOffsets (273) has 1 of the 2 "
                     "values that the image needs.",
                     "error dataTableTooShort [0] 279, 1, 2: StripByteCounts (279) has 1 of the 2 "
                     "values that the image needs."}));
    EXPECT_EQ(toldOf({test::number(278, test::SHORT, 1), test::longs(273, {2048, 2050, 2052}),
                      test::longs(279, {2, 2, 2})}),
              (Texts{"warning dataTableTooLong [0] 273, 3, 2: StripOffsets (273) has 3 values, the "
                     "image needs 2.",
                     "warning dataTableTooLong [0] 279, 3, 2: StripByteCounts (279) has 3 values, "
                     "the image needs 2."}));
    EXPECT_EQ(toldOfTile({test::number(256, test::SHORT, 17), test::number(257, test::SHORT, 33)}),
              (Texts{"error dataTableTooShort [0] 324, 1, 6: TileOffsets (324) has 1 of the 6 "
                     "values that the image needs.",
                     "error dataTableTooShort [0] 325, 1, 6: TileByteCounts (325) has 1 of the 6 "
                     "values that the image needs."}));
    // Each plane has its blocks.
    EXPECT_EQ(toldOf({test::number(277, test::SHORT, 3), test::shorts(258, {8, 8, 8}),
                      test::number(262, test::SHORT, 2), test::number(284, test::SHORT, 2)}),
              (Texts{"error dataTableTooShort [0] 273, 1, 3: StripOffsets (273) has 1 of the 3 "
                     "values that the image needs.",
                     "error dataTableTooShort [0] 279, 1, 3: StripByteCounts (279) has 1 of the 3 "
                     "values that the image needs."}));
    // Nothing is needed where a number is missing or wrong.
    EXPECT_EQ(toldOf({test::number(257, test::SHORT, 3), test::number(284, test::SHORT, 2),
                      test::at(277, test::SHORT, 0, 0)}),
              Texts{"note zeroCount [0] 277: SamplesPerPixel (277) has no value."});
}

TEST(ImageRules, CompareTablesExactlyHoweverLargeTheImageIs) {
    EXPECT_EQ(sentencesOf(inspect(imageFile(
                  changed(soundImage(), {test::number(256, test::LONG8, 0xFFFFFFFFFFFFFFFF),
                                         test::number(257, test::LONG8, 0xFFFFFFFFFFFFFFFF)}),
                  test::Layout::Big))),
              (Texts{"error dataTableTooShort [0] 273, 1, 9223372036854775808: StripOffsets (273) "
                     "has 1 of the 9223372036854775808 values that the image needs.",
                     "error dataTableTooShort [0] 279, 1, 9223372036854775808: StripByteCounts "
                     "(279) has 1 of the 9223372036854775808 values that the image needs.",
                     "error dataTooShort [0] 279, 0, 4, 18446744073709551615: Uncompressed block 0 "
                     "has 4 of 18446744073709551615 bytes."}));
}

TEST(ImageRules, TellOfBlocksPastTheEndOfTheFile) {
    EXPECT_EQ(toldOf({test::number(273, test::LONG, 4092)}), Texts());
    EXPECT_EQ(toldOf({test::number(273, test::LONG, 4093)}),
              Texts{"error dataPastEnd [0] 273, 0, 4093, 4: Image data block 0, 4 bytes at 4093, "
                    "ends past the end of the file."});
    // Without byte counts a block is as long as it must be, or one byte long.
    EXPECT_EQ(toldOf({test::number(273, test::LONG, 4093)}, {279}),
              (Texts{"warning expectedTagMissing [0] 279: StripByteCounts (279) is missing: "
                     "readers must guess.",
                     "error dataPastEnd [0] 273, 0, 4093, 4: Image data block 0, 4 bytes at 4093, "
                     "ends past the end of the file."}));
    EXPECT_EQ(
        toldOf({test::number(273, test::LONG, 4096), test::number(259, test::SHORT, 5)}, {279}),
        (Texts{"warning expectedTagMissing [0] 279: StripByteCounts (279) is missing: readers must "
               "guess.",
               "error dataPastEnd [0] 273, 0, 4096, 1: Image data block 0, 1 bytes at 4096, ends "
               "past the end of the file."}));
    EXPECT_EQ(
        toldOf({test::number(513, test::LONG, 4090), test::number(514, test::LONG, 7)}, {273, 279}),
        Texts{"error dataPastEnd [0] 513, 0, 4090, 7: Image data block 0, 7 bytes at 4090, ends "
              "past the end of the file."});
}

TEST(ImageRules, TellOfBlocksWithoutBytes) {
    const Fields two{test::number(257, test::SHORT, 4)};
    EXPECT_EQ(
        toldOf(changed(two, {test::longs(273, {2048, 0}), test::longs(279, {0, 0})})),
        (Texts{"warning zeroByteCount [0] 279, 0, 2048: Image data block 0 at 2048 has no bytes.",
               "note sparseData [0] 273, 1: 1 image data blocks are left out."}));
}

TEST(ImageRules, CompareUncompressedBlocksWithTheirSize) {
    EXPECT_EQ(toldOf({test::number(279, test::LONG, 3)}),
              Texts{"error dataTooShort [0] 279, 0, 3, 4: Uncompressed block 0 has 3 of 4 bytes."});
    EXPECT_EQ(toldOf({test::number(279, test::LONG, 5)}),
              Texts{"note dataLonger [0] 279, 0, 5, 4: Uncompressed block 0 has 5 bytes, more than "
                    "the 4 of a whole one."});
    EXPECT_EQ(toldOf({test::number(279, test::LONG, 3), test::number(259, test::SHORT, 5)}),
              Texts());
    // The last strip holds one row; it may have the bytes of a whole one.
    const Fields odd{test::number(257, test::SHORT, 3), test::longs(273, {2048, 2052})};
    EXPECT_EQ(toldOf(changed(odd, {test::longs(279, {4, 2})})), Texts());
    EXPECT_EQ(toldOf(changed(odd, {test::longs(279, {4, 4})})), Texts());
    EXPECT_EQ(toldOf(changed(odd, {test::longs(279, {4, 1})})),
              Texts{"error dataTooShort [0] 279, 1, 1, 2: Uncompressed block 1 has 1 of 2 bytes."});
    // Tiles are always whole.
    EXPECT_EQ(
        toldOfTile({test::number(325, test::LONG, 255)}),
        Texts{
            "error dataTooShort [0] 325, 0, 255, 256: Uncompressed block 0 has 255 of 256 bytes."});
    // Rows end with a whole byte.
    EXPECT_EQ(toldOf({test::number(256, test::SHORT, 9), test::number(258, test::SHORT, 1),
                      test::number(279, test::LONG, 3)}),
              Texts{"error dataTooShort [0] 279, 0, 3, 4: Uncompressed block 0 has 3 of 4 bytes."});
}

TEST(ImageRules, AddUpTheBitsOfSamplesOrTakeThoseOfThePlane) {
    const Fields rgb{test::number(262, test::SHORT, 2), test::number(277, test::SHORT, 3)};
    EXPECT_EQ(
        toldOf(changed(rgb, {test::shorts(258, {5, 6, 5}), test::number(279, test::LONG, 7)})),
        Texts{"error dataTooShort [0] 279, 0, 7, 8: Uncompressed block 0 has 7 of 8 bytes."});
    EXPECT_EQ(
        toldOf(changed(rgb, {test::shorts(258, {8}), test::number(279, test::LONG, 11)})),
        (Texts{"error dataTooShort [0] 279, 0, 11, 12: Uncompressed block 0 has 11 of 12 bytes.",
               "warning bitsPerSampleCount [0] 258, 1, 3: BitsPerSample (258) has 1 values for 3 "
               "samples."}));
    EXPECT_EQ(
        toldOf(changed(rgb, {test::shorts(258, {8, 16, 8}), test::number(284, test::SHORT, 2),
                             test::longs(273, {2048, 2052, 2060}), test::longs(279, {4, 7, 4})})),
        Texts{"error dataTooShort [0] 279, 1, 7, 8: Uncompressed block 1 has 7 of 8 bytes."});
    // Samples without bits are of no size.
    EXPECT_EQ(
        toldOf(changed(rgb, {test::shorts(258, {8, 0, 8}), test::number(279, test::LONG, 1)})),
        Texts{"error zeroGeometry [0] 258: BitsPerSample (258) is 0."});
}

TEST(ImageRules, TellHowAnEmbeddedStreamBegins) {
    const Fields stream{test::number(513, test::LONG, 2100), test::number(514, test::LONG, 20)};
    EXPECT_EQ(toldOf(stream, {273, 279}), Texts{"warning jpegStreamNoStart [0] 513, 2100: The JPEG "
                                                "stream at 2100 does not begin like one."});
    Bytes bytes = imageFile(changed(soundImage(), stream, {273, 279}));
    bytes[2100] = 0xFF;
    bytes[2101] = 0xD8;
    EXPECT_EQ(sentencesOf(inspect(bytes)), Texts());
    EXPECT_EQ(
        toldOf({test::number(513, test::LONG, 2100), test::number(514, test::LONG, 1)}, {273, 279}),
        Texts());
}

TEST(ImageRules, TellOfTheFirstJpegScheme) {
    EXPECT_EQ(
        toldOf({test::number(259, test::SHORT, 6)}),
        Texts{"note oldStyleJpeg [0] 259: Old-style JPEG compression: few readers get it right."});
}

TEST(ImageRules, AskNothingOfTheFirstDirectoryOfAJpeg) {
    test::TiffBuilder builder;
    const auto first = builder.add(
        {test::number(273, test::LONG, 9000), test::rationals(282, test::RATIONAL, {{72, 1}}),
         test::rationals(283, test::RATIONAL, {{72, 1}}), test::number(513, test::LONG, 1)});
    const auto second =
        builder.add({test::number(273, test::LONG, 9000), test::number(513, test::LONG, 8000)});
    const auto third = builder.add({test::number(273, test::LONG, 9000)});
    builder.chain({first, second, third});
    EXPECT_EQ(sentencesOf(inspect(test::jpegWithExif(builder.bytes()).bytes)),
              (Texts{"warning jpegNoScan []: The JPEG ends before any image data.",
                     "error requiredTagMissing [2] 256: ImageWidth (256) is missing: the image "
                     "cannot be laid out.",
                     "error requiredTagMissing [2] 257: ImageLength (257) is missing: the image "
                     "cannot be laid out.",
                     "warning expectedTagMissing [2] 262: PhotometricInterpretation (262) is "
                     "missing: readers must guess.",
                     "warning expectedTagMissing [2] 279: StripByteCounts (279) is missing: "
                     "readers must guess.",
                     "error dataPastEnd [2] 273, 0, 9000, 1: Image data block 0, 1 bytes at 9000, "
                     "ends past the end of the file."}));
}

TEST(ImageRules, TellOfDataBehindTheExifBlock) {
    test::TiffBuilder builder;
    const auto first = builder.add({test::rationals(282, test::RATIONAL, {{72, 1}}),
                                    test::rationals(283, test::RATIONAL, {{72, 1}})});
    const auto second =
        builder.add({test::number(513, test::LONG, 450), test::number(514, test::LONG, 20)});
    const auto third = builder.add(changed(soundImage(), {test::at(700, test::BYTE, 8, 400)}));
    builder.chain({first, second, third});
    test::JpegWithExif jpeg = test::jpegWithExif(builder.bytes());
    const std::size_t end = jpeg.headerPosition + 4096;
    jpeg.bytes.resize(end);
    jpeg.bytes[jpeg.headerPosition + 450] = 0xFF;
    jpeg.bytes[jpeg.headerPosition + 451] = 0xD8;
    EXPECT_EQ(sentencesOf(inspect(jpeg.bytes)),
              (Texts{"warning jpegNoScan []: The JPEG ends before any image data.",
                     "warning outsideExifBlock [1] 513, 450, 470: The bytes 450 to 470 of "
                     "JPEGInterchangeFormat (513) lie outside the EXIF block.",
                     "warning outsideExifBlock [2] 273, 2048, 2052: The bytes 2048 to 2052 of "
                     "StripOffsets (273) lie outside the EXIF block.",
                     "warning outsideExifBlock [2] 700, 400, 408: The bytes 400 to 408 of XMP "
                     "(700) lie outside the EXIF block."}));
}
