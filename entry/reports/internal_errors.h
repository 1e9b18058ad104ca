#pragma once

#include <stdexcept>
#include <string>

namespace corvinex {

/// Drop the entry being built and go on with the next one. Its warning has been issued. The text
/// names the function that raised it and is never shown.
class TiffTagsRecoverableError : public std::runtime_error {
  public:
    explicit TiffTagsRecoverableError(const std::string& where) : std::runtime_error(where) {}
};

/// End the chain being walked and keep what was read. Its warning has been issued.
class StopProcessingIfdChainException : public std::runtime_error {
  public:
    explicit StopProcessingIfdChainException(const std::string& where)
        : std::runtime_error(where) {}
};

}  // namespace corvinex
