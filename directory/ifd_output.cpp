#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <utility>

#include "directory/ifd.h"
#include "entry/values/host_value.h"
#include "tag/tiff_tag.h"
#include "vocabulary/tag_table.h"
#include "vocabulary/word_tables.h"

// From a directory to one element of its set's struct array.

namespace corvinex {

namespace {

constexpr std::array unknownTagFields{"ID", "Offset", "Value"};

/// Gives back the elements of a list and their memory.
void release(auto& list) {
    list.clear();
    list.shrink_to_fit();
}

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

// What has been packaged is given back at once: the memory serves the host values that follow. The
// arena goes with the last directory in it, so nothing of this one is left there.
void IFD::ifd2struct(zxArray& output, std::size_t index) {
    for (TagValue& tag : tags) {
        setField(output, index, tag.getFieldName(), tag.getZxArray());
    }
    release(tags);
    setDefaultFields(output, index);
    if (!unknownTags.empty()) {
        HostArray records = makeStructColumn(unknownTags.size(), unknownTagFields);
        for (std::size_t i = 0; i < unknownTags.size(); ++i) {
            unknownTags[i].setUnknownTagZx(*records, i);
        }
        setField(output, index, "UnknownTags", std::move(records));
    }
    release(unknownTags);
    release(bitsPerSample);
    arena.reset();
}

}  // namespace corvinex
