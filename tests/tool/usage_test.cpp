#include <gtest/gtest.h>
#include <unicode/uvernum.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/tool/command_files.h"

namespace {

using namespace tool_test;

class Usage : public CommandFiles {};

TEST_F(Usage, BadUsageIsToldOnStandardErrorWithStatus2) {
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

TEST_F(Usage, BadUsageIsToldWithWhatIsWrong) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{},
         "a command is missing; the commands are: show, call, inspect, json, csv, check, diff, "
         "scan, extract, tags, explain"},
        {{"shwo"}, "there is no command \"shwo\"; the nearest is \"show\""},
        {{"photo"},
         "there is no command \"photo\"; the commands are: show, call, inspect, json, csv, "
         "check, diff, scan, extract, tags, explain"},
        {{"--vresion"}, "there is no option \"--vresion\"; the nearest is \"--version\""},
        {{"show"}, "show: FILE is missing"},
        {{"call", good, "b\n"}, "call: \"b\\n\" is one FILE too many"},
        {{"diff"}, "diff: FILE1 is missing"},
        {{"diff", good}, "diff: FILE2 is missing"},
        {{"diff", good, good, "c"}, "diff: \"c\" is one FILE2 too many"},
        {{"diff", good, good, "--tag=ImageWidht"},
         "there is no tag \"ImageWidht\"; the nearest is \"ImageWidth\""},
        {{"show", good, "--limit=two"},
         "show: --limit: \"two\" is not a whole number from 0 to 2^53"},
        {{"show", good, "--limit"}, "show: \"--limit\" needs a value: N"},
        {{"show", good, "--limit=1", "--limit=2"}, "show: --limit is given twice"},
        {{"show", good, "--warnings=some"},
         "show: --warnings: \"some\" is not one of all|first|none"},
        {{"show", good, "--all=yes"}, "show: --all takes no value"},
        {{"show", good, "--limt=1"},
         "show: there is no option \"--limt\"; the nearest is \"--limit\""},
        {{"json", good, "--tag", "Nope"}, "there is no tag \"Nope\""},
        {{"json", good, "--tag", ""}, "there is no tag \"\""},
        {{"inspect", good, "--tag", "gps"}, "there is no tag \"gps\""},
        {{"inspect", good, "--tag=256", "--tag=0.exif.FNubmer"},
         "there is no tag \"0.exif.FNubmer\"; the nearest is \"FNumber\""},
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

TEST_F(Usage, HelpAndVersionGoToStandardOutput) {
    EXPECT_EQ(runTool({"--help"}).exitStatus, 0);
    EXPECT_NE(runTool({"--help"}).out.find("show"), std::string::npos);
    EXPECT_NE(runTool({"show", "--help"}).out.find("--header-offset"), std::string::npos);
    EXPECT_EQ(runTool({"--version"}).exitStatus, 0);
    EXPECT_TRUE(runTool({"--version"}).out.starts_with("corvinex "));
}

TEST_F(Usage, TheVersionTellsTheModulesInterfaceAndTheLibraries) {
    const std::vector<std::string> lines = linesOf(runTool({"--version"}).out);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_TRUE(lines[1].starts_with("  module: ")) << lines[1];
    EXPECT_TRUE(lines[1].ends_with("/corvinex.so, interface version 0x08000000")) << lines[1];
    EXPECT_TRUE(lines[2].starts_with("  libraries: ICU " U_ICU_VERSION ", ")) << lines[2];
}

TEST_F(Usage, OutputThatCannotBeWrittenIsAFailure) {
    for (const std::vector<std::string>& commandLine :
         {std::vector<std::string>{"show", good}, {"call", good}, {"--help"}}) {
        const CommandResult result = runTool(commandLine, Output::DevFull);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.err, "corvinex: cannot write to the standard output\n");
    }
}

}  // namespace
