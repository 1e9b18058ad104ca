#include "tool/directory_reader.h"

#include <array>
#include <limits>

#include "tool/jpeg_exif.h"

namespace tool {
namespace {

constexpr std::uint64_t lastPosition = std::numeric_limits<std::int64_t>::max();

bool startsAsBigTiff(PositionedFile& file) {
    std::array<unsigned char, 4> start{};
    constexpr std::array<unsigned char, 4> little{'I', 'I', 43, 0};
    constexpr std::array<unsigned char, 4> big{'M', 'M', 0, 43};
    return file.read(0, start) && (start == little || start == big);
}

}  // namespace

std::optional<DirectoryReader> DirectoryReader::open(PositionedFile& file,
                                                     std::uint64_t headerOffset) {
    std::array<unsigned char, 2> byteOrder{};
    if (headerOffset > lastPosition || !file.read(headerOffset, byteOrder) ||
        byteOrder[0] != byteOrder[1] || (byteOrder[0] != 'I' && byteOrder[0] != 'M')) {
        return std::nullopt;
    }
    DirectoryReader reader(file);
    reader.isJpeg_ = startsAsJpeg(file);
    reader.isBig_ = startsAsBigTiff(file);
    reader.isBigEndian_ = byteOrder[0] == 'M';
    reader.headerOffset_ = headerOffset;
    const auto first = reader.read(headerOffset + (reader.isBig_ ? 8 : 4), reader.offsetSize());
    if (!first) {
        return std::nullopt;
    }
    reader.firstOffset_ = *first;
    return reader;
}

DirectoryOutline DirectoryReader::outlineAt(std::uint64_t position) const {
    DirectoryOutline outline;
    const auto count = read(position, countSize());
    if (!count) {
        return outline;
    }
    outline.entryCount = *count;
    outline.entriesAt = position + countSize();
    outline.entriesInFile = *count <= (file_->size() - outline.entriesAt) / entrySize();
    if (outline.entriesInFile) {
        outline.nextOffset =
            read(outline.entriesAt + *count * entrySize(), offsetSize()).value_or(0);
    }
    return outline;
}

std::optional<std::uint64_t> DirectoryReader::positionOf(std::uint64_t storedOffset) const {
    if (storedOffset > lastPosition - headerOffset_) {
        return std::nullopt;
    }
    return headerOffset_ + storedOffset;
}

std::uint64_t DirectoryReader::number(std::span<const unsigned char> bytes) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        value = value << 8 | bytes[isBigEndian_ ? i : bytes.size() - 1 - i];
    }
    return value;
}

std::optional<std::uint64_t> DirectoryReader::read(std::uint64_t position,
                                                   std::uint64_t width) const {
    std::array<unsigned char, 8> bytes{};
    const auto field = std::span(bytes).first(static_cast<std::size_t>(width));
    if (!file_->read(position, field)) {
        return std::nullopt;
    }
    return number(field);
}

}  // namespace tool
