#pragma once

#include <string>

namespace tool {

/// The name of a file from the root on, without empty parts and those that are points. A part that
/// leads back is followed as the system follows it, links included; links are kept otherwise. The
/// folder is the absolute one that the name counts from.
[[nodiscard]] std::string absolutePath(const std::string& folder, const std::string& name);

}  // namespace tool
