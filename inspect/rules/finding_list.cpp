#include "inspect/rules/finding_list.h"

#include <algorithm>
#include <string>
#include <tuple>

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

std::string textOf(const Argument& argument) {
    struct Text {
        std::string operator()(const std::string& text) const { return text; }
        std::string operator()(std::uint64_t number) const { return std::to_string(number); }
        std::string operator()(std::int64_t number) const { return std::to_string(number); }
    };
    return std::visit(Text(), argument);
}

std::string listText(const std::vector<Argument>& arguments) {
    std::string text;
    for (const Argument& argument : arguments) {
        text.append(text.empty() ? "" : ", ").append(textOf(argument));
    }
    return text;
}

/// What stands for a name between braces.
std::string placeText(std::string_view name, const Directory* directory, const Finding& finding) {
    if (name == "tag") {
        return tagText(directory, finding.tag);
    }
    if (name == "dir") {
        return finding.directory;
    }
    if (name == "list") {
        return listText(finding.arguments);
    }
    const auto index = static_cast<std::size_t>(name.front() - '1');
    return index < finding.arguments.size() ? textOf(finding.arguments[index]) : std::string();
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
        text += placeText(rest.substr(1, close - 1), directory, finding);
        rest.remove_prefix(close + 1);
    }
    if (text.starts_with("tag ")) {
        text.front() = 'T';
    }
    return text;
}

FindingList::Kept* FindingList::note(Rule rule, FindingPlace place) {
    const auto row = static_cast<std::size_t>(rule);
    Pending& pending = pending_[row];
    touched_.set(row);
    ++pending.found;
    if (shown_[row] == shownInFile) {
        return nullptr;
    }
    const auto at = std::ranges::upper_bound(pending.kept, place.order, {},
                                             [](const Kept& kept) { return kept.place.order; });
    const auto index = static_cast<std::size_t>(at - pending.kept.begin());
    if (index == shownInDirectory) {
        return nullptr;
    }
    if (pending.kept.size() == shownInDirectory) {
        pending.kept.pop_back();
    }
    return &*pending.kept.insert(
        pending.kept.begin() + static_cast<std::ptrdiff_t>(index),
        {.place = place, .arguments = {}, .directory = directory_, .rule = rule});
}

void FindingList::beginDirectory(std::uint32_t directory) {
    endDirectory();
    directory_ = directory;
}

void FindingList::endDirectory() {
    for (std::size_t row = 0; touched_.any() && row < ruleCount; ++row) {
        if (!touched_.test(row)) {
            continue;
        }
        touched_.reset(row);
        Pending& pending = pending_.at(row);
        const std::size_t shown =
            std::min<std::size_t>(pending.kept.size(), shownInFile - shown_.at(row));
        for (std::size_t i = 0; i < shown; ++i) {
            shownFindings_.push_back(std::move(pending.kept[i]));
        }
        shown_.at(row) = static_cast<std::uint8_t>(shown_.at(row) + shown);
        hidden_.at(row) += pending.found - shown;
        pending.kept.clear();
        pending.found = 0;
    }
}

Finding FindingList::makeFinding(Kept& kept) const {
    const RuleFact& fact = findingRules().at(static_cast<std::size_t>(kept.rule));
    const Directory* directory =
        kept.directory == wholeFile ? nullptr : &file_.directories[kept.directory];
    Finding finding{.id = fact.id,
                    .severity = fact.severity,
                    .directory = directory == nullptr ? std::string() : directory->path(),
                    .tag = kept.place.tag,
                    .arguments = std::move(kept.arguments),
                    .text = {}};
    finding.text = describeFinding(fact, directory, finding);
    return finding;
}

std::vector<Finding> FindingList::finish() && {
    endDirectory();
    // The whole file stands before its directories.
    std::ranges::stable_sort(shownFindings_, {}, [](const Kept& kept) {
        return std::tuple(kept.directory != wholeFile, kept.directory, kept.rule);
    });
    std::vector<Finding> findings;
    findings.reserve(shownFindings_.size());
    for (Kept& kept : shownFindings_) {
        findings.push_back(makeFinding(kept));
    }
    for (std::size_t row = 0; row < ruleCount; ++row) {
        if (hidden_.at(row) == 0) {
            continue;
        }
        const RuleFact& fact = findingRules().at(row);
        Finding more{.id = "more",
                     .severity = fact.severity,
                     .directory = {},
                     .tag = std::nullopt,
                     .arguments = {},
                     .text = std::to_string(hidden_.at(row)) + " more findings " +
                             std::string(fact.id) + " are not shown."};
        more.arguments.emplace_back(std::string(fact.id));
        more.arguments.emplace_back(hidden_.at(row));
        findings.push_back(std::move(more));
    }
    return findings;
}

}  // namespace corvinex::inspect
