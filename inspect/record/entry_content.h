#pragma once

#include <optional>
#include <string>
#include <vector>

#include "corvinex/entry.h"
#include "corvinex/file.h"
#include "corvinex/value.h"
#include "inspect/interpretation.h"
#include "inspect/value_budget.h"

namespace corvinex::inspect {

/// What a record tells of an entry's value.
struct EntryContent {
    /// Nothing where the value does not lie in the file, cannot be read, or passes the budget.
    std::optional<Value> value;
    Interpretation interpretation;    ///< of the value
    std::optional<std::string> text;  ///< what a person wants to read
    bool isBeyondBudget = false;
};

/// Reads the value of an entry when the budget has room for it.
[[nodiscard]] EntryContent readContent(const Entry& entry, ValueBudget& budget);

/// The path of the directory that each value of a pointer leads to, empty where it leads to none.
/// Nothing when the paths pass the budget.
[[nodiscard]] std::optional<std::vector<std::string>> targetPaths(const File& file,
                                                                  const Entry& entry,
                                                                  ValueBudget& budget);

}  // namespace corvinex::inspect
