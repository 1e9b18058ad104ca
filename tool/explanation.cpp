#include "tool/explanation.h"

#include <algorithm>

#include "inspect/rules/rule_table.h"

namespace tool {
namespace {

using corvinex::inspect::RuleFact;

constexpr std::string_view noOutput = "The request ends: there is no output.";

const RuleFact* ruleWithId(std::string_view id) {
    const auto& rules = corvinex::inspect::findingRules();
    const auto* const rule = std::ranges::find(rules, id, &RuleFact::id);
    return rule == rules.end() ? nullptr : rule;
}

Explanation explained(const FindingExplanation& row) {
    const RuleFact* const rule = ruleWithId(row.id);
    const std::string kind =
        rule == nullptr ? "finding" : "finding (" + std::string(severityName(rule->severity)) + ")";
    return {.id = std::string(row.id),
            .kind = kind,
            .message = rule == nullptr ? std::string_view() : rule->text,
            .arguments = {},
            .meaning = row.meaning,
            .outcome = row.outcome,
            .advice = row.advice};
}

Explanation explained(const ReportExplanation& row) {
    const bool isError = row.group == ReportGroup::Error;
    const bool isWhole = row.id.find(':') != std::string_view::npos;
    return {.id = (isWhole ? "" : std::string(reportPrefix)) + std::string(row.id),
            .kind = isError ? "error of the module" : "warning of the module",
            .message = {},
            .arguments = row.arguments,
            .meaning = row.meaning,
            .outcome = isError ? noOutput : row.outcome,
            .advice = row.advice};
}

}  // namespace

std::vector<Explanation> allExplanations() {
    std::vector<Explanation> all;
    for (const FindingExplanation& row : findingExplanations()) {
        all.push_back(explained(row));
    }
    for (const ReportExplanation& row : reportExplanations()) {
        all.push_back(explained(row));
    }
    return all;
}

}  // namespace tool
