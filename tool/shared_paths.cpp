#include "tool/shared_paths.h"

#include <utility>

#include "tool/interrupt_watch.h"

namespace tool {

std::optional<SharedPaths::Taken> SharedPaths::take() {
    const std::lock_guard lock(mutex_);
    if (isStopped_ || InterruptWatch::isInterrupted()) {
        return std::nullopt;
    }
    try {
        auto path = list_.next();
        if (!path) {
            isStopped_ = true;
            return std::nullopt;
        }
        return Taken{*std::move(path), taken_++};
    } catch (...) {
        failure_ = failure_ ? failure_ : std::current_exception();
        isStopped_ = true;
        return std::nullopt;
    }
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
