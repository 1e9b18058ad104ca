#pragma once

#include <string>
#include <vector>

namespace tool_test {

struct CommandResult {
    int exitStatus;  ///< -1 when a signal ended the command
    std::string out;
    std::string err;
};

/// Where the command's standard output goes.
enum class Output {
    Captured,
    DevFull,     ///< a device that refuses every write
    WithErrors,  ///< captured into one text together with the errors, as a terminal shows both
};

/// Runs the built tool with these arguments and waits for its end.
CommandResult runTool(const std::vector<std::string>& arguments, Output output = Output::Captured);

}  // namespace tool_test
