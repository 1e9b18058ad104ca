#include "tag/page_memory.h"

#include <sys/mman.h>

#include <new>

namespace corvinex {

void* PageMemory::do_allocate(std::size_t bytes, std::size_t alignment) {
    if (bytes < longLength) {
        return std::pmr::new_delete_resource()->allocate(bytes, alignment);
    }
    void* const memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE,
                                MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::bad_alloc();
    }
    return memory;
}

void PageMemory::do_deallocate(void* memory, std::size_t bytes, std::size_t alignment) {
    if (bytes < longLength) {
        std::pmr::new_delete_resource()->deallocate(memory, bytes, alignment);
    } else {
        static_cast<void>(::munmap(memory, bytes));
    }
}

bool PageMemory::do_is_equal(const memory_resource& other) const noexcept {
    return dynamic_cast<const PageMemory*>(&other) != nullptr;
}

}  // namespace corvinex
