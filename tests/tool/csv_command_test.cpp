#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

#include "tests/tool/codes_in_bytes.h"
#include "tests/tool/run_command.h"
#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"

namespace {

using tool_test::codesInBytes;
using tool_test::Input;
using tool_test::Output;
using tool_test::runTool;
using tool_test::TemporaryFolder;
using tool_test::TiffBytes;

/// Two pages; the first has an exif directory, and a sub-image as wide as no other.
std::string twoPages() {
    constexpr unsigned entrySize = 12;
    constexpr unsigned around = 2 + 4;
    constexpr unsigned page1 = 8;
    constexpr unsigned page2 = page1 + around + 4 * entrySize;
    constexpr unsigned exif = page2 + around + 2 * entrySize;
    constexpr unsigned sub = exif + around + 2 * entrySize;
    constexpr unsigned exposure = sub + around + 2 * entrySize;
    TiffBytes bytes;
    bytes.header(page1);
    bytes.count(4).shortEntry(256, 640).shortEntry(259, 5);
    bytes.entry(330, 4, 1, sub).entry(34665, 4, 1, exif).offset(page2);
    bytes.count(2).shortEntry(256, 64).shortEntry(259, 50123).offset(0);
    bytes.count(2).entry(33434, 5, 1, exposure).entry(33437, 5, 1, exposure + 8).offset(0);
    bytes.count(2).shortEntry(256, 32).shortEntry(257, 31).offset(0);
    bytes.number(1, 4).number(80, 4).number(1, 4).number(0, 4);
    return bytes.bytes();
}

std::string withDescription(std::string_view text) {
    return TiffBytes()
        .header(8)
        .count(1)
        .entry(270, 2, text.size(), 26)
        .offset(0)
        .raw(text)
        .bytes();
}

}  // namespace

TEST(CsvCommand, PrintsARowForEachMainDirectory) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", twoPages());
    const auto result = runTool({"csv", "--tag", "ImageWidth", "--tag", "compression", "--tag",
                                 "ExposureTime", "--tag", "257", file});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, "file,directory,ImageWidth,compression,ExposureTime,257\r\n" + file +
                              ",0,640,LZW,0.0125,\r\n" + file + ",1,64,50123,,\r\n");
}

TEST(CsvCommand, TakesWhatStandsInASubImageByItsPathOnly) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", twoPages());
    EXPECT_EQ(
        runTool({"csv", "--tag", "ImageLength", "--tag", "0.sub0.Width", file}).out,
        "file,directory,ImageLength,0.sub0.Width\r\n" + file + ",0,,32\r\n" + file + ",1,,\r\n");
}

TEST(CsvCommand, PrintsARowForEachFileWithFactsWhenAsked) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", twoPages());
    EXPECT_EQ(runTool({"csv", "--files", "--tag", "File.Pages", "--tag", "257", "--tag",
                       "compression", "--numeric", file})
                  .out,
              "file,File.Pages,257,compression\r\n" + file + ",2,31,5\r\n");
}

TEST(CsvCommand, TellsFactsOfTheFileItself) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", twoPages());
    std::filesystem::last_write_time(
        file, std::chrono::file_clock::from_sys(std::chrono::sys_seconds(std::chrono::hours(1))));
    EXPECT_EQ(runTool({"csv", "--files", "--tag", "file.size", "--tag", "file.modified", "--tag",
                       "file.container", "--tag", "file.byte_order", "--tag", "file.bounds",
                       "--tag", "file.geotransform", file})
                  .out,
              "file,file.size,file.modified,file.container,file.byte_order,file.bounds,"
              "file.geotransform\r\n" +
                  file + "," + std::to_string(twoPages().size()) +
                  ",1970-01-01T01:00:00Z,TIFF,little-endian,,\r\n");
}

TEST(CsvCommand, TakesNothingOfTheThumbnailForTheRowOfAPhoto) {
    constexpr unsigned second = 8 + 2 + 12 + 4;
    const std::string exif = TiffBytes()
                                 .header(8)
                                 .count(1)
                                 .shortEntry(274, 6)
                                 .offset(second)
                                 .count(1)
                                 .shortEntry(259, 6)
                                 .offset(0)
                                 .bytes();
    const TemporaryFolder folder;
    const std::string file = folder.file("a.jpg", tool_test::jpegAround(exif));
    EXPECT_EQ(runTool({"csv", "--files", "--numeric", "--tag", "Orientation", "--tag",
                       "Compression", "--tag", "1.Compression", file})
                  .out,
              "file,Orientation,Compression,1.Compression\r\n" + file + ",6,,6\r\n");
}

TEST(CsvCommand, PrintsTheSizeOfAPhotoByDefault) {
    EXPECT_TRUE(runTool({"csv", "missing.jpg"})
                    .out.starts_with("file,directory,file.status,file.width,file.height,"));
}

