#pragma once

#include <cstdint>
#include <span>

namespace fuzz {

/// What one input of the target took.
struct InputCost {
    double milliseconds = 0;     ///< of processor time
    std::int64_t peakBytes = 0;  ///< memory resident at most, of the whole process
    bool ended = false;          ///< false: it took over 2 s, or the process broke
};

/// Runs the target on an input in a process of its own, a copy of this one as it is now.
InputCost costOf(std::span<const unsigned char> input);

}  // namespace fuzz
