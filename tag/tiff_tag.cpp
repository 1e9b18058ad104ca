#include "tag/tiff_tag.h"

#include <tiff.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "directory/ifd_tree.h"
#include "entry/internal_errors.h"
#include "entry/warnings.h"
#include "file/byte_order.h"
#include "file/checked_arithmetic.h"
#include "file/tag_file.h"
#include "tag/tag_numbers.h"
#include "tag/tag_validation.h"
#include "tag/tiff_type.h"
#include "vocabulary/tag_dictionary.h"

namespace corvinex {

namespace {

constexpr std::size_t idPosition = 0;
constexpr std::size_t typePosition = 2;

struct Default {
    std::uint16_t tag;
    bool hasValue;
    double value;
};

// TIFF 6.0. Where the standard has no default the tag has no value.
constexpr std::array<Default, 19> defaults{{
    {254, true, 0},            // NewSubfileType
    {259, true, 1},            // Compression
    {263, true, 1},            // Threshholding
    {266, true, 1},            // FillOrder
    {273, false, 0},           // StripOffsets
    {274, true, 1},            // Orientation
    {277, true, 1},            // SamplesPerPixel
    {278, true, 4294967295.},  // RowsPerStrip: 2^32 - 1
    {279, false, 0},           // StripByteCounts
    {282, false, 0},           // XResolution
    {283, false, 0},           // YResolution
    {284, true, 1},            // PlanarConfiguration
    {290, true, 2},            // GrayResponseUnit
    {296, true, 2},            // ResolutionUnit
    {320, false, 0},           // ColorMap
    {322, false, 0},           // TileWidth
    {323, false, 0},           // TileLength
    {324, false, 0},           // TileOffsets
    {325, false, 0},           // TileByteCounts
}};

bool isRationalType(std::uint32_t type) noexcept {
    return type == TIFF_RATIONAL || type == TIFF_SRATIONAL;
}

}  // namespace

TiffTag::TiffTag(TagFile* file, std::span<const unsigned char> entry, IFDtype_t_ kind)
    : tagFile(file),
      tagId(loadFromFile<std::uint16_t>(entry, idPosition, file->getSwapBytes())),
      ifdType(kind) {
    setTagName();
    dataType = loadFromFile<std::uint16_t>(entry, typePosition, file->getSwapBytes());
    checkDataType();
    componentCount = file->readTagNumComponents(entry);
    checkComponentCount();
    setTagDataOffset(entry, getElementWidth(dataType));
    validateTag();
    processTagData();
}

TiffTag::TiffTag(unsigned short id, IFDtype_t_ kind)
    : tagId(id), isConstructed(true), ifdType(kind) {
    setTagName();
    const auto* row = std::find_if(defaults.begin(), defaults.end(),
                                   [id](const Default& candidate) { return candidate.tag == id; });
    if (row == defaults.end()) {
        // There is no file, so no record of issued warnings: this one is issued every time.
        warn(warnings::unrecognizedTagId(id));
        dropEntry();
    }
    if (row->hasValue) {
        numericValues.push_back(row->value);
    }
    processSpecificTag();
}

TiffTag::TiffTag(int id, IFDtype_t_ kind, unsigned long value)
    : numericValues(1, static_cast<double>(value)),
      tagId(static_cast<std::uint16_t>(id)),
      isConstructed(true),
      ifdType(kind) {
    setTagName();
    processSpecificTag();
}

TiffTag::TiffTag(unsigned short id, IFDtype_t_ kind, std::span<const double> bitsPerSample)
    : tagId(id), isConstructed(true), ifdType(kind) {
    numericValues.reserve(bitsPerSample.size());
    for (const double bits : bitsPerSample) {
        numericValues.push_back(id == tag_number::MinSampleValue ? 0.0 : std::exp2(bits) - 1.0);
    }
    setTagName();
    processSpecificTag();
}

TiffTag::TiffTag(const TiffTag& other)
    : imageSourceBytes(other.imageSourceBytes),
      numericValues(other.numericValues),
      rawText(other.rawText),
      decodedText(other.decodedText),
      tagFile(other.tagFile),
      tagId(other.tagId),
      dataType(other.dataType),
      componentCount(other.componentCount),
      valueOffset(other.valueOffset),
      byteCount(other.byteCount),
      name(other.name),
      subIfdTrees(other.subIfdTrees) {}

TiffTag::TiffTag(TiffTag&& other) noexcept
    : imageSourceBytes(std::move(other.imageSourceBytes)),
      numericValues(std::move(other.numericValues)),
      rawText(std::move(other.rawText)),
      decodedText(std::move(other.decodedText)),
      tagFile(other.tagFile),
      tagId(other.tagId),
      dataType(other.dataType),
      componentCount(other.componentCount),
      valueOffset(other.valueOffset),
      byteCount(other.byteCount),
      name(other.name),
      subIfdTrees(std::move(other.subIfdTrees)) {}

TiffTag::~TiffTag() = default;

double TiffTag::getNumericValue(int /*index*/) const noexcept {
    return numericValues.empty() ? 0.0 : numericValues.front();
}

void TiffTag::releaseRawData() noexcept {
    std::vector<unsigned char>().swap(rawData);
}

void TiffTag::processGenericTag() {
    validateTag();
    processTagData();
}

void TiffTag::setTagName() noexcept {
    const TagDictionary& dictionary = ifdType == IFDtype_t_::Main || ifdType == IFDtype_t_::EXIF
                                          ? primaryMap
                                      : ifdType == IFDtype_t_::GPS ? GPSmap
                                                                   : interopMap;
    const std::string* found = findTagName(dictionary, tagId);
    name = found == nullptr ? std::string_view() : std::string_view(*found);
}

void TiffTag::checkDataType() {
    if (!isKnownTypeCode(dataType)) {
        const auto code = static_cast<std::uint16_t>(dataType);
        tagFile->warnOncePerFile("unrecognizedTagFormatId" + std::to_string(code),
                                 warnings::unrecognizedTagFormatId(code));
        throw TiffTagsRecoverableError("TiffTag::TiffTag");
    }
    if (dataType == TIFF_NOTYPE) {
        tagFile->warnOncePerFile("noTypeFormatId" + std::string(name),
                                 warnings::noTypeFormatId(name));
        dropEntry();
    }
}

void TiffTag::checkComponentCount() {
    if (componentCount == 0) {
        tagFile->warnOncePerFile("zeroComponentCount" + std::string(name),
                                 warnings::zeroComponentCount(name));
    }
    validate_tag_against_number_of_components(tagId, componentCount);
}

void TiffTag::setTagDataOffset(std::span<const unsigned char> entry, std::uint64_t elementWidth) {
    // The two halves of a rational are swapped as numbers of their own.
    const std::uint64_t elementSize = isRationalType(dataType) ? elementWidth / 2 : elementWidth;
    const std::uint64_t elementCount =
        isRationalType(dataType) ? saturatingMultiply(componentCount, 2) : componentCount;
    byteCount = saturatingMultiply(componentCount, elementWidth);

    if (byteCount <= tagFile->getOffsetSize()) {
        valueOffset = 0;
        const auto value = entry.subspan(tagFile->getValueFieldPosition(), byteCount);
        rawData.assign(value.begin(), value.end());
    } else {
        valueOffset = tagFile->readTagDataOffset(entry);
        readTagData(elementSize, elementCount);
    }
    raw2native(rawData.data(), elementSize, elementCount, tagFile->getSwapBytes());
}

void TiffTag::readTagData(std::uint64_t elementSize, std::uint64_t elementCount) {
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
    rawData.resize(byteCount);
    if (tagFile->getStream().read(rawData.data(), elementSize, elementCount) != elementCount) {
        const std::string label = name.empty() ? std::to_string(tagId) : std::string(name);
        tagFile->warnOncePerFile("unableToReadTiffTag" + label,
                                 warnings::unableToReadTiffTag(label, position));
        dropEntry();
    }
}

void TiffTag::validateTag() {
    const TypeRule* rule = findTypeRule(tagId);
    if (rule == nullptr || std::find(rule->allowedTypes.begin(), rule->allowedTypes.end(),
                                     dataType) != rule->allowedTypes.end()) {
        return;
    }
    const std::string actualType = get_datatype_name(static_cast<TIFFDataType>(dataType));
    const std::string key = std::string(rule->groupWord) + std::string(name) + actualType;
    tagFile->warnOncePerFile(
        key, rule->isMultiple
                 ? warnings::expectedTagDataFormatMultiple(name, actualType, rule->allowedNames)
                 : warnings::expectedTagDataFormat(name, rule->allowedNames, actualType));
}

void TiffTag::processTagData() {
    if (isSubIfdPointer()) {
        processSubIfds();
    } else {
        processNormalTagData();
        processSpecificTag();
    }
}

bool TiffTag::isSubIfdPointer() const noexcept {
    return tagId == tag_number::SubIFDs || tagId == tag_number::ExifIFD ||
           tagId == tag_number::GPSInfo || tagId == tag_number::InteroperabilityIFD;
}

void TiffTag::dropEntry() const {
    throw TiffTagsRecoverableError("TIiffTag::TiffTag");
}

}  // namespace corvinex
