#include "tag/value_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <thread>
#include <vector>

#include "tag/number_list.h"

namespace {

using corvinex::NumberList;
using corvinex::OwnedArray;
using corvinex::ValueAllocator;
using corvinex::ValueMemory;

/// A piece that is filled with one byte value from end to end.
class Piece {
  public:
    Piece(std::size_t size, unsigned char fill)
        : bytes_(static_cast<unsigned char*>(ValueMemory::allocate(size))),
          size_(size),
          fill_(fill) {
        std::fill_n(bytes_, size_, fill_);
    }
    [[nodiscard]] bool isAligned() const {
        return reinterpret_cast<std::uintptr_t>(bytes_) % alignof(void*) == 0;
    }
    [[nodiscard]] bool isUntouched() const {
        return std::all_of(bytes_, bytes_ + size_, [this](auto byte) { return byte == fill_; });
    }
    void giveBack() { ValueMemory::deallocate(bytes_, size_); }

  private:
    unsigned char* bytes_;
    std::size_t size_;
    unsigned char fill_;
};

/// Sizes around the longest piece of a chunk are among them.
Piece makePiece(std::mt19937& random) {
    const std::size_t size = random() % 8 == 0 ? 2040 + random() % 16 : 1 + random() % 900;
    return {size, static_cast<unsigned char>(random())};
}

/// Takes pieces and gives back others, chosen by chance, and counts those that changed meanwhile.
int countDamagedPieces(unsigned seed) {
    std::mt19937 random(seed);
    std::vector<Piece> pieces;
    int damaged = 0;
    const auto check = [&damaged](Piece& piece) {
        damaged += piece.isAligned() && piece.isUntouched() ? 0 : 1;
        piece.giveBack();
    };
    for (int i = 0; i < 5000; ++i) {
        pieces.push_back(makePiece(random));
        if (random() % 3 == 0) {
            std::swap(pieces[random() % pieces.size()], pieces.back());
            check(pieces.back());
            pieces.pop_back();
        }
    }
    std::for_each(pieces.begin(), pieces.end(), check);
    return damaged;
}

std::vector<double> valuesOf(const NumberList& list) {
    const auto elements = list.elements();
    return {elements.begin(), elements.end()};
}

}  // namespace

TEST(ValueMemory, PiecesKeepTheirContentsWhileOthersComeAndGo) {
    EXPECT_EQ(countDamagedPieces(1), 0);
    EXPECT_EQ(countDamagedPieces(2), 0);
}

TEST(ValueMemory, PiecesThatGoAsTheyCameAreWhole) {
    std::mt19937 random(3);
    std::vector<Piece> pieces;
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 2000; ++i) {
            pieces.push_back(makePiece(random));
        }
        for (Piece& piece : pieces) {
            EXPECT_TRUE(piece.isAligned());
            EXPECT_TRUE(piece.isUntouched());
            piece.giveBack();
        }
        pieces.clear();
    }
}

TEST(ValueMemory, ThreadsHavePiecesOfTheirOwn) {
    std::vector<int> damaged(4, -1);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < damaged.size(); ++i) {
        threads.emplace_back(
            [&damaged, i] { damaged[i] = countDamagedPieces(static_cast<unsigned>(i)); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(damaged, std::vector<int>(4, 0));
}

TEST(ValueMemory, MoreElementsThanMemoryCanHoldAreRefused) {
    constexpr std::size_t most = std::numeric_limits<std::size_t>::max();
    EXPECT_THROW(static_cast<void>(ValueAllocator<double>().allocate(most / sizeof(double) + 2)),
                 std::bad_array_new_length);
    EXPECT_THROW(OwnedArray<double>(most / sizeof(double) + 2), std::bad_array_new_length);
}

TEST(NumberList, HoldsNoneOneOrSeveral) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{2}}) {
        NumberList list(size);
        ASSERT_EQ(list.elements().size(), size);
        std::fill(list.elements().begin(), list.elements().end(), 2.5);
        EXPECT_EQ(valuesOf(list), std::vector<double>(size, 2.5));
    }
    EXPECT_TRUE(NumberList().elements().empty());
}

TEST(NumberList, ACopyHasElementsOfItsOwn) {
    for (const std::size_t size : {std::size_t{1}, std::size_t{3}}) {
        NumberList list(size);
        std::fill(list.elements().begin(), list.elements().end(), 1.0);
        const NumberList copy = list;
        list.elements().front() = 7;
        EXPECT_EQ(valuesOf(copy), std::vector<double>(size, 1.0));
    }
}
