#pragma once

namespace tool {

/// What the command ends with.
enum ExitStatus : int {
    Success = 0,
    Failed = 1,        ///< a file could not be read, or the output could not be written
    BadUsage = 2,      ///< the command line was not understood
    NotCompared = 2,   ///< `diff` only, whose Failed says that files differ
    OutputFailed = 3,  ///< records could not be written
};

}  // namespace tool
