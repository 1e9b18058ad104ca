#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/inspect/inspected.h"
#include "tests/inspect/sound_image.h"

namespace {

using corvinex::inspect::Severity;
using corvinex::inspect::Status;
using inspect_test::Bytes;
using inspect_test::changed;
using inspect_test::fileWith;
using inspect_test::imageFile;
using inspect_test::inspect;
using inspect_test::soundImage;
using inspect_test::structureFindingsOf;
using test::TiffBuilder;
using Texts = std::vector<std::string>;

test::Field width() {
    return test::number(256, test::LONG, 1);
}

Texts findingsWith(std::vector<test::Field> fields, test::Layout layout = test::Layout::Classic) {
    return structureFindingsOf(inspect(fileWith(std::move(fields), test::Order::Little, layout)));
}

}  // namespace

TEST(Findings, OfOffsetsThatLeadOutOfTheDataNameTheirTag) {
    TiffBuilder builder;
    const auto first = builder.add({test::longs(330, {5, 1'000'000})});
    builder.chain({first}).next(first, 2'000'000);
    EXPECT_EQ(structureFindingsOf(inspect(builder.bytes())),
              (Texts{"badDirectoryOffset [0] 330, 5", "badDirectoryOffset [0] 330, 1000000",
                     "badDirectoryOffset [0], 2000000",
                     // Inside the header a directory can be read as well, if only an odd one.
                     "badDirectoryOffset [0.sub0], 1241514240", "directoryEmpty [0.sub0]",
                     "notAligned [0.sub0], 1, 5"}));
}

TEST(Findings, OfPointersThatAreNoOffsets) {
    EXPECT_EQ(findingsWith({test::number(34665, test::LONG, 0)}), Texts{"pointerZero [0] 34665"});
    EXPECT_EQ(findingsWith({test::text(34665, "ab")}), Texts{"pointerType [0] 34665, 2"});
    EXPECT_EQ(findingsWith({test::number(34665, test::SLONG, static_cast<std::uint64_t>(-3))}),
              (Texts{"badDirectoryOffset [0] 34665, -3", "pointerType [0] 34665, 9"}));
    EXPECT_EQ(findingsWith({test::number(34665, test::LONG8, 0)}, test::Layout::Big),
              Texts{"pointerZero [0] 34665"});
}

