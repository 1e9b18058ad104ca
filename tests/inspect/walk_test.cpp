#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/inspect/inspected.h"

namespace {

using corvinex::inspect::DirectoryKind;
using corvinex::inspect::Entry;
using corvinex::inspect::File;
using inspect_test::Bytes;
using inspect_test::inspect;
using inspect_test::pathsOf;
using inspect_test::structureFindingsOf;
using test::TiffBuilder;
using Texts = std::vector<std::string>;

constexpr std::uint16_t subIfds = 330;
constexpr std::uint16_t exifPointer = 34665;
constexpr std::uint16_t gpsPointer = 34853;
constexpr std::uint16_t interopPointer = 40965;

test::Field width() {
    return test::number(256, test::LONG, 1);
}

/// Paths that the pointers of a directory lead to, "-" for those that lead nowhere.
Texts targetsOf(const File& file, std::size_t directory) {
    Texts texts;
    for (const Entry& entry : file.directories()[directory].entries()) {
        for (const std::uint32_t target : entry.targets()) {
            texts.push_back(target < file.directories().size() ? file.directories()[target].path()
                                                               : "-");
        }
    }
    return texts;
}

}  // namespace

TEST(Walk, ListsTheMainChainThenEachPointersWholeChainAndItsPointers) {
    TiffBuilder builder;
    const auto interop = builder.add({width()});
    const auto exif = builder.add({test::pointers(interopPointer, test::LONG, {interop})});
    const auto gps = builder.add({width()});
    const auto subExif = builder.add({width()});
    const auto secondSub = builder.add({width()});
    const auto firstSub = builder.add({test::pointers(exifPointer, test::LONG, {subExif})});
    builder.nextDirectory(firstSub, secondSub);
    const auto second = builder.add({test::pointers(gpsPointer, test::LONG, {gps})});
    const auto first = builder.add({test::pointers(subIfds, test::LONG, {firstSub}),
                                    test::pointers(exifPointer, test::LONG, {exif})});
    builder.chain({first, second});
    EXPECT_EQ(pathsOf(inspect(builder.bytes())),
              (Texts{"0", "1", "0.sub0", "0.sub0.1", "0.sub0.exif", "0.exif", "0.exif.interop",
                     "1.gps"}));
}

TEST(Walk, NumbersTheValuesOfAllEntriesOfATagReadableOrNot) {
    TiffBuilder builder;
    const auto leaf = builder.add({width()});
    const auto other = builder.add({width()});
    const auto exif = builder.add({width()});
    const auto first = builder.add(
        {test::at(subIfds, test::LONG, 3, 1'000'000), test::pointers(subIfds, test::LONG, {leaf}),
         test::pointers(subIfds, test::LONG, {other}), test::at(exifPointer, test::ASCII, 1, 0),
         test::pointers(exifPointer, test::LONG, {exif})});
    builder.chain({first});
    EXPECT_EQ(pathsOf(inspect(builder.bytes())), (Texts{"0", "0.sub3", "0.sub4", "0.exif1"}));
}

TEST(Walk, FollowsPointersOfEveryIntegerTypeAndOfNoOther) {
    struct Case {
        test::Type type;
        bool isFollowed;
    };
    const std::vector<Case> cases{
        {test::BYTE, true},      {test::SBYTE, true},      {test::SHORT, true},
        {test::SSHORT, true},    {test::LONG, true},       {test::SLONG, true},
        {test::IFD, true},       {test::LONG8, true},      {test::SLONG8, true},
        {test::IFD8, true},      {test::ASCII, false},     {test::UNDEFINED, false},
        {test::RATIONAL, false}, {test::SRATIONAL, false}, {test::FLOAT, false},
        {test::DOUBLE, false}};
    for (const test::Layout layout : {test::Layout::Classic, test::Layout::Big}) {
        for (const Case& row : cases) {
            TiffBuilder builder(test::Order::Big, layout);
            const auto leaf = builder.add({width()});
            const auto first =
                builder.add({test::number(subIfds, row.type, builder.positionOf(leaf))});
            builder.chain({first});
            EXPECT_EQ(inspect(builder.bytes()).directories().size(), row.isFollowed ? 2U : 1U)
                << row.type;
        }
    }
}

TEST(Walk, GivesAPointersTargetsValueByValue) {
    TiffBuilder builder;
    const auto leaf = builder.add({width()});
    const auto first = builder.add(
        {test::longs(subIfds, {0, builder.positionOf(leaf), 1'000'000, builder.positionOf(leaf)})});
    builder.chain({first});
    const auto file = inspect(builder.bytes());
    EXPECT_EQ(targetsOf(file, 0), (Texts{"-", "0.sub1", "-", "0.sub1"}));
}

TEST(Walk, TakesValuesBelowOneForNoOffset) {
    TiffBuilder builder;
    const auto first =
        builder.add({test::numbers(subIfds, test::SLONG, {0, static_cast<std::uint64_t>(-8)})});
    builder.chain({first});
    EXPECT_EQ(targetsOf(inspect(builder.bytes()), 0), (Texts{"-", "-"}));
}

