#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace fuzz {

/// While it lives, the host's file services know one file, under every name: these bytes, which
/// must outlive it. Streams are unbuffered, so each read and seek of the module reaches the bytes
/// themselves.
///
/// Few bytes can lead to endless work by contract (a JPEG whose chain comes back on itself over
/// directories without a field), and to values of many times their size. A budget of reads and of
/// bytes ends that: once it is spent every read fails, as of a disk that went away.
class ScopedMemoryFile {
  public:
    static constexpr std::uint64_t mostReads = 8'000;
    static constexpr std::uint64_t mostBytes = std::uint64_t{1} << 20;

    explicit ScopedMemoryFile(std::span<const unsigned char> bytes);
    ~ScopedMemoryFile();
    ScopedMemoryFile(const ScopedMemoryFile&) = delete;
    ScopedMemoryFile& operator=(const ScopedMemoryFile&) = delete;

    /// Streams opened and not yet closed.
    [[nodiscard]] static std::size_t openStreams() noexcept;
};

}  // namespace fuzz
