#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tool/catalogue/rows.h"
#include "tool/inspected_file.h"

namespace tool {

/// Hands on everything that a catalogue tells of a file, the same as its record. Values and the
/// bytes behind a text are cut to so many elements, characters or bytes. Memory grows neither with
/// the number of entries nor with the largest value.
void collectRows(const InspectedFile& file, const std::string& path,
                 const std::optional<FileStamp>& stamp, std::uint64_t maxValues, BlockSink& sink);

}  // namespace tool
