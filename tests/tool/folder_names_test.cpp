#include "tool/folder_names.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/tool/temporary_file.h"

namespace {

using tool::FolderNames;
using tool_test::TemporaryFolder;

std::vector<std::string> allOf(FolderNames names) {
    std::vector<std::string> all;
    while (!names.isEmpty()) {
        all.push_back(names.takeFirst().text);
    }
    return all;
}

TEST(FolderNames, AreInTheOrderOfTheirBytes) {
    const TemporaryFolder folder;
    // std::string compares bytes too, so that the set has them in the order that is meant.
    const std::set<std::string> names{
        "a",         "a\x01",     "a b",       "ab",       "abcdefg",   "abcdefgh", "abcdefgh\x01",
        "abcdefgha", "abcdefghb", "abcdefghB", "abcdefgi", "\xFF",      "\xC3\xA4", "Z",
        "~",         "0",         "10",        "9",        "\x7F name", ".hidden",  "\xFE\xFF"};
    for (const std::string& name : names) {
        ASSERT_TRUE(std::filesystem::exists(folder.file(name, ""))) << name;
    }
    const auto read = FolderNames::read(folder.path(""));
    ASSERT_TRUE(read);
    EXPECT_EQ(allOf(*read), std::vector<std::string>(names.begin(), names.end()));
}

TEST(FolderNames, TellRegularFilesFromOthers) {
    const TemporaryFolder folder;
    static_cast<void>(folder.file("file", ""));
    std::filesystem::create_directory(folder.path("folder"));
    std::filesystem::create_symlink("file", folder.path("link"));
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    auto names = FolderNames::read(folder.path(""));
    ASSERT_TRUE(names);
    std::vector<std::pair<std::string, bool>> found;
    while (!names->isEmpty()) {
        const auto name = names->takeFirst();
        found.emplace_back(name.text, name.isFile);
    }
    using Found = std::vector<std::pair<std::string, bool>>;
    EXPECT_EQ(found, (Found{{"file", true}, {"folder", false}, {"link", false}, {"pipe", false}}));
}

TEST(FolderNames, OfAnEmptyFolderAreNone) {
    const TemporaryFolder folder;
    const auto names = FolderNames::read(folder.path(""));
    ASSERT_TRUE(names);
    EXPECT_TRUE(names->isEmpty());
}

TEST(FolderNames, OfWhatIsNoFolderCannotBeRead) {
    const TemporaryFolder folder;
    EXPECT_FALSE(FolderNames::read(folder.path("missing")));
    static_cast<void>(folder.file("file", ""));
    EXPECT_FALSE(FolderNames::read(folder.path("file")));
}

}  // namespace
