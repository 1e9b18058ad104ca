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
/// The stream knows its position, so that a seek to that place asks nobody. A regular file is read
/// by a BlockReader: the library asks the system at each seek, also within its own buffer, where a
/// file's seek cannot fail, and that costs more than reading a value does. Every seek out of the
/// block is made, and so is the first one and one after a failure.
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

    [[nodiscard]] bool isOpen() const noexcept { return stream_.isOpen(); }
    /// The current position; 0 when the stream cannot tell, which only a read that fell short asks.
    [[nodiscard]] std::uint64_t tell() noexcept;
    /// False when the seek fails; a position that no stream can have is such a failure.
    [[nodiscard]] bool seek(std::uint64_t position) noexcept;
    /// The same from the current position.
    [[nodiscard]] bool seekForward(std::uint64_t distance) noexcept;
    /// Takes a position from now on, but seeks it only before the next read there: callers that
    /// move on have no use of the seek back. A failure then counts as a read that fell short.
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
