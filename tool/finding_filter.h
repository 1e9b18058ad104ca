#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "corvinex/file.h"
#include "corvinex/finding.h"

namespace tool {

/// The rule that a finding belongs to; of one that counts others that are not shown, theirs.
[[nodiscard]] std::string_view ruleOf(const corvinex::inspect::Finding& finding);
/// How many findings it stands for.
[[nodiscard]] std::uint64_t countOf(const corvinex::inspect::Finding& finding);

/// What is said of a file. The findings belong to the file, or are constant.
struct Verdict {
    corvinex::inspect::Status status = corvinex::inspect::Status::Ok;
    std::vector<const corvinex::inspect::Finding*> findings;
};

/// Which rules are asked for.
class FindingFilter {
  public:
    /// With IDs in the first list only these; never those in the second. Raises UsageError for what
    /// is no rule's ID.
    FindingFilter(std::span<const std::string> only, std::span<const std::string> ignored);

    [[nodiscard]] bool shows(const corvinex::inspect::Finding& finding) const;

    /// The findings that are asked for, and the status that follows from them alone. That a file
    /// could not be read (null) or is no image stays its status in any case.
    [[nodiscard]] Verdict judge(const corvinex::inspect::File* file) const;

  private:
    std::vector<std::string> only_;
    std::vector<std::string> ignored_;
};

}  // namespace tool
