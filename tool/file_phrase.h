#pragma once

#include <string>

#include "corvinex/directory.h"
#include "corvinex/file.h"
#include "inspect/value_budget.h"

// What files and directories are, in one phrase for people.

namespace tool {

/// "GeoTIFF, EPSG:32633, 3 overviews"; empty where there is nothing to say beside the size. Texts
/// out of the file stand in it as they are.
[[nodiscard]] std::string phraseOf(const corvinex::inspect::File& file);

/// Where a georeferenced image lies and how large its pixels are; empty for others.
[[nodiscard]] std::string placeOf(const corvinex::inspect::File& file);

/// "image 64 x 48, RGB, 8 bits, LZW, 4 strips, 1,234 bytes", "EXIF". The budget covers what is read
/// for it beyond a few bytes; without one the strips and their bytes are left out.
[[nodiscard]] std::string phraseOf(const corvinex::inspect::File& file,
                                   const corvinex::inspect::Directory& directory,
                                   corvinex::inspect::ValueBudget* budget);

}  // namespace tool
