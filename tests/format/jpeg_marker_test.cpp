#include "format/jpeg_marker.h"

#include <gtest/gtest.h>

#include <array>

TEST(JpegMarker, OfAllPairsOfBytesOnlyOneStartsAJpeg) {
    for (unsigned first = 0; first < 256; ++first) {
        for (unsigned second = 0; second < 256; ++second) {
            const std::array<unsigned char, 2> start{static_cast<unsigned char>(first),
                                                     static_cast<unsigned char>(second)};
            EXPECT_EQ(corvinex::isStartOfJpeg(start), first == 0xFF && second == 0xD8)
                << first << " " << second;
        }
    }
}
