#pragma once

#include <ctime>

namespace bench {

/// Wall and processor seconds, as a point in time or as the time between two of them.
struct Seconds {
    double wall = 0;
    double cpu = 0;

    static Seconds now() noexcept { return {of(CLOCK_MONOTONIC), of(CLOCK_PROCESS_CPUTIME_ID)}; }
    void addSince(const Seconds& start) noexcept {
        const Seconds end = now();
        wall += end.wall - start.wall;
        cpu += end.cpu - start.cpu;
    }

  private:
    static double of(clockid_t clock) noexcept {
        timespec time{};
        ::clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    }
};

}  // namespace bench
