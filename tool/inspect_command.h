#pragma once

#include <ostream>

#include "tool/arguments.h"
#include "tool/exit_status.h"

namespace tool {

/// Prints what each file holds for people. Failed when one could not be read or is no image.
ExitStatus runInspect(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
