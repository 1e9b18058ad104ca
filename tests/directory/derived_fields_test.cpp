#include <gtest/gtest.h>

#include <limits>

#include "tests/directory/tiff_variants.h"

// "Width", "Height", "ColorType" and "BitDepth".

namespace test {
namespace {

/// Reads a directory of these entries as a TIFF of a variant.
Result readEntries(const TiffVariant& tiff, std::vector<Field> fields) {
    TiffBuilder builder = tiff.builder();
    builder.add(std::move(fields));
    return read(builder.bytes());
}

class DerivedFields : public EveryTiff {
  protected:
    [[nodiscard]] static Result readEntries(std::vector<Field> fields) {
        return test::readEntries(tiff(), std::move(fields));
    }
};
CORVINEX_FOR_EVERY_TIFF(DerivedFields);

TEST_P(DerivedFields, WidthAndHeightAreZeroWithoutTheirTags) {
    const Result result = readEntries({pageId(1)});
    EXPECT_EQ(result.number("Width"), 0);
    EXPECT_EQ(result.number("Height"), 0);
}

TEST_P(DerivedFields, WidthAndHeightAreTakenFromAnyType) {
    const Result result = readEntries({floats(256, {12.5F}), rationals(257, SRATIONAL, {{-3, 2}})});
    EXPECT_EQ(result.number("Width"), 12.5);
    EXPECT_EQ(result.number("Height"), -1.5);
}

TEST_P(DerivedFields, AWidthThatIsTextIsZero) {
    EXPECT_EQ(readEntries({ascii(256, "7")}).number("Width"), 0);
}

TEST_P(DerivedFields, ColorTypeIsMinusOneWithoutAPhotometricInterpretation) {
    EXPECT_EQ(readEntries({pageId(1)}).number("ColorType"), -1);
}

TEST_P(DerivedFields, ColorTypeSevenIsTheNumber) {
    EXPECT_EQ(readEntries({number(262, SHORT, 7)}).number("ColorType"), 7);
}

TEST_P(DerivedFields, ColorTypeIsTruncatedTowardZero) {
    EXPECT_EQ(readEntries({floats(262, {2.9F})}).text("ColorType"), "truecolor");
    EXPECT_EQ(readEntries({floats(262, {-0.9F})}).text("ColorType"), "grayscale");
    EXPECT_EQ(readEntries({floats(262, {-1.9F})}).number("ColorType"), -1);
}

TEST_P(DerivedFields, ColorTypeIsHeldAtTheLimitsOf32Bits) {
    EXPECT_EQ(readEntries({number(262, LONG, 0xFFFFFFFF)}).number("ColorType"), 2147483647);
    EXPECT_EQ(readEntries({number(262, LONG, 0x80000000)}).number("ColorType"), 2147483647);
    EXPECT_EQ(readEntries({number(262, LONG, 0x7FFFFFFF)}).number("ColorType"), 2147483647);
    EXPECT_EQ(readEntries({doubles(262, {1e300})}).number("ColorType"), 2147483647);
    EXPECT_EQ(readEntries({doubles(262, {-1e300})}).number("ColorType"), -2147483648.0);
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(readEntries({doubles(262, {infinity})}).number("ColorType"), 2147483647);
}

TEST_P(DerivedFields, ColorTypeTakesNotANumberAsZero) {
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(readEntries({doubles(262, {notANumber})}).text("ColorType"), "grayscale");
}

TEST_P(DerivedFields, ColorTypeTakesATagWithoutNumbersAsZero) {
    EXPECT_EQ(readEntries({text(262, "5")}).text("ColorType"), "grayscale");
    EXPECT_EQ(readEntries({numbers(262, SHORT, {})}).text("ColorType"), "grayscale");
}

TEST_P(DerivedFields, ColorTypeTakesTheFirstValue) {
    EXPECT_EQ(readEntries({shorts(262, {5, 2})}).text("ColorType"), "CMYK");
}

TEST_P(DerivedFields, ColorTypeTakesTheLaterEntry) {
    EXPECT_EQ(readEntries({number(262, SHORT, 5), number(262, SHORT, 2)}).text("ColorType"),
              "truecolor");
}

TEST_P(DerivedFields, ColorTypeComesBesideThePhotometricInterpretation) {
    const Result result = readEntries({number(262, SHORT, 2)});
    EXPECT_EQ(result.text("ColorType"), "truecolor");
    EXPECT_EQ(result.text("PhotometricInterpretation"), "RGB");
}

TEST_P(DerivedFields, BitDepthIsTheSumOverTheSamples) {
    EXPECT_EQ(readEntries({shorts(258, {8, 8, 8})}).number("BitDepth"), 24);
    EXPECT_EQ(readEntries({shorts(258, {5, 6, 5, 16})}).number("BitDepth"), 32);
    EXPECT_EQ(readEntries({shorts(258, {16})}).number("BitDepth"), 16);
}

TEST_P(DerivedFields, BitDepthIsOneByDefault) {
    EXPECT_EQ(readEntries({pageId(1)}).number("BitDepth"), 1);
}

TEST_P(DerivedFields, BitDepthIsZeroForABitsPerSampleWithoutNumbers) {
    EXPECT_EQ(readEntries({numbers(258, SHORT, {})}).number("BitDepth"), 0);
    EXPECT_EQ(readEntries({text(258, "8")}).number("BitDepth"), 0);
}

TEST_P(DerivedFields, BitDepthTakesTheLaterEntry) {
    EXPECT_EQ(readEntries({shorts(258, {8, 8, 8}), shorts(258, {16})}).number("BitDepth"), 16);
}

TEST_P(DerivedFields, AreThoseOfEachDirectory) {
    TiffBuilder builder = newBuilder();
    builder.add({number(256, SHORT, 1), number(257, SHORT, 2), shorts(258, {8, 8, 8}),
                 number(262, SHORT, 2)});
    builder.add(
        {number(256, SHORT, 3), number(257, SHORT, 4), shorts(258, {8}), number(262, SHORT, 3)});
    builder.add({pageId(1)});
    builder.chain({0, 1, 2});
    const Result result = read(builder.bytes());
    const double widths[] = {1, 3, 0};
    const double heights[] = {2, 4, 0};
    const double depths[] = {24, 8, 1};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(result.number("Width", i), widths[i]);
        EXPECT_EQ(result.number("Height", i), heights[i]);
        EXPECT_EQ(result.number("BitDepth", i), depths[i]);
    }
    EXPECT_EQ(result.text("ColorType", 0), "truecolor");
    EXPECT_EQ(result.text("ColorType", 1), "indexed");
    EXPECT_EQ(result.number("ColorType", 2), -1);
}

TEST_P(DerivedFields, StandInSubIfdsToo) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(330, LONG, {1})});
    builder.add(
        {number(256, SHORT, 5), number(257, SHORT, 6), shorts(258, {8, 8}), number(262, SHORT, 4)});
    const Result result = read(builder.bytes());
    const zxArray& set = *host::cellAt(result.value("SubIFDs"), 0);
    EXPECT_EQ(numberOf(fieldOf(set, "Width")), 5);
    EXPECT_EQ(numberOf(fieldOf(set, "Height")), 6);
    EXPECT_EQ(numberOf(fieldOf(set, "BitDepth")), 16);
    EXPECT_EQ(textOf(fieldOf(set, "ColorType")), "Transparency Mask");
    EXPECT_EQ(result.number("Width"), 0);
}