TEST(CsvCommand, PrintsCodesInBytesAsNumbersWhenAsked) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", codesInBytes());
    const std::vector<std::string> words{
        "csv",   "--tag", "ComponentsConfiguration", "--tag", "37384", "--tag", "41729", "--tag",
        "33422", file};
    std::vector<std::string> numeric = words;
    numeric.emplace_back("--numeric");
    const std::string heading = "file,directory,ComponentsConfiguration,37384,41729,33422\r\n";
    EXPECT_EQ(runTool(words).out, heading + file +
                                      ",0,Y; Cb; Cr; -,Flash,Directly photographed,"
                                      "Red; Green; Green; Blue\r\n");
    EXPECT_EQ(runTool(numeric).out, heading + file + ",0,1 2 3 0,4,1,0 1 1 2\r\n");
}

TEST(CsvCommand, LeavesTheCellOfADivisionByZeroEmpty) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", twoPages());
    EXPECT_EQ(runTool({"csv", "--files", "--tag", "FNumber", file}).out,
              "file,FNumber\r\n" + file + ",\r\n");
}

TEST(CsvCommand, HasColumnsWithoutAnyTagAndARowForWhatIsNoImage) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", twoPages());
    const std::string text = folder.file("b.tif", "no image");
    const std::string missing = folder.path("c.tif");
    for (const bool isOfFiles : {false, true}) {
        std::vector<std::string> words{"csv", file, text, missing};
        if (isOfFiles) {
            words.emplace_back("--files");
        }
        const auto result = runTool(words);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.err, "corvinex: " + missing + ": No such file or directory\n");
        const std::string path = isOfFiles ? "," : ",,";
        EXPECT_NE(result.out.find(text + path + "not-an-image,"), std::string::npos);
        EXPECT_NE(result.out.find(missing + path + "unreadable,"), std::string::npos);
        EXPECT_NE(result.out.find("640,"), std::string::npos);
        // All rows have the same number of cells.
        const std::size_t rows = isOfFiles ? 4 : 5;
        const auto commas = std::ranges::count(result.out, ',');
        const auto inHeading = std::ranges::count(result.out.substr(0, result.out.find('\r')), ',');
        EXPECT_EQ(static_cast<std::size_t>(commas), rows * static_cast<std::size_t>(inHeading));
    }
}

TEST(CsvCommand, QuotesWhatWouldEndACellAndReplacesControlCharacters) {
    const TemporaryFolder folder;
    const std::string file = folder.file(
        "a.tif", withDescription(std::string_view("a \"b\",\nc\x1B[2J\xC2\x9B-\xC3\xA4", 18)));
    EXPECT_EQ(runTool({"csv", "--tag", "270", file}).out,
              "file,directory,270\r\n" + file +
                  ",0,\"a \"\"b\"\",\nc\xEF\xBF\xBD[2J\xEF\xBF\xBD-\xC3\xA4\"\r\n");
}

TEST(CsvCommand, CutsValuesToTheElementsOrCharactersAskedFor) {
    const TemporaryFolder folder;
    const std::string text = folder.file("a.tif", withDescription("\xC3\xA4"
                                                                  "bcdef"));
    EXPECT_EQ(runTool({"csv", "--max-values=2", "--tag", "270", text}).out,
              "file,directory,270\r\n" + text +
                  ",0,\xC3\xA4"
                  "b\r\n");
    const std::string numbers = folder.file("b.tif", TiffBytes()
                                                         .header(8)
                                                         .count(1)
                                                         .entry(258, 3, 3, 26)
                                                         .offset(0)
                                                         .number(8, 2)
                                                         .number(9, 2)
                                                         .number(10, 2)
                                                         .bytes());
    EXPECT_EQ(runTool({"csv", "--max-values=2", "--tag", "258", numbers}).out,
              "file,directory,258\r\n" + numbers + ",0,8 9\r\n");
    EXPECT_EQ(runTool({"csv", "--tag", "258", numbers}).out,
              "file,directory,258\r\n" + numbers + ",0,8 9 10\r\n");
}

TEST(CsvCommand, TellsWhatRawBytesAre) {
    const TemporaryFolder folder;
    const std::string file = folder.file(
        "a.tif",
        TiffBytes().header(8).count(1).entry(34675, 7, 5, 26).offset(0).raw("12345").bytes());
    const std::string out = runTool({"csv", "--tag", "ICCProfile", file}).out;
    EXPECT_NE(out.find("5 bytes"), std::string::npos) << out;
}

TEST(CsvCommand, TellsHowManyBytesThereAreWhereNothingIsKnownOfThem) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", TiffBytes()
                                                      .header(8)
                                                      .count(4)
                                                      .entry(60001, 7, 6, 62)
                                                      .entry(60002, 7, 1, 0)
                                                      .entry(60003, 7, 0, 0)
                                                      .entry(60004, 99, 1, 0)
                                                      .offset(0)
                                                      .number(0xFF0102030405, 6)
                                                      .bytes());
    EXPECT_EQ(runTool({"csv", "--tag", "60001", "--tag", "60002", "--tag", "60003", "--tag",
                       "60004", file})
                  .out,
              "file,directory,60001,60002,60003,60004\r\n" + file + ",0,6 bytes,1 byte,,\r\n");
}

