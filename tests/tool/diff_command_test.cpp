#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tests/tool/run_command.h"
#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"

namespace {

using tool_test::CommandResult;
using tool_test::Input;
using tool_test::Output;
using tool_test::runTool;
using tool_test::TiffBytes;
using Texts = std::vector<std::string>;

constexpr std::uint64_t ascii = 2;
constexpr std::uint64_t shortType = 3;
constexpr std::uint64_t longType = 4;
constexpr std::uint64_t rational = 5;
constexpr std::uint64_t undefined = 7;
constexpr std::uint64_t signedRational = 10;
constexpr std::uint64_t floatType = 11;
constexpr std::uint64_t doubleType = 12;

/// A directory of one entry, whose value, if there is one, stands at byte 26.
std::string oneEntry(std::uint64_t tag, std::uint64_t type, std::uint64_t count,
                     const std::string& value) {
    return TiffBytes().header(8).count(1).entry(tag, type, count, 26).offset(0).raw(value).bytes();
}

std::string ofWidth(std::uint64_t width) {
    return TiffBytes().header(8).count(1).shortEntry(256, width).offset(0).bytes();
}

std::string fraction(std::uint64_t numerator, std::uint64_t denominator) {
    return TiffBytes().number(numerator, 4).number(denominator, 4).bytes();
}

class DiffCommand : public testing::Test {
  protected:
    /// Of two files that have these bytes.
    [[nodiscard]] CommandResult diff(std::string_view one, std::string_view other,
                                     const Texts& options = {}) const {
        Texts words{"diff", folder_.file("a.tif", one), folder_.file("b.tif", other)};
        words.insert(words.end(), options.begin(), options.end());
        return runTool(words);
    }
    /// What is printed behind the names of the files.
    [[nodiscard]] std::string differences(std::string_view one, std::string_view other,
                                          const Texts& options = {}) const {
        const CommandResult result = diff(one, other, options);
        const std::string head = names();
        EXPECT_EQ(result.exitStatus, result.out.empty() ? 0 : 1);
        EXPECT_EQ(result.out.substr(0, head.size()), result.out.empty() ? "" : head);
        return result.out.substr(result.out.empty() ? 0 : head.size());
    }
    [[nodiscard]] std::string names() const {
        return "--- " + folder_.path("a.tif") + "\n+++ " + folder_.path("b.tif") + "\n";
    }

