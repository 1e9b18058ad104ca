#pragma once

#include <ostream>

#include "tool/arguments.h"
#include "tool/exit_status.h"

namespace tool {

/// Prints in which tags two files differ. Success when they do not, Failed when they do, and
/// NotCompared when one of them could not be read, is no image, or has values that were left out.
ExitStatus runDiff(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
