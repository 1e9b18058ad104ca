#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/tool/run_command.h"
#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"

namespace {

using nlohmann::json;
using tool_test::CommandResult;
using tool_test::Output;
using tool_test::runTool;
using tool_test::TemporaryFolder;
using tool_test::TiffBytes;

/// Two directories of one by one pixel; the second leads to the offset given.
std::string twoDirectories(std::uint64_t next = 0) {
    TiffBytes tiff;
    tiff.header(8);
    tiff.count(3).shortEntry(256, 1).shortEntry(257, 1).shortEntry(259, 1).offset(50);
    tiff.count(3).shortEntry(256, 2).shortEntry(257, 2).shortEntry(259, 1).offset(next);
    return tiff.bytes();
}

std::string jpegWithOrientation() {
    return tool_test::jpegAround(
        TiffBytes().header(8).count(1).shortEntry(274, 6).offset(0).bytes());
}

json recordOf(const CommandResult& result) {
    EXPECT_EQ(result.out.find('\n'), result.out.size() - 1) << "one line";
    return json::parse(result.out);
}

std::size_t elementsOf(const CommandResult& result) {
    return recordOf(result)["output"]["data"].size();
}

class Command : public testing::Test {
  protected:
    const TemporaryFolder folder;
    const std::string good = folder.file("good.tif", twoDirectories());
    const std::string bad = folder.file("bad.tif", "no image");
};

TEST_F(Command, BadUsageIsToldOnStandardErrorWithStatus2) {
    const std::vector<std::vector<std::string>> commandLines{
        {},
        {"print"},
        {"show"},
        {"call"},
        {"call", good, good},
        {"show", good, "--limit", "-1"},
        {"show", good, "--limit", "1.5"},
        {"show", good, "--skip=9007199254740993"},
        {"show", good, "--header-offset=0x10"},
        {"show", good, "--limit"},
        {"show", good, "--unknown"},
        {"call", good, "--limit=two"},
        {"call", good, "--all"},
    };
    for (const auto& commandLine : commandLines) {
        const CommandResult result = runTool(commandLine);
        EXPECT_EQ(result.exitStatus, 2) << testing::PrintToString(commandLine);
        EXPECT_EQ(result.out, "") << testing::PrintToString(commandLine);
        EXPECT_NE(result.err, "") << testing::PrintToString(commandLine);
    }
}

TEST_F(Command, HelpAndVersionGoToStandardOutput) {
    EXPECT_EQ(runTool({"--help"}).exitStatus, 0);
    EXPECT_NE(runTool({"--help"}).out.find("show"), std::string::npos);
    EXPECT_NE(runTool({"show", "--help"}).out.find("--header-offset"), std::string::npos);
    EXPECT_EQ(runTool({"--version"}).exitStatus, 0);
    EXPECT_TRUE(runTool({"--version"}).out.starts_with("corvinex "));
}

TEST_F(Command, ShowPrintsABlockForTheFile) {
    const CommandResult result = runTool({"show", good});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(result.out.starts_with(good + "\n  Filename")) << result.out;
    EXPECT_NE(result.out.find("\n  Directory 1 of 2\n"), std::string::npos);
    EXPECT_NE(result.out.find("\n  Directory 2 of 2\n"), std::string::npos);
    EXPECT_EQ(result.out.find("FormatVersion"), std::string::npos);
}

TEST_F(Command, ABadFileDoesNotStopTheOthers) {
    const CommandResult result = runTool({"show", good, bad, good});
    EXPECT_EQ(result.exitStatus, 1);
    const CommandResult alone = runTool({"show", good});
    EXPECT_EQ(result.out, alone.out + "\n" + alone.out);
    EXPECT_TRUE(result.err.starts_with("corvinex: " + bad + ": error: ")) << result.err;
    EXPECT_TRUE(result.err.ends_with(" [quorra:corvinex:unsupportedFileFormat]\n")) << result.err;
}

TEST_F(Command, ErrorsStandBehindTheBlocksBefore) {
    const std::string together = runTool({"show", good, bad}, Output::WithErrors).out;
    EXPECT_TRUE(together.starts_with(good)) << together;
    EXPECT_LT(together.find("Directory 2 of 2"), together.find("corvinex: " + bad)) << together;
}

TEST_F(Command, OptionsMayStandBeforeTheFiles) {
    const CommandResult result = runTool({"show", "--limit", "1", "--skip=1", good});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_NE(result.out.find("Directory 1 of 1"), std::string::npos);
    EXPECT_EQ(result.out, runTool({"show", good, "--limit=1", "--skip", "1"}).out);
    EXPECT_EQ(runTool({"show", good, "--skip=1", good}).out,
              runTool({"show", "--skip=1", good, good}).out);
}

TEST_F(Command, AllShowsFieldsThatWereNeverSet) {
    EXPECT_NE(runTool({"show", "--all", good}).out.find("FormatVersion              []"),
              std::string::npos);
}

TEST_F(Command, WarningsAreToldWithTheirId) {
    const std::string path = folder.file("beyond.tif", twoDirectories(5000));
    const CommandResult result = runTool({"show", path});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(result.err.starts_with("corvinex: " + path + ": warning: ")) << result.err;
    EXPECT_TRUE(result.err.ends_with(" [quorra:corvinex:nextIfdPointerOutOfRange]\n"))
        << result.err;
}

TEST_F(Command, ACyclicChainIsShownOnceWithAWarning) {
    const std::string path = folder.file("cycle.tif", twoDirectories(8));
    const CommandResult result = runTool({"show", path});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.err, "corvinex: " + path +
                              ": warning: the chain of directories comes back on itself; "
                              "reading its 2 directories once\n");
    EXPECT_NE(result.out.find("Directory 2 of 2"), std::string::npos);
}

