#include "tool/chain_summary.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "tests/tool/file_chains.h"

namespace {

using tool_test::FileChains;
using tool_test::TiffBytes;

tool::ChainSummary summary(const std::string& bytes, std::uint32_t start = 0) {
    return tool::summarizeChains(FileChains(bytes).get(), start, 0);
}

tool::ChainSummary summary(const TiffBytes& tiff) {
    return summary(tiff.bytes());
}

bool mayNeverEnd(const TiffBytes& tiff, std::uint64_t limit = 0) {
    FileChains jpeg(tool_test::jpegAround(tiff.bytes()));
    return tool::summarizeChains(jpeg.get(), 0, limit).mayNeverEnd;
}

TEST(ChainSummary, OfAnEndlessMainChainDependsOnTheLimit) {
    TiffBytes tiff;
    tiff.header(8).count(1).shortEntry(274, 1).offset(26);
    tiff.count(1).shortEntry(256, 1).offset(26);
    EXPECT_FALSE(mayNeverEnd(tiff, 1));
    EXPECT_TRUE(mayNeverEnd(tiff, 2));
    EXPECT_TRUE(mayNeverEnd(tiff, 0)) << "no limit";
}

TEST(ChainSummary, HasTheMainChainFromTheGivenDirectoryOn) {
    TiffBytes tiff;
    tiff.header(8).count(1).shortEntry(259, 1).offset(26);
    tiff.count(1).shortEntry(259, 1).offset(44).count(1).shortEntry(259, 1).offset(26);
    EXPECT_EQ(summary(tiff.bytes(), 0).mainDirectories, 3U);
    EXPECT_EQ(summary(tiff.bytes(), 1).mainDirectories, 2U);
    EXPECT_TRUE(summary(tiff.bytes(), 1).mainComesBack);
}

TEST(ChainSummary, FindsAnEndlessChainOfSubImages) {
    TiffBytes tiff;
    tiff.header(8).count(2).shortEntry(274, 1).entry(330, 4, 1, 38).offset(0);
    tiff.count(1).shortEntry(256, 1).offset(38);
    EXPECT_TRUE(mayNeverEnd(tiff));
}

TEST(ChainSummary, FindsAnEndlessChainOfSubImagesBehindAnExifPointer) {
    TiffBytes tiff(TiffBytes::Big);
    tiff.header(8).count(2).shortEntry(274, 1).entry(34665, 4, 1, 38).offset(0);
    tiff.count(1).entry(330, 4, 1, 56).offset(0);
    tiff.count(1).shortEntry(256, 1).offset(56);
    EXPECT_TRUE(mayNeverEnd(tiff));
}

TEST(ChainSummary, OfExifDirectoriesThatPointAtThemselvesEnds) {
    TiffBytes tiff;
    tiff.header(8).count(2).shortEntry(274, 1).entry(34665, 4, 1, 38).offset(0);
    tiff.count(1).entry(34665, 4, 1, 38).offset(38);
    EXPECT_FALSE(mayNeverEnd(tiff));
}

TEST(ChainSummary, OfAJpegWhoseNestIsTooDeepToBeReadMayNeverEnd) {
    const auto nest = [](std::uint64_t levels) {
        TiffBytes tiff;
        tiff.header(8);
        for (std::uint64_t i = 1; i <= levels; ++i) {
            tiff.count(2).shortEntry(274, 1).entry(34665, 4, 1, 8 + i * 30).offset(0);
        }
        return tiff.count(1).shortEntry(274, 1).offset(0);
    };
    EXPECT_FALSE(mayNeverEnd(nest(16)));
    EXPECT_TRUE(mayNeverEnd(nest(17)));
}

TEST(ChainSummary, HasTheSubImagesOfADirectoryWithMostlyUnknownTypes) {
    TiffBytes tiff;
    tiff.header(8).count(3).entry(330, 4, 1, 50).entry(65001, 99, 1, 0).entry(65002, 99, 1, 0);
    EXPECT_TRUE(summary(tiff.offset(0).count(1).shortEntry(256, 1).offset(50)).anyComesBack);
}

TEST(ChainSummary, LeavesOutAPointerWithoutAValue) {
    TiffBytes tiff;
    tiff.header(8).count(1).entry(330, 4, 0, 26).offset(0).count(1).shortEntry(256, 1).offset(26);
    EXPECT_FALSE(summary(tiff).anyComesBack);
    EXPECT_TRUE(summary(tiff).isWhole);
}

class ChainSummaryOfEachLayout
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

TEST_P(ChainSummaryOfEachLayout, ASoundSubDirectoryChainCountsAmongTheLongest) {
    const std::uint64_t first = empty().header(0).size();
    const std::uint64_t second = after(first);
    TiffBytes tiff = empty();
    tiff.header(first).count(1).raw(pointer(330, second)).offset(0);
    tiff.count(1).shortEntry(256, 1).offset(after(second)).count(1).shortEntry(256, 1).offset(0);
    const tool::ChainSummary found = summary(tiff);
    EXPECT_EQ(found.mainDirectories, 1U);
    EXPECT_EQ(found.longest, 2U);
    EXPECT_FALSE(found.anyComesBack);
    EXPECT_TRUE(found.isWhole);
}

TEST_P(ChainSummaryOfEachLayout, ASubDirectoryChainBehindAnExifPointerComesBack) {
    const std::uint64_t first = empty().header(0).size();
    const std::uint64_t exif = after(first);
    const std::uint64_t sub = after(exif);
    TiffBytes tiff = empty();
    tiff.header(first).count(1).raw(pointer(34665, exif)).offset(0);
    tiff.count(1).raw(pointer(330, sub)).offset(exif);
    tiff.count(1).shortEntry(256, 1).offset(sub);
    const tool::ChainSummary found = summary(tiff);
    EXPECT_FALSE(found.mainComesBack);
    EXPECT_TRUE(found.anyComesBack);
    EXPECT_EQ(found.longest, 1U);
}

TEST_P(ChainSummaryOfEachLayout, PointersBeyondTheValueFieldAreFollowed) {
    const std::uint64_t first = empty().header(0).size();
    const std::uint64_t values = after(first);
    const std::uint64_t sub = values + 12;
    TiffBytes tiff = empty();
    tiff.header(first).count(1).entry(330, 4, 3, values).offset(0);
    tiff.number(0, 4).number(0, 4).number(sub, 4).count(1).shortEntry(256, 1).offset(sub);
    EXPECT_TRUE(summary(tiff).anyComesBack);
}

// The module takes 4 bytes of the value as it lies in memory for a pointer, whatever the type.
TEST_P(ChainSummaryOfEachLayout, PointersOfEveryTypeAreFollowed) {
    struct Case {
        std::uint64_t type;
        std::uint64_t count;
        unsigned numberSize;
        std::uint64_t pointer;  // among the values: the one that leads to the directory
    };
    const std::vector<Case> cases{
        {1, 12, 1, 1}, {2, 12, 1, 2}, {3, 6, 2, 0},  {3, 6, 2, 2},  {4, 3, 4, 1},
        {5, 2, 4, 1},  {6, 12, 1, 0}, {7, 12, 1, 0}, {8, 6, 2, 1},  {9, 3, 4, 2},
        {10, 2, 4, 1}, {11, 3, 4, 2}, {12, 2, 8, 0}, {12, 2, 8, 1}, {13, 3, 4, 0},
        {16, 2, 8, 0}, {16, 2, 8, 1}, {17, 2, 8, 1}, {18, 2, 8, 0},
    };
    for (const Case& pointer : cases) {
        const std::uint64_t first = empty().header(0).size();
        const std::uint64_t values = after(first);
        const std::uint64_t sub = values + 16;
        TiffBytes tiff = empty();
        tiff.header(first).count(1).entry(330, pointer.type, pointer.count, values).offset(0);
        // The value in memory, number by number.
        std::array<unsigned char, 16> memory{};
        memory.at(static_cast<std::size_t>(pointer.pointer * 4)) = static_cast<unsigned char>(sub);
        for (std::size_t at = 0; at < memory.size(); at += pointer.numberSize) {
            std::uint64_t number = 0;
            for (unsigned i = 0; i < pointer.numberSize; ++i) {
                number |= std::uint64_t{memory.at(at + i)} << (8 * i);
            }
            tiff.number(number, pointer.numberSize);
        }
        tiff.count(1).shortEntry(256, 1).offset(sub);
        EXPECT_TRUE(summary(tiff).anyComesBack)
            << "type " << pointer.type << ", pointer " << pointer.pointer;
    }
}

TEST_P(ChainSummaryOfEachLayout, PointersAmongManyEntriesAreFollowed) {
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
    EXPECT_TRUE(summary(tiff).anyComesBack);
}

INSTANTIATE_TEST_SUITE_P(OrdersAndLayouts, ChainSummaryOfEachLayout,
                         testing::Combine(testing::Values(TiffBytes::Little, TiffBytes::Big),
                                          testing::Values(TiffBytes::Classic, TiffBytes::BigTiff)));

TEST(ChainSummary, GpsAndInteroperabilityDirectoriesHaveNoChain) {
    for (const std::uint64_t tag : {34853U, 40965U}) {
        TiffBytes tiff;
        tiff.header(8).count(1).entry(tag, 4, 1, 26).offset(0);
        EXPECT_FALSE(summary(tiff.count(1).shortEntry(1, 1).offset(26)).anyComesBack) << tag;
    }
}

TEST(ChainSummary, APointerCountThatOverflowsIsNoValue) {
    TiffBytes tiff(TiffBytes::Little, TiffBytes::BigTiff);
    tiff.header(16).count(1).entry(330, 16, std::uint64_t{1} << 61U, 16).offset(0);
    EXPECT_TRUE(summary(tiff).isWhole);
    EXPECT_FALSE(summary(tiff).anyComesBack);
}

TEST(ChainSummary, OfAMainChainBeyondTheInspectionsLimitHasWhatIsKnown) {
    const tool::ChainSummary found = summary(tool_test::tooManyEntries());
    EXPECT_EQ(found.mainDirectories, 4U);
    EXPECT_FALSE(found.isMainKnown);
    EXPECT_FALSE(found.isWhole);
}

TEST(ChainSummary, OfSubImagesBeyondTheInspectionsLimitIsNotWhole) {
    // One entry with more pointers than may be followed.
    TiffBytes tiff;
    tiff.header(8).count(1).entry(330, 1, 100'000, 26).offset(0).raw(std::string(100'000, '\1'));
    EXPECT_TRUE(summary(tiff).isMainKnown);
    EXPECT_FALSE(summary(tiff).isWhole);
}

}  // namespace
