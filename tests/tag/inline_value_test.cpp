#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/single_directory.h"
#include "vocabulary/field_types.h"

// Where a value lies: inside its entry up to 4 bytes (8 in BigTIFF), at its offset beyond.

namespace {

using namespace test;

constexpr std::uint16_t unnamedTag = 60000;

Field sequence(Type type, std::size_t count) {
    Rationals quotients;
    std::vector<float> singles;
    std::vector<double> reals;
    Numbers integers;
    for (std::size_t i = 1; i <= count; ++i) {
        quotients.emplace_back(static_cast<std::int64_t>(2 * i), 2);
        singles.push_back(static_cast<float>(i));
        reals.push_back(static_cast<double>(i));
        integers.push_back(i);
    }
    switch (type) {
        case RATIONAL:
        case SRATIONAL:
            return rationals(unnamedTag, type, quotients);
        case FLOAT:
            return floats(unnamedTag, singles);
        case DOUBLE:
            return doubles(unnamedTag, reals);
        default:
            return numbers(unnamedTag, type, integers);
    }
}

/// What the values 1, 2, ... of sequence() are read as.
std::vector<double> expectedValues(Type type, std::size_t count) {
    std::vector<double> values;
    for (std::size_t i = 0; i < count; ++i) {
        // Of 8-byte signed integers every second value is the upper half of the one before.
        const bool isUpperHalf = type == SLONG8 && i % 2 == 1;
        const std::size_t element = type == SLONG8 ? i / 2 : i;
        values.push_back(isUpperHalf ? 0 : static_cast<double>(element + 1));
    }
    return values;
}

class ValuePlace : public testing::TestWithParam<std::tuple<Type, Container>> {};

TEST_P(ValuePlace, IsTheEntryUpToItsLimitAndTheOffsetBeyond) {
    const auto& [type, container] = GetParam();
    const std::size_t most = inlineLimit(container) / corvinex::getElementWidth(type) + 2;
    for (std::size_t count = 1; count <= most; ++count) {
        SCOPED_TRACE(count);
        TiffBuilder builder(container.order, container.layout);
        builder.add({sequence(type, count)});
        const Result result = read(builder.bytes());
        EXPECT_EQ(result.warnings(), Reports{});
        const zxArray& records = unknownTagsOf(result);
        const bool isInside = count * corvinex::getElementWidth(type) <= inlineLimit(container);
        EXPECT_EQ(numberOf(fieldOf(records, "Offset")),
                  isInside ? 0 : static_cast<double>(builder.valueOf(0, 0)));
        EXPECT_EQ(numbersOf(fieldOf(records, "Value")), expectedValues(type, count));
    }
}

INSTANTIATE_TEST_SUITE_P(NumericTypes, ValuePlace,
                         testing::Combine(testing::Values(BYTE, SHORT, LONG, RATIONAL, SBYTE,
                                                          UNDEFINED, SSHORT, SLONG, SRATIONAL,
                                                          FLOAT, DOUBLE, LONG8, SLONG8),
                                          testing::ValuesIn(containers)));

TEST(ValuePlaces, ATextLiesInTheEntryUpToItsLimit) {
    for (const Container& container : containers) {
        SCOPED_TRACE(container);
        const std::string longest(inlineLimit(container), 'x');
        TiffBuilder builder(container.order, container.layout);
        builder.add({ascii(unnamedTag, longest), ascii(unnamedTag + 1, longest + 'y')});
        const Result result = read(builder.bytes());
        const zxArray& records = unknownTagsOf(result);
        EXPECT_EQ(textOf(fieldOf(records, "Value", 0)), longest);
        EXPECT_EQ(numberOf(fieldOf(records, "Offset", 0)), 0);
        EXPECT_EQ(textOf(fieldOf(records, "Value", 1)), longest + 'y');
        EXPECT_EQ(numberOf(fieldOf(records, "Offset", 1)),
                  static_cast<double>(builder.valueOf(0, 1)));
    }
}

TEST(ValuePlaces, BytesOfTheValueFieldPastTheValueAreIgnored) {
    for (const Container& container : containers) {
        SCOPED_TRACE(container);
        TiffBuilder builder(container.order, container.layout);
        builder.add({number(50714, BYTE, 3)});
        Bytes bytes = builder.bytes();
        const std::size_t valueField = container.layout == Layout::Big ? 12 : 8;
        for (std::size_t i = 1; i < inlineLimit(container); ++i) {
            bytes[builder.entryOf(0, 0) + valueField + i] = 0xEE;
        }
        EXPECT_EQ(read(bytes).number("BlackLevel"), 3);
    }
}

TEST(ValuePlaces, OffsetsAreRelativeToTheHeader) {
    TiffBuilder builder;
    builder.add({longs(unnamedTag, {7, 8, 9})});
    const Result result = readAsJpeg(builder.bytes());
    const zxArray& records = unknownTagsOf(result);
    EXPECT_EQ(numbersOf(fieldOf(records, "Value")), (std::vector<double>{7, 8, 9}));
    EXPECT_EQ(numberOf(fieldOf(records, "Offset")), static_cast<double>(builder.valueOf(0, 0)));
}

TEST(ValuePlaces, SeveralEntriesMayShareTheirValueBytes) {
    TiffBuilder builder;
    builder.add({longs(50714, {7, 8}), at(50717, LONG, 2, 0)});
    const std::uint64_t shared = builder.valueOf(0, 0);
    TiffBuilder sharing;
    sharing.add({longs(50714, {7, 8}), at(50717, LONG, 2, shared)});
    const Result result = read(sharing.bytes());
    EXPECT_EQ(result.numbers("BlackLevel"), result.numbers("WhiteLevel"));
}

}  // namespace
