#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "corvinex/directory.h"
#include "corvinex/file.h"
#include "inspect/value_budget.h"

namespace tool {

/// Directories one behind the other that are alike: of one kind, with the same tags in the same
/// order, and the same phrase for what they hold.
struct DirectoryFold {
    std::size_t first = 0;  ///< index in File::directories()
    std::size_t last = 0;
    /// The tags whose values are not those of the first directory in all of them, in order.
    std::vector<std::string> differences;
};

/// Finds the fold that begins with a directory. All folds of a file are found in time in proportion
/// to its entries and to the bytes of values that the budget allows to be compared; beyond it a
/// value counts as another.
[[nodiscard]] DirectoryFold foldAt(const corvinex::inspect::File& file, std::size_t first,
                                   corvinex::inspect::ValueBudget& budget);

}  // namespace tool
