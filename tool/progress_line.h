#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>
#include <thread>

#include "tool/path_list.h"

namespace tool {

/// How far the work is, in numbers.
struct Progress {
    std::uint64_t done = 0;              ///< files
    std::optional<std::uint64_t> found;  ///< files in all; nothing while they are being counted
    std::uint64_t findings = 0;
    std::chrono::milliseconds elapsed{0};
};

/// "1,234 of 20,000 files, 617 a second, 56 findings, 0:31 left".
[[nodiscard]] std::string progressText(const Progress& progress);

/// A line on a terminal that tells how far the work is. It appears when the work has lasted a
/// second, is taken off for other output, and is gone at the end. Threads may use it at once.
class ProgressLine {
  public:
    /// Shows nothing when the standard error is no terminal or nothing is wanted. Otherwise the
    /// files of the list are counted in the meantime, when walking them twice changes nothing.
    ProgressLine(std::ostream& err, bool isWanted, const PathOptions& paths);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Tells that files are done.
    void add(std::uint64_t files, std::uint64_t findings) noexcept {
        done_.fetch_add(files, std::memory_order_relaxed);
        findings_.fetch_add(findings, std::memory_order_relaxed);
    }

    /// Takes the line off and keeps it away as long as the lock is held.
    [[nodiscard]] std::unique_lock<std::mutex> pause();

  private:
    using Clock = std::chrono::steady_clock;

    void count(const std::stop_token& stop);
    void draw(const std::stop_token& stop);
    void clear();

    std::ostream& err_;
    PathOptions paths_;
    std::atomic<std::uint64_t> done_{0};
    std::atomic<std::uint64_t> findings_{0};
    std::atomic<std::uint64_t> found_{0};
    std::atomic<bool> isCounted_{false};
    Clock::time_point start_ = Clock::now();
    std::mutex mutex_;
    std::condition_variable_any wake_;
    bool isDrawn_ = false;
    std::jthread counter_;
    std::jthread drawer_;
};

}  // namespace tool
