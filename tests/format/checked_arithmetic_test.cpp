#include "format/checked_arithmetic.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

namespace {

using corvinex::liesWithin;
using corvinex::saturated;
using corvinex::saturatingAdd;
using corvinex::saturatingMultiply;

/// Numbers around every place where 64-bit arithmetic could go wrong.
constexpr std::array<std::uint64_t, 13> edges{
    0,
    1,
    2,
    20,
    0x7FFFFFFF,
    0x80000000,
    0xFFFFFFFF,
    0x100000000,
    0x7FFFFFFFFFFFFFFF,
    0x8000000000000000,
    0xFFFFFFFFFFFFFFEC,
    0xFFFFFFFFFFFFFFFE,
    0xFFFFFFFFFFFFFFFF,
};

__extension__ using Wide = unsigned __int128;

std::uint64_t clamped(Wide value) {
    return value > saturated ? saturated : static_cast<std::uint64_t>(value);
}

}  // namespace

TEST(CheckedArithmetic, SumsAreExactOrHeldAtTheLimit) {
    for (const std::uint64_t a : edges) {
        for (const std::uint64_t b : edges) {
            EXPECT_EQ(saturatingAdd(a, b), clamped(Wide{a} + b)) << a << " + " << b;
        }
    }
}

TEST(CheckedArithmetic, ProductsAreExactOrHeldAtTheLimit) {
    for (const std::uint64_t a : edges) {
        for (const std::uint64_t b : edges) {
            EXPECT_EQ(saturatingMultiply(a, b), clamped(Wide{a} * b)) << a << " * " << b;
        }
    }
}

TEST(CheckedArithmetic, ARangeLiesWithinWhenItsLastByteDoes) {
    for (const std::uint64_t position : edges) {
        for (const std::uint64_t length : edges) {
            for (const std::uint64_t size : edges) {
                EXPECT_EQ(liesWithin(position, length, size), Wide{position} + length <= size)
                    << length << " at " << position << " of " << size;
            }
        }
    }
}
