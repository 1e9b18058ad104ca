#include "format/entry_fields.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <span>
#include <stdexcept>

#include "format/directory_layout.h"

namespace {

using corvinex::FileFormat;
using corvinex::getDirectoryLayout;
using corvinex::loadEntryCount;
using corvinex::loadEntryNumber;
using corvinex::loadEntryType;
using corvinex::loadOffset;

/// A BigTIFF entry, whose first twelve bytes serve as a classic one: every byte differs, so that a
/// field at a wrong position or of a wrong width has another value.
constexpr std::array<unsigned char, 20> entry{1,  2,  3,  4,  5,  6,  7,  8,  9,  10,
                                              11, 12, 13, 14, 15, 16, 17, 18, 19, 20};
constexpr auto classicEntry = std::span(entry).first<12>();

std::size_t valueFieldPosition(FileFormat format) {
    return static_cast<std::size_t>(getDirectoryLayout(format).valueFieldPosition);
}

}  // namespace

TEST(EntryFields, NumberAndTypeStandInFront) {
    EXPECT_EQ(loadEntryNumber(entry, false), 0x0201U);
    EXPECT_EQ(loadEntryNumber(entry, true), 0x0102U);
    EXPECT_EQ(loadEntryType(entry, false), 0x0403U);
    EXPECT_EQ(loadEntryType(entry, true), 0x0304U);
}

TEST(EntryFields, TheCountIsAsWideAsAnOffset) {
    EXPECT_EQ(loadEntryCount(classicEntry, 4, false), 0x08070605U);
    EXPECT_EQ(loadEntryCount(classicEntry, 4, true), 0x05060708U);
    EXPECT_EQ(loadEntryCount(entry, 8, false), 0x0C0B0A0908070605U);
    EXPECT_EQ(loadEntryCount(entry, 8, true), 0x05060708090A0B0CU);
}

TEST(EntryFields, AnOffsetInTheValueFieldFillsTheRestOfTheEntry) {
    const std::size_t classic = valueFieldPosition(FileFormat::ClassicTIFF);
    EXPECT_EQ(loadOffset(classicEntry, classic, 4, false), 0x0C0B0A09U);
    EXPECT_EQ(loadOffset(classicEntry, classic, 4, true), 0x090A0B0CU);
    const std::size_t big = valueFieldPosition(FileFormat::BigTIFF);
    EXPECT_EQ(loadOffset(entry, big, 8, false), 0x14131211100F0E0DU);
    EXPECT_EQ(loadOffset(entry, big, 8, true), 0x0D0E0F1011121314U);
}

TEST(EntryFields, AFieldThatReachesPastTheBytesIsRefused) {
    const auto cutTo = [](std::size_t length) { return std::span(entry).first(length); };
    EXPECT_THROW(static_cast<void>(loadEntryNumber(cutTo(1), false)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(loadEntryType(cutTo(3), false)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(loadEntryCount(cutTo(7), 4, false)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(loadEntryCount(cutTo(11), 8, false)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(loadOffset(entry, 13, 8, false)), std::out_of_range);
}
