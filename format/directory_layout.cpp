#include "format/directory_layout.h"

#include <array>
#include <cstddef>

namespace corvinex {

namespace {

constexpr std::array<DirectoryLayout, 3> layouts{{
    // entry, entry count, offset, value field position
    {12, 2, 4, 8},   // JPEG
    {12, 2, 4, 8},   // ClassicTIFF
    {20, 8, 8, 12},  // BigTIFF
}};

}  // namespace

const DirectoryLayout& getDirectoryLayout(FileFormat format) noexcept {
    return layouts[static_cast<std::size_t>(format)];
}

}  // namespace corvinex
