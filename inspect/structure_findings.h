#pragma once

#include <vector>

#include "corvinex/finding.h"
#include "inspect/file_content.h"
#include "inspect/finding_list.h"

namespace corvinex::inspect {

/// Looks over the container, all directories and all entries. Nothing for what is no image.
[[nodiscard]] std::vector<Finding> findInStructure(const FileContent& file);

/// Adds what is wrong with the container and the header.
void findInContainer(const FileContent& file, FindingList& findings);

/// Adds what is wrong with the entries of a directory by themselves.
void findInEntries(const FileContent& file, const Directory& directory, FindingList& findings);

}  // namespace corvinex::inspect
