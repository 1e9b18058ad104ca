#pragma once

#include <vector>

#include "corvinex/finding.h"
#include "inspect/file_content.h"

namespace corvinex::inspect {

/// Asks every rule about the container, all directories and all entries. Nothing for what is no
/// image. No pixels are read; of image data at most two bytes of an embedded JPEG stream are, and
/// the end marker of a JPEG is looked for.
[[nodiscard]] std::vector<Finding> findProblems(const FileContent& file);

}  // namespace corvinex::inspect
