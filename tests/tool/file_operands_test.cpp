#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/tool/command_files.h"

namespace {

using nlohmann::json;
using namespace tool_test;

class FileOperands : public CommandFiles {};

TEST_F(FileOperands, APipeIsRefusedByBothCommands) {
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

TEST_F(FileOperands, EveryCommandThatInspectsTellsThatAPipeOrADeviceIsNoFile) {
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string pipeText =
        pipe + ": this is a pipe (FIFO), not a file that can be read at any position\n";
    for (const std::string command : {"inspect", "json", "csv"}) {
        const CommandResult result = runTool({command, pipe});
        EXPECT_EQ(result.exitStatus, 1) << command;
        EXPECT_EQ(result.err, "corvinex: " + pipeText) << command;
        EXPECT_EQ(runTool({command, "/dev/null"}).err,
                  "corvinex: /dev/null: this is a device, not a file\n");
    }
    EXPECT_EQ(runTool({"extract", "XMP", pipe}).err, "corvinex: " + pipeText);
    EXPECT_NE(runTool({"check", pipe}).out.find("this is a pipe (FIFO), not a file"),
              std::string::npos);
    EXPECT_EQ(runTool({"scan", "-o", folder.path("c.db"), "--quiet", pipe}).err,
              "corvinex: " + pipeText);
}

TEST_F(FileOperands, ANameThatIsNotUtf8IsReadAndShownWithReplacementCharacters) {
    const std::string path = folder.file("a\xE4\x1B.tif", twoDirectories());
    const std::string shownName = folder.path("a\uFFFD\\u001b.tif");
    const CommandResult shown = runTool({"show", path});
    EXPECT_EQ(shown.exitStatus, 0) << shown.err;
    EXPECT_TRUE(shown.out.starts_with(shownName + "\n  Filename         \"" + shownName + "\"\n"))
        << shown.out;
    EXPECT_NE(shown.out.find("Directory 2 of 2"), std::string::npos);
    const CommandResult called = runTool({"call", path});
    EXPECT_EQ(called.exitStatus, 0);
    const json record = recordOf(called);
    for (const json& directory : record["output"]["data"]) {
        EXPECT_EQ(directory["Filename"]["data"], folder.path("a\uFFFD\x1B.tif"));
    }
}

TEST_F(FileOperands, AReportNamesAFileAsItWasAskedFor) {
    const std::string path = folder.file("a\xE4.tif", twoDirectories());
    const CommandResult shown = runTool({"show", path, "--header-offset=8"});
    EXPECT_TRUE(shown.err.ends_with("in " + folder.path("a\uFFFD.tif") +
                                    " [quorra:corvinex:badEndianness]\n"))
        << shown.err;
    const CommandResult called = runTool({"call", path, "--header-offset=8"});
    EXPECT_EQ(recordOf(called)["error"], json({{"id", "quorra:corvinex:badEndianness"},
                                               {"arguments", {3, 0, folder.path("a\uFFFD.tif")}}}));
}

TEST_F(FileOperands, AMissingFileWhoseNameIsNotUtf8IsToldByBothCommands) {
    const CommandResult shown = runTool({"show", "a\xE4.tif"});
    EXPECT_EQ(shown.exitStatus, 1);
    EXPECT_EQ(shown.err, "corvinex: a\uFFFD.tif: error: the file does not exist\n");
    const CommandResult called = runTool({"call", "a\xE4.tif"});
    EXPECT_EQ(called.exitStatus, 1);
    EXPECT_EQ(recordOf(called)["error"],
              json({{"id", nullptr}, {"message", "the file does not exist"}}));
    EXPECT_EQ(recordOf(called)["output"], nullptr);
}

TEST_F(FileOperands, ADashIsTheStandardInput) {
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
        EXPECT_EQ(recordOf(called)["output"]["data"][0]["Filename"],
                  json({{"class", "char"}, {"size", {1, 1}}, {"data", "-"}}));
    }
}

TEST_F(FileOperands, AFileWhoseNameIsADashIsReadByItsPath) {
    static_cast<void>(folder.file("-", twoDirectories()));
    EXPECT_EQ(runTool({"show", folder.path("-")}).exitStatus, 0);
}

TEST_F(FileOperands, APipeThatHoldsMoreThanMayBeTakenIsRefused) {
    const CommandResult result = runTool({"show", "-", "--max-memory=100K"}, Output::Captured,
                                         Input::pipe(std::string(200 << 10, 'x')));
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.err,
              "corvinex: -: error: the input holds more than 100 KiB (--max-memory SIZE allows "
              "more, 0 sets no limit)\n");
}

TEST_F(FileOperands, FileNamesAreTakenAsTheyAre) {
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

TEST_F(FileOperands, WhatIsNoFileToReadGetsAMessageOfItsOwn) {
    const std::string empty = folder.file("empty.tif", "");
    const CommandResult result = runTool({"show", folder.path(""), empty, bad});
    EXPECT_EQ(result.exitStatus, 1);
    const std::vector<std::string> lines = linesOf(result.err);
    ASSERT_EQ(lines.size(), 3U) << result.err;
    EXPECT_EQ(lines[0], "corvinex: " + folder.path("") + ": error: this is a folder, not a file");
    EXPECT_EQ(lines[1], "corvinex: " + empty + ": error: the file is empty");
    EXPECT_TRUE(lines[2].ends_with(" [quorra:corvinex:unsupportedFileFormat]")) << lines[2];
}

}  // namespace
