#include "fuzz/input_cost.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <system_error>

#include "fuzz/target.h"

namespace fuzz {

namespace {

constexpr rlim_t mostSeconds = 2;

double processorMilliseconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

[[noreturn]] void runChild(std::span<const unsigned char> input, int result) {
    const rlimit limit{mostSeconds, mostSeconds};
    ::setrlimit(RLIMIT_CPU, &limit);
    const double start = processorMilliseconds();
    LLVMFuzzerTestOneInput(input.data(), input.size());
    const double taken = processorMilliseconds() - start;
    const bool written = ::write(result, &taken, sizeof taken) == sizeof taken;
    ::_exit(written ? 0 : 1);
}

[[noreturn]] void raiseSystemError(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

InputCost costOf(std::span<const unsigned char> input) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        raiseSystemError("no pipe");
    }
    const pid_t child = ::fork();
    if (child < 0) {
        raiseSystemError("no process");
    }
    if (child == 0) {
        runChild(input, ends[1]);
    }
    ::close(ends[1]);
    InputCost cost;
    const bool told =
        ::read(ends[0], &cost.milliseconds, sizeof cost.milliseconds) == sizeof cost.milliseconds;
    ::close(ends[0]);
    int status = 0;
    rusage usage{};
    if (::wait4(child, &status, 0, &usage) != child) {
        raiseSystemError("no process to wait for");
    }
    cost.peakBytes = std::int64_t{usage.ru_maxrss} * 1024;
    cost.ended = told && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    if (!cost.ended) {
        cost.milliseconds = static_cast<double>(mostSeconds) * 1e3;
    }
    return cost;
}

}  // namespace fuzz
