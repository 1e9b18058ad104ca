#pragma once

#include <span>

#include "corvinex/file.h"
#include "corvinex/finding.h"
#include "inspect/record/json_writer.h"

namespace corvinex::inspect {

/// What is wrong with a file. One that could not be opened or read (null) has the finding that says
/// so.
[[nodiscard]] std::span<const Finding> findingsOf(const File* file);

/// Writes a finding as one object on its line.
void writeFinding(JsonWriter& json, const Finding& finding);

/// Writes the arguments of a finding as one list.
void writeArguments(JsonWriter& json, const Finding& finding);

}  // namespace corvinex::inspect
