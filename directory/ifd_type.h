#pragma once

#include <cstdint>

namespace corvinex {

/// The kind of a directory. It selects the tag names, whether next-directory offsets are followed
/// and defaults made (main only), and whether values are decoded into words (main and EXIF).
enum class IFDtype_t_ : std::uint32_t {
    Main = 0,              ///< the main chain, and every directory reached through SubIFDs (330)
    GPS = 1,               ///< reached through GPSInfo (34853)
    Interoperability = 2,  ///< reached through the interoperability pointer (40965)
    EXIF = 3,              ///< reached through the EXIF pointer (34665)
};

}  // namespace corvinex
