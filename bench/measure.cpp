// Runs a program and writes to standard error, as its last line, what the process took:
//   EXIT-STATUS CPU-SECONDS WALL-SECONDS PEAK-KIB
// A process inherits the peak memory of the process that starts it. This program is small for that
// reason: started from a scripting language, small programs would show that language's size.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "bench/cpu_clock.h"

namespace {

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace

int main(int count, char** words) {
    if (count < 2) {
        static_cast<void>(std::fputs("usage: measure PROGRAM [ARGUMENT...]\n", stderr));
        return 2;
    }
    const double start = bench::Seconds::now().wall;
    const pid_t child = ::fork();
    if (child == 0) {
        ::execv(words[1], words + 1);
        std::perror(words[1]);
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child) {
        std::perror("measure");
        return 2;
    }
    static_cast<void>(std::fprintf(stderr, "%d %.6f %.6f %ld\n",
                                   WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
                                   secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime),
                                   bench::Seconds::now().wall - start, usage.ru_maxrss));
    return 0;
}
