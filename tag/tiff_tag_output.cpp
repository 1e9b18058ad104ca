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
            return std::get<Sets>(value).front().repackageIfds();
        case tag_number::ImageSourceData:
            return getZxArrayImageSourceData();
        default:
            break;
    }
    if (decodedWord != nullptr) {
        return makeWord(decodedWord);
    }
    const std::string& text = getRawText();
    if (!text.empty()) {
        return trim_nulls(text);
    }
    const auto numbers = getNumericValues();
    return numbers.empty() ? HostArray() : makeNumberRow(numbers);
}

// The file stores all reds, then all greens, then all blues: column-major order makes each a
// column.
HostArray TiffTag::getZxArrayColormap() {
    constexpr double largestSample = 65535.0;
    constexpr std::size_t channels = 3;
    const std::span<double> samples = getNumericValues();
    if (samples.empty()) {
        return {};
    }
    for (double& sample : samples) {
        sample /= largestSample;
    }
    return makeNumbers(samples, samples.size() / channels, channels);
}

HostArray TiffTag::getZxArraySampleFormat() const {
    const auto formats = getNumericValues();
    if (formats.size() == 1) {
        return makeWord(words::findWord(words::sampleFormat, formats.front()));
    }
    HostArray cells = makeCellRow(formats.size());
    for (std::size_t i = 0; i < formats.size(); ++i) {
        setCell(*cells, i, makeWord(words::findWord(words::sampleFormat, formats[i])));
    }
    return cells;
}

HostArray TiffTag::getZxArrayImageSourceData() const {
    return makeByteRow(std::get<Bytes>(value));
}

HostArray TiffTag::getZxArraySubIfds() {
    Sets& sets = std::get<Sets>(value);
    HostArray cells = makeCellRow(sets.size());
    for (std::size_t i = 0; i < sets.size(); ++i) {
        setCell(*cells, i, sets[i].repackageIfds());
    }
    return cells;
}

void TiffTag::setUnknownTagZx(zxArray& unknownTags, std::size_t index) const {
    setField(unknownTags, index, "ID", makeNumber(tagId));
    setField(unknownTags, index, "Offset", makeNumber(static_cast<double>(valueOffset)));
    setField(unknownTags, index, "Value",
             getRawText().empty() ? makeNumberRow(getNumericValues()) : getUnknownTagText());
}

HostArray TiffTag::getUnknownTagText() const {
    const std::string& rawText = getRawText();
    const std::string charset =
        fl::i18n::detect_charset(rawText.data(), rawText.size(), "<unknown>");
    const std::string text = rawText.substr(0, rawText.find('\0'));
    if (charset == "UTF-8") {
        return makeUtf8Text(text);
    }
    return makeText(fl::i18n::codecvt_string_to_ustring(
        text, charset, fl::i18n::codecvt_mode::lenient, fl::i18n::KvLocale::system));
}

const std::string& TiffTag::getRawText() const noexcept {
    static const std::string noText;
    const auto* text = std::get_if<std::string>(&value);
    return text == nullptr ? noText : *text;
}

HostArray TiffTag::trim_nulls(std::string_view text) {
    const auto last = std::find_if(text.rbegin(), text.rend(), [](char c) { return c != '\0'; });
    text.remove_suffix(static_cast<std::size_t>(std::distance(text.rbegin(), last)));
    return text.empty() ? makeEmptyText() : makeText(fl::i18n::to_ustring(std::string(text)));
}

}  // namespace corvinex
