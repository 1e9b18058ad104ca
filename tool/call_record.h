#pragma once

#include <ostream>

#include "host/loading/module.h"

namespace tool {

/// Writes what a call gave as one JSON document and a line feed:
///     {"output": VALUE or null, "warnings": [REPORT...], "error": REPORT or null}
/// straight from the host's values. Numbers are the shortest text that reads back to the same
/// double and do not depend on the locale; texts are UTF-8, a lone surrogate \udXXX.
void writeCallRecord(std::ostream& out, const host::CallResult& result);

}  // namespace tool
