#pragma once

#include <optional>
#include <string_view>

#include "host/interface/array.h"

// Text arguments of a call.

namespace Quillon::String {

/// With false, false: true for a character row vector (1 x n) and for a string scalar, a missing
/// one included.
ZX_HOST_API bool isScalarText(const zxArray* value, bool allowEmptyArray, bool allowCellText);
/// True for a string value.
ZX_HOST_API bool isString(const zxArray* value);
/// The UTF-16 code units of a string scalar, valid while the value lives; nothing when the string
/// is missing.
ZX_HOST_API std::optional<std::u16string_view> getString(const zxArray* value);

}  // namespace Quillon::String
