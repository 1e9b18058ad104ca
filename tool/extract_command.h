#pragma once

#include <ostream>

#include "tool/arguments.h"
#include "tool/exit_status.h"

namespace tool {

/// Writes the bytes of one value, or of a thumbnail, as they stand in the file. Failed when the
/// file holds no such thing whole.
ExitStatus runExtract(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
