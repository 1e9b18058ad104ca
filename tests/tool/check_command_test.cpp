#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/tool/command_files.h"
#include "tests/tool/run_command.h"
#include "tests/tool/terminal_session.h"

namespace {

using namespace tool_test;
using nlohmann::json;
using Texts = std::vector<std::string>;

/// One directory whose Make lies past the end of the file.
std::string pastEnd() {
    return TiffBytes()
        .header(8)
        .count(2)
        .entry(271, 2, 10, 1000)
        .entry(271, 2, 10, 1000)
        .offset(0)
        .bytes();
}

/// Nothing but notes is to be said of it.
std::string withoutText() {
    return TiffBytes().header(8).count(1).entry(50000, 2, 0, 0).offset(0).bytes();
}

/// Six entries of an unknown field type, of which three findings are shown, in a sound majority.
std::string unknownTypes() {
    TiffBytes tiff;
    tiff.header(8).count(13);
    for (unsigned tag = 60000; tag < 60006; ++tag) {
        tiff.entry(tag, 99, 1, 0);
    }
    for (unsigned tag = 60006; tag < 60013; ++tag) {
        tiff.shortEntry(tag, 1);
    }
    return tiff.offset(0).bytes();
}

/// A grey image of 8 by 4 pixels in two strips of 16 bytes, which stand at the end of the file.
/// Strips that are not told to be elsewhere begin at this position.
constexpr std::uint64_t firstStrip = 8 + 2 + 9 * 12 + 4 + 8;
std::string twoStrips(std::uint64_t first = firstStrip, std::uint64_t second = firstStrip + 16) {
    TiffBytes tiff;
    tiff.header(8).count(9).shortEntry(256, 8).shortEntry(257, 4).shortEntry(258, 8);
    tiff.shortEntry(259, 1).shortEntry(262, 1).entry(273, 4, 2, firstStrip - 8);
    tiff.shortEntry(277, 1).shortEntry(278, 2).entry(279, 3, 2, 16U | 16U << 16U).offset(0);
    return tiff.number(first, 4).number(second, 4).raw(std::string(32, 'x')).bytes();
}

constexpr std::string_view jpegWithoutExif{"\xFF\xD8\xFF\xDA\x00\x04\x01\x02\xFF\xD9", 10};

class Check : public testing::Test {
  protected:
    [[nodiscard]] CommandResult check(std::vector<std::string> words) const {
        words.insert(words.begin(), "check");
        return runTool(words);
    }

    /// The lines of the output, without the folder's name.
    [[nodiscard]] Texts linesFor(std::vector<std::string> words) const {
        words.push_back(folder.path(""));
        const CommandResult result = check(std::move(words));
        Texts lines;
        for (std::string line : linesOf(result.out)) {
            const std::size_t place = line.find(folder.path(""));
            lines.push_back(place == std::string::npos ? line
                                                       : line.erase(place, folder.path("").size()));
        }
        return lines;
    }

    const TemporaryFolder folder;
};

}  // namespace

TEST_F(Check, PrintsALineForEachFileThatIsNotOk) {
    static_cast<void>(folder.file("a.tif", pastEnd()));
    static_cast<void>(folder.file("b.tif", withoutText()));
    static_cast<void>(folder.file("c.tif", ""));
    static_cast<void>(folder.file("d.jpg", jpegWithoutExif));
    static_cast<void>(folder.file("e.tif", "no image"));
    static_cast<void>(folder.file("f.txt", "no image"));
    const Texts lines = linesFor({"--only", "valuePastEnd", "--only", "zeroCount"});
    EXPECT_EQ(lines, (Texts{"damaged       a.tif  2 errors: valuePastEnd 2 times (directory 0)",
                            "not-an-image  c.tif  the file is empty", "no-metadata   d.jpg",
                            "not-an-image  e.tif  8 bytes, neither TIFF nor JPEG"}));
}

