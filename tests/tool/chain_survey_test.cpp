#include "tool/chain_survey.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>

#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"
#include "tool/chain_check.h"

namespace {

using tool_test::TiffBytes;

constexpr std::uint64_t someLimit = 100;
constexpr std::uint64_t headerOffset = 12;  // in a file that jpegAround makes

bool mayNeverEnd(const TiffBytes& tiff, std::uint64_t limit = someLimit) {
    const tool_test::TemporaryFolder folder;
    tool::PositionedFile file(folder.file("photo.jpg", tool_test::jpegAround(tiff.bytes())));
    const auto reader = tool::DirectoryReader::open(file, headerOffset).value();
    return tool::surveyChains(reader, tool::firstDirectoryRead(reader, 0).value(), limit)
        .mayNeverEnd;
}

tool::ChainSurvey survey(const TiffBytes& tiff) {
    const tool_test::TemporaryFolder folder;
    tool::PositionedFile file(folder.file("a.tif", tiff.bytes()));
    const auto reader = tool::DirectoryReader::open(file, 0).value();
    return tool::surveyChains(reader, tool::firstDirectoryRead(reader, 0).value(), 0);
}

TEST(EndlessChain, WidthAndHeightAloneNeverReachALimit) {
    EXPECT_TRUE(mayNeverEnd(
        TiffBytes().header(8).count(2).shortEntry(256, 1).shortEntry(257, 1).offset(8)));
}

TEST(EndlessChain, OneKeptFieldInTheCycleReachesTheLimit) {
    EXPECT_FALSE(mayNeverEnd(
        TiffBytes().header(8).count(2).shortEntry(256, 1).shortEntry(274, 1).offset(8)));
}

TEST(EndlessChain, AnUnknownTagIsAFieldToo) {
    EXPECT_FALSE(mayNeverEnd(TiffBytes().header(8).count(1).shortEntry(65001, 1).offset(8)));
}

TEST(EndlessChain, RefusedEntriesAreNoFields) {
    EXPECT_TRUE(mayNeverEnd(TiffBytes().header(8).count(1).entry(274, 99, 1, 1).offset(8)))
        << "an unknown type";
    EXPECT_TRUE(mayNeverEnd(TiffBytes().header(8).count(1).entry(274, 0, 1, 1).offset(8)))
        << "no type";
    EXPECT_TRUE(mayNeverEnd(TiffBytes().header(8).count(1).entry(274, 13, 1, 1).offset(8)))
        << "a pointer's type on a tag that is none";
    EXPECT_TRUE(mayNeverEnd(TiffBytes().header(8).count(1).entry(305, 2, 5, 1000).offset(8)))
        << "a value beyond the end of the file";
}

TEST(EndlessChain, AKeptDirectoryBeforeTheCycleHelpsOnlyASmallLimit) {
    TiffBytes tiff;
    tiff.header(8).count(1).shortEntry(274, 1).offset(26);  // kept, leads on
    tiff.count(1).shortEntry(256, 1).offset(26);            // dropped, leads to itself
    EXPECT_FALSE(mayNeverEnd(tiff, 1));
    EXPECT_TRUE(mayNeverEnd(tiff, 2));
}

TEST(EndlessChain, AChainThatEndsIsNotEndlessWhateverItHolds) {
    EXPECT_FALSE(mayNeverEnd(TiffBytes().header(8).count(1).shortEntry(256, 1).offset(0)));
}

TEST(EndlessChain, SubIfdChainsAreFollowed) {
    TiffBytes tiff;
    tiff.header(8).count(2).shortEntry(274, 1).entry(330, 4, 1, 38).offset(0);
    tiff.count(1).shortEntry(256, 1).offset(38);
    EXPECT_TRUE(mayNeverEnd(tiff));
}

TEST(EndlessChain, SubIfdsBehindAnExifPointerAreFollowed) {
    TiffBytes tiff(TiffBytes::Big);
    tiff.header(8).count(2).shortEntry(274, 1).entry(34665, 4, 1, 38).offset(0);
    tiff.count(1).entry(330, 4, 1, 56).offset(0);
    tiff.count(1).shortEntry(256, 1).offset(56);
    EXPECT_TRUE(mayNeverEnd(tiff));
}

TEST(EndlessChain, PointersOfOddTypesAreReadAsTheModuleReadsThem) {
    // Two SHORTs in the value field: as one number in memory they are 0x0026 of the first.
    TiffBytes tiff(TiffBytes::Big);
    tiff.header(8).count(2).shortEntry(274, 1).number(330, 2).number(3, 2).number(2, 4);
    tiff.number(38, 2).number(0, 2).offset(0);
    tiff.count(1).shortEntry(256, 1).offset(38);
    EXPECT_TRUE(mayNeverEnd(tiff));
}

TEST(EndlessChain, ExifDirectoriesThatPointAtThemselvesAreLookedAtOnce) {
    TiffBytes tiff;
    tiff.header(8).count(2).shortEntry(274, 1).entry(34665, 4, 1, 38).offset(0);
    tiff.count(1).entry(34665, 4, 1, 38).offset(38);
    EXPECT_FALSE(mayNeverEnd(tiff));
}

TEST(EndlessChain, OnlyJpegDirectoriesAreDropped) {
    EXPECT_FALSE(survey(TiffBytes().header(8).count(1).shortEntry(256, 1).offset(8)).mayNeverEnd);
}

class ChainSurveyOfEachLayout
    : public testing::TestWithParam<std::tuple<TiffBytes::Order, TiffBytes::Layout>> {
  protected:
    static TiffBytes empty() { return TiffBytes(std::get<0>(GetParam()), std::get<1>(GetParam())); }
    /// Where a directory of one entry ends that starts at a position.
    static std::uint64_t after(std::uint64_t position) {
        return position + empty().count(1).shortEntry(0, 0).offset(0).size();
    }
    /// An entry with one LONG.
    static std::string pointer(std::uint64_t tag, std::uint64_t target) {
        TiffBytes bytes = empty();
        bytes.number(tag, 2).number(4, 2).offset(1).number(target, 4);
        return bytes.raw(std::string(bytes.size() == 16 ? 4 : 0, '\0')).bytes();
    }
};

TEST_P(ChainSurveyOfEachLayout, ASoundSubDirectoryChainCountsAmongTheLongest) {
    const std::uint64_t first = empty().header(0).size();
    const std::uint64_t second = after(first);
    TiffBytes tiff = empty();
    tiff.header(first).count(1).raw(pointer(330, second)).offset(0);
    tiff.count(1).shortEntry(256, 1).offset(after(second)).count(1).shortEntry(256, 1).offset(0);
    const tool::ChainSurvey found = survey(tiff);
    EXPECT_EQ(found.mainDirectories, 1U);
    EXPECT_EQ(found.longest, 2U);
    EXPECT_FALSE(found.anyComesBack);
    EXPECT_TRUE(found.isWhole);
}

TEST_P(ChainSurveyOfEachLayout, ASubDirectoryChainBehindAnExifPointerComesBack) {
    const std::uint64_t first = empty().header(0).size();
    const std::uint64_t exif = after(first);
    const std::uint64_t sub = after(exif);
    TiffBytes tiff = empty();
    tiff.header(first).count(1).raw(pointer(34665, exif)).offset(0);
    tiff.count(1).raw(pointer(330, sub)).offset(exif);
    tiff.count(1).shortEntry(256, 1).offset(sub);
    const tool::ChainSurvey found = survey(tiff);
    EXPECT_FALSE(found.mainComesBack);
    EXPECT_TRUE(found.anyComesBack);
    EXPECT_EQ(found.longest, 1U);
}

TEST_P(ChainSurveyOfEachLayout, PointersBeyondTheValueFieldAreFollowed) {
    const std::uint64_t first = empty().header(0).size();
    const std::uint64_t values = after(first);
    const std::uint64_t sub = values + 12;
    TiffBytes tiff = empty();
    tiff.header(first).count(1).entry(330, 4, 3, values).offset(0);
    tiff.number(0, 4).number(0, 4).number(sub, 4).count(1).shortEntry(256, 1).offset(sub);
    EXPECT_TRUE(survey(tiff).anyComesBack);
}

TEST_P(ChainSurveyOfEachLayout, PointersAmongManyEntriesAreFollowed) {
    constexpr std::uint64_t entries = 1000;
    TiffBytes tiff = empty();
    tiff.header(empty().header(0).size()).count(entries);
    for (std::uint64_t i = 1; i < entries; ++i) {
        tiff.shortEntry(259, 1);
    }
    const TiffBytes rest = empty().shortEntry(0, 0).offset(0);
    const std::uint64_t sub = tiff.size() + rest.size();
    tiff.raw(pointer(330, sub)).offset(0);
    tiff.count(1).shortEntry(256, 1).offset(sub);
    EXPECT_TRUE(survey(tiff).anyComesBack);
}

INSTANTIATE_TEST_SUITE_P(OrdersAndLayouts, ChainSurveyOfEachLayout,
                         testing::Combine(testing::Values(TiffBytes::Little, TiffBytes::Big),
                                          testing::Values(TiffBytes::Classic, TiffBytes::BigTiff)));

TEST(ChainSurvey, GpsAndInteroperabilityDirectoriesHaveNoChain) {
    for (const std::uint64_t tag : {34853U, 40965U}) {
        TiffBytes tiff;
        tiff.header(8).count(1).entry(tag, 4, 1, 26).offset(0);
        EXPECT_FALSE(survey(tiff.count(1).shortEntry(1, 1).offset(26)).anyComesBack) << tag;
    }
}

TEST(ChainSurvey, APointerCountThatOverflowsIsNoValue) {
    TiffBytes tiff(TiffBytes::Little, TiffBytes::BigTiff);
    tiff.header(16).count(1).entry(330, 16, std::uint64_t{1} << 61U, 16).offset(0);
    EXPECT_TRUE(survey(tiff).isWhole);
    EXPECT_FALSE(survey(tiff).anyComesBack);
}

TEST(ChainSurvey, TheMainChainIsCountedAlsoWhereItsEntriesAreTooManyToLookAt) {
    // Directories of 65535 refused entries start every 6 bytes, so do the offsets behind those.
    constexpr std::uint64_t directories = 40;
    TiffBytes tiff;
    tiff.header(8).raw(std::string(2 + 65535 * 12, '\xFF'));
    for (std::uint64_t i = 1; i < directories; ++i) {
        tiff.offset(8 + 6 * i).raw("\xFF\xFF");
    }
    tiff.offset(0);
    const tool::ChainSurvey found = survey(tiff);
    EXPECT_EQ(found.mainDirectories, directories);
    EXPECT_FALSE(found.isWhole);
}

}  // namespace
