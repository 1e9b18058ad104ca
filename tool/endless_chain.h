#pragma once

#include <cstdint>

#include "tool/directory_reader.h"

namespace tool {

/// Whether some chain of a JPEG's EXIF block may go on for ever although the number of directories
/// is limited. The module drops a directory of a JPEG that yields no field (one with nothing but
/// width and height, or with refused entries) and does not count it, so a chain that comes back on
/// itself over such directories never reaches a limit.
///
/// Looks at the main chain from a start position on, and at every chain that SubIFDs entries lead
/// to. When it says no, every chain ends; it may say yes of a chain that comes back on itself over
/// directories whose only fields are pointers, and of a block whose pointers lead to many times as
/// many entries as the file is long.
bool mayNeverEnd(const DirectoryReader& reader, std::uint64_t start, std::uint64_t limit);

}  // namespace tool
