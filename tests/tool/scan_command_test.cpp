#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tests/tool/command_files.h"
#include "tests/tool/run_command.h"
#include "tests/tool/terminal_session.h"
#include "tool/catalogue/database.h"
#include "tool/catalogue/scan_lock.h"

namespace {

namespace fs = std::filesystem;
using namespace tool_test;
using Texts = std::vector<std::string>;

std::string tiffWith(std::uint64_t width) {
    return TiffBytes().header(8).count(1).shortEntry(256, width).offset(0).bytes();
}

/// A tree and its catalogue.
class Scan : public testing::Test {
  protected:
    void add(const std::string& name, const std::string& bytes) const {
        fs::create_directories(fs::path(tree + name).parent_path());
        std::ofstream(tree + name, std::ios::binary) << bytes;
        // Files that have just been changed are read again in any case.
        fs::last_write_time(tree + name, fs::file_time_type::clock::now() - std::chrono::hours(1));
    }

    [[nodiscard]] CommandResult scan(Texts words = {}) const {
        return scanOf(tree, std::move(words));
    }
    [[nodiscard]] CommandResult scanOf(const std::string& path, Texts words = {}) const {
        words.insert(words.begin(), {"scan", path, "-o", catalogue});
        return runTool(words);
    }

    /// The first line on the error output, without the time that it took.
    [[nodiscard]] static std::string countsOf(const CommandResult& result) {
        const std::string line = linesOf(result.err).empty() ? "" : linesOf(result.err).front();
        const std::size_t start = line.find(" in ");
        const std::size_t end = line.find(':');
        return start == std::string::npos || end == std::string::npos
                   ? line
                   : line.substr(0, start) + line.substr(end);
    }

    /// All rows, the columns parted by blanks.
    [[nodiscard]] Texts rows(const std::string& sql, int columns) const {
        tool::Database database(catalogue);
        tool::Statement statement(database, sql);
        Texts found;
        while (statement.next()) {
            std::string row;
            for (int column = 0; column < columns; ++column) {
                row.append(column == 0 ? "" : " ");
                row += statement.isNull(column) ? "null" : std::string(statement.text(column));
            }
            found.push_back(row);
        }
        return found;
    }
    /// Names without the tree's, with the container, or the status of what is no image.
    [[nodiscard]] Texts files() const {
        return rows("SELECT substr(path, " + std::to_string(tree.size() + 1) +
                        "), coalesce(container, status) FROM files ORDER BY path",
                    2);
    }

    const TemporaryFolder folder;
    const std::string tree = folder.path("tree/");
    const std::string catalogue = folder.path("c.sqlite");
};

}  // namespace

TEST_F(Scan, WritesARowForEachFile) {
    add("a.tif", tiffWith(5));
    add("sub/b", tiffWith(6));
    add("c.txt", "no image");
    add("emptied.tif", "");
    const CommandResult result = scan();
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(countsOf(result), "3 files found: 3 written, 0 unchanged");
    EXPECT_EQ(files(), (Texts{"a.tif TIFF", "emptied.tif not-an-image", "sub/b TIFF"}));
}

TEST_F(Scan, ReadsOnlyWhatHasChanged) {
    add("a.tif", tiffWith(5));
    add("b.tif", tiffWith(6));
    static_cast<void>(scan());
    EXPECT_EQ(countsOf(scan()), "2 files found: 0 written, 2 unchanged");
    add("b.tif", tiffWith(7));
    EXPECT_EQ(countsOf(scan()), "2 files found: 1 written, 1 unchanged");
    EXPECT_EQ(rows("SELECT integer FROM tags ORDER BY integer", 1), (Texts{"5", "7"}));
    EXPECT_EQ(countsOf(scan({"--force"})), "2 files found: 2 written, 0 unchanged");
}

TEST_F(Scan, KeepsTheNumberOfAFileThatIsReadAgain) {
    add("a.tif", tiffWith(5));
    add("b.tif", tiffWith(6));
    static_cast<void>(scan());
    const Texts before = rows("SELECT id, path FROM files", 2);
    static_cast<void>(scan({"--force"}));
    EXPECT_EQ(rows("SELECT id, path FROM files", 2), before);
}