TEST(CsvCommand, TellsInfinitiesFromWhatIsNoNumber) {
    const TemporaryFolder folder;
    constexpr std::uint64_t infinity = 0x7F800000;
    constexpr std::uint64_t sign = 0x80000000;
    const std::string file = folder.file("a.tif", TiffBytes()
                                                      .header(8)
                                                      .count(3)
                                                      .entry(65001, 11, 3, 50)
                                                      .entry(65002, 11, 1, infinity)
                                                      .entry(65003, 11, 1, infinity + 1)
                                                      .offset(0)
                                                      .number(infinity, 4)
                                                      .number(infinity + sign, 4)
                                                      .number(infinity + 1, 4)
                                                      .bytes());
    EXPECT_EQ(runTool({"csv", "--tag", "65001", "--tag", "65002", "--tag", "65003", file}).out,
              "file,directory,65001,65002,65003\r\n" + file + ",0,inf -inf nan,inf,\r\n");
}

TEST(CsvCommand, GivesSingleFloatsTheFewestDigitsThatTellThem) {
    const TemporaryFolder folder;
    const auto cellOf = [&](float value) {
        const std::string file =
            folder.file("a.tif", TiffBytes()
                                     .header(8)
                                     .count(1)
                                     .entry(65001, 11, 1, std::bit_cast<std::uint32_t>(value))
                                     .offset(0)
                                     .bytes());
        const std::string row = runTool({"csv", "--tag", "65001", file}).out;
        return row.substr(row.rfind(',') + 1, row.size() - row.rfind(',') - 3);
    };
    EXPECT_EQ(cellOf(0.1F), "0.1");
    EXPECT_EQ(cellOf(16777216), "16777216");
    EXPECT_EQ(cellOf(3.4e10F), "34000000000");
    EXPECT_EQ(cellOf(-1e11F), "-100000000000");
    EXPECT_EQ(cellOf(0.00001F), "0.00001");
    EXPECT_EQ(cellOf(1e20F), "1e+20");
    EXPECT_EQ(cellOf(1e-6F), "1e-06");
}

TEST(CsvCommand, PrintsTheSameRowsWithAnyNumberOfThreads) {
    const TemporaryFolder folder;
    for (int number = 0; number < 100; ++number) {
        static_cast<void>(folder.file(std::to_string(number) + ".tif", twoPages()));
    }
    const std::string path = std::filesystem::path(folder.path("x")).parent_path();
    const std::string one = runTool({"csv", "-j", "1", path}).out;
    EXPECT_EQ(std::ranges::count(one, '\n'), 201);
    EXPECT_EQ(runTool({"csv", "-j", "8", path}).out, one);
}

TEST(CsvCommand, ReadsTheStandardInput) {
    EXPECT_EQ(runTool({"csv", "--tag", "256", "-"}, Output::Captured, Input::pipe(twoPages())).out,
              "file,directory,256\r\n-,0,640\r\n-,1,64\r\n");
}

TEST(CsvCommand, RefusesATagOrAFactThatNobodyKnows) {
    const auto tag = runTool({"csv", "--tag", "0.exif.ExposureTim", "a.tif"});
    EXPECT_EQ(tag.exitStatus, 2);
    EXPECT_EQ(tag.out, "");
    EXPECT_EQ(tag.err,
              "corvinex: there is no tag \"0.exif.ExposureTim\"; the nearest is \"ExposureTime\"\n"
              "corvinex: --help tells what can be given\n");
    const auto path = runTool({"csv", "--tag", "exif.ExposureTime", "a.tif"});
    EXPECT_EQ(path.exitStatus, 2);
    EXPECT_EQ(path.err,
              "corvinex: there is no tag \"exif.ExposureTime\": a path begins with the number of a "
              "page, as \"0.exif\"\n"
              "corvinex: --help tells what can be given\n");
    const auto directory = runTool({"csv", "--tag", "0.Foo.Make", "a.tif"});
    EXPECT_EQ(directory.exitStatus, 2);
    EXPECT_EQ(directory.err,
              "corvinex: there is no tag \"0.Foo.Make\": no directory has a path such as "
              "\"0.Foo\"\n"
              "corvinex: --help tells what can be given\n");
    const auto whole = runTool({"csv", "--tag", "0.exif", "a.tif"});
    EXPECT_EQ(whole.exitStatus, 2);
    EXPECT_EQ(whole.err,
              "corvinex: there is no tag \"0.exif\": it is the path of a directory, and a tag "
              "follows it, as in \"0.exif.Make\"\n"
              "corvinex: --help tells what can be given\n");
    EXPECT_EQ(runTool({"csv", "--tag", "file.weight", "a.tif"}).exitStatus, 2);
    EXPECT_EQ(runTool({"csv", "--tag", "", "a.tif"}).exitStatus, 2);
    EXPECT_EQ(runTool({"csv", "--tag", "65536", "a.tif"}).exitStatus, 2);
    EXPECT_EQ(runTool({"csv"}).exitStatus, 2);
}

TEST(CsvCommand, EndsWithItsOwnStatusWhenTheOutputIsFull) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", twoPages());
    EXPECT_EQ(runTool({"csv", file}, Output::DevFull).exitStatus, 3);
}
