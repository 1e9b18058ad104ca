#include "vocabulary/tag_dictionary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <span>
#include <string>

#include "tests/support/single_directory.h"
#include "tests/vocabulary/expected_names.h"
#include "vocabulary/tag_table.h"

namespace {

using corvinex::GPSmap;
using corvinex::interopMap;
using corvinex::primaryMap;
using corvinex::TagDictionary;
using corvinex::TagRow;

TagDictionary dictionaryOf(std::span<const test::ExpectedName> names) {
    TagDictionary dictionary;
    for (const auto& [tag, name] : names) {
        dictionary[tag] = name;
    }
    return dictionary;
}

bool lists(std::span<const TagRow> table, std::string_view name) {
    return std::any_of(table.begin(), table.end(), [name](const TagRow& row) {
        return row.name != nullptr && row.name == name;
    });
}

TEST(TagDictionaries, ThePrimaryOneHoldsExactlyItsNames) {
    EXPECT_EQ(primaryMap.size(), 319U);
    EXPECT_EQ(primaryMap, dictionaryOf(test::primaryNames));
}

TEST(TagDictionaries, TheGpsOneHoldsExactlyItsNames) {
    EXPECT_EQ(GPSmap.size(), 31U);
    EXPECT_EQ(GPSmap, dictionaryOf(test::gpsNames));
}

TEST(TagDictionaries, TheInteroperabilityOneHoldsExactlyItsNames) {
    EXPECT_EQ(interopMap.size(), 5U);
    EXPECT_EQ(interopMap, dictionaryOf(test::interopNames));
}

TEST(TagDictionaries, GpsTagsRunFromZeroToThirtyWithoutAGap) {
    std::uint16_t expected = 0;
    for (const auto& [tag, name] : GPSmap) {
        EXPECT_EQ(tag, expected++);
    }
    EXPECT_EQ(expected, 31);
}

TEST(TagDictionaries, ZeroIsAKeyOfTheGpsOneOnly) {
    EXPECT_TRUE(GPSmap.contains(0));
    EXPECT_FALSE(primaryMap.contains(0));
    EXPECT_FALSE(interopMap.contains(0));
}

TEST(TagDictionaries, ATagListedTwiceKeepsItsFirstName) {
    const auto table = corvinex::primaryTagTable();
    EXPECT_EQ(table.size(), 321U) << "with 519, which has rules and no name";
    EXPECT_EQ(std::count_if(table.begin(), table.end(),
                            [](const TagRow& row) { return row.number == 347; }),
              2);
    EXPECT_TRUE(lists(table, "JPEGQTables"));
    EXPECT_EQ(primaryMap.at(347), "JPEGTables");
}

TEST(TagDictionaries, NoTagIsNamedJpegQTables) {
    for (const auto& [tag, name] : primaryMap) {
        EXPECT_NE(name, "JPEGQTables") << tag;
    }
    EXPECT_FALSE(primaryMap.contains(519));
}

TEST(TagDictionaries, ANameBelongsToOneTagOnly) {
    for (const TagDictionary* dictionary : {&primaryMap, &GPSmap, &interopMap}) {
        std::map<std::string, std::uint16_t> tags;
        for (const auto& [tag, name] : *dictionary) {
            EXPECT_TRUE(tags.emplace(name, tag).second) << name;
        }
    }
}

TEST(SearchMap, NamesEveryKeyAndAnswersUnknownForEveryOtherNumber) {
    for (const TagDictionary* dictionary : {&primaryMap, &GPSmap, &interopMap}) {
        for (unsigned tag = 0; tag <= 65535; ++tag) {
            const auto number = static_cast<unsigned short>(tag);
            const auto entry = dictionary->find(number);
            const std::string expected = entry == dictionary->end() ? "unknown" : entry->second;
            ASSERT_EQ(search_map(dictionary, number), expected) << tag;
        }
    }
}

TEST(SearchMap, AnswersUnknownForGpsTag99) {
    EXPECT_EQ(search_map(&GPSmap, 99), "unknown");
}

TEST(SearchMap, AnswersUnknownFromAnEmptyDictionary) {
    const TagDictionary empty;
    EXPECT_EQ(search_map(&empty, 256), "unknown");
}

TEST(TagNames, AreThoseOfTheDictionaryOfTheirDirectory) {
    const auto nameIn = [](const TagDictionary& dictionary, std::uint16_t tag) {
        const auto entry = dictionary.find(tag);
        return entry == dictionary.end() ? std::string("no name") : entry->second;
    };
    const auto textOf = [](const char* name) {
        return std::string(name == nullptr ? "no name" : name);
    };
    for (unsigned tag = 0; tag <= 0xFFFF; ++tag) {
        const auto number = static_cast<std::uint16_t>(tag);
        ASSERT_EQ(textOf(corvinex::findTag(number).name), nameIn(primaryMap, number)) << tag;
        ASSERT_EQ(textOf(corvinex::findGpsTagName(number)), nameIn(GPSmap, number)) << tag;
        ASSERT_EQ(textOf(corvinex::findInteropTagName(number)), nameIn(interopMap, number)) << tag;
    }
}

}  // namespace