TEST_F(Scan, ShowsAnImageThatIsNoneAnyMoreWhateverItsName) {
    add("scan", tiffWith(5));
    static_cast<void>(scan());
    add("scan", "overwritten");
    EXPECT_EQ(countsOf(scan()), "1 file found: 1 written, 0 unchanged");
    EXPECT_EQ(files(), Texts{"scan not-an-image"});
    EXPECT_EQ(rows("SELECT * FROM tags", 1), Texts{});
}

TEST_F(Scan, TakesOutFilesThatAreGoneWhenAsked) {
    add("a/x.tif", tiffWith(5));
    add("a/y.tif", tiffWith(6));
    add("ab/z.tif", tiffWith(7));
    static_cast<void>(scan());
    fs::remove_all(tree + "a/x.tif");
    fs::remove_all(tree + "ab/z.tif");
    static_cast<void>(scan());
    EXPECT_EQ(files().size(), 3U) << "nothing goes by itself";
    const CommandResult result = scanOf(tree + "a", {"--prune"});
    EXPECT_EQ(countsOf(result), "1 file found: 0 written, 1 unchanged, 1 gone");
    EXPECT_EQ(rows("SELECT substr(path, -5) FROM files ORDER BY path", 1),
              (Texts{"y.tif", "z.tif"}))
        << "what lies below other folders stays";
    EXPECT_EQ(rows("SELECT count(*) FROM tags", 1), Texts{"2"});
}

TEST_F(Scan, TakesOutAFileThatGoesWhileItIsScanned) {
    add("a.tif", tiffWith(5));
    const std::string names = folder.file("names", tree + "gone.tif");
    EXPECT_EQ(scan({"--prune", "--files0-from", names}).exitStatus, 1);
    EXPECT_EQ(files(), Texts{"a.tif TIFF"});
    EXPECT_EQ(rows("SELECT finished IS NOT NULL, removed FROM scans", 2), Texts{"1 1"});
}

