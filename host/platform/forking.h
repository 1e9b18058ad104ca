#pragma once

#include <pthread.h>

namespace host {

/// Has a process be forked only while nobody but the forking thread holds a lock, which both
/// processes then find free. Otherwise a child whose parent had another thread in it would wait for
/// that thread, which it has not. The lock is what the function gives, at any time; to be called
/// once for each, when the library is loaded. False where there is no memory for it: a child may
/// then wait for ever.
template <auto lockOf>
bool holdWhileForking() noexcept {
    const auto hold = [] { lockOf().lock(); };
    const auto letGo = [] { lockOf().unlock(); };
    return ::pthread_atfork(hold, letGo, letGo) == 0;
}

}  // namespace host
