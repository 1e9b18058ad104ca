#pragma once

#include <functional>
#include <span>
#include <vector>

#include "corvinex/directory.h"
#include "corvinex/entry.h"
#include "corvinex/file.h"
#include "tool/csv_columns.h"

// Which entries of a file stand in a row of a table about files.

namespace tool {

/// An entry for each column; null where the column has none.
using RowEntries = std::span<const corvinex::inspect::Entry* const>;
using RowTask = std::function<void(const corvinex::inspect::Directory&, RowEntries)>;

/// The entries of a row for the whole file. What a JPEG's thumbnail holds stands in columns with a
/// path only: it says nothing of the photo.
[[nodiscard]] std::vector<const corvinex::inspect::Entry*> entriesOfFile(
    const corvinex::inspect::File& file, const CsvColumns& columns);

/// Has something done with the row of each main directory, in the order of the chain. A row holds
/// the entries of that directory and of those that its pointers lead to; what stands in a sub-image
/// comes into columns with a path only, because it says nothing of the image above it.
void forEachDirectoryRow(const corvinex::inspect::File& file, const CsvColumns& columns,
                         const RowTask& task);

}  // namespace tool
