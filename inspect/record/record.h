#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

#include "corvinex/file.h"
#include "inspect/record/json_writer.h"
#include "inspect/record/tag_selection.h"

namespace corvinex::inspect {

/// What is known of a file from outside.
struct FileFacts {
    std::string name;                     ///< bytes as the system has them
    std::optional<std::uint64_t> size;    ///< in bytes
    std::optional<std::time_t> modified;  ///< in seconds of UTC
};

struct RecordOptions {
    std::optional<std::uint64_t> maxValues;  ///< elements, characters or bytes of one value
    TagSelection tags;
    bool codesAsNumbers = false;  ///< flat: codes instead of their words
};

/// Writes one object with all that a file holds. The file is null when it could not be opened or
/// read. Values are given while their bytes come to at most 4 times the file's size and 16 MiB:
/// values may overlap, so that a file built for it would ask for any amount otherwise. One that
/// cannot be read in the end is null.
void writeRecord(JsonWriter& json, const FileFacts& facts, const File* file,
                 const RecordOptions& options);

/// Writes one object of plain names and values.
void writeFlatRecord(JsonWriter& json, const FileFacts& facts, const File* file,
                     const RecordOptions& options);

}  // namespace corvinex::inspect
