#include "vocabulary/registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>

namespace corvinex::registry {
namespace {

using inspect::DirectoryKind;
using inspect::FieldType;

std::string_view nameOf(DirectoryKind kind, std::uint16_t number) {
    const TagFact* fact = findTag(kind, number);
    return fact != nullptr ? fact->name : "";
}

TEST(Registry, HoldsTheTagsOfFourKindsOfDirectory) {
    EXPECT_EQ(tagsOf(DirectoryKind::Main).size(), 586u);
    EXPECT_EQ(tagsOf(DirectoryKind::Sub).data(), tagsOf(DirectoryKind::Main).data());
    EXPECT_EQ(tagsOf(DirectoryKind::Exif).size(), 125u);
    EXPECT_EQ(tagsOf(DirectoryKind::Gps).size(), 32u);
    EXPECT_EQ(tagsOf(DirectoryKind::Interop).size(), 5u);
    EXPECT_EQ(geoKeys().size(), 48u);
}

TEST(Registry, FindsEveryRowByItsNumber) {
    for (const auto kind :
         {DirectoryKind::Main, DirectoryKind::Exif, DirectoryKind::Gps, DirectoryKind::Interop}) {
        for (const TagFact& fact : tagsOf(kind)) {
            EXPECT_EQ(findTag(kind, fact.number), &fact) << fact.name;
        }
    }
    for (const GeoKey& key : geoKeys()) {
        EXPECT_EQ(findGeoKey(key.number), &key) << key.name;
    }
    EXPECT_EQ(findGeoKey(1023), nullptr);
}

TEST(Registry, FindsNothingForOtherNumbers) {
    for (const auto kind :
         {DirectoryKind::Main, DirectoryKind::Exif, DirectoryKind::Gps, DirectoryKind::Interop}) {
        std::size_t found = 0;
        for (std::uint32_t number = 0; number <= 0xFFFF; ++number) {
            const TagFact* fact = findTag(kind, static_cast<std::uint16_t>(number));
            found += fact != nullptr ? 1 : 0;
            EXPECT_TRUE(fact == nullptr || fact->number == number) << number;
        }
        // Each of the two that fall back on each other has what one of them has.
        std::set<std::uint16_t> numbers;
        const bool fallsBack = kind == DirectoryKind::Main || kind == DirectoryKind::Exif;
        for (const auto table : {kind, fallsBack ? DirectoryKind::Main : kind,
                                 fallsBack ? DirectoryKind::Exif : kind}) {
            for (const TagFact& fact : tagsOf(table)) {
                numbers.insert(fact.number);
            }
        }
        EXPECT_EQ(found, numbers.size());
    }
}

TEST(Registry, NamesAreUniqueInAKindOfDirectoryButForTagsThatMovedTheirNumber) {
    for (const auto kind :
         {DirectoryKind::Main, DirectoryKind::Exif, DirectoryKind::Gps, DirectoryKind::Interop}) {
        std::set<std::string_view> names;
        std::set<std::string_view> repeated;
        for (const TagFact& fact : tagsOf(kind)) {
            if (!names.insert(fact.name).second) {
                repeated.insert(fact.name);
            }
        }
        // TIFF/EP numbers that EXIF writers use beside their own, and names that a raw converter
        // wrote as texts.
        const std::set<std::string_view> expected =
            kind == DirectoryKind::Exif
                ? std::set<std::string_view>{"Contrast",    "ImageHistory",           "ImageNumber",
                                             "Saturation",  "SecurityClassification", "Sharpness",
                                             "WhiteBalance"}
                : std::set<std::string_view>{};
        EXPECT_EQ(repeated, expected);
    }
}

TEST(Registry, MainAndExifFallBackOnEachOther) {
    EXPECT_EQ(nameOf(DirectoryKind::Exif, 256), "ImageWidth");
    EXPECT_EQ(nameOf(DirectoryKind::Main, 37510), "UserComment");
    EXPECT_EQ(nameOf(DirectoryKind::Sub, 37510), "UserComment");
    EXPECT_EQ(nameOf(DirectoryKind::Main, 34855), "ISOSpeedRatings");
    EXPECT_EQ(nameOf(DirectoryKind::Exif, 34855), "PhotographicSensitivity");
}

TEST(Registry, GpsAndInteropFallBackOnNobody) {
    EXPECT_EQ(nameOf(DirectoryKind::Gps, 2), "GPSLatitude");
    EXPECT_EQ(nameOf(DirectoryKind::Interop, 2), "InteroperabilityVersion");
    EXPECT_EQ(nameOf(DirectoryKind::Main, 2), "");
    EXPECT_EQ(nameOf(DirectoryKind::Gps, 256), "");
    EXPECT_EQ(nameOf(DirectoryKind::Interop, 256), "");
}

TEST(Registry, KnowsWhichTypesAStandardAllows) {
    const TagFact& width = *findTag(DirectoryKind::Main, 256);
    EXPECT_TRUE(width.types.contains(static_cast<std::uint16_t>(FieldType::Short)));
    EXPECT_TRUE(width.types.contains(static_cast<std::uint16_t>(FieldType::Long)));
    EXPECT_FALSE(width.types.contains(static_cast<std::uint16_t>(FieldType::Byte)));
    EXPECT_FALSE(width.types.contains(0));
    EXPECT_FALSE(width.types.contains(31));
    EXPECT_FALSE(width.types.contains(65535));
    const TagFact& make = *findTag(DirectoryKind::Main, 271);
    EXPECT_TRUE(make.types.contains(static_cast<std::uint16_t>(FieldType::Utf8)));
    EXPECT_TRUE(findTag(DirectoryKind::Main, 999)->types.isEmpty());
    EXPECT_EQ(std::ranges::count_if(tagsOf(DirectoryKind::Main),
                                    [](const TagFact& fact) { return fact.types.isEmpty(); }),
              125);
}

TEST(Registry, GivesAScalarWhereTheCountIsOne) {
    EXPECT_TRUE(isScalar(DirectoryKind::Main, 256));
    EXPECT_FALSE(isScalar(DirectoryKind::Main, 258));
    EXPECT_FALSE(isScalar(DirectoryKind::Main, 65003));
    EXPECT_TRUE(isScalar(DirectoryKind::Gps, 6));
    EXPECT_FALSE(isScalar(DirectoryKind::Gps, 2));
}

TEST(Registry, TheExifCountDecidesForPhotographicTagsOfMainDirectories) {
    EXPECT_EQ(findTag(DirectoryKind::Main, 37386)->count, "1 or N");
    EXPECT_TRUE(isScalar(DirectoryKind::Main, 37386));
    EXPECT_TRUE(isScalar(DirectoryKind::Sub, 33434));
    EXPECT_TRUE(isScalar(DirectoryKind::Exif, 37386));
    // No row in exif: the main row counts in either.
    EXPECT_FALSE(isScalar(DirectoryKind::Main, 37387));
    EXPECT_FALSE(isScalar(DirectoryKind::Exif, 37387));
}

TEST(Registry, WordsAreFoundByTheWholeValue) {
    const Words& compression = *findTag(DirectoryKind::Main, 259)->words;
    EXPECT_EQ(compression.find(50000), "ZSTD");
    EXPECT_EQ(compression.find(0), std::nullopt);
    EXPECT_EQ(compression.find(50000 + (std::uint64_t{1} << 32)), std::nullopt);
    const Words& flash = *findTag(DirectoryKind::Exif, 37385)->words;
    EXPECT_EQ(flash.find(16), "Flash did not fire, compulsory suppression");
}

TEST(Registry, WordsAreFoundByText) {
    const Words& latitude = *findTag(DirectoryKind::Gps, 1)->words;
    EXPECT_EQ(latitude.find("N"), "North");
    EXPECT_EQ(latitude.find("n"), std::nullopt);
    EXPECT_EQ(latitude.find(""), std::nullopt);
    EXPECT_EQ(findTag(DirectoryKind::Gps, 10)->words->find("3"), "3-dimensional measurement");
}

TEST(Registry, Has854WordsInTheTablesOfItsTags) {
    std::size_t words = 0;
    for (const auto kind :
         {DirectoryKind::Main, DirectoryKind::Exif, DirectoryKind::Gps, DirectoryKind::Interop}) {
        for (const TagFact& fact : tagsOf(kind)) {
            if (fact.words != nullptr) {
                words +=
                    fact.words->values.size() + fact.words->bits.size() + fact.words->texts.size();
            }
        }
    }
    EXPECT_EQ(words, 854u);
}

TEST(Registry, GeoKeysHaveTheirSmallEnumerations) {
    EXPECT_EQ(findGeoKey(1024)->words->find(2), "Geographic (2D)");
    EXPECT_EQ(findGeoKey(4099)->words->find(9001), "metre");
    EXPECT_EQ(findGeoKey(3072)->words, nullptr);
    EXPECT_EQ(findGeoKey(3072)->name, "ProjectedCRSGeoKey");
    EXPECT_EQ(findGeoKey(3078)->type, FieldType::Double);
}

}  // namespace
}  // namespace corvinex::registry
