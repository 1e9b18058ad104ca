#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>

#include "file/block_reader.h"
#include "file/host_stream.h"

namespace corvinex {

/// A stdio stream of the host, read at positions given in bytes from its start and closed with its
/// owner. Failures are return values; callers decide what they mean.
///
/// A seek to the stream's own position makes no call. A regular file is read by a BlockReader,
/// because the C library asks the system at each seek, also at one within its own buffer that
/// cannot fail, and that costs more than reading a value does. Every seek out of the block is made,
/// and so are the first one and one after a failure.
///
/// A stream to which the host has given a buffer, or none, and one that is no regular file keep
/// what they have.
class FileStream {
  public:
    FileStream() = default;
    /// Takes ownership of a stream at its start; null makes a stream that is not open. A length
    /// other than 0 says that it is a regular file, and saves the call that finds its end; the file
    /// may hold less or more by now. Raises std::bad_alloc, after closing the stream.
    explicit FileStream(std::FILE* stream, std::uint64_t knownLength = 0);

    /// Does the same for a stream from which a few bytes are read: it gets no buffer, which would
    /// be filled with a whole block of the file.
    [[nodiscard]] static FileStream withoutBuffer(std::FILE* stream) noexcept;

    [[nodiscard]] bool isOpen() const noexcept { return stream_.isOpen(); }
    /// The current position. It is not known after a read that fell short; then the library is
    /// asked, and 0 is returned where that fails.
    [[nodiscard]] std::uint64_t tell() noexcept;
    /// False when the seek fails; a position that no stream can have is such a failure.
    [[nodiscard]] bool seek(std::uint64_t position) noexcept;
    /// Seeks in the same way by a distance from the current position.
    [[nodiscard]] bool seekForward(std::uint64_t distance) noexcept;
    /// Sets the position, but leaves the seek to the next read from there: callers that move on do
    /// not need it. A failure of that seek counts as a read that fell short.
    void seekWhenRead(std::uint64_t position) noexcept;
    /// Reads count items of size bytes and returns how many whole items arrived. The bytes after
    /// the last whole item are unspecified.
    [[nodiscard]] std::size_t read(void* data, std::size_t size, std::size_t count) noexcept;

  private:
    [[nodiscard]] bool makePendingSeek() noexcept;

    HostStream stream_;
    BlockReader blocks_;                         // without memory where the stream has a buffer
    std::optional<std::uint64_t> position_ = 0;  // where it is known
    std::optional<std::uint64_t> pendingSeek_;   // a seek that the next read makes
    bool isSound_ = false;                       // whether the last seek or read was whole
};

}  // namespace corvinex
