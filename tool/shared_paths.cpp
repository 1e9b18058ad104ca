#include "tool/shared_paths.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "tool/interrupt_watch.h"

namespace tool {

SharedPaths::SharedPaths(const PathOptions& options, std::size_t threads, std::size_t mostAtOnce)
    : list_(options), shares_(threads), mostAtOnce_(mostAtOnce) {
    for (Share& share : shares_) {
        share.names.reserve(mostAtOnce);
    }
}

std::optional<SharedPaths::Taken> SharedPaths::take(std::size_t thread, bool isFarAhead) {
    Share& own = shares_[thread];
    for (;;) {
        if (auto taken = takeFrom(own)) {
            return taken;
        }
        if (!(isFarAhead && helpAnother(thread)) && !fill(own) && !helpAnother(thread)) {
            return std::nullopt;
        }
    }
}

std::optional<SharedPaths::Taken> SharedPaths::takeFrom(Share& share) {
    const std::lock_guard lock(share.mutex);
    if (share.names.empty()) {
        return std::nullopt;
    }
    Taken taken = std::move(share.names.back());
    share.names.pop_back();
    return taken;
}

/// The time that a batch takes should not matter in the end, when one thread may have one more. It
/// grows step by step, so that few names are spread over the threads.
std::size_t SharedPaths::nextSize(Share& share) const {
    constexpr std::chrono::microseconds mostTime{1000};
    const auto now = Clock::now();
    const auto passed = now - share.filled;
    share.filled = now;
    if (share.size == 0 || passed > mostTime) {
        return 1;
    }
    return passed > mostTime / 2 ? share.size : std::min(mostAtOnce_, 2 * share.size);
}

bool SharedPaths::fill(Share& share) {
    const std::lock_guard lock(mutex_);
    const std::lock_guard shareLock(share.mutex);
    share.size = nextSize(share);
    try {
        isStopped_ = isStopped_ || InterruptWatch::isInterrupted();
        // What there is to tell of a file must not wait for who writes the name of the next one.
        while (!isStopped_ && share.names.size() < share.size &&
               (share.names.empty() || !list_.mayWait())) {
            auto path = list_.next();
            isStopped_ = !path;
            if (path) {
                share.names.push_back({*std::move(path), taken_++});
            }
        }
    } catch (...) {
        failure_ = failure_ ? failure_ : std::current_exception();
        isStopped_ = true;
    }
    std::ranges::reverse(share.names);
    return !share.names.empty();
}

bool SharedPaths::helpAnother(std::size_t thread) {
    for (std::size_t step = 1; step < shares_.size(); ++step) {
        Share& other = shares_[(thread + step) % shares_.size()];
        Share& own = shares_[thread];
        const std::scoped_lock lock(other.mutex, own.mutex);
        const auto count = static_cast<std::ptrdiff_t>((other.names.size() + 1) / 2);
        if (count != 0) {
            const auto end = other.names.begin() + count;
            own.names.assign(std::move_iterator(other.names.begin()), std::move_iterator(end));
            other.names.erase(other.names.begin(), end);
            own.size = 0;
            return true;
        }
    }
    return false;
}

void SharedPaths::stop(std::exception_ptr reason) {
    const std::lock_guard lock(mutex_);
    failure_ = failure_ ? failure_ : std::move(reason);
    isStopped_ = true;
}

void SharedPaths::raiseFailure() {
    const std::lock_guard lock(mutex_);
    if (failure_) {
        std::rethrow_exception(failure_);
    }
}

}  // namespace tool
