#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory_resource>
#include <optional>
#include <span>
#include <utility>

#include "tag/unset_allocator.h"

namespace corvinex {

/// The value bytes of an entry while it is being made into a tag. Short values, which is most of
/// them, need no memory of their own.
class RawValue {
  public:
    /// What fits inside.
    static constexpr std::size_t shortLength = 64;

    /// Room for size bytes, which are unspecified. Whoever asks has checked that the file holds as
    /// many. Raises std::bad_alloc.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
    RawValue(std::size_t size, std::pmr::memory_resource& memory) : size_(size) {
        if (isOutside()) {
            outside_.emplace(size, &memory);
        }
    }
    /// The value field of an entry, 4 or 8 bytes, of which the value may be a part.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
    RawValue(std::size_t size, std::span<const unsigned char> field) noexcept : size_(size) {
        // Lengths known to the compiler: this is what most entries are.
        if (field.size() == 4) {
            std::copy_n(field.begin(), 4, inside_.begin());
        } else {
            std::copy_n(field.begin(), 8, inside_.begin());
        }
    }

    [[nodiscard]] std::span<unsigned char> bytes() noexcept {
        return isOutside() ? std::span(*outside_) : std::span(inside_).first(size_);
    }
    [[nodiscard]] std::span<const unsigned char> bytes() const noexcept {
        return isOutside() ? std::span(*outside_) : std::span(inside_).first(size_);
    }
    /// Whether the bytes have memory of their own, which can then be taken.
    [[nodiscard]] bool isOutside() const noexcept { return size_ > shortLength; }
    [[nodiscard]] ValueVector<unsigned char> takeOutside() noexcept { return *std::move(outside_); }

  private:
    std::size_t size_;
    std::array<unsigned char, shortLength> inside_;  // unset, as its size tells
    std::optional<ValueVector<unsigned char>> outside_;
};

}  // namespace corvinex
