#pragma once

#include <ostream>

#include "tool/arguments.h"
#include "tool/exit_status.h"

namespace tool {

/// Prints what a report or a finding means, what becomes of the data, and what one can do. Without
/// an ID all IDs are listed.
ExitStatus runExplain(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
