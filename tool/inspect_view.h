#pragma once

#include <cstdint>

#include "inspect/record/json_writer.h"
#include "inspect/record/tag_selection.h"
#include "tool/inspected_file.h"
#include "tool/terminal.h"

namespace tool {

/// What people are shown of a file.
struct InspectView {
    enum class Detail : std::uint8_t { Entries, Summary };

    Detail detail = Detail::Entries;
    bool isWhole = false;  ///< long values too
    bool isRaw = false;    ///< types, counts, offsets, and values as they are stored
    corvinex::inspect::TagSelection tags;
    bool isSelection = false;  ///< directories without a selected tag are left out
    Terminal terminal;
};

/// Writes what a file is, its directories, and what is wrong with it, worst first. Nothing from the
/// file makes a terminal act. Memory does not grow with the number of entries.
void writeInspection(corvinex::inspect::TextSink& sink, const InspectedFile& file,
                     const InspectView& view);

}  // namespace tool