TEST_F(Scan, TakesOutAPathThatIsGoneFromItsFolderWithAllBelow) {
    add("a/x.tif", tiffWith(5));
    add("b.tif", tiffWith(5));
    add("c.tif", tiffWith(5));
    static_cast<void>(scan());
    fs::rename(tree + "a", tree + "moved");
    fs::remove(tree + "b.tif");
    const CommandResult result = scanOf(tree + "a", {"--prune", tree + "b.tif"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(countsOf(result), "0 files found: 0 written, 0 unchanged, 2 gone");
    EXPECT_EQ(files(), Texts{"c.tif TIFF"});
}

TEST_F(Scan, TakesNothingOutBelowAFolderThatIsNotThere) {
    add("a/sub/x.tif", tiffWith(5));
    static_cast<void>(scan());
    fs::rename(tree + "a", tree + "b");
    EXPECT_EQ(scanOf(tree + "a/sub", {"--prune"}).exitStatus, 1);
    EXPECT_EQ(files(), (Texts{"a/sub unreadable", "a/sub/x.tif TIFF"}));
}

TEST_F(Scan, TellsOfAPathThatIsNotThereAndNeverWas) {
    add("a.tif", tiffWith(5));
    const CommandResult result = scan({tree + "missing", "--prune"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(linesOf(result.err).front(),
              "corvinex: " + tree + "missing: No such file or directory");
}

TEST_F(Scan, TakesOutNamesThatStandForSomethingElseNow) {
    for (const char* name : {"folder.tif", "pipe.tif", "link.tif", "stays.tif"}) {
        add(name, tiffWith(5));
    }
    static_cast<void>(scan());
    for (const char* name : {"folder.tif", "pipe.tif", "link.tif"}) {
        fs::remove(tree + name);
    }
    fs::create_directory(tree + "folder.tif");
    ASSERT_EQ(mkfifo((tree + "pipe.tif").c_str(), S_IRUSR), 0);
    fs::create_symlink("nothing", tree + "link.tif");
    static_cast<void>(scan({"--prune", "--ext", "none"}));
    EXPECT_EQ(files(), Texts{"stays.tif TIFF"});
}

TEST_F(Scan, TakesOutTheRowOfAFolderThatCanBeReadAgain) {
    add("a/x.tif", tiffWith(5));
    static_cast<void>(scan());
    tool::Database(catalogue).execute(
        "UPDATE files SET path = substr(path, 1, length(path) - 6), status = 'unreadable'");
    ASSERT_EQ(rows("SELECT path FROM files", 1), Texts{tree + "a"});
    static_cast<void>(scan({"--prune"}));
    EXPECT_EQ(files(), Texts{"a/x.tif TIFF"});
}

TEST_F(Scan, TakesNotAllFilesOfAFolderOutUnlessForced) {
    add("a/x.tif", tiffWith(5));
    add("b/y.tif", tiffWith(5));
    add("b/z.tif", tiffWith(5));
    static_cast<void>(scan());
    fs::remove(tree + "a/x.tif");
    fs::remove(tree + "b/y.tif");
    const CommandResult result = scanOf(tree + "a", {"--prune", tree + "b"});
    EXPECT_EQ(result.exitStatus, 3);
    EXPECT_EQ(linesOf(result.err).back(),
              "corvinex: " + tree +
                  "a: none of its files is there any more, so their rows stay; is a disk missing? "
                  "With --force they are taken out");
    EXPECT_EQ(files(), (Texts{"a/x.tif TIFF", "b/z.tif TIFF"}));
    EXPECT_EQ(scanOf(tree + "a", {"--prune", "--force"}).exitStatus, 0);
    EXPECT_EQ(files(), Texts{"b/z.tif TIFF"});
}

TEST_F(Scan, CutsLongValuesAndKeepsTheirCounts) {
    std::string text(100, 'x');
    text.back() = '\0';
    const std::string bytes =
        TiffBytes().header(8).count(1).entry(270, 2, text.size(), 26).offset(0).bytes() + text;
    add("a.tif", bytes);
    static_cast<void>(scan());
    const std::string sql = "SELECT count, truncated, json, text FROM tags";
    EXPECT_EQ(rows(sql, 4),
              Texts{"100 1 \"" + std::string(64, 'x') + "\" " + std::string(64, 'x')});
    static_cast<void>(scan({"--force", "--max-values", "99"}));
    EXPECT_EQ(rows(sql, 4),
              Texts{"100 0 \"" + std::string(99, 'x') + "\" " + std::string(99, 'x')});
}

TEST_F(Scan, KeepsNumbersThatAColumnCannotHoldAsTextOnly) {
    constexpr std::uint64_t largest = 0xFFFFFFFFFFFFFFFF;
    TiffBytes tiff(TiffBytes::Little, TiffBytes::BigTiff);
    tiff.header(16).count(3);
    tiff.entry(60000, 16, 1, largest).entry(60001, 12, 1, 0x7FF8000000000000);
    tiff.entry(60002, 16, largest, largest).offset(0);
    add("a.tif", tiff.bytes());
    static_cast<void>(scan());
    EXPECT_EQ(rows("SELECT json, integer, real, count, offset FROM tags ORDER BY number", 5),
              (Texts{"[18446744073709551615] null null 1 null", "[\"NaN\"] null null 1 null",
                     "null null null 18446744073709551615 18446744073709551615"}));
}

TEST_F(Scan, WritesAFileThatIsNamedTwiceOnce) {
    add("a.tif", tiffWith(5));
    const CommandResult result = scan({tree + "a.tif", tree + "./a.tif"});
    EXPECT_EQ(countsOf(result), "1 file found: 1 written, 0 unchanged");
    EXPECT_EQ(linesOf(result.err).at(1), "  warnings: 1");
    EXPECT_EQ(files().size(), 1U);
    EXPECT_EQ(countsOf(scan({tree, "--force"})), "1 file found: 1 written, 0 unchanged");
    EXPECT_EQ(countsOf(scan({tree})), "1 file found: 0 written, 1 unchanged");
    EXPECT_EQ(rows("SELECT found, written, unchanged FROM scans", 3),
              (Texts{"1 1 0", "1 1 0", "1 0 1"}));
}

TEST_F(Scan, TellsWhyAFileCouldNotBeReadAndReadsItNextTime) {
    add("a.tif", tiffWith(5));
    const std::string missing = folder.path("missing.tif");
    const CommandResult result = scanOf(missing);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(linesOf(result.err).front(), "corvinex: " + missing + ": No such file or directory");
    EXPECT_EQ(rows("SELECT status, reason, size FROM files", 3),
              Texts{"unreadable No such file or directory null"});
    static_cast<void>(folder.file("missing.tif", tiffWith(5)));
    EXPECT_EQ(scanOf(missing).exitStatus, 0);
    EXPECT_EQ(rows("SELECT container, reason FROM files", 2), Texts{"TIFF null"});
}

TEST_F(Scan, KeepsNamesAsTheSystemHasThem) {
    add("a\n\xFF.tif", tiffWith(5));
    static_cast<void>(scan());
    EXPECT_EQ(rows("SELECT path, file, file_bytes FROM files", 3),
              Texts{tree + "a\n\xFF.tif " + tree + "a\n\uFFFD.tif " + tree + "a\n\xFF.tif"});
    EXPECT_EQ(countsOf(scan()), "1 file found: 0 written, 1 unchanged");
}

TEST_F(Scan, TellsOfItselfInTheCatalogue) {
    add("a.tif", tiffWith(5));
    static_cast<void>(scan());
    static_cast<void>(scan({"--max-values", "7"}));
    EXPECT_EQ(
        rows("SELECT id, finished IS NOT NULL, max_values, found, written, unchanged, removed "
             "FROM scans",
             7),
        (Texts{"1 1 64 1 1 0 0", "2 1 7 1 0 1 0"}));
}

TEST_F(Scan, LeavesOneFileThatNeedsNoJournal) {
    add("a.tif", tiffWith(5));
    static_cast<void>(scan());
    static_cast<void>(scan());
    EXPECT_EQ(rows("PRAGMA journal_mode", 1), Texts{"delete"});
    EXPECT_FALSE(fs::exists(catalogue + "-wal"));
}

TEST_F(Scan, EndsWellWhileSomebodySearchesTheCatalogue) {
    add("a.tif", tiffWith(5));
    TerminalSession session({"scan", tree, "--files0-from", "-", "-o", catalogue});
    ASSERT_TRUE(session.waitFor("1 files, ")) << session.shown();
    tool::Database reader(catalogue);
    tool::Statement query(reader, "SELECT name FROM sqlite_master");
    ASSERT_TRUE(query.next());
    session.closeInput("");
    EXPECT_EQ(session.wait(), 0) << session.shown();
    query.reset();
    EXPECT_EQ(rows("SELECT finished IS NOT NULL FROM scans", 1), Texts{"1"});
}

TEST_F(Scan, SaysThatUnchangedFilesWereReadWithOtherOptions) {
    add("a.tif", tiffWith(5));
    static_cast<void>(scan());
    const std::string message =
        "corvinex: 1 unchanged file was read with another --max-values or --header-offset; "
        "--force reads again";
    EXPECT_EQ(linesOf(scan({"--max-values", "7"}).err).front(), message);
    EXPECT_EQ(linesOf(scan({"--header-offset", "0"}).err).front(), message);
    EXPECT_EQ(countsOf(scan()), "1 file found: 0 written, 1 unchanged");
    EXPECT_EQ(rows("SELECT max_values, header_offset FROM scans", 2),
              (Texts{"64 null", "7 null", "64 0", "64 null"}));
}

TEST_F(Scan, GoesOnWithACatalogueThatHasFewerColumns) {
    add("a.tif", tiffWith(5));
    static_cast<void>(scan());
    tool::Database(catalogue).execute("ALTER TABLE scans DROP COLUMN header_offset");
    EXPECT_EQ(countsOf(scan()), "1 file found: 0 written, 1 unchanged");
}

TEST_F(Scan, LeavesTheCatalogueItselfOut) {
    add("a.tif", tiffWith(5));
    fs::create_directory_symlink(tree, folder.path("link"));
    const std::string own = tree + "own.sqlite";
    const CommandResult result =
        runTool({"scan", tree, own, folder.path("link/own.sqlite"), "-o", own, "--force"});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(countsOf(result), "1 file found: 1 written, 0 unchanged");
}

TEST_F(Scan, TakesEachNameOfACatalogueForAFile) {
    const std::string path = folder.file("a.tif", tiffWith(5));
    const fs::path before = fs::current_path();
    fs::current_path(folder.path(""));
    EXPECT_EQ(runTool({"scan", path, "-o", ":memory:"}).exitStatus, 0);
    fs::current_path(before);
    EXPECT_TRUE(fs::exists(folder.path(":memory:")));
}

TEST_F(Scan, WaitsForAnotherScanOfTheSameCatalogue) {
    add("a.tif", tiffWith(5));
    std::optional<tool::ScanLock> other(catalogue);
    ASSERT_TRUE(other->take());
    TerminalSession session({"scan", tree, "-o", catalogue});
    EXPECT_TRUE(session.waitFor("corvinex: " + catalogue + ": waits for another scan"))
        << session.shown();
    other.reset();
    EXPECT_EQ(session.wait(), 0);
    EXPECT_EQ(files(), Texts{"a.tif TIFF"});
    EXPECT_FALSE(fs::exists(catalogue + "-lock"));
}

TEST_F(Scan, EndsAtAnInterruptWhileItWaits) {
    const std::string path = folder.file("b.tif", tiffWith(5));
    tool::ScanLock other(catalogue);
    ASSERT_TRUE(other.take());
    TerminalSession session({"scan", path, "-o", catalogue});
    EXPECT_TRUE(session.waitFor("waits for another scan")) << session.shown();
    session.interrupt(SIGINT);
    EXPECT_EQ(session.wait(), -SIGINT);
    EXPECT_FALSE(fs::exists(catalogue));
}

TEST_F(Scan, TakesTurnsWithOthers) {
    constexpr int fileCount = 300;
    for (int number = 0; number < fileCount; ++number) {
        add(std::to_string(number) + ".tif", tiffWith(5));
    }
    std::array<CommandResult, 4> results;
    {
        std::vector<std::jthread> threads;
        for (CommandResult& result : results) {
            threads.emplace_back([&] { result = scan({"--force"}); });
        }
    }
    for (const CommandResult& result : results) {
        EXPECT_EQ(result.exitStatus, 0) << result.err;
    }
    EXPECT_EQ(rows("SELECT count(*), count(DISTINCT scan_id) FROM files", 2), Texts{"300 1"});
}

TEST_F(Scan, SaysNothingWhenItIsQuiet) {
    add("a.tif", tiffWith(5));
    EXPECT_EQ(scan({"-q"}).err, "");
}

TEST_F(Scan, NamesWhatIsWrongOnTheCommandLine) {
    EXPECT_EQ(runTool({"scan", tree}).exitStatus, 2);
    EXPECT_EQ(runTool({"scan", "-o", catalogue}).exitStatus, 2);
    EXPECT_EQ(runTool({"scan", "-o", catalogue, "-"}).exitStatus, 2);
    EXPECT_EQ(scan({"--max-values", "few"}).exitStatus, 2);
    EXPECT_EQ(runTool({"scan", tree, "-o", "-"}).exitStatus, 2);
    EXPECT_EQ(runTool({"scan", "-o", folder.path("a.TIF"), tree}).exitStatus, 2);
    EXPECT_FALSE(fs::exists(folder.path("a.TIF")));
    EXPECT_EQ(scan({"--files0-from", folder.file("names", "-")}).exitStatus, 2);
}
