#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>

#include "directory/ifd.h"
#include "entry/host_value.h"
#include "entry/numeric_conversion.h"
#include "tag/tag_numbers.h"
#include "vocabulary/word_tables.h"

// The baseline tags that every main directory of a TIFF answers, and the fields derived from them.

namespace corvinex {

namespace {

constexpr std::uint16_t firstBaselineTag = 254;
constexpr std::uint16_t lastBaselineTag = 325;

// Tags whose presence alone is noted.
constexpr std::array<std::uint16_t, 20> notedTags{254, 259, 263, 266, 273, 274, 278, 279, 280, 281,
                                                  282, 283, 284, 290, 296, 320, 322, 323, 324, 325};

/// How the default of a missing tag is made.
enum class Maker { Standard, SampleCount, FromBitsPerSample };

struct RequiredTag {
    std::uint16_t tag;
    Maker maker;
};

// In the order in which missing tags are appended.
constexpr std::array<RequiredTag, 22> requiredTags{{
    {254, Maker::Standard},           // NewSubfileType
    {258, Maker::SampleCount},        // BitsPerSample
    {259, Maker::Standard},           // Compression
    {263, Maker::Standard},           // Threshholding
    {266, Maker::Standard},           // FillOrder
    {273, Maker::Standard},           // StripOffsets
    {274, Maker::Standard},           // Orientation
    {277, Maker::Standard},           // SamplesPerPixel
    {278, Maker::Standard},           // RowsPerStrip
    {279, Maker::Standard},           // StripByteCounts
    {280, Maker::FromBitsPerSample},  // MinSampleValue
    {281, Maker::FromBitsPerSample},  // MaxSampleValue
    {282, Maker::Standard},           // XResolution
    {283, Maker::Standard},           // YResolution
    {284, Maker::Standard},           // PlanarConfiguration
    {290, Maker::Standard},           // GrayResponseUnit
    {296, Maker::Standard},           // ResolutionUnit
    {320, Maker::Standard},           // ColorMap
    {322, Maker::Standard},           // TileWidth
    {323, Maker::Standard},           // TileLength
    {324, Maker::Standard},           // TileOffsets
    {325, Maker::Standard},           // TileByteCounts
}};

}  // namespace

void IFD::flagDefaultValues(const TiffTag& tag) {
    const std::uint16_t id = tag.getId();
    if (id < firstBaselineTag || id > lastBaselineTag) {
        return;
    }
    switch (id) {
        case tag_number::BitsPerSample:
            bitsPerSample.assign(tag.getNumericValues().begin(), tag.getNumericValues().end());
            tagsSeen.set(id);
            return;
        case tag_number::PhotometricInterpretation:
            photometric = truncateTo<std::int32_t>(tag.getNumericValue(0));
            return;
        case tag_number::SamplesPerPixel:
            // The number of values, not the value: a file with SamplesPerPixel 3 and no
            // BitsPerSample gets one default depth. Callers rely on it.
            samplesPerPixel = tag.getNumericValues().size();
            tagsSeen.set(id);
            return;
        default:
            for (const std::uint16_t noted : notedTags) {
                if (noted == id) {
                    tagsSeen.set(id);
                }
            }
    }
}

void IFD::processRequiredFields() {
    const auto missing =
        std::count_if(requiredTags.begin(), requiredTags.end(),
                      [this](const RequiredTag& required) { return !tagsSeen.test(required.tag); });
    // No more room than is used: a result holds this for every directory.
    tags.reserve(tags.size() + static_cast<std::size_t>(missing));
    for (const RequiredTag& required : requiredTags) {
        if (tagsSeen.test(required.tag)) {
            continue;
        }
        switch (required.maker) {
            case Maker::Standard:
                tags.emplace_back(required.tag, ifdType);
                break;
            case Maker::SampleCount:
                tags.emplace_back(int{required.tag}, ifdType, samplesPerPixel);
                bitsPerSample.insert(bitsPerSample.end(), samplesPerPixel, 1.0);
                break;
            case Maker::FromBitsPerSample:
                tags.emplace_back(required.tag, ifdType, std::span<const double>(bitsPerSample));
                break;
        }
    }
}

void IFD::setWidthAndHeight(zxArray& output, std::size_t index) const {
    setField(output, index, "Width", makeNumber(width));
    setField(output, index, "Height", makeNumber(height));
}

void IFD::setColorType(zxArray& output, std::size_t index) const {
    const char* colorType = words::findWordOrNull(words::colorType, photometric);
    setField(output, index, "ColorType",
             colorType == nullptr ? makeNumber(photometric) : makeWord(colorType));
}

void IFD::setBitDepth(zxArray& output, std::size_t index) const {
    const double depth = std::accumulate(bitsPerSample.begin(), bitsPerSample.end(), 0.0);
    setField(output, index, "BitDepth", makeNumber(depth));
}

}  // namespace corvinex