TEST_F(Command, AJpegIsShownWithoutBeingToldWhereItsHeaderIs) {
    const std::string photo = folder.file("photo.jpg", jpegWithOrientation());
    const CommandResult result = runTool({"show", photo});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_NE(result.out.find("Orientation"), std::string::npos);
    EXPECT_EQ(result.out, runTool({"show", photo, "--header-offset=12"}).out);
}

TEST_F(Command, AJpegWithoutExifGetsOneClearSentence) {
    const std::string photo = folder.file("plain.jpg", "\xFF\xD8\xFF\xD9");
    const CommandResult result = runTool({"show", photo});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.err, "corvinex: " + photo + ": error: this JPEG file holds no EXIF block\n");
}

TEST_F(Command, APipeIsRefusedByBothCommands) {
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const CommandResult shown = runTool({"show", pipe, good});
    EXPECT_EQ(shown.exitStatus, 1);
    EXPECT_EQ(shown.out, runTool({"show", good}).out);
    EXPECT_EQ(shown.err, "corvinex: " + pipe +
                             ": error: this is a pipe (FIFO), not a file that can be read at any "
                             "position\n");
    const CommandResult called = runTool({"call", pipe});
    EXPECT_EQ(called.exitStatus, 1);
    EXPECT_EQ(
        recordOf(called)["error"],
        json({{"id", nullptr},
              {"message", "this is a pipe (FIFO), not a file that can be read at any position"}}));
}

TEST_F(Command, ANameThatIsNotUtf8IsRefusedByBothCommands) {
    const CommandResult shown = runTool({"show", "a\xE4.tif"});
    EXPECT_EQ(shown.exitStatus, 1);
    EXPECT_EQ(shown.err, "corvinex: a\\xe4.tif: error: the file name is not valid UTF-8\n");
    const CommandResult called = runTool({"call", "a\xE4.tif"});
    EXPECT_EQ(called.exitStatus, 1);
    EXPECT_EQ(recordOf(called)["error"]["message"], "the file name is not valid UTF-8");
    EXPECT_EQ(recordOf(called)["output"], nullptr);
}

TEST_F(Command, FileNamesAreTakenAsTheyAre) {
    for (const std::string name : {"[a,b]", "call", "{}", "%%", "a b", "-x.tif", "ü.tif"}) {
        const std::string path = folder.file(name, twoDirectories());
        const std::filesystem::path before = std::filesystem::current_path();
        std::filesystem::current_path(folder.path(""));
        const CommandResult called = runTool({"call", "--", name});
        const CommandResult shown = runTool({"show", "--", name});
        std::filesystem::current_path(before);
        EXPECT_EQ(called.exitStatus, 0) << name << called.err;
        EXPECT_TRUE(shown.out.starts_with(name + "\n")) << name << shown.err;
    }
}

TEST_F(Command, CallPrintsTheRecordOfTheCall) {
    const CommandResult result = runTool({"call", good});
    EXPECT_EQ(result.exitStatus, 0);
    const json record = recordOf(result);
    EXPECT_EQ(record["error"], nullptr);
    EXPECT_EQ(record["warnings"], json::array());
    EXPECT_EQ(record["output"]["class"], "struct");
    EXPECT_EQ(record["output"]["size"], json({2, 1}));
    EXPECT_EQ(record["output"]["data"][1]["Width"]["data"], json({2}));
}

TEST_F(Command, CallHandsItsNumbersOverAsTheyAre) {
    EXPECT_EQ(elementsOf(runTool({"call", good, "--limit=1.9"})), 1U);
    EXPECT_EQ(elementsOf(runTool({"call", good, "--limit=-1"})), 2U);
    EXPECT_EQ(elementsOf(runTool({"call", good, "--limit", "-1"})), 2U);
    EXPECT_EQ(elementsOf(runTool({"call", good, "--limit=nan", "--skip=1.5"})), 1U);
    EXPECT_EQ(elementsOf(runTool({"call", good, "--limit=inf"})), 2U);
    EXPECT_EQ(elementsOf(runTool({"call", good, "--limit=1e30", "--header-offset=-inf"})), 2U);
}

TEST_F(Command, CallDoesNotFindTheHeaderOfAJpeg) {
    const std::string photo = folder.file("photo.jpg", jpegWithOrientation());
    const CommandResult result = runTool({"call", photo});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(recordOf(result)["error"],
              json({{"id", "quorra:corvinex:badEndianness"}, {"arguments", {255, 216, photo}}}));
}

TEST_F(Command, CallTakesTheEmptyName) {
    const CommandResult result = runTool({"call", ""});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(recordOf(result)["error"],
              json({{"id", "quorra:corvinex:statFailure"}, {"arguments", json::array()}}));
}

TEST_F(Command, AFolderIsTheModulesToRefuse) {
    const CommandResult result = runTool({"show", folder.path("")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(result.err.ends_with(" [quorra:corvinex:unsupportedFileFormat]\n")) << result.err;
}

TEST_F(Command, OutputThatCannotBeWrittenIsAFailure) {
    for (const std::vector<std::string>& commandLine :
         {std::vector<std::string>{"show", good}, {"call", good}, {"--help"}}) {
        const CommandResult result = runTool(commandLine, Output::DevFull);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.err, "corvinex: cannot write to the standard output\n");
    }
}

}  // namespace
