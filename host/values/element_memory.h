#pragma once

#include <cstddef>

#include "host/values/block_pool.h"

namespace host {

/// Memory for one value with its elements: small pieces from the thread's pool, large ones from the
/// library with their pages provided at once.
class ElementMemory {
  public:
    /// Unset. Raises std::bad_alloc.
    [[nodiscard]] static void* allocate(std::size_t size) {
        return size <= BlockPool::largestBlock ? BlockPool::ofThisThread().allocate(size)
                                               : allocateLarge(size);
    }
    /// All bytes zero. Raises std::bad_alloc.
    [[nodiscard]] static void* allocateZeroed(std::size_t size);
    /// Gives back what was allocated with this size.
    static void release(void* memory, std::size_t size) noexcept {
        if (size <= BlockPool::largestBlock) {
            BlockPool::ofThisThread().deallocate(memory, size);
        } else {
            releaseLarge(memory);
        }
    }

  private:
    static void* allocateLarge(std::size_t size);
    static void releaseLarge(void* memory) noexcept;
};

}  // namespace host
