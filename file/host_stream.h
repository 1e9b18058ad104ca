#pragma once

#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>
#include <span>

namespace corvinex {

/// A stdio stream of the host, which is closed with its owner, and its position. Every seek and
/// every read is passed on to the C library. Failures are return values. One thread uses a stream.
class HostStream {
  public:
    /// The farthest position that a stream can have.
    static constexpr std::uint64_t farthest = std::numeric_limits<long>::max();

    HostStream() = default;
    /// Takes ownership of a stream at its start; null makes a stream that is not open.
    explicit HostStream(std::FILE* stream) noexcept;

    [[nodiscard]] bool isOpen() const noexcept { return stream_ != nullptr; }
    /// Whether it is a stream of the system's to which the host has given no buffer and that has
    /// not been read yet. Streams of other kinds read byte by byte when they have no buffer.
    [[nodiscard]] bool hasNoBufferYet() const noexcept;
    /// Takes the buffer from a stream that has not been read yet. False where the library refuses.
    [[nodiscard]] bool removeBuffer() noexcept;

    /// Where the next read begins. It is not known after a read that fell short, until a seek
    /// succeeds.
    [[nodiscard]] std::optional<std::uint64_t> position() const noexcept { return position_; }
    /// The same, but where it is not known the library is asked, which may fail.
    [[nodiscard]] std::optional<std::uint64_t> findPosition() noexcept;
    /// Seeks a position that is at most the farthest. A failure leaves the position as it was.
    [[nodiscard]] bool seek(std::uint64_t position) noexcept;
    /// The same, but the library is not asked where the stream stands there already.
    [[nodiscard]] bool moveTo(std::uint64_t position) noexcept {
        return position_ == position || seek(position);
    }
    /// Seeks by a distance that is at most the farthest position, also where the position is not
    /// known.
    [[nodiscard]] bool seekForward(std::uint64_t distance) noexcept;
    /// Reads as many bytes as there is room for, and returns how many arrived.
    [[nodiscard]] std::size_t read(std::span<unsigned char> bytes) noexcept;

  private:
    struct Close {
        void operator()(std::FILE* stream) const noexcept {
            static_cast<void>(std::fclose(stream));
        }
    };
    std::unique_ptr<std::FILE, Close> stream_;
    std::optional<std::uint64_t> position_ = 0;
};

}  // namespace corvinex
