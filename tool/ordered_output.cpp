#include "tool/ordered_output.h"

#include <algorithm>
#include <utility>

namespace tool {

std::unique_lock<std::mutex> OrderedOutput::waitFor(std::uint64_t number) {
    std::unique_lock lock(mutex_);
    turned_.wait(lock, [&] { return next_ == number; });
    return lock;
}

void OrderedOutput::write(std::string_view text) {
    out_.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (isOnTerminal_) {
        out_.flush();  // while the progress line is off
    }
    if (!out_) {
        hasFailed_ = true;
    }
}

void OrderedOutput::Turn::write(std::string_view text) {
    text_ += text;
    if (text_.size() > mostKept) {
        const auto lock = output_.waitFor(first_);
        const auto pause = output_.progress_.pause();
        output_.write(text_);
        text_.clear();
        start_ = 0;
    }
}

bool OrderedOutput::hasRoomFor(std::uint64_t number, std::size_t size) const noexcept {
    return number == next_ || (places_ < mostPlaces && size <= mostLeft - leftBytes_);
}

/// What was left of the turn that begins with this task.
OrderedOutput::Left* OrderedOutput::findLeft(std::uint64_t first) noexcept {
    const auto isIt = [first](const Left& left) { return left.count != 0 && left.first == first; };
    const auto place = places_ == 0 ? left_.end() : std::ranges::find_if(left_, isIt);
    return place == left_.end() ? nullptr : &*place;
}

void OrderedOutput::endTurn(std::uint64_t count, std::string_view text, std::string_view message) {
    if (!text.empty() || !message.empty()) {
        const auto pause = progress_.pause();
        write(text);
        if (!message.empty()) {
            out_.flush();
            err_ << message;
        }
    }
    next_ += count;
}

/// Writes what was left for the turns that have come.
void OrderedOutput::endTurnsLeft() {
    while (Left* const left = findLeft(next_)) {
        endTurn(left->count, left->text, left->message);
        leftBytes_ -= left->text.size();
        left->count = 0;
        --places_;
        if (left->text.capacity() > mostMemoryKept) {
            left->text = std::string();
        }
    }
}

void OrderedOutput::noteCrowd() noexcept {
    const bool isCrowded = places_ > mostPlaces / 2 || leftBytes_ > mostLeft / 2;
    if (isCrowded != isCrowded_) {
        isCrowded_ = isCrowded;
    }
}

void OrderedOutput::Turn::finish(std::string message) {
    OrderedOutput& output = output_;
    std::unique_lock lock(output.mutex_);
    output.turned_.wait(lock, [&] { return output.hasRoomFor(first_, text_.size()); });
    if (first_ == output.next_) {
        output.endTurn(count_, text_, message);
        output.endTurnsLeft();
        output.turned_.notify_all();
    } else {
        const auto free = std::ranges::find(output.left_, 0U, &Left::count);
        free->first = first_;
        free->count = count_;
        free->text.swap(text_);
        free->message = std::move(message);
        ++output.places_;
        output.leftBytes_ += free->text.size();
    }
    output.noteCrowd();
}

}  // namespace tool