TEST_F(Check, PrintsSoundFilesAndNotesWhenAllAreAskedFor) {
    static_cast<void>(folder.file("b.tif", withoutText()));
    EXPECT_EQ(linesFor({"--all", "--only", "zeroCount"}),
              (Texts{"ok            b.tif  1 note: zeroCount (directory 0)"}));
}

TEST_F(Check, PrintsTheTextOfEachFindingWhenFindingsAreAskedFor) {
    static_cast<void>(folder.file("a.tif", pastEnd()));
    EXPECT_EQ(linesFor({"--findings", "--only", "duplicateTag"}),
              (Texts{"warnings      a.tif  1 warning: duplicateTag (directory 0)",
                     "    warning  directory 0: Make (271) stands 2 times in directory 0. "
                     "[duplicateTag]"}));
}

TEST_F(Check, TellsWhereImageDataAreCutOff) {
    const std::string whole = twoStrips();
    static_cast<void>(folder.file("cut.tif", whole.substr(0, whole.size() - 6)));
    static_cast<void>(folder.file("whole.tif", whole));
    EXPECT_EQ(linesFor({"--findings", "--ignore", "resolutionUnknown"}),
              (Texts{"damaged       cut.tif  1 error: dataPastEnd (directory 0)",
                     "    error    directory 0: Image data block 1, 16 bytes at 146, ends past the "
                     "end of the file. [dataPastEnd]"}));
}

TEST_F(Check, TellsWhichStripsOverlap) {
    static_cast<void>(folder.file("a.tif", twoStrips(firstStrip, firstStrip + 12)));
    EXPECT_EQ(
        linesFor({"--findings", "--ignore", "resolutionUnknown"}),
        (Texts{"warnings      a.tif  1 warning: rangesOverlap (directory 0)",
               "    warning  directory 0: Bytes 142 to 158 of StripOffsets (273) overlap those "
               "of tag 273 in directory 0. [rangesOverlap]"}));
}

TEST_F(Check, TellsOfAStripTableOfZeros) {
    static_cast<void>(folder.file("a.tif", twoStrips(0, 0)));
    EXPECT_EQ(linesFor({"--findings", "--only", "dataOverStructure"}),
              (Texts{"damaged       a.tif  2 errors: dataOverStructure 2 times (directory 0)",
                     "    error    directory 0: Image data, bytes 0 to 16, lie over a directory or "
                     "the header. [dataOverStructure]",
                     "    error    directory 0: Image data, bytes 0 to 16, lie over a directory or "
                     "the header. [dataOverStructure]"}));
}

TEST_F(Check, CountsFindingsThatAreNotShown) {
    const std::string path = folder.file("a.tif", unknownTypes());
    const CommandResult result = check({"--only", "unknownFieldType", path});
    EXPECT_EQ(result.out, "damaged       " + path +
                              "  6 errors: unknownFieldType 6 times "
                              "(directory 0)\n");
    EXPECT_NE(result.err.find("unknownFieldType             1 file,  6 findings\n"),
              std::string::npos)
        << result.err;
}

TEST_F(Check, TakesTheStatusFromTheFindingsThatAreLeft) {
    const std::string path = folder.file("a.tif", pastEnd());
    const auto statusWith = [&](Texts options) {
        options.insert(options.end(), {"--jsonl", path});
        const CommandResult result = check(options);
        return json::parse(result.out)["status"].get<std::string>() + ' ' +
               std::to_string(result.exitStatus);
    };
    EXPECT_EQ(statusWith({"--only", "valuePastEnd"}), "damaged 1");
    EXPECT_EQ(statusWith({"--only", "duplicateTag"}), "warnings 0");
    EXPECT_EQ(statusWith({"--only", "duplicateTag", "--ignore", "duplicateTag"}), "ok 0");
    const std::string capped = folder.file("b.tif", unknownTypes());
    const CommandResult result =
        check({"--all", "--ignore", "unknownFieldType", "--only", "unknownFieldType", capped});
    EXPECT_EQ(result.out, "ok            " + capped + "\n") << "what counts hidden ones is hidden";
}

