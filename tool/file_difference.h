#pragma once

#include <cstdint>
#include <optional>
#include <ostream>

#include "corvinex/file.h"
#include "inspect/record/tag_selection.h"
#include "tool/terminal.h"

namespace tool {

/// Which tags of two files are compared, and how differences are shown.
struct DifferenceView {
    corvinex::inspect::TagSelection tags;
    bool isSelection = false;  ///< only tags count: a directory by itself is no difference
    std::optional<corvinex::inspect::TagSelection> ignored;
    bool isWhole = false;  ///< long values too
    Terminal terminal;
};

/// What came of a comparison.
struct DifferenceCount {
    std::uint64_t differences = 0;
    /// Values that were not compared, because the values of their file come to several times its
    /// size.
    std::uint64_t leftOut = 0;
};

/// A file with the name that people are shown.
struct NamedFile {
    const corvinex::inspect::File& file;
    std::string_view name;
};

/// Compares the tags of two images, directory by directory: those with the same path belong
/// together, and in them the entries with the same number, in their order where there are several.
/// Of entries that tell positions in the file only the number of elements is compared. Writes what
/// differs, under the names of both files; nothing when nothing does. Nothing from the files makes
/// a terminal act. Takes memory in proportion to both files, and time n log n of their
/// directories and of a directory's entries. Raises std::system_error when a file cannot be read.
DifferenceCount writeDifferences(std::ostream& out, const NamedFile& left, const NamedFile& right,
                                 const DifferenceView& view);

}  // namespace tool
