#pragma once

#include "corvinex/entry.h"
#include "corvinex/file.h"
#include "inspect/value_budget.h"
#include "tool/value_cell.h"

namespace tool {

/// How much of a value is shown.
struct ValueView {
    bool isWhole = false;  ///< nothing is cut
    bool isRaw = false;    ///< the value as it is stored, and beside it what it means
};

/// Shows an entry's value as a person reads it: what it means where that says more than the value.
/// Values are read while they fit into the budget. Takes time in proportion to the value.
void showValue(ValueCell& cell, const corvinex::inspect::File& file,
               const corvinex::inspect::Entry& entry, corvinex::inspect::ValueBudget& budget,
               ValueView view);

}  // namespace tool
