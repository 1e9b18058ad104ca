#pragma once

#include <string>

#include "host/value.h"

namespace tool {

/// A double, uint8, char or cell value on one line, as a person reads it: scalars and texts plain,
/// arrays with their size, matrices row by row. Long ones are cut and tell their size, unless whole
/// is asked for. A null value, one never set, is "[]"; a struct is its size alone.
std::string summaryOf(const zxArray* value, bool whole);

}  // namespace tool
