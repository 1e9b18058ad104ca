#pragma once

#include <string>

#include "corvinex/file.h"
#include "inspect/record/json_writer.h"
#include "inspect/record/record.h"

namespace corvinex::inspect {

/// Writes the members "file" and, where the name is not UTF-8, "file_bytes".
void writeName(JsonWriter& json, const FileFacts& facts);

/// Of a file that could not be opened or read as well.
[[nodiscard]] Status statusOf(const File* file);

/// Reads a value; nothing as well when the system cannot read any more.
[[nodiscard]] std::optional<Value> valueOf(const Entry& entry);

/// UTC as "2024-03-05T14:07:09Z".
[[nodiscard]] std::string isoTime(std::time_t time);

}  // namespace corvinex::inspect
