#pragma once

#include <cstddef>
#include <cstdint>

#include "tests/support/tiff_builder.h"

namespace test {

/// A file and where its TIFF header stands.
struct GeneratedFile {
    Bytes bytes;
    std::size_t headerPosition = 0;
};

/// A file with directories, pointers and values that are right, odd and wrong: types that a tag
/// does not have and that are none, counts of 0 and too large, offsets into other values, to the
/// end and past it, chains and pointers that come back, numbers out of order and twice, some bytes
/// changed. In both byte orders, both layouts, and inside a JPEG. The same for the same number on
/// every machine.
GeneratedFile generateFile(std::uint64_t number);

}  // namespace test
