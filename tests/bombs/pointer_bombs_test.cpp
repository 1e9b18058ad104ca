#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "directory/pointer_guard.h"
#include "tests/bombs/bomb_files.h"
#include "tests/support/module_call.h"

// Pointers that lead in circles or to far more directories than the file has: the pointer that goes
// too far is refused once with a warning, and what stands beside it is kept. What this costs is
// measured by bench/bombs.

namespace test {

void PrintTo(const PointerBomb& bomb, std::ostream* stream) {
    *stream << bomb.name;
}

namespace {

using Reports = std::vector<host::Report>;

/// The limit a careful caller passes.
constexpr double directoryLimit = 5;

Result readBomb(const TiffBuilder& structure, Container container) {
    const BombFile file = inContainer(structure, container);
    return read(file.bytes, {static_cast<double>(file.headerPosition), 0, directoryLimit});
}

Reports refused(std::uint16_t tag, const char* directory) {
    return {report("illegallyNestedIFD", {tag, directory})};
}

class PointerBombs : public ::testing::TestWithParam<Container> {};
INSTANTIATE_TEST_SUITE_P(In, PointerBombs, ::testing::ValuesIn(allContainers),
                         [](const auto& bomb) { return std::string(nameOf(bomb.param)); });

TEST_P(PointerBombs, ADirectoryThatPointsToItselfIsKeptWithoutThePointers) {
    for (const std::size_t count : {1U, 1000U}) {
        const Result result = readBomb(pointersToItself(GetParam(), count), GetParam());
        EXPECT_EQ(result.warnings(), refused(330, "Main"));
        EXPECT_EQ(result.directories(), 1U);
        EXPECT_FALSE(result.hasField("SubIFDs"));
        EXPECT_TRUE(result.isSet("UnknownTags"));
    }
}

TEST_P(PointerBombs, AnExifDirectoryThatPointsToItselfIsKeptWithoutThePointer) {
    const Result result = readBomb(exifToItself(GetParam()), GetParam());
    EXPECT_EQ(result.warnings(), refused(34665, "EXIF"));
    EXPECT_EQ(fieldsOf(result.value("DigitalCamera")), std::vector<std::string>{"UnknownTags"});
}

TEST_P(PointerBombs, TwoDirectoriesThatPointAtEachOtherAreBothKept) {
    const Result result = readBomb(pointingAtEachOther(GetParam()), GetParam());
    EXPECT_EQ(result.warnings(), refused(330, "Main"));
    const zxArray* second = host::cellAt(result.value("SubIFDs"), 0);
    ASSERT_NE(second, nullptr);
    const auto names = fieldsOf(*second);
    EXPECT_EQ(std::count(names.begin(), names.end(), "SubIFDs"), 0);
    EXPECT_EQ(names.back(), "UnknownTags");
}

/// How many cells deep the first SubIFDs lead, looking at the last directory of each set.
std::size_t depthOf(const Result& result) {
    std::size_t depth = 0;
    const zxArray* directory = &result.output();
    const zxArray* pointer = result.find("SubIFDs");
    while (pointer != nullptr) {
        ++depth;
        directory = host::cellAt(*pointer, 0);
        const auto names = fieldsOf(*directory);
        const bool hasPointer = std::find(names.begin(), names.end(), "SubIFDs") != names.end();
        pointer = hasPointer ? findField(*directory, "SubIFDs", host::sizeOf(*directory).rows - 1)
                             : nullptr;
    }
    return depth;
}

TEST_P(PointerBombs, ASubDirectorysChainThatRunsBackEndsAtTheDeepestNest) {
    const Result result = readBomb(chainRunningBack(GetParam(), 1), GetParam());
    EXPECT_EQ(result.warnings(), refused(330, "Main"));
    EXPECT_EQ(depthOf(result), corvinex::PointerGuard::maximumDepth);
}

TEST_P(PointerBombs, ThreeChainsThatRunBackSpendTheBudget) {
    const Result result = readBomb(chainRunningBack(GetParam(), 3), GetParam());
    EXPECT_EQ(result.warnings(), refused(330, "Main"));
    EXPECT_FALSE(result.hasField("SubIFDs"));
    EXPECT_TRUE(result.isSet("UnknownTags"));
}

TEST_P(PointerBombs, AHundredThousandNestedLevelsEndAtTheDeepestNest) {
    const Result result = readBomb(nest(GetParam(), 100'000), GetParam());
    EXPECT_EQ(result.warnings(), refused(330, "Main"));
    EXPECT_EQ(depthOf(result), corvinex::PointerGuard::maximumDepth);
}

TEST_P(PointerBombs, APyramidOfPointersIsReadWhereItIsSmall) {
    // 3 + 9 + ... + 3^5 directories.
    const Result result = readBomb(pyramid(GetParam(), 3, 5), GetParam());
    EXPECT_EQ(result.warnings(), Reports{});
    EXPECT_EQ(depthOf(result), 5U);
}

TEST_P(PointerBombs, APyramidOfPointersIsDroppedWhereItIsLarge) {
    for (const auto& [pointers, levels] :
         {std::pair{2U, 60U}, std::pair{3U, 8U}, std::pair{8U, 10U}}) {
        const Result result = readBomb(pyramid(GetParam(), pointers, levels), GetParam());
        EXPECT_EQ(result.warnings(), refused(330, "Main"));
        EXPECT_EQ(result.directories(), 1U);
        EXPECT_FALSE(result.hasField("SubIFDs"));
        EXPECT_TRUE(result.isSet("UnknownTags"));
    }
}

TEST_P(PointerBombs, AMillionPointersToOneDirectoryAreDropped) {
    for (const std::uint16_t tag : std::vector<std::uint16_t>{330, 34665, 34853}) {
        TiffBuilder structure = structureFor(GetParam());
        structure.add(
            {pointers(tag, LONG, std::vector<std::size_t>(1'000'000, 1)), number(60000, SHORT, 1)});
        structure.add({number(60001, SHORT, 1)});
        const Result result = readBomb(structure, GetParam());
        EXPECT_EQ(result.warnings(), refused(tag, "Main"));
        EXPECT_EQ(result.directories(), 1U);
        EXPECT_TRUE(result.isSet("UnknownTags"));
        EXPECT_EQ(fieldsOf(result.output()).back(), "UnknownTags");
    }
}

TEST_P(PointerBombs, AreRefusedBehindTheLastDirectoryThatTheLimitAllows) {
    using corvinex::PointerGuard;
    const auto withPointers = [](std::size_t count) {
        return pointersToOne(GetParam(), 34665, count, 1);
    };
    // The limit grows with the file and so with the pointers. The last one is followed while no
    // more directories than the limit were read before it.
    const auto isAllowed = [&](std::size_t count) {
        const std::size_t size = inContainer(withPointers(count), GetParam()).bytes.size();
        return count - 1 <=
               PointerGuard::directoriesAtLeast + size / PointerGuard::fileBytesPerDirectory;
    };
    std::size_t count = 500;
    ASSERT_TRUE(isAllowed(count));
    while (isAllowed(count + 1)) {
        ++count;
    }
    const Result most = readBomb(withPointers(count), GetParam());
    EXPECT_EQ(most.warnings(), Reports{});
    EXPECT_TRUE(most.isSet("DigitalCamera"));
    const Result oneMore = readBomb(withPointers(count + 1), GetParam());
    EXPECT_EQ(oneMore.warnings(), refused(34665, "Main"));
}

}  // namespace
}  // namespace test
