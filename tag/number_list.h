#pragma once

#include <cstddef>
#include <span>
#include <variant>

#include "tag/owned_array.h"

namespace corvinex {

/// Numbers in order, copied with their owner. One alone, as most directories have it, needs no
/// memory of its own.
class NumberList {
  public:
    NumberList() = default;
    /// Elements are unset.
    explicit NumberList(std::size_t size) : numbers_(make(size)) {}

    [[nodiscard]] std::span<double> elements() noexcept {
        auto* const several = std::get_if<Several>(&numbers_);
        return several == nullptr ? std::span(std::get_if<double>(&numbers_), 1)
                                  : several->elements();
    }
    [[nodiscard]] std::span<const double> elements() const noexcept {
        const auto* const several = std::get_if<Several>(&numbers_);
        return several == nullptr ? std::span(std::get_if<double>(&numbers_), 1)
                                  : several->elements();
    }

  private:
    using Several = OwnedArray<double>;
    using Numbers = std::variant<Several, double>;

    static Numbers make(std::size_t size) { return size == 1 ? Numbers(0.0) : Several(size); }

    Numbers numbers_;
};

}  // namespace corvinex
