#include <algorithm>
#include <array>
#include <bit>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <span>
#include <string_view>
#include <utility>

#include "directory/ifd.h"
#include "entry/host_value.h"
#include "entry/numeric_conversion.h"
#include "tag/tag_numbers.h"
#include "tag/tiff_tag.h"
#include "vocabulary/word_tables.h"

// The baseline tags that every main directory of a TIFF answers, and the fields derived from them.

namespace corvinex {

namespace {

constexpr std::uint16_t firstBaselineTag = 254;
constexpr std::uint16_t lastBaselineTag = 325;

// Tags whose presence alone is noted.
constexpr std::array<std::uint16_t, 20> notedTags{254, 259, 263, 266, 273, 274, 278, 279, 280, 281,
                                                  282, 283, 284, 290, 296, 320, 322, 323, 324, 325};

// By number, from the first baseline tag on.
constexpr auto noted = [] {
    std::array<bool, lastBaselineTag - firstBaselineTag + 1> result{};
    for (const std::uint16_t tag : notedTags) {
        result.at(tag - firstBaselineTag) = true;
    }
    return result;
}();

constexpr bool isNoted(std::uint16_t baselineTag) {
    return noted.at(baselineTag - firstBaselineTag);
}

/// How the default of a missing tag is made.
enum class Maker { Standard, SampleCount, FromBitsPerSample };

struct RequiredTag {
    std::uint16_t tag;
    Maker maker;
};

// In the order in which missing tags are added, which is that of their numbers.
constexpr std::size_t requiredTagCount = 22;
constexpr std::array<RequiredTag, requiredTagCount> requiredTags{{
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

static_assert(std::is_sorted(requiredTags.begin(), requiredTags.end(),
                             [](const RequiredTag& a, const RequiredTag& b) {
                                 return a.tag < b.tag;
                             }));

/// Bit i stands for the tag that is the i-th to be added. Unrolled, as every page asks.
template <std::size_t... i>
std::uint32_t findMissing(const std::bitset<lastBaselineTag + 1>& seen,
                          std::index_sequence<i...> /*places*/) {
    return ((seen[requiredTags[i].tag] ? 0 : std::uint32_t{1} << i) | ...);
}

TiffTag makeStandardDefault(const RequiredTag& required) {
    return required.maker == Maker::Standard ? TiffTag(required.tag, IFDtype_t_::Main)
                                             : TiffTag(int{required.tag}, IFDtype_t_::Main, 0);
}

template <std::size_t... i>
std::array<TiffTag, requiredTagCount> makeStandardDefaults(std::index_sequence<i...>) {
    return {makeStandardDefault(requiredTags[i])...};
}

/// The defaults that are the same for every directory. The others have their places, unused.
const std::array<TiffTag, requiredTagCount>& getStandardDefaults() {
    static const auto defaults = makeStandardDefaults(std::make_index_sequence<requiredTagCount>());
    return defaults;
}

}  // namespace

void IFD::flagDefaultValues(const TiffTag& tag) {
    const std::uint16_t id = tag.getId();
    if (id < firstBaselineTag || id > lastBaselineTag) {
        return;
    }
    switch (id) {
        case tag_number::BitsPerSample:
            bitsPerSample.resize(tag.countNumericValues());
            tag.copyNumbersTo(bitsPerSample);
            tagsSeen.set(id);
            return;
        case tag_number::PhotometricInterpretation:
            photometric = truncateTo<std::int32_t>(tag.getNumericValue(0));
            return;
        case tag_number::SamplesPerPixel:
            // The number of values, not the value: a file with SamplesPerPixel 3 and no
            // BitsPerSample gets one default depth. Callers rely on it.
            samplesPerPixel = tag.countNumericValues();
            tagsSeen.set(id);
            return;
        default:
            if (isNoted(id)) {
                tagsSeen.set(id);
            }
    }
}

void IFD::processRequiredFields() {
    defaultTags = findMissing(tagsSeen, std::make_index_sequence<requiredTagCount>());
    if (!tagsSeen.test(tag_number::BitsPerSample)) {
        bitsPerSample.assign(samplesPerPixel, 1.0);
    }
}

std::pair<std::uint16_t, std::string_view> IFD::getBaselineTag(std::size_t i) {
    return {requiredTags.at(i).tag, getStandardDefaults().at(i).getName()};
}

HostArray IFD::getDefaultZxArray(std::size_t i, const TagValue& standardDefault) const {
    const RequiredTag& required = requiredTags[i];
    switch (required.maker) {
        case Maker::SampleCount:
            return TiffTag(int{required.tag}, ifdType, samplesPerPixel).getPlainZxArray();
        case Maker::FromBitsPerSample:
            return TiffTag(required.tag, ifdType, bitsPerSample).getPlainZxArray();
        default:
            return standardDefault.getPlainZxArray();
    }
}

void IFD::setDefaultFields(zxArray& output, std::size_t index) const {
    const auto& standardDefaults = getStandardDefaults();
    for (std::uint32_t left = defaultTags; left != 0; left &= left - 1) {
        const auto i = static_cast<std::size_t>(std::countr_zero(left));
        const TagValue& standard = standardDefaults.at(i);
        setField(output, index, standard.getFieldName(), getDefaultZxArray(i, standard));
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
