#pragma once

#include <ostream>

#include "tool/arguments.h"
#include "tool/exit_status.h"

namespace tool {

/// Prints what is wrong with files, and totals on the error output. Failed when a file is as bad as
/// --fail-on tells, or worse.
ExitStatus runCheck(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
