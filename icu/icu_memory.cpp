#include "icu/icu_memory.h"

#include <malloc.h>
#include <unicode/uclean.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

namespace corvinex {

/// Blocks one behind the other, each with its size before it.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): see bytes
struct IcuReserve {
    // Several times what ICU takes for one text; less than the C library asks the system for.
    static constexpr std::size_t length = std::size_t{64} << 10;

    IcuReserve* next = nullptr;  // in the list of those that are kept
    std::size_t used = 0;
    std::size_t living = 0;  // blocks
    // Unset: a reserve is hardly ever touched.
    alignas(std::max_align_t) std::array<std::byte, length> bytes;
};

namespace {

constexpr std::size_t headerLength = alignof(std::max_align_t);
static_assert(headerLength >= sizeof(std::size_t));

// In the initial-exec model its place is there as soon as the thread is, without any memory.
[[gnu::tls_model("initial-exec")]] thread_local constinit IcuReserve* current = nullptr;

// Reserves that hold what ICU keeps for the whole process.
constinit std::atomic<IcuReserve*> kept = nullptr;

void* take(IcuReserve& reserve, std::size_t size) noexcept {
    const std::size_t left = IcuReserve::length - reserve.used;
    if (left < headerLength || size > left - headerLength) {
        return nullptr;
    }
    std::byte* const header = reserve.bytes.data() + reserve.used;
    const std::size_t end = reserve.used + headerLength + size;
    reserve.used =
        std::min((end + headerLength - 1) / headerLength * headerLength, IcuReserve::length);
    ++reserve.living;
    std::memcpy(header, &size, sizeof size);
    return header + headerLength;
}

bool holds(const IcuReserve* reserve, const void* block) noexcept {
    constexpr std::less_equal<> isNotBehind;
    constexpr std::less<> isBefore;
    if (reserve == nullptr) {
        return false;
    }
    const void* const begin = reserve->bytes.data();
    const void* const end = reserve->bytes.data() + IcuReserve::length;
    return isNotBehind(begin, block) && isBefore(block, end);
}

/// The reserve that a block is from; null for the C library's. A thread frees what it took in its
/// own use of ICU, and what ICU keeps for the process it frees at its clean-up alone, which
/// nobody asks for: no block comes here from a reserve that another thread uses now.
IcuReserve* reserveOf(const void* block) noexcept {
    if (holds(current, block)) {
        return current;
    }
    IcuReserve* reserve = kept.load(std::memory_order_acquire);
    while (reserve != nullptr && !holds(reserve, block)) {
        reserve = reserve->next;
    }
    return reserve;
}

std::size_t sizeOf(void* block, const IcuReserve* reserve) noexcept {
    if (reserve == nullptr) {
        return ::malloc_usable_size(block);
    }
    std::size_t size = 0;
    std::memcpy(&size, static_cast<const std::byte*>(block) - headerLength, sizeof size);
    return size;
}

// NOLINTBEGIN(cppcoreguidelines-no-malloc): what ICU made before comes back here as well.

void* U_CALLCONV allocate(const void* /*context*/, std::size_t size) {
    void* const block = std::malloc(size);
    return block == nullptr && current != nullptr ? take(*current, size) : block;
}

void U_CALLCONV release(const void* /*context*/, void* block) {
    IcuReserve* const reserve = reserveOf(block);
    if (reserve == nullptr) {
        std::free(block);
    } else if (reserve == current) {
        --reserve->living;
    }
}

void* U_CALLCONV reallocate(const void* context, void* block, std::size_t size) {
    const IcuReserve* const reserve = reserveOf(block);
    void* const resized = reserve == nullptr ? std::realloc(block, size) : nullptr;
    if (resized != nullptr || current == nullptr) {
        return resized;
    }
    void* const moved = allocate(context, size);
    if (moved != nullptr && block != nullptr) {
        std::memcpy(moved, block, std::min(size, sizeOf(block, reserve)));
        release(context, block);
    }
    return moved;
}

// NOLINTEND(cppcoreguidelines-no-malloc)

// ICU asks that this is done before anything else, so it is done when a library is loaded.
[[maybe_unused]] const bool isInstalled = IcuMemory::install();

void keep(IcuReserve* reserve) noexcept {
    reserve->next = kept.load(std::memory_order_relaxed);
    while (!kept.compare_exchange_weak(reserve->next, reserve, std::memory_order_release,
                                       std::memory_order_relaxed)) {
    }
}

}  // namespace

[[gnu::noinline]] bool IcuMemory::install() noexcept {
    UErrorCode status = U_ZERO_ERROR;
    u_setMemoryFunctions(nullptr, allocate, reallocate, release, &status);
    return U_SUCCESS(status) != 0;
}

IcuMemory::IcuMemory() : reserve_(new IcuReserve) {
    current = reserve_.get();
}

IcuMemory::~IcuMemory() {
    current = nullptr;
    if (reserve_->living != 0) {
        keep(reserve_.release());
    }
}

}  // namespace corvinex
