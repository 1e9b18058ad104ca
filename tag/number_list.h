#pragma once

#include <cstddef>
#include <span>

#include "tag/owned_array.h"

namespace corvinex {

/// Numbers in order, copied with their owner. One alone, as most directories have it, needs no
/// memory of its own.
class NumberList {
  public:
    NumberList() = default;
    /// Elements are unset.
    explicit NumberList(std::size_t size) : hasOne_(size == 1), several_(size == 1 ? 0 : size) {}

    [[nodiscard]] std::span<double> elements() noexcept {
        return hasOne_ ? std::span(&one_, 1) : several_.elements();
    }
    [[nodiscard]] std::span<const double> elements() const noexcept {
        return hasOne_ ? std::span(&one_, 1) : several_.elements();
    }

  private:
    bool hasOne_ = false;
    double one_ = 0;
    OwnedArray<double> several_;
};

}  // namespace corvinex
