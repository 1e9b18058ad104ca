#pragma once

#include <ostream>
#include <string>

#include "host/loading/module.h"
#include "tool/exit_status.h"

namespace tool {

struct CallOptions {
    std::string file;
    double headerOffset = 0;
    double skip = 0;
    double limit = 0;
};

/// Calls the module with exactly these arguments and prints the call record on out; Failed when the
/// call ended in an error. A chain that comes back on itself is read for ever when the limit is 0.
ExitStatus call(const host::Module& module, const CallOptions& options, std::ostream& out);

}  // namespace tool
