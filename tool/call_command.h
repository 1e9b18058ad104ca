#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include "host/loading/module.h"
#include "tool/arguments.h"
#include "tool/exit_status.h"

namespace tool {

struct CallOptions {
    std::string file;
    double headerOffset = 0;
    double skip = 0;
    double limit = 0;
    std::optional<std::uint64_t> maxMemory;
};

/// Calls the module with exactly these arguments and prints the call record on out; Failed when the
/// call ended in an error. A chain that comes back on itself is read for ever when the limit is 0.
/// The record is what the module says: for the standard input and for a name that is not UTF-8 the
/// file name in it is the one that leads to the open file.
ExitStatus call(const host::Module& module, const CallOptions& options, std::ostream& out);

/// The same with the arguments of the command line and the module that lies beside the tool.
ExitStatus runCall(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
