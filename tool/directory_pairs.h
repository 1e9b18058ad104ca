#pragma once

#include <cstdint>
#include <vector>

#include "corvinex/directory.h"
#include "corvinex/file.h"

namespace tool {

/// Which directories of two files have the same path.
struct DirectoryPairs {
    static constexpr std::uint32_t none = corvinex::inspect::DirectoryRecord::none;

    /// For each directory of the left file the index of the right one's, or none.
    std::vector<std::uint32_t> ofLeft;
    /// For each directory of the right file whether it belongs to one of the left.
    std::vector<bool> isPaired;
};

/// Takes time n log n of the directories, and a few bytes for each: their paths are not written
/// out, because a small file can hold directories by the million.
[[nodiscard]] DirectoryPairs pairDirectories(const corvinex::inspect::File& left,
                                             const corvinex::inspect::File& right);

}  // namespace tool
