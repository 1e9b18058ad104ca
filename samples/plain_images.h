#pragma once

#include <vector>

#include "samples/bytes.h"

namespace samples {

/// Sound TIFF and BigTIFF images as an ordinary writer leaves them.
std::vector<Sample> plainImages();

}  // namespace samples
