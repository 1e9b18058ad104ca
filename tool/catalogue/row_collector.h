#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tool/catalogue/rows.h"
#include "tool/inspected_file.h"

namespace tool {

/// Hands on everything that a catalogue tells of a file, the same as its record. Values and the
/// bytes behind a text are cut to so many elements, characters or bytes. Memory grows neither with
/// the number of entries nor with the largest value. Collects in a block without rows, whose memory
/// serves from one file to the next.
void collectRows(const InspectedFile& file, const std::string& path,
                 const std::optional<FileStamp>& stamp, std::uint64_t maxValues, RowBlock& block,
                 BlockSink& sink);

}  // namespace tool
