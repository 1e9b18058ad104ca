#include "host/values/element_memory.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "host/values/fresh_memory.h"

namespace host {

namespace {

void* provide(void* memory, std::size_t size) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    provideAtOnce(memory, size);
    return memory;
}

}  // namespace

// Only calloc knows which memory comes from the system as zeros, and need not write it.
// NOLINTBEGIN(cppcoreguidelines-no-malloc)

void* ElementMemory::allocateZeroed(std::size_t size) {
    if (size <= largestValueBlock) {
        return std::memset(allocate(size), 0, size);
    }
    return provide(std::calloc(1, size), size);
}

void* ElementMemory::allocateLarge(std::size_t size) {
    return provide(std::malloc(size), size);
}

void ElementMemory::releaseLarge(void* memory) noexcept {
    std::free(memory);
}

// NOLINTEND(cppcoreguidelines-no-malloc)

}  // namespace host
