#include <gtest/gtest.h>

#include <stdexcept>

#include "directory/ifd_tree.h"
#include "file/tag_file.h"
#include "tests/directory/tiff_variants.h"
#include "tests/support/temporary_file.h"

// The baseline tags that a main directory of a TIFF answers although the file lacks them.

namespace test {
namespace {

using TagIds = std::vector<std::uint16_t>;

const TagIds allDefaults{254, 258, 259, 263, 266, 273, 274, 277, 278, 279, 280,
                         281, 282, 283, 284, 290, 296, 320, 322, 323, 324, 325};

/// The tags of the directory at a position, in order, the appended ones included.
TagIds tagsOf(const Bytes& bytes, std::uint64_t position,
              corvinex::IFDtype_t_ kind = corvinex::IFDtype_t_::Main) {
    const TemporaryFile file(bytes);
    corvinex::TagFile tagFile(file.name(), 0, 0, 1);
    tagFile.readThroughTagFile();
    if (!tagFile.getStream().seek(position)) {
        throw std::runtime_error("seek");
    }
    const corvinex::IFDTree tree(&tagFile, kind);
    TagIds ids;
    const corvinex::IFD& ifd = tree.getIfds().front();
    for (const corvinex::TagValue& tag : ifd.getTags()) {
        ids.push_back(tag.getId());
    }
    for (std::size_t i = 0; i < allDefaults.size(); ++i) {
        if ((ifd.getDefaultTags() >> i & 1U) != 0) {
            ids.push_back(corvinex::IFD::getBaselineTag(i).first);
        }
    }
    return ids;
}

/// One well-typed entry of each defaulted tag.
std::vector<Field> everyBaselineTag() {
    std::vector<Field> fields;
    for (const std::uint16_t tag : allDefaults) {
        fields.push_back(tag == 282 || tag == 283 ? rationals(tag, RATIONAL, {{72, 1}})
                         : tag == 254             ? number(tag, LONG, 0)
                                                  : number(tag, SHORT, 1));
    }
    return fields;
}

class DefaultTags : public EveryTiff {};
CORVINEX_FOR_EVERY_TIFF(DefaultTags);

TEST_P(DefaultTags, AreAppendedInOneOrder) {
    TiffBuilder builder = newBuilder();
    builder.add({text(33432, "c"), text(305, "s")});
    TagIds expected{33432, 305};
    expected.insert(expected.end(), allDefaults.begin(), allDefaults.end());
    EXPECT_EQ(tagsOf(builder.bytes(), tiff().headerSize()), expected);
}

TEST_P(DefaultTags, AreNotMadeForADirectoryThatHasThemAll) {
    TiffBuilder builder = newBuilder();
    builder.add(everyBaselineTag());
    EXPECT_EQ(tagsOf(builder.bytes(), tiff().headerSize()), allDefaults);
}

TEST_P(DefaultTags, AreMadeForEachTagThatIsMissing) {
    for (std::size_t missing = 0; missing < allDefaults.size(); ++missing) {
        TiffBuilder builder = newBuilder();
        std::vector<Field> fields = everyBaselineTag();
        fields.erase(fields.begin() + static_cast<std::ptrdiff_t>(missing));
        builder.add(fields);
        TagIds expected = allDefaults;
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(missing));
        expected.push_back(allDefaults[missing]);
        EXPECT_EQ(tagsOf(builder.bytes(), tiff().headerSize()), expected);
    }
}

TEST_P(DefaultTags, AreNotMadeForPhotometricInterpretation) {
    TiffBuilder builder = newBuilder();
    builder.add({text(305, "s")});
    EXPECT_FALSE(read(builder.bytes()).isSet("PhotometricInterpretation"));
}

TEST_P(DefaultTags, HaveTheValuesOfTheStandard) {
    TiffBuilder builder = newBuilder();
    builder.add({text(305, "s")});
    const Result result = read(builder.bytes());
    EXPECT_TRUE(result.warnings().empty());
    EXPECT_EQ(result.number("NewSubFileType"), 0);
    EXPECT_EQ(result.number("BitsPerSample"), 1);
    EXPECT_EQ(result.text("Compression"), "Uncompressed");
    EXPECT_EQ(result.number("Thresholding"), 1);
    EXPECT_EQ(result.number("FillOrder"), 1);
    EXPECT_EQ(result.number("Orientation"), 1);
    EXPECT_EQ(result.number("SamplesPerPixel"), 1);
    EXPECT_EQ(result.number("RowsPerStrip"), 4294967295.0);
    EXPECT_EQ(result.number("MinSampleValue"), 0);
    EXPECT_EQ(result.number("MaxSampleValue"), 1);
    EXPECT_EQ(result.text("PlanarConfiguration"), "Chunky");
    EXPECT_EQ(result.number("GrayResponseUnit"), 0.01);
    EXPECT_EQ(result.text("ResolutionUnit"), "Inch");
}

TEST_P(DefaultTags, HaveNoValueWhereTheStandardHasNone) {
    TiffBuilder builder = newBuilder();
    builder.add({text(305, "s")});
    const Result result = read(builder.bytes());
    for (const char* field :
         {"StripOffsets", "StripByteCounts", "XResolution", "YResolution", "Colormap", "TileWidth",
          "TileLength", "TileOffsets", "TileByteCounts"}) {
        EXPECT_TRUE(result.hasField(field)) << field;
        EXPECT_FALSE(result.isSet(field)) << field;
    }
}

TEST_P(DefaultTags, AreNotMadeForAnEntryWithoutAValue) {
    TiffBuilder builder = newBuilder();
    builder.add({numbers(259, SHORT, {}), numbers(274, SHORT, {})});
    const Result result = read(builder.bytes());
    EXPECT_FALSE(result.isSet("Compression"));
    EXPECT_FALSE(result.isSet("Orientation"));
}

TEST_P(DefaultTags, AreMadeForADroppedEntry) {
    TiffBuilder builder = newBuilder();
    builder.add({at(259, 14, 1, 5), at(258, 15, 1, 8)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.text("Compression"), "Uncompressed");
    EXPECT_EQ(result.number("BitsPerSample"), 1);
    EXPECT_EQ(result.number("BitDepth"), 1);
}

TEST_P(DefaultTags, AreMadeForEachDirectoryByItself) {
    TiffBuilder builder = newBuilder();
    builder.add({number(259, SHORT, 5)});
    builder.add({pageId(3)});
    builder.chain({0, 1});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.text("Compression", 0), "LZW");
    EXPECT_EQ(result.text("Compression", 1), "Uncompressed");
    EXPECT_EQ(pageIds(result), (PageIds{1, 3}));
}

// Kept as it is: the entry's number of values is taken, not its value.
TEST_P(DefaultTags, OfBitsPerSampleCountTheValuesOfSamplesPerPixelNotItsValue) {
    TiffBuilder builder = newBuilder();
    builder.add({number(277, SHORT, 3)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.number("SamplesPerPixel"), 3);
    EXPECT_EQ(result.numbers("BitsPerSample"), std::vector<double>{1});
    EXPECT_EQ(result.number("BitDepth"), 1);
}

TEST_P(DefaultTags, SeeNoSamplesPerPixelOfSeveralValuesBecauseThatIsFatal) {
    TiffBuilder builder = newBuilder();
    builder.add({shorts(277, {8, 8, 8})});
    EXPECT_EQ(read(builder.bytes()).error(),
              report("badTagDataCount", {277, "SamplesPerPixel", 3, 1}));
}

TEST_P(DefaultTags, OfBitsPerSampleAreZeroForATextualSamplesPerPixel) {
    TiffBuilder builder = newBuilder();
    builder.add({ascii(277, "3")});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.warnings(), Reports{report("expectedTagDataFormat",
                                                {"SamplesPerPixel", "TIFF_SHORT", "TIFF_ASCII"})});
    EXPECT_EQ(result.numbers("BitsPerSample"), std::vector<double>{0});
    EXPECT_EQ(result.number("BitDepth"), 0);
    EXPECT_FALSE(result.isSet("MinSampleValue"));
    EXPECT_FALSE(result.isSet("MaxSampleValue"));
}

TEST_P(DefaultTags, OfTheSampleRangeFollowBitsPerSample) {
    TiffBuilder builder = newBuilder();
    builder.add({shorts(258, {8, 16, 1, 0, 4})});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.numbers("MinSampleValue"), (std::vector<double>{0, 0, 0, 0, 0}));
    EXPECT_EQ(result.numbers("MaxSampleValue"), (std::vector<double>{255, 65535, 1, 0, 15}));
}

