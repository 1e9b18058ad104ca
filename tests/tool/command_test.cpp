#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/tool/run_command.h"
#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"

namespace {

using nlohmann::json;
using tool_test::CommandResult;
using tool_test::Input;
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

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
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
        for (const std::string& line : linesOf(result.err)) {
            EXPECT_TRUE(line.starts_with("corvinex: ")) << line;
        }
    }
}

TEST_F(Command, BadUsageIsToldWithWhatIsWrong) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{},
         "a command is missing; the commands are: show, call, json, "
         "csv, extract, tags, explain"},
        {{"shwo"}, "there is no command \"shwo\"; the nearest is \"show\""},
        {{"photo.jpg"},
         "there is no command \"photo.jpg\"; the commands are: show, call, json, "
         "csv, extract, tags, explain"},
        {{"--vresion"}, "there is no option \"--vresion\"; the nearest is \"--version\""},
        {{"show"}, "show: FILE is missing"},
        {{"call", good, "b\n"}, "call: \"b\\n\" is one FILE too many"},
        {{"show", good, "--limit=two"},
         "show: --limit: \"two\" is not a whole number from 0 to 2^53"},
        {{"show", good, "--limit"}, "show: \"--limit\" needs a value: N"},
        {{"show", good, "--limit=1", "--limit=2"}, "show: --limit is given twice"},
        {{"show", good, "--warnings=some"},
         "show: --warnings: \"some\" is not one of all|first|none"},
        {{"show", good, "--all=yes"}, "show: --all takes no value"},
        {{"show", good, "--limt=1"},
         "show: there is no option \"--limt\"; the nearest is \"--limit\""},
        {{"show", good, "-x"}, "show: there is no option \"-x\""},
        {{"show", good, "--lim=1"},
         "show: there is no option \"--lim\"; the nearest is \"--limit\""},
        {{"show", good, "--hel"}, "show: there is no option \"--hel\"; the nearest is \"--help\""},
    };
    for (const auto& [commandLine, reason] : cases) {
        const CommandResult result = runTool(commandLine);
        EXPECT_EQ(result.exitStatus, 2) << reason;
        EXPECT_EQ(linesOf(result.err).front(), "corvinex: " + reason);
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
    EXPECT_NE(result.out.find("Directory 2 of 2"), std::string::npos);
    EXPECT_EQ(result.out, runTool({"show", good, "--limit=1", "--skip", "1"}).out);
    EXPECT_EQ(runTool({"show", good, "--skip=1", good}).out,
              runTool({"show", "--skip=1", good, good}).out);
}

TEST_F(Command, AHeadingCarriesThePlaceInTheChainAndTheTotalWhereTheReadComesToTheEnd) {
    const auto headings = [](const CommandResult& result) {
        std::vector<std::string> found;
        for (const std::string& line : linesOf(result.out)) {
            if (line.starts_with("  Directory")) {
                found.push_back(line.substr(2));
            }
        }
        return found;
    };
    using Headings = std::vector<std::string>;
    EXPECT_EQ(headings(runTool({"show", good, "--skip=1"})), Headings{"Directory 2 of 2"});
    EXPECT_EQ(headings(runTool({"show", good, "--limit=1"})), Headings{"Directory 1"});
    const std::string cycle = folder.file("cycle.tif", twoDirectories(8));
    EXPECT_EQ(headings(runTool({"show", cycle, "--skip=1", "--limit=2"})),
              (Headings{"Directory 2 of 2", "Directory 1 of 2"}));
}

TEST_F(Command, SkippingAllDirectoriesIsAnErrorThatTellsHowManyThereAre) {
    const std::string cycle = folder.file("cycle.tif", twoDirectories(8));
    for (const std::string& path : {good, cycle}) {
        const CommandResult result = runTool({"show", path, "--skip=2"});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "corvinex: " + path +
                                  ": error: the file has 2 directories; --skip 2 leaves none\n");
    }
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

TEST_F(Command, ANameThatIsNotUtf8IsReadAndShownWithReplacementCharacters) {
    const std::string path = folder.file("a\xE4\x1B.tif", twoDirectories());
    const std::string shownName = folder.path("a\uFFFD\\u001b.tif");
    const CommandResult shown = runTool({"show", path});
    EXPECT_EQ(shown.exitStatus, 0) << shown.err;
    EXPECT_TRUE(shown.out.starts_with(shownName + "\n  Filename         \"" + shownName + "\"\n"))
        << shown.out;
    EXPECT_NE(shown.out.find("Directory 2 of 2"), std::string::npos);
    const CommandResult called = runTool({"call", path});
    EXPECT_EQ(called.exitStatus, 0);
    EXPECT_EQ(elementsOf(called), 2U);
}

