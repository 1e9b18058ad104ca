#include <gtest/gtest.h>

#include <limits>

#include "tests/value_reading/entries.h"

// Numbers with the units that their tags or other ones tell.

namespace {

using namespace test;

constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max();

TEST(Quantities, ALengthHasItsUnit) {
    EXPECT_EQ(exifReading(37386, rationals({{50, 1}})), "50 mm");
    EXPECT_EQ(exifReading(37386, rationals({{6765, 1000}})), "6.765 mm");
    EXPECT_EQ(exifReading(41989, shorts({75})), "75 mm");
    EXPECT_EQ(gpsReading(6, rationals({{12345, 100}})), "123.45 m");
}

TEST(Quantities, AQuotientWithoutAUnitIsWorkedOut) {
    EXPECT_EQ(exifReading(41988, rationals({{150, 100}})), "1.5");
    EXPECT_EQ(mainReading(318, rationals({{3127, 10000}, {329, 1000}})), "0.3127, 0.329");
    EXPECT_EQ(mainReading(50721, signedRationals({{-1139, 10000}, {1, 3}})), "-0.1139, 0.333333");
    EXPECT_EQ(mainReading(318, rationals({{1, 0}, {329, 1000}})), "-");
}

TEST(Quantities, APlainNumberIsItsOwnReading) {
    EXPECT_EQ(mainReading(256, shorts({640})), "-");
    EXPECT_EQ(mainReading(258, shorts({8, 8, 8})), "-");
    EXPECT_EQ(mainReading(33550, doubles({30, 30, 0})), "-");
}

TEST(Quantities, ResolutionsHaveTheUnitOfTheirDirectory) {
    const Elements dots = rationals({{300, 1}});
    EXPECT_EQ(mainReading(282, dots), "300 dpi");
    EXPECT_EQ(mainReading(282, dots, {{296, shorts({2})}}), "300 dpi");
    EXPECT_EQ(mainReading(283, rationals({{11811, 100}}), {{296, shorts({3})}}), "118.11 dots/cm");
    EXPECT_EQ(mainReading(282, dots, {{296, shorts({1})}}), "300");
    EXPECT_EQ(mainReading(282, dots, {{296, shorts({77})}}), "300");
    EXPECT_EQ(mainReading(286, rationals({{3, 2}}), {{296, shorts({3})}}), "1.5 cm");
    EXPECT_EQ(mainReading(282, rationals({{0, 0}})), "-");
}

TEST(Quantities, FocalPlanesHaveTheirOwnUnit) {
    EXPECT_EQ(exifReading(41486, rationals({{4438356, 1000}}), {{41488, shorts({2})}}),
              "4438.36 px/inch");
    EXPECT_EQ(mainReading(37390, rationals({{100, 1}}), {{37392, shorts({4})}}), "100 px/mm");
}

TEST(Quantities, SpeedsAndDistancesHaveTheUnitOfTheirReference) {
    EXPECT_EQ(gpsReading(13, rationals({{25, 2}}), {{12, ascii("N")}}), "12.5 knots");
    EXPECT_EQ(gpsReading(13, rationals({{25, 2}})), "12.5 km/h");
    EXPECT_EQ(gpsReading(26, rationals({{3, 1}}), {{25, ascii("M")}}), "3 miles");
    EXPECT_EQ(gpsReading(13, rationals({{25, 2}}), {{12, ascii("")}}), "12.5 km/h");
}

TEST(Quantities, NumbersThatStandForWordsAreTheseWords) {
    EXPECT_EQ(exifReading(37382, rationals({{most, 1}})), "infinity");
    EXPECT_EQ(exifReading(37382, rationals({{0, 1}})), "unknown");
    EXPECT_EQ(exifReading(37382, rationals({{254, 100}})), "2.54 m");
    EXPECT_EQ(exifReading(37888, signedRationals({{20, -1}})), "unknown");
    EXPECT_EQ(exifReading(37888, signedRationals({{-55, 10}})), "-5.5 deg C");
    EXPECT_EQ(exifReading(37889, rationals({{40, most}})), "unknown");
    EXPECT_EQ(exifReading(41988, rationals({{0, 1}})), "not used");
    EXPECT_EQ(exifReading(41989, shorts({0})), "unknown");
}

TEST(Quantities, HundredthsOfSecondsAreSeconds) {
    EXPECT_EQ(mainReading(20736, longs({10, 250})), "0.1, 2.5 s");
}

TEST(Quantities, NumbersThatNobodyReadsAreLeftOut) {
    EXPECT_EQ(mainReading(37439, doubles({1e300})), "-");
    EXPECT_EQ(mainReading(37439, doubles({std::numeric_limits<double>::infinity()})), "-");
    EXPECT_EQ(mainReading(37439, doubles({-0.0})), "0 nit");
    EXPECT_EQ(mainReading(37439, doubles({1e-300})), "0 nit");
    EXPECT_EQ(mainReading(37439, doubles({1e15})), "1000000000000000 nit");
}

TEST(Quantities, OfVeryManyNumbersTheFirstAreRead) {
    const std::string reading = mainReading(20736, longs(std::vector<std::uint32_t>(5000, 100)));
    EXPECT_TRUE(reading.ends_with(", 1, ... (5,000 in all) s")) << reading;
    EXPECT_LT(reading.size(), 300u);
}

}  // namespace
