#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tool/catalogue/absolute_path.h"
#include "tool/catalogue/catalogue.h"
#include "tool/catalogue/row_queue.h"
#include "tool/many_files.h"
#include "tool/progress_line.h"
#include "tool/shared_paths.h"

namespace tool {

/// What tells a file from all others, whatever its name.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    bool operator==(const FileIdentity&) const = default;
};
/// Nothing for what is not there.
[[nodiscard]] std::optional<FileIdentity> identityOf(const std::string& path);

struct ScanOptions {
    std::string folder;  ///< absolute, that names count from
    std::uint64_t maxValues = 64;
    bool readsAll = false;  ///< files as well that have not changed
    /// The catalogue's own files. To open and close one of them would take off the locks that the
    /// process has on the database.
    std::vector<FileIdentity> leftOut;
};

/// Reads the files of a command into a catalogue: several threads read, the calling one writes.
class ScanRun {
  public:
    ScanRun(const ManyFiles& files, const ScanOptions& options, Catalogue& catalogue,
            std::ostream& err);

    /// Returns when all is committed, also after an interrupt. Raises DatabaseError, and what a
    /// reader has raised.
    void run();

    /// Behind run().
    [[nodiscard]] ScanCounts counts() const;

  private:
    void readFiles(std::size_t thread);
    [[nodiscard]] bool isLeftOut(const ListedPath& path) const;
    void read(const SharedPaths::Taken& taken, RowBlock& block);
    void writeAll();

    const ManyFiles& files_;
    const ScanOptions& options_;
    Catalogue& catalogue_;
    std::ostream& err_;
    AbsolutePaths absolutePaths_;
    SharedPaths paths_;
    std::optional<ProgressLine> progress_;  ///< until the work is done
    RowQueue queue_;
    std::atomic<std::uint64_t> taken_{0};  ///< files with or to get a row, however often found
};

}  // namespace tool
