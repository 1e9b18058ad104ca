#include <gtest/gtest.h>

#include "tests/directory/tiff_variants.h"

// What becomes of the entries of a directory.

namespace test {
namespace {

class Entries : public EveryTiff {};
CORVINEX_FOR_EVERY_TIFF(Entries);

TEST_P(Entries, WidthAndLengthBecomeDerivedFieldsAlone) {
    TiffBuilder builder = newBuilder();
    builder.add({number(256, SHORT, 640), number(257, LONG, 480)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.number("Width"), 640);
    EXPECT_EQ(result.number("Height"), 480);
    EXPECT_FALSE(result.hasField("Length"));
    EXPECT_FALSE(result.hasField("UnknownTags"));
}

TEST_P(Entries, WidthAndLengthAreDiscardedByNumberInEveryKindOfDirectory) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34665, LONG, {1}), pointers(34853, LONG, {2})});
    builder.add({number(256, SHORT, 640), number(257, SHORT, 480), text(305, "x"),
                 pointers(40965, LONG, {3})});
    builder.add({number(256, SHORT, 640), number(257, SHORT, 480), text(1, "N")});
    builder.add({number(256, SHORT, 640), number(257, SHORT, 480), text(1, "R98")});
    const Result result = read(builder.bytes());
    const zxArray& exif = result.value("DigitalCamera");
    EXPECT_EQ(fieldsOf(exif), (Names{"Software", "InteroperabilityIFD"}));
    EXPECT_EQ(fieldsOf(result.value("GPSInfo")), Names{"GPSLatitudeRef"});
    EXPECT_EQ(fieldsOf(fieldOf(exif, "InteroperabilityIFD")), Names{"InteroperabilityIndex"});
    EXPECT_EQ(result.number("Width"), 0);
    EXPECT_EQ(result.number("Height"), 0);
}

TEST_P(Entries, PointersToDirectoriesOfWidthAndLengthAloneAreDroppedSilently) {
    const std::vector<Field> sizeAlone{number(256, SHORT, 640), number(257, SHORT, 480)};
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34665, LONG, {1}), pointers(34853, LONG, {1})});
    builder.add(sizeAlone);
    const Result result = read(builder.bytes());
    EXPECT_TRUE(result.warnings().empty());
    EXPECT_FALSE(result.hasField("DigitalCamera"));
    EXPECT_FALSE(result.hasField("GPSInfo"));
}

TEST_P(Entries, PointersThatLeadToNoDirectoryAreDropped) {
    for (const std::uint16_t tag : std::vector<std::uint16_t>{330, 34665, 34853, 40965}) {
        TiffBuilder builder = newBuilder();
        builder.add({pointers(tag, LONG, {1}), pageId(1)});
        builder.add({});
        const Result result = read(builder.bytes());
        EXPECT_EQ(result.warnings(),
                  Reports{report("numDirectoryEntriesIsZero", {builder.positionOf(1)})});
        EXPECT_EQ(fieldsOf(result.output()).size(), 35U) << tag;
        EXPECT_EQ(pageIds(result), PageIds{1});
    }
}

TEST_P(Entries, APointerWithoutOffsetsIsDropped) {
    TiffBuilder builder = newBuilder();
    builder.add({numbers(330, LONG, {}), pageId(1)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.warnings(), Reports{report("zeroComponentCount", {"SubIFDs"})});
    EXPECT_FALSE(result.hasField("SubIFDs"));
    EXPECT_EQ(pageIds(result), PageIds{1});
}

TEST_P(Entries, APointerKeepsTheSetsThatHoldADirectory) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(330, LONG, {1})});
    builder.add({pageId(7)});
    const Result result = read(builder.bytes());
    EXPECT_TRUE(result.warnings().empty());
    EXPECT_EQ(host::sizeOf(result.value("SubIFDs")), (host::Size{1, 1}));
}

TEST_P(Entries, UnnamedEntriesShareOneFieldInEntryOrder) {
    TiffBuilder builder = newBuilder();
    builder.add({number(65001, SHORT, 5), text(305, "x"), number(65000, SHORT, 6),
                 number(65001, SHORT, 7)});
    const Result result = read(builder.bytes());
    const zxArray& unknown = result.value("UnknownTags");
    ASSERT_EQ(host::sizeOf(unknown), (host::Size{3, 1}));
    const double ids[] = {65001, 65000, 65001};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(numberOf(fieldOf(unknown, "ID", i)), ids[i]);
        EXPECT_EQ(numberOf(fieldOf(unknown, "Value", i)), static_cast<double>(5 + i));
    }
}

TEST_P(Entries, TheKindOfTheDirectoryDecidesWhetherAnEntryIsNamed) {
    TiffBuilder builder = newBuilder();
    builder.add({number(1, SHORT, 9), pointers(34665, LONG, {1}), pointers(34853, LONG, {2})});
    builder.add({number(1, SHORT, 9), text(305, "x"), pointers(40965, LONG, {2})});
    builder.add({text(1, "N"), text(305, "x")});
    const Result result = read(builder.bytes());
    const zxArray& exif = result.value("DigitalCamera");
    EXPECT_TRUE(result.isSet("UnknownTags"));
    EXPECT_EQ(fieldsOf(exif), (Names{"Software", "InteroperabilityIFD", "UnknownTags"}));
    EXPECT_EQ(fieldsOf(result.value("GPSInfo")), (Names{"GPSLatitudeRef", "UnknownTags"}));
    EXPECT_EQ(fieldsOf(fieldOf(exif, "InteroperabilityIFD")),
              (Names{"InteroperabilityIndex", "UnknownTags"}));
}

