#pragma once

#include <cstddef>
#include <memory_resource>

namespace corvinex {

/// Memory for arenas and large values, from operator new, so that what is given back serves
/// whatever takes its memory there. The pages of long blocks are provided by the system at once, as
/// they are about to be filled. It holds no state of its own, and any thread may use it.
class PageMemory final : public std::pmr::memory_resource {
    void* do_allocate(std::size_t bytes, std::size_t alignment) override;
    void do_deallocate(void* memory, std::size_t bytes, std::size_t alignment) override;
    [[nodiscard]] bool do_is_equal(const memory_resource& other) const noexcept override;
};

}  // namespace corvinex
