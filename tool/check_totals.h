#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <ostream>
#include <string_view>

#include "corvinex/file.h"
#include "corvinex/finding.h"
#include "tool/finding_filter.h"

namespace tool {

/// What many files come to. For one thread at a time.
class CheckTotals {
  public:
    /// Counts a file of so many bytes.
    void add(const Verdict& verdict, std::uint64_t bytes);
    /// Counts what others come to as well.
    void add(const CheckTotals& others);

    [[nodiscard]] std::uint64_t filesWith(corvinex::inspect::Status status) const;

    /// Files and bytes with their rates, files by status, and findings by rule, the worst first.
    void print(std::ostream& out, std::chrono::duration<double> elapsed) const;

  private:
    static constexpr std::size_t statusCount = 6;

    struct RuleTotal {
        corvinex::inspect::Severity severity = corvinex::inspect::Severity::Note;
        std::uint64_t files = 0;
        std::uint64_t findings = 0;
    };

    void printRules(std::ostream& out) const;

    std::uint64_t files_ = 0;
    std::uint64_t bytes_ = 0;
    std::array<std::uint64_t, statusCount> byStatus_{};
    std::map<std::string, RuleTotal, std::less<>> byRule_;
};

}  // namespace tool
