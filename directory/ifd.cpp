#include "directory/ifd.h"

#include <algorithm>
#include <bit>
#include <string>
#include <utility>

#include "directory/pointer_guard.h"
#include "entry/reports/fatal_errors.h"
#include "entry/reports/internal_errors.h"
#include "entry/reports/warnings.h"
#include "file/tag_file.h"
#include "format/checked_arithmetic.h"
#include "tag/tag_numbers.h"
#include "tag/tiff_tag.h"

namespace corvinex {

namespace {

// A JPEG's EXIF block lies in one APP1 segment, whose length field has 16 bits (JPEG, B.1.1.4).
constexpr std::uint64_t maximumApp1Length = 65536;

/// Whether length bytes, 1 at least, follow where the stream stands, which is position. The size
/// that the status told may be out of date, and some file systems tell a wrong one: it can show
/// that the bytes are there, but not that they are missing, so then the last of them is tried.
/// After true the stream stands where it stood.
bool holdsBytes(FileStream& stream, std::uint64_t position, std::uint64_t length,
                std::uint64_t toldSize) {
    if (liesWithin(position, length, toldSize)) {
        return true;
    }
    unsigned char last = 0;
    return stream.seek(saturatingAdd(position, length - 1)) && stream.read(&last, 1, 1) == 1 &&
           stream.seek(position);
}

}  // namespace

IFD::IFD(TagFile* file, IFDtype_t_ kind)
    : arena(file->beginDirectory()),
      tags(arena.get()),
      unknownTags(arena.get()),
      tagFile(file),
      ifdType(kind),
      bitsPerSample(arena.get()) {}

IFD::IFD(const IFD& other)
    : tags(other.tags),
      unknownTags(other.unknownTags),
      numberOfEntries(other.numberOfEntries),
      tagFile(other.tagFile),
      ifdOffset(other.ifdOffset),
      ifdType(other.ifdType),
      width(other.width),
      height(other.height),
      tagsSeen(other.tagsSeen),
      defaultTags(other.defaultTags),
      photometric(other.photometric),
      bitsPerSample(other.bitsPerSample),
      samplesPerPixel(other.samplesPerPixel) {}

IFD::IFD(IFD&& other) noexcept
    : arena(std::move(other.arena)),
      tags(std::move(other.tags)),
      unknownTags(std::move(other.unknownTags)),
      numberOfEntries(other.numberOfEntries),
      tagFile(other.tagFile),
      ifdOffset(other.ifdOffset),
      ifdType(other.ifdType),
      width(other.width),
      height(other.height),
      tagsSeen(other.tagsSeen),
      defaultTags(std::exchange(other.defaultTags, 0)),
      photometric(other.photometric),
      bitsPerSample(std::move(other.bitsPerSample)),
      samplesPerPixel(other.samplesPerPixel) {}

void IFD::process() {
    ifdOffset = tagFile->getStream().tell();
    const PointerGuard::OpenDirectory open(tagFile->getPointerGuard(), ifdOffset);
    readEntryCount();
    std::vector<unsigned char> entries = readEntries();
    tagFile->getPointerGuard().countDirectory(entriesLength);
    processIfdTags(std::span(entries).first(entriesLength));
    tagFile->giveBackEntryBuffer(std::move(entries));
}

void IFD::readEntryCount() {
    unsigned long long count = 0;
    if (tagFile->freadNumDirectoryEntries(&count) != 1) {
        refuse(warnings::numberOfDirectoryEntriesReadError(ifdOffset));
        throw StopProcessingIfdChainException("IFD::process");
    }
    numberOfEntries = count;
    if (numberOfEntries == 0) {
        refuse(warnings::numDirectoryEntriesIsZero(ifdOffset));
        throw StopProcessingIfdChainException("IFD::process");
    }
    entriesLength = saturatingMultiply(numberOfEntries, tagFile->getEntrySize());
    if (tagFile->isJpegFile() && entriesLength > maximumApp1Length) {
        refuse(warnings::jpegApp1MaximumLengthExceeded(numberOfEntries));
        throw TiffTagsRecoverableError("IFD::process");
    }
}

// A directory that yields nothing counts as one entry all the same: a small file can hold millions
// of pointers to it.
void IFD::refuse(const resource_core::BaseMsgID& warning) const {
    tagFile->getPointerGuard().countDirectory(tagFile->getEntrySize());
    warn(warning);
}

/// The entries, and behind them what was read of the next-directory offset.
std::vector<unsigned char> IFD::readEntries() {
    std::vector<unsigned char> buffer;
    FileStream& stream = tagFile->getStream();
    // A block that the file does not hold is never allocated.
    const std::uint64_t position = saturatingAdd(ifdOffset, tagFile->getEntryCountSize());
    bool isRead = holdsBytes(stream, position, entriesLength, tagFile->getFileSize());
    if (isRead) {
        // Sets of other kinds follow no chain.
        const std::uint64_t offsetSize = ifdType == IFDtype_t_::Main ? tagFile->getOffsetSize() : 0;
        buffer = tagFile->takeEntryBuffer();
        buffer.resize(entriesLength + offsetSize);
        const std::size_t length = stream.read(buffer.data(), 1, buffer.size());
        isRead = length >= entriesLength;
        if (offsetSize != 0 && length == buffer.size()) {
            nextOffset = tagFile->readNextIfdOffset(std::span(buffer).last(offsetSize));
        }
    }
    if (!isRead) {
        // Nothing has been added yet, so the number is always 1.
        raiseFatal(
            quorra::corvinex::badIFDread(asciiToUtf16("IFD #" + std::to_string(size() + 1))));
    }
    return buffer;
}

// Entries are decoded from the buffer, never from the stream: making a tag may move the stream
// anywhere.
void IFD::processIfdTags(std::span<const unsigned char> entries) {
    const std::uint64_t entrySize = tagFile->getEntrySize();
    for (std::uint64_t i = 0; i < numberOfEntries; ++i) {
        try {
            processEntry(entries.subspan(i * entrySize, entrySize), i);
        } catch (const TiffTagsRecoverableError&) {
            // Reported by a warning; the entry is dropped.
        }
    }
    if (ifdType == IFDtype_t_::Main && !tagFile->isJpegFile()) {
        processRequiredFields();
    }
}

void IFD::processEntry(std::span<const unsigned char> entry, std::uint64_t index) {
    TiffTag tag(tagFile, entry, ifdType);
    flagDefaultValues(tag);
    switch (tag.getId()) {
        case tag_number::ImageWidth:
            width = tag.getNumericValue(0);
            return;
        case tag_number::ImageLength:
            height = tag.getNumericValue(0);
            return;
        case tag_number::SubIFDs:
        case tag_number::ExifIFD:
        case tag_number::GPSInfo:
        case tag_number::InteroperabilityIFD:
            if (tag.subIfdSize() != 0) {
                fileTag(tags, std::move(tag), index);
            }
            return;
        default:
            fileTag(tag.isKnown() ? tags : unknownTags, std::move(tag), index);
    }
}

// The list gets room for the entries to come, but for no more than an ordinary directory has,
// because a result holds that room for every directory, however many of its entries are dropped. A
// longer list grows fourfold, so that few tags move.
void IFD::fileTag(TagList& list, TiffTag&& tag, std::uint64_t index) const {
    if (list.size() == list.capacity()) {
        constexpr std::uint64_t most = 64;
        const std::uint64_t growth = std::max<std::uint64_t>(3 * list.size(), most);
        list.reserve(list.size() + std::min(numberOfEntries - index, growth));
    }
    list.push_back(static_cast<TagValue&&>(tag));
}

std::size_t IFD::size() const noexcept {
    return tags.size() + static_cast<std::size_t>(std::popcount(defaultTags)) +
           (unknownTags.empty() ? 0 : 1);
}

}  // namespace corvinex
