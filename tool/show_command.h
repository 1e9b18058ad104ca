#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "host/loading/module.h"
#include "tool/arguments.h"
#include "tool/diagnostics.h"
#include "tool/exit_status.h"
#include "tool/read_plan.h"

namespace tool {

struct ShowOptions {
    std::vector<std::string> files;
    ReadRequest request;
    bool all = false;  ///< every field, nothing cut
    WarningsShown warnings = WarningsShown::First;
    std::optional<std::uint64_t> maxMemory;
};

/// Prints every file's directories for people on out, warnings and errors on err. A file that fails
/// never stops the others; Failed when there was one.
ExitStatus show(const host::Module& module, const ShowOptions& options, std::ostream& out,
                std::ostream& err);

/// The same with the arguments of the command line and the module that lies beside the tool.
ExitStatus runShow(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
