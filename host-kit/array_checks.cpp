#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <vector>

#include "host-kit/check.h"

// Numeric arrays, their element storage and their destruction; and the helpers of all checks.

namespace hostkit {

namespace api = matrix::detail::noninlined::zx_array_api;

namespace {

using Dimensions = std::array<std::size_t, 2>;

Owner makeNumeric(std::size_t rows, std::size_t columns, zxClassID classId) {
    const Dimensions dims{rows, columns};
    return Owner(api::zxCreateNumericArray(dims.size(), dims.data(), classId, zxComplexity::Real));
}

std::span<double> doublesOf(zxArray& value) {
    return {static_cast<double*>(api::zxGetElements(&value)), api::zxGetElementCount(&value)};
}

bool areZero(const zxArray& value, std::size_t bytes) {
    const auto* const first = static_cast<const unsigned char*>(api::zxGetElements(&value));
    return first != nullptr &&
           std::all_of(first, first + bytes, [](int byte) { return byte == 0; });
}

bool countingMoves(Context& context) {
    const std::size_t before = context.host.livingValues();
    const Owner value = makeNumber(1);
    return context.host.livingValues() == before + 1;
}

bool destroyFrees(Context& context) {
    const std::size_t before = context.host.livingValues();
    matrix::destroyArray(makeNumber(1).release());
    matrix::destroyArray(makeDoubles(3, 2).release());
    return context.host.livingValues() == before;
}

bool destroyTakesNull(Context& context) {
    const std::size_t before = context.host.livingValues();
    matrix::destroyArray(nullptr);
    return context.host.livingValues() == before;
}

bool scalarHoldsItsNumber(Context& context) {
    const std::array numbers{0.0, -1.5, 18446744073709551615.0, 1e308, 5e-324};
    return std::ranges::all_of(numbers, [&](double number) {
        return isNumber(context.host, makeNumber(number).get(), number);
    });
}

bool scalarKeepsSpecialNumbers(Context& context) {
    const std::array numbers{-0.0, std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()};
    return std::ranges::all_of(numbers, [&](double number) {
        const Owner value = makeNumber(number);
        return std::bit_cast<std::uint64_t>(context.host.numberAt(*value, 0, 0)) ==
               std::bit_cast<std::uint64_t>(number);
    });
}

bool getScalarGivesTheFirstDouble(Context& /*context*/) {
    const Owner value = makeDoubles(2, 2);
    doublesOf(*value)[0] = 7.25;
    doublesOf(*value)[3] = 8;
    return api::zxGetScalar(value.get()) == 7.25 && api::zxGetScalar(makeNumber(-3).get()) == -3;
}

bool getScalarGivesTheFirstByte(Context& /*context*/) {
    const Owner value = makeNumeric(1, 2, zxClassID::Uint8);
    static_cast<unsigned char*>(api::zxGetElements(value.get()))[0] = 200;
    return api::zxGetScalar(value.get()) == 200;
}

bool newArraysAreZero(Context& /*context*/) {
    for (const std::size_t columns : {2U, 4U, 15U, 1000U, 100000U}) {
        // Memory that was written to before shows whether it is cleared.
        for (int i = 0; i < 3; ++i) {
            const Owner used = makeDoubles(1, columns);
            std::ranges::fill(doublesOf(*used), -1.0);
        }
        const Owner doubles = makeDoubles(1, columns);
        const Owner bytes = makeNumeric(1, columns, zxClassID::Uint8);
        if (!areZero(*doubles, columns * sizeof(double)) || !areZero(*bytes, columns)) {
            return false;
        }
    }
    return true;
}

bool noDimensionsAreEmpty(Context& context) {
    const Owner value(api::zxCreateNumericArray(0, nullptr, zxClassID::Double, zxComplexity::Real));
    return is(context.host, value.get(), ValueClass::Double, {0, 0});
}

bool classesAreKept(Context& context) {
    return is(context.host, makeDoubles(1, 3).get(), ValueClass::Double, {1, 3}) &&
           is(context.host, makeNumeric(1, 3, zxClassID::Uint8).get(), ValueClass::Uint8, {1, 3});
}

bool sizesAreKept(Context& context) {
    const std::array sizes{Size{1, 4}, Size{4, 1}, Size{3, 2}, Size{256, 3}};
    return std::ranges::all_of(sizes, [&](Size size) {
        const Owner value = makeDoubles(size.rows, size.columns);
        return is(context.host, value.get(), ValueClass::Double, size);
    });
}

bool zeroSizesAreKept(Context& context) {
    const std::array sizes{Size{1, 0}, Size{0, 1}, Size{0, 3}, Size{0, 0}};
    return std::ranges::all_of(sizes, [&](Size size) {
        const Owner doubles = makeDoubles(size.rows, size.columns);
        const Owner bytes = makeNumeric(size.rows, size.columns, zxClassID::Uint8);
        return is(context.host, doubles.get(), ValueClass::Double, size) &&
               is(context.host, bytes.get(), ValueClass::Uint8, size);
    });
}

bool elementsGoByColumns(Context& context) {
    const Owner value = makeDoubles(2, 3);
    const std::span<double> elements = doublesOf(*value);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        elements[i] = static_cast<double>(i);
    }
    for (std::size_t column = 0; column < 3; ++column) {
        for (std::size_t row = 0; row < 2; ++row) {
            if (context.host.numberAt(*value, row, column) !=
                static_cast<double>(2 * column + row)) {
                return false;
            }
        }
    }
    return true;
}

bool bothGetElementsAgree(Context& /*context*/) {
    const Owner value = makeDoubles(1, 4);
    const zxArray* const read = value.get();
    return api::zxGetElements(value.get()) != nullptr &&
           api::zxGetElements(value.get()) == api::zxGetElements(read);
}

bool elementsAreAligned(Context& /*context*/) {
    std::vector<Owner> values;
    for (std::size_t columns = 1; columns < 40; ++columns) {
        values.push_back(makeNumeric(1, columns, zxClassID::Uint8));
        values.push_back(makeDoubles(1, columns));
        const auto address =
            reinterpret_cast<std::uintptr_t>(api::zxGetElements(values.back().get()));
        if (address % alignof(double) != 0) {
            return false;
        }
    }
    return true;
}

bool emptyHaveNoElements(Context& /*context*/) {
    return api::zxGetElements(makeDoubles(1, 0).get()) == nullptr &&
           api::zxGetElements(makeDoubles(0, 0).get()) == nullptr;
}

bool containersHaveNoElements(Context& /*context*/) {
    return api::zxGetElements(makeCells(1, 2).get()) == nullptr &&
           api::zxGetElements(makeStructs(2, 1, {"a"}).get()) == nullptr;
}

bool countIsRowsTimesColumns(Context& /*context*/) {
    const auto countOf = [](const Owner& value) { return api::zxGetElementCount(value.get()); };
    return countOf(makeDoubles(3, 4)) == 12 && countOf(makeDoubles(5, 0)) == 0 &&
           countOf(makeNumeric(2, 5, zxClassID::Uint8)) == 10 && countOf(makeCells(1, 7)) == 7 &&
           countOf(makeStructs(6, 1, {"a", "b"})) == 6;
}

bool storedElementsStay(Context& context) {
    const Owner array = makeStructs(1, 1, {"a"});
    zxArray* const value = makeDoubles(1, 5).release();
    const std::span<double> elements = doublesOf(*value);
    api::zxSetField(array.get(), 0, "a", value);
    std::vector<Owner> others(1000);
    std::ranges::generate(others, [] { return makeDoubles(1, 5); });
    elements[4] = 6.5;
    const zxArray* const stored = context.host.fieldAt(*array, 0, "a");
    return is(context.host, stored, ValueClass::Double, {1, 5}) &&
           context.host.numberAt(*stored, 0, 4) == 6.5;
}

bool largeArraysAreWhole(Context& context) {
    constexpr std::size_t columns = std::size_t{4} << 20;
    const Owner first = makeDoubles(1, columns);
    const Owner second = makeDoubles(1, columns);
    for (std::size_t i = 0; i < columns; ++i) {
        doublesOf(*first)[i] = static_cast<double>(i);
    }
    return context.host.numberAt(*first, 0, columns - 1) == static_cast<double>(columns - 1) &&
           context.host.numberAt(*second, 0, columns - 1) == 0 &&
           context.host.numberAt(*second, 0, 1) == 0;
}

constexpr Check checks[] = {
    {"values-are-counted", "livingValues",
     "The inspector must count one value more when one is made.", countingMoves},
    {"destroy-frees", "destroyArray", "A value that is destroyed must be freed.", destroyFrees},
    {"destroy-null", "destroyArray", "Null must be allowed, and nothing happens.",
     destroyTakesNull},
    {"scalar-number", "zxCreateDoubleScalar", "A number must become the 1 x 1 double of it.",
     scalarHoldsItsNumber},
    {"scalar-special", "zxCreateDoubleScalar",
     "Negative zero, infinity and not-a-number must stay what they are.",
     scalarKeepsSpecialNumbers},
    {"get-scalar-double", "zxGetScalar", "It must give the first element of a double array.",
     getScalarGivesTheFirstDouble},
    {"get-scalar-byte", "zxGetScalar", "It must give the first element of a uint8 array.",
     getScalarGivesTheFirstByte},
    {"numeric-zeros", "zxCreateNumericArray", "All elements of a new array must be zero.",
     newArraysAreZero},
    {"numeric-no-dimensions", "zxCreateNumericArray",
     "Without dimensions it must make an empty 0 x 0 double.", noDimensionsAreEmpty},
    {"numeric-class", "zxCreateNumericArray",
     "Class 6 must give doubles and class 9 unsigned bytes.", classesAreKept},
    {"numeric-size", "zxCreateNumericArray",
     "The first dimension must be the rows, the second the columns.", sizesAreKept},
    {"numeric-zero-size", "zxCreateNumericArray",
     "A size with a zero, such as 1 x 0, must be kept as it is.", zeroSizesAreKept},
    {"elements-by-columns", "zxGetElements",
     "Elements must stand column by column, and what is written there must be in the value.",
     elementsGoByColumns},
    {"elements-const", "zxGetElements",
     "The pointer to read and the pointer to write must be the same.", bothGetElementsAgree},
    {"elements-aligned", "zxGetElements", "The elements of a double array must be aligned.",
     elementsAreAligned},
    {"elements-none", "zxGetElements", "It must give null where there are no elements.",
     emptyHaveNoElements},
    {"elements-containers", "zxGetElements", "It must give null for cell and struct arrays.",
     containersHaveNoElements},
    {"elements-stored", "zxGetElements",
     "The pointer must stay valid when the value is stored and others are made.",
     storedElementsStay},
    {"elements-large", "zxGetElements", "A large array must have all its elements for itself.",
     largeArraysAreWhole},
    {"element-count", "zxGetElementCount", "It must give rows times columns for every class.",
     countIsRowsTimesColumns},
};

}  // namespace