struct ColorTypeRow {
    std::uint64_t value;
    const char* word;
};

class ColorTypeWords : public ::testing::TestWithParam<ColorTypeRow> {};
INSTANTIATE_TEST_SUITE_P(
    Values, ColorTypeWords,
    ::testing::Values(ColorTypeRow{0, "grayscale"}, ColorTypeRow{1, "grayscale"},
                      ColorTypeRow{2, "truecolor"}, ColorTypeRow{3, "indexed"},
                      ColorTypeRow{4, "Transparency Mask"}, ColorTypeRow{5, "CMYK"},
                      ColorTypeRow{6, "YCbCr"}, ColorTypeRow{8, "CIELab"},
                      ColorTypeRow{9, "ICCLab"}, ColorTypeRow{10, "ITULab"},
                      ColorTypeRow{32803, "CFA"}, ColorTypeRow{32844, "LogL"},
                      ColorTypeRow{32845, "LogLuv"}, ColorTypeRow{34892, "LinearRaw"}),
    [](const auto& row) { return std::to_string(row.param.value); });

TEST_P(ColorTypeWords, IsAText) {
    const Result result = readEntries(littleClassic, {number(262, SHORT, GetParam().value)});
    EXPECT_EQ(result.text("ColorType"), GetParam().word);
}

TEST(ColorTypeNumbers, AreAllOtherValuesOf16Bits) {
    // Many directories a file, so that the whole range takes few calls, and a JPEG, so that no
    // defaults are made.
    constexpr std::uint64_t perFile = 8192;
    std::size_t words = 0;
    for (std::uint64_t start = 0; start < 65536; start += perFile) {
        ByteWriter writer(Order::Little);
        writer.text("II").number(42, 2).number(8, 4);
        for (std::uint64_t value = start; value < start + perFile; ++value) {
            const bool isLast = value == start + perFile - 1;
            writer.number(1, 2).number(262, 2).number(SHORT, 2).number(1, 4).number(value, 4);
            writer.number(isLast ? 0 : writer.size() + 4, 4);
        }
        const Result result = readAsJpeg(writer.bytes());
        ASSERT_EQ(result.directories(), perFile);
        for (std::size_t i = 0; i < perFile; ++i) {
            const zxArray& colorType = result.value("ColorType", i);
            if (host::classOf(colorType) == host::ValueClass::Char) {
                ++words;
            } else {
                EXPECT_EQ(numberOf(colorType), static_cast<double>(start + i));
            }
        }
    }
    EXPECT_EQ(words, 14U);
}

TEST(JpegDerivedFields, BitDepthIsZeroWithoutBitsPerSample) {
    TiffBuilder builder;
    builder.add({text(305, "s"), number(277, SHORT, 3)});
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_EQ(result.number("BitDepth"), 0);
    EXPECT_EQ(result.number("ColorType"), -1);
}

TEST(JpegDerivedFields, AreTakenFromTheEntries) {
    TiffBuilder builder(Order::Big);
    builder.add({number(256, SHORT, 64), number(257, SHORT, 48), shorts(258, {8, 8, 8}),
                 number(262, SHORT, 6)});
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_EQ(result.number("Width"), 64);
    EXPECT_EQ(result.number("Height"), 48);
    EXPECT_EQ(result.number("BitDepth"), 24);
    EXPECT_EQ(result.text("ColorType"), "YCbCr");
}

TEST(ExifDerivedFields, DoNotExist) {
    TiffBuilder builder;
    builder.add({pointers(34665, LONG, {1}), shorts(258, {4}), number(262, SHORT, 1)});
    builder.add({shorts(258, {8, 8, 8}), number(262, SHORT, 2)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(fieldsOf(result.value("DigitalCamera")),
              (Names{"BitsPerSample", "PhotometricInterpretation"}));
    EXPECT_EQ(result.number("BitDepth"), 4);
    EXPECT_EQ(result.text("ColorType"), "grayscale");
}

}  // namespace
}  // namespace test
