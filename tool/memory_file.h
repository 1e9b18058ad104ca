#pragma once

#include <cstdint>

#include "tool/file_descriptor.h"

namespace tool {

/// A file in memory, without a name, that holds everything that can still be read from a
/// descriptor. Raises InputRefused when that is more than so many bytes (0 for any number), cannot
/// be read, or does not fit into the machine's memory.
FileDescriptor memoryFileFrom(int source, std::uint64_t mostBytes);

}  // namespace tool
