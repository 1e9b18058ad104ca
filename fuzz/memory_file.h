#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace fuzz {

/// What may be read before reads fail.
struct ReadBudget {
    std::uint64_t reads = 8'000;
    std::uint64_t bytes = std::uint64_t{1} << 20;
};

/// While it lives, the host's file services know one file, under every name: these bytes, which
/// must outlive it. Streams are unbuffered, so each read and seek of the module reaches the bytes
/// themselves.
///
/// Few bytes can lead to endless work by contract (a JPEG whose chain comes back on itself over
/// directories without a field), and to values of many times their size. A budget of reads and of
/// bytes ends that: once it is spent every read fails, as of a disk that went away.
class ScopedMemoryFile {
  public:
    /// The farthest position that can be sought where nothing else is said: what the largest file
    /// of a common file system can have.
    static constexpr std::int64_t commonFarthest = std::int64_t{1} << 44;

    explicit ScopedMemoryFile(std::span<const unsigned char> bytes, ReadBudget budget = {},
                              std::int64_t farthest = commonFarthest);
    ~ScopedMemoryFile();
    ScopedMemoryFile(const ScopedMemoryFile&) = delete;
    ScopedMemoryFile& operator=(const ScopedMemoryFile&) = delete;

    /// Serves the bytes as a file of the system from now on, whose streams are as any file's: not
    /// unbuffered, not counted, with no budget and no farthest position.
    static void becomeFile();

    /// Streams opened and not yet closed.
    [[nodiscard]] static std::size_t openStreams() noexcept;
    /// Whether a read has failed because the budget was spent.
    [[nodiscard]] static bool isSpent() noexcept;
};

}  // namespace fuzz
