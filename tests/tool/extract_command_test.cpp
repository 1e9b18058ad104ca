#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "tests/tool/run_command.h"
#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"

namespace {

using tool_test::Input;
using tool_test::jpegAround;
using tool_test::Output;
using tool_test::runTool;
using tool_test::TemporaryFolder;
using tool_test::TiffBytes;

constexpr std::string_view smallJpeg = "\xFF\xD8 picture \xFF\xD9";

std::string contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// A directory with a block of 4 numbers, a profile, a value past the end, one without a value, and
/// one in the entry.
std::string blocks(TiffBytes::Order order) {
    return TiffBytes(order)
        .header(8)
        .count(5)
        .shortEntry(256, 0x0102)
        .entry(700, 1, 9000, 80)
        .entry(33723, 7, 0, 0)
        .entry(34675, 7, 7, 82)
        .entry(34735, 3, 4, 74)
        .offset(0)
        .number(1, 2)
        .number(1, 2)
        .number(0, 2)
        .number(0, 2)
        .raw("profile")
        .bytes();
}

/// The first directory is the image itself, the second one its small version.
std::string withSecondDirectory(std::uint64_t length) {
    return TiffBytes()
        .header(8)
        .count(1)
        .shortEntry(256, 640)
        .offset(26)
        .count(2)
        .entry(513, 4, 1, 56)
        .entry(514, 4, 1, length)
        .offset(0)
        .raw(smallJpeg)
        .bytes();
}

/// A first directory with one strip.
TiffBytes withStrip(std::uint64_t subfileType) {
    return TiffBytes()
        .header(8)
        .count(3)
        .entry(254, 4, 1, subfileType)
        .entry(273, 4, 1, 50)
        .entry(279, 4, 1, smallJpeg.size())
        .offset(0);
}

}  // namespace

TEST(ExtractCommand, WritesTheBytesOfAValueAsTheyStandInTheFile) {
    const TemporaryFolder folder;
    const std::string little = folder.file("little.tif", blocks(TiffBytes::Little));
    const std::string big = folder.file("big.tif", blocks(TiffBytes::Big));
    EXPECT_EQ(runTool({"extract", "34735", little}).out, std::string("\1\0\1\0\0\0\0\0", 8));
    EXPECT_EQ(runTool({"extract", "34735", big}).out, std::string("\0\1\0\1\0\0\0\0", 8));
    EXPECT_EQ(runTool({"extract", "0.imagewidth", big}).out, "\1\2");
    const auto profile = runTool({"extract", "ICCProfile", little});
    EXPECT_EQ(profile.out, "profile");
    EXPECT_EQ(profile.err, "");
    EXPECT_EQ(profile.exitStatus, 0);
}

TEST(ExtractCommand, KnowsShortNames) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", blocks(TiffBytes::Little));
    EXPECT_EQ(runTool({"extract", "icc", file}).out, "profile");
    EXPECT_EQ(runTool({"extract", "GeoKeys", file}).out.size(), 8U);
    EXPECT_EQ(runTool({"extract", "0.GeoKeys", file}).out.size(), 8U);
    EXPECT_EQ(runTool({"extract", "0.ICC", file}).out, "profile");
    EXPECT_EQ(runTool({"extract", "0.0x8773", file}).out, "profile");
}

TEST(ExtractCommand, WritesToTheFileAskedFor) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", blocks(TiffBytes::Little));
    const auto result = runTool({"extract", "ICC", file, "-o", folder.path("out.icc")});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(contentOf(folder.path("out.icc")), "profile");
    EXPECT_EQ(runTool({"extract", "ICC", file, "--output=-"}).out, "profile");
}

TEST(ExtractCommand, WritesLargeValuesWhole) {
    const TemporaryFolder folder;
    std::string value;
    for (int number = 0; number < 40000; ++number) {
        value += std::to_string(number);
    }
    const std::string file = folder.file("a.tif", TiffBytes()
                                                      .header(8)
                                                      .count(1)
                                                      .entry(37500, 7, value.size(), 26)
                                                      .offset(0)
                                                      .raw(value)
                                                      .bytes());
    EXPECT_EQ(runTool({"extract", "MakerNote", file}).out, value);
}

TEST(ExtractCommand, TellsWhatTheFileDoesNotHold) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", blocks(TiffBytes::Little));
    const std::string text = folder.file("b.txt", "no image");
    const std::string photo = folder.file(
        "c.jpg",
        tool_test::jpegAround(TiffBytes().header(8).count(1).shortEntry(274, 1).offset(0).bytes()));
    const struct {
        std::string tag;
        std::string file;
        std::string reason;
    } cases[] = {
        {"MakerNote", file, "the file has no tag MakerNote"},
        {"65333", file, "the file has no tag 65333"},
        {"XMP", file, "the value of XMP (700) does not lie in the file"},
        {"IPTC", file, "IPTC_NAA (33723) has no value"},
        {"Make", photo, "the file has no tag Make"},
        {"ICC", photo,
         "the file has no tag ICCProfile; beside the EXIF block of a JPEG it is not looked for"},
        {"XMP", text, "no TIFF, BigTIFF or JPEG file"},
        {"XMP", folder.path("missing"), "No such file or directory"},
    };
    for (const auto& each : cases) {
        const auto result = runTool({"extract", each.tag, each.file, "-o", folder.path("out")});
        EXPECT_EQ(result.exitStatus, 1) << each.reason;
        EXPECT_EQ(result.err, "corvinex: " + each.file + ": " + each.reason + "\n");
        EXPECT_FALSE(std::filesystem::exists(folder.path("out"))) << each.reason;
    }
    const std::string parent = std::filesystem::path(file).parent_path();
    EXPECT_EQ(runTool({"extract", "XMP", parent}).exitStatus, 1);
}

