#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

#include "host/messages/reports.h"
#include "tag/tag_validation.h"
#include "tests/support/single_directory.h"

// Counts of 0, and the seven tags that have exactly one component.

namespace {

using namespace test;

struct FixedCount {
    std::uint16_t tag;
    const char* name;
};

constexpr std::array<FixedCount, 7> fixedCounts{{{256, "Width"},
                                                 {257, "Length"},
                                                 {277, "SamplesPerPixel"},
                                                 {278, "RowsPerStrip"},
                                                 {284, "PlanarConfiguration"},
                                                 {322, "TileWidth"},
                                                 {323, "TileLength"}}};

host::Report badCount(const FixedCount& fixed, std::uint64_t count) {
    return report("badTagDataCount",
                  {std::uint64_t{fixed.tag}, fixed.name, count, std::uint64_t{1}});
}

class FixedCountTag : public testing::TestWithParam<FixedCount> {};

TEST_P(FixedCountTag, WithOneComponentIsRead) {
    for (const Container& container : containers) {
        const Result result = readDirectory({number(GetParam().tag, SHORT, 1)}, container);
        EXPECT_FALSE(result.failed());
        EXPECT_EQ(result.warnings(), Reports{});
    }
}

TEST_P(FixedCountTag, WithAnotherCountEndsTheCall) {
    for (const Container& container : containers) {
        SCOPED_TRACE(container);
        for (const std::uint64_t count : {2ULL, 3ULL, 65536ULL, 0xFFFFFFFFULL}) {
            // The value's place is out of the file: the count is looked at first.
            const Result result =
                readDirectory({at(GetParam().tag, LONG, count, 0xFFFFFF00)}, container);
            ASSERT_TRUE(result.failed());
            EXPECT_EQ(result.error(), badCount(GetParam(), count));
            EXPECT_EQ(result.warnings(), Reports{});
        }
    }
    const Container big{Order::Little, Layout::Big};
    constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(readDirectory({at(GetParam().tag, LONG, largest, 8)}, big).error(),
              badCount(GetParam(), largest));
}

TEST_P(FixedCountTag, WithoutComponentsIsReportedAndEndsTheCall) {
    const Result result = readDirectory({at(GetParam().tag, SHORT, 0, 0)});
    EXPECT_EQ(result.warnings(), Reports{report("zeroComponentCount", {GetParam().name})});
    EXPECT_EQ(result.error(), badCount(GetParam(), 0));
}

TEST_P(FixedCountTag, EndsTheCallFromEveryKindOfDirectory) {
    for (const PointerTag& pointer :
         {exifPointer, gpsPointer, interopPointer, PointerTag{330, "SubIFDs"}}) {
        const Result result =
            readSubDirectory(pointer, {at(GetParam().tag, LONG, 2, 0), number(1, SHORT, 1)});
        EXPECT_EQ(result.error(), badCount(GetParam(), 2));
    }
    EXPECT_EQ(readAsJpeg(tiffOf({at(GetParam().tag, LONG, 2, 0)})).error(),
              badCount(GetParam(), 2));
}

TEST_P(FixedCountTag, IsNamedByThePrimaryDictionaryInTheErrorWhateverTheKind) {
    const Result result = readSubDirectory(gpsPointer, {at(GetParam().tag, LONG, 0, 0)});
    EXPECT_EQ(result.warnings(), Reports{report("zeroComponentCount", {""})});
    EXPECT_EQ(result.error(), badCount(GetParam(), 0));
}

INSTANTIATE_TEST_SUITE_P(Seven, FixedCountTag, testing::ValuesIn(fixedCounts),
                         [](const auto& tag) { return std::string(tag.param.name); });

TEST(ComponentCounts, AreCheckedForSevenTagsOnly) {
    const auto isFixed = [](unsigned tag) {
        for (const FixedCount& fixed : fixedCounts) {
            if (fixed.tag == tag) {
                return true;
            }
        }
        return false;
    };
    for (unsigned tag = 0; tag <= 65535; ++tag) {
        const auto id = static_cast<unsigned short>(tag);
        ASSERT_NO_THROW(corvinex::validate_tag_against_number_of_components(id, 1)) << tag;
        for (const unsigned long count : {0UL, 2UL, 0xFFFFFFFFFFFFFFFFUL}) {
            if (isFixed(tag)) {
                ASSERT_THROW(corvinex::validate_tag_against_number_of_components(id, count),
                             host::Error);
            } else {
                ASSERT_NO_THROW(corvinex::validate_tag_against_number_of_components(id, count));
            }
        }
    }
}

TEST(ComponentCounts, OfZeroAreReportedOncePerName) {
    const Result result =
        readDirectory({shorts(50714, {}), longs(50714, {}), shorts(50717, {}), shorts(60001, {}),
                       shorts(60002, {}), number(274, SHORT, 1)});
    EXPECT_EQ(result.warnings(), (Reports{report("zeroComponentCount", {"BlackLevel"}),
                                          report("zeroComponentCount", {"WhiteLevel"}),
                                          report("zeroComponentCount", {""})}));
    EXPECT_EQ(result.number("Orientation"), 1);
    EXPECT_EQ(host::sizeOf(unknownTagsOf(result)), (host::Size{2, 1}));
}

TEST(ComponentCounts, OfZeroShareTheirNameAcrossDirectories) {
    TiffBuilder builder;
    builder.add({shorts(50714, {}), pointers(34665, LONG, {1})});
    builder.add({shorts(50714, {}), number(33434, SHORT, 1)});
    EXPECT_EQ(read(builder.bytes()).warnings(),
              Reports{report("zeroComponentCount", {"BlackLevel"})});
}

TEST(ComponentCounts, OfZeroAreReportedAnewForTheSameFileReadAgain) {
    const Bytes bytes = tiffOf({shorts(50714, {})});
    EXPECT_EQ(read(bytes).warnings().size(), 1U);
    EXPECT_EQ(read(bytes).warnings().size(), 1U);
}

TEST(ComponentCounts, OfZeroNeedNoPlaceInTheFile) {
    const Result result = readDirectory({at(50714, DOUBLE, 0, 0xFFFFFFFF)});
    EXPECT_EQ(result.warnings(), Reports{report("zeroComponentCount", {"BlackLevel"})});
}

}  // namespace
