#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// Why a name's file cannot be read at any position: it is a pipe, a socket or a device. Nothing
/// for every other file, and for one that is not there.
[[nodiscard]] std::optional<std::string_view> refusalOfSpecialFile(const std::string& path);

}  // namespace tool
