#include "tool/progress_line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

#include "tests/tool/temporary_file.h"
#include "tests/tool/terminal_session.h"
#include "tests/tool/tiff_bytes.h"

// What stands on a terminal while many files are read, and how an interrupt ends the work. The work
// lasts because the second of three files is a pipe that the test keeps open.

namespace {

using tool::progressText;
using tool_test::TemporaryFolder;
using tool_test::TerminalSession;

std::string smallTiff() {
    return tool_test::TiffBytes().header(8).count(1).shortEntry(256, 640).offset(0).bytes();
}

class ProgressLine : public testing::Test {
  protected:
    std::vector<std::string> words(const std::string& command) const {
        return {command, "-j1", first_, "-", third_};
    }

    const TemporaryFolder folder_;
    const std::string first_ = folder_.file("a.tif", smallTiff());
    const std::string third_ = folder_.file("c.tif", smallTiff());
};

std::size_t linesIn(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

TEST(ProgressText, TellsFilesSpeedFindingsAndTheTimeThatIsLeft) {
    EXPECT_EQ(progressText({.done = 120, .found = 3'000, .findings = 7, .seconds = 2}),
              "120 of 3,000 files, 60 a second, 7 findings, 0:48 left");
    EXPECT_EQ(progressText({.done = 1'000, .found = 12'000'000, .findings = 1, .seconds = 1}),
              "1,000 of 12,000,000 files, 1,000 a second, 1 finding, 3:19:59 left");
}

TEST(ProgressText, TellsNoTimeThatNobodyKnows) {
    EXPECT_EQ(progressText({.done = 0, .found = 1, .findings = 0, .seconds = 1}),
              "0 of 1 file, 0 a second, 0 findings");
    EXPECT_EQ(progressText({.done = 5, .found = {}, .findings = 0, .seconds = 2}),
              "5 files, 3 a second, 0 findings");
}

TEST_F(ProgressLine, StandsOnATerminalWhileTheWorkLastsAndGoesWithIt) {
    for (const char* command : {"json", "inspect", "csv"}) {
        TerminalSession session(words(command));
        EXPECT_TRUE(session.waitFor("1 of 3 files, ")) << session.shown();
        session.closeInput(smallTiff());
        EXPECT_EQ(session.wait(), 0);
        EXPECT_TRUE(session.shown().ends_with("\r\x1b[K")) << session.shown();
        EXPECT_EQ(session.out().find('\x1b'), std::string::npos);
    }
}

TEST_F(ProgressLine, MakesRoomForErrors) {
    TerminalSession session(
        {"json", "-j1", folder_.path("missing.tif"), "-", third_, folder_.path("gone.tif")});
    EXPECT_TRUE(session.waitFor("1 of 4 files, ")) << session.shown();
    session.closeInput(smallTiff());
    EXPECT_EQ(session.wait(), 1);
    EXPECT_NE(session.shown().find("\r\x1b[Kcorvinex: " + folder_.path("gone.tif") + ": "),
              std::string::npos)
        << session.shown();
}

TEST_F(ProgressLine, IsCutToTheTerminalsWidth) {
    constexpr unsigned short columns = 12;
    TerminalSession session(words("json"), columns);
    EXPECT_TRUE(session.waitFor("\r1 of 3 file\x1b[K")) << session.shown();
    session.closeInput(smallTiff());
    EXPECT_EQ(session.wait(), 0);
}

TEST_F(ProgressLine, IsNotThereWhenQuietIsAskedForButErrorsAre) {
    TerminalSession session({"json", "-q", "-j1", folder_.path("missing.tif"), "-"});
    EXPECT_TRUE(session.waitFor("missing.tif: No such file or directory\r\n")) << session.shown();
    // Longer than it takes for the line to appear.
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    session.closeInput(smallTiff());
    EXPECT_EQ(session.wait(), 1);
    EXPECT_EQ(session.shown(),
              "corvinex: " + folder_.path("missing.tif") + ": No such file or directory\r\n");
}

TEST_F(ProgressLine, AnInterruptEndsWithTheRecordThatIsBeingWrittenWhole) {
    for (const int signal : {SIGINT, SIGTERM}) {
        TerminalSession session(words("json"));
        EXPECT_TRUE(session.waitFor("1 of 3 files, ")) << session.shown();
        session.interrupt(signal);
        session.closeInput(smallTiff());
        EXPECT_EQ(session.wait(), -signal);
        EXPECT_EQ(linesIn(session.out()), 2U) << session.out();
        EXPECT_TRUE(session.out().ends_with("}\n"));
        EXPECT_NE(session.out().find(R"("file":"-")"), std::string::npos);
        EXPECT_TRUE(session.shown().ends_with("\r\x1b[K")) << session.shown();
    }
}

}  // namespace