TEST(Walk, FollowsNextOffsetsInMainAndSubChainsOnly) {
    TiffBuilder builder;
    const auto behind = builder.add({width()});
    const auto exif = builder.add({width()});
    builder.nextDirectory(exif, behind);
    const auto first = builder.add({test::pointers(exifPointer, test::LONG, {exif})});
    builder.chain({first});
    EXPECT_EQ(pathsOf(inspect(builder.bytes())), (Texts{"0", "0.exif"}));
}

TEST(Walk, ReadsADirectoryOnceByTheFirstWayToIt) {
    TiffBuilder builder;
    const auto shared = builder.add({width()});
    const auto second = builder.add({test::pointers(gpsPointer, test::LONG, {shared})});
    const auto first = builder.add({test::pointers(exifPointer, test::LONG, {shared})});
    builder.chain({first, second});
    const auto file = inspect(builder.bytes());
    EXPECT_EQ(pathsOf(file), (Texts{"0", "1", "0.exif"}));
    EXPECT_EQ(file.directories()[2].kind(), DirectoryKind::Exif);
    EXPECT_EQ(targetsOf(file, 1), (Texts{"0.exif"}));
    EXPECT_EQ(structureFindingsOf(file), (Texts{"directoryShared [1] 34853, 8, 0.exif"}));
}

TEST(Walk, EndsAChainThatComesBack) {
    TiffBuilder builder;
    const auto first = builder.add({width()});
    const auto second = builder.add({width()});
    builder.chain({first, second}).nextDirectory(second, first);
    const auto file = inspect(builder.bytes());
    EXPECT_EQ(pathsOf(file), (Texts{"0", "1"}));
    EXPECT_EQ(structureFindingsOf(file), (Texts{"chainComesBack [1], 8, 0"}));
}

TEST(Walk, EndsAtAPointerToADirectoryOnTheWay) {
    TiffBuilder builder;
    const auto first = builder.add({test::number(exifPointer, test::LONG, 8)});
    builder.chain({first});
    const auto file = inspect(builder.bytes());
    EXPECT_EQ(targetsOf(file, 0), (Texts{"0"}));
    EXPECT_EQ(structureFindingsOf(file), (Texts{"chainComesBack [0] 34665, 8, 0"}));
}

TEST(Walk, TakesChainsOfOneEntryThatMeetForOneFamily) {
    TiffBuilder builder;
    const auto second = builder.add({width()});
    const auto first = builder.add({width()});
    builder.nextDirectory(first, second);
    const auto main = builder.add({test::pointers(subIfds, test::LONG, {first, second})});
    builder.chain({main});
    const auto file = inspect(builder.bytes());
    EXPECT_EQ(targetsOf(file, 0), (Texts{"0.sub0", "0.sub0.1"}));
    EXPECT_EQ(structureFindingsOf(file), Texts());
}

TEST(Walk, FollowsPointersSixteenDeep) {
    TiffBuilder builder;
    std::size_t inner = builder.add({width()});
    for (int level = 0; level < 17; ++level) {
        inner = builder.add({test::pointers(exifPointer, test::LONG, {inner})});
    }
    builder.chain({inner});
    const auto file = inspect(builder.bytes());
    EXPECT_EQ(file.directories().size(), 17U);
    const std::string deepest = file.directories().back().path();
    EXPECT_EQ(structureFindingsOf(file), (Texts{"limitReached [" + deepest + "] 34665, depth"}));
    EXPECT_TRUE(file.entries().back().isPointer());
    EXPECT_TRUE(file.entries().back().targets().empty());
}