    const tool_test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(DiffCommand, SaysNothingOfTheSameTagsInAnotherOrderOfBytesLayoutAndType) {
    const std::string other = TiffBytes(TiffBytes::Big, TiffBytes::BigTiff)
                                  .header(16)
                                  .count(1)
                                  .entry(256, longType, 1, std::uint64_t{640} << 32U)
                                  .offset(0)
                                  .bytes();
    const CommandResult result = diff(ofWidth(640), other);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.exitStatus, 0);
}

TEST_F(DiffCommand, PrintsTheEntriesThatDifferAndThoseOfOneFileAlone) {
    const std::string one = TiffBytes()
                                .header(8)
                                .count(3)
                                .shortEntry(256, 640)
                                .shortEntry(257, 480)
                                .shortEntry(259, 5)
                                .offset(0)
                                .bytes();
    const std::string other = TiffBytes()
                                  .header(8)
                                  .count(3)
                                  .shortEntry(256, 640)
                                  .shortEntry(259, 8)
                                  .shortEntry(274, 1)
                                  .offset(0)
                                  .bytes();
    const CommandResult result = diff(one, other);
    EXPECT_EQ(result.out, names() +
                              "\n0:\n"
                              "-   257  ImageLength                 480\n"
                              "-   259  Compression                 LZW\n"
                              "+   259  Compression                 Adobe Deflate\n"
                              "+   274  Orientation                 top-left\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.exitStatus, 1);
}

TEST_F(DiffCommand, TellsADirectoryOfOneFileAloneOnOneLine) {
    const std::string two = TiffBytes()
                                .header(8)
                                .count(1)
                                .shortEntry(256, 640)
                                .offset(26)
                                .count(1)
                                .shortEntry(256, 320)
                                .offset(44)
                                .count(1)
                                .shortEntry(256, 160)
                                .offset(0)
                                .bytes();
    EXPECT_EQ(differences(two, ofWidth(640)), "\n- 1: image, 1 entry\n- 2: image, 1 entry\n");
    EXPECT_EQ(differences(ofWidth(640), two), "\n+ 1: image, 1 entry\n+ 2: image, 1 entry\n");
    EXPECT_EQ(differences(two, ofWidth(640), {"--tag", "1.ImageWidth"}),
              "\n1:\n-   256  ImageWidth                  320\n");
    EXPECT_EQ(differences(two, ofWidth(640), {"--ignore", "ImageWidth"}), "");
}

TEST_F(DiffCommand, TakesNoPositionForADifferenceButTheNumberOfThem) {
    for (const std::uint64_t tag : {273U, 324U, 288U, 513U, 330U, 34665U}) {
        const std::string one = oneEntry(tag, longType, 2, fraction(1000, 2000));
        EXPECT_EQ(differences(one, oneEntry(tag, longType, 2, fraction(3000, 4000))), "") << tag;
        EXPECT_NE(differences(one, oneEntry(tag, longType, 1, "")), "") << tag;
    }
    const std::string counts = oneEntry(279, longType, 2, fraction(1000, 2000));
    EXPECT_NE(differences(counts, oneEntry(279, longType, 2, fraction(3000, 4000))), "");
}

TEST_F(DiffCommand, ComparesEntriesOfOneNumberInTheirOrder) {
    const auto widths = [](std::uint64_t first, std::uint64_t second) {
        return TiffBytes()
            .header(8)
            .count(2)
            .shortEntry(256, first)
            .shortEntry(256, second)
            .offset(0)
            .bytes();
    };
    EXPECT_EQ(differences(widths(1, 2), widths(1, 3)),
              "\n0:\n-   256  ImageWidth                  2\n"
              "+   256  ImageWidth                  3\n");
    EXPECT_EQ(differences(widths(1, 2), ofWidth(1)),
              "\n0:\n-   256  ImageWidth                  2\n");
}

TEST_F(DiffCommand, ComparesNumbersByWhatTheyAre) {
    const std::string half = oneEntry(282, rational, 1, fraction(1, 2));
    EXPECT_EQ(differences(half, oneEntry(282, rational, 1, fraction(5, 10))), "");
    EXPECT_EQ(differences(half, oneEntry(282, signedRational, 1, fraction(0xFFFFFFFF, 0xFFFFFFFE))),
              "");
    EXPECT_NE(differences(half, oneEntry(282, signedRational, 1, fraction(0xFFFFFFFF, 2))), "");
    EXPECT_NE(differences(oneEntry(282, rational, 1, fraction(0, 0)), half), "");
    EXPECT_NE(differences(oneEntry(282, rational, 1, fraction(1, 0)),
                          oneEntry(282, rational, 1, fraction(2, 0))),
              "");
    const std::string notANumber = TiffBytes().number(0x7FC00000, 4).bytes();
    const std::string wideNotANumber = TiffBytes().number(0x7FF8000000000000, 8).bytes();
    const std::string oneAsFloat =
        TiffBytes().header(8).count(1).entry(65000, floatType, 1, 0x7FC00000).offset(0).bytes();
    EXPECT_EQ(differences(oneAsFloat, oneEntry(65000, doubleType, 1, wideNotANumber)), "");
}

TEST_F(DiffCommand, ComparesTextsWithoutTheZerosAtTheirEnd) {
    const std::string text = oneEntry(270, ascii, 5, std::string("Eins\0", 5));
    EXPECT_EQ(differences(text, oneEntry(270, ascii, 8, std::string("Eins\0\0\0\0", 8))), "");
    EXPECT_EQ(differences(text, oneEntry(270, ascii, 9, std::string("Eins\0two\0", 9))),
              "\n0:\n-   270  ImageDescription            Eins\n"
              "+   270  ImageDescription            Eins\n"
              "         (they differ from byte 5 on)\n");
}

TEST_F(DiffCommand, ComparesCommentsByTheirTextInWhateverByteOrder) {
    constexpr std::uint64_t userComment = 37510;
    const auto comment = [](TiffBytes::Order order, std::string_view charset, unsigned last) {
        return TiffBytes(order)
            .header(8)
            .count(1)
            .entry(34665, longType, 1, 26)
            .offset(0)
            .count(1)
            .entry(userComment, undefined, 12, 44)
            .offset(0)
            .raw(charset)
            .number('a', 2)
            .number(last, 2)
            .bytes();
    };
    constexpr std::string_view unicode("UNICODE\0", 8);
    const std::string little = comment(TiffBytes::Little, unicode, 'b');
    EXPECT_EQ(differences(little, comment(TiffBytes::Big, unicode, 'b')), "");
    EXPECT_EQ(differences(little, comment(TiffBytes::Big, unicode, 'c')),
              "\n0.exif:\n- 37510  UserComment                 ab\n"
              "+ 37510  UserComment                 ac\n");
    EXPECT_NE(
        differences(little, comment(TiffBytes::Little, std::string_view("ASCII\0\0\0", 8), 'b')),
        "");
}

TEST_F(DiffCommand, TellsInWhatValuesDifferThatAreShownAlike) {
    std::string numbers(4000, '\1');
    std::string others = numbers;
    others[1234] = '\2';
    EXPECT_TRUE(differences(oneEntry(65000, shortType, 2000, numbers),
                            oneEntry(65000, shortType, 2000, others))
                    .ends_with("(2,000 values)\n         (they differ from value 618 on)\n"));
    const std::string text(2000, 'a');
    const std::string longer = text.substr(0, 1999) + 'b';
    EXPECT_TRUE(differences(oneEntry(270, ascii, 2000, text), oneEntry(270, ascii, 2000, longer))
                    .ends_with("\n         (they differ from byte 2,000 on)\n"));
    EXPECT_TRUE(
        differences(oneEntry(700, ascii, 8, "<x a=1/>"), oneEntry(700, undefined, 8, "<x a=1/>"))
            .ends_with("\n         (the first is ASCII, the second UNDEFINED)\n"));
}

TEST_F(DiffCommand, ComparesTheTagsThatAreAskedForAndNotTheIgnoredOnes) {
    const auto image = [](std::uint64_t width, std::uint64_t length) {
        return TiffBytes()
            .header(8)
            .count(2)
            .shortEntry(256, width)
            .shortEntry(257, length)
            .offset(0)
            .bytes();
    };
    const std::string one = image(1, 2);
    const std::string other = image(3, 4);
    const std::string ofLength =
        "\n0:\n-   257  ImageLength                 2\n"
        "+   257  ImageLength                 4\n";
    EXPECT_EQ(differences(one, other, {"--tag", "imagelength"}), ofLength);
    EXPECT_EQ(differences(one, other, {"--ignore", "0.256"}), ofLength);
    EXPECT_EQ(differences(one, other, {"--ignore", "256", "--ignore", "257"}), "");
    EXPECT_EQ(differences(one, other, {"--tag", "256", "--ignore", "256"}), "");
}

TEST_F(DiffCommand, EndsWith2WhenAFileCannotBeCompared) {
    const std::string good = folder_.file("good.tif", ofWidth(1));
    const std::string bad = folder_.file("bad.tif", "no image");
    const std::string none = folder_.path("none.tif");
    for (const Texts& files : {Texts{good, bad}, Texts{bad, good}}) {
        const CommandResult result = runTool({"diff", files.front(), files.back()});
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.err, "corvinex: " + bad + ": no TIFF, BigTIFF or JPEG file\n");
        EXPECT_EQ(result.out, "");
    }
    const CommandResult result = runTool({"diff", none, folder_.path("")});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.err, "corvinex: " + none + ": No such file or directory\ncorvinex: " +
                              folder_.path("") + ": Is a directory\n");
}

