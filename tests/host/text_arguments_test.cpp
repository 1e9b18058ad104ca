#include "host/interface/text.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>

#include "host/values/value.h"

using namespace matrix::detail::noninlined::zx_array_api;
using host::ValuePtr;

namespace {

bool isScalarText(const ValuePtr& value) {
    return Quillon::String::isScalarText(value.get(), false, false);
}

ValuePtr charArray(std::size_t rows, std::size_t columns) {
    const std::array<std::size_t, 2> size = {rows, columns};
    return ValuePtr(zxCreateCharArray(2, size.data()));
}

ValuePtr cellWith(ValuePtr content) {
    const std::array<std::size_t, 2> size = {1, 1};
    ValuePtr cell(zxCreateCellArray(2, size.data()));
    zxSetCell(cell.get(), 0, content.release());
    return cell;
}

}  // namespace

TEST(TextArguments, CharRowsAndStringScalarsAreScalarText) {
    EXPECT_TRUE(isScalarText(host::makeText(u"a.tif")));
    EXPECT_TRUE(isScalarText(charArray(1, 0)));
    EXPECT_TRUE(isScalarText(host::makeStringScalar(u"a.tif")));
    EXPECT_TRUE(isScalarText(host::makeStringScalar(u"")));
    EXPECT_TRUE(isScalarText(host::makeStringScalar(std::nullopt)));
}

TEST(TextArguments, OtherValuesAreNotScalarText) {
    EXPECT_FALSE(isScalarText(host::makeNumber(1)));
    EXPECT_FALSE(isScalarText(charArray(0, 0)));
    EXPECT_FALSE(isScalarText(charArray(2, 1)));
    EXPECT_FALSE(isScalarText(cellWith(host::makeText(u"a"))));
    EXPECT_FALSE(Quillon::String::isScalarText(nullptr, true, true));
}

TEST(TextArguments, EmptyArraysAndCellsAreScalarTextWhereAllowed) {
    EXPECT_TRUE(Quillon::String::isScalarText(charArray(0, 0).get(), true, false));
    EXPECT_FALSE(Quillon::String::isScalarText(charArray(0, 1).get(), true, false));
    EXPECT_TRUE(Quillon::String::isScalarText(cellWith(host::makeText(u"a")).get(), false, true));
    EXPECT_FALSE(Quillon::String::isScalarText(cellWith(nullptr).get(), false, true));
    EXPECT_FALSE(Quillon::String::isScalarText(cellWith(host::makeNumber(1)).get(), false, true));
}

TEST(TextArguments, OnlyStringScalarsAreStrings) {
    EXPECT_TRUE(Quillon::String::isString(host::makeStringScalar(std::nullopt).get()));
    EXPECT_FALSE(Quillon::String::isString(host::makeText(u"a").get()));
    EXPECT_FALSE(Quillon::String::isString(nullptr));
}

TEST(TextArguments, AStringHasItsUnitsAndAMissingOneNone) {
    const ValuePtr text = host::makeStringScalar(u"a\u00E9");
    EXPECT_EQ(Quillon::String::getString(text.get()), u"a\u00E9");
    EXPECT_EQ(Quillon::String::getString(host::makeStringScalar(std::nullopt).get()), std::nullopt);
    EXPECT_THROW((void)Quillon::String::getString(host::makeText(u"a").get()),
                 std::invalid_argument);
    EXPECT_THROW((void)Quillon::String::getString(nullptr), std::invalid_argument);
}
