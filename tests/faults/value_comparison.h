#pragma once

#include <cstddef>

#include "host/interface/array.h"

namespace test {

/// Whether two results are the same: class, size, every element (bit by bit), every name, every
/// nested value. Null equals null alone.
bool isSameValue(const zxArray* left, const zxArray* right);

/// How many directories a result has; none when it is no struct array.
std::size_t directoriesOf(const zxArray& result);

/// Whether a directory has the same fields in both results. A field that was never set equals one
/// that is not there.
bool isSameDirectory(const zxArray& left, const zxArray& right, std::size_t directory);

}  // namespace test
