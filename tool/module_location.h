#pragma once

#include <filesystem>

namespace tool {

/// Where the module lies, relative to the folder of the running program, so that a build tree and
/// an installation both work wherever they stand. Raises std::filesystem::filesystem_error when the
/// system does not tell the program's own path.
std::filesystem::path moduleLocation();

}  // namespace tool
