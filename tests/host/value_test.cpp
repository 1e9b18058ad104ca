#include "host/values/value.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using namespace matrix::detail::noninlined::zx_array_api;
using host::Size;
using host::ValueClass;
using host::ValuePtr;

namespace {

using Dimensions = std::array<std::size_t, 2>;

ValuePtr numeric(std::size_t rows, std::size_t columns, zxClassID classId = zxClassID::Double) {
    const Dimensions size = {rows, columns};
    return ValuePtr(zxCreateNumericArray(2, size.data(), classId, zxComplexity::Real));
}

ValuePtr charArray(std::size_t rows, std::size_t columns) {
    const Dimensions size = {rows, columns};
    return ValuePtr(zxCreateCharArray(2, size.data()));
}

ValuePtr cellArray(std::size_t rows, std::size_t columns) {
    const Dimensions size = {rows, columns};
    return ValuePtr(zxCreateCellArray(2, size.data()));
}

ValuePtr structArray(std::size_t rows, std::size_t columns, std::vector<const char*> names) {
    const Dimensions size = {rows, columns};
    return ValuePtr(
        zxCreateStructArray(2, size.data(), static_cast<int>(names.size()), names.data()));
}

constexpr std::size_t huge = std::numeric_limits<std::size_t>::max();

/// Fails a test after which values are left over.
class Values : public testing::Test {
  protected:
    ~Values() override { EXPECT_EQ(host::livingValues(), before_); }

  private:
    std::size_t before_ = host::livingValues();
};

using NumericArrays = Values;
using CharArrays = Values;
using StringScalars = Values;
using CellArrays = Values;
using StructArrays = Values;
using LivingValues = Values;

}  // namespace

TEST_F(NumericArrays, AScalarIsOneByOneAndWritable) {
    const ValuePtr value(zxCreateDoubleScalar(2.5));
    EXPECT_EQ(host::classOf(*value), ValueClass::Double);
    EXPECT_EQ(host::sizeOf(*value), (Size{1, 1}));
    EXPECT_EQ(zxGetElementCount(value.get()), 1U);
    *static_cast<double*>(zxGetElements(value.get())) = -7;
    EXPECT_EQ(host::doublesOf(*value)[0], -7);
    EXPECT_EQ(zxGetScalar(value.get()), -7);
}

TEST_F(NumericArrays, StartAsZerosOfTheAskedSize) {
    for (const Size size : {Size{1, 1}, Size{1, 4}, Size{256, 3}}) {
        const ValuePtr value = numeric(size.rows, size.columns);
        EXPECT_EQ(host::classOf(*value), ValueClass::Double);
        EXPECT_EQ(host::sizeOf(*value), size);
        const auto elements = host::doublesOf(*value);
        ASSERT_EQ(elements.size(), size.rows * size.columns);
        for (const double element : elements) {
            EXPECT_EQ(element, 0);
        }
    }
    const ValuePtr bytes = numeric(1, 5, zxClassID::Uint8);
    EXPECT_EQ(host::classOf(*bytes), ValueClass::Uint8);
    EXPECT_EQ(host::bytesOf(*bytes).size(), 5U);
    EXPECT_EQ(host::bytesOf(*bytes)[4], 0);
}

TEST_F(NumericArrays, KeepWhatIsWrittenToTheirElements) {
    const ValuePtr value = numeric(2, 2);
    auto* const elements = static_cast<double*>(zxGetElements(value.get()));
    for (int i = 0; i < 4; ++i) {
        elements[i] = i;
    }
    EXPECT_EQ(host::doublesOf(*value)[3], 3);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(elements) % alignof(double), 0U);
}

TEST_F(NumericArrays, AnEmptyOneHasNoStorageAndKeepsItsDimensions) {
    const ValuePtr value = numeric(1, 0);
    EXPECT_EQ(zxGetElements(value.get()), nullptr);
    EXPECT_EQ(zxGetElementCount(value.get()), 0U);
    EXPECT_EQ(host::sizeOf(*value), (Size{1, 0}));
    EXPECT_EQ(host::sizeOf(*numeric(0, huge)), (Size{0, huge}));
}

