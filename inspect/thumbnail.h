#pragma once

#include <cstdint>
#include <optional>

#include "corvinex/file.h"

namespace corvinex::inspect {

/// A stretch of a file, in bytes from its start.
struct ByteRange {
    std::uint64_t position = 0;
    std::uint64_t length = 0;
};

/// The first small image that stands in a file as a JPEG of its own: what tags 513 and 514 of a
/// reduced image tell, or of a directory behind the first that says nothing of what it is; or the
/// only strip of a reduced image. In a JPEG every directory behind the first is a small image.
/// Nothing when there is none that lies in the file. Raises std::system_error when the file cannot
/// be read.
[[nodiscard]] std::optional<ByteRange> findThumbnail(const File& file);

}  // namespace corvinex::inspect
