#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "directory/ifd_tree.h"
#include "entry/values/host_value.h"
#include "host/interface/platform.h"
#include "tag/tag_numbers.h"
#include "tag/tag_value.h"
#include "vocabulary/tag_table.h"
#include "vocabulary/word_tables.h"

// From a tag's value to the host array of its field.

namespace corvinex {

HostArray TagValue::getZxArray() {
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
            return std::get<SubDirectories>(value).sets().front().repackageIfds();
        case tag_number::ImageSourceData:
            return getZxArrayImageSourceData();
        default:
            return getPlainZxArray();
    }
}

HostArray TagValue::getPlainZxArray() const {
    if (decodedWord != words::noWord) {
        return makeWord(words::getWord(findTag(tagId).words, decodedWord));
    }
    return std::holds_alternative<double>(value) ? getNumberRow() : getTextOrNumberRow();
}

HostArray TagValue::getTextOrNumberRow() const {
    const std::string_view text = getRawText();
    if (!text.empty()) {
        return trim_nulls(text);
    }
    return countNumericValues() == 0 ? HostArray() : getNumberRow();
}

// Straight into the host's array: large values are never held as numbers twice.
HostArray TagValue::getNumberRow() const {
    if (const double* number = std::get_if<double>(&value)) {
        return makeNumber(*number);
    }
    const std::size_t count = countNumericValues();
    HostArray row = makeUnsetNumbers(1, count);
    copyNumbersTo(getNumbers(*row, count));
    return row;
}

// The file stores all reds, then all greens, then all blues: column-major order makes each a
// column.
HostArray TagValue::getZxArrayColormap() {
    constexpr double largestSample = 65535.0;
    constexpr std::size_t channels = 3;
    const std::span<double> samples = unpackNumbers();
    if (samples.empty()) {
        return {};
    }
    for (double& sample : samples) {
        sample /= largestSample;
    }
    return makeNumbers(samples, samples.size() / channels, channels);
}

HostArray TagValue::getZxArraySampleFormat() const {
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

HostArray TagValue::getZxArrayImageSourceData() const {
    return makeByteRow(std::get<Bytes>(value));
}

HostArray TagValue::getZxArraySubIfds() {
    auto& sets = std::get<SubDirectories>(value).sets();
    HostArray cells = makeCellRow(sets.size());
    for (std::size_t i = 0; i < sets.size(); ++i) {
        setCell(*cells, i, sets[i].repackageIfds());
    }
    return cells;
}

void TagValue::setUnknownTagZx(zxArray& unknownTags, std::size_t index) const {
    setField(unknownTags, index, "ID", makeNumber(tagId));
    setField(unknownTags, index, "Offset", makeNumber(static_cast<double>(valueOffset)));
    setField(unknownTags, index, "Value",
             getRawText().empty() ? getNumberRow() : getUnknownTagText());
}

HostArray TagValue::getUnknownTagText() const {
    const std::string_view rawText = getRawText();
    const std::string charset =
        fl::i18n::detect_charset(rawText.data(), rawText.size(), "<unknown>");
    const std::string text(rawText.substr(0, rawText.find('\0')));
    if (charset == "UTF-8") {
        return makeUtf8Text(text);
    }
    return makeText(fl::i18n::codecvt_string_to_ustring(
        text, charset, fl::i18n::codecvt_mode::lenient, fl::i18n::KvLocale::system));
}

HostArray TagValue::trim_nulls(std::string_view text) {
    const auto last = std::find_if(text.rbegin(), text.rend(), [](char c) { return c != '\0'; });
    text.remove_suffix(static_cast<std::size_t>(std::distance(text.rbegin(), last)));
    return text.empty() ? makeEmptyText() : makeText(fl::i18n::to_ustring(std::string(text)));
}

}  // namespace corvinex
