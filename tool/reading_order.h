#pragma once

#include <cstdint>
#include <vector>

#include "corvinex/file.h"

namespace tool {

/// The indices of a file's directories as a person reads them: behind each directory what its
/// pointers lead to, then the next of its chain. Takes time in proportion to their number.
[[nodiscard]] std::vector<std::uint32_t> readingOrder(const corvinex::inspect::File& file);

}  // namespace tool
