#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "tests/tool/run_command.h"
#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"

// Names, inputs and outputs that are not as they should be, for the commands that read any number
// of files.

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using tool_test::CommandResult;
using tool_test::Input;
using tool_test::Output;
using tool_test::runTool;
using tool_test::TemporaryFolder;
using Texts = std::vector<std::string>;

std::string smallTiff() {
    return tool_test::TiffBytes().header(8).count(1).shortEntry(256, 640).offset(0).bytes();
}

class BadInput : public testing::TestWithParam<const char*> {
  protected:
    static CommandResult run(Texts operands, Output output = Output::Captured,
                             const Input& input = {}) {
        operands.insert(operands.begin(), {GetParam(), "-j2"});
        return runTool(operands, output, input);
    }
    static bool isJson() { return std::string_view(GetParam()) == "json"; }

    const TemporaryFolder folder_;
};

/// The tool's exit status and output where folders without permission are closed to root as well.
CommandResult runWithoutPrivileges(const std::string& command, const std::string& path) {
    const std::string privileges =
        geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search " : "";
    const std::string line = privileges + CORVINEX_TOOL " " + command + " " + path + " 2>/dev/null";
    FILE* const pipe = popen(line.c_str(), "r");
    CommandResult result{.exitStatus = -1, .out = {}, .err = {}};
    std::array<char, 4096> buffer{};
    while (const std::size_t length = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        result.out.append(buffer.data(), length);
    }
    const int status = pclose(pipe);
    result.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

}  // namespace

TEST_P(BadInput, ANameThatIsNotUtf8IsReadAndShownWithReplacementCharacters) {
    fs::create_directory(folder_.path("in"));
    static_cast<void>(folder_.file("in/caf\xE9.tif", smallTiff()));
    for (const std::string& path : {folder_.path("in/caf\xE9.tif"), folder_.path("in")}) {
        const CommandResult result = run({path});
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_NE(result.out.find("caf\xEF\xBF\xBD.tif"), std::string::npos) << result.out;
        EXPECT_NE(result.out.find("640"), std::string::npos) << result.out;
        EXPECT_EQ(result.err, "");
        if (isJson()) {
            EXPECT_TRUE(json::parse(result.out).contains("file_bytes"));
        }
    }
}

TEST_P(BadInput, AMissingFileWhoseNameIsNotUtf8IsTold) {
    const CommandResult result = run({folder_.path("caf\xE9.tif")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.err,
              "corvinex: " + folder_.path("caf\xEF\xBF\xBD.tif") + ": No such file or directory\n");
}

TEST_P(BadInput, AStandardInputThatIsATerminalIsBadUsage) {
    // The other end of a new terminal is one as well.
    const Input terminal = Input::file("/dev/ptmx");
    const std::string good = folder_.file("a.tif", smallTiff());
    for (const Texts& operands : {Texts{"-"}, Texts{good, "-"}, Texts{"--files0-from", "-"}}) {
        const CommandResult result = run(operands, Output::Captured, terminal);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(result.err.starts_with("corvinex: the standard input is a terminal\n"))
            << result.err;
    }
    EXPECT_EQ(run({good}, Output::Captured, terminal).exitStatus, 0);
}

TEST_P(BadInput, AStandardInputThatIsFileAndListOfNamesIsBadUsage) {
    const std::string good = folder_.file("a.tif", smallTiff());
    const CommandResult result =
        run({"--files0-from", "-", "-"}, Output::Captured, Input::pipe(good + '\0'));
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with(
        "corvinex: the standard input is either a file or the list of names\n"))
        << result.err;
}

TEST_P(BadInput, APipeOnTheStandardInputIsReadAsAFileIs) {
    const CommandResult result = run({"-"}, Output::Captured, Input::pipe(smallTiff()));
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_NE(result.out.find("640"), std::string::npos) << result.out;
    EXPECT_EQ(run({"-"}, Output::Captured, Input::pipe("")).exitStatus, 1);
}

