#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>

#include "tests/tool/run_command.h"
#include "tool/tag_catalog.h"
#include "vocabulary/registry.h"
#include "vocabulary/tag_table.h"

using tool_test::Output;
using tool_test::runTool;

TEST(TagsCommand, PrintsALineForEachTagAndEachKey) {
    const auto result = runTool({"tags"});
    EXPECT_EQ(result.exitStatus, 0);
    const auto lines = static_cast<std::size_t>(std::ranges::count(result.out, '\n'));
    EXPECT_EQ(lines, 1 + tool::allTags().size() + corvinex::registry::geoKeys().size());
    EXPECT_TRUE(result.out.starts_with("number  directory  name  ")) << result.out.substr(0, 80);
    EXPECT_NE(result.out.find("\n256     main       ImageWidth  "), std::string::npos);
    EXPECT_NE(result.out.find("\n1024    geokey     GTModelTypeGeoKey  "), std::string::npos);
}

TEST(TagsCommand, PrintsATagByItsNameByItsFieldOfTheResultOrByItsNumber) {
    const std::string width =
        "ImageWidth\n"
        "  number      256\n"
        "  directory   main\n"
        "  field       Width\n"
        "  types       SHORT|LONG\n"
        "  count       1\n"
        "  unit        px\n"
        "  source      TIFF6\n";
    EXPECT_EQ(runTool({"tags", "ImageWidth"}).out, width);
    EXPECT_EQ(runTool({"tags", "width"}).out, width);
    EXPECT_EQ(runTool({"tags", "256"}).out, width);
    EXPECT_EQ(runTool({"tags", "0x100"}).out, width);
    EXPECT_EQ(runTool({"tags", "icc"}).out, runTool({"tags", "ICCProfile"}).out);
}

TEST(TagsCommand, KnowsShortNames) {
    EXPECT_EQ(runTool({"tags", "ISO"}).out, runTool({"tags", "34855"}).out);
    EXPECT_EQ(runTool({"tags", "icc"}).out, runTool({"tags", "34675"}).out);
}

TEST(TagsCommand, PrintsTheWordsOfCodesFlagsAndTexts) {
    const std::string predictor = runTool({"tags", "Predictor"}).out;
    EXPECT_NE(predictor.find("  words\n    1  None\n    2  Horizontal differencing\n"),
              std::string::npos)
        << predictor;
    const std::string flags = runTool({"tags", "T4Options"}).out;
    EXPECT_NE(flags.find("    bit 2  Fill bits before EOL\n"), std::string::npos) << flags;
    const std::string reference = runTool({"tags", "GPSLatitudeRef"}).out;
    EXPECT_NE(reference.find("    \"N\"  North"), std::string::npos) << reference;
}

TEST(TagsCommand, PrintsATagOfSeveralDirectoriesForEachAndTheSameWordsOnce) {
    const std::string flash = runTool({"tags", "Flash"}).out;
    EXPECT_NE(flash.find("  directory   main\n"), std::string::npos);
    EXPECT_NE(flash.find("\n\nFlash\n  number      37385\n  directory   exif\n"),
              std::string::npos);
    EXPECT_EQ(flash.find("    0  "), flash.rfind("    0  "));
    EXPECT_TRUE(flash.ends_with("  words       as above\n"));
}

TEST(TagsCommand, TellsWhatNobodyKnows) {
    const auto name = runTool({"tags", "ImageWidht"});
    EXPECT_EQ(name.exitStatus, 2);
    EXPECT_EQ(name.err,
              "corvinex: there is no tag \"ImageWidht\"; the nearest is \"ImageWidth\"\n"
              "corvinex: --help tells what can be given\n");
    const auto number = runTool({"tags", "64999"});
    EXPECT_EQ(number.exitStatus, 1);
    EXPECT_EQ(number.err, "corvinex: nothing is known of tag 64999\n");
    EXPECT_EQ(runTool({"tags", ""}).exitStatus, 2);
    EXPECT_EQ(runTool({"tags", "99999"}).exitStatus, 2);
    EXPECT_EQ(runTool({"tags", "256", "257"}).exitStatus, 2);
}

TEST(TagsCommand, EndsWithItsOwnStatusWhenTheOutputIsFull) {
    EXPECT_EQ(runTool({"tags"}, Output::DevFull).exitStatus, 3);
    EXPECT_EQ(runTool({"tags", "256"}, Output::DevFull).exitStatus, 3);
}

TEST(TagCatalog, HoldsEveryNameOfTheResult) {
    std::size_t names = 0;
    for (const corvinex::TagRow& row : corvinex::primaryTagTable()) {
        if (corvinex::findTag(row.number).name != nullptr) {
            ++names;
            const auto numbers = tool::numbersMeantBy(corvinex::findTag(row.number).name);
            EXPECT_NE(std::ranges::find(numbers, row.number), numbers.end()) << row.name;
        }
    }
    EXPECT_GT(names, 300U);
}
