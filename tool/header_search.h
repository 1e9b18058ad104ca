#pragma once

#include <cstdint>
#include <string>

#include "corvinex/file.h"

namespace tool {

/// Finds out what a file is and where its TIFF header stands; nothing of both when the file cannot
/// be read: what is wrong with it is the module's to say. Raises std::bad_alloc for lack of memory.
corvinex::inspect::HeaderLocation locateHeader(const std::string& path);

/// Where the module is to look for the header when nobody has told: 0 where none was found. Raises
/// InputRefused for a JPEG without an EXIF block.
std::uint64_t headerOffsetIn(const corvinex::inspect::HeaderLocation& found);

}  // namespace tool
