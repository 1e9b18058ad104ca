#include <algorithm>
#include <array>
#include <bit>

#include "format/checked_arithmetic.h"
#include "inspect/file_content.h"

// Which container a file is, and the header that its TIFF structure begins with.

namespace corvinex::inspect {

namespace {

constexpr std::uint16_t classicVersion = 42;
constexpr std::uint16_t bigVersion = 43;
constexpr std::uint64_t versionPosition = 2;

std::optional<ByteOrder> readMark(const Source& source, std::uint64_t position) {
    std::array<unsigned char, 2> mark{};
    if (!source.read(position, mark) || mark[0] != mark[1]) {
        return std::nullopt;
    }
    if (mark[0] == 'I') {
        return ByteOrder::LittleEndian;
    }
    return mark[0] == 'M' ? std::optional(ByteOrder::BigEndian) : std::nullopt;
}

bool mustSwap(ByteOrder order) {
    return (order == ByteOrder::LittleEndian) != (std::endian::native == std::endian::little);
}

/// The version behind a right mark; nothing when either is missing.
std::optional<std::uint16_t> readVersion(const Source& source, std::uint64_t position) {
    const std::optional<ByteOrder> order = readMark(source, position);
    return order ? source.number<std::uint16_t>(saturatingAdd(position, versionPosition),
                                                mustSwap(*order))
                 : std::nullopt;
}

bool startsAsJpeg(const Source& source) {
    std::array<unsigned char, 2> start{};
    return source.read(0, start) && start == std::array<unsigned char, 2>{0xFF, 0xD8};
}

/// The header of a JPEG stands in the first EXIF block with a right one, else in the first at all.
void findExifHeader(FileContent& file, const Options& options) {
    file.segments = readJpegSegments(file.source);
    const std::vector<ExifSegment>& exif = file.segments->exif;
    auto chosen = std::ranges::find_if(exif, [&](const ExifSegment& segment) {
        return options.headerOffset ? segment.header == *options.headerOffset
                                    : readVersion(file.source, segment.header) == classicVersion;
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
    if (version == classicVersion) {
        file.container = Container::Tiff;
    } else if (version == bigVersion) {
        file.container = Container::BigTiff;
    } else {
        return;
    }
    file.header.position = position;
}

void readFields(FileContent& file) {
    Header& header = file.header;
    const std::uint64_t position = *header.position;
    const std::optional<std::uint16_t> version = readVersion(file.source, position);
    header.isRight = version == (file.isBig() ? bigVersion : classicVersion);
    header.isCut = file.end() < file.headerSize();
    if (file.isBig()) {
        header.offsetSize =
            file.source.number<std::uint16_t>(saturatingAdd(position, 4), file.swap).value_or(8);
        header.reserved =
            file.source.number<std::uint16_t>(saturatingAdd(position, 6), file.swap).value_or(0);
        header.firstOffset =
            file.source.number<std::uint64_t>(saturatingAdd(position, 8), file.swap).value_or(0);
    } else {
        header.firstOffset =
            file.source.number<std::uint32_t>(saturatingAdd(position, 4), file.swap).value_or(0);
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
    return isBig() ? 16 : 8;
}

void readHeader(FileContent& file, const Options& options) {
    findContainer(file, options);
    file.layout = getDirectoryLayout(file.isBig() ? FileFormat::BigTIFF : FileFormat::ClassicTIFF);
    if (!file.header.position) {
        return;
    }
    file.header.byteOrder = readMark(file.source, *file.header.position);
    if (file.header.byteOrder) {
        file.swap = mustSwap(*file.header.byteOrder);
        readFields(file);
    } else {
        file.header.isCut = file.end() < file.headerSize();
    }
}

}  // namespace corvinex::inspect
