#pragma once

#include <cstddef>
#include <memory_resource>

#include "tag/page_memory.h"

namespace corvinex {

/// Memory for the lists of tags, the short values and the sub-directories of several directories
/// that are read, and later packaged, one after the other. Each directory shares the ownership of
/// its arena, and all the memory is released when the last of them is destroyed. A block that is
/// deallocated earlier is not used again, so memory that is long or short-lived comes from the
/// source instead. Used by one thread.
class DirectoryArena final : public std::pmr::memory_resource {
  public:
    /// Longer blocks are allocated from the arena's source and returned to it when deallocated.
    static constexpr std::size_t longestBlock = std::size_t{2} << 10;

    /// Takes its memory as one block of this many bytes, and further blocks when that is used up.
    explicit DirectoryArena(std::size_t length);

    /// Whether the next directory should begin another arena.
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