TEST_P(Entries, OneThatCannotBeReadIsDroppedAndTheOthersStay) {
    TiffBuilder builder = newBuilder();
    builder.add({text(305, "before"), at(306, 14, 1, 0), at(315, 0, 1, 0), at(316, ASCII, 1000, 8),
                 text(33432, "after")});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.text("Software"), "before");
    EXPECT_EQ(result.text("Copyright"), "after");
    EXPECT_FALSE(result.hasField("DateTime"));
    EXPECT_FALSE(result.hasField("Artist"));
    EXPECT_FALSE(result.hasField("HostComputer"));
    EXPECT_EQ(result.warnings(), (Reports{report("unrecognizedTagFormatId", {14}),
                                          report("noTypeFormatId", {"Artist"}),
                                          report("tagDataPastEOF", {316, 1000})}));
}

TEST_P(Entries, ADirectoryWhoseEntriesAllDropStaysForItsDefaults) {
    TiffBuilder builder = newBuilder();
    builder.add({at(305, 14, 1, 0)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.directories(), 1U);
    EXPECT_EQ(fieldsOf(result.output()).size(), 35U);
}

TEST_P(Entries, AnErrorThatIsNotRecoverableEndsTheRequest) {
    TiffBuilder builder = newBuilder();
    builder.add({pageId(1), shorts(256, {1, 2})});
    EXPECT_EQ(read(builder.bytes()).error(), report("badTagDataCount", {256, "Width", 2, 1}));
}

TEST_P(Entries, OfOneNumberTheLaterCounts) {
    TiffBuilder builder = newBuilder();
    builder.add(
        {text(305, "first"), number(256, SHORT, 1), text(305, "second"), number(256, SHORT, 2)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.text("Software"), "second");
    EXPECT_EQ(result.number("Width"), 2);
}

TEST_P(Entries, AreNotSorted) {
    TiffBuilder builder = newBuilder();
    builder.add({text(33432, "c"), text(305, "s"), pageId(3)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.text("Copyright"), "c");
    EXPECT_EQ(result.text("Software"), "s");
    EXPECT_EQ(pageIds(result), PageIds{3});
}

TEST_P(Entries, AfterAPointerAreReadAsThoughTheStreamHadNotMoved) {
    TiffBuilder builder = newBuilder();
    builder.add({text(305, "a long text outside the entry"), pointers(34665, LONG, {2}),
                 text(33432, "another text outside the entry"), pointers(34853, LONG, {3})});
    builder.add({pageId(2)});
    builder.add({text(36864, "a version outside the entry")});
    builder.add({text(29, "2024:01:02, outside the entry")});
    builder.chain({0, 1});
    const Result result = read(builder.bytes());
    EXPECT_TRUE(result.warnings().empty());
    EXPECT_EQ(result.directories(), 2U);
    EXPECT_EQ(result.text("Software"), "a long text outside the entry");
    EXPECT_EQ(result.text("Copyright"), "another text outside the entry");
    EXPECT_EQ(textOf(fieldOf(result.value("DigitalCamera"), "ExifVersion")),
              "a version outside the entry");
    EXPECT_EQ(textOf(fieldOf(result.value("GPSInfo"), "GPSDateStamp")),
              "2024:01:02, outside the entry");
    EXPECT_EQ(result.number("Orientation", 1), 2);
}

TEST_P(Entries, ADirectoryOfWidthAndLengthAloneIsKeptInATiff) {
    TiffBuilder builder = newBuilder();
    builder.add({number(256, SHORT, 1), number(257, SHORT, 2)});
    EXPECT_EQ(read(builder.bytes()).directories(), 1U);
}

TEST(JpegEntries, ADirectoryOfWidthAndLengthAloneIsNotKept) {
    for (const Order order : {Order::Little, Order::Big}) {
        TiffBuilder builder(order);
        builder.add({number(256, SHORT, 640), number(257, SHORT, 480)});
        const Result result = readAsJpeg(builder.bytes());
        EXPECT_TRUE(isEmptyResult(result));
        EXPECT_TRUE(result.warnings().empty());
    }
}

TEST(JpegEntries, UnnamedEntriesAloneMakeADirectoryWorthKeeping) {
    TiffBuilder builder;
    builder.add(unknownEntries(3));
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_EQ(result.directories(), 1U);
    EXPECT_EQ(host::sizeOf(result.value("UnknownTags")), (host::Size{3, 1}));
}

TEST(JpegEntries, PointersAreRelativeToTheTiffHeader) {
    TiffBuilder builder(Order::Big);
    builder.add({pointers(34665, LONG, {1}), text(305, "outside the entry")});
    builder.add({text(36864, "0230 and more")});
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_EQ(result.text("Software"), "outside the entry");
    EXPECT_EQ(textOf(fieldOf(result.value("DigitalCamera"), "ExifVersion")), "0230 and more");
}

TEST(JpegEntries, APointerThatLeadsToNothingLeavesAnEmptyDirectory) {
    TiffBuilder builder;
    builder.add({pointers(330, LONG, {1}), pointers(34665, LONG, {1})});
    builder.add({number(256, SHORT, 640)});
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_TRUE(isEmptyResult(result));
    EXPECT_TRUE(result.warnings().empty());
}

}  // namespace
}  // namespace test
