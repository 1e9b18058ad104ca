#pragma once

#include <memory>

// The handle of a host value by name alone, for headers of what reads a file as well: none of that
// needs to know what a host value is.

class zxArray;

namespace matrix::detail {
struct zxDestroy_deleter;
}

namespace corvinex {

/// Owning handle of a host value; null stands for "no value".
using HostArray = std::unique_ptr<zxArray, matrix::detail::zxDestroy_deleter>;

}  // namespace corvinex
