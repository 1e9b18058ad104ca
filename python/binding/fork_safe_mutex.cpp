#include "python/binding/fork_safe_mutex.h"

#include <pthread.h>

#include <new>

namespace python {
namespace {

struct List {
    std::mutex mutex;
    ForkSafeMutex* first = nullptr;
};
constinit List list;

}  // namespace

ForkSafeMutex::ForkSafeMutex() {
    // Once in a process; where memory is missing the next one tries again.
    [[maybe_unused]] static const bool isCalled = [] {
        if (pthread_atfork(lockAll, unlockAll, unlockAll) != 0) {
            throw std::bad_alloc();
        }
        return true;
    }();
    const std::lock_guard lock(list.mutex);
    next_ = list.first;
    if (next_ != nullptr) {
        next_->previous_ = this;
    }
    list.first = this;
}

ForkSafeMutex::~ForkSafeMutex() {
    const std::lock_guard lock(list.mutex);
    (previous_ != nullptr ? previous_->next_ : list.first) = next_;
    if (next_ != nullptr) {
        next_->previous_ = previous_;
    }
}

void ForkSafeMutex::lockAll() {
    list.mutex.lock();
    for (ForkSafeMutex* one = list.first; one != nullptr; one = one->next_) {
        one->lock();
    }
}

void ForkSafeMutex::unlockAll() {
    for (ForkSafeMutex* one = list.first; one != nullptr; one = one->next_) {
        one->unlock();
    }
    list.mutex.unlock();
}

}  // namespace python
