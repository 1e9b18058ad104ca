#include "tag/tiff_tag.h"

#include <tiff.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "directory/ifd_tree.h"
#include "entry/reports/internal_errors.h"
#include "entry/reports/warnings.h"
#include "file/tag_file.h"
#include "format/byte_order.h"
#include "format/checked_arithmetic.h"
#include "format/entry_fields.h"
#include "tag/raw_value.h"
#include "tag/tag_numbers.h"
#include "tag/tag_validation.h"
#include "tag/tiff_type.h"

namespace corvinex {

TiffTag::TiffTag(TagFile* file, std::span<const unsigned char> entry, IFDtype_t_ kind)
    : tagFile(file), ifdType(kind) {
    tagId = loadEntryNumber(entry, file->getSwapBytes());
    dataType = loadEntryType(entry, file->getSwapBytes());
    setTagName();
    checkDataType();
    componentCount = file->readTagNumComponents(entry);
    checkComponentCount();
    setTagDataOffset(entry);
    processGenericTag();
}

TiffTag::TiffTag(unsigned short id, IFDtype_t_ kind) : ifdType(kind), isConstructed(true) {
    tagId = id;
    setTagName();
    const TagDefault& standard = tagRow->defaultValue;
    if (standard.kind != DefaultKind::Value && standard.kind != DefaultKind::NoValue) {
        // There is no file, so no record of issued warnings: this one is issued every time.
        warn(warnings::unrecognizedTagId(id));
        dropEntry();
    }
    if (standard.kind == DefaultKind::Value) {
        value = standard.value;
    }
    processSpecificTag();
}

TiffTag::TiffTag(int id, IFDtype_t_ kind, unsigned long number)
    : ifdType(kind), isConstructed(true) {
    tagId = static_cast<std::uint16_t>(id);
    value = static_cast<double>(number);
    setTagName();
    processSpecificTag();
}

TiffTag::TiffTag(unsigned short id, IFDtype_t_ kind, std::span<const double> bitsPerSample)
    : ifdType(kind), isConstructed(true) {
    tagId = id;
    std::transform(bitsPerSample.begin(), bitsPerSample.end(),
                   appendNumbers(bitsPerSample.size()).begin(), [id](double bits) {
                       return id == tag_number::MinSampleValue ? 0.0 : std::exp2(bits) - 1.0;
                   });
    setTagName();
    processSpecificTag();
}

TiffTag::TiffTag(const TiffTag& other)
    : TagValue(other),
      tagFile(other.tagFile),
      componentCount(other.componentCount),
      tagRow(other.tagRow) {}

TiffTag::TiffTag(TiffTag&& other) noexcept
    : TagValue(std::move(other)),
      tagFile(other.tagFile),
      componentCount(other.componentCount),
      tagRow(other.tagRow) {}

TiffTag::~TiffTag() = default;

void TiffTag::setTagName() noexcept {
    tagRow = &findTag(tagId);
    switch (ifdType) {
        case IFDtype_t_::Main:
        case IFDtype_t_::EXIF:
            name = tagRow->name;
            return;
        case IFDtype_t_::GPS:
            name = findGpsTagName(tagId);
            return;
        default:
            name = findInteropTagName(tagId);
    }
}

void TiffTag::checkDataType() {
    if (!isKnownTypeCode(dataType)) {
        tagFile->warnOncePerFile("unrecognizedTagFormatId" + std::to_string(dataType),
                                 warnings::unrecognizedTagFormatId(dataType));
        throw TiffTagsRecoverableError("TiffTag::TiffTag");
    }
    if (dataType == TIFF_NOTYPE) {
        dropUntypedEntry();
    }
}

void TiffTag::dropUntypedEntry() const {
    tagFile->warnOncePerFile("noTypeFormatId" + std::string(getName()),
                             warnings::noTypeFormatId(getName()));
    dropEntry();
}

void TiffTag::checkComponentCount() {
    if (componentCount == 0) {
        tagFile->warnOncePerFile("zeroComponentCount" + std::string(getName()),
                                 warnings::zeroComponentCount(getName()));
    }
    if (tagRow->requiredCount != 0) {
        validate_tag_against_number_of_components(tagId, componentCount);
    }
}

void TiffTag::setTagDataOffset(std::span<const unsigned char> entry) {
    const std::uint64_t elementWidth = getElementWidth(dataType);
    const std::uint64_t byteCount = saturatingMultiply(componentCount, elementWidth);
    // The two halves of a rational are swapped as numbers of their own.
    const bool isRational = dataType == TIFF_RATIONAL || dataType == TIFF_SRATIONAL;
    const std::uint64_t elementSize = isRational ? elementWidth / 2 : elementWidth;
    const std::uint64_t elementCount =
        isRational ? saturatingMultiply(componentCount, 2) : componentCount;

    if (byteCount <= tagFile->getOffsetSize()) {
        valueOffset = 0;
        rawData.emplace(byteCount,
                        entry.subspan(tagFile->getValueFieldPosition(), tagFile->getOffsetSize()));
    } else {
        valueOffset = tagFile->readTagDataOffset(entry);
        readTagData(byteCount, elementSize, elementCount);
    }
    raw2native(rawData->bytes().data(), elementSize, elementCount, tagFile->getSwapBytes());
}

void TiffTag::readTagData(std::uint64_t byteCount, std::uint64_t elementSize,
                          std::uint64_t elementCount) {
    const std::uint64_t position = saturatingAdd(tagFile->getBaseOffset(), valueOffset);
    if (!tagFile->getStream().seek(position)) {
        tagFile->warnOncePerFile("badTagDataOffsetSeek" + std::to_string(tagId),
                                 warnings::badTagDataOffsetSeek(tagId));
        dropEntry();
    }
    if (!liesWithin(position, byteCount, tagFile->getFileSize())) {
        tagFile->warnOncePerFile(
            "tagDataPastEOF" + std::to_string(tagId) + std::to_string(byteCount),
            warnings::tagDataPastEOF(tagId, byteCount));
        dropEntry();
    }
    RawValue& raw = rawData.emplace(byteCount, getMemoryFor(byteCount));
    if (tagFile->getStream().read(raw.bytes().data(), elementSize, elementCount) != elementCount) {
        const std::string label = name == nullptr ? std::to_string(tagId) : name;
        tagFile->warnOncePerFile("unableToReadTiffTag" + label,
                                 warnings::unableToReadTiffTag(label, position));
        dropEntry();
    }
}

void TiffTag::validateTag() {
    const TypeGroup& group = getTypeGroup(tagRow->types);
    if ((group.allowed >> dataType & 1U) != 0) {
        return;
    }
    const std::string actualType = get_datatype_name(static_cast<TIFFDataType>(dataType));
    const std::string key = std::string(group.word) + std::string(getName()) + actualType;
    tagFile->warnOncePerFile(
        key, group.allowsSeveral()
                 ? warnings::expectedTagDataFormatMultiple(getName(), actualType, group.typeNames)
                 : warnings::expectedTagDataFormat(getName(), group.typeNames, actualType));
}

std::pmr::memory_resource& TiffTag::getMemoryFor(std::size_t byteCount) const noexcept {
    return tagFile == nullptr ? *std::pmr::get_default_resource()
                              : tagFile->getValueMemory(byteCount);
}

std::span<const unsigned char> TiffTag::getRawData() const noexcept {
    return rawData ? rawData->bytes() : std::span<const unsigned char>();
}

void TiffTag::processGenericTag() {
    validateTag();
    if (tagRow->pointer != Pointer::None) {
        processSubIfds();
    } else if (rawData) {
        processNormalTagData();
        // Most tags have no decoder; the exception is raised for a directory kind without any.
        if (tagRow->decoder != Decoder::None || ifdType > IFDtype_t_::EXIF) {
            processSpecificTag();
        }
    }
}

// The doubled letter is kept on purpose: the text is documented so, and whoever catches the
// exception and compares its text would notice a change. An unknown type alone has the plain name.
void TiffTag::dropEntry() {
    throw TiffTagsRecoverableError("TIiffTag::TiffTag");
}

}  // namespace corvinex
