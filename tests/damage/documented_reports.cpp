#include "tests/damage/documented_reports.h"

#include <fstream>
#include <stdexcept>

namespace test {

namespace {

DocumentedReports readPage() {
    std::ifstream page(CORVINEX_REPORTS_PAGE);
    DocumentedReports reports;
    std::set<std::string>* section = nullptr;
    std::string line;
    while (std::getline(page, line)) {
        if (line == "## Errors") {
            section = &reports.errors;
        } else if (line == "## Warnings") {
            section = &reports.warnings;
        } else if (section != nullptr && line.starts_with("| `") &&
                   line.find("unreachable in a read |") == std::string::npos) {
            const std::string id = line.substr(3, line.find('`', 3) - 3);
            section->insert(id.find(':') == std::string::npos ? "quorra:corvinex:" + id : id);
        }
    }
    if (reports.errors.empty() || reports.warnings.empty()) {
        throw std::runtime_error("no reports in " CORVINEX_REPORTS_PAGE);
    }
    return reports;
}

}  // namespace

const DocumentedReports& documentedReports() {
    static const DocumentedReports reports = readPage();
    return reports;
}

}  // namespace test
