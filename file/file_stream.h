#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>

namespace corvinex {

/// A stdio stream of the host, read at positions given in bytes from its start and closed with its
/// owner. Failures are return values; callers decide what they mean.
///
/// The stream knows where it stands, so that a seek to that place asks nobody. Of a regular file it
/// keeps the block that it read last itself: the library asks the system at each seek, also within
/// its own buffer, where a file's seek cannot fail, and that costs more than reading a value does.
/// Every seek out of the block is made, and so is the first one and one after a failure.
///
/// A stream to which the host has given a buffer, or none, and one that is no regular file are left
/// as they are.
class FileStream {
  public:
    FileStream() = default;
    /// Takes ownership of a stream at its start; null makes a stream that is not open. A length is
    /// known of regular files alone, and saves the question where they end; the file may hold less
    /// or more by now. Raises std::bad_alloc, after closing the stream.
    explicit FileStream(std::FILE* stream, std::uint64_t knownLength = 0);

    /// The same for a stream from which a few bytes are read: without a buffer, which would take a
    /// block of the file.
    [[nodiscard]] static FileStream withoutBuffer(std::FILE* stream) noexcept;

    [[nodiscard]] bool isOpen() const noexcept { return stream_ != nullptr; }
    /// The current position; 0 when the stream cannot tell, which only a read that fell short asks.
    [[nodiscard]] std::uint64_t tell() noexcept;
    /// False when the seek fails; a position that no stream can have is such a failure.
    [[nodiscard]] bool seek(std::uint64_t position) noexcept;
    /// The same from the current position.
    [[nodiscard]] bool seekForward(std::uint64_t distance) noexcept;
    /// Stands at a position from now on, but goes there only when it is read from there: who moves
    /// on has no use of the way back. A failure then counts as a read that fell short.
    void seekWhenRead(std::uint64_t position) noexcept;
    /// Reads count items of size bytes and returns how many whole items arrived. The bytes after
    /// the last whole item are unspecified.
    [[nodiscard]] std::size_t read(void* data, std::size_t size, std::size_t count) noexcept;

  private:
    /// What the library reads at a time, and the unit of the system's cache: larger blocks cost
    /// more where values are scattered, and gain nothing where they are not.
    static constexpr std::size_t blockLength = 4096;

    void take(std::FILE* stream) noexcept;
    [[nodiscard]] bool reachTarget() noexcept;
    [[nodiscard]] bool seekStream(std::uint64_t position) noexcept;
    [[nodiscard]] bool isInBlock(std::uint64_t position) const noexcept;
    /// Copies what the block has from the position on, and moves on by it.
    [[nodiscard]] std::size_t readBlock(std::span<unsigned char> bytes) noexcept;
    /// Reads the block of the position from there on; false when nothing arrives.
    [[nodiscard]] bool fetchBlock() noexcept;
    /// Reads without the block, from where it ends.
    [[nodiscard]] std::size_t readStream(std::span<unsigned char> bytes) noexcept;

    struct Close {
        void operator()(std::FILE* stream) const noexcept {
            static_cast<void>(std::fclose(stream));
        }
    };
    std::unique_ptr<std::FILE, Close> stream_;
    std::unique_ptr<unsigned char[]> block_;  // none where the stream has a buffer of its own
    std::uint64_t knownLength_ = 0;
    std::uint64_t blockStart_ = 0;
    std::size_t blockFill_ = 0;              // bytes that it holds
    std::optional<std::uint64_t> target_;    // of a seek that is still to be made
    bool hasMoved_ = false;                  // with its last seek or read, which was whole
    std::optional<std::uint64_t> position_;  // where it is known
    std::optional<std::uint64_t> standsAt_;  // the library's position, where it is known
};

}  // namespace corvinex
