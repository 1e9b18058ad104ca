#pragma once

#include <cstddef>

#include "host/values/value_memory.h"

namespace host {

/// Memory for one value with its elements: a small one from the values' own memory, a large one
/// from the library with its pages provided at once.
class ElementMemory {
  public:
    /// Unset. Raises std::bad_alloc.
    [[nodiscard]] static void* allocate(std::size_t size) {
        return size <= largestValueBlock ? valueMemory().allocate(size, alignment)
                                         : allocateLarge(size);
    }
    /// All bytes zero. Raises std::bad_alloc.
    [[nodiscard]] static void* allocateZeroed(std::size_t size);
    /// Gives back what was allocated with this size.
    static void release(void* memory, std::size_t size) noexcept {
        if (size <= largestValueBlock) {
            valueMemory().deallocate(memory, size, alignment);
        } else {
            releaseLarge(memory);
        }
    }

  private:
    static constexpr std::size_t alignment = alignof(void*);

    static void* allocateLarge(std::size_t size);
    static void releaseLarge(void* memory) noexcept;
};

}  // namespace host
