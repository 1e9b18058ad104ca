#include "file/tag_file.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "entry/reports/fatal_errors.h"
#include "entry/reports/internal_errors.h"
#include "entry/reports/warnings.h"
#include "file/file_information.h"
#include "format/byte_order.h"
#include "format/checked_arithmetic.h"
#include "format/entry_fields.h"
#include "format/tiff_header.h"

namespace corvinex {

namespace error = quorra::corvinex;

namespace {

// A small file needs little memory. In a large one a group of directories takes the longest arena,
// which is as long as the memory that it may leave unused is not felt.
constexpr std::size_t firstArenaLength = std::size_t{4} << 10;
constexpr std::size_t longestArenaLength = std::size_t{256} << 10;
constexpr std::size_t arenaGrowth = 4;

}  // namespace

TagFile::TagFile(std::u16string name, unsigned long long header, unsigned long skip,
                 unsigned long limit)
    : filename(std::move(name)),
      headerOffset(header),
      ifdsToSkip(skip),
      maxIfdsPerSet(limit),
      nextArenaLength(firstArenaLength) {
    fileStatus = fl::filesystem::status(filename);
    if (!fl::filesystem::exists(filename)) {
        raiseFatal(error::statFailure());
    }
    detectFormat();
    determineArchitectureEndianness();
    stream = FileStream(fl::filesystem::fopen(filename, "rb"), getFileSize());
    if (!stream.isOpen()) {
        raiseFatal(error::unsupportedFileFormat());
    }
    setupDefaultFields();
    pointerGuard = PointerGuard(getFileSize());
    beginArena();
}

TagFile::~TagFile() {
    stream = FileStream();
}

void TagFile::detectFormat() {
    if (isJpeg(filename)) {
        fileFormat = FileFormat::JPEG;
    } else if (isClassicTiff(filename)) {
        fileFormat = FileFormat::ClassicTIFF;
    } else if (isBigTiff(filename)) {
        fileFormat = FileFormat::BigTIFF;
    } else {
        raiseFatal(error::unsupportedFileFormat());
    }
    const DirectoryLayout& layout = getDirectoryLayout(fileFormat);
    entrySize = layout.entrySize;
    entryCountSize = layout.entryCountSize;
    offsetSize = layout.offsetSize;
    valueFieldPosition = layout.valueFieldPosition;
}

void TagFile::determineArchitectureEndianness() noexcept {
    static_assert(std::endian::native == std::endian::little);
    machineIsBigEndian = false;
    machineIsLittleEndian = true;
}

void TagFile::setupDefaultFields() {
    defaultFields = getDefaultFieldNames(fileFormat);
}

void TagFile::readThroughTagFile() {
    if (headerOffset != 0) {
        // A seek that fails leaves the stream at the start, where the header is then read.
        static_cast<void>(stream.seekForward(headerOffset));
    }
    try {
        readThroughTiffHeader();
        ifdTree.emplace(this, IFDtype_t_::Main);
    } catch (const TiffTagsRecoverableError&) {
        // The tree is filled only by a whole walk, so within one request it is always empty here.
        if (!ifdTree) {
            raiseFatal(error::unableToReadTagData());
        }
    }
}

void TagFile::beginArena() {
    arena = std::make_shared<DirectoryArena>(nextArenaLength);
    nextArenaLength = std::min(arenaGrowth * nextArenaLength, longestArenaLength);
}

std::shared_ptr<DirectoryArena> TagFile::beginDirectory() {
    if (arena->isFull() && !pointerGuard.isFollowing()) {
        beginArena();
    }
    return arena;
}

void TagFile::readThroughTiffHeader() {
    // The size of offsets (8) and the reserved field (0) of the BigTIFF header: not examined.
    constexpr std::uint64_t bigTiffFieldsLength =
        tiff_header::bigFirstOffsetPosition - tiff_header::bigOffsetSizePosition;

    baseOffset = stream.tell();
    readTiffHeaderEndianFormat();
    if (stream.read(&headerSignature[2], 2, 1) != 1) {
        raiseFatal(error::tiffHeaderReadFailure());
    }
    if (fileFormat == FileFormat::BigTIFF && !stream.seekForward(bigTiffFieldsLength)) {
        raiseFatal(error::tiffHeaderReadFailure());
    }
    unsigned long long offset = 0;
    if (readUnsigned(offsetSize, &offset) != 1) {
        raiseFatal(error::tiffHeaderReadFailure());
    }
    const std::uint64_t position = saturatingAdd(baseOffset, offset);
    if (position > getFileSize()) {
        raiseFatal(error::badTiffIfdOffset(position, getFileSize()));
    }
    seekToDirectory(position);
    skipIfds();
}

void TagFile::readTiffHeaderEndianFormat() {
    if (stream.read(headerSignature.data(), 2, 1) != 1) {
        raiseFatal(error::tiffHeaderReadFailure());
    }
    const std::optional<std::endian> order = findByteOrder(std::span(headerSignature).first<2>());
    if (!order) {
        raiseFatal(error::badEndianness(headerSignature[0], headerSignature[1], filename));
    }
    fileByteOrder = std::uint32_t{headerSignature[0]} << 8 | std::uint32_t{headerSignature[1]};
    swapBytes = *order == std::endian::little ? machineIsBigEndian : machineIsLittleEndian;
}

void TagFile::seekToDirectory(std::uint64_t position) {
    if (!stream.seek(position)) {
        raiseFatal(error::badTiffHeaderIfdOffset());
    }
}

// Where one step leads depends on its position alone and a next offset of 0 leads back to the
// header, so the steps end in a cycle. Its length is found on the way (Brent's algorithm) and whole
// rounds are left out: a skip of 10^18 costs no more than the file's own directories.
void TagFile::skipIfds() {
    std::uint64_t remaining = ifdsToSkip;
    std::uint64_t landmark = stream.tell();
    std::uint64_t stepsSinceLandmark = 0;
    std::uint64_t stepsToNextLandmark = 1;
    bool cycleIsKnown = false;
    while (remaining > 0) {
        skipOneIfd();
        --remaining;
        if (cycleIsKnown) {
            continue;
        }
        ++stepsSinceLandmark;
        const std::uint64_t position = stream.tell();
        if (position == landmark) {
            remaining %= stepsSinceLandmark;
            cycleIsKnown = true;
        } else if (stepsSinceLandmark == stepsToNextLandmark) {
            landmark = position;
            stepsSinceLandmark = 0;
            stepsToNextLandmark *= 2;
        }
    }
}

// The reads are not checked: what cannot be read counts as 0.
void TagFile::skipOneIfd() {
    unsigned long long count = 0;
    static_cast<void>(freadNumDirectoryEntries(&count));
    if (!stream.seekForward(saturatingMultiply(count, entrySize))) {
        raiseFatal(error::badTiffHeaderIfdOffset());
    }
    unsigned long long next = 0;
    static_cast<void>(freadNextIfdOffset(&next));
    seekToDirectory(saturatingAdd(baseOffset, next));
}

std::size_t TagFile::freadNumDirectoryEntries(unsigned long long* count) {
    return readUnsigned(entryCountSize, count);
}

std::size_t TagFile::freadNextIfdOffset(unsigned long long* offset) {
    return readUnsigned(offsetSize, offset);
}

std::uint64_t TagFile::readNextIfdOffset(std::span<const unsigned char> offset) const {
    return loadOffset(offset, 0, offsetSize, swapBytes);
}

std::size_t TagFile::readUnsigned(std::uint64_t width, unsigned long long* value) {
    std::array<unsigned char, 8> bytes{};
    const std::size_t items = stream.read(bytes.data(), width, 1);
    if (items == 1) {
        *value = width == sizeof(std::uint16_t) ? loadFromFile<std::uint16_t>(bytes, 0, swapBytes)
                                                : loadOffset(bytes, 0, width, swapBytes);
    }
    return items;
}

std::uint64_t TagFile::readTagDataOffset(std::span<const unsigned char> entry) const {
    return loadOffset(entry, valueFieldPosition, offsetSize, swapBytes);
}

std::uint64_t TagFile::readTagNumComponents(std::span<const unsigned char> entry) const {
    return loadEntryCount(entry, offsetSize, swapBytes);
}

void TagFile::warnOncePerFile(const std::string& key, const resource_core::BaseMsgID& message) {
    if (issuedWarnings.insert(key).second) {
        warn(message);
    }
}

}  // namespace corvinex
