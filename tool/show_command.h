#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "host/loading/module.h"
#include "tool/exit_status.h"
#include "tool/read_plan.h"

namespace tool {

struct ShowOptions {
    std::vector<std::string> files;
    ReadRequest request;
    bool all = false;  ///< every field, nothing cut
};

/// Prints every file's directories for people on out, warnings and errors on err. A file that fails
/// never stops the others; Failed when there was one.
ExitStatus show(const host::Module& module, const ShowOptions& options, std::ostream& out,
                std::ostream& err);

}  // namespace tool
