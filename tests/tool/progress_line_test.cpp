#include "tool/progress_line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tests/tool/temporary_file.h"
#include "tests/tool/terminal_session.h"
#include "tests/tool/tiff_bytes.h"

// What stands on a terminal while many files are read, and how an interrupt ends the work. The work
// lasts because the second of three files is a pipe that the test keeps open.

namespace {

using std::chrono::milliseconds;
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

TEST(ProgressText, TellsTheTotalAndTheTimeLeftOnceTheFilesAreCounted) {
    EXPECT_EQ(tool::progressText(
                  {.done = 1234, .found = 20000, .findings = 56, .elapsed = milliseconds(2000)}),
              "1,234 of 20,000 files, 617 a second, 56 findings, 0:30 left");
    EXPECT_EQ(tool::progressText(
                  {.done = 10, .found = 100000, .findings = 0, .elapsed = milliseconds(1000)}),
              "10 of 100,000 files, 10 a second, 0 findings, 2:46:39 left");
}

TEST(ProgressText, TellsWhatIsDoneWhileTheFilesAreBeingCounted) {
    EXPECT_EQ(
        tool::progressText(
            {.done = 1234, .found = std::nullopt, .findings = 1, .elapsed = milliseconds(2000)}),
        "1,234 files, 617 a second, 1 findings");
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

TEST_F(ProgressLine, MakesRoomForOutputOnTheSameTerminal) {
    TerminalSession session(words("json"), 4000, TerminalSession::Output::Terminal);
    EXPECT_TRUE(session.waitFor("1 of 3 files, ")) << session.shown();
    session.closeInput(smallTiff());
    EXPECT_EQ(session.wait(), 0);
    // The first record is there before the line, the others begin where the line was.
    EXPECT_TRUE(session.shown().starts_with("{\"schema\":1")) << session.shown();
    EXPECT_NE(session.shown().find("\r\x1b[K{\"schema\":1"), std::string::npos) << session.shown();
}

TEST_F(ProgressLine, IsGoneWhenAScanTellsItsCounts) {
    TerminalSession session(
        {"scan", "-j1", first_, "--files0-from", "-", "-o", folder_.path("c.sqlite")});
    EXPECT_TRUE(session.waitFor("1 files, ")) << session.shown();
    session.closeInput(third_);
    EXPECT_EQ(session.wait(), 0);
    EXPECT_NE(session.shown().find("\r\x1b[K2 files found in "), std::string::npos)
        << session.shown();
}

TEST_F(ProgressLine, IsGoneWhenAScanTellsOfAnInterrupt) {
    TerminalSession session(
        {"scan", "-j1", first_, "--files0-from", "-", "-o", folder_.path("c.sqlite")});
    EXPECT_TRUE(session.waitFor("1 files, ")) << session.shown();
    session.interrupt(SIGINT);
    session.closeInput(third_);
    EXPECT_EQ(session.wait(), -SIGINT);
    EXPECT_NE(session.shown().find("\r\x1b[Kcorvinex: interrupted; "), std::string::npos)
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
    std::this_thread::sleep_for(milliseconds(1500));
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
