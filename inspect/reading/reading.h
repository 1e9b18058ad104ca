#pragma once

#include <optional>
#include <string>

#include "inspect/reading/subject.h"

namespace corvinex::inspect::reading {

/// What a person wants to read of a value, in UTF-8: words, dates, exposure times, coordinates,
/// what is in a block. Nothing where the value says it already and where it is not what its tag
/// should hold. Lines are parted by '\n'. Takes time in proportion to the value.
[[nodiscard]] std::optional<std::string> readingOf(const Subject& subject);

}  // namespace corvinex::inspect::reading
