#pragma once

#include "samples/bytes.h"

namespace samples {

/// A sound image with private tags that no dictionary knows, texts in two encodings among them.
Sample privateTags();

/// Eight kinds of damage in a file that can still be read.
Sample damaged();

}  // namespace samples
