#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "entry/reports/internal_errors.h"
#include "tests/tag/tag_bench.h"

// Tags that stand in no file: defaults of baseline tags.

namespace {

using namespace test;
using corvinex::HostArray;
using corvinex::IFDtype_t_;
using corvinex::TiffTag;

struct DefaultRow {
    std::uint16_t tag;
    const char* name;
    std::vector<double> values;
    const char* word;  // the output where it is a word
};

const std::vector<DefaultRow>& defaultRows() {
    static const std::vector<DefaultRow> rows{
        {254, "NewSubFileType", {0}, nullptr},
        {259, "Compression", {1}, "Uncompressed"},
        {263, "Thresholding", {1}, nullptr},
        {266, "FillOrder", {1}, nullptr},
        {274, "Orientation", {1}, nullptr},
        {277, "SamplesPerPixel", {1}, nullptr},
        {278, "RowsPerStrip", {4294967295}, nullptr},
        {284, "PlanarConfiguration", {1}, "Chunky"},
        {290, "GrayResponseUnit", {0.01}, nullptr},  // unit 2 as its scale
        {296, "ResolutionUnit", {2}, "Inch"},
        {273, "StripOffsets", {}, nullptr},
        {279, "StripByteCounts", {}, nullptr},
        {282, "XResolution", {}, nullptr},
        {283, "YResolution", {}, nullptr},
        {320, "Colormap", {}, nullptr},
        {322, "TileWidth", {}, nullptr},
        {323, "TileLength", {}, nullptr},
        {324, "TileOffsets", {}, nullptr},
        {325, "TileByteCounts", {}, nullptr},
    };
    return rows;
}

class DefaultTag : public testing::TestWithParam<DefaultRow> {};

TEST_P(DefaultTag, HasItsNumberNameAndValue) {
    for (const IFDtype_t_ kind : {IFDtype_t_::Main, IFDtype_t_::EXIF}) {
        TiffTag tag(GetParam().tag, kind);
        EXPECT_EQ(tag.getId(), GetParam().tag);
        EXPECT_EQ(tag.getName(), GetParam().name);
        EXPECT_EQ(valuesOf(tag), GetParam().values);
        EXPECT_EQ(tag.subIfdSize(), 0U);
        const HostArray output = tag.getZxArray();
        if (GetParam().word != nullptr) {
            EXPECT_EQ(textOf(*output), GetParam().word);
        } else if (GetParam().values.empty()) {
            EXPECT_EQ(output, nullptr);
        } else {
            EXPECT_EQ(numbersOf(*output), GetParam().values);
        }
    }
}

TEST_P(DefaultTag, IsNeitherNamedNorDecodedInGpsAndInteroperabilityDirectories) {
    for (const IFDtype_t_ kind : {IFDtype_t_::GPS, IFDtype_t_::Interoperability}) {
        TiffTag tag(GetParam().tag, kind);
        EXPECT_EQ(tag.getName(), "");
        const HostArray output = tag.getZxArray();
        EXPECT_EQ(output == nullptr, GetParam().values.empty());
        if (output != nullptr) {
            EXPECT_EQ(host::classOf(*output), host::ValueClass::Double);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, DefaultTag, testing::ValuesIn(defaultRows()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(DefaultTags, GrayResponseUnitIsNotScaledInAGpsDirectory) {
    EXPECT_EQ(TiffTag(290, IFDtype_t_::GPS).getNumericValue(0), 2);
}

TEST(DefaultTags, OtherNumbersHaveNone) {
    WarningLog log;
    for (unsigned number = 0; number <= 65535; ++number) {
        const auto id = static_cast<std::uint16_t>(number);
        if (std::any_of(defaultRows().begin(), defaultRows().end(),
                        [id](const DefaultRow& row) { return row.tag == id; })) {
            continue;
        }
        try {
            const TiffTag tag(id, IFDtype_t_::Main);
            FAIL() << number;
        } catch (const corvinex::TiffTagsRecoverableError& error) {
            EXPECT_STREQ(error.what(), "TIiffTag::TiffTag");
        }
        ASSERT_EQ(log.take(), Reports{report("unrecognizedTagId", {std::uint64_t{number}})});
    }
}

TEST(DefaultTags, FillADirectoryThatHasOnlyOneTag) {
    const Result result = readDirectory({number(274, SHORT, 6)});
    EXPECT_EQ(result.text("Compression"), "Uncompressed");
    EXPECT_EQ(result.number("RowsPerStrip"), 4294967295);
    EXPECT_EQ(result.number("GrayResponseUnit"), 0.01);
    EXPECT_EQ(result.text("ResolutionUnit"), "Inch");
    EXPECT_FALSE(result.isSet("StripOffsets"));
    EXPECT_EQ(result.number("Orientation"), 6);
}

TEST(TagOfOneValue, HoldsTheValueAsADouble) {
    TiffTag tag(258, IFDtype_t_::Main, 3UL);
    EXPECT_EQ(tag.getId(), 258);
    EXPECT_EQ(tag.getName(), "BitsPerSample");
    EXPECT_EQ(valuesOf(tag), (std::vector<double>{3}));
    EXPECT_EQ(numberOf(*tag.getZxArray()), 3);
    EXPECT_EQ(valuesOf(TiffTag(258, IFDtype_t_::Main, 0UL)), (std::vector<double>{0}));
    EXPECT_EQ(TiffTag(258, IFDtype_t_::Main, std::numeric_limits<unsigned long>::max())
                  .getNumericValue(0),
              std::ldexp(1.0, 64));
}

TEST(TagOfOneValue, IsDecoded) {
    TiffTag word(259, IFDtype_t_::EXIF, 5UL);
    EXPECT_EQ(textOf(*word.getZxArray()), "LZW");
    EXPECT_EQ(TiffTag(290, IFDtype_t_::Main, 4UL).getNumericValue(0), 0.0001);
    TiffTag profile(34675, IFDtype_t_::Main, 5UL);
    EXPECT_EQ(numberOf(*profile.getZxArray()), 0) << "no file, no offset";
}

TEST(SampleLimits, TheSmallestValueIsZeroForEachSample) {
    const std::vector<double> bits{8, 16, 1};
    TiffTag tag(280, IFDtype_t_::Main, bits);
    EXPECT_EQ(tag.getName(), "MinSampleValue");
    EXPECT_EQ(valuesOf(tag), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(numbersOf(*tag.getZxArray()), (std::vector<double>{0, 0, 0}));
}

TEST(SampleLimits, TheLargestValueIsAPowerOfTwoLessOne) {
    const std::vector<double> bits{8, 16, 1, 0, 32, 64, 0.5};
    const TiffTag tag(281, IFDtype_t_::Main, bits);
    EXPECT_EQ(tag.getName(), "MaxSampleValue");
    EXPECT_EQ(valuesOf(tag), (std::vector<double>{255, 65535, 1, 0, 4294967295, std::ldexp(1, 64),
                                                  std::pow(2.0, 0.5) - 1}));
}

TEST(SampleLimits, AnyOtherTagIsTreatedLikeTheLargestValue) {
    const std::vector<double> bits{8};
    EXPECT_EQ(valuesOf(TiffTag(50717, IFDtype_t_::Main, bits)), (std::vector<double>{255}));
    TiffTag decoded(259, IFDtype_t_::Main, std::vector<double>{3});
    EXPECT_EQ(textOf(*decoded.getZxArray()), "JPEG");
}

TEST(SampleLimits, WithoutSamplesThereIsNoValue) {
    const std::vector<double> none;
    for (const unsigned short id : std::vector<unsigned short>{280, 281}) {
        TiffTag tag(id, IFDtype_t_::Main, none);
        EXPECT_TRUE(valuesOf(tag).empty());
        EXPECT_EQ(tag.getZxArray(), nullptr);
    }
}

}  // namespace
