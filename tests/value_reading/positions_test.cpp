#include "inspect/reading/positions.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/value_reading/entries.h"

// Coordinates and times of a GPS receiver.

namespace {

using namespace test;

constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max();

TEST(GpsCoordinate, ReadsWithItsHemisphere) {
    const Elements angle = rationals({{59, 1}, {54, 1}, {4822, 100}});
    EXPECT_EQ(gpsReading(2, angle, {{1, ascii("N")}}), "59 deg 54' 48.22\" N");
    EXPECT_EQ(gpsReading(4, angle, {{3, ascii("W")}}), "59 deg 54' 48.22\" W");
    EXPECT_EQ(gpsReading(20, angle, {{19, ascii("S")}}), "59 deg 54' 48.22\" S");
    EXPECT_EQ(gpsReading(22, angle, {{21, ascii("E")}}), "59 deg 54' 48.22\" E");
    EXPECT_EQ(gpsReading(2, angle), "59 deg 54' 48.22\"");
    EXPECT_EQ(gpsReading(2, angle, {{1, ascii("x")}}), "59 deg 54' 48.22\"");
}

TEST(GpsCoordinate, DecimalPartsAreSpreadOverMinutesAndSeconds) {
    EXPECT_EQ(gpsReading(2, rationals({{59, 1}, {54803, 1000}, {0, 1}})), "59 deg 54' 48.18\"");
    EXPECT_EQ(gpsReading(2, rationals({{599, 10}})), "59 deg 54' 0.00\"");
    EXPECT_EQ(gpsReading(2, rationals({{59, 1}, {1, 2}})), "59 deg 0' 30.00\"");
    EXPECT_EQ(gpsReading(2, doubles({59.5})), "59 deg 30' 0.00\"");
}

TEST(GpsCoordinate, DegreesAreThoseThatTheirDecimalsTell) {
    using corvinex::inspect::reading::degreesOf;
    EXPECT_EQ(degreesOf(rationals({{151, 1}, {12, 1}, {5508, 100}}).value()), 151.2153);
    EXPECT_EQ(degreesOf(rationals({{48, 1}, {53323, 1000}}).value()), 48.88871666666667);
    EXPECT_EQ(degreesOf(rationals({{59, 1}, {30, 1}, {0, 0}}).value()), 59.5);
}

TEST(GpsCoordinate, SecondsAreRoundedIntoTheNextMinute) {
    EXPECT_EQ(gpsReading(2, rationals({{59, 1}, {59, 1}, {59999, 1000}})), "60 deg 0' 0.00\"");
}

TEST(GpsCoordinate, PartsWithoutADenominatorAreNotTold) {
    EXPECT_EQ(gpsReading(2, rationals({{59, 1}, {54, 1}, {0, 0}})), "59 deg 54' 0.00\"");
    EXPECT_EQ(gpsReading(2, rationals({{0, 0}, {54, 1}, {0, 1}})), "-");
}

TEST(GpsCoordinate, PartsBeyondTheThirdAreLeftOut) {
    EXPECT_EQ(gpsReading(2, rationals({{59, 1}, {54, 1}, {0, 1}, {99, 1}})), "59 deg 54' 0.00\"");
}

TEST(GpsCoordinate, WhatIsNoAngleIsNotRead) {
    EXPECT_EQ(gpsReading(2, rationals({{most, 1}, {0, 1}, {0, 1}})), "-");
    EXPECT_EQ(gpsReading(2, doubles({std::numeric_limits<double>::quiet_NaN()})), "-");
    EXPECT_EQ(gpsReading(2, doubles({1, std::numeric_limits<double>::infinity()})), "-");
    EXPECT_EQ(gpsReading(2, ascii("59 54")), "-");
}

TEST(GpsTime, ReadsAsAClock) {
    EXPECT_EQ(gpsReading(7, rationals({{14, 1}, {7, 1}, {9, 1}})), "14:07:09 UTC");
    EXPECT_EQ(gpsReading(7, rationals({{14, 1}, {7, 1}, {950, 100}})), "14:07:09.5 UTC");
    EXPECT_EQ(gpsReading(7, rationals({{23, 1}, {59, 1}, {60, 1}})), "23:59:60 UTC");
    EXPECT_EQ(gpsReading(7, rationals({{14, 1}, {7, 1}, {59999, 1000}})), "14:07:59.99 UTC");
}

TEST(GpsTime, OddPartsAreSpread) {
    EXPECT_EQ(gpsReading(7, rationals({{29, 2}})), "14:30:00 UTC");
    EXPECT_EQ(gpsReading(7, rationals({{14, 1}, {90, 1}, {0, 0}})), "15:30:00 UTC");
}

TEST(GpsTime, WhatIsNoTimeIsNotRead) {
    EXPECT_EQ(gpsReading(7, rationals({{24, 1}, {0, 1}, {0, 1}})), "-");
    EXPECT_EQ(gpsReading(7, rationals({{0, 0}, {0, 1}, {0, 1}})), "-");
    EXPECT_EQ(gpsReading(7, rationals({{most, 1}, {0, 1}, {0, 1}})), "-");
    EXPECT_EQ(gpsReading(7, signedRationals({{-1, 1}, {0, 1}, {0, 1}})), "-");
}

}  // namespace
