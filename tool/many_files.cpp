#include "tool/many_files.h"

#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "tool/interrupt_watch.h"
#include "tool/ordered_output.h"
#include "tool/progress_line.h"
#include "tool/shared_paths.h"
#include "tool/text_display.h"
#include "tool/usage_error.h"

namespace tool {
namespace {

/// The threads' common state.
class FileRun {
  public:
    FileRun(const ManyFiles& files, const FileTask& task, std::ostream& out, std::ostream& err)
        : files_(files),
          task_(task),
          paths_(files.paths, files.threads, namesAtOnce),
          progress_(err, !files.isQuiet, files.paths),
          output_(out, err, progress_) {}

    /// What each thread does until no file is left. Threads count from 0.
    void work(std::size_t thread) {
        std::string text;
        while (auto taken = paths_.take(thread, output_.isCrowded())) {
            OrderedOutput::Turn turn(output_, taken->number, text);
            Done done{.thread = thread, .message = {}};
            do {
                read(taken->path, turn, done);
                turn.endTask();
            } while (done.message.empty() && turn.hasRoom() &&
                     (taken = paths_.takeFromBatch(thread)));
            progress_.add(done.files, done.findings);
            turn.finish(std::move(done.message));
        }
    }

    /// Raises what a task has raised.
    ExitStatus status() {
        paths_.raiseFailure();
        return output_.hasFailed() ? OutputFailed : isSomethingWrong_ ? Failed : Success;
    }

  private:
    /// What a thread has done in a turn.
    struct Done {
        std::size_t thread = 0;
        std::uint64_t files = 0;
        std::uint64_t findings = 0;
        std::string message;  ///< for the error output
    };

    void read(const ListedPath& path, OrderedOutput::Turn& turn, Done& done) {
        if (output_.hasFailed()) {
            paths_.stop(nullptr);
            return;
        }
        try {
            const InspectedFile file(path.name, files_.how);
            ++done.files;
            done.findings += file.file() == nullptr ? 1 : file.file()->findings().size();
            if (path.isAsked || file.isImage()) {
                report(file, turn, done);
            }
        } catch (...) {
            turn.abandon();
            paths_.stop(std::current_exception());
        }
    }

    void report(const InspectedFile& file, OrderedOutput::Turn& turn, Done& done) {
        task_(file, turn, done.thread);
        if (!file.isImage()) {
            isSomethingWrong_ = true;
        }
        if (file.error() && files_.tellsErrors) {
            done.message =
                "corvinex: " + visibleText(file.facts().name) + ": " + file.errorText() + '\n';
        }
    }

    const ManyFiles& files_;
    const FileTask& task_;
    SharedPaths paths_;
    ProgressLine progress_;
    OrderedOutput output_;
    std::atomic<bool> isSomethingWrong_{false};
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

/// Files are opened, read and closed by one thread. In a table of its own it does not meet the
/// others at the table's lock for each. Where the system refuses one, the common table serves.
void useOwnFileTable() {
#if !defined(__SANITIZE_THREAD__)  // it takes equal numbers of files for one file
    static_cast<void>(unshare(CLONE_FILES));
#endif
}

unsigned threadsOf(const Arguments& arguments) {
    // More than that would only wait for each other.
    constexpr std::uint64_t mostThreads = 256;
    const std::uint64_t cores = std::max(1U, std::thread::hardware_concurrency());
    const std::uint64_t wanted = arguments.whole("jobs").value_or(cores);
    return static_cast<unsigned>(std::clamp<std::uint64_t>(wanted, 1, mostThreads));
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
    const bool hasNames = files.paths.namesFrom == InspectedFile::standardInput;
    const bool hasFile = std::ranges::any_of(files.paths.operands, isInput);
    if (hasNames && hasFile) {
        throw UsageError("the standard input is either a file or the list of names");
    }
    if ((hasNames || hasFile) && isatty(STDIN_FILENO) != 0) {
        throw UsageError("the standard input is a terminal");
    }
    if (const auto extensions = arguments.text("ext")) {
        files.paths.extensions = partsOf(*extensions);
    }
    files.paths.followsLinks = arguments.isGiven("follow");
    files.how.headerOffset = arguments.whole("header-offset");
    files.threads = threadsOf(arguments);
    files.isQuiet = arguments.isGiven("quiet");
    return files;
}

bool isOneFile(const PathOptions& paths) {
    std::error_code ignored;
    return paths.operands.size() == 1 && !paths.namesFrom &&
           !std::filesystem::is_directory(paths.operands.front(), ignored);
}

ExitStatus inspectFiles(const ManyFiles& files, const FileTask& task, std::ostream& out,
                        std::ostream& err) {
    const InterruptWatch watch;
    FileRun run(files, task, out, err);
    {
        std::vector<std::jthread> helpers;
        try {
            for (unsigned helper = 1; helper < files.threads && !isOneFile(files.paths); ++helper) {
                helpers.emplace_back([&run, helper] {
                    useOwnFileTable();
                    run.work(helper);
                });
            }
        } catch (const std::system_error&) {
            // The threads that there are do it all.
        }
        run.work(0);
    }
    const ExitStatus status = run.status();
    return out.flush() ? status : OutputFailed;
}

}  // namespace tool
