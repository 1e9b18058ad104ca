#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/tool/codes_in_bytes.h"
#include "tests/tool/run_command.h"
#include "tests/tool/tiff_bytes.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using tool_test::CommandResult;
using tool_test::Output;
using tool_test::runTool;
using Texts = std::vector<std::string>;

/// A folder of its own, gone with its owner.
class Folder {
  public:
    Folder() {
        std::string name = (fs::temp_directory_path() / "corvinex-XXXXXX").string();
        path_ = mkdtemp(name.data());
    }
    ~Folder() { fs::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] std::string operator/(const std::string& name) const { return path_ / name; }
    [[nodiscard]] std::string path() const { return path_.string(); }
    void add(const std::string& name, std::string_view bytes) const {
        fs::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary) << bytes;
    }

  private:
    fs::path path_;
};

/// A directory that tells of an image, so that there is nothing to warn of.
std::string smallTiff() {
    return tool_test::TiffBytes()
        .header(8)
        .count(2)
        .shortEntry(256, 640)
        .shortEntry(513, 0)
        .offset(0)
        .bytes();
}

/// The names in the records, without the folder's.
Texts filesIn(const CommandResult& result, const Folder& folder) {
    Texts names;
    std::size_t start = 0;
    while (start < result.out.size()) {
        const std::size_t end = result.out.find('\n', start);
        const json record = json::parse(result.out.substr(start, end - start));
        std::string name = record["file"];
        if (name.starts_with(folder.path() + "/")) {
            name.erase(0, folder.path().size() + 1);
        }
        names.push_back(name + " " + record["status"].get<std::string>());
        start = end + 1;
    }
    return names;
}

}  // namespace

