#include "directory/ifd_tree.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "entry/reports/internal_errors.h"
#include "entry/reports/warnings.h"
#include "file/tag_file.h"
#include "format/checked_arithmetic.h"

namespace corvinex {

IFDTree::IFDTree(TagFile* file, IFDtype_t_ kind)
    : tagFile(file), ifdType(kind), ifds(&file->getSetMemory()), tagNames(&file->getSetMemory()) {
    processIfdSet();
}

IFDTree& IFDTree::operator=(const IFDTree& other) {
    tagFile = other.tagFile;
    ifdType = other.ifdType;
    ifds.clear();
    tagNames.clear();
    defaultTagsSeen = 0;
    if (this != &other) {
        ifds.reserve(other.ifds.size());
        for (const IFD& ifd : other.ifds) {
            ifds.push_back(ifd);
        }
        tagNames = other.tagNames;
        defaultTagsSeen = other.defaultTagsSeen;
        hasUnknownTags = other.hasUnknownTags;
    }
    return *this;
}

void IFDTree::processIfdSet() {
    const std::uint64_t limit = tagFile->getMaxIfdsPerSet();
    bool hasNext = true;
    while (hasNext) {
        IFD ifd(tagFile, ifdType);
        try {
            ifd.process();
        } catch (const StopProcessingIfdChainException&) {
            return;
        }
        const std::uint64_t nextOffsetPosition = saturatingAdd(
            saturatingAdd(ifd.getOffset(), tagFile->getEntryCountSize()), ifd.getEntriesLength());
        const std::optional<std::uint64_t> nextOffset = ifd.getNextOffset();
        if (ifd.size() != 0) {
            push_back(std::move(ifd));
        }
        const bool isFull = limit != 0 && ifds.size() == limit;
        hasNext =
            ifdType == IFDtype_t_::Main && !isFull && seekToNextIfd(nextOffsetPosition, nextOffset);
    }
}

bool IFDTree::seekToNextIfd(std::uint64_t nextOffsetPosition,
                            std::optional<std::uint64_t> nextOffset) {
    // Where the offset was read together with the entries, and no value moved the stream away, the
    // stream stands behind it already.
    FileStream& stream = tagFile->getStream();
    const bool isBehind =
        nextOffset && stream.tell() == nextOffsetPosition + tagFile->getOffsetSize();
    if (!isBehind && !stream.seek(nextOffsetPosition)) {
        warn(warnings::badNextIfdPointerSeek());
        return false;
    }
    if (!nextOffset) {
        nextOffset = readNextIfdOffset(nextOffsetPosition);
    }
    if (*nextOffset == 0) {
        return false;
    }
    const std::uint64_t target = saturatingAdd(tagFile->getBaseOffset(), *nextOffset);
    if (target >= tagFile->getFileSize()) {
        warn(warnings::nextIfdPointerOutOfRange(target));
        return false;
    }
    if (!stream.seek(target)) {
        warn(warnings::badNextIfdPointerSeek());
        return false;
    }
    return true;
}

std::uint64_t IFDTree::readNextIfdOffset(std::uint64_t position) {
    unsigned long long next = 0;
    if (tagFile->freadNextIfdOffset(&next) != 1) {
        warn(warnings::nextIfdOffsetReadError(position));
        return 0;
    }
    return next;
}

void IFDTree::push_back(IFD&& ifd) {
    if (ifds.empty()) {
        // This is room for as many tags as an ordinary directory has. A number stands in the list
        // once, however often a directory repeats it.
        constexpr std::size_t most = 64;
        tagNames.reserve(std::min(ifd.getTags().size(), most));
    }
    std::size_t place = 0;
    for (const TagValue& tag : ifd.getTags()) {
        place = addTagName(place, {tag.getId(), tag.getFieldName()});
    }
    defaultTagsSeen |= ifd.getDefaultTags();
    hasUnknownTags = hasUnknownTags || ifd.hasUnknownTags();
    ifds.push_back(std::move(ifd));
}

// Directories of one file mostly have the same tags in ascending order. So each tag is expected at
// the place behind the one before it, and is looked up only where it does not stand there.
std::size_t IFDTree::addTagName(std::size_t expectedPlace, const NumberAndName& tag) {
    if (expectedPlace < tagNames.size() && tagNames[expectedPlace].number == tag.number) {
        return expectedPlace + 1;
    }
    if (tagNames.empty() || tagNames.back().number < tag.number) {
        tagNames.push_back(tag);
        return tagNames.size();
    }
    const auto place = std::lower_bound(
        tagNames.begin(), tagNames.end(), tag.number,
        [](const NumberAndName& row, std::uint16_t number) { return row.number < number; });
    const auto index = static_cast<std::size_t>(place - tagNames.begin());
    if (place == tagNames.end() || place->number != tag.number) {
        tagNames.insert(place, tag);
    }
    return index + 1;
}

}  // namespace corvinex
