#include "inspect/reading/geokeys.h"

#include <gtest/gtest.h>

#include "tests/value_reading/entries.h"

// The keys of a GeoTIFF by name.

namespace {

using namespace test;
using corvinex::inspect::reading::epsgCodeOf;
using corvinex::inspect::reading::geoKeyEntries;
using corvinex::inspect::reading::isPixelPoint;

std::string keysReading(const std::vector<std::uint16_t>& values, const Entries& siblings = {}) {
    return mainReading(34735, shorts(values), siblings);
}

std::optional<std::uint16_t> codeOf(const std::vector<std::uint16_t>& values) {
    return epsgCodeOf(geoKeyEntries(shorts(values).value()));
}

TEST(GeoKeys, CodesAreWordsOrPlacesInTheRegister) {
    EXPECT_EQ(keysReading({1,    1, 0, 5,      //
                           1024, 0, 1, 1,      //
                           1025, 0, 1, 2,      //
                           3072, 0, 1, 32633,  //
                           2054, 0, 1, 9122,   //
                           4096, 0, 1, 32767}),
              "GTModelTypeGeoKey: Projected\n"
              "GTRasterTypeGeoKey: Pixel is point\n"
              "ProjectedCRSGeoKey: EPSG:32633\n"
              "GeogAngularUnitsGeoKey: EPSG:9122\n"
              "VerticalGeoKey: User-defined");
}

TEST(GeoKeys, UnknownKeysAndCodesKeepTheirNumbers) {
    EXPECT_EQ(keysReading({1, 1, 0, 2, 999, 0, 1, 7, 1024, 0, 1, 9}),
              "Key 999: 7\nGTModelTypeGeoKey: unknown (9)");
}

TEST(GeoKeys, NumbersAndTextsStandInOtherTags) {
    EXPECT_EQ(keysReading({1, 1, 0, 3, 1026, 34737, 10, 0, 3080, 34736, 1, 1, 2062, 34736, 4, 0},
                          {{34736, doubles({0.5, -123.25, 500000, 1e300})},
                           {34737, ascii("UTM zone |rest|")}}),
              "GTCitationGeoKey: \"UTM zone\"\n"
              "ProjNatOriginLongGeoKey: -123.25\n"
              "GeogTOWGS84GeoKey: 0.5, -123.25, 500000, 1e+300");
}

TEST(GeoKeys, ValuesOutsideOfTheirTagsAreNotKnown) {
    EXPECT_EQ(keysReading({1, 1, 0,    4,     1026, 34737, 10,   99,    3080, 34736,
                           2, 1, 3081, 34736, 1,    0,     3082, 50000, 1,    0},
                          {{34736, doubles({1, 2})}, {34737, ascii("text|")}}),
              "GTCitationGeoKey: ?\n"
              "ProjNatOriginLongGeoKey: ?\n"
              "ProjNatOriginLatGeoKey: 1\n"
              "ProjFalseEastingGeoKey: ?");
    EXPECT_EQ(keysReading({1, 1, 0, 1, 1026, 34737, 10, 0}), "GTCitationGeoKey: ?");
}

TEST(GeoKeys, SeveralNumbersStandBehindTheKeys) {
    EXPECT_EQ(keysReading({1, 1, 0, 1, 999, 34735, 2, 8, 11, 12}), "Key 999: 11, 12");
    EXPECT_EQ(keysReading({1, 1, 0, 1, 999, 34735, 9, 8, 11, 12}), "Key 999: ?");
}

TEST(GeoKeys, NoMoreKeysAreReadThanThereAre) {
    EXPECT_EQ(keysReading({1, 1, 0, 65535, 1024, 0, 1, 1, 1025, 0}),
              "GTModelTypeGeoKey: Projected");
    EXPECT_EQ(keysReading({1, 1, 0, 0, 1024, 0, 1, 1}), "-");
    EXPECT_EQ(keysReading({1, 1}), "-");
    EXPECT_EQ(mainReading(34735, ascii("no keys")), "-");
    EXPECT_EQ(mainReading(34736, doubles({1})), "-");
    EXPECT_EQ(mainReading(34737, ascii("UTM|")), "-");
}

TEST(GeoKeys, OneTextAgainAndAgainIsNoLongReading) {
    std::vector<std::uint16_t> keys{1, 1, 0, 256};
    for (int key = 0; key < 256; ++key) {
        keys.insert(keys.end(), {1026, 34737, 200, 0});
    }
    const std::string reading = keysReading(keys, {{34737, ascii(std::string(200, 'x') + "|")}});
    EXPECT_TRUE(reading.ends_with("x\"\n...")) << reading;
    EXPECT_LT(reading.size(), 4500u);
}

TEST(GeoKeys, TheProjectedSystemIsThatOfTheImage) {
    EXPECT_EQ(codeOf({1, 1, 0, 3, 1024, 0, 1, 1, 2048, 0, 1, 4326, 3072, 0, 1, 32633}), 32633);
    EXPECT_EQ(codeOf({1, 1, 0, 2, 1024, 0, 1, 2, 2048, 0, 1, 4326}), 4326);
    EXPECT_EQ(codeOf({1, 1, 0, 1, 3072, 0, 1, 32633}), 32633);
    EXPECT_EQ(codeOf({1, 1, 0, 1, 2048, 0, 1, 4326}), 4326);
}

TEST(GeoKeys, AProjectionOfTheFileItselfHasNoCode) {
    EXPECT_EQ(codeOf({1, 1, 0, 3, 1024, 0, 1, 1, 2048, 0, 1, 4326, 3072, 0, 1, 32767}),
              std::nullopt);
    EXPECT_EQ(codeOf({1, 1, 0, 2, 1024, 0, 1, 1, 2048, 0, 1, 4326}), std::nullopt);
    EXPECT_EQ(codeOf({1, 1, 0, 1, 2048, 0, 1, 0}), std::nullopt);
    EXPECT_EQ(codeOf({1, 1, 0, 1, 2048, 34737, 1, 4326}), std::nullopt);
}

TEST(GeoKeys, TellWhetherAPixelIsAPoint) {
    EXPECT_TRUE(isPixelPoint(geoKeyEntries(shorts({1, 1, 0, 1, 1025, 0, 1, 2}).value())));
    EXPECT_FALSE(isPixelPoint(geoKeyEntries(shorts({1, 1, 0, 1, 1025, 0, 1, 1}).value())));
    EXPECT_FALSE(isPixelPoint({}));
}

}  // namespace
