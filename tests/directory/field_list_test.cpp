#include <gtest/gtest.h>

#include "tests/directory/tiff_variants.h"
#include "tests/support/default_fields.h"

// Which fields a set's struct array has, and in which order.

namespace test {
namespace {

Names joined(Names first, const Names& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

const Names defaultFields = allTiffFields();

class FieldList : public EveryTiff {};
CORVINEX_FOR_EVERY_TIFF(FieldList);

TEST_P(FieldList, OfATiffStartsWithTheDefaultFieldsInOneOrder) {
    TiffBuilder builder = newBuilder();
    builder.add({pageId(1)});
    EXPECT_EQ(fieldsOf(read(builder.bytes()).output()), defaultFields);
}

TEST_P(FieldList, HasTagFieldsInAscendingOrderOfTheirNumbersAndUnknownTagsLast) {
    TiffBuilder builder = newBuilder();
    builder.add({number(65000, SHORT, 1), pointers(34665, LONG, {1}), text(306, "d"),
                 text(33432, "c"), text(305, "s"), number(255, SHORT, 1),
                 pointers(34853, LONG, {2})});
    builder.add({text(36864, "0230")});
    builder.add({text(1, "N")});
    EXPECT_EQ(fieldsOf(read(builder.bytes()).output()),
              joined(defaultFields, {"SubFileType", "Software", "DateTime", "Copyright",
                                     "DigitalCamera", "GPSInfo", "UnknownTags"}));
}

TEST_P(FieldList, JoinsTheTagsOfAllDirectories) {
    TiffBuilder builder = newBuilder();
    builder.add({text(33432, "c")});
    builder.add({text(305, "s"), number(65000, SHORT, 1)});
    builder.add({text(315, "a"), text(270, "i"), text(33432, "c")});
    builder.chain({0, 1, 2});
    EXPECT_EQ(fieldsOf(read(builder.bytes()).output()),
              joined(defaultFields,
                     {"ImageDescription", "Software", "Artist", "Copyright", "UnknownTags"}));
}

TEST_P(FieldList, HasNoSecondFieldForATagOnTheDefaultList) {
    TiffBuilder builder = newBuilder();
    builder.add({number(259, SHORT, 5), number(262, SHORT, 2), longs(273, {8}),
                 number(322, LONG, 16), number(263, SHORT, 2), pageId(4)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(fieldsOf(result.output()), defaultFields);
    EXPECT_EQ(result.text("Compression"), "LZW");
    EXPECT_EQ(result.number("TileWidth"), 16);
    EXPECT_EQ(result.number("Thresholding"), 2);
}

TEST_P(FieldList, KeepsTheFieldOfATagWithoutAValue) {
    TiffBuilder builder = newBuilder();
    builder.add({numbers(305, ASCII, {})});
    const Result result = read(builder.bytes());
    EXPECT_EQ(fieldsOf(result.output()), joined(defaultFields, {"Software"}));
    EXPECT_FALSE(result.isSet("Software"));
}

TEST_P(FieldList, HasNothingOfADroppedEntry) {
    TiffBuilder builder = newBuilder();
    builder.add({at(305, 14, 1, 0), at(65000, 14, 1, 0)});
    EXPECT_EQ(fieldsOf(read(builder.bytes()).output()), defaultFields);
}

TEST_P(FieldList, HasNothingOfDirectoriesBeyondTheLimit) {
    TiffBuilder builder = newBuilder();
    builder.add({text(306, "d")});
    builder.add({text(305, "s"), number(65000, SHORT, 1)});
    builder.chain({0, 1});
    EXPECT_EQ(fieldsOf(read(builder.bytes(), {0, 0, 1}).output()),
              joined(defaultFields, {"DateTime"}));
}

TEST_P(FieldList, OfAnExifSetHasItsTagsAlone) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34665, LONG, {1})});
    builder.add({number(65000, SHORT, 1), number(41990, SHORT, 0), number(259, SHORT, 6),
                 pointers(40965, LONG, {2}), rationals(33434, RATIONAL, {{1, 60}}),
                 number(254, LONG, 1)});
    builder.add({text(1, "R98")});
    EXPECT_EQ(fieldsOf(read(builder.bytes()).value("DigitalCamera")),
              (Names{"NewSubFileType", "Compression", "ExposureTime", "InteroperabilityIFD",
                     "SceneCaptureType", "UnknownTags"}));
}

TEST_P(FieldList, OfAGpsSetHasItsTagsAlone) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34853, LONG, {1})});
    builder.add({text(29, "2024:01:02"), number(500, SHORT, 1), text(1, "N"),
                 numbers(0, BYTE, {2, 3, 0, 0})});
    EXPECT_EQ(fieldsOf(read(builder.bytes()).value("GPSInfo")),
              (Names{"GPSVersionID", "GPSLatitudeRef", "GPSDateStamp", "UnknownTags"}));
}

