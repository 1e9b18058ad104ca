#pragma once

#include <stdexcept>
#include <string>

namespace tool {

/// Raised for a file that the tool does not hand to the module; what() says why, without the name.
class InputRefused : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
    /// With the error number by which the system refused the file.
    InputRefused(const std::string& reason, int systemError)
        : std::runtime_error(reason), systemError_(systemError) {}

    /// 0 where it was not the system that refused.
    [[nodiscard]] int systemError() const noexcept { return systemError_; }

  private:
    int systemError_ = 0;
};

}  // namespace tool
