#include "tool/ordered_output.h"

#include <unistd.h>

namespace tool {

std::unique_lock<std::mutex> OrderedOutput::waitFor(std::uint64_t number) {
    std::unique_lock lock(mutex_);
    turned_.wait(lock, [&] { return turn_ == number; });
    return lock;
}

void OrderedOutput::put(std::string_view text) {
    // The line may stand on the terminal that the text goes to.
    const bool isTogether = progress_ != nullptr && isatty(STDOUT_FILENO) != 0;
    const auto pause = isTogether ? progress_->pause() : std::unique_lock<std::mutex>();
    out_.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (isTogether) {
        out_.flush();
    }
}

void OrderedOutput::report(std::string_view message) {
    const auto pause = progress_ != nullptr ? progress_->pause() : std::unique_lock<std::mutex>();
    out_.flush();
    err_ << message;
}

bool OrderedOutput::hasFailed() {
    const std::lock_guard lock(mutex_);
    return !out_;
}

void OrderedOutput::Turn::write(std::string_view text) {
    text_ += text;
    if (text_.size() > mostKept) {
        const auto lock = output_.waitFor(number_);
        output_.put(text_);
        text_.clear();
    }
}

void OrderedOutput::Turn::finish(std::string_view message) {
    const auto lock = output_.waitFor(number_);
    output_.put(text_);
    if (!message.empty()) {
        output_.report(message);
    }
    ++output_.turn_;
    output_.turned_.notify_all();
}

}  // namespace tool
