#pragma once

#include <string>
#include <vector>

#include "tests/support/module_call.h"

// Files that raise reports: every one that a plain file can.

namespace test {

struct ReportFile {
    std::string name;
    Bytes bytes;
    Request request;
};

/// A classic TIFF, a BigTIFF and a JPEG that together raise each warning that needs no failing
/// file service. They can be read, and use every way of the module to make a value.
std::vector<ReportFile> warningFiles();

/// One file for each error of the reading, named after it.
std::vector<ReportFile> errorFiles();

/// Both.
std::vector<ReportFile> reportFiles();

}  // namespace test
