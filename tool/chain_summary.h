#pragma once

#include <cstdint>

#include "tool/directory_chains.h"

namespace tool {

/// The chains of directories that a read follows: the main chain from the first kept directory on,
/// and every chain that SubIFDs entries lead to.
struct ChainSummary {
    std::uint64_t mainDirectories = 0;  ///< distinct ones in the main chain
    std::uint64_t longest = 0;          ///< distinct ones in the chain that has most
    bool mainComesBack = false;         ///< the main chain leads to an earlier directory of itself
    bool anyComesBack = false;          ///< so does the main chain or another
    bool isMainKnown = true;            ///< the inspection has read the whole main chain
    bool isWhole = true;                ///< and everything else that the module may read
    /// A chain of a JPEG's EXIF block may go on for ever although the number of directories is
    /// limited: it comes back on itself over directories that the module does not count. When this
    /// is false every chain ends; it may be true for a chain that comes back on itself over
    /// directories whose only fields are pointers, and is where the inspection has not read all.
    bool mayNeverEnd = false;
};

/// Sums up the chains of a read that keeps at most so many directories of each (0 for any number),
/// the main chain from one of its directories on. Takes time in proportion to the directories' size
/// and the pointers' values.
ChainSummary summarizeChains(DirectoryChains& chains, std::uint32_t start, std::uint64_t limit);

}  // namespace tool
