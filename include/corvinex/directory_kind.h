#pragma once

#include <cstdint>

namespace corvinex::inspect {

/// What a directory is, by the way that leads to it: the main chain, SubIFDs, or one of the
/// pointers to EXIF, GPS and interoperability directories.
enum class DirectoryKind : std::uint8_t { Main, Sub, Exif, Gps, Interop };

}  // namespace corvinex::inspect
