#include "tool/catalogue/part_writer.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <new>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "inspect/record/finding_json.h"
#include "inspect/record/json_writer.h"
#include "inspect/record/record.h"
#include "inspect/record/record_head.h"
#include "tool/catalogue/absolute_path.h"
#include "tool/catalogue/catalogue.h"
#include "tool/catalogue/row_collector.h"
#include "tool/file_descriptor.h"
#include "tool/inspected_file.h"

namespace tool {
namespace {

using corvinex::inspect::Finding;
using corvinex::inspect::JsonWriter;
using corvinex::inspect::Status;
using corvinex::inspect::statusName;

/// The file of the records.
class RecordFile final : public corvinex::inspect::TextSink {
  public:
    explicit RecordFile(const std::string& path) : path_(path), file_(opened(path)) {
        if (!file_.isOpen()) {
            fail();
        }
    }
    void write(std::string_view text) override {
        while (!text.empty()) {
            const ssize_t written = ::write(file_.number(), text.data(), text.size());
            if (written >= 0) {
                text.remove_prefix(static_cast<std::size_t>(written));
            } else if (errno != EINTR) {
                fail();
            }
        }
    }

  private:
    static FileDescriptor opened(const std::string& path) {
        constexpr mode_t readAndWriteForAll = 0666;
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system has no other way
        return FileDescriptor(
            ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, readAndWriteForAll));
    }
    [[noreturn]] void fail() const {
        throw std::system_error(errno, std::generic_category(), path_);
    }

    std::string path_;
    FileDescriptor file_;
};

/// Hands rows to the catalogue as they come, and counts them.
class CountedBlocks final : public BlockSink {
  public:
    CountedBlocks(Catalogue& catalogue, PartResult& result)
        : catalogue_(catalogue), result_(result) {}
    void put(RowBlock& block) override {
        result_.directories += block.directories.size();
        result_.tags += block.tags.size();
        result_.findings += block.findings.size();
        catalogue_.write(block);
        block.clear();
    }

  private:
    Catalogue& catalogue_;
    PartResult& result_;
};

/// Whether a file was changed so shortly before it was opened that another change could get the
/// same time. The machine that keeps the file may have a clock of its own.
bool isFresh(const FileStamp& stamp, std::chrono::system_clock::time_point opened) {
    constexpr std::chrono::seconds differenceOfClocks{2};
    const std::chrono::nanoseconds modified(stamp.modified);
    return std::chrono::abs(opened.time_since_epoch() - modified) < differenceOfClocks;
}

/// The rows of a file that is not to be opened.
RowBlock rowsOfRefused(const corvinex::inspect::FileFacts& facts, const std::string& path,
                       const std::string& reason) {
    RowBlock block;
    FileRow& row = block.file.emplace();
    row.path = path;
    row.name = facts.name;
    row.modified = facts.modified ? corvinex::inspect::isoTime(*facts.modified) : std::string();
    row.status = statusName(Status::Unreadable);
    row.reason = reason;
    row.derived = "{}";
    for (const Finding& finding : corvinex::inspect::findingsOf(nullptr)) {
        block.findings.push_back({.id = finding.id,
                                  .severity = severityName(finding.severity),
                                  .tag = finding.tag,
                                  .directory = finding.directory,
                                  .arguments = "[]",
                                  .text = finding.text});
    }
    block.isLast = true;
    return block;
}

class PartRun {
  public:
    explicit PartRun(const PartOptions& options)
        : options_(options),
          catalogue_(options.catalogue),
          records_(options.records),
          blocks_(catalogue_, result_) {
        how_.headerOffset = options.headerOffset;
        recordOptions_.maxValues = options.maxValues;
        catalogue_.beginScan({.version = CORVINEX_VERSION,
                              .folder = root,
                              .maxValues = options.maxValues,
                              .headerOffset = options.headerOffset});
    }

    /// The number of the file that is being read is told, for the case that it ends in an
    /// exception.
    PartResult run(std::span<const ListedPath> files, std::optional<std::size_t>& current) {
        for (std::size_t number = 0; number < files.size(); ++number) {
            current = number;
            read(files[number], number);
        }
        current.reset();
        json_.flush();
        catalogue_.checkRows();
        catalogue_.finishScan({.found = result_.records, .written = catalogue_.written()});
        return std::move(result_);
    }

