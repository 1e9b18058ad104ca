#pragma once

#include <string>
#include <utility>
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
    ClosedPipe,  ///< a pipe that nobody reads from
    WithErrors,  ///< captured into one text together with the errors, as a terminal shows both
    Terminal,    ///< a terminal that nobody reads from; it holds a few lines
};

/// What the command's standard input brings: nothing unless told otherwise.
struct Input {
    static Input file(std::string path) { return {std::move(path), {}}; }
    static Input pipe(std::string bytes) { return {"", std::move(bytes)}; }

    std::string path = "/dev/null";  ///< empty for a pipe
    std::string bytes;               ///< that the pipe brings
};

/// Runs the built tool with these arguments and waits for its end. Variables, as NAME=VALUE, take
/// the place of those of this process.
CommandResult runTool(const std::vector<std::string>& arguments, Output output = Output::Captured,
                      const Input& input = {}, const std::vector<std::string>& variables = {});

}  // namespace tool_test
