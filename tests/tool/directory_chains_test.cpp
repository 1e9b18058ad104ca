#include "tool/directory_chains.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <tuple>

#include "tests/tool/file_chains.h"

namespace {

using tool::ChainFacts;
using tool::DirectoryChains;
using tool_test::FileChains;
using tool_test::TiffBytes;

/// Directories of one entry each, side by side behind the header; the last leads to the one of the
/// given index, or nowhere.
std::string chainOf(std::size_t directories, std::optional<std::size_t> backTo,
                    TiffBytes bytes = TiffBytes()) {
    const std::uint64_t headerSize = TiffBytes(bytes).header(0).size();
    const std::uint64_t size = TiffBytes(bytes).count(1).shortEntry(0, 0).offset(0).size();
    bytes.header(headerSize);
    for (std::size_t i = 0; i < directories; ++i) {
        const bool isLast = i + 1 == directories;
        const std::uint64_t next = !isLast  ? headerSize + (i + 1) * size
                                   : backTo ? headerSize + *backTo * size
                                            : 0;
        bytes.count(1).shortEntry(259, 1).offset(next);
    }
    return bytes.bytes();
}

/// What is read from the directory on that stands at an index in the main chain.
ChainFacts factsFrom(std::uint32_t index, const std::string& bytes) {
    return FileChains(bytes).get().from(index);
}

class ChainOfEachLayout
    : public testing::TestWithParam<std::tuple<TiffBytes::Order, TiffBytes::Layout>> {
  protected:
    static TiffBytes empty() { return TiffBytes(std::get<0>(GetParam()), std::get<1>(GetParam())); }
};

TEST_P(ChainOfEachLayout, ThatEndsDoesNotComeBack) {
    const ChainFacts chain = factsFrom(0, chainOf(5, std::nullopt, empty()));
    EXPECT_EQ(chain.directories, 5U);
    EXPECT_FALSE(chain.comesBack);
    EXPECT_TRUE(chain.isKnown);
}

TEST_P(ChainOfEachLayout, ThatComesBackHasEachDirectoryItReadsOnce) {
    const std::string bytes = chainOf(5, 2, empty());
    EXPECT_EQ(factsFrom(0, bytes).directories, 5U);
    EXPECT_EQ(factsFrom(1, bytes).directories, 4U);
    EXPECT_EQ(factsFrom(2, bytes).directories, 3U);
    EXPECT_EQ(factsFrom(4, bytes).directories, 3U) << "those before it are read again";
    EXPECT_TRUE(factsFrom(0, bytes).comesBack);
    EXPECT_TRUE(factsFrom(4, bytes).comesBack);
}

INSTANTIATE_TEST_SUITE_P(OrdersAndLayouts, ChainOfEachLayout,
                         testing::Combine(testing::Values(TiffBytes::Little, TiffBytes::Big),
                                          testing::Values(TiffBytes::Classic, TiffBytes::BigTiff)));

TEST(DirectoryChains, KnowWhatStandsBehindWhatWasAskedForBefore) {
    FileChains file(chainOf(5, std::nullopt));
    EXPECT_EQ(file.get().from(3).directories, 2U);
    EXPECT_EQ(file.get().from(1).directories, 4U);
    EXPECT_EQ(file.get().from(4).directories, 1U);
}

TEST(DirectoryChains, HaveADirectoryThatLeadsToItselfOnce) {
    const ChainFacts chain = factsFrom(0, chainOf(1, 0));
    EXPECT_TRUE(chain.comesBack);
    EXPECT_EQ(chain.directories, 1U);
}

TEST(DirectoryChains, EndWhereTheFileHoldsNoDirectory) {
    const std::string sound = chainOf(2, 0);
    const auto cut = [&](std::size_t bytes) {
        return factsFrom(0, sound.substr(0, sound.size() - bytes));
    };
    EXPECT_FALSE(cut(1).comesBack) << "the next offset is cut";
    EXPECT_FALSE(cut(5).comesBack) << "the entries are cut";
    EXPECT_EQ(cut(17).directories, 1U) << "the second count is cut";
    EXPECT_TRUE(cut(17).isKnown);
    EXPECT_EQ(cut(18).directories, 1U) << "the second directory begins at the end of the file";
    EXPECT_TRUE(cut(18).isKnown);
}

TEST(DirectoryChains, EndBeforeADirectoryWithoutEntries) {
    TiffBytes tiff;
    tiff.header(8).count(1).shortEntry(259, 1).offset(26).count(0).offset(8);
    FileChains file(tiff);
    EXPECT_EQ(file.get().from(0).directories, 1U);
    EXPECT_FALSE(file.get().from(0).comesBack);
    EXPECT_EQ(FileChains(TiffBytes().header(8).count(0).offset(8)).get().first(),
              DirectoryChains::nowhere);
}

TEST(DirectoryChains, EndBehindADirectoryThatIsTooLongForAJpeg) {
    const auto comesBack = [](std::uint64_t entries) {
        TiffBytes tiff;
        tiff.header(8).count(entries);
        for (std::uint64_t i = 0; i < entries; ++i) {
            tiff.shortEntry(274, 1);
        }
        // The segment's length is of no matter here, as the file goes on.
        return factsFrom(0, tool_test::jpegAround(tiff.offset(8).bytes())).comesBack;
    };
    EXPECT_TRUE(comesBack(5461));
    EXPECT_FALSE(comesBack(5462));
}

TEST(DirectoryChains, ACountOfAllOnesIsNoOverflow) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    FileChains file(
        TiffBytes(TiffBytes::Little, TiffBytes::BigTiff).header(16).count(most).offset(16));
    EXPECT_FALSE(file.get().from(0).comesBack);
}

