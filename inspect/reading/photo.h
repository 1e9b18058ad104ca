#pragma once

#include <vector>

#include "corvinex/derived.h"
#include "inspect/reading/derived.h"

namespace corvinex::inspect::reading {

/// Adds when, where and with what a photo was taken.
void addPhotoFacts(std::vector<DerivedFact>& facts, const FileParts& parts);

}  // namespace corvinex::inspect::reading
