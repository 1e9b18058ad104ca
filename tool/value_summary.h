#pragma once

#include "host/values/value.h"
#include "tool/output_buffer.h"

namespace tool {

/// Writes a double, uint8, char or cell value on one line, as a person reads it: scalars and texts
/// plain, arrays with their size, matrices row by row. Long ones are cut and tell their size,
/// unless whole is asked for. A null value, one never set, is "[]"; a struct is its size alone.
void writeSummary(OutputBuffer& out, const zxArray* value, bool whole);

}  // namespace tool
