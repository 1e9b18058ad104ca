#include "host/values/block_pool.h"

#include <algorithm>
#include <mutex>

#include "host/values/fresh_memory.h"

namespace host {

namespace {

/// The pools that no thread uses now. Neither it nor a pool is ever destroyed: values may be the
/// last to go when a process ends.
struct IdlePools {
    std::mutex mutex;
    std::vector<std::unique_ptr<BlockPool>> pools;
};

IdlePools& idlePools() {
    static auto* const idle = new IdlePools;  // reachable to the end
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

}  // namespace

thread_local constinit BlockPool* BlockPool::current_ = nullptr;

class BlockPool::Use {
  public:
    Use() = default;
    /// Values that are destroyed after this take another pool, which then stays with what is left
    /// of the thread.
    ~Use() {
        IdlePools& idle = idlePools();
        const std::lock_guard lock(idle.mutex);
        idle.pools.emplace_back(current_);
        current_ = nullptr;
        hasEnded = true;
    }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

    static thread_local constinit bool hasEnded;
};

thread_local constinit bool BlockPool::Use::hasEnded = false;

BlockPool& BlockPool::takeForThisThread() {
    current_ = takePool();
    if (!Use::hasEnded) {
        thread_local const Use use;
        static_cast<void>(use);
    }
    return *current_;
}

void BlockPool::addSlab(Blocks& blocks) {
    // Unset: each value writes what it takes.
    slabs_.push_back(std::make_unique_for_overwrite<std::byte[]>(blocks.nextSlab));
    blocks.unused = slabs_.back().get();
    blocks.unusedLength = blocks.nextSlab;
    blocks.nextSlab = std::min(2 * blocks.nextSlab, longestSlab);
    provideAtOnce(blocks.unused, blocks.unusedLength);
}

}  // namespace host
