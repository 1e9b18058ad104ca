#include "tag/directory_arena.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory_resource>
#include <new>
#include <span>
#include <vector>

#include "tag/unset_allocator.h"

namespace {

using corvinex::DirectoryArena;
using corvinex::PageMemory;
using corvinex::ValueVector;

constexpr std::size_t arenaLength = std::size_t{16} << 10;

TEST(DirectoryArena, KeepsTheContentsOfItsBlocks) {
    DirectoryArena arena(arenaLength);
    std::vector<std::pmr::vector<unsigned char>> blocks;
    for (std::size_t i = 0; i < 300; ++i) {
        // Blocks of all lengths up to and beyond the longest that stands in the arena.
        const std::size_t length = 1 + i * 97 % (2 * DirectoryArena::longestBlock);
        blocks.emplace_back(length, static_cast<unsigned char>(i), &arena);
    }
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        EXPECT_TRUE(std::all_of(blocks[i].begin(), blocks[i].end(), [i](unsigned char byte) {
            return byte == static_cast<unsigned char>(i);
        })) << i;
    }
}

TEST(DirectoryArena, AlignsWhatItHandsOut) {
    DirectoryArena arena(arenaLength);
    for (std::size_t length = 1; length < 100; ++length) {
        static_cast<void>(arena.allocate(length, 1));
        void* const memory = arena.allocate(length, alignof(double));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % alignof(double), 0U);
    }
}

TEST(DirectoryArena, IsFullBeforeItNeedsAnotherBlock) {
    DirectoryArena arena(arenaLength);
    EXPECT_FALSE(arena.isFull());
    std::size_t used = 0;
    while (!arena.isFull()) {
        static_cast<void>(arena.allocate(1000));
        used += 1000;
    }
    EXPECT_GT(used, arenaLength / 2);
    EXPECT_LT(used, arenaLength);
}

TEST(DirectoryArena, IsNotFilledByLongBlocks) {
    DirectoryArena arena(arenaLength);
    constexpr std::size_t length = DirectoryArena::longestBlock + 1;
    for (std::size_t used = 0; used < 4 * arenaLength; used += length) {
        arena.deallocate(arena.allocate(length), length);
    }
    EXPECT_FALSE(arena.isFull());
}

TEST(PageMemory, HandsOutBlocksOfAllLengths) {
    PageMemory memory;
    for (const std::size_t length : {1U, 4095U, 4096U, 61439U, 61440U, 61441U, 300000U}) {
        ValueVector<unsigned char> block(length, &memory);
        std::fill(block.begin(), block.end(), static_cast<unsigned char>(7));
        EXPECT_EQ(std::count(block.begin(), block.end(), 7), static_cast<std::ptrdiff_t>(length));
    }
}

TEST(PageMemory, RefusesWhatTheSystemDoesNotHave) {
    PageMemory memory;
    EXPECT_THROW(static_cast<void>(memory.allocate(std::size_t{1} << 60)), std::bad_alloc);
    DirectoryArena arena(arenaLength);
    EXPECT_THROW(static_cast<void>(arena.allocate(std::size_t{1} << 60)), std::bad_alloc);
}

TEST(PageMemory, GivesBackWhateverPageMemoryHandedOut) {
    EXPECT_TRUE(PageMemory().is_equal(PageMemory()));
    EXPECT_FALSE(PageMemory().is_equal(*std::pmr::new_delete_resource()));
}

TEST(ValueVectors, RefuseMoreElementsThanMemoryCanHold) {
    constexpr std::size_t most = std::numeric_limits<std::size_t>::max();
    EXPECT_ANY_THROW(ValueVector<double>(most / sizeof(double) + 2));
}

TEST(ValueVectors, AreCopiedIntoMemoryOfTheirOwn) {
    DirectoryArena arena(arenaLength);
    ValueVector<double> values({1.5, 2.5}, &arena);
    const ValueVector<double> copy = values;
    values.front() = 7;
    EXPECT_EQ(copy, (ValueVector<double>{1.5, 2.5}));
    EXPECT_EQ(copy.get_allocator().resource(), std::pmr::get_default_resource());
}

}  // namespace
