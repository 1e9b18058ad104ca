#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

#include "format/byte_order.h"

namespace corvinex::inspect {

/// A file descriptor that is closed with its owner, or one that somebody else closes.
class Descriptor {
  public:
    enum class Owner { Self, Caller };

    Descriptor(int number, Owner owner) noexcept : number_(number), owner_(owner) {}
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&& other) noexcept;
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor();

    [[nodiscard]] int number() const noexcept { return number_; }

  private:
    int number_;
    Owner owner_;
};

/// The bytes of a file, read by position. Its size is taken once: what another process appends is
/// not seen, and what it cuts off reads as missing. Memory mappings would end the process then.
///
/// A descriptor's bytes pass through a small cache of blocks, for directories and short values lie
/// close together. Bytes in memory are copied as asked for. One thread at a time.
class Source {
  public:
    /// Opens a regular file; raises std::system_error when that fails.
    static Source open(const std::filesystem::path& path);
    /// Raises std::system_error when the descriptor is no regular file's.
    static Source ofDescriptor(Descriptor descriptor);
    static Source ofMemory(std::span<const std::byte> bytes) noexcept;

    [[nodiscard]] std::uint64_t size() const noexcept { return size_; }
    /// When the file was last changed, in seconds since 1970 (UTC). Nothing for bytes in memory.
    [[nodiscard]] std::optional<std::int64_t> modified() const noexcept { return modified_; }
    /// Copies the bytes from the position on. False when they do not all lie in the file, also when
    /// it has become shorter; the target's bytes are then of no meaning. Raises std::system_error
    /// when the system cannot read.
    [[nodiscard]] bool read(std::uint64_t position, std::span<std::byte> target) const;
    [[nodiscard]] bool read(std::uint64_t position, std::span<unsigned char> target) const {
        return read(position, std::as_writable_bytes(target));
    }
    /// The number at the position, in the machine's order; nothing when it does not lie in the
    /// file.
    template <class Number>
    [[nodiscard]] std::optional<Number> number(std::uint64_t position, bool swap) const {
        std::array<unsigned char, sizeof(Number)> bytes{};
        if (!read(position, bytes)) {
            return std::nullopt;
        }
        return loadFromFile<Number>(bytes, 0, swap);
    }

    /// Whether bytes can be read without the system: they lie in memory, or in a block that was
    /// read before.
    [[nodiscard]] bool holds(std::uint64_t position, std::uint64_t length) const noexcept;

  private:
    // Pages of the system's own cache, and enough of them that a directory, its values and the next
    // directory stay at hand when a writer put them apart.
    static constexpr std::size_t blockSize = 4096;
    static constexpr std::size_t blockCount = 16;

    struct Cache {
        struct Block {
            std::uint64_t number = 0;
            std::size_t length = 0;  // 0: holds nothing
        };
        std::array<Block, blockCount> blocks{};
        std::array<std::array<std::byte, blockSize>, blockCount> bytes;
    };

    Source(std::optional<Descriptor> descriptor, std::span<const std::byte> memory,
           std::uint64_t size);
    [[nodiscard]] std::span<const std::byte> block(std::uint64_t number) const;
    [[nodiscard]] std::size_t readFile(std::uint64_t position, std::span<std::byte> target) const;

    std::optional<Descriptor> descriptor_;
    std::span<const std::byte> memory_;
    std::optional<std::int64_t> modified_;
    std::uint64_t size_;
    std::unique_ptr<Cache> cache_;
};

}  // namespace corvinex::inspect
