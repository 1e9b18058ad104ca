#pragma once

#include <cstdint>
#include <optional>

#include "tool/positioned_file.h"

namespace tool {

/// Whether the file begins with the JPEG start-of-image marker.
bool startsAsJpeg(PositionedFile& file);

/// The byte position of the TIFF header in a JPEG file's EXIF block: that of the byte after
/// "Exif\0\0" in the first APP1 segment that carries it. The walk goes from marker to marker, over
/// fill bytes and other segments, and ends at the first scan, at the end of the image, where the
/// file ends or where no marker stands; nothing then.
std::optional<std::uint64_t> findExifTiffHeader(PositionedFile& file);

}  // namespace tool
