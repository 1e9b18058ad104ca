#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What reports of the module and findings of the inspection mean to whoever meets them. Constant
// data; docs/reports.md and docs/findings.md say the same.

namespace tool {

/// In which part of its page a report stands.
enum class ReportGroup : std::uint8_t { Error, Chain, Entry, Pointer };

/// One report of the module. One ID may be that of an error and of a warning.
struct ReportExplanation {
    ReportGroup group;
    std::string_view id;  ///< as the page gives it: without the module's prefix
    std::string_view arguments;
    std::string_view meaning;
    std::string_view outcome;  ///< what becomes of the data; of errors empty: there is no output
    std::string_view once;     ///< of warnings issued once in a file, by what; else empty
    std::string_view advice;
};
[[nodiscard]] std::span<const ReportExplanation> reportExplanations() noexcept;

/// One finding of the inspection. Severity and text stand in the rules themselves.
struct FindingExplanation {
    std::string_view id;
    std::string_view meaning;
    std::string_view outcome;
    std::string_view advice;
};
[[nodiscard]] std::span<const FindingExplanation> findingExplanations() noexcept;

/// What the IDs of the module's own reports begin with.
inline constexpr std::string_view reportPrefix = "quorra:corvinex:";

/// Either of them, as a person is told.
struct Explanation {
    std::string id;              ///< in full
    std::string kind;            ///< "error of the module", "finding (note)" and so on
    std::string_view message;    ///< of a finding, with places for its arguments; else empty
    std::string_view arguments;  ///< of a report; else empty
    std::string_view meaning;
    std::string_view outcome;
    std::string_view advice;
};

/// All of them: findings first, then reports.
[[nodiscard]] std::vector<Explanation> allExplanations();

}  // namespace tool