TEST_F(NumericArrays, WithoutDimensionsADoubleIsZeroByZero) {
    const ValuePtr value(zxCreateNumericArray(0, nullptr, zxClassID::Double, zxComplexity::Real));
    EXPECT_EQ(host::classOf(*value), ValueClass::Double);
    EXPECT_EQ(host::sizeOf(*value), (Size{0, 0}));
}

TEST_F(NumericArrays, OtherDimensionsClassesAndComplexitiesAreRefused) {
    const std::array<std::size_t, 3> size = {1, 1, 1};
    const auto make = [&size](std::size_t ndim, zxClassID classId, zxComplexity complexity) {
        return ValuePtr(zxCreateNumericArray(ndim, size.data(), classId, complexity));
    };
    EXPECT_THROW(make(1, zxClassID::Double, zxComplexity::Real), std::invalid_argument);
    EXPECT_THROW(make(3, zxClassID::Double, zxComplexity::Real), std::invalid_argument);
    EXPECT_THROW(make(0, zxClassID::Double, zxComplexity::Real), std::invalid_argument);
    EXPECT_THROW(zxCreateNumericArray(0, nullptr, zxClassID::Uint8, zxComplexity::Real),
                 std::invalid_argument);
    EXPECT_THROW(zxCreateNumericArray(2, nullptr, zxClassID::Double, zxComplexity::Real),
                 std::invalid_argument);
    EXPECT_THROW(make(2, static_cast<zxClassID>(7), zxComplexity::Real), std::invalid_argument);
    EXPECT_THROW(make(2, zxClassID::Double, static_cast<zxComplexity>(1)), std::invalid_argument);
}

TEST_F(NumericArrays, SizesThatCannotBeCountedAreRefused) {
    EXPECT_THROW(numeric(huge, 2), std::length_error);
    EXPECT_THROW(numeric(std::size_t{1} << 32, std::size_t{1} << 32), std::length_error);
    EXPECT_THROW(numeric(1, huge / 8 + 2), std::length_error);
    EXPECT_THROW(numeric(1, huge), std::length_error);
    EXPECT_THROW(numeric(1, huge, zxClassID::Uint8), std::length_error);
}

TEST_F(NumericArrays, TheScalarOfAnyElementClassIsItsFirstElement) {
    const ValuePtr row = numeric(1, 3);
    static_cast<double*>(zxGetElements(row.get()))[0] = 4.5;
    EXPECT_EQ(zxGetScalar(row.get()), 4.5);
    const ValuePtr bytes = numeric(1, 1, zxClassID::Uint8);
    *static_cast<unsigned char*>(zxGetElements(bytes.get())) = 255;
    EXPECT_EQ(zxGetScalar(bytes.get()), 255);
    EXPECT_EQ(zxGetScalar(host::makeText(u"A").get()), 65);
}

TEST_F(NumericArrays, WhatHoldsNoNumberHasNoScalar) {
    EXPECT_THROW(zxGetScalar(nullptr), std::invalid_argument);
    EXPECT_THROW(zxGetScalar(numeric(0, 0).get()), std::invalid_argument);
    EXPECT_THROW(zxGetScalar(cellArray(1, 1).get()), std::invalid_argument);
    EXPECT_THROW(zxGetScalar(host::makeStringScalar(u"1").get()), std::invalid_argument);
}

TEST_F(CharArrays, ATextOfUtf16UnitsIsARowOfExactlyThese) {
    const std::u16string text =
        u"a\0\xD800\u00E9"
        u"b";
    const ValuePtr value = matrix::create(text.data(), text.size());
    EXPECT_EQ(host::classOf(*value), ValueClass::Char);
    EXPECT_EQ(host::sizeOf(*value), (Size{1, text.size()}));
    EXPECT_EQ(host::textOf(*value), text);
}