TEST(JsonCommand, PrintsALineForEachFile) {
    const Folder folder;
    folder.add("a.tif", smallTiff());
    folder.add("b.txt", "no image");
    const CommandResult result =
        runTool({"json", folder / "a.tif", folder / "b.txt", folder / "missing.tif"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(filesIn(result, folder),
              (Texts{"a.tif ok", "b.txt not-an-image", "missing.tif unreadable"}));
    EXPECT_EQ(result.err, "corvinex: " + folder / "missing.tif" + ": No such file or directory\n");
    EXPECT_EQ(runTool({"json", folder / "a.tif"}).exitStatus, 0);
}

TEST(JsonCommand, GivesCodesInBytesAsNumbersWhenAsked) {
    const Folder folder;
    folder.add("a.tif", tool_test::codesInBytes());
    const json record = json::parse(runTool({"json", "--flat", "--numeric", folder / "a.tif"}).out);
    EXPECT_EQ(record["0.CFAPattern"], (json{0, 1, 1, 2}));
    EXPECT_EQ(record["0.exif.ComponentsConfiguration"], (json{1, 2, 3, 0}));
    EXPECT_EQ(record["0.exif.LightSource"], 4);
    EXPECT_EQ(record["0.exif.SceneType"], 1);
}

TEST(JsonCommand, TellsSizeAndTimeOfAFile) {
    const Folder folder;
    folder.add("a.tif", smallTiff());
    const json record = json::parse(runTool({"json", folder / "a.tif"}).out);
    EXPECT_EQ(record["size"], smallTiff().size());
    EXPECT_EQ(record["modified"].get<std::string>().size(), 20U);
}

TEST(JsonCommand, WalksFoldersInTheOrderOfNamesToTheBottom) {
    const Folder folder;
    folder.add("b/z.tif", smallTiff());
    folder.add("b/c/d.JPG", "no image");
    folder.add("b/c/plain", smallTiff());
    folder.add("B.tif", smallTiff());
    folder.add("a.txt", "no image");
    folder.add("\xC3\xA4.tif", smallTiff());
    const CommandResult result = runTool({"json", folder.path()});
    EXPECT_EQ(filesIn(result, folder), (Texts{"B.tif ok", "b/c/d.JPG not-an-image", "b/c/plain ok",
                                              "b/z.tif ok", "\xC3\xA4.tif ok"}));
    EXPECT_EQ(result.exitStatus, 1);
}

TEST(JsonCommand, TakesTheEndingsInFoldersThatAreAskedFor) {
    const Folder folder;
    folder.add("a.tif", smallTiff());
    folder.add("b.raw", "no image");
    folder.add("c.RAW", smallTiff());
    EXPECT_EQ(filesIn(runTool({"json", "--ext", "raw,xyz", folder.path()}), folder),
              (Texts{"b.raw not-an-image", "c.RAW ok"}));
    EXPECT_EQ(filesIn(runTool({"json", "--ext", "raw", folder / "a.tif"}), folder),
              Texts{"a.tif ok"});
}

TEST(JsonCommand, FollowsLinksToFoldersWhenAskedAndNoneInACircle) {
    const Folder folder;
    folder.add("a/x.tif", smallTiff());
    fs::create_directory_symlink(folder / "a", folder / "link");
    fs::create_directory_symlink(folder.path(), folder / "a/up");
    fs::create_symlink(folder / "a/x.tif", folder / "file.tif");
    EXPECT_EQ(filesIn(runTool({"json", folder.path()}), folder),
              (Texts{"a/x.tif ok", "file.tif ok"}));
    EXPECT_EQ(filesIn(runTool({"json", "--follow", folder.path()}), folder),
              (Texts{"a/x.tif ok", "file.tif ok", "link/x.tif ok"}));
}

TEST(JsonCommand, ReadsNamesFromAList) {
    const Folder folder;
    folder.add("a\nb.tif", smallTiff());
    folder.add("c.tif", smallTiff());
    folder.add("list", folder / "a\nb.tif" + std::string(1, '\0') + folder / "c.tif");
    const CommandResult result = runTool({"json", "--files0-from", folder / "list"});
    EXPECT_EQ(filesIn(result, folder), (Texts{"a\nb.tif ok", "c.tif ok"}));
    EXPECT_EQ(result.exitStatus, 0);
}

TEST(JsonCommand, PrintsTheSameWithAnyNumberOfThreads) {
    const Folder folder;
    for (int number = 0; number < 300; ++number) {
        folder.add(std::to_string(number) + (number % 7 == 0 ? ".txt" : ".tif"), smallTiff());
    }
    const std::string one = runTool({"json", "-j", "1", folder.path()}).out;
    EXPECT_EQ(std::count(one.begin(), one.end(), '\n'), 300);
    EXPECT_EQ(runTool({"json", "-j", "2", folder.path()}).out, one);
    EXPECT_EQ(runTool({"json", "--jobs=16", folder.path()}).out, one);
}

TEST(JsonCommand, PrintsWhatIsAskedOfEachFile) {
    const Folder folder;
    folder.add("a.tif", smallTiff());
    const json flat = json::parse(runTool({"json", "--flat", folder / "a.tif"}).out);
    EXPECT_EQ(flat["0.ImageWidth"], 640);
    const json selected =
        json::parse(runTool({"json", "--tag", "Make", "--tag", "0.Width", folder / "a.tif"}).out);
    EXPECT_EQ(selected["directories"][0]["entries"].size(), 1U);
    const std::string pretty = runTool({"json", "--pretty", folder / "a.tif"}).out;
    EXPECT_EQ(json::parse(pretty)["status"], "ok");
    EXPECT_GT(std::count(pretty.begin(), pretty.end(), '\n'), 10);
    const json cut = json::parse(runTool({"json", "--header-offset=4", folder / "a.tif"}).out);
    EXPECT_EQ(cut["container"], nullptr);
}

TEST(JsonCommand, NamesWhatIsWrongOnTheCommandLine) {
    EXPECT_EQ(runTool({"json"}).exitStatus, 2);
    EXPECT_EQ(runTool({"json", "--max-values", "many", "a.tif"}).exitStatus, 2);
    EXPECT_EQ(runTool({"json", "-j"}).exitStatus, 2);
}

TEST(JsonCommand, EndsWithItsOwnStatusWhenTheOutputIsFull) {
    const Folder folder;
    folder.add("a.tif", smallTiff());
    EXPECT_EQ(runTool({"json", folder / "a.tif"}, Output::DevFull).exitStatus, 3);
}
