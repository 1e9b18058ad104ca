#include "tests/faults/allocation_faults.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>

namespace test {

namespace {

struct Plan {
    bool isArmed = false;
    Allocator allocator = Allocator::OperatorNew;
    Lasting lasting = Lasting::Once;
    std::size_t failing = 0;  // the number of the first request that is refused
    std::size_t requests = 0;
    std::size_t refused = 0;
    std::size_t largest = 0;  // bytes
};

constinit thread_local Plan plan;

bool isRefused(Allocator allocator, std::size_t size) noexcept {
    if (!plan.isArmed || plan.allocator != allocator) {
        return false;
    }
    ++plan.requests;
    plan.largest = std::max(plan.largest, size);
    const bool due = plan.lasting == Lasting::Once ? plan.requests == plan.failing
                                                   : plan.requests >= plan.failing;
    plan.refused += due ? 1 : 0;
    return due;
}

void* allocate(std::size_t size) noexcept {
    return isRefused(Allocator::OperatorNew, size) ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* allocate(std::size_t size, std::align_val_t alignment) noexcept {
    const auto boundary = static_cast<std::size_t>(alignment);
    const std::size_t rounded = (size / boundary + 1) * boundary;
    return isRefused(Allocator::OperatorNew, size) ? nullptr
                                                   : std::aligned_alloc(boundary, rounded);
}

void* orRaise(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace

ScopedAllocationFault::ScopedAllocationFault(Allocator allocator, std::size_t n,
                                             Lasting lasting) noexcept {
    plan = {true, allocator, lasting, n, 0, 0, 0};
}

ScopedAllocationFault::~ScopedAllocationFault() {
    plan.isArmed = false;
}

std::size_t refusedAllocations() noexcept {
    return plan.refused;
}

std::size_t largestAllocation() noexcept {
    return plan.largest;
}

}  // namespace test

// Every form is replaced: sanitizers have one of each, which does not lead to the plain one.

void* operator new(std::size_t size) {
    return test::orRaise(test::allocate(size));
}
void* operator new[](std::size_t size) {
    return test::orRaise(test::allocate(size));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return test::allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return test::allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return test::orRaise(test::allocate(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return test::orRaise(test::allocate(size, alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return test::allocate(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return test::allocate(size, alignment);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    std::free(memory);
}

#ifndef CORVINEX_SANITIZED

extern "C" {

// The C library's own, under the names that it keeps for programs that replace malloc.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

void* malloc(std::size_t size) {
    if (test::isRefused(test::Allocator::Malloc, size)) {
        errno = ENOMEM;
        return nullptr;
    }
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    if (test::isRefused(test::Allocator::Malloc, count * size)) {
        errno = ENOMEM;
        return nullptr;
    }
    return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
    if (test::isRefused(test::Allocator::Malloc, size)) {
        errno = ENOMEM;
        return nullptr;
    }
    return __libc_realloc(memory, size);
}

}  // extern "C"

#endif
