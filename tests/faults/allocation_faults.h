#pragma once

#include <cstddef>

// Allocations that fail on command. This program replaces operator new and malloc for itself and
// for every library in the process.

namespace test {

/// Which requests for memory are counted and refused. Malloc counts those that operator new passes
/// on as well; sanitizers bring a malloc of their own, which cannot be made to fail.
enum class Allocator { OperatorNew, Malloc };

#ifdef CORVINEX_SANITIZED
inline constexpr bool mallocCanFail = false;
#else
inline constexpr bool mallocCanFail = true;
#endif

enum class Lasting { Once, FromThenOn };

/// Refuses the n-th request from now on (1 is the next one, 0 is none), and those after it if so
/// asked, in this thread, while it lives. One at a time in a thread.
class ScopedAllocationFault {
  public:
    ScopedAllocationFault(Allocator allocator, std::size_t n, Lasting lasting) noexcept;
    ~ScopedAllocationFault();
    ScopedAllocationFault(const ScopedAllocationFault&) = delete;
    ScopedAllocationFault& operator=(const ScopedAllocationFault&) = delete;
};

/// How many requests this thread's latest fault refused.
std::size_t refusedAllocations() noexcept;

/// The bytes of the largest request that this thread's latest fault counted.
std::size_t largestAllocation() noexcept;

}  // namespace test