TEST(ExtractCommand, TakesTheFirstValueThatLiesInTheFile) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", TiffBytes()
                                                      .header(8)
                                                      .count(2)
                                                      .entry(700, 1, 9000, 8)
                                                      .entry(700, 1, 3, 0x636261)
                                                      .offset(0)
                                                      .bytes());
    EXPECT_EQ(runTool({"extract", "XMP", file}).out, "abc");
}

TEST(ExtractCommand, WritesTheThumbnailOfAPhoto) {
    const TemporaryFolder folder;
    const std::string tiff = withSecondDirectory(smallJpeg.size());
    const auto result = runTool({"extract", "--thumbnail", folder.file("a.jpg", jpegAround(tiff))});
    EXPECT_EQ(result.out, smallJpeg);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(runTool({"extract", "--thumbnail", "-"}, Output::Captured, Input::pipe(tiff)).out,
              smallJpeg);
}

TEST(ExtractCommand, TakesNoPageOfFullSizeForAThumbnail) {
    const TemporaryFolder folder;
    const auto thumbnail = [&](std::uint64_t subfileType) {
        const std::string bytes = TiffBytes()
                                      .header(8)
                                      .count(1)
                                      .shortEntry(256, 640)
                                      .offset(26)
                                      .count(3)
                                      .entry(254, 4, 1, subfileType)
                                      .entry(513, 4, 1, 68)
                                      .entry(514, 4, 1, smallJpeg.size())
                                      .offset(0)
                                      .raw(smallJpeg)
                                      .bytes();
        return runTool({"extract", "--thumbnail", folder.file("a.tif", bytes)}).out;
    };
    EXPECT_EQ(thumbnail(0), "");
    EXPECT_EQ(thumbnail(1), smallJpeg);
}

TEST(ExtractCommand, WritesTheOnlyStripOfAReducedImageWhenItIsAJpegOfItsOwn) {
    const TemporaryFolder folder;
    const auto thumbnail = [&](const std::string& bytes) {
        return runTool({"extract", "--thumbnail", folder.file("a.tif", bytes)}).out;
    };
    EXPECT_EQ(thumbnail(withStrip(1).raw(smallJpeg).bytes()), smallJpeg);
    EXPECT_EQ(thumbnail(withStrip(0).raw(smallJpeg).bytes()), "");
    EXPECT_EQ(thumbnail(withStrip(1).raw("not a picture").bytes()), "");
}

TEST(ExtractCommand, TellsWhenThereIsNoThumbnailInTheFile) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", withSecondDirectory(smallJpeg.size() + 1));
    const auto result = runTool({"extract", "--thumbnail", file});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "corvinex: " + file +
                              ": the file has no thumbnail that is a JPEG and lies in the file\n");
}

TEST(ExtractCommand, NeverWritesOverTheFileThatItReads) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", blocks(TiffBytes::Little));
    std::filesystem::create_symlink(file, folder.path("link"));
    EXPECT_EQ(runTool({"extract", "ICC", file, "-o", folder.path("link")}).exitStatus, 2);
    EXPECT_EQ(runTool({"extract", "ICC", "-", "-o", file}, Output::Captured, Input::file(file))
                  .exitStatus,
              2);
    EXPECT_EQ(contentOf(file), blocks(TiffBytes::Little));
}

TEST(ExtractCommand, EndsWithItsOwnStatusWhenTheOutputCannotBeWritten) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", blocks(TiffBytes::Little));
    EXPECT_EQ(runTool({"extract", "ICC", file}, Output::DevFull).exitStatus, 3);
    EXPECT_EQ(runTool({"extract", "ICC", file, "-o", "/dev/full"}).exitStatus, 3);
    const std::string nowhere = folder.path("no/such/folder");
    const auto result = runTool({"extract", "ICC", file, "-o", nowhere});
    EXPECT_EQ(result.exitStatus, 3);
    EXPECT_EQ(result.err, "corvinex: cannot write to " + nowhere + ": No such file or directory\n");
}

TEST(ExtractCommand, WritesToNoTerminalUnlessAsked) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.tif", blocks(TiffBytes::Little));
    EXPECT_EQ(runTool({"extract", "ICC", file}, Output::Terminal).exitStatus, 2);
    EXPECT_EQ(runTool({"extract", "ICC", file, "-o", "-"}, Output::Terminal).exitStatus, 0);
}

TEST(ExtractCommand, NamesWhatIsWrongOnTheCommandLine) {
    EXPECT_EQ(runTool({"extract"}).exitStatus, 2);
    EXPECT_EQ(runTool({"extract", "XMP"}).exitStatus, 2);
    EXPECT_EQ(runTool({"extract", "XMP", "a.tif", "b.tif"}).exitStatus, 2);
    EXPECT_EQ(runTool({"extract", "--thumbnail", "XMP", "a.tif"}).exitStatus, 2);
    const auto unknown = runTool({"extract", "MakerNotes", "a.tif"});
    EXPECT_EQ(unknown.exitStatus, 2);
    EXPECT_EQ(unknown.err,
              "corvinex: there is no tag \"MakerNotes\"; the nearest is \"MakerNote\"\n"
              "corvinex: --help tells what can be given\n");
}
