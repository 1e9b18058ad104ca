#include <tiff.h>

#include <algorithm>
#include <bit>
#include <string>
#include <string_view>
#include <utility>

#include "entry/reports/fatal_errors.h"
#include "entry/reports/warnings.h"
#include "file/tag_file.h"
#include "format/byte_order.h"
#include "tag/number_conversion.h"
#include "tag/tag_numbers.h"
#include "tag/tiff_tag.h"

// From value bytes, already in host byte order, to numbers, text or bytes.

namespace corvinex {

namespace {

/// The quiet NaN that stands for a quotient with a zero denominator.
constexpr double notANumber = std::bit_cast<double>(std::uint64_t{0xFFF8000000000000});

double divide(double numerator, double denominator) noexcept {
    return denominator == 0 ? notANumber : numerator / denominator;
}

}  // namespace

void TiffTag::processNormalTagData() {
    const std::span<const unsigned char> bytes = getRawData();
    if (tagId == tag_number::ImageSourceData) {
        // One byte a component, whatever the type.
        const auto kept = bytes.first(componentCount);
        value.emplace<Bytes>(kept.begin(), kept.end(), &getMemoryFor(kept.size()));
        return;
    }
    switch (dataType) {
        case TIFF_NOTYPE:
            dropUntypedEntry();
        case TIFF_ASCII:
            return processTiffTagAscii();
        case TIFF_RATIONAL:
            return processTiffTagRational();
        case TIFF_SRATIONAL:
            return processTiffTagSRational();
        case TIFF_BYTE:
        case TIFF_SHORT:
        case TIFF_LONG:
        case TIFF_SBYTE:
        case TIFF_UNDEFINED:
        case TIFF_SSHORT:
        case TIFF_SLONG:
        case TIFF_FLOAT:
        case TIFF_DOUBLE:
        case TIFF_LONG8:
        case TIFF_SLONG8:
            return processTiffTagNumbers();
        case TIFF_IFD:
        case TIFF_IFD8:
            dropUnknownPointer();
        default:
            raiseFatal(quorra::corvinex::unrecognizedTagFormatId(dataType));
    }
}

// A directory offset on a tag that is not a pointer leads nowhere that is known.
void TiffTag::dropUnknownPointer() const {
    tagFile->warnOncePerFile("unrecognizedIfd" + std::to_string(tagId),
                             warnings::unrecognizedIfd(tagId));
    dropEntry();
}

// A large value stays as it is until it is output: as numbers it could be eight times as long.
void TiffTag::processTiffTagNumbers() {
    if (componentCount == 0) {
        value = std::monostate();
    } else if (componentCount == 1) {
        double number = 0;
        convertNumbers(dataType, getRawData(), {&number, 1});
        value = number;
    } else if (rawData->isOutside()) {
        value = PackedNumbers{rawData->takeOutside()};
        rawData.reset();
    } else {
        auto& memory = getMemoryFor(componentCount * sizeof(double));
        convertNumbers(dataType, getRawData(), value.emplace<Numbers>(componentCount, &memory));
    }
}

void TiffTag::processTiffTagAscii() {
    const std::string_view before = getRawText();
    if (before.empty() && rawData->isOutside()) {
        value.emplace<Text>(rawData->takeOutside());
        rawData.reset();
        return;
    }
    const std::span<const unsigned char> bytes = getRawData();
    if (before.empty()) {
        value.emplace<Text>(Bytes(bytes.begin(), bytes.end(), &getMemoryFor(bytes.size())));
        return;
    }
    const std::size_t length = before.size() + bytes.size();
    Text text{Bytes(length, &getMemoryFor(length))};
    const auto end = std::copy(before.begin(), before.end(), text.characters.begin());
    std::copy(bytes.begin(), bytes.end(), end);
    value = std::move(text);
}

void TiffTag::processTiffTagRational() {
    bool hasZeroDenominator = false;
    std::uint64_t position = 0;
    for (double& number : appendNumbers(componentCount)) {
        const double numerator = loadNative<std::uint32_t>(getRawData(), position);
        const double denominator = loadNative<std::uint32_t>(getRawData(), position + 4);
        hasZeroDenominator = hasZeroDenominator || denominator == 0;
        lastRationalIsOneOverZero = numerator == 1 && denominator == 0;
        number = divide(numerator, denominator);
        position += 8;
    }
    // DNG gives 0/0 and 1/0 a meaning in the depth tags.
    const bool isDepth = tagId == tag_number::DepthNear || tagId == tag_number::DepthFar;
    if (hasZeroDenominator && !isDepth) {
        warnOfDivisionByZero();
    }
}

// Unlike its unsigned twin it exempts no tag from the warning, and DepthFar takes none of its
// values for infinity.
void TiffTag::processTiffTagSRational() {
    std::uint64_t position = 0;
    for (double& number : appendNumbers(componentCount)) {
        const double numerator = loadNative<std::int32_t>(getRawData(), position);
        const double denominator = loadNative<std::int32_t>(getRawData(), position + 4);
        if (denominator == 0) {
            warnOfDivisionByZero();
        }
        number = divide(numerator, denominator);
        position += 8;
    }
}

/// Makes room for numbers behind those that are there. There are none unless the value is made
/// again.
std::span<double> TiffTag::appendNumbers(std::uint64_t count) {
    const std::size_t before = countNumericValues();
    if (before == 0 && count == 1) {
        return {&value.emplace<double>(0), 1};
    }
    if (count == 0) {
        return {};
    }
    const std::size_t length = before + count;
    auto& memory = getMemoryFor(length * sizeof(double));
    if (before == 0) {
        return value.emplace<Numbers>(length, &memory);
    }
    Numbers numbers(length, &memory);
    copyNumbersTo(std::span(numbers).first(before));
    value = std::move(numbers);
    return unpackNumbers().subspan(before);
}

void TiffTag::warnOfDivisionByZero() const {
    tagFile->warnOncePerFile("badTagValueDivisionByZero" + std::string(getName()),
                             warnings::badTagValueDivisionByZero(getName()));
}

}  // namespace corvinex
