#pragma once

#include <optional>
#include <string>
#include <vector>

#include "corvinex/inspect.h"

namespace test {

/// Numbers of an inspected value as the result gives them: doubles, quotients of rationals, NaN for
/// a zero denominator, and 8-byte signed integers taken at a stride of 4 bytes. Nothing for texts.
std::optional<std::vector<double>> resultNumbersOf(const corvinex::inspect::Value& value);

/// Bytes of an inspected text without its closing zeros. Nothing for other values.
std::optional<std::string> resultTextOf(const corvinex::inspect::Value& value);

}  // namespace test
