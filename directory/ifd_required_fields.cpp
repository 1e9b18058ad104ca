#include <cstddef>
#include <cstdint>
#include <utility>

#include "directory/ifd.h"
#include "format/numeric_conversion.h"
#include "tag/tag_numbers.h"
#include "tag/tiff_tag.h"
#include "vocabulary/tag_table.h"

// The baseline tags that every main directory of a TIFF answers, and the facts of its image.

namespace corvinex {

namespace {

constexpr std::uint32_t allDefaults = (std::uint32_t{1} << defaultTagCount) - 1;

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

}  // namespace corvinex
