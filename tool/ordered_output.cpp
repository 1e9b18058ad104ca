#include "tool/ordered_output.h"

namespace tool {

std::unique_lock<std::mutex> OrderedOutput::waitFor(std::uint64_t number) {
    std::unique_lock lock(mutex_);
    turned_.wait(lock, [&] { return turn_ == number; });
    return lock;
}

bool OrderedOutput::hasFailed() {
    const std::lock_guard lock(mutex_);
    return !out_;
}

void OrderedOutput::Turn::write(std::string_view text) {
    text_ += text;
    if (text_.size() > mostKept) {
        const auto lock = output_.waitFor(number_);
        const auto pause = output_.progress_.pause();
        output_.out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
        text_.clear();
    }
}

void OrderedOutput::Turn::finish(std::string_view message) {
    const auto lock = output_.waitFor(number_);
    if (!text_.empty() || !message.empty()) {
        const auto pause = output_.progress_.pause();
        output_.out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
        if (!message.empty()) {
            output_.out_.flush();
            output_.err_ << message;
        }
    }
    ++output_.turn_;
    output_.turned_.notify_all();
}

}  // namespace tool