TEST_P(FieldList, OfAnInteroperabilitySetHasItsTagsAlone) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(40965, LONG, {1})});
    builder.add({number(4097, SHORT, 3), text(2, "0100"), text(1, "R98")});
    EXPECT_EQ(fieldsOf(read(builder.bytes()).value("InteroperabilityIFD")),
              (Names{"InteroperabilityIndex", "InteroperabilityVersion", "RelatedImageWidth"}));
}

TEST_P(FieldList, OfASetOfUnnamedEntriesIsUnknownTagsAlone) {
    for (const std::uint16_t tag : std::vector<std::uint16_t>{34665, 34853, 40965}) {
        TiffBuilder builder = newBuilder();
        builder.add({pointers(tag, LONG, {1})});
        builder.add(unknownEntries(2));
        const Result result = read(builder.bytes());
        const zxArray& set = result.value(fieldsOf(result.output()).back());
        EXPECT_EQ(fieldsOf(set), Names{"UnknownTags"});
        EXPECT_EQ(host::sizeOf(set), (host::Size{1, 1}));
        EXPECT_EQ(host::sizeOf(fieldOf(set, "UnknownTags")), (host::Size{2, 1}));
    }
}

TEST_P(FieldList, OfASubIfdSetIsThatOfAMainSet) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(330, LONG, {1})});
    builder.add({text(306, "d"), number(65000, SHORT, 1)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(fieldsOf(result.output()), joined(defaultFields, {"SubIFDs"}));
    EXPECT_EQ(fieldsOf(*host::cellAt(result.value("SubIFDs"), 0)),
              joined(defaultFields, {"DateTime", "UnknownTags"}));
}

TEST_P(FieldList, OfSubIfdsInAnExifDirectoryIsThatOfAMainSetToo) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34665, LONG, {1})});
    builder.add({pointers(330, LONG, {2})});
    builder.add({text(306, "d")});
    const Result result = read(builder.bytes());
    const zxArray& cells = fieldOf(result.value("DigitalCamera"), "SubIFDs");
    EXPECT_EQ(fieldsOf(*host::cellAt(cells, 0)), joined(defaultFields, {"DateTime"}));
}

TEST_P(FieldList, OfEachSubIfdSetIsItsOwn) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(330, LONG, {1, 2})});
    builder.add({text(305, "s")});
    builder.add({text(306, "d")});
    const Result result = read(builder.bytes());
    const zxArray& cells = result.value("SubIFDs");
    EXPECT_EQ(fieldsOf(*host::cellAt(cells, 0)), joined(defaultFields, {"Software"}));
    EXPECT_EQ(fieldsOf(*host::cellAt(cells, 1)), joined(defaultFields, {"DateTime"}));
}

TEST(JpegFieldList, HasTheFieldsOfTheFileAndThenEveryTag) {
    TiffBuilder builder(Order::Big);
    builder.add({number(65000, SHORT, 1), text(305, "s"), number(274, SHORT, 1),
                 shorts(258, {8, 8, 8}), number(259, SHORT, 6), number(254, LONG, 0),
                 longs(273, {8})});
    EXPECT_EQ(fieldsOf(readAsJpeg(builder.bytes()).output()),
              joined(commonFields, {"NewSubFileType", "BitsPerSample", "Compression",
                                    "StripOffsets", "Orientation", "Software", "UnknownTags"}));
}

TEST(JpegFieldList, HasNeitherByteOrderNorOffset) {
    TiffBuilder builder;
    builder.add({pageId(1)});
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_FALSE(result.hasField("ByteOrder"));
    EXPECT_FALSE(result.hasField("Offset"));
}

}  // namespace
}  // namespace test
