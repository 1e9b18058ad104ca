#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <vector>

#include "tool/path_list.h"

namespace tool {

/// The files of a command, handed out to several threads, each file once. A thread takes several
/// names from the list at once where files are read quickly, so that threads seldom meet at its
/// lock. When there is none left in the list it takes over what another thread has not begun.
class SharedPaths {
  public:
    struct Taken {
        ListedPath path;
        std::uint64_t number = 0;  ///< its place in the order of the list
    };

    /// A thread never has more than `mostAtOnce` names.
    SharedPaths(const PathOptions& options, std::size_t threads, std::size_t mostAtOnce);

    /// The next file of a thread, which numbers of threads count from 0. One that is far ahead of
    /// the others helps them first. Nothing when there is none left; after an interrupt and after
    /// stop() only what the threads have taken from the list before.
    [[nodiscard]] std::optional<Taken> take(std::size_t thread, bool isFarAhead = false);

    /// The next file of those that the thread has taken at once: the one behind its last in the
    /// list. Nothing where take() has to look for more, which may mean to wait.
    [[nodiscard]] std::optional<Taken> takeFromBatch(std::size_t thread) {
        return takeFrom(shares_[thread]);
    }

    /// Hands out no more files. The first reason that is given is kept.
    void stop(std::exception_ptr reason);

    /// Raises what was given to stop().
    void raiseFailure();

  private:
    using Clock = std::chrono::steady_clock;

    /// What one thread has taken from the list and not begun. It has cache lines of its own, as
    /// other threads seldom look at it.
    struct alignas(128) Share {
        std::mutex mutex;
        std::vector<Taken> names;  ///< last first
        std::size_t size = 0;      ///< of the last batch from the list
        Clock::time_point filled;  ///< when that was taken
    };

    static std::optional<Taken> takeFrom(Share& share);
    /// Takes a batch from the list. False when there is none left.
    bool fill(Share& share);
    [[nodiscard]] std::size_t nextSize(Share& share) const;
    /// Takes over the later half of what another thread has not begun. False when there is none.
    bool helpAnother(std::size_t thread);

    std::mutex mutex_;
    PathList list_;
    std::uint64_t taken_ = 0;
    bool isStopped_ = false;
    std::exception_ptr failure_;
    std::deque<Share> shares_;
    std::size_t mostAtOnce_;
};

}  // namespace tool
