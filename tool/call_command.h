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
    std::optional<double> headerOffset;  ///< looked for when not given
    double skip = 0;
    double limit = 0;
    std::optional<std::uint64_t> maxMemory;
};

/// Calls the module with exactly these numbers and prints the call record on out; Failed when the
/// call ended in an error. Only a header offset that is not given is looked for. A chain that comes
/// back on itself is read for ever when the limit is 0. The record is what the module says, but for
/// the name of the file, which is the one it was asked for by. Of a folder, an empty file and a
/// file that may not be read the reason is told on err.
ExitStatus call(const host::Module& module, const CallOptions& options, std::ostream& out,
                std::ostream& err);

/// The same with the arguments of the command line and the module that lies beside the tool.
ExitStatus runCall(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