TEST(DirectoryChains, KnowWhatFollowsAnExifDirectoryWhereTheWalkHasReadIt) {
    const auto behindExif = [](std::uint64_t next) {
        TiffBytes tiff;
        tiff.header(8).count(1).entry(34665, 4, 1, 26).offset(0);
        tiff.count(1).shortEntry(33434, 1).offset(next);
        tiff.count(1).shortEntry(256, 1).offset(0);
        return FileChains(tiff).get().from(1);
    };
    EXPECT_EQ(behindExif(0).directories, 1U);
    EXPECT_TRUE(behindExif(0).isKnown);
    EXPECT_TRUE(behindExif(26).comesBack);
    EXPECT_EQ(behindExif(8).directories, 2U);
    EXPECT_FALSE(behindExif(44).isKnown) << "nothing else leads there";
}

/// Whether a limit of so many directories might never end the main chain of a JPEG.
bool isEndless(const TiffBytes& tiff, std::uint64_t limit = 100) {
    const ChainFacts chain = factsFrom(0, tool_test::jpegAround(tiff.bytes()));
    return chain.isEndless && chain.kept < limit;
}

TEST(EndlessChain, WidthAndHeightAloneNeverReachALimit) {
    EXPECT_TRUE(
        isEndless(TiffBytes().header(8).count(2).shortEntry(256, 1).shortEntry(257, 1).offset(8)));
}

TEST(EndlessChain, OneKeptFieldInTheCycleReachesTheLimit) {
    EXPECT_FALSE(
        isEndless(TiffBytes().header(8).count(2).shortEntry(256, 1).shortEntry(274, 1).offset(8)));
}

TEST(EndlessChain, AnUnknownTagIsAFieldToo) {
    EXPECT_FALSE(isEndless(TiffBytes().header(8).count(1).shortEntry(65001, 1).offset(8)));
}

TEST(EndlessChain, RefusedEntriesAreNoFields) {
    const auto isEndlessOverOne = [](std::uint64_t tag, std::uint64_t type, std::uint64_t count,
                                     std::uint64_t field) {
        return isEndless(TiffBytes().header(8).count(1).entry(tag, type, count, field).offset(8));
    };
    EXPECT_TRUE(isEndlessOverOne(274, 99, 1, 1)) << "an unknown type";
    EXPECT_TRUE(isEndlessOverOne(274, 129, 1, 1)) << "a type that the inspection alone reads";
    EXPECT_TRUE(isEndlessOverOne(274, 0, 1, 1)) << "no type";
    EXPECT_TRUE(isEndlessOverOne(274, 13, 1, 1)) << "a pointer's type on a tag that is none";
    EXPECT_TRUE(isEndlessOverOne(305, 2, 5, 1000)) << "a value beyond the end of the file";
}

TEST(EndlessChain, PointersAreNoSureFields) {
    for (const std::uint64_t tag : {330U, 34665U, 34853U, 40965U}) {
        EXPECT_TRUE(isEndless(TiffBytes().header(8).count(1).entry(tag, 4, 1, 8).offset(8))) << tag;
    }
}

TEST(EndlessChain, AKeptDirectoryBeforeTheCycleHelpsOnlyASmallLimit) {
    TiffBytes tiff;
    tiff.header(8).count(1).shortEntry(274, 1).offset(26);  // kept, leads on
    tiff.count(1).shortEntry(256, 1).offset(26);            // dropped, leads to itself
    EXPECT_FALSE(isEndless(tiff, 1));
    EXPECT_TRUE(isEndless(tiff, 2));
}

TEST(EndlessChain, AChainThatEndsIsNotEndlessWhateverItHolds) {
    EXPECT_FALSE(isEndless(TiffBytes().header(8).count(1).shortEntry(256, 1).offset(0)));
}

TEST(EndlessChain, OnlyJpegDirectoriesAreDropped) {
    FileChains tiff(TiffBytes().header(8).count(1).shortEntry(256, 1).offset(8));
    EXPECT_FALSE(tiff.get().from(0).isEndless);
}

}  // namespace
