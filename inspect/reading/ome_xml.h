#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvinex::inspect::reading {

/// What an OME-XML document tells of its first image. Nothing for other texts.
[[nodiscard]] std::optional<std::string> describeOmeXml(std::string_view text);

}  // namespace corvinex::inspect::reading
