#include "tool/read_plan.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"

namespace {

using tool_test::TiffBytes;

tool::ReadPlan planFor(const std::string& bytes, const tool::ReadRequest& request = {}) {
    const tool_test::TemporaryFolder folder;
    return tool::planRead(folder.file("file", bytes), request);
}

std::string refusal(const std::string& bytes, const tool::ReadRequest& request = {}) {
    try {
        planFor(bytes, request);
    } catch (const tool::UnreadableFile& error) {
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

TEST(ReadPlan, WhatIsNoTiffIsLeftToTheModule) {
    const tool::ReadPlan plan = planFor("no image");
    EXPECT_EQ(plan.headerOffset, 0U);
    EXPECT_EQ(plan.limit, 0U);
}

TEST(ReadPlan, AMissingFileIsLeftToTheModule) {
    EXPECT_EQ(tool::planRead("/nonexistent/a.tif", {}).limit, 0U);
}

}  // namespace