  private:
    static constexpr const char* root = "/";

    void read(const ListedPath& listed, std::size_t number) {
        const auto stamp = stampOf(listed.name);
        result_.stamps.push_back(stamp);
        std::string path = absolutePaths_.of(listed.name);
        if (seen_.contains(path)) {
            ++result_.repeated;
            return;
        }
        if (const auto refused = options_.refused.find(number); refused != options_.refused.end()) {
            writeRefused(listed.name, path, stamp, refused->second);
        } else if (!writeFile(listed, path, stamp)) {
            ++result_.passedOver;
            return;
        }
        ++result_.records;
        seen_.insert(std::move(path));
    }

    /// False for a file that is passed over.
    bool writeFile(const ListedPath& listed, const std::string& path,
                   const std::optional<FileStamp>& stamp) {
        const auto opened = std::chrono::system_clock::now();
        const InspectedFile file(listed.name, how_);
        const bool isPassedOver = !listed.isAsked && !file.isImage();
        if (!isPassedOver) {
            writeRecord(json_, file.facts(), file.file(), recordOptions_);
        }
        const bool isSteady =
            stampOf(listed.name) == stamp && !(stamp.has_value() && isFresh(*stamp, opened));
        result_.isSteady = result_.isSteady && isSteady;
        if (isPassedOver) {
            return false;
        }
        collectRows(file, path, isSteady ? stamp : std::nullopt, options_.maxValues, block_,
                    blocks_);
        ++result_.byStatus[statusName(corvinex::inspect::statusOf(file.file()))];
        if (file.error()) {
            result_.unreadable.push_back({listed.name, file.errorText()});
        }
        return true;
    }

    void writeRefused(const std::string& name, const std::string& path,
                      const std::optional<FileStamp>& stamp, const std::string& reason) {
        corvinex::inspect::FileFacts facts;
        facts.name = name;
        if (stamp) {
            facts.modified = std::chrono::system_clock::to_time_t(
                std::chrono::system_clock::time_point(std::chrono::nanoseconds(stamp->modified)));
        }
        writeRecord(json_, facts, nullptr, recordOptions_);
        RowBlock rows = rowsOfRefused(facts, path, reason);
        blocks_.put(rows);
        ++result_.byStatus[statusName(Status::Unreadable)];
        result_.unreadable.push_back({name, reason});
    }

    const PartOptions& options_;
    corvinex::inspect::Options how_;
    corvinex::inspect::RecordOptions recordOptions_;
    PartResult result_;
    Catalogue catalogue_;
    RecordFile records_;
    RowBlock block_;  ///< whose memory serves from file to file
    CountedBlocks blocks_;
    JsonWriter json_{records_, JsonWriter::Style::OneLine};
    AbsolutePaths absolutePaths_{root};
    std::unordered_set<std::string> seen_;  ///< absolute names of the files with a record
};

void removeOutputs(const PartOptions& options) {
    ::unlink(options.records.c_str());
    for (const char* const ending : {"", "-wal", "-shm"}) {
        ::unlink((options.catalogue + ending).c_str());
    }
}

}  // namespace

PartResult writePart(std::span<const ListedPath> files, PartOptions options) {
    for (;;) {
        std::optional<std::size_t> current;
        try {
            return PartRun(options).run(files, current);
        } catch (const std::bad_alloc&) {
            removeOutputs(options);
            if (!current || options.refused.contains(*current)) {
                throw;
            }
        }
        // What was written of it cannot be taken back, so that the part begins again without it.
        options.refused.emplace(*current, "there is not enough memory to read it");
    }
}

std::optional<std::string> whyUnreadable(const std::string& name,
                                         const std::optional<std::uint64_t>& headerOffset) {
    corvinex::inspect::Options how;
    how.headerOffset = headerOffset;
    const InspectedFile file(name, how);
    return file.error() ? std::optional(file.errorText()) : std::nullopt;
}

}  // namespace tool
