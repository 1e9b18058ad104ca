#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inspect/reading/siblings.h"

namespace corvinex::inspect::reading {

/// What a description tells that a microscope's software wrote for other programs: images,
/// channels, slices, time points and the size of a pixel. Nothing for texts that people wrote.
[[nodiscard]] std::optional<std::string> describeImageDescription(std::string_view text,
                                                                  const Siblings& siblings);

}  // namespace corvinex::inspect::reading