TEST_F(DiffCommand, ComparesWhatCanBeReadOfADamagedFile) {
    const std::string damaged =
        TiffBytes().header(8).count(1).entry(64000, shortType, 8, 9000).offset(0).bytes();
    const std::string sound = oneEntry(64000, shortType, 8, std::string(16, '\0'));
    EXPECT_EQ(diff(damaged, damaged).exitStatus, 0);
    const CommandResult result = diff(sound, damaged);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.out, names() +
                              "\n0:\n"
                              "- 64000  (unknown)                   0, 0, 0, 0, 0, 0, 0, 0\n"
                              "+ 64000  (unknown)                   (not in the file: 16 bytes at "
                              "9000)\n");
    EXPECT_EQ(result.err, "corvinex: " + folder_.path("b.tif") +
                              ": damaged; only what can be read of it is compared\n");
}

TEST_F(DiffCommand, LeavesOutValuesThatComeToSeveralTimesTheSizeOfTheFile) {
    constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20U;
    constexpr std::uint64_t entries = 25;
    TiffBytes tiff;
    tiff.header(8).count(entries);
    for (std::uint64_t entry = 0; entry < entries; ++entry) {
        tiff.entry(64000 + entry, undefined, mebibyte, 14 + 12 * entries);
    }
    tiff.offset(0).raw(std::string(mebibyte, 'x'));
    const CommandResult result = diff(tiff.bytes(), tiff.bytes());
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "corvinex: 5 values are not compared: the values of a file come to several times its "
              "size\n");
}

