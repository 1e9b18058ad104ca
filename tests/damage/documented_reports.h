#pragma once

#include <set>
#include <string>

namespace test {

/// The message IDs that docs/reports.md lists, but for those that it calls unreachable.
struct DocumentedReports {
    std::set<std::string> errors;
    std::set<std::string> warnings;
};

const DocumentedReports& documentedReports();

}  // namespace test
