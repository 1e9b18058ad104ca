#pragma once

#include <array>
#include <cstddef>

#include "host/faults.h"

// Where the operations of the host meet the failures on command. A result takes many operations, so
// counting one is a matter of a few instructions.

namespace host {

struct CallCount {
    std::size_t calls = 0;
    std::size_t failingCall = 0;  // 0: none
};

/// This thread's counts, in the order of Operation.
[[gnu::tls_model(
    "initial-exec")]] extern thread_local constinit std::array<CallCount, operationCount>
    callCounts;

[[noreturn]] void failOnCommand(Operation operation);

/// Counts one call of an operation in this thread; true when that call is to fail.
[[nodiscard]] inline bool faultDue(Operation operation) noexcept {
    CallCount& count = callCounts[static_cast<std::size_t>(operation)];
    return ++count.calls == count.failingCall;
}

/// The same, raising OperationFailed when the call is to fail.
inline void faultPoint(Operation operation) {
    if (faultDue(operation)) {
        failOnCommand(operation);
    }
}

}  // namespace host