TEST_P(DefaultTags, OfTheSampleRangeAreReckonedInDoublePrecision) {
    TiffBuilder builder = newBuilder();
    builder.add({shorts(258, {32, 64})});
    EXPECT_EQ(read(builder.bytes()).numbers("MaxSampleValue"),
              (std::vector<double>{4294967295.0, 18446744073709551616.0}));
}

TEST_P(DefaultTags, OfTheSampleRangeHaveNoValueForAnEmptyBitsPerSample) {
    TiffBuilder builder = newBuilder();
    builder.add({numbers(258, SHORT, {})});
    const Result result = read(builder.bytes());
    EXPECT_FALSE(result.isSet("BitsPerSample"));
    EXPECT_FALSE(result.isSet("MinSampleValue"));
    EXPECT_FALSE(result.isSet("MaxSampleValue"));
}

TEST_P(DefaultTags, OfTheSampleRangeAreMadeOneByOne) {
    TiffBuilder builder = newBuilder();
    builder.add({shorts(258, {8, 8}), number(281, SHORT, 200)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.numbers("MinSampleValue"), (std::vector<double>{0, 0}));
    EXPECT_EQ(result.numbers("MaxSampleValue"), std::vector<double>{200});
}

TEST_P(DefaultTags, AreMadeInSubIfds) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(330, LONG, {1})});
    const std::uint64_t position = builder.positionOf(builder.add({text(305, "s")}));
    const Result result = read(builder.bytes());
    const zxArray& set = *host::cellAt(result.value("SubIFDs"), 0);
    EXPECT_EQ(textOf(fieldOf(set, "Compression")), "Uncompressed");
    TagIds expected{305};
    expected.insert(expected.end(), allDefaults.begin(), allDefaults.end());
    EXPECT_EQ(tagsOf(builder.bytes(), position), expected);
}

