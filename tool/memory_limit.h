#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// Bytes from a whole number in decimal digits that a K, M or G may follow, for powers of 1024;
/// nothing for any other text and for what 64 bits do not hold.
std::optional<std::uint64_t> memorySize(std::string_view text);

/// A size with the way to allow more: "512M; --max-memory 1G allows more".
std::string moreMemoryText(std::uint64_t bytes);

/// What a file of this size may take when nothing else is asked for, in bytes: 512 MiB and 24 times
/// its size, and at least what the process has now, 64 MiB and 24 times the size, so that what
/// earlier files have left behind is not taken off. A value takes up to 9 times its bytes in the
/// file, so that only a file whose values share bytes comes to the limit. In a build with
/// sanitizers, which take far more address space than any machine has memory, 0: no limit.
std::uint64_t memoryLimitFor(std::uint64_t fileSize);

/// What is taken from a standard input that is no file when nothing else is asked for.
inline constexpr std::uint64_t standardInputLimit = std::uint64_t{512} << 20U;

/// The limit on the address space of this process, set anew for each file and lifted with its owner
/// as far as it is not the one that the process was started with, which holds in any case. One at a
/// time.
class MemoryLimit {
  public:
    /// With the same limit for every file (0 for none), or else what memoryLimitFor says. Raises
    /// std::system_error when the system does not tell its limits.
    explicit MemoryLimit(std::optional<std::uint64_t> bytes);
    ~MemoryLimit();
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;

    /// From now on an allocation that takes the process beyond the limit for a file of this size
    /// raises std::bad_alloc. Raises std::system_error when the system refuses.
    void setForFile(std::uint64_t fileSize);
    void lift() noexcept;

    /// A part of a sentence for people: that the memory ran out, and how to allow more.
    [[nodiscard]] std::string exceededText() const;
    /// The most that a standard input may bring.
    [[nodiscard]] std::uint64_t forStandardInput() const noexcept {
        return bytes_.value_or(standardInputLimit);
    }

  private:
    std::optional<std::uint64_t> bytes_;
    std::uint64_t before_;  // what the process was started with
    std::uint64_t inForce_;
};

}  // namespace tool
