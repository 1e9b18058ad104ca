#pragma once

#include "samples/bytes.h"

namespace samples {

/// A baseline JPEG image of 16 by 16 equal grey pixels. Between its start marker and its first
/// table stand the given APPn segments, marker and length included.
Bytes tinyJpeg(const Bytes& segments);

/// An APPn segment, marker and length included.
Bytes appSegment(unsigned n, const Bytes& content);

}  // namespace samples
