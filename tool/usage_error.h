#pragma once

#include <stdexcept>

namespace tool {

/// Raised for a command line that is not understood; what() says why.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace tool
