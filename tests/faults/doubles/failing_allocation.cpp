#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>

#include "tests/faults/doubles/failing_allocation.h"

// Loaded into a process before everything else, this library stands for the allocating functions of
// the C library and refuses one call of them.

// The C library's own, under the names that stay theirs.
extern "C" {
void* __libc_malloc(std::size_t size);                      // NOLINT
void* __libc_calloc(std::size_t count, std::size_t size);   // NOLINT
void* __libc_realloc(void* block, std::size_t size);        // NOLINT
void* __libc_memalign(std::size_t step, std::size_t size);  // NOLINT
}

namespace {

using test::AllocationPlan;

/// The plan in the file that the environment names, shared with the process that made it; null
/// where there is none.
AllocationPlan* sharedPlan() {
    const char* const path = std::getenv(test::allocationPlanVariable);
    if (path == nullptr) {
        return nullptr;
    }
    const int file = ::open(path, O_RDWR | O_CLOEXEC);
    if (file < 0) {
        return nullptr;
    }
    void* const plan =
        ::mmap(nullptr, sizeof(AllocationPlan), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    return plan == MAP_FAILED ? nullptr : static_cast<AllocationPlan*>(plan);
}

/// Counts one call; whether it is the one to be refused.
bool isRefused() {
    static constinit std::atomic<AllocationPlan*> plan = nullptr;
    if (plan == nullptr) {
        plan = sharedPlan();
    }
    AllocationPlan* const known = plan;
    if (known == nullptr || ++known->calls != known->refusedCall) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

}  // namespace

extern "C" {

[[gnu::visibility("default")]] void* malloc(std::size_t size) {
    return isRefused() ? nullptr : __libc_malloc(size);
}

[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) {
    return isRefused() ? nullptr : __libc_calloc(count, size);
}

[[gnu::visibility("default")]] void* realloc(void* block, std::size_t size) {
    return isRefused() ? nullptr : __libc_realloc(block, size);
}

[[gnu::visibility("default")]] void* aligned_alloc(std::size_t step, std::size_t size) {
    return isRefused() ? nullptr : __libc_memalign(step, size);
}

}  // extern "C"
