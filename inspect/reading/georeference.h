#pragma once

#include <vector>

#include "corvinex/derived.h"
#include "inspect/reading/siblings.h"

namespace corvinex::inspect::reading {

/// Adds "crs" ("EPSG:32633"), "geotransform" and "bounds" of a georeferenced image. The six numbers
/// of the geotransform take a column and a row, counted from the corner of the first pixel, to x
/// and y: x is g0 + g1 column + g2 row, y is g3 + g4 column + g5 row. Bounds are the least x and y
/// and the greatest.
void addGeoreference(std::vector<DerivedFact>& facts, const Siblings& directory);

}  // namespace corvinex::inspect::reading
