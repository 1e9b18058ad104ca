#pragma once

#include <cstdint>

#include "host/interface/array.h"

namespace fuzz {

/// A digest of everything in a value: it reads each element, name and nested value. Null is 0.
std::uint64_t digestOf(const zxArray* value);

/// Ends the process, so that the fuzzer keeps the input, when a condition does not hold.
void require(bool condition, const char* what);

}  // namespace fuzz
