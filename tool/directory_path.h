#pragma once

#include <string_view>

namespace tool {

/// Whether a directory may have this path, in lower case: the number of a page, then kinds with the
/// number of the value that leads there, such as "0.exif", "2.sub1" and "0.exif.interop", and for
/// those behind the first of a chain its place there, as "0.sub1.2".
[[nodiscard]] bool isDirectoryPath(std::string_view path);

}  // namespace tool
