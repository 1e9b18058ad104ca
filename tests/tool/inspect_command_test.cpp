#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <string>
#include <string_view>
#include <vector>

#include "tests/tool/run_command.h"
#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"

namespace {

using tool_test::CommandResult;
using tool_test::Output;
using tool_test::runTool;
using tool_test::TemporaryFolder;
using tool_test::TiffBytes;

constexpr std::size_t entrySize = 12;

/// A directory of entries at byte 8 of a classic file, and the bytes behind it.
std::string fileOf(unsigned entries, const TiffBytes& rows, std::string_view behind = {}) {
    return TiffBytes().header(8).count(entries).raw(rows.bytes()).offset(0).raw(behind).bytes();
}

/// Where the bytes behind such a directory stand.
constexpr std::uint64_t behind(unsigned entries) {
    return 8 + 2 + entries * entrySize + 4;
}

class InspectCommand : public testing::Test {
  protected:
    /// The output for a file of these bytes, its name left out.
    std::string inspected(const std::string& bytes, std::vector<std::string> options = {}) {
        const std::string path = folder.file("a.tif", bytes);
        options.insert(options.begin(), {"inspect", path});
        if (std::ranges::none_of(
                options, [](const std::string& option) { return option.starts_with("--width"); })) {
            options.emplace_back("--width=300");  // so that a long name breaks no line
        }
        std::string out = runTool(options).out;
        for (std::size_t at = out.find(path); at != std::string::npos; at = out.find(path)) {
            out.replace(at, path.size(), "a.tif");
        }
        return out.substr(out.find("TIFF"));
    }

    const TemporaryFolder folder;
};

TiffBytes smallRows() {
    return TiffBytes().shortEntry(256, 640).shortEntry(257, 480).shortEntry(259, 5);
}

}  // namespace

TEST_F(InspectCommand, PrintsWhatAFileIsAndEachEntryAsItReads) {
    EXPECT_EQ(inspected(fileOf(3, smallRows())),
              "TIFF, little-endian, 50 bytes, 1 page, 640 x 480 px\n"
              "\n"
              "0: image 640 x 480, LZW, 3 entries\n"
              "    256  ImageWidth   640\n"
              "    257  ImageLength  480\n"
              "    259  Compression  LZW\n"
              "\n"
              "warning: 0: Directory 0 holds no image. [noImageData]\n"
              "note: 0: The resolution is not told (tags 282, 283). [resolutionUnknown]\n");
}

TEST_F(InspectCommand, PrintsTypesCountsOffsetsAndCodesWhenTheyAreAskedFor) {
    const auto rows = smallRows().entry(271, 2, 6, behind(5)).entry(60000, 99, 1, 7);
    EXPECT_EQ(inspected(fileOf(5, rows, std::string_view("Maker\0", 6)),
                        {"--raw", "--tag=0.259", "--tag=271", "--tag=60000"}),
              "TIFF, little-endian, 80 bytes, 1 page, 640 x 480 px, Maker, damaged\n"
              "\n"
              "0: image 640 x 480, LZW, 5 entries, at byte 8\n"
              "    259  Compression  SHORT           1         -  5  (LZW)\n"
              "    271  Make         ASCII           6        74  \"Maker\"\n"
              "  60000  (unknown)    type 99         1         -  (unknown type 99: 07 00 00 00)\n"
              "\n"
              "error: 0: Tag 60000 has the unknown field type 99. [unknownFieldType]\n"
              "(2 other findings left out; without --tag all are told)\n");
}

TEST_F(InspectCommand, CutsLongValuesWithTheirSizeUnlessAllIsAskedFor) {
    TiffBytes numbers;
    for (unsigned i = 0; i < 40; ++i) {
        numbers.number(1000 + i, 2);
    }
    const std::string bytes = fileOf(1, TiffBytes().entry(273, 3, 40, behind(1)), numbers.bytes());
    EXPECT_NE(inspected(bytes, {"--width=60"})
                  .find("  273  StripOffsets  1000, 1001, 1002 ... (40 values)\n"),
              std::string::npos)
        << inspected(bytes, {"--width=60"});
    const std::string whole = inspected(bytes, {"--width=60", "--all"});
    EXPECT_NE(whole.find("273  StripOffsets  1000, 1001, 1002, 1003, 1004, 1005,\n"
                         "                       1006, 1007,"),
              std::string::npos)
        << whole;
    EXPECT_NE(whole.find("1039\n"), std::string::npos);
}