TEST_F(DiffCommand, ReadsOneFileFromTheStandardInput) {
    const std::string file = folder_.file("a.tif", ofWidth(1));
    EXPECT_EQ(runTool({"diff", file, "-"}, Output::Captured, Input::pipe(ofWidth(1))).exitStatus,
              0);
    const CommandResult result =
        runTool({"diff", "-", file}, Output::Captured, Input::pipe(ofWidth(2)));
    EXPECT_TRUE(result.out.starts_with("--- -\n+++ " + file + "\n")) << result.out;
    EXPECT_EQ(result.exitStatus, 1);
    for (const Texts& words : {Texts{"diff", "-", "-"}, Texts{"diff", "-", file}}) {
        const CommandResult refused = runTool(words, Output::Captured, Input::file("/dev/ptmx"));
        EXPECT_EQ(refused.exitStatus, 2);
        EXPECT_NE(refused.err.find("the standard input"), std::string::npos) << refused.err;
    }
}

TEST_F(DiffCommand, EndsWith3WhenTheOutputTakesNoMore) {
    const std::string one = folder_.file("a.tif", ofWidth(1));
    const std::string other = folder_.file("b.tif", ofWidth(2));
    const CommandResult result = runTool({"diff", one, other}, Output::DevFull);
    EXPECT_EQ(result.exitStatus, 3);
    EXPECT_EQ(result.err, "corvinex: cannot write to the standard output\n");
}

TEST_F(DiffCommand, PaintsTheEntriesOfEachFileWhenAskedTo) {
    const std::string printed = diff(ofWidth(1), ofWidth(2), {"--color", "always"}).out;
    EXPECT_NE(printed.find("\n\x1b[31m-   256  ImageWidth                  \x1b[0m1\n"),
              std::string::npos)
        << printed;
    EXPECT_NE(printed.find("\n\x1b[32m+   256  ImageWidth                  \x1b[0m2\n"),
              std::string::npos)
        << printed;
}

TEST_F(DiffCommand, ShowsNothingThatMakesATerminalAct) {
    const std::string one = folder_.file("a\x1b[2J.tif", oneEntry(270, ascii, 6, "\x1b[31m."));
    const CommandResult result = runTool({"diff", one, folder_.file("b.tif", ofWidth(1))});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.out.find('\x1b'), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("\\u001b[31m."), std::string::npos) << result.out;
}

TEST_F(DiffCommand, PutsValuesBelowTheNamesOnANarrowTerminal) {
    EXPECT_EQ(differences(ofWidth(1), ofWidth(2), {"--width", "40"}),
              "\n0:\n-   256  ImageWidth\n         1\n+   256  ImageWidth\n         2\n");
}
