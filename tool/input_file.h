#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tool {

/// Raised for a file that the tool does not hand to the module; what() says why, without the name.
class InputRefused : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The file name as the module takes it. Raises InputRefused for a name that is not valid UTF-8,
/// and for a pipe, a socket or a device, whose reading could wait for ever. Everything else passes,
/// directories and missing files included: what they mean is the module's to say.
std::u16string checkedFileName(std::string_view path);

}  // namespace tool
