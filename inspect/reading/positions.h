#pragma once

#include <optional>
#include <string>

#include "corvinex/value.h"
#include "inspect/reading/siblings.h"

namespace corvinex::inspect::reading {

/// Degrees of degrees, minutes and seconds, or fewer of them. A part behind the first with a zero
/// denominator is taken as not told. Nothing for what is no angle.
[[nodiscard]] std::optional<double> degreesOf(const Value& value);

/// The first letter of a hemisphere's tag, N, S, E or W.
[[nodiscard]] std::optional<char> hemisphereOf(const Siblings& siblings, std::uint16_t number);

/// "59 deg 54' 48.22\"".
[[nodiscard]] std::optional<std::string> angleText(double degrees);

}  // namespace corvinex::inspect::reading
