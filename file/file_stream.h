#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>

namespace corvinex {

/// A stdio stream of the host, read at positions given in bytes from its start and closed with its
/// owner. Failures are return values; callers decide what they mean.
class FileStream {
  public:
    FileStream() = default;
    /// Takes ownership; null makes a stream that is not open.
    explicit FileStream(std::FILE* stream) noexcept : stream_(stream) {}

    [[nodiscard]] bool isOpen() const noexcept { return stream_ != nullptr; }
    /// The current position; 0 when the stream cannot tell.
    [[nodiscard]] std::uint64_t tell() const noexcept;
    /// False when the seek fails; a position that no stream can have is such a failure.
    [[nodiscard]] bool seek(std::uint64_t position) noexcept;
    /// The same from the current position.
    [[nodiscard]] bool seekForward(std::uint64_t distance) noexcept;
    /// Reads count items of size bytes and returns how many whole items arrived. The bytes after
    /// the last whole item are unspecified.
    [[nodiscard]] std::size_t read(void* data, std::size_t size, std::size_t count) noexcept;

  private:
    struct Close {
        void operator()(std::FILE* stream) const noexcept { std::fclose(stream); }
    };
    std::unique_ptr<std::FILE, Close> stream_;
};

}  // namespace corvinex
