#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/single_directory.h"

// From the values of each numeric type to doubles.

namespace {

using namespace test;

constexpr std::uint64_t notANumber = 0xFFF8000000000000;

std::vector<std::uint64_t> bitsOf(const std::vector<double>& values) {
    std::vector<std::uint64_t> bits;
    for (const double value : values) {
        bits.push_back(std::bit_cast<std::uint64_t>(value));
    }
    return bits;
}

/// Reads the values of one entry of tag 50714 in every container and compares them bit by bit.
void expectValues(const Field& field, const std::vector<double>& expected) {
    for (const Container& container : containers) {
        SCOPED_TRACE(container);
        const Result result = readDirectory({field}, container);
        EXPECT_EQ(result.warnings(), Reports{});
        EXPECT_EQ(bitsOf(result.numbers("BlackLevel")), bitsOf(expected));
        EXPECT_EQ(host::sizeOf(result.value("BlackLevel")), (host::Size{1, expected.size()}));
    }
}

TEST(NumberConversion, BytesAreUnsigned) {
    expectValues(numbers(50714, BYTE, {0, 1, 127, 128, 255}), {0, 1, 127, 128, 255});
}

TEST(NumberConversion, UndefinedBytesAreUnsignedNumbers) {
    expectValues(numbers(50714, UNDEFINED, {0, 127, 128, 255, 1}), {0, 127, 128, 255, 1});
}

TEST(NumberConversion, SignedBytesKeepTheirSign) {
    expectValues(numbers(50714, SBYTE, {0, 1, 127, 128, 255}), {0, 1, 127, -128, -1});
}

TEST(NumberConversion, ShortsAreUnsigned) {
    expectValues(shorts(50714, {0, 1, 0x0102, 32767, 32768, 65535}),
                 {0, 1, 258, 32767, 32768, 65535});
}

TEST(NumberConversion, SignedShortsKeepTheirSign) {
    expectValues(numbers(50714, SSHORT, {0, 0x0102, 32767, 32768, 65535}),
                 {0, 258, 32767, -32768, -1});
}

TEST(NumberConversion, LongsAreUnsigned) {
    expectValues(longs(50714, {0, 0x01020304, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF}),
                 {0, 16909060, 2147483647, 2147483648, 4294967295});
}

TEST(NumberConversion, SignedLongsKeepTheirSign) {
    expectValues(numbers(50714, SLONG, {0, 0x01020304, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF}),
                 {0, 16909060, 2147483647, -2147483648.0, -1});
}

TEST(NumberConversion, FloatsAreWidened) {
    using Limits = std::numeric_limits<float>;
    const std::vector<float> values{0.1F,
                                    -0.0F,
                                    Limits::max(),
                                    Limits::min(),
                                    Limits::lowest(),
                                    Limits::denorm_min(),
                                    Limits::infinity(),
                                    -Limits::infinity()};
    expectValues(floats(50714, values), std::vector<double>(values.begin(), values.end()));
    EXPECT_TRUE(
        std::isnan(readDirectory({floats(50714, {Limits::quiet_NaN()})}).number("BlackLevel")));
}

TEST(NumberConversion, DoublesStayAsTheyAre) {
    using Limits = std::numeric_limits<double>;
    const std::vector<double> values{0.1,
                                     -0.0,
                                     Limits::max(),
                                     Limits::min(),
                                     Limits::lowest(),
                                     Limits::denorm_min(),
                                     Limits::infinity(),
                                     -Limits::infinity(),
                                     std::bit_cast<double>(std::uint64_t{0x7FF8000000001234})};
    expectValues(doubles(50714, values), values);
}

TEST(NumberConversion, EightByteLongsAreRoundedToDoubles) {
    constexpr std::uint64_t exact = std::uint64_t{1} << 53;
    expectValues(numbers(50714, LONG8,
                         {std::uint64_t{1} << 40, exact, exact + 1, exact + 3,
                          std::uint64_t{1} << 63, std::numeric_limits<std::uint64_t>::max()}),
                 {1099511627776, 9007199254740992, 9007199254740992, 9007199254740996,
                  std::ldexp(1, 63), std::ldexp(1, 64)});
}

TEST(NumberConversion, AFirstSignedEightByteLongIsRightWithinThirtyTwoBits) {
    expectValues(number(50714, SLONG8, 0x7FFFFFFF), {2147483647});
    expectValues(number(50714, SLONG8, static_cast<std::uint64_t>(-5)), {-5});
    expectValues(number(50714, SLONG8, 0x80000000), {-2147483648.0});
    expectValues(number(50714, SLONG8, 0x100000007), {7});
}

TEST(NumberConversion, FurtherSignedEightByteLongsAreReadAtAFourByteStride) {
    expectValues(numbers(50714, SLONG8, {10, 20}), {10, 0});
    expectValues(numbers(50714, SLONG8, {0x0000000200000001, 0xFFFFFFFF00000003, 9}), {1, 2, 3});
    expectValues(numbers(50714, SLONG8, {static_cast<std::uint64_t>(-1), 5, 6, 7}), {-1, -1, 5, 0});
}

TEST(NumberConversion, RationalsAreDivided) {
    expectValues(rationals(50714, RATIONAL, {{72, 1}, {1, 3}, {0, 5}, {0xFFFFFFFF, 1}}),
                 {72, 1.0 / 3, 0, 4294967295});
    expectValues(rationals(50714, RATIONAL, {{0xFFFFFFFF, 0xFFFFFFFE}}),
                 {4294967295.0 / 4294967294.0});
}

TEST(NumberConversion, TheHalvesOfARationalAreSwappedSeparately) {
    const Container bigEndian{Order::Big, Layout::Classic};
    EXPECT_EQ(
        readDirectory({rationals(50714, RATIONAL, {{300, 2}})}, bigEndian).number("BlackLevel"),
        150);
}

TEST(NumberConversion, SignedRationalsAreDivided) {
    expectValues(rationals(50714, SRATIONAL, {{-5, 2}, {-1, 3}, {1, -4}, {-8, -2}, {0, -1}}),
                 {-2.5, -1.0 / 3, -0.25, 4, -0.0});
    expectValues(rationals(50714, SRATIONAL, {{INT32_MIN, 1}, {INT32_MAX, INT32_MIN}}),
                 {-2147483648.0, 2147483647.0 / -2147483648.0});
}

TEST(ZeroDenominators, GiveTheNegativeQuietNotANumber) {
    for (const Type type : {RATIONAL, SRATIONAL}) {
        for (const Container& container : containers) {
            SCOPED_TRACE(container);
            const Result result =
                readDirectory({rationals(50714, type, {{0, 0}, {1, 0}, {1, 2}})}, container);
            EXPECT_EQ(bitsOf(result.numbers("BlackLevel")),
                      (std::vector<std::uint64_t>{notANumber, notANumber,
                                                  std::bit_cast<std::uint64_t>(0.5)}));
            EXPECT_EQ(result.warnings(),
                      Reports{report("badTagValueDivisionByZero", {"BlackLevel"})});
        }
    }
}

TEST(ZeroDenominators, AreReportedOncePerFileAndName) {
    const Result result = readDirectory(
        {rationals(50714, RATIONAL, {{1, 0}}), rationals(50714, SRATIONAL, {{3, 0}, {4, 0}}),
         rationals(50717, SRATIONAL, {{3, 0}}), rationals(60001, RATIONAL, {{1, 0}}),
         rationals(60002, RATIONAL, {{1, 0}})});
    EXPECT_EQ(result.warnings(), (Reports{report("badTagValueDivisionByZero", {"BlackLevel"}),
                                          report("badTagValueDivisionByZero", {"WhiteLevel"}),
                                          report("badTagValueDivisionByZero", {""})}));
}

TEST(ZeroDenominators, OfTheDepthTagsAreNotReportedAsRationals) {
    const Result result =
        readDirectory({rationals(51178, RATIONAL, {{0, 0}}), rationals(51179, RATIONAL, {{0, 0}})});
    EXPECT_EQ(result.warnings(), Reports{});
    EXPECT_EQ(bitsOf(result.numbers("DepthNear")), (std::vector<std::uint64_t>{notANumber}));
}

TEST(ZeroDenominators, OfTheDepthTagsAreReportedAsSignedRationals) {
    const Result result = readDirectory(
        {rationals(51178, SRATIONAL, {{0, 0}}), rationals(51179, SRATIONAL, {{0, 0}})});
    EXPECT_EQ(result.warnings(), (Reports{report("badTagValueDivisionByZero", {"DepthNear"}),
                                          report("badTagValueDivisionByZero", {"DepthFar"})}));
}

}  // namespace
