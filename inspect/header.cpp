#include <algorithm>
#include <array>
#include <bit>

#include "format/checked_arithmetic.h"
#include "format/jpeg_marker.h"
#include "format/tiff_header.h"
#include "inspect/file_content.h"

// Which container a file is, and the header that its TIFF structure begins with.

namespace corvinex::inspect {

namespace {

std::optional<std::endian> readMark(const Source& source, std::uint64_t position) {
    std::array<unsigned char, 2> mark{};
    return source.read(position, mark) ? findByteOrder(mark) : std::nullopt;
}

/// The version behind a right mark; nothing when either is missing.
std::optional<std::uint16_t> readVersion(const Source& source, std::uint64_t position) {
    std::array<unsigned char, 4> start{};
    return source.read(position, start) ? findTiffVersion(start) : std::nullopt;
}

bool startsAsJpeg(const Source& source) {
    std::array<unsigned char, 2> start{};
    return source.read(0, start) && isStartOfJpeg(start);
}

/// The header of a JPEG stands in the first EXIF block with a right one, else in the first at all.
void findExifHeader(FileContent& file, const Options& options) {
    file.segments = readJpegSegments(file.source);
    const std::vector<ExifSegment>& exif = file.segments->exif;
    auto chosen = std::ranges::find_if(exif, [&](const ExifSegment& segment) {
        return options.headerOffset
                   ? segment.header == *options.headerOffset
                   : readVersion(file.source, segment.header) == tiff_header::classicVersion;
    });
    if (chosen == exif.end() && !options.headerOffset) {
        chosen = exif.begin();
    }
    if (chosen != exif.end()) {
        file.exifSegment = static_cast<std::size_t>(chosen - exif.begin());
        file.header.position = chosen->header;
    } else {
        file.header.position = options.headerOffset;
    }
}

void findContainer(FileContent& file, const Options& options) {
    if (startsAsJpeg(file.source)) {
        file.container = Container::Jpeg;
        findExifHeader(file, options);
        return;
    }
    const std::uint64_t position = options.headerOffset.value_or(0);
    const std::optional<std::uint16_t> version = readVersion(file.source, position);
    if (version == tiff_header::classicVersion) {
        file.container = Container::Tiff;
    } else if (version == tiff_header::bigVersion) {
        file.container = Container::BigTiff;
    } else {
        return;
    }
    file.header.position = position;
}

/// A field of the header; nothing when it does not lie in the file.
template <class Number>
std::optional<Number> numberAt(const FileContent& file, std::uint64_t fieldPosition) {
    return file.source.number<Number>(file.positionOf(fieldPosition), file.swap);
}

void readFields(FileContent& file) {
    Header& header = file.header;
    const std::optional<std::uint16_t> version = readVersion(file.source, *header.position);
    header.isRight =
        version == (file.isBig() ? tiff_header::bigVersion : tiff_header::classicVersion);
    header.isCut = file.end() < file.headerSize();
    if (file.isBig()) {
        header.offsetSize =
            numberAt<std::uint16_t>(file, tiff_header::bigOffsetSizePosition).value_or(8);
        header.reserved =
            numberAt<std::uint16_t>(file, tiff_header::bigReservedPosition).value_or(0);
        header.firstOffset =
            numberAt<std::uint64_t>(file, tiff_header::bigFirstOffsetPosition).value_or(0);
    } else {
        header.firstOffset =
            numberAt<std::uint32_t>(file, tiff_header::classicFirstOffsetPosition).value_or(0);
    }
}

}  // namespace

std::uint64_t FileContent::positionOf(std::uint64_t offset) const noexcept {
    return saturatingAdd(header.position.value_or(0), offset);
}

std::uint64_t FileContent::end() const noexcept {
    return source.size() - std::min(source.size(), header.position.value_or(0));
}

std::uint64_t FileContent::blockEnd() const noexcept {
    return exifSegment ? segments->exif[*exifSegment].end - *header.position : end();
}

std::uint64_t FileContent::headerSize() const noexcept {
    return isBig() ? tiff_header::bigSize : tiff_header::classicSize;
}

void readHeader(FileContent& file, const Options& options) {
    findContainer(file, options);
    file.layout = getDirectoryLayout(file.isBig() ? FileFormat::BigTIFF : FileFormat::ClassicTIFF);
    if (!file.header.position) {
        return;
    }
    if (const auto order = readMark(file.source, *file.header.position)) {
        file.header.byteOrder =
            *order == std::endian::little ? ByteOrder::LittleEndian : ByteOrder::BigEndian;
        file.swap = *order != std::endian::native;
        readFields(file);
    } else {
        file.header.isCut = file.end() < file.headerSize();
    }
}

}  // namespace corvinex::inspect
