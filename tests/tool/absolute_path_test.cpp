#include "tool/catalogue/absolute_path.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/tool/temporary_file.h"

namespace {

using tool::absolutePath;

TEST(AbsolutePath, BeginsAtTheRoot) {
    EXPECT_EQ(absolutePath("/a", "b/c.tif"), "/a/b/c.tif");
    EXPECT_EQ(absolutePath("/a", "/b/c.tif"), "/b/c.tif");
    EXPECT_EQ(absolutePath("/", "b"), "/b");
}

TEST(AbsolutePath, LeavesOutEmptyPartsAndPoints) {
    EXPECT_EQ(absolutePath("/a", "./b//c/./d.tif"), "/a/b/c/d.tif");
    EXPECT_EQ(absolutePath("/a", "b/"), "/a/b");
    EXPECT_EQ(absolutePath("/a", "."), "/a");
    EXPECT_EQ(absolutePath("/a", "/"), "/");
    EXPECT_EQ(absolutePath("/a", "b/.hidden.tif"), "/a/b/.hidden.tif");
    EXPECT_EQ(absolutePath("/a", "b/..c.tif"), "/a/b/..c.tif");
}

TEST(AbsolutePath, KeepsBytesThatAreNoUtf8) {
    EXPECT_EQ(absolutePath("/a", "./b\xFF.tif"), "/a/b\xFF.tif");
}

TEST(AbsolutePath, FollowsLinksOnTheWayBackAsTheSystemDoes) {
    const tool_test::TemporaryFolder folder;
    const std::string root = std::filesystem::canonical(folder.path("")).string();
    std::filesystem::create_directories(folder.path("x/y"));
    std::filesystem::create_directory_symlink("x/y", folder.path("link"));
    EXPECT_EQ(absolutePath(root, "link/../z.tif"), root + "/x/z.tif");
    EXPECT_EQ(absolutePath(root, "link/z.tif"), root + "/link/z.tif");
}

}  // namespace
