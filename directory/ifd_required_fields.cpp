#include <array>
#include <bit>
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
#include "vocabulary/tag_table.h"
#include "vocabulary/word_tables.h"

// The baseline tags that every main directory of a TIFF answers, and the fields derived from them.

namespace corvinex {

namespace {

constexpr std::uint32_t allDefaults = (std::uint32_t{1} << defaultTagCount) - 1;

TiffTag makeStandardDefault(const TagRow& row) {
    const DefaultKind kind = row.standsIn.kind;
    return kind == DefaultKind::Value || kind == DefaultKind::NoValue
               ? TiffTag(row.number, IFDtype_t_::Main)
               : TiffTag(int{row.number}, IFDtype_t_::Main, 0);
}

template <std::size_t... i>
std::array<TiffTag, defaultTagCount> makeStandardDefaults(std::index_sequence<i...> /*places*/) {
    return {makeStandardDefault(*getDefaultTagRows()[i])...};
}

/// The defaults that are the same for every directory. The others have their places, unused.
const std::array<TiffTag, defaultTagCount>& getStandardDefaults() {
    static const auto defaults = makeStandardDefaults(std::make_index_sequence<defaultTagCount>());
    return defaults;
}

}  // namespace

void IFD::flagDefaultValues(const TiffTag& tag) {
    tagsSeen |= tag.getRow().defaultBit;
    switch (tag.getId()) {
        case tag_number::BitsPerSample:
            bitsPerSample.resize(tag.countNumericValues());
            tag.copyNumbersTo(bitsPerSample);
            return;
        case tag_number::PhotometricInterpretation:
            photometric = truncateTo<std::int32_t>(tag.getNumericValue(0));
            return;
        case tag_number::SamplesPerPixel:
            // The number of values, not the value: a file with SamplesPerPixel 3 and no
            // BitsPerSample gets one default depth. It is kept on purpose; callers who sum up
            // depths would notice a change.
            samplesPerPixel = tag.countNumericValues();
            return;
        default:
            return;
    }
}

void IFD::processRequiredFields() {
    defaultTags = allDefaults & ~tagsSeen;
    if ((tagsSeen & findTag(tag_number::BitsPerSample).defaultBit) == 0) {
        bitsPerSample.assign(samplesPerPixel, 1.0);
    }
}

std::pair<std::uint16_t, std::string_view> IFD::getBaselineTag(std::size_t i) {
    const TagRow& row = *getDefaultTagRows()[i];
    return {row.number, row.name};
}

HostArray IFD::getDefaultZxArray(std::size_t i, const TagValue& standardDefault) const {
    const TagRow& row = *getDefaultTagRows()[i];
    switch (row.standsIn.kind) {
        case DefaultKind::SampleCount:
            return TiffTag(int{row.number}, ifdType, samplesPerPixel).getPlainZxArray();
        case DefaultKind::BitsPerSample:
            return TiffTag(row.number, ifdType, bitsPerSample).getPlainZxArray();
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
