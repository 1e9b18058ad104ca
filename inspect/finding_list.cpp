#include "inspect/finding_list.h"

#include <algorithm>
#include <string>

#include "vocabulary/registry.h"

namespace corvinex::inspect {

namespace {

std::string tagText(const Directory* directory, std::optional<std::uint16_t> tag) {
    const std::uint16_t number = tag.value_or(0);
    const registry::TagFact* fact =
        directory == nullptr ? nullptr : registry::findTag(directory->kind(), number);
    return fact == nullptr ? "tag " + std::to_string(number)
                           : std::string(fact->name) + " (" + std::to_string(number) + ")";
}

std::string argumentText(const Finding& finding, std::size_t index) {
    struct Text {
        std::string operator()(const std::string& text) const { return text; }
        std::string operator()(std::uint64_t number) const { return std::to_string(number); }
        std::string operator()(std::int64_t number) const { return std::to_string(number); }
    };
    return index < finding.arguments.size() ? std::visit(Text(), finding.arguments[index])
                                            : std::string();
}

Finding makeFinding(Rule rule, const Directory* directory, std::optional<std::uint16_t> tag,
                    std::vector<Argument> arguments) {
    const RuleFact& fact = findingRules().at(static_cast<std::size_t>(rule));
    Finding finding{.id = fact.id,
                    .severity = fact.severity,
                    .directory = directory == nullptr ? std::string() : directory->path(),
                    .tag = tag,
                    .arguments = std::move(arguments),
                    .text = {}};
    finding.text = describeFinding(fact, directory, finding);
    return finding;
}

}  // namespace

std::string describeFinding(const RuleFact& rule, const Directory* directory,
                            const Finding& finding) {
    std::string text;
    std::string_view rest = rule.text;
    while (!rest.empty()) {
        const std::size_t open = std::min(rest.find('{'), rest.size());
        text += rest.substr(0, open);
        rest.remove_prefix(open);
        if (rest.empty()) {
            break;
        }
        const std::size_t close = rest.find('}');
        const std::string_view name = rest.substr(1, close - 1);
        rest.remove_prefix(close + 1);
        if (name == "tag") {
            text += tagText(directory, finding.tag);
        } else if (name == "dir") {
            text += finding.directory;
        } else {
            text += argumentText(finding, static_cast<std::size_t>(name.front() - '1'));
        }
    }
    if (text.starts_with("tag ")) {
        text.front() = 'T';
    }
    return text;
}

void FindingList::beginDirectory(const Directory* directory) {
    endDirectory();
    directory_ = directory;
}

void FindingList::endDirectory() {
    for (std::size_t rule = 0; touched_.any() && rule < ruleCount; ++rule) {
        if (!touched_.test(rule)) {
            continue;
        }
        touched_.reset(rule);
        Pending& pending = pending_.at(rule);
        std::size_t shown = 0;
        for (Kept& kept : pending.kept) {
            if (shown_.at(rule) == shownInFile) {
                break;
            }
            findings_.push_back(makeFinding(static_cast<Rule>(rule), directory_, kept.tag,
                                            std::move(kept.arguments)));
            ++shown_.at(rule);
            ++shown;
        }
        hidden_.at(rule) += pending.found - shown;
        pending.kept.clear();
        pending.found = 0;
    }
}

std::vector<Finding> FindingList::finish() && {
    endDirectory();
    for (std::size_t rule = 0; rule < ruleCount; ++rule) {
        if (hidden_.at(rule) == 0) {
            continue;
        }
        const RuleFact& fact = findingRules().at(rule);
        Finding more{.id = "more",
                     .severity = fact.severity,
                     .directory = {},
                     .tag = std::nullopt,
                     .arguments = {},
                     .text = std::to_string(hidden_.at(rule)) + " more findings " +
                             std::string(fact.id) + " are not shown."};
        more.arguments.emplace_back(std::string(fact.id));
        more.arguments.emplace_back(hidden_.at(rule));
        findings_.push_back(std::move(more));
    }
    return std::move(findings_);
}

}  // namespace corvinex::inspect
