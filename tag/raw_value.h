#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace corvinex {

/// The value bytes of an entry while it is being made into a tag. Short values, which is most of
/// them, need no memory of their own.
class RawValue {
  public:
    /// Makes room for size bytes, whose contents are then unspecified, and returns it. Whoever asks
    /// has checked that the file holds as many.
    std::span<unsigned char> resize(std::size_t size) {
        outside_.resize(size > inside_.size() ? size : 0);
        bytes_ = size > inside_.size() ? std::span<unsigned char>(outside_)
                                       : std::span<unsigned char>(inside_).first(size);
        return bytes_;
    }
    [[nodiscard]] std::span<const unsigned char> bytes() const noexcept { return bytes_; }

  private:
    std::array<unsigned char, 64> inside_{};
    std::vector<unsigned char> outside_;
    std::span<unsigned char> bytes_;
};

}  // namespace corvinex
