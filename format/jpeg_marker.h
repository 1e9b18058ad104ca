#pragma once

#include <cstdint>
#include <span>

namespace corvinex {

// What every JPEG begins with (ITU-T T.81): a marker is the prefix and a code.

namespace jpeg_marker {

inline constexpr std::uint8_t prefix = 0xFF;
inline constexpr std::uint8_t startOfImage = 0xD8;

}  // namespace jpeg_marker

[[nodiscard]] constexpr bool isStartOfJpeg(std::span<const unsigned char, 2> start) noexcept {
    return start[0] == jpeg_marker::prefix && start[1] == jpeg_marker::startOfImage;
}

}  // namespace corvinex
