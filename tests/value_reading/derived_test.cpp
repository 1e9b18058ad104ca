#include "inspect/reading/derived.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/value_reading/entries.h"

// Facts that follow from the entries of directories.

namespace {

using namespace test;
using corvinex::inspect::DerivedFact;
using corvinex::inspect::reading::directoryFacts;
using corvinex::inspect::reading::fileFacts;
using corvinex::inspect::reading::FileParts;
using corvinex::inspect::reading::isReducedImage;

constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max();

/// "width 640, height 480".
std::string textOf(const std::vector<DerivedFact>& facts) {
    std::string text;
    const auto print = [&text](const auto& value) {
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::string>) {
            text += value;
        } else if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::vector<double>>) {
            for (const double number : value) {
                text += (text.ends_with(' ') ? "" : "|") + std::to_string(number);
            }
        } else {
            text += std::to_string(value);
        }
    };
    for (const DerivedFact& fact : facts) {
        text += text.empty() ? "" : ", ";
        text += std::string(fact.name) + " ";
        std::visit(print, fact.value);
    }
    return text;
}

TEST(DerivedOfDirectory, TellsCompressionAndStrips) {
    EXPECT_EQ(textOf(directoryFacts(Entries{{259, shorts({5})},
                                            {262, shorts({2})},
                                            {273, longs({8, 108})},
                                            {279, longs({100, 50})}},
                                    true)),
              "compression LZW, photometric RGB, strips 2, bytes 150");
}

TEST(DerivedOfDirectory, TilesCountMoreThanStrips) {
    EXPECT_EQ(textOf(directoryFacts(Entries{{259, shorts({50010})},
                                            {273, longs({8})},
                                            {279, longs({7})},
                                            {324, longs({8, 9, 10})},
                                            {325, longs({1, 2, 3})}},
                                    true)),
              "compression unknown (50010), tiles 3, bytes 6");
}

TEST(DerivedOfDirectory, LeavesOutWhatTheFileDoesNotSay) {
    EXPECT_EQ(textOf(directoryFacts(Entries{}, true)), "");
    EXPECT_EQ(textOf(directoryFacts(Entries{{273, longs({8})}, {279, ascii("x")}}, true)),
              "strips 1");
    const std::uint64_t large = std::uint64_t{1} << 63;
    EXPECT_EQ(textOf(directoryFacts(
                  Entries{{273, longs({8, 8})},
                          {279, elements<std::uint64_t>(FieldType::Long8, {large, large})}},
                  true)),
              "strips 2");
    EXPECT_EQ(textOf(directoryFacts(Entries{{279, longs({8})}}, true)), "");
}

TEST(DerivedOfDirectory, KnowsReducedImages) {
    EXPECT_TRUE(isReducedImage(Entries{{254, longs({1})}}));
    EXPECT_TRUE(isReducedImage(Entries{{254, longs({5})}}));
    EXPECT_TRUE(isReducedImage(Entries{{255, shorts({2})}}));
    EXPECT_FALSE(isReducedImage(Entries{{254, longs({0})}, {255, shorts({2})}}));
    EXPECT_FALSE(isReducedImage(Entries{}));
}

TEST(DerivedOfFile, SizeIsThatOfTheImage) {
    const Entries thumbnail{{256, shorts({160})}, {257, shorts({120})}};
    const Entries image{{256, longs({6000})}, {257, longs({4000})}};
    FileParts parts;
    parts.pages = 1;
    parts.first = &thumbnail;
    parts.image = &image;
    EXPECT_EQ(textOf(fileFacts(parts)), "width 6000, height 4000, pages 1");
    parts.frame = {640, 480};
    EXPECT_EQ(textOf(fileFacts(parts)), "width 640, height 480, pages 1");
    EXPECT_EQ(textOf(fileFacts({})), "pages 0");
    const Entries narrow{{256, shorts({20})}};
    parts.frame.reset();
    parts.image = &narrow;
    EXPECT_EQ(textOf(fileFacts(parts)), "width 20, pages 1");
}