TEST_F(Check, PrintsARecordForEveryFile) {
    const std::string bad = folder.file("a\xFF.tif", pastEnd());
    const std::string good = folder.file("b.tif", withoutText());
    const Texts lines = linesOf(check({"--jsonl", "--only", "duplicateTag", bad, good}).out);
    ASSERT_EQ(lines.size(), 2U);
    const json record = json::parse(lines[0]);
    EXPECT_EQ(record["file"], folder.path("a\uFFFD.tif"));
    EXPECT_TRUE(record.contains("file_bytes"));
    EXPECT_EQ(record["findings"],
              json::array({{{"id", "duplicateTag"},
                            {"severity", "warning"},
                            {"directory", "0"},
                            {"tag", 271},
                            {"arguments", {2}},
                            {"text", "Make (271) stands 2 times in directory 0."}}}));
    EXPECT_EQ(json::parse(lines[1]),
              json({{"file", good}, {"status", "ok"}, {"findings", json::array()}}));
}

TEST_F(Check, PrintsATableWithARowForEachFinding) {
    const std::string bad = folder.file("a.tif", pastEnd());
    const std::string good = folder.file("b.tif", withoutText());
    EXPECT_EQ(check({"--csv", "--only", "valuePastEnd", bad, good}).out,
              "file,status,severity,id,directory,tag,arguments,text,reason\r\n" + bad +
                  ",damaged,error,valuePastEnd,0,271,\"[1000,10]\",\"The value of Make (271), 10 "
                  "bytes at 1000, ends past the end of the file.\",\r\n" +
                  bad +
                  ",damaged,error,valuePastEnd,0,271,\"[1000,10]\",\"The value of Make (271), 10 "
                  "bytes at 1000, ends past the end of the file.\",\r\n" +
                  good + ",ok,,,,,,,\r\n");
}

TEST_F(Check, EndsWithOneWhenAFileIsAsBadAsAsked) {
    const std::string sound = folder.file("sound.tif", withoutText());
    const std::string damaged = folder.file("damaged.tif", pastEnd());
    const std::string none = folder.file("none.tif", "");
    const std::string missing = folder.path("missing.tif");
    const auto statusOf = [&](const std::string& level, const std::string& path,
                              const std::string& rule) {
        return check({"--fail-on", level, "--only", rule, path}).exitStatus;
    };
    EXPECT_EQ(statusOf("warning", sound, "zeroCount"), 0);
    EXPECT_EQ(statusOf("warning", damaged, "duplicateTag"), 1);
    EXPECT_EQ(statusOf("damaged", damaged, "duplicateTag"), 0);
    EXPECT_EQ(statusOf("damaged", damaged, "valuePastEnd"), 1);
    EXPECT_EQ(statusOf("unreadable", damaged, "valuePastEnd"), 0);
    EXPECT_EQ(statusOf("damaged", none, "zeroCount"), 1);
    EXPECT_EQ(statusOf("unreadable", none, "zeroCount"), 0);
    EXPECT_EQ(statusOf("unreadable", missing, "zeroCount"), 1);
    EXPECT_EQ(check({damaged}).exitStatus, 1) << "damaged is what counts when nothing is said";
}

