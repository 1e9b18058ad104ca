#include "tool/chain_check.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"
#include "tool/chain_survey.h"

namespace {

using tool_test::TiffBytes;

/// A file open for the checks, its header at an offset.
class OpenChain {
  public:
    explicit OpenChain(const std::string& bytes, std::uint64_t headerOffset = 0)
        : file_(folder_.file("chain.tif", bytes)),
          reader_(tool::DirectoryReader::open(file_, headerOffset)) {}

    const tool::DirectoryReader& reader() { return reader_.value(); }
    std::optional<std::uint64_t> first(std::uint64_t skip) {
        return tool::firstDirectoryRead(reader(), skip);
    }
    tool::ChainSurvey chain(std::uint64_t skip = 0) {
        return tool::surveyChains(reader(), first(skip).value(), 0);
    }

  private:
    tool_test::TemporaryFolder folder_;
    tool::PositionedFile file_;
    std::optional<tool::DirectoryReader> reader_;
};

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

class ChainCheckOfEachLayout
    : public testing::TestWithParam<std::tuple<TiffBytes::Order, TiffBytes::Layout>> {
  protected:
    static TiffBytes empty() { return TiffBytes(std::get<0>(GetParam()), std::get<1>(GetParam())); }
};

TEST_P(ChainCheckOfEachLayout, AChainThatEndsDoesNotComeBack) {
    const tool::ChainSurvey chain = OpenChain(chainOf(5, std::nullopt, empty())).chain();
    EXPECT_FALSE(chain.mainComesBack);
    EXPECT_EQ(chain.mainDirectories, 5U);
}

TEST_P(ChainCheckOfEachLayout, AChainThatComesBackCountsEachDirectoryOnce) {
    const tool::ChainSurvey chain = OpenChain(chainOf(5, 2, empty())).chain();
    EXPECT_TRUE(chain.mainComesBack);
    EXPECT_EQ(chain.mainDirectories, 5U);
}

TEST_P(ChainCheckOfEachLayout, SkippedDirectoriesDoNotCountButThoseReadAgainDo) {
    OpenChain open(chainOf(5, 2, empty()));
    EXPECT_EQ(open.chain(1).mainDirectories, 4U);
    EXPECT_EQ(open.chain(2).mainDirectories, 3U);
    EXPECT_EQ(open.chain(4).mainDirectories, 3U);
    EXPECT_TRUE(open.chain(4).mainComesBack);
}

TEST_P(ChainCheckOfEachLayout, AnEnormousSkipIsCountedAroundTheCycle) {
    OpenChain open(chainOf(5, 2, empty()));
    // From the third directory on the chain repeats every three steps.
    EXPECT_EQ(open.first(1000000000000000001U), open.first(2 + (1000000000000000001U - 2) % 3));
    EXPECT_EQ(open.first(9007199254740992U), open.first(2 + (9007199254740992U - 2) % 3));
}

INSTANTIATE_TEST_SUITE_P(OrdersAndLayouts, ChainCheckOfEachLayout,
                         testing::Combine(testing::Values(TiffBytes::Little, TiffBytes::Big),
                                          testing::Values(TiffBytes::Classic, TiffBytes::BigTiff)));

TEST(ChainCheck, OffsetsCountFromTheHeader) {
    const std::string jpeg = tool_test::jpegAround(chainOf(3, 0));
    OpenChain open(jpeg, 12);
    EXPECT_EQ(open.first(0), 20U);
    EXPECT_TRUE(open.chain().mainComesBack);
    EXPECT_EQ(open.chain().mainDirectories, 3U);
}

TEST(ChainCheck, SkippingBeyondTheEndGoesOnAtTheHeader) {
    OpenChain open(chainOf(2, std::nullopt));
    EXPECT_EQ(open.first(2), 0U);
}

TEST(ChainCheck, ADirectoryThatLeadsToItselfIsOneDirectory) {
    const tool::ChainSurvey chain = OpenChain(chainOf(1, 0)).chain();
    EXPECT_TRUE(chain.mainComesBack);
    EXPECT_EQ(chain.mainDirectories, 1U);
}

TEST(ChainCheck, AChainEndsWhereTheFileHoldsNoDirectory) {
    const std::string sound = chainOf(2, 0);
    const auto cut = [&](std::size_t bytes) {
        return OpenChain(sound.substr(0, sound.size() - bytes)).chain();
    };
    EXPECT_FALSE(cut(1).mainComesBack) << "the next offset is cut";
    EXPECT_FALSE(cut(5).mainComesBack) << "the entries are cut";
    EXPECT_EQ(cut(17).mainDirectories, 1U) << "the second count is cut";
}

TEST(ChainCheck, ADirectoryWithoutEntriesEndsTheChain) {
    const std::string bytes = TiffBytes().header(8).count(0).offset(8).bytes();
    const tool::ChainSurvey chain = OpenChain(bytes).chain();
    EXPECT_FALSE(chain.mainComesBack);
    EXPECT_EQ(chain.mainDirectories, 0U);
}

TEST(ChainCheck, ANextOffsetAtTheEndOfTheFileEndsTheChain) {
    const std::string bytes = TiffBytes().header(8).count(1).shortEntry(259, 1).offset(26).bytes();
    EXPECT_EQ(OpenChain(bytes).chain().mainDirectories, 1U);
    EXPECT_EQ(bytes.size(), 26U);
}

TEST(ChainCheck, ACountOfAllOnesIsNoOverflow) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    const std::string bytes =
        TiffBytes(TiffBytes::Little, TiffBytes::BigTiff).header(16).count(most).offset(16).bytes();
    EXPECT_FALSE(OpenChain(bytes).chain().mainComesBack);
}

TEST(ChainCheck, WhereTheModuleCannotSeekThereIsNoFirstDirectory) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    OpenChain open(TiffBytes(TiffBytes::Little, TiffBytes::BigTiff).header(most).bytes());
    EXPECT_EQ(open.first(0), std::nullopt);
}

TEST(ChainCheck, TheBoundIsOneMoreThanTheSmallestDirectoriesThatFit) {
    EXPECT_EQ(tool::directoriesAtMost(OpenChain(chainOf(10, std::nullopt)).reader()), 11U);
    const TiffBytes big(TiffBytes::Little, TiffBytes::BigTiff);
    EXPECT_EQ(tool::directoriesAtMost(OpenChain(chainOf(10, std::nullopt, big)).reader()), 11U);
}

TEST(ChainCheck, AFileWithoutAHeaderHasNoReader) {
    const tool_test::TemporaryFolder folder;
    for (const std::string bytes : {"", "I", "II", "II*", "IM*\0\10\0\0\0", "XX"}) {
        tool::PositionedFile file(folder.file("a.tif", bytes));
        EXPECT_FALSE(tool::DirectoryReader::open(file, 0)) << bytes;
    }
}

}  // namespace
