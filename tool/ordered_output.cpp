#include "tool/ordered_output.h"

#include <utility>

namespace tool {

std::unique_lock<std::mutex> OrderedOutput::waitFor(std::uint64_t number) {
    std::unique_lock lock(mutex_);
    turned_.wait(lock, [&] { return turn_ == number; });
    return lock;
}

void OrderedOutput::write(std::string_view text) {
    out_.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (isOnTerminal_) {
        out_.flush();  // while the progress line is off
    }
    hasFailed_ = !out_;
}

void OrderedOutput::Turn::write(std::string_view text) {
    text_ += text;
    if (text_.size() > mostKept) {
        const auto lock = output_.waitFor(number_);
        const auto pause = output_.progress_.pause();
        output_.write(text_);
        text_.clear();
    }
}

bool OrderedOutput::hasRoomFor(std::uint64_t number, std::size_t size) const noexcept {
    return number == turn_ || (number - turn_ < mostAhead && size <= mostLeft - leftBytes_);
}

void OrderedOutput::endTurn(std::string_view text, std::string_view message) {
    if (!text.empty() || !message.empty()) {
        const auto pause = progress_.pause();
        write(text);
        if (!message.empty()) {
            out_.flush();
            err_ << message;
        }
    }
    ++turn_;
}

/// Writes what was left for the turns that have come.
void OrderedOutput::endTurnsLeft() {
    for (Left* left = &left_[turn_ % mostAhead]; left->isThere; left = &left_[turn_ % mostAhead]) {
        endTurn(left->text, left->message);
        leftBytes_ -= left->text.size();
        left->isThere = false;
        if (left->text.capacity() > mostMemoryKept) {
            left->text = std::string();
        }
    }
}

void OrderedOutput::Turn::finish(std::string message) {
    OrderedOutput& output = output_;
    std::unique_lock lock(output.mutex_);
    output.turned_.wait(lock, [&] { return output.hasRoomFor(number_, text_.size()); });
    if (number_ != output.turn_) {
        output.leftBytes_ += text_.size();
        Left& left = output.left_[number_ % mostAhead];
        left.isThere = true;
        left.text.swap(text_);
        left.message = std::move(message);
        return;
    }
    output.endTurn(text_, message);
    output.endTurnsLeft();
    output.turned_.notify_all();
}

}  // namespace tool
