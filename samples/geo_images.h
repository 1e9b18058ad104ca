#pragma once

#include "samples/bytes.h"

namespace samples {

/// A GeoTIFF as a mapping agency would give it: heights in metres on a UTM grid, with an overview.
Sample elevation();

}  // namespace samples
