#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace corvinex {

class HostStream;

/// Reads a regular file at positions and keeps the block that it read last, so that reads within
/// that block make no call. It does not own the stream that it reads from.
class BlockReader {
  public:
    /// What the library reads at a time, and the unit of the system's cache: larger blocks cost
    /// more where values are scattered, and gain nothing where they are not.
    static constexpr std::size_t blockLength = 4096;

    /// Makes a reader that has no memory for a block and must not be asked to read.
    BlockReader() = default;
    /// A known length saves the call that finds the end of the file. The file may hold less or more
    /// by now.
    explicit BlockReader(std::uint64_t knownLength);

    [[nodiscard]] bool hasMemory() const noexcept { return block_ != nullptr; }
    /// Whether the byte at a position stands in the block.
    [[nodiscard]] bool holds(std::uint64_t position) const noexcept {
        return position >= start_ && position - start_ < fill_;
    }
    /// Reads at a position that a stream can have, from the block as far as it goes and from the
    /// stream beyond it, and returns how many bytes arrived.
    [[nodiscard]] std::size_t read(HostStream& stream, std::uint64_t position,
                                   std::span<unsigned char> bytes) noexcept;

  private:
    /// Copies what the block has from a position on.
    [[nodiscard]] std::size_t copy(std::uint64_t position,
                                   std::span<unsigned char> bytes) const noexcept;
    /// Reads the block of a position from there on; false when nothing arrives.
    [[nodiscard]] bool fetch(HostStream& stream, std::uint64_t position) noexcept;

    std::unique_ptr<unsigned char[]> block_;
    std::uint64_t knownLength_ = 0;
    std::uint64_t start_ = 0;  // position of the first byte in the block
    std::size_t fill_ = 0;     // bytes in the block
};

}  // namespace corvinex
