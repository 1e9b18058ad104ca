#pragma once

#include <cstdint>

// The tags that the module treats by number.

namespace corvinex::tag_number {

inline constexpr std::uint16_t ImageWidth = 256;
inline constexpr std::uint16_t ImageLength = 257;
inline constexpr std::uint16_t BitsPerSample = 258;
inline constexpr std::uint16_t PhotometricInterpretation = 262;
inline constexpr std::uint16_t SamplesPerPixel = 277;
inline constexpr std::uint16_t MinSampleValue = 280;
inline constexpr std::uint16_t MaxSampleValue = 281;
inline constexpr std::uint16_t ColorMap = 320;
inline constexpr std::uint16_t SubIFDs = 330;
inline constexpr std::uint16_t SampleFormat = 339;
inline constexpr std::uint16_t ExifIFD = 34665;
inline constexpr std::uint16_t GPSInfo = 34853;
inline constexpr std::uint16_t ImageSourceData = 37724;
inline constexpr std::uint16_t InteroperabilityIFD = 40965;
inline constexpr std::uint16_t DepthNear = 51178;
inline constexpr std::uint16_t DepthFar = 51179;

}  // namespace corvinex::tag_number
