#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "inspect/source.h"

namespace corvinex::inspect {

/// An APP1 segment that begins with "Exif" and two zeros. Positions count from the file's start.
struct ExifSegment {
    std::uint64_t marker = 0;  ///< where its marker begins
    std::uint64_t header = 0;  ///< the byte behind the identifier, where a TIFF header should stand
    std::uint64_t end = 0;     ///< at most the file's size
};

/// Size of the image that the first frame segment tells, in pixels.
struct JpegFrame {
    std::uint16_t width = 0;
    std::uint16_t height = 0;
};

/// Why the walk over the segments ended.
enum class JpegEnd : std::uint8_t {
    Scan,            ///< image data begin
    EndOfImage,      ///< an end marker
    EndOfFile,       ///< the file ends where a marker should follow
    NoMarker,        ///< what stands there is no marker, or its length counts less than itself
    SegmentPastEnd,  ///< a segment is longer than the file
};

/// The segments of a JPEG up to its image data.
struct JpegSegments {
    std::vector<ExifSegment> exif;
    std::optional<JpegFrame> frame;
    JpegEnd end = JpegEnd::EndOfFile;
    std::uint64_t position = 0;  ///< where the marker that ended the walk begins, or should
    std::uint8_t code = 0;       ///< of SegmentPastEnd
    std::uint16_t length = 0;    ///< of SegmentPastEnd; 0 when the length itself is cut off
    std::uint64_t scanData = 0;  ///< of Scan: the byte behind the scan's header
};

/// Walks the segments of a file that begins as a JPEG, in time proportional to what lies before its
/// image data.
[[nodiscard]] JpegSegments readJpegSegments(const Source& source);

/// Whether an end marker stands between a position and the file's end. Only the last 16 MiB are
/// searched; nothing when there is none in them and more lies before.
[[nodiscard]] std::optional<bool> findJpegEndMarker(const Source& source, std::uint64_t from);

}  // namespace corvinex::inspect
