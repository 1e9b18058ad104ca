#pragma once

#include <optional>
#include <string>
#include <system_error>

#include "corvinex/file.h"
#include "inspect/record/json_writer.h"
#include "inspect/record/record.h"

namespace corvinex::inspect {

/// Writes the members "file" and, where the name is not UTF-8, "file_bytes".
void writeName(JsonWriter& json, const FileFacts& facts);

/// Of a file that could not be opened or read as well.
[[nodiscard]] Status statusOf(const File* file);

/// What a function reads of the file, an optional; nothing as well when the system cannot read any
/// more, for the record has begun by then.
template <class Read>
[[nodiscard]] auto readIfPossible(Read read) -> decltype(read()) {
    try {
        return read();
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

/// UTC as "2024-03-05T14:07:09Z".
[[nodiscard]] std::string isoTime(std::time_t time);

}  // namespace corvinex::inspect