TEST_P(BadInput, APipeByItsNameIsToldAndTheRestIsRead) {
    const std::string pipe = folder_.path("pipe.tif");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const CommandResult result = run({pipe, folder_.file("a.tif", smallTiff())});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_NE(result.out.find("640"), std::string::npos) << result.out;
    EXPECT_TRUE(result.err.starts_with("corvinex: " + pipe + ": ")) << result.err;
}

TEST_P(BadInput, AnEmptyFileIsNoImage) {
    const std::string empty = folder_.file("empty.tif", "");
    const CommandResult result = run({empty, folder_.file("good.tif", smallTiff())});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_NE(result.out.find("640"), std::string::npos) << result.out;
    if (isJson()) {
        const json record = json::parse(result.out.substr(0, result.out.find('\n')));
        EXPECT_EQ(record["status"], "not-an-image");
        EXPECT_EQ(record["size"], 0);
    }
}

TEST_P(BadInput, AFolderWithoutPermissionIsToldAndTheRestIsRead) {
    fs::create_directories(folder_.path("in/closed"));
    static_cast<void>(folder_.file("in/closed/a.tif", smallTiff()));
    static_cast<void>(folder_.file("in/open.tif", smallTiff()));
    ASSERT_EQ(chmod(folder_.path("in/closed").c_str(), 0), 0);
    const CommandResult result = runWithoutPrivileges(GetParam(), folder_.path("in"));
    chmod(folder_.path("in/closed").c_str(), 0700);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_NE(result.out.find("640"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find(folder_.path("in/closed")), std::string::npos) << result.out;
    if (isJson()) {
        const json record = json::parse(result.out.substr(0, result.out.find('\n')));
        EXPECT_EQ(record["status"], "unreadable");
    }
}

TEST_P(BadInput, AFolderThatMayBeListedButNotEnteredHidesNothing) {
    fs::create_directories(folder_.path("in/listed/below"));
    static_cast<void>(folder_.file("in/listed/below/a.tif", smallTiff()));
    static_cast<void>(folder_.file("in/listed/b.tif", smallTiff()));
    ASSERT_EQ(chmod(folder_.path("in/listed").c_str(), 0444), 0);
    const CommandResult result = runWithoutPrivileges(GetParam(), folder_.path("in"));
    chmod(folder_.path("in/listed").c_str(), 0700);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_NE(result.out.find(folder_.path("in/listed/b.tif")), std::string::npos) << result.out;
    EXPECT_NE(result.out.find(folder_.path("in/listed/below")), std::string::npos) << result.out;
}

TEST_P(BadInput, WhatShouldBeAnImageInAFolderIsToldWhenItIsNoFileAtAll) {
    fs::create_directories(folder_.path("in"));
    fs::create_symlink("/nowhere/scan.tif", folder_.path("in/a.tif"));
    fs::create_symlink("/nowhere/text", folder_.path("in/b"));
    ASSERT_EQ(mkfifo(folder_.path("in/c.jpg").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo(folder_.path("in/d").c_str(), 0600), 0);
    const CommandResult result = run({folder_.path("in")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_NE(result.out.find(folder_.path("in/a.tif")), std::string::npos) << result.out;
    EXPECT_NE(result.out.find(folder_.path("in/c.jpg")), std::string::npos) << result.out;
    EXPECT_EQ(result.out.find(folder_.path("in/b")), std::string::npos) << result.out;
    EXPECT_EQ(result.out.find(folder_.path("in/d")), std::string::npos) << result.out;
}

TEST_P(BadInput, AnOutputThatTakesNoMoreEndsTheWork) {
    const std::string good = folder_.file("a.tif", smallTiff());
    EXPECT_EQ(run({good, good}, Output::DevFull).exitStatus, 3);
    // The signal of a pipe that nobody reads ends the tool, unless whoever started it ignores that.
    EXPECT_EQ(run({good, good}, Output::ClosedPipe).exitStatus, -1);
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(run({good, good}, Output::ClosedPipe).exitStatus, 3);
    std::signal(SIGPIPE, before);
}

INSTANTIATE_TEST_SUITE_P(Of, BadInput, testing::Values("json", "inspect", "csv"),
                         [](const auto& command) { return std::string(command.param); });
