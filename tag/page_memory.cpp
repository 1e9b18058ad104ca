#include "tag/page_memory.h"

#include <sys/mman.h>

#include <memory>

namespace corvinex {

namespace {

/// The shortest block whose pages are provided at once.
constexpr std::size_t longLength = std::size_t{60} << 10;

/// Where the system cannot do so nothing changes.
void providePages(void* memory, std::size_t length) noexcept {
    constexpr std::size_t pageLength = 4096;
    if (length >= longLength && std::align(pageLength, pageLength, memory, length) != nullptr) {
        static_cast<void>(::madvise(memory, length / pageLength * pageLength, MADV_POPULATE_WRITE));
    }
}

}  // namespace

void* PageMemory::do_allocate(std::size_t bytes, std::size_t alignment) {
    void* const memory = std::pmr::new_delete_resource()->allocate(bytes, alignment);
    providePages(memory, bytes);
    return memory;
}

void PageMemory::do_deallocate(void* memory, std::size_t bytes, std::size_t alignment) {
    std::pmr::new_delete_resource()->deallocate(memory, bytes, alignment);
}

bool PageMemory::do_is_equal(const memory_resource& other) const noexcept {
    return dynamic_cast<const PageMemory*>(&other) != nullptr;
}

}  // namespace corvinex
