#pragma once

#include <cstdint>

#include "tool/directory_reader.h"

namespace tool {

/// What a survey found of the chains of directories that a read follows: the main chain from the
/// first kept directory on, and every chain that SubIFDs entries lead to.
struct ChainSurvey {
    std::uint64_t mainDirectories = 0;  ///< distinct ones in the main chain
    std::uint64_t longest = 0;          ///< distinct ones in the chain that has most
    bool mainComesBack = false;         ///< the main chain leads to an earlier directory of itself
    bool anyComesBack = false;          ///< so does the main chain or another
    bool isWhole = true;                ///< nothing was left out; the main chain never is
    /// A chain of a JPEG's EXIF block may go on for ever although the number of directories is
    /// limited. The module drops a directory of a JPEG that yields no field (one with nothing but
    /// width and height, or with refused entries) and does not count it, so a chain that comes back
    /// on itself over such directories never reaches a limit. When this is false every chain ends;
    /// it may be true for a chain that comes back on itself over directories whose only fields are
    /// pointers, and is for a block that was not looked at as a whole.
    bool mayNeverEnd = false;
};

/// Follows every chain once, the main chain from a start position on, each up to a limit of kept
/// directories (0 for none). Entries and pointers are looked at up to a few times the file's size;
/// where pointers lead to more than that the survey is not whole.
ChainSurvey surveyChains(const DirectoryReader& reader, std::uint64_t start, std::uint64_t limit);

}  // namespace tool
