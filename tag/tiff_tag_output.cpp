#include <algorithm>
#include <iterator>
#include <string>

#include "directory/ifd_tree.h"
#include "entry/host_value.h"
#include "host/interface/platform.h"
#include "tag/tag_numbers.h"
#include "tag/tiff_tag.h"
#include "vocabulary/word_tables.h"

// From a tag's value to the host array of its field.

namespace corvinex {

HostArray TiffTag::getZxArray() {
    switch (tagId) {
        case tag_number::ColorMap:
            return getZxArrayColormap();
        case tag_number::SubIFDs:
            return getZxArraySubIfds();
        case tag_number::SampleFormat:
            return getZxArraySampleFormat();
        case tag_number::ExifIFD:
        case tag_number::GPSInfo:
        case tag_number::InteroperabilityIFD:
            return subIfdTrees.front().repackageIfds();
        case tag_number::ImageSourceData:
            return getZxArrayImageSourceData();
        default:
            break;
    }
    if (!decodedText.empty()) {
        return trim_nulls(decodedText);
    }
    if (!rawText.empty()) {
        return trim_nulls(rawText);
    }
    return numericValues.empty() ? HostArray() : makeNumberRow(numericValues);
}

// The file stores all reds, then all greens, then all blues: column-major order makes each a
// column.
HostArray TiffTag::getZxArrayColormap() {
    constexpr double largestSample = 65535.0;
    constexpr std::size_t channels = 3;
    if (numericValues.empty()) {
        return {};
    }
    for (double& value : numericValues) {
        value /= largestSample;
    }
    return makeNumbers(numericValues, numericValues.size() / channels, channels);
}

HostArray TiffTag::getZxArraySampleFormat() const {
    if (numericValues.size() == 1) {
        return makeWord(words::findWord(words::sampleFormat, numericValues.front()));
    }
    HostArray cells = makeCellRow(numericValues.size());
    for (std::size_t i = 0; i < numericValues.size(); ++i) {
        setCell(*cells, i, makeWord(words::findWord(words::sampleFormat, numericValues[i])));
    }
    return cells;
}

HostArray TiffTag::getZxArrayImageSourceData() const {
    return makeByteRow(imageSourceBytes);
}

HostArray TiffTag::getZxArraySubIfds() {
    HostArray cells = makeCellRow(subIfdTrees.size());
    for (std::size_t i = 0; i < subIfdTrees.size(); ++i) {
        setCell(*cells, i, subIfdTrees[i].repackageIfds());
    }
    return cells;
}

void TiffTag::setUnknownTagZx(zxArray& unknownTags, std::size_t index) const {
    setField(unknownTags, index, "ID", makeNumber(tagId));
    setField(unknownTags, index, "Offset", makeNumber(static_cast<double>(valueOffset)));
    setField(unknownTags, index, "Value",
             rawText.empty() ? makeNumberRow(numericValues) : getUnknownTagText());
}

HostArray TiffTag::getUnknownTagText() const {
    const std::string charset =
        fl::i18n::detect_charset(rawText.data(), rawText.size(), "<unknown>");
    const std::string text = rawText.substr(0, rawText.find('\0'));
    if (charset == "UTF-8") {
        return makeUtf8Text(text);
    }
    return makeText(fl::i18n::codecvt_string_to_ustring(
        text, charset, fl::i18n::codecvt_mode::lenient, fl::i18n::KvLocale::system));
}

HostArray TiffTag::trim_nulls(std::string_view text) {
    const auto last = std::find_if(text.rbegin(), text.rend(), [](char c) { return c != '\0'; });
    text.remove_suffix(static_cast<std::size_t>(std::distance(text.rbegin(), last)));
    return text.empty() ? makeEmptyText() : makeText(fl::i18n::to_ustring(std::string(text)));
}

}  // namespace corvinex