TEST_F(CharArrays, EmptyTextsAreOneByZero) {
    EXPECT_EQ(host::sizeOf(*matrix::create(static_cast<const char16_t*>(nullptr), 0)),
              (Size{1, 0}));
    EXPECT_EQ(host::sizeOf(*matrix::create(static_cast<const char*>(nullptr), 0)), (Size{1, 0}));
    EXPECT_EQ(host::sizeOf(*ValuePtr(zxCreateString(""))), (Size{1, 0}));
}

TEST_F(CharArrays, NarrowTextIsUtf8) {
    EXPECT_EQ(host::textOf(*ValuePtr(zxCreateString("gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80"))),
              u"gr\u00FC\u00DF \U0001F600");
    const std::string bytes("a\0b\xE2\x82", 5);
    EXPECT_EQ(host::textOf(*matrix::create(bytes.data(), bytes.size())),
              std::u16string_view(u"a\0b\uFFFD", 4));
    EXPECT_THROW(zxCreateString(nullptr), std::invalid_argument);
}

TEST_F(CharArrays, AHandleHandsItsValueOver) {
    ValuePtr handle = matrix::create(u"x", 1);
    const zxArray* const made = handle.get();
    const ValuePtr value(matrix::to_korvel(std::move(handle)));
    EXPECT_EQ(value.get(), made);
}

TEST_F(CharArrays, AreMadeOfZeroUnits) {
    EXPECT_EQ(host::sizeOf(*charArray(0, 0)), (Size{0, 0}));
    EXPECT_EQ(host::textOf(*charArray(1, 2)), std::u16string_view(u"\0\0", 2));
    EXPECT_THROW(zxCreateCharArray(0, nullptr), std::invalid_argument);
    EXPECT_THROW(charArray(huge / 2 + 1, 1), std::length_error);
}

TEST_F(CharArrays, AHostsEmptyTextIsZeroByZero) {
    EXPECT_EQ(host::sizeOf(*host::makeText(u"")), (Size{0, 0}));
    EXPECT_EQ(host::sizeOf(*host::makeText(u"ab")), (Size{1, 2}));
}

TEST_F(StringScalars, ShowNoElements) {
    for (const ValuePtr& value :
         {host::makeStringScalar(u"ab"), host::makeStringScalar(std::nullopt)}) {
        EXPECT_EQ(host::classOf(*value), ValueClass::String);
        EXPECT_EQ(host::sizeOf(*value), (Size{1, 1}));
        EXPECT_EQ(zxGetElements(value.get()), nullptr);
    }
}

TEST_F(CellArrays, OwnWhatIsStored) {
    const ValuePtr cell = cellArray(1, 2);
    EXPECT_EQ(host::sizeOf(*cell), (Size{1, 2}));
    EXPECT_EQ(host::cellAt(*cell, 1), nullptr);
    zxSetCell(cell.get(), 1, zxCreateDoubleScalar(3));
    EXPECT_EQ(zxGetScalar(host::cellAt(*cell, 1)), 3);
    zxSetCell(cell.get(), 1, zxCreateDoubleScalar(4));
    EXPECT_EQ(zxGetScalar(host::cellAt(*cell, 1)), 4);
    zxSetCell(cell.get(), 1, nullptr);
    EXPECT_EQ(host::cellAt(*cell, 1), nullptr);
}

TEST_F(CellArrays, AStoreThatRaisesLeavesTheValueToItsCaller) {
    const ValuePtr cell = cellArray(1, 2);
    const ValuePtr value(zxCreateDoubleScalar(3));
    EXPECT_THROW(zxSetCell(cell.get(), 2, value.get()), std::out_of_range);
    EXPECT_THROW(zxSetCell(nullptr, 0, value.get()), std::invalid_argument);
    EXPECT_THROW(zxSetCell(numeric(1, 1).get(), 0, value.get()), std::invalid_argument);
    EXPECT_EQ(zxGetScalar(value.get()), 3);
}

TEST_F(CellArrays, ImpossibleSizesAreRefused) {
    EXPECT_THROW(cellArray(huge, 2), std::length_error);
    EXPECT_THROW(cellArray(huge, 1), std::length_error);
}

