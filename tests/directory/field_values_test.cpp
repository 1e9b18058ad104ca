#include <gtest/gtest.h>

#include <set>

#include "tests/directory/tiff_variants.h"
#include "tests/support/faults.h"
#include "tests/support/temporary_file.h"

// What the fields of a set's struct array hold.

namespace test {
namespace {

class FieldValues : public EveryTiff {};
CORVINEX_FOR_EVERY_TIFF(FieldValues);

TEST_P(FieldValues, ThreeDirectoriesMakeAColumnOfThree) {
    TiffBuilder builder = newBuilder();
    builder.add({mark(1)});
    builder.add({mark(2), text(305, "s")});
    builder.add({mark(3)});
    builder.chain({0, 1, 2});
    const Result result = read(builder.bytes());
    EXPECT_EQ(host::classOf(result.output()), host::ValueClass::Struct);
    EXPECT_EQ(host::sizeOf(result.output()), (host::Size{3, 1}));
    EXPECT_EQ(marks(result), (Marks{1, 2, 3}));
    EXPECT_FALSE(result.isSet("Software", 0));
    EXPECT_EQ(result.text("Software", 1), "s");
    EXPECT_FALSE(result.isSet("Software", 2));
}

TEST_P(FieldValues, OffsetIsThePlaceOfTheEntryCount) {
    TiffBuilder builder = newBuilder();
    builder.add({text(305, "a text outside the entry")});
    builder.add({mark(2)});
    builder.chain({1, 0});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.number("Offset", 0), static_cast<double>(builder.positionOf(1)));
    EXPECT_EQ(result.number("Offset", 1), static_cast<double>(builder.positionOf(0)));
}

TEST_P(FieldValues, FormatVersionIsNeverSet) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(330, LONG, {1})});
    builder.add({mark(2)});
    const Result result = read(builder.bytes());
    EXPECT_FALSE(result.isSet("FormatVersion"));
    EXPECT_EQ(findField(*host::cellAt(result.value("SubIFDs"), 0), "FormatVersion"), nullptr);
}

TEST_P(FieldValues, OfTheFileStandInEveryElementOfEveryMainSet) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(330, LONG, {2})});
    builder.add({mark(2)});
    builder.add({mark(3)});
    builder.chain({0, 1});
    const Bytes bytes = builder.bytes();
    const TemporaryFile file(bytes);
    const Result result = readFile(file.name());
    const bool isBigEndian = tiff().order == Order::Big;
    const std::vector<double> signature(bytes.begin(), bytes.begin() + 4);
    const auto check = [&](const zxArray& set, std::size_t element) {
        EXPECT_EQ(textOf(fieldOf(set, "Filename", element)), file.path().string());
        EXPECT_EQ(textOf(fieldOf(set, "FileModDate", element)), result.text("FileModDate"));
        EXPECT_EQ(numberOf(fieldOf(set, "FileSize", element)), static_cast<double>(bytes.size()));
        EXPECT_EQ(textOf(fieldOf(set, "Format", element)), "tif");
        EXPECT_EQ(numbersOf(fieldOf(set, "FormatSignature", element)), signature);
        EXPECT_EQ(textOf(fieldOf(set, "ByteOrder", element)),
                  isBigEndian ? "big-endian" : "little-endian");
    };
    check(result.output(), 0);
    check(result.output(), 1);
    const zxArray& subIfds = *host::cellAt(result.value("SubIFDs"), 0);
    check(subIfds, 0);
    EXPECT_EQ(numberOf(fieldOf(subIfds, "Offset")), static_cast<double>(builder.positionOf(2)));
}

TEST_P(FieldValues, AreMadeAnewForEveryElement) {
    TiffBuilder builder = newBuilder();
    builder.add({mark(1)});
    builder.add({mark(1)});
    builder.add({mark(1)});
    builder.chain({0, 1, 2});
    const Result result = read(builder.bytes());
    for (const std::string& name : fieldsOf(result.output())) {
        std::set<const zxArray*> values;
        for (std::size_t i = 0; i < 3; ++i) {
            values.insert(result.find(name, i));
        }
        EXPECT_EQ(values.size(), result.isSet(name) ? 3U : 1U) << name;
    }
}

TEST_P(FieldValues, AreAllGivenBackWithTheResult) {
    TiffBuilder builder = newBuilder();
    builder.add({text(305, "s"), pointers(330, LONG, {1}), pointers(34665, LONG, {2}),
                 number(65000, SHORT, 1), text(305, "replaced")});
    builder.add({mark(2)});
    builder.add({pointers(40965, LONG, {3})});
    builder.add({text(1, "R98")});
    const std::size_t before = host::livingValues();
    {
        const Result result = read(builder.bytes());
        EXPECT_GT(host::livingValues(), before + 30);
    }
    EXPECT_EQ(host::livingValues(), before);
}

