#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace tool {

/// The name that a mistyped word most likely means: the one that the fewest letters put in, left
/// out, replaced or swapped with a neighbour make of it. Nothing where that takes more than a third
/// of the longer one's letters, or more than one of a short one's.
std::optional<std::string_view> nearestName(std::string_view word,
                                            std::span<const std::string_view> names);

}  // namespace tool
