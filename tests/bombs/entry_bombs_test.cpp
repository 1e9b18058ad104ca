#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "tests/bombs/bomb_files.h"
#include "tests/support/module_call.h"

// Counts and offsets that promise more than the file holds, up to sums and products that would wrap
// around, and chains that come back on themselves.

namespace test {
namespace {

using Reports = std::vector<host::Report>;

constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();

class EntryBombs : public ::testing::TestWithParam<Container> {};
INSTANTIATE_TEST_SUITE_P(In, EntryBombs, ::testing::ValuesIn(allContainers),
                         [](const auto& bomb) { return std::string(nameOf(bomb.param)); });

Result readBomb(const TiffBuilder& structure, Container container, double limit = 5) {
    const BombFile file = inContainer(structure, container);
    return read(file.bytes, {static_cast<double>(file.headerPosition), 0, limit});
}

/// A structure whose only directory claims this many entries and has one.
Result readWithEntryCount(Container container, std::uint64_t count) {
    TiffBuilder structure = structureFor(container);
    structure.add({number(60000, SHORT, 1)});
    BombFile file = inContainer(structure, container);
    const bool isBig = container == Container::BigTiff;
    const std::size_t position = file.headerPosition + structure.positionOf(0);
    for (std::size_t i = 0; i < (isBig ? 8U : 2U); ++i) {
        file.bytes[position + i] = static_cast<unsigned char>(count >> 8 * i);
    }
    return read(file.bytes, {static_cast<double>(file.headerPosition), 0, 5});
}

TEST_P(EntryBombs, EntriesPastTheEndAreNotReadAtAll) {
    const Result result = readWithEntryCount(GetParam(), 65'535);
    if (GetParam() == Container::Jpeg) {
        EXPECT_EQ(result.error(), report("unableToReadTagData"));
        EXPECT_EQ(result.warnings(), Reports{report("jpegApp1MaximumLengthExceeded", {65'535})});
    } else {
        EXPECT_EQ(result.error(), report("badIFDread", {"IFD #1"}));
        EXPECT_EQ(result.warnings(), Reports{});
    }
}

TEST(EntryBombs, EntryCountsThatWrapAreNotReadAtAll) {
    for (const std::uint64_t count :
         {largest, largest / 20 + 1, std::uint64_t{1} << 62, std::uint64_t{1} << 32}) {
        EXPECT_EQ(readWithEntryCount(Container::BigTiff, count).error(),
                  report("badIFDread", {"IFD #1"}));
    }
}

TEST_P(EntryBombs, EachOfManyValuesPastTheEndIsReported) {
    const std::size_t count = GetParam() == Container::Jpeg ? 5'000 : 65'535;
    constexpr std::uint64_t length = 3'000'000'000;
    std::vector<Field> fields;
    Reports expected;
    // Numbers from 1 on that no table knows, so that each entry differs and none is checked.
    for (std::size_t i = 0; i < count; ++i) {
        const auto tag = static_cast<std::uint16_t>(i);
        const bool hasFixedCount = tag == 256 || tag == 257 || tag == 277 || tag == 278 ||
                                   tag == 284 || tag == 322 || tag == 323;
        if (hasFixedCount) {
            continue;
        }
        fields.push_back(at(tag, BYTE, length, 8));
        expected.push_back(report("tagDataPastEOF", {tag, length}));
    }
    TiffBuilder structure = structureFor(GetParam());
    structure.add(std::move(fields));
    const Result result = readBomb(structure, GetParam());
    EXPECT_EQ(result.warnings(), expected);
}

TEST(EntryBombs, ComponentCountsThatWrapArePastTheEnd) {
    // 2^64 bytes and a little more: a product that wraps would be short and be read.
    const struct {
        Type type;
        std::uint64_t count;
    } wrapping[] = {
        {SHORT, (largest >> 1) + 3},
        {LONG, (largest >> 2) + 3},
        {RATIONAL, (largest >> 3) + 2},
        {SSHORT, (largest >> 1) + 3},
        {SLONG, (largest >> 2) + 3},
        {SRATIONAL, (largest >> 3) + 2},
        {FLOAT, (largest >> 2) + 3},
        {DOUBLE, (largest >> 3) + 2},
        {LONG8, (largest >> 3) + 2},
        {SLONG8, (largest >> 3) + 2},
        {BYTE, largest},
        {ASCII, largest},
        {UNDEFINED, largest},
        {SBYTE, largest},
    };
    for (const auto& [type, count] : wrapping) {
        TiffBuilder structure(Order::Little, Layout::Big);
        structure.add({at(60000, type, count, 16), number(60001, SHORT, 7)});
        const Result result = read(structure.bytes());
        EXPECT_EQ(result.warnings(), Reports{report("tagDataPastEOF", {60000, largest})}) << type;
        EXPECT_EQ(numberOf(fieldOf(result.value("UnknownTags"), "Value")), 7) << type;
    }
}

TEST(EntryBombs, PositionsThatWrapCannotBeSoughtOrArePastTheEnd) {
    for (const std::uint64_t offset : {largest, largest - 8, std::uint64_t{1} << 63}) {
        TiffBuilder structure(Order::Little, Layout::Big);
        structure.add({at(60000, LONG, 100, offset), number(60001, SHORT, 7)});
        EXPECT_EQ(read(structure.bytes()).warnings(),
                  Reports{report("badTagDataOffsetSeek", {60000})});
        structure.next(0, offset);
        EXPECT_EQ(read(structure.bytes()).warnings(),
                  (Reports{report("badTagDataOffsetSeek", {60000}),
                           report("nextIfdPointerOutOfRange", {offset})}));
        structure.first(offset);
        const Bytes bytes = structure.bytes();
        EXPECT_EQ(read(bytes).error(), report("badTiffIfdOffset", {offset, bytes.size()}));
    }
}

TEST_P(EntryBombs, ChainsThatComeBackEndAtTheLimit) {
    for (const double limit : {1., 5., 1000.}) {
        TiffBuilder structure = structureFor(GetParam());
        structure.add({number(60000, SHORT, 1)});
        structure.add({number(60000, SHORT, 2)});
        structure.chain({0, 1}).nextDirectory(1, 0);
        const Result result = readBomb(structure, GetParam(), limit);
        EXPECT_EQ(result.warnings(), Reports{});
        ASSERT_EQ(result.directories(), static_cast<std::size_t>(limit));
        const auto last = static_cast<std::size_t>(limit) - 1;
        EXPECT_EQ(numberOf(fieldOf(result.value("UnknownTags", last), "Value")),
                  last % 2 == 0 ? 1 : 2);
    }
}

}  // namespace
}  // namespace test
