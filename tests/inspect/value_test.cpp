#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>
#include <variant>

#include "tests/inspect/inspected.h"

namespace {

using corvinex::inspect::Elements;
using corvinex::inspect::Entry;
using corvinex::inspect::FieldType;
using corvinex::inspect::Rational;
using corvinex::inspect::SRational;
using corvinex::inspect::Value;
using inspect_test::Bytes;
using inspect_test::inspect;
using test::Layout;
using test::Order;

constexpr std::uint16_t tag = 61'000;

template <class Number>
std::vector<Number> elementsOf(const Value& value) {
    const auto elements = std::get<std::span<const Number>>(value.elements());
    return {elements.begin(), elements.end()};
}

/// Elements with all bytes different, as many as asked for.
test::Field fieldOf(test::Type type, std::size_t count) {
    test::Numbers numbers;
    for (std::size_t i = 0; i < count; ++i) {
        numbers.push_back(0x8182838485868788U + i * 0x0101010101010101U);
    }
    return test::numbers(tag, type, numbers);
}

template <class Number>
void expectElements(test::Type type) {
    for (const Order order : {Order::Little, Order::Big}) {
        for (const Layout layout : {Layout::Classic, Layout::Big}) {
            for (std::size_t count = 1; count <= 10; ++count) {
                const test::Field field = fieldOf(type, count);
                const auto file = inspect(inspect_test::fileWith({field}, order, layout));
                const Entry& entry = file.entries()[0];
                const bool isInline = count * sizeof(Number) <= (layout == Layout::Big ? 8U : 4U);
                ASSERT_EQ(entry.offset().has_value(), !isInline);
                std::vector<Number> expected;
                for (const std::uint64_t number : field.elements) {
                    expected.push_back(static_cast<Number>(number));
                }
                ASSERT_EQ(elementsOf<Number>(entry.value().value()), expected);
                ASSERT_EQ(entry.byteCount(), count * sizeof(Number));
            }
        }
    }
}

}  // namespace

TEST(Values, OfEachIntegerTypeAreExactInBothOrdersAndLayoutsAroundTheInlineLimit) {
    expectElements<std::uint8_t>(test::BYTE);
    expectElements<std::int8_t>(test::SBYTE);
    expectElements<std::uint8_t>(test::UNDEFINED);
    expectElements<std::uint16_t>(test::SHORT);
    expectElements<std::int16_t>(test::SSHORT);
    expectElements<std::uint32_t>(test::LONG);
    expectElements<std::uint32_t>(test::IFD);
    expectElements<std::int32_t>(test::SLONG);
    expectElements<std::uint64_t>(test::LONG8);
    expectElements<std::uint64_t>(test::IFD8);
    expectElements<std::int64_t>(test::SLONG8);
}

TEST(Values, OfRationalsKeepBothNumbersAsTheyStand) {
    const test::Rationals numbers{{6, 4}, {1, 0}, {0xFFFFFFFF, 2}};
    const auto file = inspect(inspect_test::fileWith(
        {test::rationals(1, test::RATIONAL, numbers), test::rationals(2, test::SRATIONAL, numbers)},
        Order::Big));
    EXPECT_EQ(elementsOf<Rational>(*file.entries()[0].value()),
              (std::vector<Rational>{{6, 4}, {1, 0}, {0xFFFFFFFF, 2}}));
    EXPECT_EQ(elementsOf<SRational>(*file.entries()[1].value()),
              (std::vector<SRational>{{6, 4}, {1, 0}, {-1, 2}}));
}

TEST(Values, OfFloatingTypesKeepEachBit) {
    const std::vector<float> floats{0.1F, -0.0F, std::numeric_limits<float>::denorm_min()};
    const std::vector<double> doubles{0.1, -1e300, std::numeric_limits<double>::infinity()};
    const auto file = inspect(
        inspect_test::fileWith({test::floats(1, floats), test::doubles(2, doubles)}, Order::Big));
    EXPECT_EQ(elementsOf<float>(*file.entries()[0].value()), floats);
    EXPECT_TRUE(std::signbit(elementsOf<float>(*file.entries()[0].value())[1]));
    EXPECT_EQ(elementsOf<double>(*file.entries()[1].value()), doubles);
}

TEST(Values, OfTextsKeepTheirZeros) {
    const std::string_view text("ab\0c\0", 5);
    const auto file = inspect(inspect_test::fileWith({test::ascii(270, text)}));
    const Value value = *file.entries()[0].value();
    EXPECT_EQ(std::get<std::string_view>(value.elements()), text);
}

