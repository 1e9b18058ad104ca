#include "tests/support/faults.h"

#include <array>
#include <string>

namespace test {

namespace {

struct CallCount {
    std::size_t calls = 0;
    std::size_t failingCall = 0;  // 0: none
};

/// This thread's counts, in the order of Operation.
thread_local constinit std::array<CallCount, operationCount> callCounts;

constexpr std::array<const char*, operationCount> operationNames = {
    "zxGetScalar",
    "zxGetElements",
    "zxGetElementCount",
    "zxCreateDoubleScalar",
    "zxCreateNumericArray",
    "zxCreateString",
    "zxCreateCharArray",
    "zxCreateCellArray",
    "zxSetCell",
    "zxCreateStructArray",
    "zxSetField",
    "create (UTF-16)",
    "create (narrow)",
    "to_korvel",
    "isScalarText",
    "isString",
    "getString",
    "zxWarningMsgId",
    "do_legacy_zx_error",
    "exists",
    "status",
    "fopen",
    "timezone",
    "from_utc",
    "to_ustring",
    "detect_charset",
    "codecvt_string_to_ustring",
};

CallCount& countOf(Operation operation) noexcept {
    return callCounts[static_cast<std::size_t>(operation)];
}

}  // namespace

OperationFailed::OperationFailed(Operation operation)
    : std::runtime_error(std::string(operationNames.at(static_cast<std::size_t>(operation))) +
                         " failed on command"),
      operation_(operation) {}

OperationFailed::~OperationFailed() = default;

ScopedFault::ScopedFault(Operation operation, std::size_t n) : operation_(operation) {
    if (n == 0) {
        throw std::invalid_argument("the first call that can fail is call 1");
    }
    CallCount& count = countOf(operation);
    count.failingCall = count.calls + n;
}

ScopedFault::~ScopedFault() {
    countOf(operation_).failingCall = 0;
}

std::size_t callsOf(Operation operation) noexcept {
    return countOf(operation).calls;
}

bool faultDue(Operation operation) noexcept {
    CallCount& count = countOf(operation);
    return ++count.calls == count.failingCall;
}

}  // namespace test
