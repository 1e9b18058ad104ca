#pragma once

#include <string>

#include "tests/tool/tiff_bytes.h"

namespace tool_test {

/// ComponentsConfiguration, LightSource and SceneType in UNDEFINED, CFAPattern in BYTE.
inline std::string codesInBytes() {
    constexpr unsigned undefined = 7;
    constexpr unsigned byte = 1;
    constexpr unsigned exif = 8 + 2 + 2 * 12 + 4;
    return TiffBytes()
        .header(8)
        .count(2)
        .entry(33422, byte, 4, 0x02010100)
        .entry(34665, 4, 1, exif)
        .offset(0)
        .count(3)
        .entry(37121, undefined, 4, 0x00030201)
        .entry(37384, undefined, 1, 4)
        .entry(41729, undefined, 1, 1)
        .offset(0)
        .bytes();
}

}  // namespace tool_test