TEST_F(InspectCommand, LeavesRoomForTheCommaBehindTheLastNumberOfALine) {
    TiffBytes numbers;
    for (unsigned i = 0; i < 8; ++i) {
        numbers.number(1000 + i, 2);
    }
    const std::string bytes = fileOf(1, TiffBytes().entry(273, 3, 8, behind(1)), numbers.bytes());
    // With its comma the sixth number takes 58 columns.
    const std::string whole = inspected(bytes, {"--width=57", "--all"});
    EXPECT_NE(whole.find("  273  StripOffsets  1000, 1001, 1002, 1003, 1004,\n"
                         "                       1005, 1006, 1007\n"),
              std::string::npos)
        << whole;
}

TEST_F(InspectCommand, PrintsTheSizeOfACutValueBelowItsStartWhereThereIsNoRoomBeside) {
    TiffBytes numbers;
    for (unsigned i = 0; i < 20; ++i) {
        numbers.number(4'000'000'000 + i, 4);
    }
    const std::string rationals =
        fileOf(1, TiffBytes().entry(65001, 5, 10, behind(1)), numbers.bytes());
    // "4000000000/4000000001 ... (10 values)" takes 37 columns.
    EXPECT_NE(inspected(rationals, {"--width=58"})
                  .find("  65001  SerialNumber  4000000000/4000000001\n"
                        "                       ... (10 values)\n"),
              std::string::npos)
        << inspected(rationals, {"--width=58"});
    EXPECT_NE(inspected(rationals, {"--width=60"}).find("4000000001 ... (10 values)\n"),
              std::string::npos);

    const std::string text(20'000, 'x');
    const std::string texts = fileOf(1, TiffBytes().entry(65001, 2, text.size(), behind(1)), text);
    const std::string row(26, 'x');
    const std::string below = '\n' + std::string(23, ' ');
    EXPECT_NE(inspected(texts, {"--width=49"})
                  .find("SerialNumber  " + row + below + row + below + row + below +
                        "... (20,000 bytes of text)\n"),
              std::string::npos)
        << inspected(texts, {"--width=49"});
}

TEST_F(InspectCommand, CutsALongTextToThreeLines) {
    const std::string text = "begin" + std::string(4000, 'x') + "end";
    const std::string bytes =
        fileOf(1, TiffBytes().entry(270, 2, text.size() + 1, behind(1)), text + '\0');
    const std::string cut = inspected(bytes);
    EXPECT_NE(cut.find("begin"), std::string::npos);
    EXPECT_EQ(cut.find("end\n"), std::string::npos);
    EXPECT_NE(cut.find("x ... (4,009 bytes of text)\n"), std::string::npos) << cut;
    EXPECT_NE(inspected(bytes, {"--all"}).find("xend\n"), std::string::npos);
}

TEST_F(InspectCommand, HandsNoControlCharacterOfAFileToATerminal) {
    const std::string_view text("a\x1b[2J\x07\xC2\x9B\r\nb\0", 12);
    const std::string bytes = fileOf(1, TiffBytes().entry(270, 2, text.size(), behind(1)), text);
    for (const std::vector<std::string>& options :
         std::vector<std::vector<std::string>>{{}, {"--all"}, {"--raw"}, {"--all", "--raw"}}) {
        const std::string out = inspected(bytes, options);
        EXPECT_EQ(out.find_first_of("\x1b\x07\r"), std::string::npos) << out;
        EXPECT_EQ(out.find("\xC2\x9B"), std::string::npos) << out;
        EXPECT_NE(out.find("a\\u001b[2J\\u0007"), std::string::npos) << out;
    }
}

TEST_F(InspectCommand, ShowsControlCharactersOfAVersionOnOneLine) {
    const TiffBytes rows = TiffBytes().entry(34665, 4, 1, behind(1));
    const std::string exif = TiffBytes().count(1).entry(40960, 7, 4, 0x300A0D30).offset(0).bytes();
    EXPECT_NE(inspected(fileOf(1, rows, exif)).find("FlashpixVersion  0\\r\\n0\n"),
              std::string::npos)
        << inspected(fileOf(1, rows, exif));
}

TEST_F(InspectCommand, TellsTheProgramOfAMicroscopeInTheHeadLine) {
    const std::string summary = R"({"Summary":{"Channels":2,"Slices":5}})";
    const std::string image = R"({"Channel":"DAPI","Slice":3})";
    const auto head = [&](const TiffBytes& rows, std::string_view text) {
        const std::string out = inspected(fileOf(1, rows, text));
        return out.substr(0, out.find('\n'));
    };
    EXPECT_TRUE(head(TiffBytes().entry(270, 2, summary.size(), behind(1)), summary)
                    .ends_with(", 1 page, Micro-Manager, 2 channels, 5 slices"));
    EXPECT_TRUE(head(TiffBytes().entry(51123, 2, image.size(), behind(1)), image)
                    .ends_with(", 1 page, Micro-Manager, channel DAPI, slice 3"));
    EXPECT_TRUE(
        head(TiffBytes().entry(51123, 2, 4, 0x7878787B), "").ends_with(", 1 page, Micro-Manager"));
}

TEST_F(InspectCommand, TellsTheCitationOfACoordinateSystemWithoutACode) {
    // The heading of the keys, the code 32767 of an own projected system, and two citations.
    const auto keys = [](std::uint64_t system) {
        TiffBytes bytes;
        for (const std::uint64_t number : {1, 1, 0, 3, 1026, 34737, 6, 0}) {
            bytes.number(number, 2);
        }
        bytes.number(3072, 2).number(0, 2).number(1, 2).number(system, 2);
        for (const std::uint64_t number : {3073, 34737, 9, 6}) {
            bytes.number(number, 2);
        }
        return bytes.bytes() + "Whole|Own grid|";
    };
    constexpr std::uint64_t keyBytes = 32;
    const TiffBytes rows = TiffBytes()
                               .entry(34735, 3, keyBytes / 2, behind(2))
                               .entry(34737, 2, 15, behind(2) + keyBytes);
    const std::string own = inspected(fileOf(2, rows, keys(32767)));
    EXPECT_NE(own.find("GeoTIFF, Own grid\n"), std::string::npos) << own;
    const std::string registered = inspected(fileOf(2, rows, keys(32633)));
    EXPECT_NE(registered.find("GeoTIFF, EPSG:32633\n"), std::string::npos) << registered;
}

TEST_F(InspectCommand, TellsWhereAPictureWithoutExifWasTaken) {
    const TiffBytes gps = TiffBytes()
                              .count(4)
                              .entry(1, 2, 2, 'S')
                              .entry(2, 5, 3, behind(1) + 54)
                              .entry(3, 2, 2, 'E')
                              .entry(4, 5, 3, behind(1) + 54)
                              .offset(0);
    TiffBytes degrees;
    degrees.number(33, 4).number(1, 4).number(30, 4).number(1, 4).number(0, 4).number(1, 4);
    const std::string bytes =
        fileOf(1, TiffBytes().entry(34853, 4, 1, behind(1)), gps.bytes() + degrees.bytes());
    const std::string out = inspected(bytes);
    EXPECT_EQ(out.substr(0, out.find('\n')),
              "TIFF, little-endian, 104 bytes, 1 page, 33.5 S 33.5 E");
}

TEST_F(InspectCommand, TellsWhatKindOfNumbersThePixelsAre) {
    const auto heading = [&](std::uint64_t format) {
        const std::string out =
            inspected(fileOf(5, smallRows().shortEntry(258, 16).shortEntry(339, format)));
        const std::size_t start = out.find("0: ");
        return out.substr(start, out.find('\n', start) - start);
    };
    EXPECT_EQ(heading(1), "0: image 640 x 480, 16 bits, LZW, 5 entries");
    EXPECT_EQ(heading(2), "0: image 640 x 480, 16-bit signed, LZW, 5 entries");
    EXPECT_EQ(heading(3), "0: image 640 x 480, 16-bit float, LZW, 5 entries");
    EXPECT_EQ(heading(6), "0: image 640 x 480, 16-bit complex float, LZW, 5 entries");
    EXPECT_EQ(heading(9), "0: image 640 x 480, 16 bits, LZW, 5 entries");
}

TEST_F(InspectCommand, PrintsNumbersWithAllTheirDigitsWhereTheyCanBeRead) {
    TiffBytes numbers;
    for (const double number : {500000.0, 0.0001, 1e300}) {
        numbers.number(std::bit_cast<std::uint64_t>(number), 8);
    }
    const std::string out =
        inspected(fileOf(1, TiffBytes().entry(33550, 12, 3, behind(1)), numbers.bytes()));
    EXPECT_NE(out.find("ModelPixelScale  500000, 0.0001, 1e+300\n"), std::string::npos) << out;
}

TEST_F(InspectCommand, SaysWhyAnEntryHasNoValue) {
    const auto rows = TiffBytes().entry(270, 2, 0, 0).entry(271, 2, 100, 5000).entry(305, 2, 1, 0);
    const std::string out = inspected(fileOf(3, rows));
    EXPECT_NE(out.find("ImageDescription  (no value)\n"), std::string::npos) << out;
    EXPECT_NE(out.find("Make              (not in the file: 100 bytes at 5000)\n"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("Software          (blank)\n"), std::string::npos) << out;
}

TEST_F(InspectCommand, LeavesOutWhatCannotBeReadOfADirectoryOfRubbishUnlessAllIsAskedFor) {
    const auto rows =
        smallRows().entry(7, 700, 1, 0).entry(8, 800, 1, 0).entry(9, 900, 1, 0).entry(10, 0, 1, 0);
    const std::string file = fileOf(7, rows);
    const std::string shown = inspected(file);
    EXPECT_NE(shown.find("    259  Compression  LZW\n"
                         "  (4 entries without a readable value left out; --all shows them)\n"),
              std::string::npos)
        << shown;
    EXPECT_EQ(shown.find("unknown type 700"), std::string::npos) << shown;
    const std::string whole = inspected(file, {"--all"});
    EXPECT_NE(whole.find("(unknown type 700: 00 00 00 00)"), std::string::npos) << whole;
    EXPECT_EQ(whole.find("left out"), std::string::npos) << whole;
}

TEST_F(InspectCommand, PrintsFindingsLastAndTheWorstFirst) {
    const auto rows = TiffBytes().entry(271, 2, 0, 0).entry(272, 99, 1, 0);
    const std::string out = inspected(fileOf(2, rows));
    const std::size_t error = out.find("\nerror: 0: ");
    const std::size_t warning = out.find("\nwarning: 0: ");
    const std::size_t note = out.find("\nnote: 0: ");
    EXPECT_LT(out.find("Model"), error) << out;
    EXPECT_LT(error, warning) << out;
    EXPECT_LT(warning, note) << out;
    EXPECT_LT(note, out.find("[zeroCount]")) << out;
    EXPECT_TRUE(out.ends_with("[resolutionUnknown]\n")) << out;
}

TEST_F(InspectCommand, PrintsTheFindingsOnTheTagsAskedForAndCountsTheOthers) {
    const TiffBytes rows = TiffBytes().shortEntry(256, 640).entry(60000, 99, 1, 7);
    const std::string out = inspected(fileOf(2, rows), {"--tag", "60000"});
    EXPECT_TRUE(
        out.ends_with("\n\nerror: 0: Tag 60000 has the unknown field type 99. "
                      "[unknownFieldType]\n"
                      "(2 other findings left out; without --tag all are told)\n"))
        << out;
    EXPECT_EQ(inspected(fileOf(3, smallRows()), {"--tag", "256"}),
              "TIFF, little-endian, 50 bytes, 1 page, 640 x 480 px\n"
              "\n"
              "0: image 640 x 480, LZW, 3 entries\n"
              "    256  ImageWidth  640\n"
              "\n"
              "(2 other findings left out; without --tag all are told)\n");
}

TEST_F(InspectCommand, CountsTheFindingsThatTheListIsTooShortFor) {
    TiffBytes rows;
    for (unsigned number = 0; number < 9; ++number) {
        rows.entry(60000 + number, 99, 1, 0);
    }
    const std::string bytes = fileOf(9, rows);
    EXPECT_TRUE(inspected(bytes, {"--summary"}).ends_with("\n9 errors\n"));
    EXPECT_TRUE(inspected(bytes, {"--tag", "60000"})
                    .ends_with("[unknownFieldType]\n"
                               "(8 other findings left out; without --tag all are told)\n"));
}

TEST_F(InspectCommand, FoldsPagesThatAreAlikeIntoOneLine) {
    TiffBytes file;
    file.header(8);
    for (unsigned page = 0; page < 5; ++page) {
        const std::uint64_t next = page == 4 ? 0 : file.size() + 2 + 3 * entrySize + 4;
        // The last page has another size, and page 2 another page number.
        file.count(3).shortEntry(256, page == 4 ? 99 : 64).shortEntry(257, 48);
        file.shortEntry(297, page == 2 ? 7 : 1).offset(next);
    }
    EXPECT_EQ(inspected(file.bytes(), {"--summary"}),
              "TIFF, little-endian, 218 bytes, 5 pages, 64 x 48 px\n"
              "0: image 64 x 48, 3 entries\n"
              "1-3: as 0, but PageNumber\n"
              "4: image 99 x 48, 3 entries\n"
              "10 warnings, 1 note\n");
}

TEST_F(InspectCommand, PrintsWhatAPointerLeadsToBeforeTheNextPage) {
    constexpr std::uint64_t second = 8 + 2 + entrySize + 4;
    constexpr std::uint64_t exif = second + 2 + entrySize + 4;
    const std::string bytes = TiffBytes()
                                  .header(8)
                                  .count(1)
                                  .entry(34665, 4, 1, exif)
                                  .offset(second)
                                  .count(1)
                                  .shortEntry(256, 1)
                                  .offset(0)
                                  .count(1)
                                  .shortEntry(34855, 100)
                                  .offset(0)
                                  .bytes();
    const std::string out = inspected(bytes);
    EXPECT_NE(out.find("ExifIFDPointer           -> 0.exif\n"), std::string::npos) << out;
    EXPECT_LT(out.find("\n0.exif: EXIF, 1 entry\n"), out.find("\n1: image")) << out;
}

TEST_F(InspectCommand, BreaksALongHeadLineBetweenFactsAndUsesTheRoomBelowTheName) {
    const std::string path = folder.file("a.tif", fileOf(3, smallRows()));
    const std::string facts = "TIFF, little-endian, 50 bytes, 1 page, 640 x 480 px";
    // Room for the name and the first fact; the other facts fit into the line below it.
    const std::size_t width = std::max<std::size_t>(2 * (path.size() + 2), 50);
    const std::string out = runTool({"inspect", path, "--width=" + std::to_string(width)}).out;
    const std::string head = out.substr(0, out.find("\n\n"));
    const std::size_t lineBreak = head.find(",\n    ");
    if (path.size() + 2 + facts.size() <= width) {
        GTEST_SKIP() << "the folder's name is too long for lines that break";
    }
    ASSERT_NE(lineBreak, std::string::npos) << head;
    EXPECT_EQ(head.find('\n', lineBreak + 2), std::string::npos) << head;
}

TEST_F(InspectCommand, PrintsInColourOnlyWhenAsked) {
    const std::string bytes = fileOf(3, smallRows());
    EXPECT_EQ(inspected(bytes).find('\x1b'), std::string::npos);
    EXPECT_EQ(inspected(bytes, {"--color=never"}), inspected(bytes));
    EXPECT_NE(inspected(bytes, {"--color", "always"}).find("\n\x1b[1m0\x1b[0m: image"),
              std::string::npos);
}

TEST_F(InspectCommand, IsWhatAFileNameAloneAsksFor) {
    const std::string path = folder.file("a.tif", fileOf(3, smallRows()));
    EXPECT_EQ(runTool({path}).out, runTool({"inspect", path}).out);
    EXPECT_EQ(runTool({path, "--raw"}).out, runTool({"inspect", "--raw", path}).out);
    EXPECT_EQ(runTool({"--raw", path}).out, runTool({"inspect", "--raw", path}).out);
    EXPECT_EQ(runTool({"--tag", "256", path}).out, runTool({"inspect", "--tag=256", path}).out);
    EXPECT_EQ(runTool({"--width=80", path}).out, runTool({"inspect", "--width=80", path}).out);
    EXPECT_EQ(runTool({"-j1", path}).out, runTool({"inspect", path}).out);
    EXPECT_EQ(runTool({"--flat", path}).exitStatus, 2);
    const CommandResult missing = runTool({"missing.tif"});
    EXPECT_EQ(missing.exitStatus, 1);
    EXPECT_EQ(missing.err, "corvinex: missing.tif: No such file or directory\n");
}

TEST_F(InspectCommand, FailsForWhatIsNoImageAndForWhatCannotBeRead) {
    const std::string good = folder.file("good.tif", fileOf(3, smallRows()));
    const std::string bad = folder.file("bad.tif", "no image");
    EXPECT_EQ(runTool({"inspect", good}).exitStatus, 0);
    const CommandResult result = runTool({"inspect", good, bad, "missing.tif", "-j1"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_NE(result.out.find(bad + ": no image, neither TIFF nor JPEG, 8 bytes\n\n"),
              std::string::npos)
        << result.out;
    EXPECT_NE(result.out.find("missing.tif: could not be read\n\n"), std::string::npos);
    const std::string empty = folder.file("empty.tif", "");
    EXPECT_EQ(runTool({"inspect", empty}).out, empty + ": no image, the file is empty\n");
    EXPECT_EQ(runTool({"inspect"}).exitStatus, 2);
    EXPECT_EQ(runTool({"inspect", good}, Output::DevFull).exitStatus, 3);
}
