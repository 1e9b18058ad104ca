#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <vector>

namespace host {

/// Memory for small values, which a result has by the million: taking and giving back a block costs
/// a few instructions, and blocks of one size lie side by side. Blocks that are given back serve
/// later values; their memory stays with the process. A block may be given back by another thread
/// than the one that took it, also after that one has ended and while the process ends.
///
/// Sanitizers watch values best when each has memory of its own, so in their builds it has.
class BlockPool {
  public:
    /// Larger blocks are not the pool's.
    static constexpr std::size_t largestBlock = 256;

    /// The pool that this thread uses now; no other thread uses it meanwhile.
    static BlockPool& ofThisThread() {
        return current_ == nullptr ? takeForThisThread() : *current_;
    }

    /// A block of that size, unset and aligned for numbers and pointers. Raises std::bad_alloc.
    [[nodiscard]] void* allocate(std::size_t size);
    /// Takes back a block that was allocated with this size, from whichever pool.
    void deallocate(void* block, std::size_t size) noexcept;

  private:
    static constexpr std::size_t step = 8;
    // From the first slab of a size to the longest: each is twice the one before.
    static constexpr std::size_t firstSlab = std::size_t{2} << 10;
    static constexpr std::size_t longestSlab = std::size_t{64} << 10;
    struct FreeBlock {
        FreeBlock* next;
    };

    /// The blocks of one size.
    struct Blocks {
        FreeBlock* free = nullptr;
        std::byte* unused = nullptr;  // the part of the last slab that was never taken
        std::size_t unusedLength = 0;
        std::size_t nextSlab = firstSlab;
    };

    /// Gives a thread's pool to later threads when the thread ends.
    class Use;

    /// Gives the thread an idle pool, or a new one, for as long as it lives.
    static BlockPool& takeForThisThread();
    void addSlab(Blocks& blocks);

    // Reached without a call.
    [[gnu::tls_model("initial-exec")]] static thread_local constinit BlockPool* current_;

    std::array<Blocks, largestBlock / step> sizes_;
    /// All memory the pool has, so that it can be reached however the free blocks are linked.
    std::vector<std::unique_ptr<std::byte[]>> slabs_;
};

#ifdef CORVINEX_SANITIZED

inline void* BlockPool::allocate(std::size_t size) {
    return ::operator new(size);
}

inline void BlockPool::deallocate(void* block, std::size_t /*size*/) noexcept {
    ::operator delete(block);
}

#else

inline void* BlockPool::allocate(std::size_t size) {
    const std::size_t index = (size - 1) / step;
    Blocks& blocks = sizes_[index];
    void* memory = blocks.free;
    if (memory != nullptr) {
        blocks.free = blocks.free->next;
        return memory;
    }
    const std::size_t length = (index + 1) * step;
    if (blocks.unusedLength < length) {
        addSlab(blocks);
    }
    memory = blocks.unused;
    blocks.unused += length;
    blocks.unusedLength -= length;
    return memory;
}

inline void BlockPool::deallocate(void* block, std::size_t size) noexcept {
    Blocks& blocks = sizes_[(size - 1) / step];
    blocks.free = ::new (block) FreeBlock{blocks.free};
}

#endif

}  // namespace host
