#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>

namespace corvinex {

/// A stdio stream of the host, read at positions given in bytes from its start and closed with its
/// owner. Failures are return values; callers decide what they mean.
///
/// The stream knows where it stands, so that a seek to that place asks nobody: the library asks the
/// system each time, which costs more than reading a value does. Every other seek is made, the
/// first one among them, and after a read that fell short the place counts as unknown.
class FileStream {
  public:
    FileStream() = default;
    /// Takes ownership of a stream at its start; null makes a stream that is not open.
    explicit FileStream(std::FILE* stream) noexcept;

    /// The same for a stream from which a few bytes are read: without a buffer, which would take a
    /// block of the file.
    [[nodiscard]] static FileStream withoutBuffer(std::FILE* stream) noexcept;

    [[nodiscard]] bool isOpen() const noexcept { return stream_ != nullptr; }
    /// The current position; 0 when the stream cannot tell.
    [[nodiscard]] std::uint64_t tell() noexcept;
    /// False when the seek fails; a position that no stream can have is such a failure.
    [[nodiscard]] bool seek(std::uint64_t position) noexcept;
    /// Stands at a position from now on, but goes there only when it is read from there: who moves
    /// on has no use of the way back. A failure then counts as a read that fell short.
    void seekWhenRead(std::uint64_t position) noexcept;
    /// The same from the current position.
    [[nodiscard]] bool seekForward(std::uint64_t distance) noexcept;
    /// Reads count items of size bytes and returns how many whole items arrived. The bytes after
    /// the last whole item are unspecified.
    [[nodiscard]] std::size_t read(void* data, std::size_t size, std::size_t count) noexcept;

  private:
    [[nodiscard]] bool reachTarget() noexcept;

    struct Close {
        void operator()(std::FILE* stream) const noexcept {
            static_cast<void>(std::fclose(stream));
        }
    };
    std::unique_ptr<std::FILE, Close> stream_;
    std::optional<std::uint64_t> target_;    // of a seek that is still to be made
    bool hasMoved_ = false;                  // or tried to: the stream has shown whether it can
    std::optional<std::uint64_t> position_;  // where it is known
};

}  // namespace corvinex
