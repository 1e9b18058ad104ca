#include "tool/directory_path.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

using tool::isDirectoryPath;

class RightPath : public testing::TestWithParam<std::string_view> {};

TEST_P(RightPath, MayBeThatOfADirectory) {
    EXPECT_TRUE(isDirectoryPath(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(DirectoryPath, RightPath,
                         testing::Values("0", "120", "0.exif", "0.exif.interop", "2.gps", "0.sub0",
                                         "0.sub12.3", "0.sub1.2.exif", "0.sub0.sub1", "0.exif1"));

class WrongPath : public testing::TestWithParam<std::string_view> {};

TEST_P(WrongPath, IsThatOfNoDirectory) {
    EXPECT_FALSE(isDirectoryPath(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(DirectoryPath, WrongPath,
                         testing::Values("", ".", "exif", "00", "0.", "0..exif", "0.foo", "0.main",
                                         "0.sub", "0.1", "0.exif.1", "0.sub0.1.2", "0.exif0",
                                         "0.subs", "0.exifs", "0.sub00", "-1", "0x1"));

}  // namespace
