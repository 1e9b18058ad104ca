#pragma once

#include "samples/bytes.h"

namespace samples {

/// A JPEG with an EXIF block as a telephone writes it: EXIF, GPS and interoperability
/// directories, and a thumbnail directory.
Sample photo();

/// A raw photo in the manner of DNG: a preview, the colour-filter data as a child image, EXIF.
Sample rawPhoto();

}  // namespace samples