TEST_F(Command, AReportNamesAFileAsItWasAskedFor) {
    const std::string path = folder.file("a\xE4.tif", twoDirectories());
    const CommandResult shown = runTool({"show", path, "--header-offset=8"});
    EXPECT_TRUE(shown.err.ends_with("in " + folder.path("a\uFFFD.tif") +
                                    " [quorra:corvinex:badEndianness]\n"))
        << shown.err;
}

TEST_F(Command, AMissingFileWhoseNameIsNotUtf8IsToldByBothCommands) {
    const CommandResult shown = runTool({"show", "a\xE4.tif"});
    EXPECT_EQ(shown.exitStatus, 1);
    EXPECT_EQ(shown.err, "corvinex: a\uFFFD.tif: error: the file does not exist\n");
    const CommandResult called = runTool({"call", "a\xE4.tif"});
    EXPECT_EQ(called.exitStatus, 1);
    EXPECT_EQ(recordOf(called)["error"],
              json({{"id", nullptr}, {"message", "the file does not exist"}}));
    EXPECT_EQ(recordOf(called)["output"], nullptr);
}

TEST_F(Command, ADashIsTheStandardInput) {
    const std::string block = runTool({"show", good}).out;
    const std::string directories = block.substr(block.find("  Directory"));
    for (const Input& input : {Input::file(good), Input::pipe(twoDirectories())}) {
        const CommandResult shown = runTool({"show", "-"}, Output::Captured, input);
        EXPECT_EQ(shown.exitStatus, 0) << shown.err;
        EXPECT_TRUE(shown.out.starts_with("-\n  Filename         \"-\"\n")) << shown.out;
        EXPECT_TRUE(shown.out.ends_with(directories)) << shown.out;
        const CommandResult called = runTool({"call", "-"}, Output::Captured, input);
        EXPECT_EQ(called.exitStatus, 0);
        EXPECT_EQ(elementsOf(called), 2U);
    }
}

TEST_F(Command, AFileWhoseNameIsADashIsReadByItsPath) {
    static_cast<void>(folder.file("-", twoDirectories()));
    EXPECT_EQ(runTool({"show", folder.path("-")}).exitStatus, 0);
}

TEST_F(Command, APipeThatHoldsMoreThanMayBeTakenIsRefused) {
    const CommandResult result = runTool({"show", "-", "--max-memory=100K"}, Output::Captured,
                                         Input::pipe(std::string(200 << 10, 'x')));
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.err,
              "corvinex: -: error: the input holds more than 100K; --max-memory 1G allows more\n");
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

TEST_F(Command, WhatIsNoFileToReadGetsAMessageOfItsOwn) {
    const std::string empty = folder.file("empty.tif", "");
    const CommandResult result = runTool({"show", folder.path(""), empty, bad});
    EXPECT_EQ(result.exitStatus, 1);
    const std::vector<std::string> lines = linesOf(result.err);
    ASSERT_EQ(lines.size(), 3U) << result.err;
    EXPECT_EQ(lines[0], "corvinex: " + folder.path("") + ": error: this is a folder, not a file");
    EXPECT_EQ(lines[1], "corvinex: " + empty + ": error: the file is empty");
    EXPECT_TRUE(lines[2].ends_with(" [quorra:corvinex:unsupportedFileFormat]")) << lines[2];
}

TEST_F(Command, AFolderIsTheModulesToRefuseInACall) {
    EXPECT_EQ(recordOf(runTool({"call", folder.path("")}))["error"]["id"],
              "quorra:corvinex:unsupportedFileFormat");
}

TEST_F(Command, OfEachKindOfWarningTheFirstTenArePrinted) {
    TiffBytes tiff;
    tiff.header(8).count(13);
    for (std::uint64_t i = 0; i < 12; ++i) {
        tiff.entry(50000 + i, 1, 1000, 5000);
    }
    const std::string path =
        folder.file("warnings.tif", tiff.entry(60000, 99, 1, 0).offset(0).bytes());
    const std::vector<std::string> all = linesOf(runTool({"show", path, "--warnings=all"}).err);
    ASSERT_EQ(all.size(), 13U);
    const CommandResult first = runTool({"show", path});
    std::vector<std::string> expected(all.begin(), all.begin() + 10);
    expected.push_back(all.back());
    expected.push_back("corvinex: " + path +
                       ": warning: 2 more warnings of this kind; --warnings all prints every one" +
                       all[0].substr(all[0].find(" [")));
    EXPECT_EQ(linesOf(first.err), expected);
    EXPECT_EQ(linesOf(runTool({"show", path, "--warnings=first"}).err), expected);
    EXPECT_EQ(runTool({"show", path, path}).err, first.err + first.err) << "each file anew";
    EXPECT_EQ(runTool({"show", path, "--warnings=none"}).err, "");
    EXPECT_NE(runTool({"show", bad, "--warnings=none"}).err, "") << "an error is no warning";
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
