#include "inspect/jpeg_segments.h"

#include <algorithm>
#include <array>
#include <span>

#include "fuzz/target.h"
#include "fuzz/value_walk.h"

// The inspection's walk over the segments of a JPEG, on the whole input.

namespace {

using corvinex::inspect::ExifSegment;
using corvinex::inspect::findJpegEndMarker;
using corvinex::inspect::JpegEnd;
using corvinex::inspect::JpegSegments;
using corvinex::inspect::Source;

void checkExif(const JpegSegments& segments, std::uint64_t size) {
    std::uint64_t end = 0;
    for (const ExifSegment& exif : segments.exif) {
        fuzz::require(end <= exif.marker, "EXIF segments that overlap");
        fuzz::require(exif.marker < exif.header && exif.header <= exif.end && exif.end <= size,
                      "an EXIF segment outside the file");
        end = exif.end;
    }
}

/// Whether an end marker stands in the bytes, looked for the simple way.
bool hasEndMarker(std::span<const std::uint8_t> bytes) {
    constexpr std::array<std::uint8_t, 2> marker{0xFF, 0xD9};
    return std::search(bytes.begin(), bytes.end(), marker.begin(), marker.end()) != bytes.end();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span bytes(data, size);
    if (size < 2) {
        return 0;
    }
    const Source source = Source::ofMemory(std::as_bytes(bytes));
    const JpegSegments segments = readJpegSegments(source);
    checkExif(segments, size);
    fuzz::require(segments.position <= size, "an end of the walk outside the file");
    if (segments.end == JpegEnd::Scan) {
        fuzz::require(segments.scanData <= size, "image data outside the file");
        const auto found = findJpegEndMarker(source, segments.scanData);
        fuzz::require(found.has_value(), "a small file was not searched to its end");
        fuzz::require(*found == hasEndMarker(bytes.subspan(segments.scanData)),
                      "an end marker that is told wrongly");
    }
    return 0;
}
