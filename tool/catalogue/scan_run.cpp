#include "tool/catalogue/scan_run.h"

#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <new>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "inspect/record/record_head.h"
#include "tool/catalogue/row_collector.h"
#include "tool/inspected_file.h"
#include "tool/text_display.h"
#include "tool/usage_error.h"

namespace tool {
namespace {

/// Whether a later change of the file will show in its stamp. It may not where the file changed
/// while it was read, or so shortly before that another change would get the same time: the
/// system's clock for files goes in steps of up to 10 ms.
bool isSteady(const ListedPath& path, std::chrono::system_clock::time_point opened) {
    constexpr std::chrono::milliseconds clockStep{20};
    if (!path.stamp || stampOf(path.name) != path.stamp) {
        return false;
    }
    const std::chrono::nanoseconds modified(path.stamp->modified);
    return std::chrono::abs(opened.time_since_epoch() - modified) > clockStep;
}

PathOptions withStamps(PathOptions paths) {
    paths.wantsStamps = true;
    return paths;
}

/// Hands the blocks of one file to the queue. A file whose reading failed has no end otherwise.
class QueuedBlocks final : public BlockSink {
  public:
    QueuedBlocks(RowQueue& queue, std::uint64_t number) : queue_(queue), number_(number) {}
    ~QueuedBlocks() override {
        if (isWhole_) {
            return;
        }
        try {
            queue_.skip(number_);
        } catch (const std::bad_alloc&) {
            queue_.stop();  // the writer would wait for this file for ever
        }
    }
    QueuedBlocks(const QueuedBlocks&) = delete;
    QueuedBlocks& operator=(const QueuedBlocks&) = delete;

    void put(RowBlock& block) override {
        isWhole_ = block.isLast;
        queue_.put(number_, std::exchange(block, queue_.spare()));
    }

  private:
    RowQueue& queue_;
    std::uint64_t number_;
    bool isWhole_ = false;
};

}  // namespace

std::optional<FileIdentity> identityOf(const std::string& path) {
    struct stat facts {};
    if (stat(path.c_str(), &facts) != 0) {
        return std::nullopt;
    }
    return FileIdentity{.device = facts.st_dev, .inode = facts.st_ino};
}

ScanRun::ScanRun(const ManyFiles& files, const ScanOptions& options, Catalogue& catalogue,
                 std::ostream& err)
    : files_(files),
      options_(options),
      catalogue_(catalogue),
      err_(err),
      absolutePaths_(options.folder),
      paths_(withStamps(files.paths), files.threads, 1),
      progress_(std::in_place, err, !files.isQuiet, files.paths) {}

void ScanRun::run() {
    std::vector<std::jthread> readers;
    queue_.enter();
    try {
        for (unsigned reader = 0; reader < files_.threads; ++reader) {
            queue_.enter();
            try {
                readers.emplace_back([this, reader] { readFiles(reader); });
            } catch (const std::system_error&) {
                queue_.leave();
                if (readers.empty()) {
                    throw;
                }
                break;  // the threads that there are do it all
            }
        }
        queue_.leave();
        writeAll();
    } catch (...) {
        paths_.stop(std::current_exception());
        queue_.stop();
    }
    readers.clear();
    progress_.reset();
    paths_.raiseFailure();
    catalogue_.commit();
}

void ScanRun::readFiles(std::size_t thread) {
    RowBlock block;
    while (const auto taken = paths_.take(thread)) {
        try {
            block.clear();  // of what a file has left whose reading failed
            read(*taken, block);
        } catch (...) {
            paths_.stop(std::current_exception());
            queue_.stop();
        }
    }
    queue_.leave();
}

bool ScanRun::isLeftOut(const ListedPath& path) const {
    const auto hasInode = [&](const FileIdentity& own) {
        return path.stamp && own.inode == path.stamp->inode;
    };
    // Most files are told apart without another call of the system.
    if (std::ranges::none_of(options_.leftOut, hasInode)) {
        return false;
    }
    const auto identity = identityOf(path.name);
    return identity && std::ranges::find(options_.leftOut, *identity) != options_.leftOut.end();
}

void ScanRun::read(const SharedPaths::Taken& taken, RowBlock& block) {
    QueuedBlocks blocks(queue_, taken.number);
    const ListedPath& path = taken.path;
    if (path.name == InspectedFile::standardInput) {
        throw UsageError("the standard input has no place in a catalogue");
    }
    if (isLeftOut(path)) {
        return;
    }
    const std::string absolute = absolutePaths_.of(path.name);
    const auto state = catalogue_.find(absolute, path.stamp, options_.readsAll);
    if (state == Catalogue::State::Unchanged || state == Catalogue::State::Repeated) {
        progress_->add(1, 0);
        ++taken_;
        return;
    }
    const auto now = std::chrono::system_clock::now();
    const InspectedFile file(path.name, files_.how);
    progress_->add(1, file.file() == nullptr ? 1 : file.file()->findings().size());
    // What was an image when it was read before is not passed over now.
    if (!path.isAsked && !file.isImage() && state == Catalogue::State::Unknown) {
        return;
    }
    const auto stamp = isSteady(path, now) ? path.stamp : std::nullopt;
    collectRows(file, absolute, stamp, options_.maxValues, block, blocks);
    ++taken_;
    if (file.error()) {
        const auto pause = progress_->pause();
        err_ << "corvinex: " << visibleText(path.name) << ": " << file.errorText() << '\n';
    }
}

void ScanRun::writeAll() {
    while (auto block = queue_.take()) {
        catalogue_.write(*block);
        queue_.reuse(*std::move(block));
    }
}

ScanCounts ScanRun::counts() const {
    ScanCounts counts;
    counts.written = catalogue_.written();
    counts.unchanged = catalogue_.unchanged();
    counts.repeated = catalogue_.repeated();
    counts.found = taken_ - counts.repeated;
    return counts;
}

}  // namespace tool
