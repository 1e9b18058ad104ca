#pragma once

#include <cstdint>
#include <exception>
#include <mutex>
#include <optional>

#include "tool/path_list.h"

namespace tool {

/// The files of a command, handed out to several threads, each file once.
class SharedPaths {
  public:
    struct Taken {
        ListedPath path;
        std::uint64_t number = 0;  ///< its place in the order of the list
    };

    explicit SharedPaths(const PathOptions& options) : list_(options) {}

    /// The next file. Nothing when there is none left, after an interrupt and after stop().
    [[nodiscard]] std::optional<Taken> take();

    /// Hands out no more files. The first reason that is given is kept.
    void stop(std::exception_ptr reason);

    /// Raises what was given to stop().
    void raiseFailure();

  private:
    std::mutex mutex_;
    PathList list_;
    std::uint64_t taken_ = 0;
    bool isStopped_ = false;
    std::exception_ptr failure_;
};

}  // namespace tool
