#include "directory/ifd_tree.h"

#include <utility>

#include "entry/internal_errors.h"
#include "entry/warnings.h"
#include "file/checked_arithmetic.h"
#include "file/tag_file.h"

namespace corvinex {

IFDTree::IFDTree(TagFile* file, IFDtype_t_ kind) : tagFile(file), ifdType(kind) {
    processIfdSet();
}

IFDTree& IFDTree::operator=(const IFDTree& other) {
    tagFile = other.tagFile;
    ifdType = other.ifdType;
    ifds.clear();
    tagNames.clear();
    if (this != &other) {
        ifds.reserve(other.ifds.size());
        for (const IFD& ifd : other.ifds) {
            ifds.push_back(ifd);
        }
        tagNames = other.tagNames;
        hasUnknownTags = other.hasUnknownTags;
    }
    return *this;
}

IFDTree& IFDTree::operator=(IFDTree&& other) noexcept {
    tagFile = other.tagFile;
    ifdType = other.ifdType;
    hasUnknownTags = other.hasUnknownTags;
    ifds.swap(other.ifds);
    tagNames.swap(other.tagNames);
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
        if (ifd.size() != 0) {
            push_back(std::move(ifd));
        }
        const bool isFull = limit != 0 && ifds.size() == limit;
        hasNext = ifdType == IFDtype_t_::Main && !isFull && seekToNextIfd(nextOffsetPosition);
    }
}

bool IFDTree::seekToNextIfd(std::uint64_t nextOffsetPosition) {
    if (!tagFile->getStream().seek(nextOffsetPosition)) {
        warn(warnings::badNextIfdPointerSeek());
        return false;
    }
    const std::uint64_t next = readNextIfdOffset();
    if (next == 0) {
        return false;
    }
    const std::uint64_t target = saturatingAdd(tagFile->getBaseOffset(), next);
    if (target >= tagFile->getFileSize()) {
        warn(warnings::nextIfdPointerOutOfRange(target));
        return false;
    }
    if (!tagFile->getStream().seek(target)) {
        warn(warnings::badNextIfdPointerSeek());
        return false;
    }
    return true;
}

std::uint64_t IFDTree::readNextIfdOffset() {
    const std::uint64_t position = tagFile->getStream().tell();
    unsigned long long next = 0;
    if (tagFile->freadNextIfdOffset(&next) != 1) {
        warn(warnings::nextIfdOffsetReadError(position));
        return 0;
    }
    return next;
}

void IFDTree::push_back(IFD ifd) {
    for (const TiffTag& tag : ifd.getTags()) {
        tagNames[tag.getId()] = tag.getName();
    }
    hasUnknownTags = hasUnknownTags || ifd.hasUnknownTags();
    ifds.push_back(std::move(ifd));
}

}  // namespace corvinex