TEST(Values, ThatHoldTextsGiveThemInUtf8) {
    using Texts = std::optional<std::vector<std::string>>;
    const auto textsOf = [](const test::Field& field) {
        const auto file = inspect(inspect_test::fileWith({field}));
        const Entry& entry = file.entries()[0];
        return entry.texts(entry.value().value());
    };
    const auto undefined = [](std::uint16_t number, std::string_view characters) {
        const test::Numbers bytes(characters.begin(), characters.end());
        return test::numbers(number, test::UNDEFINED, bytes);
    };
    using namespace std::literals;
    EXPECT_EQ(textsOf(test::ascii(271, "Caf\xC3\xA9\0rest"sv)), Texts({"Caf\u00E9"}));
    EXPECT_EQ(textsOf(test::ascii(33432, "One\0Two\0"sv)), Texts({"One", "Two"}));
    EXPECT_EQ(textsOf(undefined(37510, "UNICODE\0H\0i\0"sv)), Texts({"Hi"}));
    EXPECT_EQ(textsOf(undefined(37500, "Maker"sv)), std::nullopt);
    EXPECT_EQ(textsOf(test::number(256, test::SHORT, 7)), std::nullopt);
}

TEST(Values, OfUnknownTypesAreTheValueFieldAsItStands) {
    for (const Layout layout : {Layout::Classic, Layout::Big}) {
        const auto file = inspect(
            inspect_test::fileWith({test::at(tag, 99, 1000, 0x01020304)}, Order::Big, layout));
        const Entry& entry = file.entries()[0];
        const Value value = *entry.value();
        EXPECT_EQ(value.size(), layout == Layout::Big ? 8U : 4U);
        EXPECT_EQ(std::to_integer<int>(value.bytes().back()), 4);
        EXPECT_EQ(entry.offset(), std::nullopt);
        EXPECT_EQ(entry.type(), std::nullopt);
        EXPECT_EQ(entry.typeCode(), 99);
    }
}

TEST(Values, OfEveryTypeCodeAreReadOrKnownToBeUnknown) {
    for (std::uint32_t code = 0; code <= 0xFFFF; code += code < 300 ? 1 : 977) {
        const auto type = static_cast<std::uint16_t>(code);
        const auto file = inspect(inspect_test::fileWith({test::at(tag, type, 1, 8)}));
        const Entry& entry = file.entries()[0];
        const bool isKnown = (code >= 1 && code <= 13) || (code >= 16 && code <= 18) || code == 129;
        ASSERT_EQ(entry.type().has_value(), isKnown) << code;
        ASSERT_EQ(entry.typeName().empty(), !isKnown) << code;
        ASSERT_TRUE(entry.value()) << code;
    }
}

TEST(Values, AreMissingForACountOfZeroOfAnyType) {
    for (const std::uint16_t type : std::initializer_list<std::uint16_t>{1, 2, 5, 12, 99}) {
        const auto file = inspect(inspect_test::fileWith({test::at(tag, type, 0, 8)}));
        EXPECT_FALSE(file.entries()[0].value());
        EXPECT_EQ(file.entries()[0].offset(), std::nullopt);
    }
}

TEST(Values, AreMissingWhenTheyDoNotLieInTheFileWhole) {
    Bytes bytes = inspect_test::fileWith({test::at(tag, test::LONG, 4, 26)});
    bytes.resize(26 + 16);
    EXPECT_TRUE(inspect(bytes).entries()[0].value());
    bytes.pop_back();
    const auto file = inspect(bytes);
    EXPECT_FALSE(file.entries()[0].value());
    EXPECT_EQ(file.entries()[0].offset(), 26U);
}

TEST(Values, AreMissingForCountsAndOffsetsWhoseSumsWouldWrap) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    const std::vector<test::Field> fields{
        test::at(1, test::LONG8, most / 8 + 1, 8), test::at(2, test::LONG8, most, 8),
        test::at(3, test::BYTE, 100, most - 50), test::at(4, test::BYTE, most, most)};
    const auto file = inspect(inspect_test::fileWith(fields, Order::Little, Layout::Big));
    for (const Entry& entry : file.entries()) {
        EXPECT_FALSE(entry.value()) << entry.number();
    }
    EXPECT_EQ(file.entries()[3].offset(), most);
}

TEST(Values, HavePlacesThatStopAtTheLargestNumber) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    Bytes bytes = inspect_test::fileWith({test::at(tag, test::BYTE, 100, most - 2)}, Order::Little,
                                         Layout::Big);
    bytes.insert(bytes.begin(), 16, 0);
    const auto file = inspect(bytes, {.headerOffset = 16});
    EXPECT_EQ(file.entries()[0].offset(), most);
}
