#pragma once

#include <cstdint>

#include "format/checked_arithmetic.h"

namespace corvinex::inspect {

/// How many bytes of values a record may still give.
class ValueBudget {
  public:
    explicit ValueBudget(std::uint64_t fileSize) noexcept
        : left_(saturatingAdd(saturatingMultiply(fileSize, timesTheFile), always)) {}

    /// False for what does not fit; a later value that fits is still given.
    bool take(std::uint64_t bytes) noexcept {
        if (bytes > left_) {
            return false;
        }
        left_ -= bytes;
        return true;
    }

  private:
    // Values that share bytes on purpose, such as equal resolutions, stay far below.
    static constexpr std::uint64_t timesTheFile = 4;
    static constexpr std::uint64_t always = std::uint64_t{16} << 20U;

    std::uint64_t left_;
};

}  // namespace corvinex::inspect
