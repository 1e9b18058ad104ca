#include <gtest/gtest.h>

#include <limits>

#include "tests/value_reading/entries.h"

// Exposure times, apertures and lenses as they stand on cameras.

namespace {

using namespace test;

constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max();

std::string timeOf(std::uint32_t numerator, std::uint32_t denominator) {
    return exifReading(33434, rationals({{numerator, denominator}}));
}

TEST(ExposureTime, ShortTimesAreFractions) {
    EXPECT_EQ(timeOf(1, 60), "1/60 s");
    EXPECT_EQ(timeOf(10, 600), "1/60 s");
    EXPECT_EQ(timeOf(16667, 1000000), "1/60 s");
    EXPECT_EQ(timeOf(1, 8000), "1/8000 s");
    EXPECT_EQ(timeOf(1, 3), "1/3 s");
    EXPECT_EQ(timeOf(1, 2), "1/2 s");
}

TEST(ExposureTime, LongTimesAreDecimals) {
    EXPECT_EQ(timeOf(4, 10), "0.4 s");
    EXPECT_EQ(timeOf(10, 13), "0.77 s");
    EXPECT_EQ(timeOf(1, 1), "1 s");
    EXPECT_EQ(timeOf(25, 10), "2.5 s");
    EXPECT_EQ(timeOf(30, 1), "30 s");
    EXPECT_EQ(timeOf(12345, 10), "1234.5 s");
}

TEST(ExposureTime, WhatIsNoTimeIsNotRead) {
    EXPECT_EQ(timeOf(0, 60), "-");
    EXPECT_EQ(timeOf(1, 0), "-");
    EXPECT_EQ(timeOf(0, 0), "-");
    EXPECT_EQ(timeOf(1, most), "-");
    EXPECT_EQ(timeOf(most, 1), "-");
    EXPECT_EQ(exifReading(33434, signedRationals({{-1, 60}})), "-");
    EXPECT_EQ(exifReading(33434, doubles({std::numeric_limits<double>::quiet_NaN()})), "-");
    EXPECT_EQ(exifReading(33434, ascii("1/60")), "-");
}

TEST(ExposureTime, SeveralTimesAreListed) {
    EXPECT_EQ(mainReading(33434, rationals({{1, 60}, {1, 30}})), "1/60 s, 1/30 s");
}

TEST(FNumber, HasTheDigitsOfTheLens) {
    EXPECT_EQ(exifReading(33437, rationals({{28, 10}})), "f/2.8");
    EXPECT_EQ(exifReading(33437, rationals({{178, 100}})), "f/1.78");
    EXPECT_EQ(exifReading(33437, rationals({{8, 1}})), "f/8");
    EXPECT_EQ(exifReading(33437, rationals({{0, 1}})), "-");
    EXPECT_EQ(exifReading(33437, rationals({{1, 0}})), "-");
}

TEST(Apex, ShutterSpeedsAreTimes) {
    EXPECT_EQ(exifReading(37377, signedRationals({{5906891, 1000000}})), "1/60 s");
    EXPECT_EQ(exifReading(37377, signedRationals({{-2, 1}})), "4 s");
    EXPECT_EQ(exifReading(37377, signedRationals({{-2147483647, 1}})), "-");
    EXPECT_EQ(exifReading(37377, signedRationals({{1, 0}})), "-");
}

TEST(Apex, AperturesAreFNumbers) {
    EXPECT_EQ(exifReading(37378, rationals({{497, 100}})), "f/5.6");
    EXPECT_EQ(exifReading(37381, rationals({{3, 1}})), "f/2.8");
    EXPECT_EQ(exifReading(37378, rationals({{0, 1}})), "f/1");
    EXPECT_EQ(exifReading(37378, rationals({{most, 1}})), "-");
}

TEST(Apex, BrightnessIsInSteps) {
    EXPECT_EQ(exifReading(37379, signedRationals({{-31, 10}})), "-3.1 EV");
}

TEST(ExposureValue, HalvesAndThirdsStayFractions) {
    const auto biasOf = [](std::int32_t numerator, std::int32_t denominator) {
        return exifReading(37380, signedRationals({{numerator, denominator}}));
    };
    EXPECT_EQ(biasOf(0, 10), "0 EV");
    EXPECT_EQ(biasOf(1, 3), "+1/3 EV");
    EXPECT_EQ(biasOf(-33334, 100000), "-1/3 EV");
    EXPECT_EQ(biasOf(-1, 2), "-1/2 EV");
    EXPECT_EQ(biasOf(4, 3), "+4/3 EV");
    EXPECT_EQ(biasOf(2, 1), "+2 EV");
    EXPECT_EQ(biasOf(3, 10), "+0.3 EV");
    EXPECT_EQ(biasOf(-1, 100000), "0 EV");
    EXPECT_EQ(biasOf(1, 0), "-");
    EXPECT_EQ(mainReading(50730, signedRationals({{-15, 10}})), "-3/2 EV");
}

TEST(LensRange, ZoomsHaveRanges) {
    EXPECT_EQ(exifReading(42034, rationals({{18, 1}, {55, 1}, {35, 10}, {56, 10}})),
              "18-55 mm f/3.5-5.6");
    EXPECT_EQ(mainReading(50736, rationals({{24, 1}, {70, 1}, {28, 10}, {28, 10}})),
              "24-70 mm f/2.8");
}

TEST(LensRange, APrimeLensHasOneLength) {
    EXPECT_EQ(exifReading(42034, rationals({{50, 1}, {50, 1}, {18, 10}, {18, 10}})), "50 mm f/1.8");
}

TEST(LensRange, WhatTheFileLeavesOpenIsAQuestion) {
    EXPECT_EQ(exifReading(42034, rationals({{18, 1}, {55, 1}, {0, 0}, {0, 0}})), "18-55 mm");
    EXPECT_EQ(exifReading(42034, rationals({{18, 1}, {55, 1}, {35, 10}, {0, 0}})),
              "18-55 mm f/3.5-?");
    EXPECT_EQ(exifReading(42034, rationals({{0, 0}, {55, 1}, {0, 1}, {0, 0}})), "?-55 mm");
    EXPECT_EQ(exifReading(42034, rationals({{0, 0}, {0, 0}, {2, 1}, {2, 1}})), "f/2");
    EXPECT_EQ(exifReading(42034, rationals({{0, 0}, {0, 0}, {0, 0}, {0, 0}})), "-");
    EXPECT_EQ(exifReading(42034, rationals({{18, 1}, {55, 1}})), "-");
}

}  // namespace
