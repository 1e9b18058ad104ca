#pragma once

#include <cstddef>
#include <functional>
#include <ostream>

#include "corvinex/file.h"
#include "tool/arguments.h"
#include "tool/exit_status.h"
#include "tool/inspected_file.h"
#include "tool/path_list.h"

namespace tool {

/// What every command takes that inspects any number of files.
struct ManyFiles {
    PathOptions paths;
    corvinex::inspect::Options how;
    unsigned threads = 1;
    bool isQuiet = false;     ///< nothing but errors on the error output
    bool tellsErrors = true;  ///< on the error output why a file could not be read
};

/// Whether there is but one file, for which threads need not be started.
[[nodiscard]] bool isOneFile(const PathOptions& paths);

/// As the command line tells it. Raises UsageError for a standard input that is a terminal, and
/// where no file is named.
ManyFiles manyFiles(const Arguments& arguments);

/// Writes what there is to say of one file. Called by several threads at once, each with a file and
/// a number of its own. Threads count from 0.
using FileTask =
    std::function<void(const InspectedFile&, corvinex::inspect::TextSink&, std::size_t thread)>;

/// Opens each file, has the task done for it, and prints the results in the order of the files, the
/// same with any number of threads. In folders what is no image is passed over, unless its ending
/// promises one. An interrupt ends with the few files that the threads have taken. Failed when a
/// file could not be read or is no image, OutputFailed when the output takes no more; what a task
/// raises is raised.
ExitStatus inspectFiles(const ManyFiles& files, const FileTask& task, std::ostream& out,
                        std::ostream& err);

}  // namespace tool