TEST_P(FieldValues, ALaterTagOfTheSameNameReplacesTheEarlierOne) {
    TiffBuilder builder = newBuilder();
    builder.add({text(305, "a"), number(259, SHORT, 5), text(305, "b"), number(259, SHORT, 7)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.text("Software"), "b");
    EXPECT_EQ(result.text("Compression"), "JPEG");
}

TEST_P(FieldValues, ALaterTagWithoutAValueUnsetsTheField) {
    TiffBuilder builder = newBuilder();
    builder.add(
        {text(305, "a"), numbers(305, ASCII, {}), number(259, SHORT, 5), numbers(259, SHORT, {})});
    const Result result = read(builder.bytes());
    EXPECT_FALSE(result.isSet("Software"));
    EXPECT_FALSE(result.isSet("Compression"));
}

TEST_P(FieldValues, ALaterPointerOfTheSameNameReplacesTheEarlierOne) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34665, LONG, {1}), pointers(34665, LONG, {2})});
    builder.add({text(305, "first")});
    builder.add({text(306, "second")});
    const Result result = read(builder.bytes());
    EXPECT_EQ(fieldsOf(result.value("DigitalCamera")), Names{"DateTime"});
}

TEST_P(FieldValues, UnknownTagsAreThoseOfEachDirectory) {
    TiffBuilder builder = newBuilder();
    builder.add({number(65000, SHORT, 1), number(65001, SHORT, 2)});
    builder.add({mark(1)});
    builder.add({longs(65002, {3, 4, 5})});
    builder.chain({0, 1, 2});
    const Result result = read(builder.bytes());
    EXPECT_EQ(host::sizeOf(result.value("UnknownTags", 0)), (host::Size{2, 1}));
    EXPECT_FALSE(result.isSet("UnknownTags", 1));
    const zxArray& third = result.value("UnknownTags", 2);
    EXPECT_EQ(host::sizeOf(third), (host::Size{1, 1}));
    EXPECT_EQ(fieldsOf(third), (Names{"ID", "Offset", "Value"}));
    EXPECT_EQ(numberOf(fieldOf(third, "ID")), 65002);
    EXPECT_EQ(numberOf(fieldOf(third, "Offset")), static_cast<double>(builder.valueOf(2, 0)));
    EXPECT_EQ(numbersOf(fieldOf(third, "Value")), (std::vector<double>{3, 4, 5}));
}

TEST_P(FieldValues, OfSubIfdsIsARowOfOneStructArrayForEachTarget) {
    TiffBuilder builder = newBuilder();
    if (tiff().layout == Layout::Big) {
        builder.add({pointers(330, LONG, {1, 3}), mark(9)});
    } else {
        builder.add({pointers(330, IFD, {1, 3}), mark(9)});
    }
    builder.add({mark(1)});
    builder.add({mark(2)});
    builder.add({mark(3)});
    builder.nextDirectory(1, 2);
    const Result result = read(builder.bytes());
    EXPECT_EQ(marks(result), Marks{9});
    const zxArray& cells = result.value("SubIFDs");
    EXPECT_EQ(host::classOf(cells), host::ValueClass::Cell);
    ASSERT_EQ(host::sizeOf(cells), (host::Size{1, 2}));
    const zxArray& first = *host::cellAt(cells, 0);
    EXPECT_EQ(host::sizeOf(first), (host::Size{2, 1}));
    EXPECT_EQ(numberOf(fieldOf(first, "Orientation", 0)), 1);
    EXPECT_EQ(numberOf(fieldOf(first, "Orientation", 1)), 2);
    const zxArray& second = *host::cellAt(cells, 1);
    EXPECT_EQ(host::sizeOf(second), (host::Size{1, 1}));
    EXPECT_EQ(numberOf(fieldOf(second, "Orientation")), 3);
}

TEST_P(FieldValues, OfSubIfdsLeaveOutTargetsWithoutADirectory) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(330, LONG, {1, 2, 3})});
    builder.add({mark(1)});
    builder.add({});
    builder.add({mark(3)});
    const Result result = read(builder.bytes());
    const zxArray& cells = result.value("SubIFDs");
    ASSERT_EQ(host::sizeOf(cells), (host::Size{1, 2}));
    EXPECT_EQ(numberOf(fieldOf(*host::cellAt(cells, 1), "Orientation")), 3);
    EXPECT_EQ(result.warnings(),
              Reports{report("numDirectoryEntriesIsZero", {builder.positionOf(2)})});
}

