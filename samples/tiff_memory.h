#pragma once

#include <tiffio.h>

#include <functional>

#include "samples/bytes.h"

namespace samples {

/// What libtiff makes of a recipe, opened in the given mode ("wl", "wb", "w8l"...). The recipe
/// writes the last directory as well.
///
/// \throws std::runtime_error when libtiff refuses to write
Bytes writtenByLibtiff(const char* mode, const std::function<void(TIFF&)>& recipe);

/// \throws std::runtime_error when a libtiff call answers that it failed
void check(bool done, const char* what);

}  // namespace samples
