#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "corvinex/derived.h"
#include "inspect/reading/siblings.h"

// Facts that follow from the entries of directories. Each is left out where the file does not say
// it.

namespace corvinex::inspect::reading {

/// Of a main or sub directory: "compression" and "photometric" as words, the number of "strips" or
/// "tiles", and, when it is to be added up, "bytes", the sum of their byte counts.
[[nodiscard]] std::vector<DerivedFact> directoryFacts(const Siblings& directory, bool withBytes);

/// Whether a directory holds a smaller version of another one's image.
[[nodiscard]] bool isReducedImage(const Siblings& directory);

/// What facts of a file are taken from. Directories that the file has not are null.
struct FileParts {
    /// Directories of the main chain.
    std::uint64_t pages = 0;
    /// The first directory of the main chain.
    const Siblings* first = nullptr;
    /// The directory of the image: the first main or sub directory that is no reduced one.
    const Siblings* image = nullptr;
    /// The first EXIF and the first GPS directory.
    const Siblings* exif = nullptr;
    const Siblings* gps = nullptr;
    /// Width and height of a JPEG's own frame, which count more than what its tags tell.
    std::optional<std::pair<std::uint64_t, std::uint64_t>> frame;
};

/// Of the file: "width", "height", "pages"; of a photo "taken" (ISO 8601), "latitude", "longitude"
/// (in degrees, positive to the north and east), "altitude" (in metres above the sea), "make",
/// "model", "lens"; of a georeferenced image "crs", "geotransform" and "bounds".
[[nodiscard]] std::vector<DerivedFact> fileFacts(const FileParts& parts);

}  // namespace corvinex::inspect::reading
