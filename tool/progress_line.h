#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>

#include "tool/path_list.h"

namespace tool {

/// How far the work on many files is.
struct Progress {
    std::uint64_t done = 0;
    std::optional<std::uint64_t> found;  ///< all files, where they are counted
    std::uint64_t findings = 0;
    double seconds = 0;
};

/// "120 of 3,000 files, 60 a second, 7 findings, 0:48 left".
[[nodiscard]] std::string progressText(const Progress& progress);

/// A line on the terminal at the standard error that tells how far the work is. It stands there
/// when the work has lasted for a second, and is gone with its owner. Files are counted by a thread
/// of its own, which walks the folders a second time and keeps no names.
class ProgressLine {
  public:
    /// Raises std::system_error when there can be no thread.
    explicit ProgressLine(PathOptions paths);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// One more file is done. May be called by any thread.
    void add(std::size_t findings);

    /// Takes the line off the terminal, so that something else can be written. It stays away while
    /// the lock is held.
    [[nodiscard]] std::unique_lock<std::mutex> pause();

  private:
    void work(const std::stop_token& stop);
    /// Counts files for a moment. False when there is no more to count.
    bool countSome(PathList& list, const std::stop_token& stop);
    void draw();
    void erase();

    PathOptions paths_;
    std::mutex mutex_;
    std::condition_variable_any stopped_;
    Progress progress_;
    std::uint64_t counted_ = 0;
    bool isDrawn_ = false;
    std::jthread thread_;  // last: it uses all others
};

}  // namespace tool
