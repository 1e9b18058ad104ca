#include "inspect/thumbnail.h"

#include <array>
#include <cstddef>

#include "format/checked_arithmetic.h"
#include "format/jpeg_marker.h"
#include "inspect/directory_siblings.h"
#include "inspect/field_type.h"
#include "inspect/file_content.h"
#include "inspect/reading/derived.h"
#include "inspect/stored_value.h"

namespace corvinex::inspect {
namespace {

constexpr std::uint16_t newSubfileType = 254;
constexpr std::uint16_t subfileType = 255;
constexpr std::uint16_t stripOffsets = 273;
constexpr std::uint16_t stripByteCounts = 279;
constexpr std::uint16_t jpegTables = 347;
constexpr std::uint16_t jpegOffset = 513;
constexpr std::uint16_t jpegLength = 514;

/// The only number of an entry that holds a whole one.
std::optional<std::uint64_t> onlyNumber(const FileContent& file, const Entry* entry) {
    if (entry == nullptr || entry->count() != 1 || !entry->isInFile()) {
        return std::nullopt;
    }
    const FieldTypeFact* const type = findFieldType(entry->typeCode());
    if (type == nullptr || !holdsIntegers(*type)) {
        return std::nullopt;
    }
    const auto number = readInteger(file, entry->record(), 0);
    return number && !number->isNegative ? std::optional(number->bits) : std::nullopt;
}

/// What two tags tell, when it is a JPEG that lies in the file.
std::optional<ByteRange> jpegAt(const FileContent& file, const Directory& directory,
                                std::uint16_t offsetTag, std::uint16_t lengthTag) {
    const auto offset = onlyNumber(file, directory.find(offsetTag));
    const auto length = onlyNumber(file, directory.find(lengthTag));
    std::array<unsigned char, 2> start{};
    if (!offset || !length || *length < start.size() || !liesWithin(*offset, *length, file.end())) {
        return std::nullopt;
    }
    const ByteRange range{file.positionOf(*offset), *length};
    const bool isJpeg = file.source.read(range.position, start) && isStartOfJpeg(start);
    return isJpeg ? std::optional(range) : std::nullopt;
}

/// Whether tags 513 and 514 of a directory tell a small image. The first directory is the image
/// itself, and further pages may be as large; there the tags are parts of an old-style compression.
bool mayTellThumbnail(const FileContent& file, const Directory& directory, bool isFirst,
                      bool isReduced) {
    const bool tellsNothing =
        directory.find(newSubfileType) == nullptr && directory.find(subfileType) == nullptr;
    const bool isPhoto = file.container == Container::Jpeg;
    return isReduced || (!isFirst && (isPhoto || tellsNothing));
}

std::optional<ByteRange> thumbnailIn(const FileContent& file, const Directory& directory,
                                     bool isFirst) {
    const bool isReduced = reading::isReducedImage(DirectorySiblings(file, directory));
    if (mayTellThumbnail(file, directory, isFirst, isReduced)) {
        if (const auto range = jpegAt(file, directory, jpegOffset, jpegLength)) {
            return range;
        }
    }
    // A strip whose tables stand elsewhere is no JPEG of its own.
    return isReduced && directory.find(jpegTables) == nullptr
               ? jpegAt(file, directory, stripOffsets, stripByteCounts)
               : std::nullopt;
}

}  // namespace

std::optional<ByteRange> findThumbnail(const File& file) {
    bool isFirst = true;
    for (const Directory& directory : file.directories()) {
        if (isImageKind(directory.kind())) {
            if (const auto range = thumbnailIn(file.content(), directory, isFirst)) {
                return range;
            }
        }
        isFirst = false;
    }
    return std::nullopt;
}

}  // namespace corvinex::inspect
