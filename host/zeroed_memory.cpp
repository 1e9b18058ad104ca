#include "host/zeroed_memory.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "host/block_pool.h"
#include "host/fresh_memory.h"

namespace host {

// Only calloc knows which memory comes from the system as zeros.
// NOLINTBEGIN(cppcoreguidelines-no-malloc)

void* ZeroedMemory::allocate(std::size_t size) {
    if (size <= BlockPool::largestBlock) {
        return std::memset(BlockPool::ofThisThread().allocate(size), 0, size);
    }
    void* const memory = std::calloc(1, size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    provideAtOnce(memory, size);
    return memory;
}

void ZeroedMemory::release(void* memory, std::size_t size) noexcept {
    if (size <= BlockPool::largestBlock) {
        BlockPool::ofThisThread().deallocate(memory, size);
    } else {
        std::free(memory);
    }
}

// NOLINTEND(cppcoreguidelines-no-malloc)

}  // namespace host
