#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/tiff_builder.h"

namespace test {

/// A sound file and where its TIFF header is. damaged.tif counts as sound: it can be read.
struct DamageSample {
    std::string name;  ///< of letters, digits and underscores
    Bytes bytes;
    std::size_t headerPosition = 0;
};

/// How test names show it.
inline void PrintTo(const DamageSample& sample, std::ostream* stream) {
    *stream << sample.name;
}

/// The files of the samples folder.
std::vector<DamageSample> sampleFiles();

/// Those files; the same as the EXIF block of a JPEG and behind another file's header, where they
/// can be; and a structure with directories of every kind in both byte orders and layouts.
std::vector<DamageSample> sampleFilesAndWrappings();

}  // namespace test
