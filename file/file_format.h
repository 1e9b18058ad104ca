#pragma once

#include <string>

#include "format/directory_layout.h"

namespace corvinex {

// Each of these opens the file, reads its first bytes and closes it. A file that cannot be opened
// or is too short is of none of these kinds. Only the signature decides: the further fields of a
// BigTIFF header are not looked at.

/// FF D8, the JPEG start-of-image marker.
[[nodiscard]] bool isJpeg(const std::u16string& path);
/// "II" or "MM" and 42 in that byte order (TIFF 6.0).
[[nodiscard]] bool isClassicTiff(const std::u16string& path);
/// "II" or "MM" and 43 in that byte order (BigTIFF).
[[nodiscard]] bool isBigTiff(const std::u16string& path);

}  // namespace corvinex