TEST_F(StructArrays, StartWithTheirFieldsInOrderAndUnset) {
    const ValuePtr array = structArray(2, 1, {"b", "a", "UnknownTags"});
    EXPECT_EQ(host::sizeOf(*array), (Size{2, 1}));
    const auto names = host::fieldNamesOf(*array);
    EXPECT_EQ(std::vector<std::string>(names.begin(), names.end()),
              (std::vector<std::string>{"b", "a", "UnknownTags"}));
    EXPECT_EQ(host::fieldAt(*array, 1, 2), nullptr);
}

TEST_F(StructArrays, OwnWhatIsStoredInAnElementsField) {
    const ValuePtr array = structArray(2, 1, {"b", "a"});
    zxSetField(array.get(), 1, "a", zxCreateDoubleScalar(5));
    EXPECT_EQ(zxGetScalar(host::fieldAt(*array, 1, 1)), 5);
    EXPECT_EQ(host::fieldAt(*array, 1, "a"), host::fieldAt(*array, 1, 1));
    EXPECT_EQ(host::fieldAt(*array, 0, "a"), nullptr);
    EXPECT_EQ(host::fieldAt(*array, 1, "b"), nullptr);
    zxSetField(array.get(), 1, "a", zxCreateDoubleScalar(6));
    EXPECT_EQ(zxGetScalar(host::fieldAt(*array, 1, "a")), 6);
    zxSetField(array.get(), 1, "a", nullptr);
    EXPECT_EQ(host::fieldAt(*array, 1, "a"), nullptr);
}

TEST_F(StructArrays, GiveAllFieldsOfAnElementInOrder) {
    const ValuePtr array = structArray(2, 1, {"b", "a"});
    zxSetField(array.get(), 1, "a", zxCreateDoubleScalar(5));
    const auto fields = host::fieldsAt(*array, 1);
    ASSERT_EQ(fields.size(), 2U);
    EXPECT_EQ(fields[0], nullptr);
    EXPECT_EQ(fields[1], host::fieldAt(*array, 1, "a"));
    EXPECT_THROW(static_cast<void>(host::fieldsAt(*array, 2)), std::out_of_range);
    const ValuePtr without = structArray(1, 1, {});
    EXPECT_TRUE(host::fieldsAt(*without, 0).empty());
    EXPECT_THROW(static_cast<void>(host::fieldsAt(*without, 1)), std::out_of_range);
}

TEST_F(StructArrays, StoringWhatAFieldHoldsAlreadyChangesNothing) {
    const ValuePtr array = structArray(1, 1, {"a"});
    zxArray* const value = zxCreateDoubleScalar(5);
    zxSetField(array.get(), 0, "a", value);
    zxSetField(array.get(), 0, "a", value);
    EXPECT_EQ(zxGetScalar(host::fieldAt(*array, 0, "a")), 5);
}

TEST_F(StructArrays, FindEachOfManyFields) {
    std::vector<std::string> names;
    for (int i = 0; i < 1000; ++i) {
        names.push_back("field" + std::to_string(i));
    }
    std::vector<const char*> plain;
    for (const std::string& name : names) {
        plain.push_back(name.c_str());
    }
    const ValuePtr array = structArray(1, 1, plain);
    for (std::size_t i = 0; i < names.size(); ++i) {
        zxSetField(array.get(), 0, names[i].c_str(), zxCreateDoubleScalar(static_cast<double>(i)));
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(zxGetScalar(host::fieldAt(*array, 0, i)), static_cast<double>(i));
    }
    EXPECT_THROW(zxSetField(array.get(), 0, "field1000", nullptr), std::out_of_range);
}

TEST_F(StructArrays, AStoreThatRaisesLeavesTheValueToItsCaller) {
    const ValuePtr array = structArray(1, 1, {"a"});
    const ValuePtr value(zxCreateDoubleScalar(3));
    EXPECT_THROW(zxSetField(array.get(), 0, "b", value.get()), std::out_of_range);
    EXPECT_THROW(zxSetField(array.get(), 1, "a", value.get()), std::out_of_range);
    EXPECT_THROW(zxSetField(array.get(), 0, nullptr, value.get()), std::invalid_argument);
    EXPECT_THROW(zxSetField(nullptr, 0, "a", value.get()), std::invalid_argument);
    EXPECT_THROW(zxSetField(numeric(1, 1).get(), 0, "a", value.get()), std::invalid_argument);
    EXPECT_EQ(zxGetScalar(value.get()), 3);
}

