#include "tool/catalogue/row_queue.h"

#include <utility>

namespace tool {
namespace {

// What readers may be ahead of the writer, in files and in bytes. The file that is being handed
// over is never held back by others.
constexpr std::uint64_t filesAhead = 512;
constexpr std::size_t bytesAhead = std::size_t{8} << 20U;

}  // namespace

void RowQueue::put(std::uint64_t number, RowBlock&& block) {
    const std::size_t size = block.bytes();
    std::unique_lock lock(mutex_);
    taken_.wait(lock, [&] {
        const auto place = waiting_.find(number);
        const bool hasBlock = place != waiting_.end() && !place->second.blocks.empty();
        const bool isNear = number == next_ || (number - next_ < filesAhead && bytes_ < bytesAhead);
        return isStopped_ || (isNear && !hasBlock);
    });
    if (isStopped_) {
        return;
    }
    Waiting& file = waiting_[number];
    file.isWhole = block.isLast;
    file.blocks.push_back(std::move(block));
    bytes_ += size;
    if (number == next_) {
        filled_.notify_one();
    }
}

void RowQueue::skip(std::uint64_t number) {
    const std::lock_guard lock(mutex_);
    if (number == next_ && waiting_.empty()) {
        ++next_;  // as is usual where nothing has changed
        return;
    }
    waiting_[number].isWhole = true;
    advance();
}

/// Goes past the files of which all is handed over.
void RowQueue::advance() {
    bool hasMoved = false;
    for (auto first = waiting_.begin(); first != waiting_.end() && first->first == next_ &&
                                        first->second.isWhole && first->second.blocks.empty();
         first = waiting_.erase(first)) {
        ++next_;
        hasMoved = true;
    }
    if (hasMoved) {
        taken_.notify_all();
        if (!waiting_.empty() && waiting_.begin()->first == next_) {
            filled_.notify_one();
        }
    }
}

void RowQueue::enter() {
    const std::lock_guard lock(mutex_);
    ++readers_;
}

void RowQueue::leave() {
    const std::lock_guard lock(mutex_);
    --readers_;
    filled_.notify_one();
}

std::optional<RowBlock> RowQueue::take() {
    std::unique_lock lock(mutex_);
    auto first = waiting_.end();
    const auto hasBlock = [&] {
        first = waiting_.find(next_);
        return first != waiting_.end() && !first->second.blocks.empty();
    };
    filled_.wait(lock, [&] { return hasBlock() || readers_ == 0 || isStopped_; });
    if (isStopped_ || !hasBlock()) {
        return std::nullopt;
    }
    RowBlock block = std::move(first->second.blocks.front());
    first->second.blocks.pop_front();
    bytes_ -= block.bytes();
    taken_.notify_all();
    advance();
    return block;
}

void RowQueue::stop() {
    const std::lock_guard lock(mutex_);
    isStopped_ = true;
    waiting_.clear();
    filled_.notify_all();
    taken_.notify_all();
}

}  // namespace tool
