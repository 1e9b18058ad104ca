#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "tests/tool/command_files.h"

namespace {

using nlohmann::json;
using namespace tool_test;

class CallCommand : public CommandFiles {};

TEST_F(CallCommand, PrintsTheRecordOfTheCall) {
    const CommandResult result = runTool({"call", good});
    EXPECT_EQ(result.exitStatus, 0);
    const json record = recordOf(result);
    EXPECT_EQ(record["error"], nullptr);
    EXPECT_EQ(record["warnings"], json::array());
    EXPECT_EQ(record["output"]["class"], "struct");
    EXPECT_EQ(record["output"]["size"], json({2, 1}));
    EXPECT_EQ(record["output"]["data"][1]["Width"]["data"], json({2}));
}

TEST_F(CallCommand, HandsItsNumbersOverAsTheyAre) {
    EXPECT_EQ(elementsOf(runTool({"call", good, "--limit=1.9"})), 1U);
    EXPECT_EQ(elementsOf(runTool({"call", good, "--limit=-1"})), 2U);
    EXPECT_EQ(elementsOf(runTool({"call", good, "--limit", "-1"})), 2U);
    EXPECT_EQ(elementsOf(runTool({"call", good, "--limit=nan", "--skip=1.5"})), 1U);
    EXPECT_EQ(elementsOf(runTool({"call", good, "--limit=inf"})), 2U);
    EXPECT_EQ(elementsOf(runTool({"call", good, "--limit=1e30", "--header-offset=-inf"})), 2U);
}

TEST_F(CallCommand, FindsTheHeaderOfAJpeg) {
    const std::string photo = folder.file("photo.jpg", jpegWithOrientation());
    const json record = recordOf(runTool({"call", photo}));
    EXPECT_EQ(record["error"], nullptr);
    EXPECT_EQ(record["output"]["data"][0]["Orientation"]["data"], json({6}));
}

TEST_F(CallCommand, LooksForNoHeaderWhereItIsToldOne) {
    const std::string photo = folder.file("photo.jpg", jpegWithOrientation());
    const CommandResult result = runTool({"call", photo, "--header-offset=0"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(recordOf(result)["error"],
              json({{"id", "quorra:corvinex:badEndianness"}, {"arguments", {255, 216, photo}}}));
    const std::string plain = folder.file("plain.jpg", "\xFF\xD8\xFF\xD9");
    EXPECT_EQ(recordOf(runTool({"call", plain, "--header-offset=-1"}))["error"]["id"],
              "quorra:corvinex:badEndianness");
}

TEST_F(CallCommand, TellsOfAJpegWithoutAnExifBlockInTheRecord) {
    const std::string plain = folder.file("plain.jpg", "\xFF\xD8\xFF\xD9");
    const CommandResult result = runTool({"call", plain});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(recordOf(result)["error"],
              json({{"id", nullptr}, {"message", "this JPEG file holds no EXIF block"}}));
    EXPECT_EQ(result.err, "");
}

TEST_F(CallCommand, TakesTheEmptyName) {
    const CommandResult result = runTool({"call", ""});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(recordOf(result)["error"],
              json({{"id", "quorra:corvinex:statFailure"}, {"arguments", json::array()}}));
}

TEST_F(CallCommand, WhatIsNoFileToReadIsToldBesidesTheModulesError) {
    const std::string empty = folder.file("empty.tif", "");
    const std::vector<std::pair<std::string, std::string>> cases{
        {folder.path(""), ": error: this is a folder, not a file\n"},
        {empty, ": error: the file is empty\n"},
    };
    for (const auto& [path, message] : cases) {
        const CommandResult result = runTool({"call", path});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(recordOf(result)["error"]["id"], "quorra:corvinex:unsupportedFileFormat");
        EXPECT_EQ(result.err, "corvinex: " + path + message);
    }
}

TEST_F(CallCommand, WhatTheModuleSaysOfAFileThatCanBeReadStandsInTheRecordAlone) {
    const CommandResult result = runTool({"call", bad});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(recordOf(result)["error"]["id"], "quorra:corvinex:unsupportedFileFormat");
    EXPECT_EQ(result.err, "");
}

}  // namespace