TEST(DerivedOfFile, APhotoTellsWhenAndWithWhatItWasTaken) {
    const Entries first{{271, ascii("EO ")}, {272, ascii("Model 1")}};
    const Entries exif{{36867, ascii("2024:03:05 14:07:09")},
                       {37521, ascii("042")},
                       {36881, ascii("+01:00")},
                       {42034, rationals({{18, 1}, {55, 1}, {35, 10}, {56, 10}})}};
    FileParts parts;
    parts.first = &first;
    parts.exif = &exif;
    EXPECT_EQ(textOf(fileFacts(parts)),
              "pages 0, taken 2024-03-05T14:07:09.042+01:00, make EO, model Model 1, "
              "lens 18-55 mm f/3.5-5.6");
}

TEST(DerivedOfFile, ALensIsCalledByItsNameWhereItHasOne) {
    const Entries named{{42036, ascii("EO 18-55")},
                        {42034, rationals({{18, 1}, {55, 1}, {35, 10}, {56, 10}})}};
    const Entries unnamed{{42036, ascii("    ")}, {65002, ascii("EO zoom")}};
    const Entries raw{{36867, ascii("2024:03:05 14:07:09")},
                      {50736, rationals({{50, 1}, {50, 1}, {0, 0}, {0, 0}})}};
    FileParts parts;
    parts.exif = &named;
    EXPECT_EQ(textOf(fileFacts(parts)), "pages 0, lens EO 18-55");
    parts.exif = &unnamed;
    EXPECT_EQ(textOf(fileFacts(parts)), "pages 0, lens EO zoom");
    parts.exif = nullptr;
    parts.first = &raw;
    EXPECT_EQ(textOf(fileFacts(parts)), "pages 0, taken 2024-03-05T14:07:09, lens 50 mm");
}

FileParts withGps(const Entries& gps) {
    FileParts parts;
    parts.gps = &gps;
    return parts;
}

TEST(DerivedOfFile, PositionsAreSignedDegrees) {
    const Entries gps{{1, ascii("S")},  {2, rationals({{33, 1}, {30, 1}, {0, 1}})},
                      {3, ascii("E")},  {4, rationals({{151, 1}, {15, 1}, {0, 1}})},
                      {5, bytes("\1")}, {6, rationals({{25, 2}})}};
    EXPECT_EQ(textOf(fileFacts(withGps(gps))),
              "pages 0, latitude -33.500000, longitude 151.250000, altitude -12.500000");
}

TEST(DerivedOfFile, APositionIsLeftOutUnlessAllOfItIsTold) {
    const Elements angle = rationals({{33, 1}, {30, 1}, {0, 1}});
    EXPECT_EQ(textOf(fileFacts(withGps(Entries{{1, ascii("S")}, {2, angle}, {3, ascii("E")}}))),
              "pages 0");
    EXPECT_EQ(textOf(fileFacts(withGps(Entries{{2, angle}, {4, angle}}))), "pages 0");
    EXPECT_EQ(textOf(fileFacts(
                  withGps(Entries{{1, ascii("E")}, {2, angle}, {3, ascii("E")}, {4, angle}}))),
              "pages 0");
    EXPECT_EQ(textOf(fileFacts(withGps(Entries{
                  {1, ascii("N")}, {2, rationals({{91, 1}})}, {3, ascii("E")}, {4, angle}}))),
              "pages 0");
    EXPECT_EQ(textOf(fileFacts(withGps(Entries{{6, rationals({{1, 0}})}}))), "pages 0");
}

std::string georeference(const Entries& first) {
    FileParts parts;
    parts.first = &first;
    return textOf(fileFacts(parts));
}

const Elements projectedKeys = shorts({1, 1, 0, 2, 1024, 0, 1, 1, 3072, 0, 1, 32633});

