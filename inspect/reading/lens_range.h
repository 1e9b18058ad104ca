#pragma once

#include <optional>
#include <string>

#include "corvinex/value.h"

namespace corvinex::inspect::reading {

/// "18-55 mm f/3.5-5.6" from the shortest and the longest focal length and the lowest f-number at
/// each;
/// "?" for one that the file leaves open. Nothing when all are open or the value has not four
/// elements.
[[nodiscard]] std::optional<std::string> lensRangeText(const Value& value);

}  // namespace corvinex::inspect::reading
