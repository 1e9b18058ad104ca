#pragma once

#include <cstddef>
#include <memory_resource>

namespace corvinex {

/// Memory for arenas and large values. Long blocks are pages that come straight from the system,
/// provided at once because they are about to be filled, and that go back to it when they are given
/// back: whatever allocator the host uses can have them for the values that it makes next. Shorter
/// blocks come from operator new. It holds no state of its own, and any thread may use it.
class PageMemory final : public std::pmr::memory_resource {
  public:
    /// Blocks of this many bytes or more are pages.
    static constexpr std::size_t longLength = std::size_t{64} << 10;

  private:
    void* do_allocate(std::size_t bytes, std::size_t alignment) override;
    void do_deallocate(void* memory, std::size_t bytes, std::size_t alignment) override;
    [[nodiscard]] bool do_is_equal(const memory_resource& other) const noexcept override;
};

}  // namespace corvinex
