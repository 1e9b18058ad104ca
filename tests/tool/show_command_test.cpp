#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/tool/command_files.h"

namespace {

using namespace tool_test;

class ShowCommand : public CommandFiles {};

TEST_F(ShowCommand, PrintsABlockForTheFile) {
    const CommandResult result = runTool({"show", good});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(result.out.starts_with(good + "\n  Filename")) << result.out;
    EXPECT_NE(result.out.find("\n  Directory 1 of 2\n"), std::string::npos);
    EXPECT_NE(result.out.find("\n  Directory 2 of 2\n"), std::string::npos);
    EXPECT_EQ(result.out.find("FormatVersion"), std::string::npos);
}

TEST_F(ShowCommand, ABadFileDoesNotStopTheOthers) {
    const CommandResult result = runTool({"show", good, bad, good});
    EXPECT_EQ(result.exitStatus, 1);
    const CommandResult alone = runTool({"show", good});
    EXPECT_EQ(result.out, alone.out + "\n" + alone.out);
    EXPECT_TRUE(result.err.starts_with("corvinex: " + bad + ": error: ")) << result.err;
    EXPECT_TRUE(result.err.ends_with(" [quorra:corvinex:unsupportedFileFormat]\n")) << result.err;
}

TEST_F(ShowCommand, ErrorsStandBehindTheBlocksBefore) {
    const std::string together = runTool({"show", good, bad}, Output::WithErrors).out;
    EXPECT_TRUE(together.starts_with(good)) << together;
    EXPECT_LT(together.find("Directory 2 of 2"), together.find("corvinex: " + bad)) << together;
}

TEST_F(ShowCommand, OptionsMayStandBeforeTheFiles) {
    const CommandResult result = runTool({"show", "--limit", "1", "--skip=1", good});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_NE(result.out.find("Directory 2 of 2"), std::string::npos);
    EXPECT_EQ(result.out, runTool({"show", good, "--limit=1", "--skip", "1"}).out);
    EXPECT_EQ(runTool({"show", good, "--skip=1", good}).out,
              runTool({"show", "--skip=1", good, good}).out);
}

TEST_F(ShowCommand, AHeadingCarriesThePlaceInTheChainAndTheTotalWhereTheReadComesToTheEnd) {
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

TEST_F(ShowCommand, SkippingAllDirectoriesIsAnErrorThatTellsHowManyThereAre) {
    const std::string cycle = folder.file("cycle.tif", twoDirectories(8));
    for (const std::string& path : {good, cycle}) {
        const CommandResult result = runTool({"show", path, "--skip=2"});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "corvinex: " + path +
                                  ": error: the file has 2 directories; skipping 2 leaves none\n");
    }
}

TEST_F(ShowCommand, SkippingADirectoryThatIsCutOffTooIsAnErrorThatTellsOfIt) {
    const std::string whole = twoDirectories();
    const std::string path = folder.file("cut.tif", whole.substr(0, whole.size() - 5));
    EXPECT_TRUE(
        runTool({"show", path, "--skip=1"}).err.ends_with(" [quorra:corvinex:badIFDread]\n"));
    EXPECT_EQ(runTool({"show", path, "--skip=2"}).err,
              "corvinex: " + path +
                  ": error: the file has one directory and one that is cut off; skipping 2 leaves "
                  "none\n");
}

TEST_F(ShowCommand, ALocaleThatIsNotThereChangesNothing) {
    const auto shownIn = [this](const std::string& locale) {
        return runTool({"show", good}, Output::Captured, {}, {"LC_ALL=" + locale});
    };
    EXPECT_EQ(shownIn("xx_XX.UTF-8").exitStatus, 0);
    EXPECT_EQ(shownIn("xx_XX.UTF-8").out, shownIn("C").out);
}

TEST_F(ShowCommand, AllShowsFieldsThatWereNeverSet) {
    EXPECT_NE(runTool({"show", "--all", good}).out.find("FormatVersion              []"),
              std::string::npos);
}

TEST_F(ShowCommand, WarningsAreToldWithTheirId) {
    const std::string path = folder.file("beyond.tif", twoDirectories(5000));
    const CommandResult result = runTool({"show", path});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(result.err.starts_with("corvinex: " + path + ": warning: ")) << result.err;
    EXPECT_TRUE(result.err.ends_with(" [quorra:corvinex:nextIfdPointerOutOfRange]\n"))
        << result.err;
}

TEST_F(ShowCommand, ACyclicChainIsShownOnceWithAWarning) {
    const std::string path = folder.file("cycle.tif", twoDirectories(8));
    const CommandResult result = runTool({"show", path});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.err, "corvinex: " + path +
                              ": warning: the chain of directories comes back on itself; "
                              "reading its 2 directories once\n");
    EXPECT_NE(result.out.find("Directory 2 of 2"), std::string::npos);
}

TEST_F(ShowCommand, AJpegIsShownWithoutBeingToldWhereItsHeaderIs) {
    const std::string photo = folder.file("photo.jpg", jpegWithOrientation());
    const CommandResult result = runTool({"show", photo});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_NE(result.out.find("Orientation"), std::string::npos);
    EXPECT_EQ(result.out, runTool({"show", photo, "--header-offset=12"}).out);
}

TEST_F(ShowCommand, AJpegWithoutExifGetsOneClearSentence) {
    const std::string photo = folder.file("plain.jpg", "\xFF\xD8\xFF\xD9");
    const CommandResult result = runTool({"show", photo});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.err, "corvinex: " + photo + ": error: this JPEG file holds no EXIF block\n");
}

TEST_F(ShowCommand, OfEachKindOfWarningTheFirstTenArePrinted) {
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

}  // namespace
