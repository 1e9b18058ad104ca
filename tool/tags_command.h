#pragma once

#include <ostream>

#include "tool/arguments.h"
#include "tool/exit_status.h"

namespace tool {

/// Prints what is known of tags: of all, a line each, or of those with a name or number. Failed for
/// a number that no tag has.
ExitStatus runTags(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
