#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/single_directory.h"

// Colormap, SampleFormat, ImageSourceData, and tags without a value.

namespace {

using namespace test;

Numbers ramp(std::size_t count) {
    Numbers values;
    for (std::size_t i = 0; i < count; ++i) {
        values.push_back(i * 61 % 65536);
    }
    return values;
}

std::vector<double> scaled(const Numbers& values, std::size_t count) {
    std::vector<double> expected;
    for (std::size_t i = 0; i < count; ++i) {
        expected.push_back(static_cast<double>(values[i]) / 65535.0);
    }
    return expected;
}

std::vector<std::string> wordsOf(const zxArray& cells) {
    std::vector<std::string> words;
    for (std::size_t i = 0; i < host::sizeOf(cells).columns; ++i) {
        words.push_back(textOf(*host::cellAt(cells, i)));
    }
    return words;
}

TEST(Colormap, BecomesAMatrixOfThreeColumnsFromZeroToOne) {
    const Numbers values = ramp(768);
    for (const Container& container : containers) {
        SCOPED_TRACE(container);
        const Result result = readDirectory({shorts(320, values)}, container);
        EXPECT_EQ(host::sizeOf(result.value("Colormap")), (host::Size{256, 3}));
        EXPECT_EQ(result.numbers("Colormap"), scaled(values, 768));
    }
}

TEST(Colormap, GivesRedGreenAndBlueAColumnEach) {
    const Result result = readDirectory({shorts(320, {65535, 0, 0, 65535, 13107, 26214})});
    EXPECT_EQ(host::sizeOf(result.value("Colormap")), (host::Size{2, 3}));
    EXPECT_EQ(result.numbers("Colormap"), (std::vector<double>{1, 0, 0, 1, 0.2, 0.4}));
}

TEST(Colormap, LosesTheRemainderOfADivisionByThree) {
    const Numbers values = ramp(770);
    const Result result = readDirectory({shorts(320, values)});
    EXPECT_EQ(host::sizeOf(result.value("Colormap")), (host::Size{256, 3}));
    EXPECT_EQ(result.numbers("Colormap"), scaled(values, 768));
    const Result two = readDirectory({shorts(320, {1, 2})});
    EXPECT_EQ(host::sizeOf(two.value("Colormap")), (host::Size{0, 3}));
}

TEST(Colormap, WithoutNumbersHasNoValue) {
    EXPECT_FALSE(readDirectory({shorts(320, {})}).isSet("Colormap"));
    EXPECT_FALSE(readDirectory({text(320, "red")}).isSet("Colormap"));
    EXPECT_FALSE(readDirectory({number(274, SHORT, 1)}).isSet("Colormap"));
}

TEST(Colormap, OfOtherTypesIsDividedAllTheSame) {
    const Result result = readDirectory({numbers(320, BYTE, {255, 0, 51})});
    EXPECT_EQ(result.numbers("Colormap"), (std::vector<double>{255 / 65535.0, 0, 51 / 65535.0}));
}

TEST(Colormap, InAnExifDirectoryIsAMatrixToo) {
    const Result result = readSubDirectory(exifPointer, {shorts(320, {65535, 0, 65535})});
    EXPECT_EQ(host::sizeOf(fieldOf(result.value(exifPointer.field), "Colormap")),
              (host::Size{1, 3}));
}

TEST(SampleFormat, OfOneValueIsItsWord) {
    const char* const words[] = {"Unsigned integer",    "Two's complement signed integer",
                                 "IEEE floating point", "Undefined",
                                 "Complex integer",     "Complex IEEE floating point"};
    for (std::uint64_t code = 1; code <= 6; ++code) {
        EXPECT_EQ(readDirectory({number(339, SHORT, code)}).text("SampleFormat"), words[code - 1]);
    }
}

TEST(SampleFormat, OfAnotherCodeIsUnknown) {
    for (const std::uint64_t code : {0U, 7U, 9U, 65535U}) {
        EXPECT_EQ(readDirectory({number(339, SHORT, code)}).text("SampleFormat"), "unknown");
    }
}

TEST(SampleFormat, OfSeveralValuesIsARowOfWords) {
    const Result result = readDirectory({shorts(339, {1, 1, 1})});
    EXPECT_EQ(host::classOf(result.value("SampleFormat")), host::ValueClass::Cell);
    EXPECT_EQ(host::sizeOf(result.value("SampleFormat")), (host::Size{1, 3}));
    EXPECT_EQ(wordsOf(result.value("SampleFormat")),
              std::vector<std::string>(3, "Unsigned integer"));
    EXPECT_EQ(wordsOf(readDirectory({shorts(339, {3, 9})}).value("SampleFormat")),
              (std::vector<std::string>{"IEEE floating point", "unknown"}));
}

TEST(SampleFormat, WithoutNumbersIsARowOfNoCells) {
    for (const Field& field : {shorts(339, {}), text(339, "3")}) {
        const Result result = readDirectory({field});
        EXPECT_EQ(host::classOf(result.value("SampleFormat")), host::ValueClass::Cell);
        EXPECT_EQ(host::sizeOf(result.value("SampleFormat")), (host::Size{1, 0}));
    }
}

TEST(SampleFormat, IsTruncatedTowardZeroAndHeldAtTheLimits) {
    const auto wordOf = [](double value) {
        return readDirectory({doubles(339, {value})}).text("SampleFormat");
    };
    EXPECT_EQ(wordOf(3.9), "IEEE floating point");
    EXPECT_EQ(wordOf(-1), "unknown");
    EXPECT_EQ(wordOf(std::ldexp(1, 32) + 1), "unknown");
    EXPECT_EQ(wordOf(-std::ldexp(1, 32) + 1), "unknown");
    EXPECT_EQ(wordOf(std::nan("")), "unknown");
    EXPECT_EQ(wordOf(std::numeric_limits<double>::infinity()), "unknown");
}

TEST(ImageSourceData, IsARowOfItsBytes) {
    const Numbers values{0, 1, 2, 3, 4, 250, 251, 252, 253, 255};
    const std::vector<unsigned char> bytes(values.begin(), values.end());
    for (const Type type : {BYTE, UNDEFINED, ASCII, SBYTE}) {
        for (const Container& container : containers) {
            SCOPED_TRACE(container);
            const Result result = readDirectory({numbers(37724, type, values)}, container);
            const zxArray& value = result.value("ImageSourceData");
            EXPECT_EQ(host::classOf(value), host::ValueClass::Uint8);
            EXPECT_EQ(host::sizeOf(value), (host::Size{1, 10}));
            const auto read = host::bytesOf(value);
            EXPECT_EQ(std::vector(read.begin(), read.end()), bytes);
        }
    }
}

TEST(ImageSourceData, OfWiderTypesIsTheFirstBytesInNativeOrder) {
    struct Row {
        Field field;
        std::vector<unsigned char> bytes;
    };
    const Row rows[] = {
        {shorts(37724, {0x0102, 0x0304, 0x0506}), {2, 1, 4}},
        {longs(37724, {0x01020304, 0x05060708}), {4, 3}},
        {numbers(37724, LONG8, {0x0102030405060708}), {8}},
        {rationals(37724, RATIONAL, {{0x01020304, 0}, {1, 0}}), {4, 3}},
        {number(37724, IFD, 0x01020304), {4}},
    };
    for (const auto& [field, bytes] : rows) {
        for (const Container& container : containers) {
            SCOPED_TRACE(container);
            const Result result = readDirectory({field}, container);
            const auto read = host::bytesOf(result.value("ImageSourceData"));
            EXPECT_EQ(std::vector(read.begin(), read.end()), bytes);
            EXPECT_EQ(result.warnings(), Reports{});
        }
    }
}

TEST(ImageSourceData, WithoutComponentsIsARowOfNoBytes) {
    const Result result = readDirectory({numbers(37724, UNDEFINED, {})});
    EXPECT_EQ(host::classOf(result.value("ImageSourceData")), host::ValueClass::Uint8);
    EXPECT_EQ(host::sizeOf(result.value("ImageSourceData")), (host::Size{1, 0}));
}

TEST(TagValues, WithoutComponentsLeaveTheFieldUnset) {
    for (const Type type : {BYTE, ASCII, SHORT, LONG, RATIONAL, SBYTE, UNDEFINED, SSHORT, SLONG,
                            SRATIONAL, FLOAT, DOUBLE, LONG8, SLONG8}) {
        for (const Container& container : containers) {
            SCOPED_TRACE(container);
            const Result result = readDirectory({at(50714, type, 0, 0xFFFF)}, container);
            EXPECT_TRUE(result.hasField("BlackLevel"));
            EXPECT_FALSE(result.isSet("BlackLevel"));
            EXPECT_EQ(result.warnings(), Reports{report("zeroComponentCount", {"BlackLevel"})});
        }
    }
}

TEST(TagValues, OfNumbersAreDoubleRows) {
    const Result result = readDirectory({shorts(50714, {4, 5, 6, 7})});
    EXPECT_EQ(host::classOf(result.value("BlackLevel")), host::ValueClass::Double);
    EXPECT_EQ(host::sizeOf(result.value("BlackLevel")), (host::Size{1, 4}));
}

TEST(TagValues, OfALaterTagOfTheSameNameReplaceTheEarlierOne) {
    EXPECT_EQ(
        readDirectory({number(50714, SHORT, 1), number(50714, SHORT, 2)}).number("BlackLevel"), 2);
    EXPECT_FALSE(readDirectory({number(50714, SHORT, 1), shorts(50714, {})}).isSet("BlackLevel"));
}

}  // namespace
