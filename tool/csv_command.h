#pragma once

#include <ostream>

#include "tool/arguments.h"
#include "tool/exit_status.h"

namespace tool {

/// Prints a table (RFC 4180) with a row for each main directory, or for each file. A file without
/// directories has a row too. Failed when one could not be read or is no image.
ExitStatus runCsv(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
