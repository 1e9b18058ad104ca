#include "tool/catalogue/row_queue.h"

#include <utility>

namespace tool {
namespace {

// What readers may be ahead of the writer, in files and in bytes. The file that is being handed
// over is never held back by others.
constexpr std::uint64_t filesAhead = 512;
constexpr std::size_t bytesAhead = std::size_t{8} << 20U;

// What makes it worth to wake the writer, which then goes on until nothing is left. A reader that
// had to wait goes on when there is half of the room: to wake each other for each file would cost
// about as much as to read it.
constexpr std::size_t filesToWakeFor = 64;
constexpr std::size_t bytesToWakeFor = std::size_t{1} << 20U;

// What is kept of blocks for their memory, which is little for most files.
constexpr std::size_t mostSpares = 64;
constexpr std::size_t bytesInSpare = std::size_t{32} << 10U;

}  // namespace

bool RowQueue::mayPut(std::uint64_t number, std::uint64_t files, std::size_t bytes) const {
    const auto place = waiting_.find(number);
    const bool hasBlock = place != waiting_.end() && !place->second.blocks.empty();
    const bool isNear = number == next_ || (number - next_ < files && bytes_ < bytes);
    return isStopped_ || (isNear && !hasBlock);
}

void RowQueue::put(std::uint64_t number, RowBlock&& block) {
    const std::size_t size = block.bytes();
    std::unique_lock lock(mutex_);
    if (!mayPut(number, filesAhead, bytesAhead)) {
        ++waitingReaders_;
        filled_.notify_one();
        taken_.wait(lock, [&] { return mayPut(number, filesAhead / 2, bytesAhead / 2); });
        --waitingReaders_;
    }
    if (isStopped_) {
        return;
    }
    Waiting& file = waiting_[number];
    file.isWhole = block.isLast;
    file.blocks.push_back(std::move(block));
    bytes_ += size;
    wakeWriter();
}

bool RowQueue::isWorthWaking() const noexcept {
    return waiting_.size() >= filesToWakeFor || bytes_ >= bytesToWakeFor || waitingReaders_ != 0 ||
           readers_ == 0;
}

void RowQueue::wakeWriter() {
    if (isWorthWaking() && hasNext()) {
        filled_.notify_one();
    }
}

bool RowQueue::hasNext() const {
    const auto first = waiting_.find(next_);
    return first != waiting_.end() && !first->second.blocks.empty();
}

void RowQueue::skip(std::uint64_t number) {
    const std::lock_guard lock(mutex_);
    if (number == next_ && waiting_.empty()) {
        ++next_;  // as is usual where nothing has changed
        return;
    }
    waiting_[number].isWhole = true;
    advance();
    wakeWriter();
    if (!hasNext()) {
        taken_.notify_all();  // it may be the turn of one who waits
    }
}

/// Goes past the files of which all is handed over.
void RowQueue::advance() {
    for (auto first = waiting_.begin(); first != waiting_.end() && first->first == next_ &&
                                        first->second.isWhole && first->second.blocks.empty();
         first = waiting_.erase(first)) {
        ++next_;
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

void RowQueue::reuse(RowBlock&& block) {
    if (block.bytes() <= bytesInSpare && used_.size() < mostSpares) {
        used_.push_back(std::move(block));
    }
}

RowBlock RowQueue::spare() {
    RowBlock block;
    {
        const std::lock_guard lock(mutex_);
        if (spares_.empty()) {
            return block;
        }
        block = std::move(spares_.back());
        spares_.pop_back();
    }
    block.clear();
    return block;
}

void RowQueue::takeSeveral() {
    std::unique_lock lock(mutex_);
    while (!used_.empty() && spares_.size() < mostSpares) {
        spares_.push_back(std::move(used_.back()));
        used_.pop_back();
    }
    if (!hasNext()) {
        filled_.wait(lock,
                     [&] { return isStopped_ || readers_ == 0 || (hasNext() && isWorthWaking()); });
    }
    for (std::size_t bytes = 0; !isStopped_ && hasNext() && bytes < bytesToWakeFor;) {
        std::deque<RowBlock>& blocks = waiting_.find(next_)->second.blocks;
        const std::size_t size = blocks.front().bytes();
        handedOver_.push_back(std::move(blocks.front()));
        blocks.pop_front();
        bytes_ -= size;
        bytes += size;
        advance();
    }
    const bool hasRoom = waiting_.size() < filesAhead / 2 && bytes_ < bytesAhead / 2;
    if (waitingReaders_ != 0 && (hasRoom || !hasNext())) {
        taken_.notify_all();
    }
}

std::optional<RowBlock> RowQueue::take() {
    if (handedOver_.empty()) {
        takeSeveral();
    }
    if (isStopped_ || handedOver_.empty()) {
        return std::nullopt;
    }
    RowBlock block = std::move(handedOver_.front());
    handedOver_.pop_front();
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
