#include "tool/main_chain.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/tool/file_chains.h"

namespace {

using tool_test::TiffBytes;

constexpr std::uint64_t all = UINT64_MAX;

/// Directories of one entry side by side; the last leads to the offset given.
std::string chain(std::uint64_t directories, std::uint64_t lastNext) {
    constexpr std::uint64_t size = 18;
    TiffBytes bytes;
    bytes.header(8);
    for (std::uint64_t i = 1; i <= directories; ++i) {
        bytes.count(1).shortEntry(259, 1).offset(i == directories ? lastNext : 8 + i * size);
    }
    return bytes.bytes();
}

tool::MainChain followed(const std::string& bytes, std::uint64_t atMost) {
    return tool::mainChainOf(tool_test::FileChains(bytes).get(), atMost);
}

TEST(MainChain, IsCountedToItsEnd) {
    const tool::MainChain found = followed(chain(5, 0), all);
    EXPECT_EQ(found.directories, 5U);
    EXPECT_TRUE(found.isWhole);
    EXPECT_EQ(found.comesBackTo, std::nullopt);
}

TEST(MainChain, IsFollowedNoFurtherThanAsked) {
    EXPECT_EQ(followed(chain(5, 0), 4).directories, 4U);
    EXPECT_FALSE(followed(chain(5, 0), 4).isWhole);
    EXPECT_TRUE(followed(chain(5, 0), 5).isWhole);
    EXPECT_TRUE(followed(chain(5, 8), 5).isWhole);
}

TEST(MainChain, ThatComesBackCountsEachDirectoryOnce) {
    const tool::MainChain found = followed(chain(5, 26), all);
    EXPECT_EQ(found.directories, 5U);
    EXPECT_TRUE(found.isWhole);
    EXPECT_EQ(found.comesBackTo, 2U);
}

TEST(MainChain, OfADirectoryWithoutEntriesHasNone) {
    const tool::MainChain found = followed(TiffBytes().header(8).count(0).offset(8).bytes(), all);
    EXPECT_EQ(found.directories, 0U);
    EXPECT_TRUE(found.isWhole);
}

TEST(MainChain, ThatEndsInADirectoryCutOffCountsThoseBeforeIt) {
    const std::string whole = chain(5, 0);
    const tool::MainChain found = followed(whole.substr(0, whole.size() - 5), all);
    EXPECT_EQ(found.directories, 4U);
    EXPECT_TRUE(found.endsCutOff);
    EXPECT_TRUE(found.isWhole);
    EXPECT_FALSE(followed(whole, all).endsCutOff);
}

TEST(MainChain, BeyondTheInspectionsLimitIsTooLong) {
    const tool::MainChain found = followed(tool_test::tooManyEntries(), all);
    EXPECT_EQ(found.directories, 4U);
    EXPECT_TRUE(found.isTooLong);
    EXPECT_FALSE(found.isWhole);
    EXPECT_FALSE(followed(chain(3, 0), all).isTooLong);
}

std::vector<std::uint64_t> placesOf(const tool::DirectoryPlaces& places, std::uint64_t read) {
    std::vector<std::uint64_t> found;
    for (std::uint64_t i = 0; i < read; ++i) {
        found.push_back(places.placeOf(i));
    }
    return found;
}

using Places = std::vector<std::uint64_t>;

TEST(DirectoryPlaces, CountFromTheStartOfTheChain) {
    const tool::DirectoryPlaces places = tool::placesIn(followed(chain(5, 0), all), 3, 2);
    EXPECT_EQ(places.total, 5U);
    EXPECT_EQ(placesOf(places, 2), (Places{4, 5}));
}

TEST(DirectoryPlaces, OfAChainThatWasNotFollowedToItsEndHaveNoTotal) {
    const tool::DirectoryPlaces places = tool::placesIn(followed(chain(5, 0), 4), 3, 1);
    EXPECT_EQ(places.total, std::nullopt);
    EXPECT_EQ(placesOf(places, 1), Places{4});
}

TEST(DirectoryPlaces, GoRoundInAChainThatComesBack) {
    const tool::DirectoryPlaces places = tool::placesIn(followed(chain(3, 26), all), 1, 5);
    EXPECT_EQ(places.total, 3U);
    EXPECT_EQ(placesOf(places, 5), (Places{2, 3, 2, 3, 2}));
}

TEST(DirectoryPlaces, HaveNoTotalWhereMoreWasReadThanTheChainHolds) {
    EXPECT_EQ(tool::placesIn(followed(chain(3, 0), all), 0, 4).total, std::nullopt);
}

TEST(DirectoryPlaces, InAJpegHaveATotalWhereNoDirectoryWasLeftOut) {
    const tool::MainChain jpeg = followed(tool_test::jpegAround(chain(3, 0)), all);
    EXPECT_EQ(tool::placesIn(jpeg, 0, 3).total, 3U);
    EXPECT_EQ(tool::placesIn(jpeg, 1, 2).total, 3U);
    EXPECT_EQ(tool::placesIn(jpeg, 0, 2).total, std::nullopt);
}

}  // namespace
