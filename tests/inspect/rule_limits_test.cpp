#include <gtest/gtest.h>

#include "tests/inspect/sound_image.h"

// What bounds the rules, and how findings are put in order.

namespace {

using inspect_test::Bytes;
using inspect_test::changed;
using inspect_test::Fields;
using inspect_test::findingsOf;
using inspect_test::imageFile;
using inspect_test::inspect;
using inspect_test::soundImage;
using inspect_test::Texts;

bool isThere(const Texts& findings, const std::string& text) {
    return std::ranges::find(findings, text) != findings.end();
}

}  // namespace

TEST(RuleLimits, BoundTheEntriesThatAreExamined) {
    // The entry behind the first 65,536 has an unknown type.
    const auto findingsWith = [](std::size_t sound) {
        Fields fields(sound, test::number(60'000, test::SHORT, 1));
        fields.push_back(test::at(60'001, 99, 1, 0));
        Bytes bytes = inspect_test::fileWith(fields, test::Order::Little, test::Layout::Big);
        return findingsOf(inspect(bytes));
    };
    const Texts within = findingsWith(65'535);
    EXPECT_TRUE(isThere(within, "unknownFieldType [0] 60001, 99"));
    EXPECT_FALSE(isThere(within, "limitReached [0], entries"));
    const Texts beyond = findingsWith(65'536);
    EXPECT_FALSE(isThere(beyond, "unknownFieldType [0] 60001, 99"));
    EXPECT_TRUE(isThere(beyond, "limitReached [0], entries"));
    EXPECT_TRUE(isThere(beyond, "duplicateTag [0] 60000, 65536"));
}

TEST(RuleLimits, BoundTheNumbersThatAreReadOfTables) {
    // Three directories share two tables of a million zeros; the third one's blocks are left out.
    constexpr std::uint64_t count = 1'000'000;
    test::TiffBuilder builder;
    std::vector<std::size_t> chain;
    for (int i = 0; i < 3; ++i) {
        chain.push_back(
            builder.add(changed(soundImage(), {test::at(273, test::BYTE, count, 4096),
                                               test::at(279, test::BYTE, count, 4096)})));
    }
    builder.chain(chain);
    Bytes bytes = builder.bytes();
    bytes.resize(4096 + count);
    const Texts findings = findingsOf(inspect(bytes));
    EXPECT_TRUE(isThere(findings, "sparseData [0] 273, 1000000"));
    EXPECT_TRUE(isThere(findings, "sparseData [1] 273, 1000000"));
    EXPECT_FALSE(isThere(findings, "sparseData [2] 273, 1000000"));
    EXPECT_TRUE(isThere(findings, "limitReached [2] 273, values"));
    // The count of a table is known without reading it.
    EXPECT_TRUE(isThere(findings, "dataTableTooLong [2] 273, 1000000, 1"));
}

TEST(RuleLimits, BoundTheKeysThatAreReadAndLeaveTablesAlone) {
    // 300 directories share a list of 4,096 keys, whose values would lie in the list itself.
    constexpr std::uint64_t keys = 4096;
    test::TiffBuilder builder;
    std::vector<std::size_t> chain;
    for (int i = 0; i < 300; ++i) {
        chain.push_back(
            builder.add(changed(soundImage(), {test::at(34735, test::SHORT, 4 + 4 * keys, 65'536),
                                               test::number(273, test::LONG, 200'000)})));
    }
    builder.chain(chain);
    Bytes bytes = builder.bytes();
    bytes.resize(200'010);
    bytes[65'536] = 1;
    bytes[65'536 + 7] = keys / 256;
    const Texts findings = findingsOf(inspect(bytes));
    EXPECT_TRUE(isThere(findings, "limitReached [256] 34735, values"));
    EXPECT_FALSE(isThere(findings, "limitReached [255] 34735, values"));
    EXPECT_FALSE(isThere(findings, "limitReached [257] 273, values"));
}

TEST(RuleLimits, BoundTheRangesThatAreCompared) {
    // All strips stand at the offset that their table of ones tells.
    constexpr std::uint64_t limit = 1'048'576;
    const auto findingsWith = [](std::uint64_t strips) {
        Bytes bytes = imageFile(changed(
            soundImage(),
            {test::at(273, test::BYTE, strips, 4096), test::at(279, test::BYTE, strips, 4096),
             test::number(257, test::LONG, strips), test::number(278, test::SHORT, 1)},
            {282, 283}));
        bytes.resize(4096 + strips, 200);
        return findingsOf(inspect(bytes));
    };
    // The two tables are ranges as well.
    const Texts within = findingsWith(limit - 2);
    EXPECT_FALSE(isThere(within, "limitReached [0] 273, ranges"));
    EXPECT_TRUE(isThere(within, "rangeShared [0], 1048574, 200"));
    const Texts beyond = findingsWith(limit - 1);
    EXPECT_TRUE(isThere(beyond, "limitReached [0] 273, ranges"));
    EXPECT_TRUE(isThere(beyond, "rangeShared [0], 1048574, 200"));
}

TEST(Findings, OfOneRuleComeByEntryAndOfBlocksByNumber) {
    // The stream's entry stands before that of the strips.
    Fields fields =
        changed(soundImage(), {test::longs(273, {4090, 4093, 4094, 4095}),
                               test::longs(279, {4, 4, 4, 4}), test::number(257, test::SHORT, 8)});
    fields.insert(fields.begin(),
                  {test::number(513, test::LONG, 4090), test::number(514, test::LONG, 9)});
    const Texts findings = findingsOf(inspect(imageFile(fields)));
    EXPECT_EQ(findings, (Texts{"entriesOutOfOrder [0] 256, 514", "dataPastEnd [0] 513, 0, 4090, 9",
                               "dataPastEnd [0] 273, 1, 4093, 4", "dataPastEnd [0] 273, 2, 4094, 4",
                               "more [], dataPastEnd, 1"}));
}

TEST(Findings, OfFieldsAreCountedBeyondThoseShown) {
    test::TiffBuilder builder;
    std::vector<std::size_t> chain;
    for (std::uint64_t page = 0; page < 14; ++page) {
        chain.push_back(
            builder.add(changed(soundImage(), {test::number(273, test::LONG, 4096 + 4 * page),
                                               test::number(274, test::SHORT, 9)})));
    }
    builder.chain(chain);
    Bytes bytes = builder.bytes();
    bytes.resize(8192);
    const Texts findings = findingsOf(inspect(bytes));
    ASSERT_EQ(findings.size(), 13U);
    EXPECT_EQ(findings[11], "unlistedValue [11] 274, 9");
    EXPECT_EQ(findings[12], "more [], unlistedValue, 2");
}