TEST_F(Check, TellsWhyAFileCannotBeReadInItsLine) {
    const std::string missing = folder.path("missing.tif");
    const CommandResult result = check({"-q", missing});
    EXPECT_EQ(result.out, "unreadable    " + missing + "  No such file or directory\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(Check, TellsWhyAFileCannotBeReadInRecordsAndTables) {
    const std::string missing = folder.path("missing.tif");
    EXPECT_EQ(json::parse(check({"--jsonl", missing}).out)["reason"], "No such file or directory");
    EXPECT_TRUE(check({"--csv", missing}).out.ends_with(",No such file or directory\r\n"));
}

TEST_F(Check, SaysOfAFolderThatItsFilesAreNotChecked) {
    std::filesystem::create_directories(folder.path("x/y"));
    if (geteuid() == 0) {
        GTEST_SKIP() << "a superuser reads each folder";
    }
    std::filesystem::permissions(folder.path("x"), std::filesystem::perms::none);
    const CommandResult result = check({"-q", folder.path("x")});
    std::filesystem::permissions(folder.path("x"), std::filesystem::perms::owner_all);
    EXPECT_EQ(result.out, "unreadable    " + folder.path("x") +
                              "  Permission denied; files in this folder are not checked\n");
}

TEST_F(Check, TellsItsTotalsAfterAnInterrupt) {
    const std::string path = folder.file("a.tif", withoutText());
    TerminalSession session({"check", "-j1", path, "-"});
    EXPECT_TRUE(session.waitFor("1 of 2 files, ")) << session.shown();
    session.interrupt(SIGINT);
    session.closeInput(withoutText());
    EXPECT_EQ(session.wait(), -SIGINT);
    EXPECT_NE(session.shown().find("interrupted; 2 files, "), std::string::npos) << session.shown();
}

TEST_F(Check, ShowsNamesSafelyOnALineOfTheirOwn) {
    static_cast<void>(folder.file("a\n\x1B\xFF.tif", ""));
    EXPECT_EQ(linesFor({}), (Texts{"not-an-image  a\\n\\u001b\uFFFD.tif  the file is empty"}));
}

TEST_F(Check, PrintsTotalsOnTheErrorOutputUnlessItIsQuiet) {
    static_cast<void>(folder.file("a.tif", pastEnd()));
    static_cast<void>(folder.file("b.tif", pastEnd()));
    static_cast<void>(folder.file("c.tif", ""));
    const std::string err = check({"--only", "valuePastEnd", folder.path("")}).err;
    const Texts lines = linesOf(err);
    ASSERT_EQ(lines.size(), 4U) << err;
    EXPECT_TRUE(lines[0].starts_with("3 files, 76 bytes in ")) << lines[0];
    EXPECT_TRUE(lines[0].ends_with(" a second")) << lines[0];
    EXPECT_EQ(lines[1], "  damaged                2");
    EXPECT_EQ(lines[2], "  not-an-image           1");
    EXPECT_EQ(lines[3], "  error   valuePastEnd                 2 files, 4 findings");
    EXPECT_EQ(check({"-q", folder.path("")}).err, "");
}

TEST_F(Check, CountsTheBytesOfAFileOnStandardInput) {
    const CommandResult result =
        runTool({"check", "-"}, Output::Captured, Input::pipe(withoutText()));
    EXPECT_TRUE(result.err.starts_with("1 file, 26 bytes in ")) << result.err;
}

TEST_F(Check, PrintsTheSameWithAnyNumberOfThreads) {
    for (int number = 0; number < 200; ++number) {
        static_cast<void>(folder.file(std::to_string(number) + ".tif",
                                      number % 3 == 0 ? pastEnd() : withoutText()));
    }
    const std::string one = check({"-j", "1", "--all", folder.path("")}).out;
    EXPECT_EQ(linesOf(one).size(), 200U);
    EXPECT_EQ(check({"-j", "7", "--all", folder.path("")}).out, one);
}

TEST_F(Check, PrintsTheTableOfItsRules) {
    const CommandResult result = check({"--rules"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_NE(result.out.find("valuePastEnd"), std::string::npos);
    EXPECT_EQ(runTool({"check", "--rules"}, Output::DevFull).exitStatus, 3);
}

TEST_F(Check, NamesWhatIsWrongOnTheCommandLine) {
    EXPECT_EQ(check({}).exitStatus, 2);
    EXPECT_EQ(check({"--jsonl", "--csv", "a.tif"}).exitStatus, 2);
    EXPECT_EQ(check({"--fail-on", "note", "a.tif"}).exitStatus, 2);
    const CommandResult result = check({"--only", "valuePastend", "a.tif"});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(linesOf(result.err).front(),
              "corvinex: there is no rule \"valuePastend\"; the nearest is \"valuePastEnd\"");
}

TEST_F(Check, EndsWithItsOwnStatusWhenTheOutputIsFull) {
    EXPECT_EQ(runTool({"check", folder.file("a.tif", pastEnd())}, Output::DevFull).exitStatus, 3);
}