TEST_F(StructArrays, MayHaveNoFieldsOrNoElements) {
    const ValuePtr bare = structArray(3, 1, {});
    EXPECT_EQ(zxGetElementCount(bare.get()), 3U);
    EXPECT_THROW(zxSetField(bare.get(), 0, "a", nullptr), std::out_of_range);
    const ValuePtr empty = structArray(0, 1, {"a"});
    EXPECT_EQ(host::sizeOf(*empty), (Size{0, 1}));
    EXPECT_THROW(zxSetField(empty.get(), 0, "a", nullptr), std::out_of_range);
}

TEST_F(StructArrays, BadFieldListsAndSizesAreRefused) {
    const Dimensions size = {1, 1};
    EXPECT_THROW(structArray(1, 1, {"a", "b", "a"}), std::invalid_argument);
    EXPECT_THROW(structArray(1, 1, {"a", nullptr}), std::invalid_argument);
    EXPECT_THROW(zxCreateStructArray(2, size.data(), -1, nullptr), std::invalid_argument);
    EXPECT_THROW(zxCreateStructArray(2, size.data(), 1, nullptr), std::invalid_argument);
    EXPECT_THROW(zxCreateStructArray(0, nullptr, 0, nullptr), std::invalid_argument);
    EXPECT_THROW(structArray(huge / 2, 1, {"a", "b", "c"}), std::length_error);
    EXPECT_THROW(structArray(huge, 2, {"a"}), std::length_error);
    EXPECT_THROW(structArray(huge, 1, {"a"}), std::length_error);
}

TEST_F(LivingValues, CountStoredOnesUntilTheirOwnerGoes) {
    const std::size_t before = host::livingValues();
    {
        const ValuePtr outer = structArray(2, 1, {"a", "b"});
        zxSetField(outer.get(), 0, "a", host::makeText(u"text").release());
        ValuePtr cell = cellArray(1, 2);
        zxSetCell(cell.get(), 0, structArray(1, 1, {"c"}).release());
        zxSetField(outer.get(), 1, "b", cell.release());
        EXPECT_EQ(host::livingValues(), before + 4);
    }
    EXPECT_EQ(host::livingValues(), before);
    matrix::destroyArray(nullptr);
}

TEST_F(LivingValues, AreCountedForEachThread) {
    const ValuePtr here(zxCreateDoubleScalar(1));
    std::size_t there = 0;
    std::thread([&there] {
        const ValuePtr value(zxCreateDoubleScalar(1));
        there = host::livingValues();
    }).join();
    EXPECT_EQ(there, 1U);
}

TEST_F(LivingValues, AskingAValueForWhatItDoesNotHaveRaises) {
    const ValuePtr number = host::makeNumber(1);
    const ValuePtr cell = cellArray(1, 1);
    const ValuePtr array = structArray(1, 1, {"a"});
    EXPECT_THROW((void)host::doublesOf(*cell), std::logic_error);
    EXPECT_THROW((void)host::bytesOf(*number), std::logic_error);
    EXPECT_THROW((void)host::textOf(*number), std::logic_error);
    EXPECT_THROW((void)host::cellAt(*number, 0), std::logic_error);
    EXPECT_THROW((void)host::cellAt(*cell, 1), std::out_of_range);
    EXPECT_THROW((void)host::fieldNamesOf(*number), std::logic_error);
    EXPECT_THROW((void)host::fieldAt(*number, 0, "a"), std::logic_error);
    EXPECT_THROW((void)host::fieldAt(*array, 0, "b"), std::out_of_range);
    EXPECT_THROW((void)host::fieldAt(*array, 0, 1), std::out_of_range);
    EXPECT_THROW((void)host::fieldAt(*array, 1, 0), std::out_of_range);
}
