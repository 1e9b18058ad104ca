#include "format/byte_order.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <stdexcept>
#include <vector>

namespace {

using corvinex::loadFromFile;
using corvinex::loadNative;
using corvinex::raw2native;
using Bytes = std::vector<unsigned char>;

/// 1, 2, 3, ...
Bytes counting(std::size_t length) {
    Bytes bytes(length);
    std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(1));
    return bytes;
}

}  // namespace

TEST(Raw2Native, ReversesEachElementOfAnySize) {
    for (std::size_t size = 0; size <= 17; ++size) {
        for (std::size_t count = 0; count <= 5; ++count) {
            const Bytes before = counting(size * count + 2);
            Bytes after = before;
            raw2native(after.data(), size, count, true);
            for (std::size_t i = 0; i < before.size(); ++i) {
                const bool isInside = i < size * count;
                const std::size_t from = isInside ? i - i % size + size - 1 - i % size : i;
                EXPECT_EQ(after[i], before[from]) << size << " x " << count << " at " << i;
            }
        }
    }
}

TEST(Raw2Native, LeavesEverythingWithoutSwap) {
    for (const std::size_t size : {0U, 1U, 2U, 3U, 4U, 8U}) {
        Bytes bytes = counting(24);
        raw2native(bytes.data(), size, 3, false);
        EXPECT_EQ(bytes, counting(24)) << size;
    }
}

TEST(Raw2Native, LeavesElementsOf0Or1Byte) {
    for (const std::size_t size : {0U, 1U}) {
        Bytes bytes = counting(4);
        raw2native(bytes.data(), size, 4, true);
        EXPECT_EQ(bytes, counting(4)) << size;
    }
}

TEST(Raw2Native, TouchesNothingForACountOf0) {
    raw2native(nullptr, 8, 0, true);
    Bytes bytes = counting(8);
    raw2native(bytes.data(), 8, 0, true);
    EXPECT_EQ(bytes, counting(8));
}

TEST(Raw2Native, TwiceIsTheStart) {
    for (const std::size_t size : {2U, 4U, 5U, 8U}) {
        Bytes bytes = counting(size * 3);
        raw2native(bytes.data(), size, 3, true);
        EXPECT_NE(bytes, counting(size * 3));
        raw2native(bytes.data(), size, 3, true);
        EXPECT_EQ(bytes, counting(size * 3));
    }
}

TEST(Loading, TakesTheBytesAtAPosition) {
    const Bytes bytes{0xAA, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0xBB};
    EXPECT_EQ(loadNative<std::uint16_t>(bytes, 1), 0x0201U);
    EXPECT_EQ(loadNative<std::uint32_t>(bytes, 1), 0x04030201U);
    EXPECT_EQ(loadNative<std::uint64_t>(bytes, 1), 0x0807060504030201U);
}

TEST(Loading, FromAFileReversesForTheOtherByteOrder) {
    const Bytes bytes{0xAA, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0xBB};
    EXPECT_EQ(loadFromFile<std::uint16_t>(bytes, 1, false), 0x0201U);
    EXPECT_EQ(loadFromFile<std::uint16_t>(bytes, 1, true), 0x0102U);
    EXPECT_EQ(loadFromFile<std::uint32_t>(bytes, 1, true), 0x01020304U);
    EXPECT_EQ(loadFromFile<std::uint64_t>(bytes, 1, true), 0x0102030405060708U);
}

TEST(Loading, RefusesWhatReachesPastTheEnd) {
    const Bytes bytes = counting(4);
    EXPECT_EQ(loadNative<std::uint32_t>(bytes, 0), 0x04030201U);
    EXPECT_THROW(static_cast<void>(loadNative<std::uint32_t>(bytes, 1)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(loadNative<std::uint16_t>(bytes, 3)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(loadNative<std::uint8_t>(bytes, 4)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(loadNative<std::uint8_t>(bytes, ~std::size_t{0})),
                 std::out_of_range);
    EXPECT_THROW(static_cast<void>(loadFromFile<std::uint64_t>(bytes, 0, true)), std::out_of_range);
}
