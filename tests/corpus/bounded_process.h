#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace test {

/// How a child process ended.
struct ProcessResult {
    bool isInTime = true;  ///< false when it was killed at the time limit
    int signal = 0;        ///< the signal that ended it, 0 when it exited
    int exitStatus = -1;   ///< meaningful when no signal ended it
    std::string out;
    std::string err;
};

/// Runs a program, its path first, and takes what it writes. Kills it when it outlives the limit.
ProcessResult run(std::vector<std::string> words, std::chrono::seconds limit);

}  // namespace test
