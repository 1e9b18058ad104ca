#include "tool/endless_chain.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

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
    return tool::mayNeverEnd(reader, tool::firstDirectoryRead(reader, 0).value(), limit);
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
    const tool_test::TemporaryFolder folder;
    const TiffBytes tiff = TiffBytes().header(8).count(1).shortEntry(256, 1).offset(8);
    tool::PositionedFile file(folder.file("a.tif", tiff.bytes()));
    const auto reader = tool::DirectoryReader::open(file, 0).value();
    EXPECT_FALSE(tool::mayNeverEnd(reader, 8, someLimit));
}

}  // namespace
