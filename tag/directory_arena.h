#pragma once

#include <cstddef>
#include <memory_resource>

#include "tag/page_memory.h"

namespace corvinex {

/// The memory of some directories that are read one after the other and packaged one after the
/// other: their lists of tags, their short values and their sub-directories. Each directory holds a
/// share of its arena, and the arena goes as a whole with the last of them. Nothing that is given
/// back earlier is used again, so what is long or comes and goes by itself stands elsewhere.
/// Used by one thread.
class DirectoryArena final : public std::pmr::memory_resource {
  public:
    /// Longer blocks come from the arena's source and go back to it at once.
    static constexpr std::size_t longestBlock = std::size_t{2} << 10;

    /// Takes its memory in a block of this many bytes, and further ones where that is too little.
    explicit DirectoryArena(std::size_t length);

    /// Whether the next directory had better begin another arena.
    [[nodiscard]] bool isFull() const noexcept { return used_ >= enough_; }
    /// Where longer blocks come from.
    [[nodiscard]] std::pmr::memory_resource& getSource() noexcept { return source_; }

  private:
    void* do_allocate(std::size_t bytes, std::size_t alignment) override;
    void do_deallocate(void* memory, std::size_t bytes, std::size_t alignment) override;
    [[nodiscard]] bool do_is_equal(const memory_resource& other) const noexcept override;

    PageMemory source_;
    std::pmr::monotonic_buffer_resource blocks_;
    std::size_t enough_;
    std::size_t used_ = 0;
};

}  // namespace corvinex
