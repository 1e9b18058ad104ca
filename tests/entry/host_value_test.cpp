#include "entry/values/host_value.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "entry/reports/fatal_errors.h"
#include "host/messages/reports.h"
#include "host/values/value.h"
#include "tests/support/faults.h"
#include "tests/support/module_call.h"

namespace {

using corvinex::HostArray;
using host::Size;
using host::ValueClass;
using test::Operation;

constexpr std::array<const char*, 2> names{"first", "second"};

}  // namespace

TEST(HostValues, ANumberIsA1By1Double) {
    const HostArray value = corvinex::makeNumber(2.5);
    EXPECT_EQ(host::sizeOf(*value), (Size{1, 1}));
    EXPECT_EQ(test::numbersOf(*value), std::vector{2.5});
}

TEST(HostValues, EmptyNumbersAreA0By0Double) {
    const HostArray value = corvinex::makeEmptyNumbers();
    EXPECT_EQ(host::classOf(*value), ValueClass::Double);
    EXPECT_EQ(host::sizeOf(*value), (Size{0, 0}));
}

TEST(HostValues, NumbersAreStoredColumnByColumn) {
    const std::vector<double> numbers{1, 2, 3, 4, 5, 6};
    const HostArray value = corvinex::makeNumbers(numbers, 2, 3);
    EXPECT_EQ(host::sizeOf(*value), (Size{2, 3}));
    EXPECT_EQ(test::numbersOf(*value), numbers);
}

TEST(HostValues, ARowOfNumbersMayBeEmpty) {
    EXPECT_EQ(host::sizeOf(*corvinex::makeNumberRow({})), (Size{1, 0}));
    EXPECT_EQ(host::sizeOf(*corvinex::makeNumberRow(std::vector<double>{7, 8})), (Size{1, 2}));
}

TEST(HostValues, BytesAreARowOfUint8) {
    const std::vector<unsigned char> bytes{0, 127, 255};
    const HostArray value = corvinex::makeByteRow(bytes);
    EXPECT_EQ(host::sizeOf(*value), (Size{1, 3}));
    const auto stored = host::bytesOf(*value);
    EXPECT_EQ(std::vector<unsigned char>(stored.begin(), stored.end()), bytes);
}

TEST(HostValues, TextsAreCharacterRows) {
    const HostArray word = corvinex::makeWord("little-endian");
    EXPECT_EQ(host::sizeOf(*word), (Size{1, 13}));
    EXPECT_EQ(host::textOf(*word), u"little-endian");
    EXPECT_EQ(host::textOf(*corvinex::makeText(u"\u65e5\xD800")), u"\u65e5\xD800");
    EXPECT_EQ(host::textOf(*corvinex::makeUtf8Text("\xE6\x97\xA5")), u"\u65e5");
    EXPECT_EQ(host::sizeOf(*corvinex::makeText(u"")), (Size{1, 0}));
}

TEST(HostValues, AnEmptyTextIsA0By0CharArray) {
    const HostArray value = corvinex::makeEmptyText();
    EXPECT_EQ(host::classOf(*value), ValueClass::Char);
    EXPECT_EQ(host::sizeOf(*value), (Size{0, 0}));
}

TEST(HostValues, ACellRowStartsWithEmptyCellsAndOwnsWhatIsStored) {
    const std::size_t before = host::livingValues();
    {
        const HostArray cells = corvinex::makeCellRow(2);
        EXPECT_EQ(host::sizeOf(*cells), (Size{1, 2}));
        EXPECT_EQ(host::cellAt(*cells, 0), nullptr);
        corvinex::setCell(*cells, 1, corvinex::makeNumber(3));
        EXPECT_EQ(test::numberOf(*host::cellAt(*cells, 1)), 3);
    }
    EXPECT_EQ(host::livingValues(), before);
}

TEST(HostValues, AStructColumnHasItsFieldsInOrderAndUnset) {
    const HostArray structs = corvinex::makeStructColumn(3, names);
    EXPECT_EQ(host::sizeOf(*structs), (Size{3, 1}));
    EXPECT_EQ(test::fieldsOf(*structs), (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(test::findField(*structs, "second", 2), nullptr);
}

TEST(HostValues, AFieldIsReplacedAndNullUnsetsIt) {
    const std::size_t before = host::livingValues();
    {
        const HostArray structs = corvinex::makeStructColumn(1, names);
        corvinex::setField(*structs, 0, "first", corvinex::makeNumber(1));
        corvinex::setField(*structs, 0, "first", corvinex::makeNumber(2));
        EXPECT_EQ(test::numberOf(test::fieldOf(*structs, "first")), 2);
        corvinex::setField(*structs, 0, "first", nullptr);
        EXPECT_EQ(test::findField(*structs, "first"), nullptr);
    }
    EXPECT_EQ(host::livingValues(), before);
}

TEST(HostValues, AStoreThatFailsLeavesNothingBehind) {
    const HostArray cells = corvinex::makeCellRow(1);
    const HostArray structs = corvinex::makeStructColumn(1, names);
    const std::size_t before = host::livingValues();
    {
        const test::ScopedFault fault(Operation::zxSetCell, 1);
        EXPECT_THROW(corvinex::setCell(*cells, 0, corvinex::makeNumber(1)), test::OperationFailed);
    }
    {
        const test::ScopedFault fault(Operation::zxSetField, 1);
        EXPECT_THROW(corvinex::setField(*structs, 0, "first", corvinex::makeNumber(1)),
                     test::OperationFailed);
    }
    EXPECT_EQ(host::livingValues(), before);
}

TEST(TextArgument, OfAStringScalarOrARowIsItsUnits) {
    const HostArray row = host::makeText(u"a row");
    const HostArray scalar = host::makeStringScalar(u"a string");
    EXPECT_EQ(corvinex::getTextArgument(*row), u"a row");
    EXPECT_EQ(corvinex::getTextArgument(*scalar), u"a string");
}

TEST(TextArgument, OfAnythingElseIsEmpty) {
    EXPECT_EQ(corvinex::getTextArgument(*corvinex::makeNumber(65)), u"");
    EXPECT_EQ(corvinex::getTextArgument(*corvinex::makeCellRow(1)), u"");
    EXPECT_EQ(corvinex::getTextArgument(*corvinex::makeEmptyText()), u"");
}

TEST(TextArgument, RaisesForAMissingString) {
    const HostArray missing = host::makeStringScalar(std::nullopt);
    try {
        static_cast<void>(corvinex::getTextArgument(*missing));
        ADD_FAILURE() << "no error";
    } catch (const host::Error& error) {
        EXPECT_EQ(error.report(), (host::Report{"KORVEL:string:MissingNotSupported", {}}));
    }
}

TEST(NumberArgument, IsTheFirstElement) {
    EXPECT_EQ(corvinex::getNumberArgument(*corvinex::makeNumber(-2.5)), -2.5);
    EXPECT_EQ(corvinex::getNumberArgument(*corvinex::makeNumberRow(std::vector<double>{7, 8})), 7);
}
