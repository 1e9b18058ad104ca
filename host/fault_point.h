#pragma once

#include "host/faults.h"

// Where the operations of the host meet the failures on command.

namespace host {

/// Counts one call of an operation in this thread; true when that call is to fail.
[[nodiscard]] bool faultDue(Operation operation) noexcept;

/// The same, raising OperationFailed when the call is to fail.
void faultPoint(Operation operation);

}  // namespace host