TEST(DerivedOfFile, AGeoTiffTellsSystemAndBounds) {
    EXPECT_EQ(georeference({{256, shorts({10})},
                            {257, shorts({20})},
                            {33550, doubles({2, 3, 0})},
                            {33922, doubles({0, 0, 0, 500, 1000, 0})},
                            {34735, projectedKeys}}),
              "pages 0, crs EPSG:32633, geotransform 500.000000|2.000000|0.000000|1000.000000|"
              "0.000000|-3.000000, bounds 500.000000|940.000000|520.000000|1000.000000");
}

TEST(DerivedOfFile, TheGeodeticBaseOfAProjectionIsNotTheSystem) {
    // The model (1024), a projected system (3072) where there is one, and the geodetic one (2048).
    const auto system = [](std::uint16_t model, std::uint16_t projected) {
        return georeference(
            {{34735, projected == 0 ? shorts({1, 1, 0, 2, 1024, 0, 1, model, 2048, 0, 1, 4326})
                                    : shorts({1, 1, 0, 3, 1024, 0, 1, model, 2048, 0, 1, 4326, 3072,
                                              0, 1, projected})}});
    };
    EXPECT_EQ(system(2, 0), "pages 0, crs EPSG:4326");
    EXPECT_EQ(system(3, 0), "pages 0, crs EPSG:4326");
    EXPECT_EQ(system(0, 0), "pages 0, crs EPSG:4326");
    EXPECT_EQ(system(1, 0), "pages 0");
    EXPECT_EQ(system(1, 32767), "pages 0");
    EXPECT_EQ(system(32767, 0), "pages 0");
    EXPECT_EQ(system(32767, 32633), "pages 0, crs EPSG:32633");
}

TEST(DerivedOfFile, ATiepointMayLieAnywhere) {
    EXPECT_EQ(
        georeference({{33550, doubles({2, 3, 0})}, {33922, doubles({5, 10, 0, 500, 1000, 0})}}),
        "pages 0, geotransform 490.000000|2.000000|0.000000|1030.000000|0.000000|-3.000000");
}

TEST(DerivedOfFile, AMatrixMayTurnTheImage) {
    EXPECT_EQ(
        georeference({{256, shorts({10})},
                      {257, shorts({20})},
                      {34264, doubles({0, 2, 0, 100, 2, 0, 0, 200, 0, 0, 0, 0, 0, 0, 0, 1})}}),
        "pages 0, geotransform 100.000000|0.000000|2.000000|200.000000|2.000000|0.000000, "
        "bounds 100.000000|200.000000|140.000000|220.000000");
}

TEST(DerivedOfFile, CoordinatesOfPixelCentresAreMovedToCorners) {
    EXPECT_EQ(georeference({{33550, doubles({2, 4, 0})},
                            {33922, doubles({0, 0, 0, 500, 1000, 0})},
                            {34735, shorts({1, 1, 0, 1, 1025, 0, 1, 2})}}),
              "pages 0, geotransform 499.000000|2.000000|0.000000|1002.000000|0.000000|-4.000000");
}

TEST(DerivedOfFile, ADamagedGeoreferenceIsLeftOut) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(georeference(
                  {{33550, doubles({2, infinity, 0})}, {33922, doubles({0, 0, 0, 500, 1000, 0})}}),
              "pages 0");
    EXPECT_EQ(
        georeference({{33550, doubles({0, 0, 0})}, {33922, doubles({0, 0, 0, 500, 1000, 0})}}),
        "pages 0");
    EXPECT_EQ(georeference({{33550, doubles({2, 3})}, {33922, doubles({0, 0, 0, 500, 1000, 0})}}),
              "pages 0");
    EXPECT_EQ(georeference({{256, longs({most})},
                            {257, longs({most})},
                            {33550, doubles({1e308, 1, 0})},
                            {33922, doubles({0, 0, 0, 500, 1000, 0})}})
                  .find("bounds"),
              std::string::npos);
}

}  // namespace
