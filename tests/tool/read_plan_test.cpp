#include "tool/read_plan.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>

#include "tests/tool/file_chains.h"
#include "tests/tool/temporary_file.h"
#include "tool/input_refused.h"

namespace {

using tool_test::TiffBytes;

tool::ReadPlan planFor(const std::string& bytes, const tool::ReadRequest& request = {}) {
    const tool_test::TemporaryFolder folder;
    return tool::planRead(folder.file("file", bytes), request);
}

std::string refusal(const std::string& bytes, const tool::ReadRequest& request = {}) {
    try {
        planFor(bytes, request);
    } catch (const tool::InputRefused& error) {
        return error.what();
    }
    return "";
}

tool::ReadRequest limitedTo(std::uint64_t limit) {
    tool::ReadRequest request;
    request.limit = limit;
    return request;
}

std::string oneDirectory(std::uint64_t tag, std::uint64_t next) {
    return TiffBytes().header(8).count(1).shortEntry(tag, 1).offset(next).bytes();
}

/// Directories of one entry side by side, each leading to the given offset.
std::string directories(std::initializer_list<std::uint64_t> nextOffsets) {
    TiffBytes bytes;
    for (const std::uint64_t next : nextOffsets) {
        bytes.count(1).shortEntry(259, 1).offset(next);
    }
    return bytes.bytes();
}

/// Directories that start every 12 bytes: the count of each lies in the entry of the one before,
/// its entry starts with that one's next offset.
std::string overlapping(std::uint64_t directories) {
    TiffBytes bytes;
    bytes.header(8);
    for (std::uint64_t i = 0; i < directories; ++i) {
        const std::uint64_t position = bytes.size();
        bytes.count(1).offset(position).number(0, 6);
    }
    return bytes.number(0, 2).offset(0).bytes();
}

const std::string endless =
    "a chain of directories comes back on itself over directories that "
    "yield no field; reading it might never end";

TEST(ReadPlan, ATiffIsReadFromItsStartUpToWhatItsSizeAllows) {
    const tool::ReadPlan plan = planFor(oneDirectory(259, 0));
    EXPECT_EQ(plan.headerOffset, 0U);
    EXPECT_EQ(plan.limit, 2U);
    EXPECT_EQ(plan.warning, "");
}

TEST(ReadPlan, AChainThatComesBackIsReadOnceWithAWarning) {
    const tool::ReadPlan plan = planFor(oneDirectory(259, 8));
    EXPECT_EQ(plan.limit, 1U);
    EXPECT_EQ(plan.warning,
              "the chain of directories comes back on itself; reading its one directory once");
}

TEST(ReadPlan, ASubDirectoryChainThatComesBackIsReadOnceWithAWarning) {
    const std::string tiff = TiffBytes()
                                 .header(8)
                                 .count(1)
                                 .entry(330, 4, 1, 26)
                                 .offset(0)
                                 .raw(directories({44, 26}))
                                 .bytes();
    const std::string warning =
        "a chain of sub-directories comes back on itself; reading at most 2 directories of a chain";
    EXPECT_EQ(planFor(tiff).limit, 2U);
    EXPECT_EQ(planFor(tiff).warning, warning);
    const std::string jpeg = tool_test::jpegAround(tiff);
    EXPECT_EQ(planFor(jpeg).limit, 2U);
    EXPECT_EQ(planFor(jpeg).warning, warning);
}

TEST(ReadPlan, TheMainChainIsNotCutForASubDirectoryChainThatComesBack) {
    TiffBytes tiff;
    tiff.header(8).count(1).entry(330, 4, 1, 62).offset(26).raw(directories({44, 0, 62}));
    EXPECT_EQ(planFor(tiff.bytes()).limit, 3U);
}

TEST(ReadPlan, ASoundSubDirectoryChainIsNotCutForAMainChainThatComesBack) {
    TiffBytes tiff;
    tiff.header(8).count(1).entry(330, 4, 1, 26).offset(8).raw(directories({44, 0}));
    const tool::ReadPlan plan = planFor(tiff.bytes());
    EXPECT_EQ(plan.limit, 2U);
    EXPECT_EQ(plan.warning,
              "the chain of directories comes back on itself; reading at most 2 directories of a "
              "chain");
}

TEST(ReadPlan, DirectoriesThatOverlapAreAllRead) {
    EXPECT_EQ(planFor(overlapping(200)).limit, 200U);
}

TEST(ReadPlan, SubDirectoriesTooManyToLookAtLeaveTheLimitToTheFileSize) {
    // Directories of 65535 refused entries, at every second byte, and one that leads to itself.
    constexpr std::uint64_t pointers = 60;
    constexpr std::uint64_t itselfAt = 26 + 4 * pointers;
    TiffBytes tiff;
    tiff.header(8).count(1).entry(330, 4, pointers, 26).offset(0).number(itselfAt, 4);
    for (std::uint64_t i = 1; i < pointers; ++i) {
        tiff.number(itselfAt + 18 + 2 * i, 4);
    }
    tiff.count(1).shortEntry(259, 1).offset(itselfAt).raw(std::string(800000, '\xFF'));
    const tool::ReadPlan plan = planFor(tiff.bytes());
    EXPECT_EQ(plan.limit, tiff.size() / 18 + 1);
    EXPECT_EQ(plan.warning, "");
}

TEST(ReadPlan, AGivenLimitIsHandedOverUnchecked) {
    const tool::ReadPlan plan = planFor(oneDirectory(259, 8), limitedTo(7));
    EXPECT_EQ(plan.limit, 7U);
    EXPECT_EQ(plan.warning, "");
}

TEST(ReadPlan, TheHeaderOfAJpegIsFound) {
    EXPECT_EQ(planFor(tool_test::jpegAround(oneDirectory(274, 0))).headerOffset, 12U);
}

TEST(ReadPlan, AGivenHeaderOffsetIsTaken) {
    tool::ReadRequest request;
    request.headerOffset = 3;
    EXPECT_EQ(planFor("\xFF\xD8\xFF\xD9", request).headerOffset, 3U);
}

TEST(ReadPlan, AJpegWithoutAnExifBlockIsRefused) {
    EXPECT_EQ(refusal("\xFF\xD8\xFF\xD9"), "this JPEG file holds no EXIF block");
}

TEST(ReadPlan, AJpegChainThatNoLimitEndsIsRefusedAlsoWithALimit) {
    const std::string jpeg = tool_test::jpegAround(oneDirectory(256, 8));
    EXPECT_EQ(refusal(jpeg), endless);
    EXPECT_EQ(refusal(jpeg, limitedTo(1)), endless);
}

TEST(ReadPlan, AChainWithMoreEntriesThanTheFileCouldHoldIsCutWithAWarning) {
    const tool::ReadPlan plan = planFor(tool_test::tooManyEntries());
    EXPECT_EQ(plan.limit, 4U);
    EXPECT_EQ(plan.warning,
              "the chain of directories has more entries than the file could hold; reading its "
              "first 4 directories");
    tool::ReadRequest request;
    request.skip = 3;
    EXPECT_EQ(planFor(tool_test::tooManyEntries(), request).limit, 1U);
    request.skip = 4;
    EXPECT_EQ(refusal(tool_test::tooManyEntries(), request),
              "the chain of directories has more entries than the file could hold, and no more "
              "than its first 4 directories are read; skipping 4 leaves none");
}

TEST(ReadPlan, ALayoutOtherThanTheModulesIsNoGroundForALimit) {
    // The module reads what follows by the layout of the file's first bytes.
    const TiffBytes classic = TiffBytes().header(0);
    const std::string bytes =
        classic.bytes() +
        TiffBytes(TiffBytes::Little, TiffBytes::BigTiff).header(16).count(0).offset(16).bytes();
    tool::ReadRequest request;
    request.headerOffset = classic.size();
    request.skip = 1;
    EXPECT_EQ(planFor(bytes, request).limit, bytes.size() / 18 + 1);
    EXPECT_EQ(planFor(bytes, request).headerOffset, classic.size());
}

TEST(ReadPlan, WhatIsNoTiffIsLeftToTheModule) {
    for (const std::string bytes :
         {"no image", "II", "II*", "IM*\0\10\0\0\0", "II*\0\10", "II*\0\377\0\0\0"}) {
        const tool::ReadPlan plan = planFor(bytes);
        EXPECT_EQ(plan.headerOffset, 0U);
        EXPECT_EQ(plan.limit, 1U);
        EXPECT_EQ(plan.warning, "");
    }
}

TEST(ReadPlan, AMissingFileIsLeftToTheModule) {
    EXPECT_EQ(tool::planRead("/nonexistent/a.tif", {}).headerOffset, 0U);
}

}  // namespace