TEST_P(FieldValues, OfPointersAreTheStructArraysOfTheirFirstSet) {
    for (const std::uint16_t tag : std::vector<std::uint16_t>{34665, 34853, 40965}) {
        TiffBuilder builder = newBuilder();
        builder.add({pointers(tag, LONG, {1, 2})});
        builder.add({text(1, "first")});
        builder.add({text(1, "second"), text(2, "second")});
        const Result result = read(builder.bytes());
        const zxArray& set = result.value(fieldsOf(result.output()).back());
        EXPECT_EQ(host::classOf(set), host::ValueClass::Struct);
        EXPECT_EQ(host::sizeOf(set), (host::Size{1, 1}));
        EXPECT_EQ(fieldsOf(set).size(), 1U) << tag;
    }
}

TEST_P(FieldValues, NestWherePointersNest) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(330, LONG, {1})});
    builder.add({pointers(34665, LONG, {2})});
    builder.add({pointers(40965, LONG, {3}), pointers(34853, LONG, {4})});
    builder.add({text(1, "R98")});
    builder.add({text(1, "N")});
    const Result result = read(builder.bytes());
    const zxArray& image = *host::cellAt(result.value("SubIFDs"), 0);
    const zxArray& exif = fieldOf(image, "DigitalCamera");
    EXPECT_EQ(textOf(fieldOf(fieldOf(exif, "InteroperabilityIFD"), "InteroperabilityIndex")),
              "R98");
    EXPECT_EQ(textOf(fieldOf(fieldOf(exif, "GPSInfo"), "GPSLatitudeRef")), "N");
}

TEST_P(FieldValues, AColormapIsScaledOnceInEachElementOfACycle) {
    TiffBuilder builder = newBuilder();
    builder.add({shorts(320, {0, 65535, 65535, 0, 13107, 0})});
    builder.nextDirectory(0, 0);
    const Result result = read(builder.bytes(), {0, 0, 3});
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(host::sizeOf(result.value("Colormap", i)), (host::Size{2, 3}));
        EXPECT_EQ(result.numbers("Colormap", i), (std::vector<double>{0, 1, 1, 0, 0.2, 0}));
    }
}

TEST_P(FieldValues, AreMissingAltogetherWithoutADirectory) {
    TiffBuilder builder = newBuilder();
    builder.add({});
    EXPECT_TRUE(isEmptyResult(read(builder.bytes())));
}

TEST_P(FieldValues, ThatCannotBeMadeEndTheRequestWithoutALeak) {
    TiffBuilder builder = newBuilder();
    builder.add({text(305, "s"), pointers(330, LONG, {1}), pointers(34665, LONG, {2}),
                 number(65000, SHORT, 1)});
    builder.add({mark(2)});
    builder.add({text(305, "s")});
    const Bytes bytes = builder.bytes();
    const std::size_t before = host::livingValues();
    for (const test::Operation operation :
         {test::Operation::zxCreateStructArray, test::Operation::zxSetField,
          test::Operation::zxCreateCellArray, test::Operation::zxSetCell,
          test::Operation::zxCreateDoubleScalar, test::Operation::zxCreateString,
          test::Operation::createFromUtf16, test::Operation::from_utc}) {
        const std::size_t callsBefore = test::callsOf(operation);
        static_cast<void>(read(bytes));
        const std::size_t calls = test::callsOf(operation) - callsBefore;
        EXPECT_GT(calls, 0U);
        for (std::size_t n = 1; n <= calls; ++n) {
            const test::ScopedFault fault(operation, n);
            EXPECT_TRUE(read(bytes).failed());
        }
        EXPECT_EQ(host::livingValues(), before);
    }
}

TEST(JpegFieldValues, OfTheFile) {
    TiffBuilder builder;
    builder.add({mark(6)});
    const JpegWithExif jpeg = jpegWithExif(builder.bytes());
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_EQ(result.text("Format"), "jpg");
    EXPECT_EQ(result.number("FileSize"), static_cast<double>(jpeg.bytes.size()));
    EXPECT_EQ(host::sizeOf(result.value("FormatSignature")), (host::Size{0, 0}));
    EXPECT_EQ(host::classOf(result.value("FormatSignature")), host::ValueClass::Double);
    EXPECT_FALSE(result.isSet("FormatVersion"));
    EXPECT_EQ(result.number("Orientation"), 6);
}

TEST(JpegFieldValues, OfSubIfdsAreThoseOfAJpegToo) {
    TiffBuilder builder;
    builder.add({pointers(330, LONG, {1})});
    builder.add({mark(6)});
    const Result result = readAsJpeg(builder.bytes());
    const zxArray& set = *host::cellAt(result.value("SubIFDs"), 0);
    EXPECT_EQ(textOf(fieldOf(set, "Format")), "jpg");
    EXPECT_EQ(numberOf(fieldOf(set, "ColorType")), -1);
    EXPECT_EQ(fieldsOf(set).size(), 11U);
}

}  // namespace
}  // namespace test
