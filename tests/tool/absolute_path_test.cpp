#include "tool/catalogue/absolute_path.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/tool/temporary_file.h"

namespace {

std::string absolutePath(const std::string& folder, const std::string& name) {
    return tool::AbsolutePaths(folder).of(name);
}

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

TEST(AbsolutePath, KeepsLinksBehindTheWayBack) {
    const tool_test::TemporaryFolder folder;
    const std::string root = std::filesystem::canonical(folder.path("")).string();
    std::filesystem::create_directory(folder.path("x"));
    std::filesystem::create_directory_symlink("x", folder.path("y"));
    std::filesystem::create_symlink("nothing", folder.path("z.tif"));
    EXPECT_EQ(absolutePath(root, "x/../z.tif"), root + "/z.tif");
    EXPECT_EQ(absolutePath(root, "x/../y/a.tif"), root + "/y/a.tif");
    EXPECT_EQ(absolutePath(root, "x/.."), root);
    EXPECT_EQ(absolutePath(root, "x/../..a/..b"), root + "/..a/..b");
}

TEST(AbsolutePath, TellsTheFoldersOfSeveralNamesApart) {
    const tool_test::TemporaryFolder folder;
    const std::string root = std::filesystem::canonical(folder.path("")).string();
    std::filesystem::create_directories(folder.path("x/y"));
    tool::AbsolutePaths paths(root);
    EXPECT_EQ(paths.of("x/y/../a"), root + "/x/a");
    EXPECT_EQ(paths.of("x/../b"), root + "/b");
    EXPECT_EQ(paths.of("x/y/../c"), root + "/x/c");
}

}  // namespace
