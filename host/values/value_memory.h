#pragma once

#include <cstddef>
#include <memory_resource>

namespace host {

inline constexpr std::size_t largestValueBlock = 256;

/// Memory for small values, which a result has by the million: taking and giving back a block costs
/// a few instructions. Blocks above the largest, and those of a wider alignment than a number's,
/// come from operator new. Blocks that are given back serve later values; their memory stays with
/// the process. Any thread may give back what another one took, also after that one has ended and
/// while the process ends.
std::pmr::memory_resource& valueMemory() noexcept;

}  // namespace host
