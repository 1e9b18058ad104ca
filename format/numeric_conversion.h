#pragma once

#include <limits>

namespace corvinex {

/// Truncates toward zero; what lies beyond the type becomes its nearest limit, NaN becomes 0.
template <class Integer>
[[nodiscard]] constexpr Integer truncateTo(double value) noexcept {
    using Limits = std::numeric_limits<Integer>;
    // One past the largest value, a power of two and so exact as a double at every width.
    constexpr double end = 2.0 * static_cast<double>(Integer{1} << (Limits::digits - 1));
    if (value >= end) {
        return Limits::max();
    }
    if (value <= static_cast<double>(Limits::min())) {
        return Limits::min();
    }
    return value == value ? static_cast<Integer>(value) : Integer{0};
}

}  // namespace corvinex
