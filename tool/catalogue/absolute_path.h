#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace tool {

/// Makes names of files absolute: from the root on, without empty parts and those that are points.
/// Parts that lead back are followed as the system follows them, links on the way included; what
/// stands behind the last of them is kept as it is. Threads may use it at once.
class AbsolutePaths {
  public:
    /// The folder is the absolute one that names count from.
    explicit AbsolutePaths(std::string folder) : folder_(std::move(folder)) {}

    [[nodiscard]] std::string of(const std::string& name);

  private:
    std::string resolved(std::string_view folder);

    std::string folder_;
    std::mutex mutex_;
    // Many names of one folder follow each other, and it is resolved once for all of them.
    std::string lastFolder_;
    std::string lastResolved_;
};

}  // namespace tool
