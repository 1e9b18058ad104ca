#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvinex::inspect::reading {

/// What the metadata that Micro-Manager keeps for an image tell of it: channel, exposure, pixel
/// size and its place in the series. Nothing for what is no such text.
[[nodiscard]] std::optional<std::string> describeMicroManager(std::string_view text);

/// The same of the description of a whole stack, an object with a summary in it: how many channels
/// and slices it has. Nothing for any other text.
[[nodiscard]] std::optional<std::string> describeMicroManagerSummary(std::string_view text);

}  // namespace corvinex::inspect::reading