TEST(Findings, OfDirectoriesThatOverlap) {
    // The second directory begins with the first one's second entry: its tag is the count, its type
    // the tag, and the halves of its count are the type and the count.
    test::ByteWriter writer(test::Order::Little);
    writer.text("II").number(42, 2).number(8, 4);
    writer.number(1, 2).number(330, 2).number(4, 2).number(2, 4).number(26, 4).number(0, 4);
    writer.number(100, 4).number(114, 4).padTo(100);
    writer.number(2, 2).number(256, 2).number(4, 2).number(1, 4).number(1, 4);
    writer.number(1, 2).number(3, 2).number(0x0001'0004, 4).number(0, 4).number(0, 4);
    writer.padTo(140);
    const Texts findings = structureFindingsOf(inspect(writer.bytes()));
    EXPECT_EQ(std::count(findings.begin(), findings.end(), "directoryOverlap [0.sub1], 114, 132"),
              1);
    EXPECT_EQ(
        std::count_if(findings.begin(), findings.end(),
                      [](const std::string& text) { return text.starts_with("directoryOverlap"); }),
        1);
}

TEST(Findings, OfTypesAndCounts) {
    EXPECT_EQ(findingsWith({test::at(256, 99, 1, 0), width(), width()}),
              (Texts{"unknownFieldType [0] 256, 99", "duplicateTag [0] 256, 3"}));
    EXPECT_EQ(findingsWith({test::at(256, test::LONG8, 0, 0)}),
              (Texts{"bigTypeInClassic [0] 256, 16", "zeroCount [0] 256"}));
    EXPECT_EQ(findingsWith({test::at(256, test::LONG, 2, 9'000)}),
              Texts{"valuePastEnd [0] 256, 9000, 8"});
    EXPECT_EQ(findingsWith({test::ascii(270, "abcdef")}), Texts{"asciiNotTerminated [0] 270, 6"});
}

TEST(Findings, OfBlankEntriesCountThem) {
    EXPECT_EQ(findingsWith({width(), test::at(0, 0, 0, 0), test::at(0, 0, 0, 7)}),
              Texts{"blankEntry [0], 2"});
    EXPECT_EQ(findingsWith({test::at(0, 0, 0, 0)}),
              (Texts{"directoryEmpty [0]", "blankEntry [0], 1"}));
}

TEST(Findings, OfEntriesOutOfOrderNameTheFirst) {
    const auto shorts = [](std::uint16_t number) { return test::number(number, test::SHORT, 1); };
    EXPECT_EQ(findingsWith({shorts(258), shorts(257), shorts(256)}),
              Texts{"entriesOutOfOrder [0] 257, 258"});
    EXPECT_EQ(findingsWith({shorts(256), shorts(258), shorts(256), shorts(257)}),
              (Texts{"duplicateTag [0] 256, 2"}));
    TiffBuilder builder;
    const auto exif = builder.add({shorts(37385), shorts(37384)});
    const auto first = builder.add({test::pointers(34665, test::LONG, {exif})});
    builder.chain({first});
    EXPECT_EQ(structureFindingsOf(inspect(builder.bytes())),
              Texts{"exifEntriesOutOfOrder [0.exif] 37384, 37385"});
}

TEST(Findings, OfOddOffsetsTellTheFirst) {
    Bytes bytes = fileWith({test::at(273, test::LONG, 2, 39), test::at(279, test::LONG, 2, 47)});
    bytes.resize(100);
    EXPECT_EQ(structureFindingsOf(inspect(bytes)), Texts{"notAligned [0], 2, 39"});
}

TEST(Findings, OfValuesBehindTheExifBlock) {
    TiffBuilder builder;
    const auto first = builder.add({test::at(273, test::LONG, 2, 40)});
    builder.chain({first});
    test::JpegWithExif jpeg = test::jpegWithExif(builder.bytes());
    jpeg.bytes.resize(200);
    const Texts findings = structureFindingsOf(inspect(jpeg.bytes));
    EXPECT_EQ(std::count(findings.begin(), findings.end(), "outsideExifBlock [0] 273, 40, 48"), 1);
}

TEST(Findings, ShowThreeOfARuleInADirectoryAndTwelveInAFileAndCountTheRest) {
    TiffBuilder builder;
    std::vector<std::size_t> chain;
    for (int directory = 0; directory < 6; ++directory) {
        std::vector<test::Field> fields;
        for (std::uint16_t number = 256; number < 261; ++number) {
            fields.push_back(test::at(number, test::LONG, 0, 0));
        }
        chain.push_back(builder.add(fields));
    }
    builder.chain(chain);
    const Texts findings = structureFindingsOf(inspect(builder.bytes()));
    ASSERT_EQ(findings.size(), 13U);
    EXPECT_EQ(findings[2], "zeroCount [0] 258");
    EXPECT_EQ(findings[3], "zeroCount [1] 256");
    EXPECT_EQ(findings[11], "zeroCount [3] 258");
    EXPECT_EQ(findings[12], "more [], zeroCount, 18");
}

TEST(Findings, HaveTheirSentence) {
    const auto file = inspect(imageFile(
        {test::at(37724, test::BYTE, 8, 9'000), test::at(61'000, 99, 1, 0), width(), width()}));
    Texts texts;
    for (const auto& finding : file.findings()) {
        texts.push_back(finding.text);
    }
    EXPECT_EQ(
        texts,
        (Texts{"Tag 61000 has the unknown field type 99.",
               "The value of ImageSourceData (37724), 8 bytes at 9000, ends past the end of the "
               "file.",
               "ImageWidth (256) comes after tag 61000: entries are not sorted.",
               "ImageWidth (256) stands 2 times in directory 0.", "Directory 0 holds no image.",
               "The resolution is not told (tags 282, 283)."}));
}

TEST(Status, FollowsFromTheWorstFinding) {
    const auto statusWith = [](const inspect_test::Fields& more) {
        return inspect(imageFile(changed(soundImage(), more))).status();
    };
    EXPECT_EQ(statusWith({}), Status::Ok);
    EXPECT_EQ(statusWith({test::at(300, test::LONG, 0, 0)}), Status::Ok);
    EXPECT_EQ(statusWith({width(), width()}), Status::Warnings);
    EXPECT_EQ(statusWith({width(), width(), test::at(300, 99, 1, 0)}), Status::Damaged);
}
