#include "host/values/value_memory.h"

#include <pthread.h>
#include <sanitizer/asan_interface.h>
#include <sys/single_threaded.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <new>
#include <thread>

#include "host/values/fresh_memory.h"

// A resource of our own, because making and destroying small values is most of what a host does
// here, and the std::pmr pools, malloc and other allocators are slower at it or need more memory.
// docs/performance.md compares them.

namespace host {

namespace {

/// Free blocks by size, and the unused end of a slab that new ones are cut from. To be used by one
/// thread at a time. In programs with the address sanitizer what is not in use must not be touched.
class BlockLists {
  public:
    static constexpr std::size_t alignment = 8;

    [[nodiscard]] void* take(std::size_t size) {
        const std::size_t index = indexOf(size);
        const std::size_t length = (index + 1) * alignment;
        FreeBlock* const block = free_[index];
        if (block == nullptr) {
            return cut(length);
        }
        ASAN_UNPOISON_MEMORY_REGION(block, length);
        free_[index] = block->next;
        return block;
    }

    void giveBack(void* memory, std::size_t size) noexcept {
        const std::size_t index = indexOf(size);
        free_[index] = ::new (memory) FreeBlock{free_[index]};
        ASAN_POISON_MEMORY_REGION(memory, (index + 1) * alignment);
    }

  private:
    struct FreeBlock {
        FreeBlock* next;
    };
    /// What a slab begins with. The slabs are linked so that a checker of memory finds them all.
    struct Slab {
        Slab* previous;
    };
    // Each slab is twice the one before, up to the longest.
    static constexpr std::size_t firstSlab = std::size_t{8} << 10;
    static constexpr std::size_t longestSlab = std::size_t{128} << 10;

    [[nodiscard]] static std::size_t indexOf(std::size_t size) noexcept {
        return (std::max<std::size_t>(size, 1) - 1) / alignment;
    }

    [[nodiscard]] void* cut(std::size_t length) {
        if (unusedLength_ < length) {
            addSlab();
        }
        void* const block = unused_;
        unused_ += length;
        unusedLength_ -= length;
        ASAN_UNPOISON_MEMORY_REGION(block, length);
        return block;
    }

    void addSlab() {
        void* const memory = ::operator new(nextLength_);
        provideAtOnce(memory, nextLength_);
        slabs_ = ::new (memory) Slab{slabs_};
        unused_ = static_cast<std::byte*>(memory) + sizeof(Slab);
        unusedLength_ = nextLength_ - sizeof(Slab);
        ASAN_POISON_MEMORY_REGION(unused_, unusedLength_);
        nextLength_ = std::min(2 * nextLength_, longestSlab);
    }

    std::array<FreeBlock*, largestValueBlock / alignment> free_{};
    std::byte* unused_ = nullptr;
    std::size_t unusedLength_ = 0;
    std::size_t nextLength_ = firstSlab;
    Slab* slabs_ = nullptr;
};

/// Held for some instructions only, so that waiting is hardly worth a call of the system.
class ShortLock {
  public:
    void lock() noexcept {
        while (isHeld_.test_and_set(std::memory_order_acquire)) {
            std::this_thread::yield();
        }
    }
    void unlock() noexcept { isHeld_.clear(std::memory_order_release); }

  private:
    std::atomic_flag isHeld_;
};

/// Threads are spread over some lists, so that they seldom wait for each other. Where there is one
/// thread alone, it needs neither its place nor a lock.
class ValueMemory final : public std::pmr::memory_resource {
  public:
    /// A process that is forked while a thread of its parent holds a lock would wait for that
    /// thread, which it has not.
    void holdAll() noexcept {
        for (Share& share : shares_) {
            share.lock.lock();
        }
    }
    void letAllGo() noexcept {
        for (Share& share : shares_) {
            share.lock.unlock();
        }
    }

  private:
    struct alignas(64) Share {
        ShortLock lock;
        BlockLists lists;
    };

    static bool isSmall(std::size_t size, std::size_t alignment) noexcept {
        return size <= largestValueBlock && alignment <= BlockLists::alignment;
    }

    void* do_allocate(std::size_t size, std::size_t alignment) override {
        if (!isSmall(size, alignment)) {
            return std::pmr::new_delete_resource()->allocate(size, alignment);
        }
        if (__libc_single_threaded != 0) {
            return shares_[0].lists.take(size);
        }
        Share& share = ofThisThread();
        const std::lock_guard guard(share.lock);
        return share.lists.take(size);
    }

    void do_deallocate(void* memory, std::size_t size, std::size_t alignment) override {
        if (!isSmall(size, alignment)) {
            std::pmr::new_delete_resource()->deallocate(memory, size, alignment);
            return;
        }
        if (__libc_single_threaded != 0) {
            shares_[0].lists.giveBack(memory, size);
            return;
        }
        Share& share = ofThisThread();
        const std::lock_guard guard(share.lock);
        share.lists.giveBack(memory, size);
    }

    [[nodiscard]] bool do_is_equal(const memory_resource& other) const noexcept override {
        return this == &other;
    }

    [[nodiscard]] Share& ofThisThread() noexcept {
        // A number, which needs neither memory nor a destructor. In the initial-exec model its
        // place is there as soon as the thread is.
        [[gnu::tls_model("initial-exec")]] static thread_local constinit std::size_t place = none;
        if (place == none) {
            place = threads_.fetch_add(1, std::memory_order_relaxed) % shares_.size();
        }
        return shares_[place];
    }

    static constexpr std::size_t none = ~std::size_t{0};
    std::array<Share, 16> shares_{};
    std::atomic<std::size_t> threads_ = 0;
};

/// Never destroyed: values may be the last to go when a process ends.
union Lasting {
    constexpr Lasting() noexcept : memory() {}
    ~Lasting() {}  // NOLINT(modernize-use-equals-default): that one would be deleted
    Lasting(const Lasting&) = delete;
    Lasting& operator=(const Lasting&) = delete;
    ValueMemory memory;
};

constinit Lasting lasting;

void holdAll() {
    lasting.memory.holdAll();
}

void letAllGo() {
    lasting.memory.letAllGo();
}

// Without memory for it nothing is done, and there is no way to tell.
[[maybe_unused]] const int isForkable = ::pthread_atfork(holdAll, letAllGo, letAllGo);

}  // namespace

std::pmr::memory_resource& valueMemory() noexcept {
    return lasting.memory;
}

}  // namespace host
