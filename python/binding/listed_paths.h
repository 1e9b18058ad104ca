#pragma once

#include <pybind11/pybind11.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tool/path_list.h"

// Lists of paths as they go from machine to machine: names as bytes, and beside them a byte for
// each that tells whether it was asked for, and 25 bytes of its stamp. No object is made for a
// stamp, of which there are as many as files.

namespace python {

/// What a stamp takes: 1 where there is one, then size, time and inode, lowest byte first.
[[nodiscard]] pybind11::bytes packedStamps(std::span<const std::optional<tool::FileStamp>> stamps);

}  // namespace python
