#include "tool/check_totals.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "inspect/reading/number_text.h"

namespace tool {
namespace {

using corvinex::inspect::Finding;
using corvinex::inspect::severityName;
using corvinex::inspect::Status;
using corvinex::inspect::statusName;
using corvinex::inspect::reading::countText;
using corvinex::inspect::reading::decimalText;
using corvinex::inspect::reading::groupedText;

/// "3.4 GB": units of 1000, as disks are sold.
std::string bytesText(double bytes) {
    static constexpr std::array<std::string_view, 6> units{"bytes", "kB", "MB", "GB", "TB", "PB"};
    constexpr double step = 1000;
    std::size_t unit = 0;
    while (bytes >= step && unit + 1 < units.size()) {
        bytes /= step;
        ++unit;
    }
    return decimalText(bytes, unit == 0 ? 0 : 1).value_or("0").append(" ").append(units.at(unit));
}

std::string padded(std::string_view text, std::size_t width) {
    std::string result(text);
    result.resize(std::max(width, text.size()), ' ');
    return result;
}

std::string rightAligned(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

}  // namespace

void CheckTotals::add(const Verdict& verdict, std::uint64_t bytes) {
    ++files_;
    bytes_ += bytes;
    ++byStatus_.at(static_cast<std::size_t>(verdict.status));
    std::set<const RuleTotal*> seen;
    for (const Finding* const finding : verdict.findings) {
        const std::string_view rule = ruleOf(*finding);
        auto place = byRule_.find(rule);
        if (place == byRule_.end()) {
            place = byRule_.emplace(rule, RuleTotal{.severity = finding->severity}).first;
        }
        RuleTotal& total = place->second;
        total.findings += countOf(*finding);
        total.files += seen.insert(&total).second ? 1 : 0;
    }
}

void CheckTotals::add(const CheckTotals& others) {
    files_ += others.files_;
    bytes_ += others.bytes_;
    std::ranges::transform(byStatus_, others.byStatus_, byStatus_.begin(), std::plus());
    for (const auto& [rule, theirs] : others.byRule_) {
        RuleTotal& total =
            byRule_.try_emplace(rule, RuleTotal{.severity = theirs.severity}).first->second;
        total.files += theirs.files;
        total.findings += theirs.findings;
    }
}

std::uint64_t CheckTotals::filesWith(Status status) const {
    return byStatus_.at(static_cast<std::size_t>(status));
}

void CheckTotals::print(std::ostream& out, std::chrono::duration<double> elapsed) const {
    const double seconds = std::max(elapsed.count(), 1e-3);
    out << countText(files_, "file", "files") << ", " << bytesText(static_cast<double>(bytes_))
        << " in " << decimalText(seconds, seconds < 1 ? 3 : 1).value_or("0") << " s: "
        << groupedText(
               static_cast<std::uint64_t>(std::llround(static_cast<double>(files_) / seconds)))
        << " files and " << bytesText(static_cast<double>(bytes_) / seconds) << " a second\n";
    constexpr std::size_t nameWidth = 14;
    constexpr std::size_t numberWidth = 10;
    for (std::size_t status = 0; status < statusCount; ++status) {
        if (byStatus_.at(status) != 0) {
            out << "  " << padded(statusName(static_cast<Status>(status)), nameWidth)
                << rightAligned(groupedText(byStatus_.at(status)), numberWidth) << '\n';
        }
    }
    printRules(out);
}

void CheckTotals::printRules(std::ostream& out) const {
    using Row = std::pair<std::string_view, RuleTotal>;
    std::vector<Row> rows(byRule_.begin(), byRule_.end());
    std::ranges::stable_sort(rows, [](const Row& left, const Row& right) {
        return std::pair(left.second.severity, left.second.files) >
               std::pair(right.second.severity, right.second.files);
    });
    constexpr std::size_t severityWidth = 8;
    constexpr std::size_t idWidth = 22;
    constexpr std::size_t numberWidth = 8;
    for (const auto& [rule, total] : rows) {
        out << "  " << padded(severityName(total.severity), severityWidth) << padded(rule, idWidth)
            << rightAligned(groupedText(total.files), numberWidth)
            << (total.files == 1 ? " file,  " : " files, ")
            << countText(total.findings, "finding", "findings") << '\n';
    }
}

}  // namespace tool
