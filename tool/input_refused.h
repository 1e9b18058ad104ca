#pragma once

#include <stdexcept>

namespace tool {

/// Raised for a file that the tool does not hand to the module; what() says why, without the name.
class InputRefused : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace tool
