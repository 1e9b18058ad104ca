#pragma once

#include <array>
#include <bitset>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "corvinex/directory.h"
#include "corvinex/finding.h"
#include "inspect/file_content.h"
#include "inspect/rules/rule_table.h"

namespace corvinex::inspect {

/// What a finding belongs to inside of its directory: a tag or none, and the place in it by which
/// findings of one rule are put in order, mostly that of the entry. Equal ones keep the order in
/// which they were added.
struct FindingPlace {
    FindingPlace() = default;
    // A tag by itself says where a finding belongs.
    // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions)
    FindingPlace(std::uint16_t number) : tag(number) {}
    FindingPlace(std::optional<std::uint16_t> number, std::uint32_t at) : tag(number), order(at) {}

    std::optional<std::uint16_t> tag;
    std::uint32_t order = 0;
};

/// Collects the findings of a file, and keeps few of each rule: 3 in a directory and 12 in a file.
/// The others are counted. One broken habit of a writer would hide everything else otherwise, and a
/// file built for it would fill the memory.
class FindingList {
  public:
    static constexpr std::uint32_t wholeFile = DirectoryRecord::none;

    explicit FindingList(const FileContent& file) noexcept : file_(file) {}

    /// Ends the directory before; wholeFile stands for none. Each rule is asked of the directories
    /// in the order of the walk; different rules may go through them one after the other.
    void beginDirectory(std::uint32_t directory);

    /// Adds a finding to the directory. Arguments are numbers, texts and directories, which stand
    /// for their paths; they are made only when the finding is kept.
    template <class... Arguments>
    void add(Rule rule, FindingPlace place, const Arguments&... arguments) {
        if (Kept* const kept = note(rule, place)) {
            kept->arguments.reserve(sizeof...(arguments));
            (kept->arguments.push_back(argumentOf(arguments)), ...);
        }
    }
    /// The same with any number of arguments.
    void addWithList(Rule rule, FindingPlace place, std::vector<Argument> arguments) {
        if (Kept* const kept = note(rule, place)) {
            kept->arguments = std::move(arguments);
        }
    }

    /// The list in its order, the counts of what is not shown last.
    [[nodiscard]] std::vector<Finding> finish() &&;

  private:
    static constexpr std::size_t shownInDirectory = 3;
    static constexpr std::size_t shownInFile = 12;

    struct Kept {
        FindingPlace place;
        std::vector<Argument> arguments;
        std::uint32_t directory = wholeFile;
        Rule rule{};
    };
    /// Findings of one rule in the directory.
    struct Pending {
        std::vector<Kept> kept;
        std::uint64_t found = 0;
    };

    template <std::unsigned_integral Number>
    static Argument argumentOf(Number number) {
        return std::uint64_t{number};
    }
    template <std::signed_integral Number>
    static Argument argumentOf(Number number) {
        return std::int64_t{number};
    }
    static Argument argumentOf(std::string_view text) { return std::string(text); }
    static Argument argumentOf(const std::string& text) { return text; }
    static Argument argumentOf(const Directory& directory) { return directory.path(); }
    static Argument argumentOf(const Argument& argument) { return argument; }

    /// Counts a finding; null when it is not shown, else what is to get its arguments.
    Kept* note(Rule rule, FindingPlace place);
    void endDirectory();
    [[nodiscard]] Finding makeFinding(Kept& kept) const;

    const FileContent& file_;
    std::uint32_t directory_ = wholeFile;
    std::array<Pending, ruleCount> pending_;
    std::bitset<ruleCount> touched_;
    std::array<std::uint8_t, ruleCount> shown_{};
    std::array<std::uint64_t, ruleCount> hidden_{};
    std::vector<Kept> shownFindings_;
};

/// The sentence of a finding, with its tag and arguments put in.
[[nodiscard]] std::string describeFinding(const RuleFact& rule, const Directory* directory,
                                          const Finding& finding);

}  // namespace corvinex::inspect
