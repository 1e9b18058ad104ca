#include "fuzz/file_on_disk.h"
#include "fuzz/target.h"
#include "fuzz/value_walk.h"
#include "tool/jpeg_exif.h"

// The tool's walk over the markers of a JPEG, on the whole input.

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tool::PositionedFile file(fuzz::pathOfFileWith(data, size));
    fuzz::require(file.size() == size, "the file has another size");
    const auto found = tool::findExifTiffHeader(file);
    fuzz::require(!found || (*found <= size && tool::startsAsJpeg(file)),
                  "an EXIF block outside a JPEG");
    return 0;
}
