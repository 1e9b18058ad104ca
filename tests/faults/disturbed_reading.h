#pragma once

#include "tests/faults/entry_run.h"

namespace test {

/// Expects that a call whose file failed on the way, after its status was taken, accounts for all
/// that is missing: it ends in a documented error, or each difference from the undisturbed result
/// comes with a warning of a failed seek or read. At most one directory has differences; those
/// before it are whole, and the chain may end after it.
void expectAccountedFor(const Outcome& outcome, const Outcome& undisturbed);

}  // namespace test
