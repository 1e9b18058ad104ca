#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include "tool/catalogue/absolute_path.h"
#include "tool/catalogue/catalogue.h"
#include "tool/catalogue/row_queue.h"
#include "tool/many_files.h"
#include "tool/progress_line.h"
#include "tool/shared_paths.h"

namespace tool {

struct ScanOptions {
    std::string folder;  ///< absolute, that names count from
    std::uint64_t maxValues = 64;
    bool readsAll = false;  ///< files as well that have not changed
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
    void readFiles();
    void read(const SharedPaths::Taken& taken);
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
