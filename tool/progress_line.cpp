#include "tool/progress_line.h"

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <exception>
#include <string_view>
#include <utility>

#include "inspect/reading/number_text.h"

namespace tool {
namespace {

using Clock = std::chrono::steady_clock;
using corvinex::inspect::reading::groupedText;

constexpr auto firstDrawn = std::chrono::seconds(1);
constexpr auto betweenDrawings = std::chrono::milliseconds(250);

/// "0:48", "12:05", "3:00:00".
std::string durationText(std::uint64_t seconds) {
    constexpr std::uint64_t minute = 60;
    constexpr std::uint64_t hour = 3600;
    const auto twoDigits = [](std::uint64_t number) {
        std::string text = number < 10 ? "0" : "";
        return text.append(std::to_string(number));
    };
    const std::string rest = twoDigits(seconds % minute);
    return seconds < hour ? std::to_string(seconds / minute) + ':' + rest
                          : std::to_string(seconds / hour) + ':' +
                                twoDigits(seconds % hour / minute) + ':' + rest;
}

/// Whether the files can be counted beforehand. What a pipe brings can be read once.
bool isCountable(const PathOptions& paths) {
    struct stat facts {};
    return !paths.namesFrom ||
           (stat(paths.namesFrom->c_str(), &facts) == 0 && S_ISREG(facts.st_mode));
}

std::size_t terminalWidth() {
    constexpr std::size_t usual = 80;
    winsize size{};
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system has no other way
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0 ? size.ws_col : usual;
}

void writeToTerminal(std::string_view text) {
    // Nothing is lost where the terminal takes none of it.
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace

std::string progressText(const Progress& progress) {
    std::string text = groupedText(progress.done);
    if (progress.found) {
        text += " of " + groupedText(*progress.found);
    }
    text += progress.found.value_or(progress.done) == 1 ? " file" : " files";
    const double rate =
        progress.seconds > 0 ? static_cast<double>(progress.done) / progress.seconds : 0;
    text += ", " + groupedText(static_cast<std::uint64_t>(std::llround(rate))) + " a second, " +
            groupedText(progress.findings) + (progress.findings == 1 ? " finding" : " findings");
    if (progress.found && rate > 0) {
        const std::uint64_t all = std::max(*progress.found, progress.done);
        const double left = static_cast<double>(all - progress.done) / rate;
        text += ", " + durationText(static_cast<std::uint64_t>(std::ceil(left))) + " left";
    }
    return text;
}

ProgressLine::ProgressLine(PathOptions paths)
    : paths_(std::move(paths)), thread_([this](const std::stop_token& stop) {
          try {
              work(stop);
          } catch (const std::exception&) {
              // What the line is for goes on without it.
          }
      }) {}

ProgressLine::~ProgressLine() {
    thread_.request_stop();
    thread_.join();
    const std::lock_guard lock(mutex_);
    erase();
}

void ProgressLine::add(std::size_t findings) {
    const std::lock_guard lock(mutex_);
    ++progress_.done;
    progress_.findings += findings;
}

std::unique_lock<std::mutex> ProgressLine::pause() {
    std::unique_lock lock(mutex_);
    erase();
    return lock;
}

void ProgressLine::work(const std::stop_token& stop) {
    const auto start = Clock::now();
    const auto isStopped = [&stop] { return stop.stop_requested(); };
    const auto waitFor = [&](auto duration) {
        std::unique_lock lock(mutex_);
        return stopped_.wait_for(lock, stop, duration, isStopped);
    };
    if (waitFor(firstDrawn)) {
        return;
    }
    std::optional<PathList> list;
    if (isCountable(paths_)) {
        list.emplace(paths_);
    }
    do {
        if (list && !countSome(*list, stop)) {
            list.reset();
            const std::lock_guard lock(mutex_);
            progress_.found = counted_;
        }
        const std::lock_guard lock(mutex_);
        progress_.seconds = std::chrono::duration<double>(Clock::now() - start).count();
        draw();
    } while (!waitFor(betweenDrawings));
}

bool ProgressLine::countSome(PathList& list, const std::stop_token& stop) {
    const auto end = Clock::now() + betweenDrawings;
    while (Clock::now() < end && !stop.stop_requested()) {
        if (!list.next()) {
            return false;
        }
        ++counted_;
    }
    return true;
}

void ProgressLine::draw() {
    const std::string text = progressText(progress_).substr(0, terminalWidth() - 1);
    writeToTerminal("\r" + text + "\x1b[K");
    isDrawn_ = true;
}

void ProgressLine::erase() {
    if (isDrawn_) {
        writeToTerminal("\r\x1b[K");
        isDrawn_ = false;
    }
}

}  // namespace tool
