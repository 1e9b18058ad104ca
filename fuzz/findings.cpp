#include <algorithm>
#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "corvinex/inspect.h"
#include "fuzz/target.h"
#include "fuzz/value_walk.h"
#include "inspect/rules/rule_table.h"

// What the rules find in the whole input: every finding is asked for, and its promises are checked.

namespace {

using corvinex::inspect::Container;
using corvinex::inspect::Directory;
using corvinex::inspect::File;
using corvinex::inspect::Finding;
using corvinex::inspect::findingRules;
using corvinex::inspect::RuleFact;
using corvinex::inspect::Severity;
using corvinex::inspect::Status;

constexpr std::string_view notShown = "more";

const RuleFact& ruleOf(std::string_view id) {
    const auto& rules = findingRules();
    const auto* const rule = std::ranges::find(rules, id, &RuleFact::id);
    fuzz::require(rule != rules.end(), "a finding of no rule");
    return *rule;
}

bool isPrintable(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

void checkText(const Finding& finding) {
    fuzz::require(!finding.text.empty() && isPrintable(finding.text), "a text for no terminal");
    const bool hasOwnBrace = std::ranges::any_of(finding.arguments, [](const auto& argument) {
        const auto* const text = std::get_if<std::string>(&argument);
        return text != nullptr && text->find('{') != std::string::npos;
    });
    fuzz::require(hasOwnBrace || finding.text.find('{') == std::string::npos,
                  "a place without its argument");
}

/// Counts the findings of each rule, in each directory and in the file.
class Caps {
  public:
    void count(const Finding& finding) {
        fuzz::require(++inDirectory_[{finding.id, finding.directory}] <= 3,
                      "too many findings in a directory");
        fuzz::require(++inFile_[finding.id] <= 12, "too many findings in a file");
    }
    [[nodiscard]] bool has(std::string_view id) const { return inFile_.contains(id); }

  private:
    std::map<std::pair<std::string_view, std::string_view>, unsigned> inDirectory_;
    std::map<std::string_view, unsigned> inFile_;
};

/// The finding that counts those which are not shown.
void checkCount(const Finding& finding, const Caps& caps) {
    fuzz::require(finding.arguments.size() == 2 && finding.directory.empty() && !finding.tag,
                  "a count with other arguments");
    const auto& id = std::get<std::string>(finding.arguments.front());
    fuzz::require(finding.severity == ruleOf(id).severity, "a count of another severity");
    fuzz::require(caps.has(id), "findings of which none is shown");
}

void checkFindings(const File& file) {
    Caps caps;
    bool isCounting = false;
    for (const Finding& finding : file.findings()) {
        checkText(finding);
        isCounting = isCounting || finding.id == notShown;
        if (isCounting) {
            fuzz::require(finding.id == notShown, "a finding behind the counts");
            checkCount(finding, caps);
            continue;
        }
        fuzz::require(finding.severity == ruleOf(finding.id).severity, "another severity");
        fuzz::require(finding.directory.empty() ||
                          std::ranges::any_of(file.directories(),
                                              [&](const Directory& directory) {
                                                  return directory.path() == finding.directory;
                                              }),
                      "a finding of no directory");
        caps.count(finding);
    }
}

/// The status as the findings tell it.
Status statusByFindings(const File& file) {
    const auto has = [&](Severity severity) {
        return std::ranges::any_of(
            file.findings(), [&](const Finding& finding) { return finding.severity == severity; });
    };
    if (!file.container()) {
        return Status::NotAnImage;
    }
    if (has(Severity::Error)) {
        return Status::Damaged;
    }
    if (has(Severity::Warning)) {
        return Status::Warnings;
    }
    const bool hasBlock = file.container() != Container::Jpeg || file.headerOffset();
    return hasBlock ? Status::Ok : Status::NoMetadata;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const File file = File::fromBytes(std::as_bytes(std::span(data, size)));
    checkFindings(file);
    fuzz::require(file.status() == statusByFindings(file), "another status");
    fuzz::require(file.container() || file.findings().empty(), "findings of what is no image");
    return 0;
}