TEST(Walk, RefusesAPointerWholeThatWouldPassTheTotal) {
    test::ByteWriter writer(test::Order::Little);
    writer.text("II").number(42, 2).number(8, 4);
    writer.number(1, 2).number(subIfds, 2).number(test::BYTE, 2).number(90'000, 4).number(26, 4);
    writer.number(0, 4).padTo(26 + 90'000);
    // Allowed are 65,536 and a quarter of the size: 88,042 with one directory and one entry.
    const auto file = inspect(writer.bytes());
    EXPECT_TRUE(file.entries()[0].targets().empty());
    EXPECT_EQ(structureFindingsOf(file),
              (Texts{"pointerType [0] 330, 1", "limitReached [0] 330, total"}));
}

TEST(Walk, CountsPointerValuesUpToTheTotalExactly) {
    const auto fileWith = [](std::uint64_t count) {
        test::ByteWriter writer(test::Order::Little);
        writer.text("II").number(42, 2).number(8, 4);
        writer.number(1, 2).number(subIfds, 2).number(test::BYTE, 2).number(count, 4);
        writer.number(26, 4).number(0, 4).padTo(400'000);
        return writer.bytes();
    };
    const std::uint64_t allowed = 65'536 + 400'000 / 4 - 2;
    EXPECT_EQ(inspect(fileWith(allowed)).entries()[0].targets().size(), allowed);
    EXPECT_TRUE(inspect(fileWith(allowed + 1)).entries()[0].targets().empty());
}

TEST(Walk, RefusesADirectoryWholeThatWouldPassTheTotal) {
    // Six directories of 40,000 entries each, two bytes apart. Allowed are 185,568 items.
    test::ByteWriter writer(test::Order::Little);
    writer.text("II").number(42, 2).number(8, 4);
    writer.number(1, 2).number(subIfds, 2).number(test::LONG, 2).number(6, 4).number(26, 4);
    writer.number(0, 4);
    for (std::uint64_t directory = 0; directory < 6; ++directory) {
        writer.number(50 + 2 * directory, 4);
    }
    for (int directory = 0; directory < 6; ++directory) {
        writer.number(40'000, 2);
    }
    writer.padTo(480'128);
    const auto file = inspect(writer.bytes());
    EXPECT_EQ(targetsOf(file, 0), (Texts{"0.sub0", "0.sub1", "0.sub2", "0.sub3", "-", "-"}));
    const Texts findings = structureFindingsOf(file);
    EXPECT_EQ(std::ranges::count(findings, "limitReached [0] 330, total"), 1);
}

TEST(Walk, ListsWhatIsWholeOfADirectoryThatTheFileCutsOff) {
    TiffBuilder builder;
    const auto first = builder.add({width(), width(), width()});
    const auto second = builder.add({width()});
    builder.chain({first, second});
    Bytes bytes = builder.bytes();
    bytes.resize(builder.entryOf(0, 2) + 11);
    const auto file = inspect(bytes);
    EXPECT_EQ(pathsOf(file), Texts{"0"});
    EXPECT_EQ(file.entries().size(), 2U);
    EXPECT_EQ(structureFindingsOf(file).at(0), "directoryTruncated [0], 3, 2");
}

TEST(Walk, LeavesOutADirectoryWhoseCountTheFileCutsOff) {
    const Bytes bytes{'I', 'I', 42, 0, 8, 0, 0, 0, 1};
    const auto file = inspect(bytes);
    EXPECT_TRUE(file.directories().empty());
    EXPECT_EQ(structureFindingsOf(file), Texts{"badDirectoryOffset [], 8"});
}

TEST(Walk, ListsAnEmptyDirectoryAndFollowsItsNextOffset) {
    TiffBuilder builder;
    const auto first = builder.add({});
    const auto second = builder.add({width()});
    builder.chain({first, second});
    const auto file = inspect(builder.bytes());
    EXPECT_EQ(pathsOf(file), (Texts{"0", "1"}));
    EXPECT_EQ(structureFindingsOf(file), Texts{"directoryEmpty [0]"});
}

TEST(Walk, KeepsEveryEntryInFileOrder) {
    const auto file = inspect(
        inspect_test::fileWith({test::at(700, 99, 5, 7), test::at(256, test::SHORT, 0, 0), width(),
                                width(), test::at(273, test::LONG, 1000, 1'000'000)}));
    std::vector<std::uint16_t> numbers;
    for (const Entry& entry : file.entries()) {
        numbers.push_back(entry.number());
    }
    EXPECT_EQ(numbers, (std::vector<std::uint16_t>{700, 256, 256, 256, 273}));
}

TEST(Walk, ListsTheEntriesOfAGarbledDirectoryAndFollowsNoneOfItsPointers) {
    TiffBuilder builder;
    const auto leaf = builder.add({width()});
    const auto first = builder.add({test::at(1, 99, 1, 0), test::at(2, 98, 1, 0),
                                    test::pointers(subIfds, test::LONG, {leaf})});
    builder.chain({first});
    const auto file = inspect(builder.bytes());
    EXPECT_EQ(pathsOf(file), Texts{"0"});
    EXPECT_EQ(file.entries().size(), 3U);
    EXPECT_TRUE(file.entries()[2].targets().empty());
    EXPECT_EQ(structureFindingsOf(file),
              (Texts{"unknownFieldType [0] 1, 99", "unknownFieldType [0] 2, 98"}));
}

TEST(Walk, CountsPointersFromTheHeaderAndPlacesFromTheStartOfTheFile) {
    TiffBuilder builder(test::Order::Big);
    const auto exif = builder.add({test::text(36867, "2024:03:05 14:07:09")});
    const auto first = builder.add({test::pointers(exifPointer, test::LONG, {exif})});
    builder.chain({first});
    const test::JpegWithExif jpeg = test::jpegWithExif(builder.bytes());
    const auto file = inspect(jpeg.bytes);
    ASSERT_EQ(pathsOf(file), (Texts{"0", "0.exif"}));
    EXPECT_EQ(file.directories()[1].offset(), builder.positionOf(exif) + jpeg.headerPosition);
    EXPECT_EQ(file.entries()[1].offset(), builder.valueOf(exif, 0) + jpeg.headerPosition);
}