std::span<const Check> arrayChecks() {
    return checks;
}

Owner makeDoubles(std::size_t rows, std::size_t columns) {
    return makeNumeric(rows, columns, zxClassID::Double);
}

Owner makeCells(std::size_t rows, std::size_t columns) {
    const Dimensions dims{rows, columns};
    return Owner(api::zxCreateCellArray(dims.size(), dims.data()));
}

Owner makeStructs(std::size_t rows, std::size_t columns, std::vector<const char*> names) {
    const Dimensions dims{rows, columns};
    return Owner(api::zxCreateStructArray(dims.size(), dims.data(), static_cast<int>(names.size()),
                                          names.data()));
}

Owner makeNumber(double number) {
    return Owner(api::zxCreateDoubleScalar(number));
}

bool is(const Inspector& host, const zxArray* value, ValueClass wanted, Size size) {
    return value != nullptr && host.classOf(*value) == wanted && host.sizeOf(*value) == size &&
           api::zxGetElementCount(value) == size.rows * size.columns;
}

bool isNumber(const Inspector& host, const zxArray* value, double number) {
    return is(host, value, ValueClass::Double, {1, 1}) && host.numberAt(*value, 0, 0) == number;
}

bool isUnset(const Inspector& host, const zxArray* value) {
    return value == nullptr || is(host, value, ValueClass::Double, {0, 0});
}

bool isText(const Inspector& host, const zxArray* value, std::u16string_view text) {
    if (!is(host, value, ValueClass::Char, {1, text.size()})) {
        return false;
    }
    const auto* const units = static_cast<const char16_t*>(api::zxGetElements(value));
    return text.empty() ? units == nullptr : std::u16string_view(units, text.size()) == text;
}

}  // namespace hostkit
