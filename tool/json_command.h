#pragma once

#include <ostream>

#include "tool/arguments.h"
#include "tool/exit_status.h"

namespace tool {

/// Prints a record for each file, in order. Failed when one could not be read or is no image.
ExitStatus runJson(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
