#pragma once

#include <cstddef>
#include <stdexcept>

#include "host/interface/export.h"

// Failures on command: any operation that the stand-alone host supplies can be made to fail at its
// n-th call in this thread. The library corvinex-faulty-host defines the operations once more, in
// front of the host's own, counts the calls and hands them on; the host itself knows nothing of it.
// destroyArray releases and cannot fail.

namespace test {

enum class Operation {
    zxGetScalar,
    zxGetElements,
    zxGetElementCount,
    zxCreateDoubleScalar,
    zxCreateNumericArray,
    zxCreateString,
    zxCreateCharArray,
    zxCreateCellArray,
    zxSetCell,
    zxCreateStructArray,
    zxSetField,
    createFromUtf16,
    createFromNarrow,
    to_korvel,
    isScalarText,
    isString,
    getString,
    zxWarningMsgId,
    do_legacy_zx_error,
    exists,
    status,
    fopen,
    timezone,
    from_utc,
    to_ustring,
    detect_charset,
    codecvt_string_to_ustring,
};

inline constexpr std::size_t operationCount = 27;

/// What a failing operation raises. Two fail otherwise: fopen returns null, and do_legacy_zx_error
/// returns to the module.
class ZX_HOST_API OperationFailed : public std::runtime_error {
  public:
    explicit OperationFailed(Operation operation);
    ~OperationFailed() override;
    [[nodiscard]] Operation operation() const noexcept { return operation_; }

  private:
    Operation operation_;
};

/// Makes the n-th call from now on (1 is the next one) of one operation fail once, in this thread,
/// while it lives. Faults of different operations may stand side by side; an operation has one at a
/// time, the latest. Raises std::invalid_argument when n is 0.
class ZX_HOST_API ScopedFault {
  public:
    ScopedFault(Operation operation, std::size_t n);
    ~ScopedFault();
    ScopedFault(const ScopedFault&) = delete;
    ScopedFault& operator=(const ScopedFault&) = delete;

  private:
    Operation operation_;
};

/// How often this thread has called an operation.
ZX_HOST_API std::size_t callsOf(Operation operation) noexcept;

/// Counts one call of an operation in this thread; true when that call is to fail.
[[nodiscard]] bool faultDue(Operation operation) noexcept;

}  // namespace test
