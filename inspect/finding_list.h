#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "corvinex/directory.h"
#include "corvinex/finding.h"
#include "inspect/finding_rules.h"

namespace corvinex::inspect {

/// Collects the findings of a file, directory by directory in the order of the walk, and keeps few
/// of each rule: 3 in a directory and 12 in a file. The others are counted. One broken habit of a
/// writer would hide everything else otherwise, and a file built for it would fill the memory.
class FindingList {
  public:
    /// Ends the directory before. Null: the file as a whole, which comes first.
    void beginDirectory(const Directory* directory);

    /// Adds a finding to the directory; those of one rule come by entry position. The arguments are
    /// made by a function, which is called only when the finding is kept.
    template <class MakeArguments>
    void add(Rule rule, std::optional<std::uint16_t> tag, MakeArguments makeArguments) {
        Pending& pending = pending_[static_cast<std::size_t>(rule)];
        touched_.set(static_cast<std::size_t>(rule));
        ++pending.found;
        if (pending.kept.size() < shownInDirectory && hasRoom(rule)) {
            pending.kept.push_back({tag, makeArguments()});
        }
    }
    void add(Rule rule, std::optional<std::uint16_t> tag = std::nullopt) {
        add(rule, tag, [] { return std::vector<Argument>(); });
    }

    /// The list, the counts of what is not shown last.
    [[nodiscard]] std::vector<Finding> finish() &&;

  private:
    static constexpr std::size_t shownInDirectory = 3;
    static constexpr std::size_t shownInFile = 12;

    struct Kept {
        std::optional<std::uint16_t> tag;
        std::vector<Argument> arguments;
    };
    struct Pending {
        std::vector<Kept> kept;
        std::uint64_t found = 0;
    };

    [[nodiscard]] bool hasRoom(Rule rule) const {
        return shown_[static_cast<std::size_t>(rule)] < shownInFile;
    }
    void endDirectory();

    const Directory* directory_ = nullptr;
    std::array<Pending, ruleCount> pending_;
    std::bitset<ruleCount> touched_;
    std::array<std::size_t, ruleCount> shown_{};
    std::array<std::uint64_t, ruleCount> hidden_{};
    std::vector<Finding> findings_;
};

/// The sentence of a finding, with its tag and arguments put in.
[[nodiscard]] std::string describeFinding(const RuleFact& rule, const Directory* directory,
                                          const Finding& finding);

}  // namespace corvinex::inspect
