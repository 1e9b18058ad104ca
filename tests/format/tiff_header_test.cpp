#include "format/tiff_header.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <utility>

namespace {

using corvinex::findByteOrder;
using corvinex::findTiffVersion;

constexpr unsigned byteValues = 256;

unsigned char byte(unsigned value) {
    return static_cast<unsigned char>(value);
}

}  // namespace

TEST(TiffHeader, OfAllMarksOnlyTwoTellAByteOrder) {
    for (unsigned first = 0; first < byteValues; ++first) {
        for (unsigned second = 0; second < byteValues; ++second) {
            std::optional<std::endian> expected;
            if (first == 0x49 && second == 0x49) {
                expected = std::endian::little;
            } else if (first == 0x4D && second == 0x4D) {
                expected = std::endian::big;
            }
            const std::array<unsigned char, 2> mark{byte(first), byte(second)};
            EXPECT_EQ(findByteOrder(mark), expected) << first << " " << second;
        }
    }
}

TEST(TiffHeader, TheVersionIsReadInTheOrderThatTheMarkTells) {
    for (unsigned low = 0; low < byteValues; ++low) {
        for (const unsigned high : {0U, 1U, 42U, 43U, 255U}) {
            const auto version = static_cast<std::uint16_t>(high << 8 | low);
            EXPECT_EQ(findTiffVersion(std::array{byte('I'), byte('I'), byte(low), byte(high)}),
                      version);
            EXPECT_EQ(findTiffVersion(std::array{byte('M'), byte('M'), byte(high), byte(low)}),
                      version);
        }
    }
}

TEST(TiffHeader, ThereIsNoVersionBehindAWrongMark) {
    for (const auto& [first, second] :
         {std::pair{'I', 'M'}, {'M', 'I'}, {'i', 'i'}, {'\0', '\0'}}) {
        const auto start = std::array{static_cast<unsigned char>(first),
                                      static_cast<unsigned char>(second), byte(42), byte(42)};
        EXPECT_EQ(findTiffVersion(start), std::nullopt) << first << second;
    }
}
