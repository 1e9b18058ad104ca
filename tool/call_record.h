#pragma once

#include <ostream>

#include "host/loading/module.h"
#include "tool/file_names.h"

namespace tool {

/// Writes what a call gave as one JSON document and a line feed:
///     {"output": VALUE or null, "warnings": [REPORT...], "error": REPORT or null}
/// straight from the host's values. Numbers have the fewest digits that read back to the same
/// double and do not depend on the locale; texts are UTF-8, a lone surrogate \udXXX. The field
/// "Filename" and the arguments of reports name the file as it was asked for.
void writeCallRecord(std::ostream& out, const host::CallResult& result, const FileNames& names);

}  // namespace tool
