#include "tool/progress_line.h"

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>

#include "inspect/reading/number_text.h"
#include "tool/inspected_file.h"

namespace tool {
namespace {

using corvinex::inspect::reading::groupedText;
using corvinex::inspect::reading::paddedText;

constexpr std::chrono::milliseconds quietTime{1000};
constexpr std::chrono::milliseconds betweenDrawings{200};

std::string timeText(std::uint64_t seconds) {
    const std::uint64_t hours = seconds / 3600;
    const std::uint64_t minutes = seconds / 60 % 60;
    return hours == 0 ? std::to_string(minutes) + ':' + paddedText(seconds % 60, 2)
                      : std::to_string(hours) + ':' + paddedText(minutes, 2) + ':' +
                            paddedText(seconds % 60, 2);
}

/// Whether the list can be gone through a second time.
bool canBeCounted(const PathOptions& paths) {
    return !paths.namesFrom ||
           (*paths.namesFrom != InspectedFile::standardInput && stampOf(*paths.namesFrom));
}

/// Columns of the terminal: a longer line would go on in the next one, where nothing takes it off.
std::size_t terminalWidth() {
    constexpr std::size_t usual = 80;
    winsize size{};
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system has no other way
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0 ? size.ws_col : usual;
}

}  // namespace

std::string progressText(const Progress& progress) {
    const double seconds = std::chrono::duration<double>(progress.elapsed).count();
    const double rate = seconds > 0 ? static_cast<double>(progress.done) / seconds : 0;
    std::string text = groupedText(progress.done);
    if (progress.found) {
        text.append(" of ").append(groupedText(*progress.found));
    }
    text.append(" files, ").append(groupedText(static_cast<std::uint64_t>(rate)));
    text.append(" a second, ").append(groupedText(progress.findings)).append(" findings");
    if (progress.found && rate > 0) {
        const std::uint64_t left = *progress.found - std::min(*progress.found, progress.done);
        const double secondsLeft = static_cast<double>(left) / rate;
        text.append(", ").append(timeText(static_cast<std::uint64_t>(secondsLeft))).append(" left");
    }
    return text;
}

ProgressLine::ProgressLine(std::ostream& err, bool isWanted, const PathOptions& paths)
    : err_(err), paths_(paths) {
    if (!isWanted || isatty(STDERR_FILENO) == 0) {
        return;
    }
    try {
        if (canBeCounted(paths)) {
            counter_ = std::jthread([this](const std::stop_token& stop) { count(stop); });
        }
        drawer_ = std::jthread([this](const std::stop_token& stop) { draw(stop); });
    } catch (const std::system_error&) {
        // Without threads to spare the work goes on unseen.
    }
}

ProgressLine::~ProgressLine() {
    counter_ = {};
    drawer_ = {};
    const std::lock_guard lock(mutex_);
    clear();
}

std::unique_lock<std::mutex> ProgressLine::pause() {
    std::unique_lock lock(mutex_);
    clear();
    return lock;
}

void ProgressLine::count(const std::stop_token& stop) {
    try {
        PathList list(paths_);
        while (!stop.stop_requested() && list.next()) {
            found_.fetch_add(1, std::memory_order_relaxed);
        }
        isCounted_ = !stop.stop_requested();
    } catch (const std::exception&) {
        // The line then has no total.
    }
}

void ProgressLine::draw(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    const auto isStopped = [&stop] { return stop.stop_requested(); };
    wake_.wait_for(lock, stop, quietTime, isStopped);
    while (!stop.stop_requested()) {
        Progress progress{.done = done_,
                          .found = std::nullopt,
                          .findings = findings_,
                          .elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
                              Clock::now() - start_)};
        if (isCounted_) {
            progress.found = found_;
        }
        err_ << '\r' << progressText(progress).substr(0, terminalWidth() - 1) << "\x1b[K"
             << std::flush;
        isDrawn_ = true;
        wake_.wait_for(lock, stop, betweenDrawings, isStopped);
    }
}

void ProgressLine::clear() {
    if (isDrawn_) {
        err_ << "\r\x1b[K" << std::flush;
        isDrawn_ = false;
    }
}

}  // namespace tool