TEST_P(DefaultTags, AreNotMadeInTheOtherKindsOfDirectory) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34665, LONG, {1}), pointers(34853, LONG, {2})});
    builder.add({text(305, "s"), pointers(40965, LONG, {3})});
    builder.add({text(1, "N")});
    builder.add({text(1, "R98")});
    const Result result = read(builder.bytes());
    const zxArray& exif = result.value("DigitalCamera");
    EXPECT_EQ(fieldsOf(exif), (Names{"Software", "InteroperabilityIFD"}));
    EXPECT_EQ(fieldsOf(result.value("GPSInfo")), Names{"GPSLatitudeRef"});
    EXPECT_EQ(fieldsOf(fieldOf(exif, "InteroperabilityIFD")), Names{"InteroperabilityIndex"});
}

TEST(JpegDirectories, GetNoDefaults) {
    TiffBuilder builder;
    builder.add({text(305, "s"), pointers(330, LONG, {1})});
    builder.add({text(306, "d")});
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_EQ(fieldsOf(result.output()),
              (Names{"Filename", "FileModDate", "FileSize", "Format", "FormatVersion", "Width",
                     "Height", "BitDepth", "ColorType", "FormatSignature", "Software", "SubIFDs"}));
    const zxArray& set = *host::cellAt(result.value("SubIFDs"), 0);
    EXPECT_EQ(fieldsOf(set),
              (Names{"Filename", "FileModDate", "FileSize", "Format", "FormatVersion", "Width",
                     "Height", "BitDepth", "ColorType", "FormatSignature", "DateTime"}));
}

}  // namespace
}  // namespace test
