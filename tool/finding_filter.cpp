#include "tool/finding_filter.h"

#include <algorithm>
#include <variant>

#include "inspect/record/finding_json.h"
#include "inspect/record/record_head.h"
#include "inspect/rules/rule_table.h"
#include "tool/nearest_name.h"
#include "tool/usage_error.h"

namespace tool {
namespace {

using corvinex::inspect::File;
using corvinex::inspect::Finding;
using corvinex::inspect::RuleFact;
using corvinex::inspect::Severity;
using corvinex::inspect::Status;

constexpr std::string_view moreId = "more";

bool isMore(const Finding& finding) {
    return finding.id == moreId && finding.arguments.size() == 2;
}

void checkIds(std::span<const std::string> ids) {
    std::vector<std::string_view> known;
    for (const RuleFact& rule : corvinex::inspect::findingRules()) {
        known.push_back(rule.id);
    }
    for (const std::string& id : ids) {
        if (std::ranges::find(known, id) != known.end()) {
            continue;
        }
        std::string reason = "there is no rule \"" + id + '"';
        if (const auto nearest = nearestName(id, known)) {
            reason.append("; the nearest is \"").append(*nearest).append("\"");
        }
        throw UsageError(reason);
    }
}

Status statusFrom(const File& file, const Verdict& verdict) {
    Severity worst = Severity::Note;
    for (const Finding* const finding : verdict.findings) {
        worst = std::max(worst, finding->severity);
    }
    if (worst != Severity::Note) {
        return worst == Severity::Error ? Status::Damaged : Status::Warnings;
    }
    return file.headerOffset() ? Status::Ok : Status::NoMetadata;
}

}  // namespace

std::string_view ruleOf(const Finding& finding) {
    return isMore(finding) ? std::string_view(std::get<std::string>(finding.arguments.front()))
                           : finding.id;
}

std::uint64_t countOf(const Finding& finding) {
    return isMore(finding) ? std::get<std::uint64_t>(finding.arguments.back()) : 1;
}

FindingFilter::FindingFilter(std::span<const std::string> only,
                             std::span<const std::string> ignored)
    : only_(only.begin(), only.end()), ignored_(ignored.begin(), ignored.end()) {
    checkIds(only);
    checkIds(ignored);
}

bool FindingFilter::shows(const Finding& finding) const {
    const std::string_view rule = ruleOf(finding);
    return (only_.empty() || std::ranges::find(only_, rule) != only_.end()) &&
           std::ranges::find(ignored_, rule) == ignored_.end();
}

Verdict FindingFilter::judge(const File* file) const {
    Verdict verdict{.status = corvinex::inspect::statusOf(file), .findings = {}};
    for (const Finding& finding : corvinex::inspect::findingsOf(file)) {
        if (shows(finding)) {
            verdict.findings.push_back(&finding);
        }
    }
    if (verdict.status != Status::Unreadable && verdict.status != Status::NotAnImage) {
        verdict.status = statusFrom(*file, verdict);
    }
    return verdict;
}

}  // namespace tool
