#include "host/block_pool.h"

#include <memory>
#include <mutex>
#include <new>
#include <vector>

namespace host {

namespace {

/// The pools that no thread uses now. Neither it nor a pool is ever destroyed: values may be the
/// last to go when a process ends.
struct IdlePools {
    std::mutex mutex;
    std::vector<std::unique_ptr<BlockPool>> pools;
};

IdlePools& idlePools() {
    static IdlePools* const idle = new IdlePools;  // reachable to the end
    return *idle;
}

BlockPool* takePool() {
    IdlePools& idle = idlePools();
    const std::lock_guard lock(idle.mutex);
    // Room for all pools there are, so that giving one back cannot fail.
    static std::size_t made = 0;
    if (idle.pools.empty()) {
        idle.pools.reserve(made + 1);
        auto pool = std::make_unique<BlockPool>();
        ++made;
        return pool.release();
    }
    BlockPool* const pool = idle.pools.back().release();
    idle.pools.pop_back();
    return pool;
}

// The plain pointer is reached without a call.
[[gnu::tls_model("initial-exec")]] thread_local constinit BlockPool* current = nullptr;

/// Gives the thread's pool to later threads when the thread ends. Values that are destroyed after
/// that take another pool, which then stays with what is left of the thread.
struct PoolUse {
    PoolUse() = default;
    ~PoolUse() {
        IdlePools& idle = idlePools();
        const std::lock_guard lock(idle.mutex);
        idle.pools.emplace_back(current);
        current = nullptr;
        hasEnded = true;
    }
    PoolUse(const PoolUse&) = delete;
    PoolUse& operator=(const PoolUse&) = delete;

    static thread_local constinit bool hasEnded;
};
thread_local constinit bool PoolUse::hasEnded = false;

}  // namespace

BlockPool& BlockPool::ofThisThread() {
    if (current == nullptr) {
        current = takePool();
        if (!PoolUse::hasEnded) {
            thread_local const PoolUse use;
            static_cast<void>(use);
        }
    }
    return *current;
}

#ifdef CORVINEX_SANITIZED

void* BlockPool::allocate(std::size_t size) {
    return ::operator new(size);
}

void BlockPool::deallocate(void* block, std::size_t /*size*/) noexcept {
    ::operator delete(block);
}

#else

void* BlockPool::allocate(std::size_t size) {
    const std::size_t index = (size - 1) / step;
    const std::size_t length = (index + 1) * step;
    Blocks& blocks = sizes_.at(index);
    if (blocks.free != nullptr) {
        void* const memory = blocks.free;
        blocks.free = blocks.free->next;
        return memory;
    }
    if (blocks.unusedLength < length) {
        blocks.unused = makeSlab();
        blocks.unusedLength = slabLength;
    }
    void* const memory = blocks.unused;
    blocks.unused += length;
    blocks.unusedLength -= length;
    return memory;
}

std::byte* BlockPool::makeSlab() {
    // Unset: each value writes what it takes.
    return slabs_.emplace_back(std::make_unique_for_overwrite<std::byte[]>(slabLength)).get();
}

void BlockPool::deallocate(void* block, std::size_t size) noexcept {
    Blocks& blocks = sizes_[(size - 1) / step];
    blocks.free = ::new (block) FreeBlock{blocks.free};
}

#endif

}  // namespace host
