#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "tool/file_descriptor.h"

namespace tool {

/// A file read at given positions, never as a whole. A file that cannot be opened, or is no regular
/// file, reads as an empty one: saying what is wrong with it is the module's business. Where
/// memory is lacking, std::bad_alloc is raised: an answer found without it would be a false one.
class PositionedFile {
  public:
    explicit PositionedFile(const std::string& path);

    /// Bytes in the file when it was opened.
    [[nodiscard]] std::uint64_t size() const noexcept { return size_; }
    /// Fills the buffer from a position; false when the file does not hold all of these bytes.
    [[nodiscard]] bool read(std::uint64_t position, std::span<unsigned char> buffer);

  private:
    bool load(std::uint64_t position, std::size_t needed);

    FileDescriptor descriptor_;
    std::uint64_t size_ = 0;
    // The bytes read last: small reads side by side, as a walk makes them, share one call.
    std::vector<unsigned char> window_;
    std::uint64_t windowStart_ = 0;
};

}  // namespace tool
