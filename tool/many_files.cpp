#include "tool/many_files.h"

#include <unistd.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "tool/interrupt_watch.h"
#include "tool/ordered_output.h"
#include "tool/progress_line.h"
#include "tool/text_display.h"
#include "tool/usage_error.h"

namespace tool {
namespace {

/// The threads' common state.
class FileRun {
  public:
    FileRun(const ManyFiles& files, const FileTask& task, std::ostream& out, std::ostream& err,
            ProgressLine* progress)
        : how_(files.how),
          task_(task),
          list_(files.paths),
          output_(out, err, progress),
          progress_(progress) {}

    /// What each thread does until no file is left.
    void work() {
        for (;;) {
            std::uint64_t number = 0;
            const auto path = take(number);
            if (!path) {
                return;
            }
            OrderedOutput::Turn turn(output_, number);
            std::string message;
            std::size_t findings = 0;
            try {
                message = read(*path, turn, findings);
            } catch (...) {
                turn.abandon();
                stop(std::current_exception());
            }
            turn.finish(message);
            if (progress_ != nullptr) {
                progress_->add(findings);
            }
        }
    }

    /// Raises what a task has raised.
    ExitStatus status() {
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        return output_.hasFailed() ? OutputFailed : status_;
    }

  private:
    std::optional<ListedPath> take(std::uint64_t& number) {
        const std::lock_guard lock(mutex_);
        if (isStopped_ || InterruptWatch::isInterrupted() || output_.hasFailed()) {
            return std::nullopt;
        }
        try {
            auto path = list_.next();
            number = taken_;
            taken_ += path ? 1 : 0;
            return path;
        } catch (...) {
            failure_ = failure_ ? failure_ : std::current_exception();
            isStopped_ = true;
            return std::nullopt;
        }
    }

    /// Returns what there is to tell on the error output.
    std::string read(const ListedPath& path, OrderedOutput::Turn& turn, std::size_t& findings) {
        const InspectedFile file(path.name, how_);
        findings = file.file() == nullptr ? 0 : file.file()->findings().size();
        if (!path.isAsked && !file.isImage()) {
            return {};
        }
        task_(file, turn);
        if (!file.isImage()) {
            const std::lock_guard lock(mutex_);
            status_ = Failed;
        }
        return file.error()
                   ? "corvinex: " + visibleText(path.name) + ": " + file.error().message() + '\n'
                   : std::string();
    }

    void stop(std::exception_ptr failure) {
        const std::lock_guard lock(mutex_);
        failure_ = failure_ ? failure_ : std::move(failure);
        isStopped_ = true;
    }

    const corvinex::inspect::Options& how_;
    const FileTask& task_;
    std::mutex mutex_;
    PathList list_;
    OrderedOutput output_;
    ProgressLine* progress_;
    std::uint64_t taken_ = 0;
    bool isStopped_ = false;
    std::exception_ptr failure_;
    ExitStatus status_ = Success;
};

/// Words between commas.
std::vector<std::string> partsOf(std::string_view list) {
    std::vector<std::string> parts;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(','), list.size());
        if (end != 0) {
            parts.emplace_back(list.substr(0, end));
        }
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return parts;
}

unsigned threadsOf(const Arguments& arguments) {
    // More than that would only wait for each other.
    constexpr std::uint64_t mostThreads = 256;
    const std::uint64_t cores = std::max(1U, std::thread::hardware_concurrency());
    const std::uint64_t wanted = arguments.whole("jobs").value_or(cores);
    return static_cast<unsigned>(std::clamp<std::uint64_t>(wanted, 1, mostThreads));
}

/// Null when there is none to show.
std::unique_ptr<ProgressLine> startProgress(const ManyFiles& files) {
    try {
        return files.showsProgress ? std::make_unique<ProgressLine>(files.paths) : nullptr;
    } catch (const std::system_error&) {
        return nullptr;  // no thread can be had
    }
}

}  // namespace

ManyFiles manyFiles(const Arguments& arguments) {
    ManyFiles files;
    files.paths.operands = arguments.operands();
    if (const auto list = arguments.text("files0-from")) {
        files.paths.namesFrom = std::string(*list);
    }
    const auto isInput = [](const std::string& name) {
        return name == InspectedFile::standardInput;
    };
    if (files.paths.operands.empty() && !files.paths.namesFrom) {
        throw UsageError("PATH is missing");
    }
    const bool readsInput =
        files.paths.namesFrom == InspectedFile::standardInput ||
        std::any_of(files.paths.operands.begin(), files.paths.operands.end(), isInput);
    if (readsInput && isatty(STDIN_FILENO) != 0) {
        throw UsageError("the standard input is a terminal");
    }
    if (const auto extensions = arguments.text("ext")) {
        files.paths.extensions = partsOf(*extensions);
    }
    files.paths.followsLinks = arguments.isGiven("follow");
    files.how.headerOffset = arguments.whole("header-offset");
    files.threads = threadsOf(arguments);
    files.showsProgress = !arguments.isGiven("quiet") && isatty(STDERR_FILENO) != 0;
    return files;
}

ExitStatus inspectFiles(const ManyFiles& files, const FileTask& task, std::ostream& out,
                        std::ostream& err) {
    const InterruptWatch watch;
    const auto progress = startProgress(files);
    FileRun run(files, task, out, err, progress.get());
    {
        std::vector<std::jthread> helpers;
        const bool isOneFile = files.paths.operands.size() == 1 && !files.paths.namesFrom &&
                               !std::filesystem::is_directory(files.paths.operands.front());
        try {
            for (unsigned helper = 1; helper < files.threads && !isOneFile; ++helper) {
                helpers.emplace_back([&run] { run.work(); });
            }
        } catch (const std::system_error&) {
            // The threads that there are do it all.
        }
        run.work();
    }
    out.flush();
    return run.status();
}

}  // namespace tool
