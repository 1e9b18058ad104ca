#pragma once

#include <ostream>

#include "tool/arguments.h"
#include "tool/exit_status.h"

namespace tool {

/// Reads files into a catalogue. Failed when a file could not be read, OutputFailed when the
/// catalogue could not be written.
ExitStatus runScan(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
