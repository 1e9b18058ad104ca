#include <tiff.h>

#include <algorithm>
#include <bit>
#include <limits>
#include <string>

#include "directory/ifd_tree.h"
#include "entry/fatal_errors.h"
#include "entry/warnings.h"
#include "file/byte_order.h"
#include "file/tag_file.h"
#include "tag/raw_value.h"
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
        const auto kept = bytes.first(componentCount);
        value.emplace<Bytes>(kept.begin(), kept.end());
        return;
    }
    switch (dataType) {
        case TIFF_NOTYPE:
            tagFile->warnOncePerFile("noTypeFormatId" + std::string(getName()),
                                     warnings::noTypeFormatId(getName()));
            dropEntry();
        case TIFF_BYTE:
        case TIFF_UNDEFINED:
            return processTiffTagNumbers<std::uint8_t>();
        case TIFF_ASCII:
            return processTiffTagAscii();
        case TIFF_SHORT:
            return processTiffTagNumbers<std::uint16_t>();
        case TIFF_LONG:
            return processTiffTagNumbers<std::uint32_t>();
        case TIFF_RATIONAL:
            return processTiffTagRational();
        case TIFF_SBYTE:
            return processTiffTagNumbers<std::int8_t>();
        case TIFF_SSHORT:
            return processTiffTagNumbers<std::int16_t>();
        case TIFF_SLONG:
            return processTiffTagNumbers<std::int32_t>();
        case TIFF_SRATIONAL:
            return processTiffTagSRational();
        case TIFF_FLOAT:
            return processTiffTagNumbers<float>();
        case TIFF_DOUBLE:
            return processTiffTagNumbers<double>();
        case TIFF_LONG8:
            return processTiffTagNumbers<std::uint64_t>();
        case TIFF_SLONG8:
            // Read at a 4-byte stride over its 8-byte elements; callers rely on it.
            return processTiffTagNumbers<std::int32_t>();
        case TIFF_IFD:
        case TIFF_IFD8:
            // A directory offset on a tag that is not a pointer leads nowhere that is known.
            tagFile->warnOncePerFile("unrecognizedIfd" + std::to_string(tagId),
                                     warnings::unrecognizedIfd(tagId));
            dropEntry();
        default:
            raiseFatal(quorra::corvinex::unrecognizedTagFormatId(dataType));
    }
}

template <class Element>
void TiffTag::processTiffTagNumbers() {
    const std::span<const unsigned char> bytes = getRawData();
    if (componentCount == 1) {
        value = static_cast<double>(loadNative<Element>(bytes, 0));
        return;
    }
    Numbers numbers(componentCount);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        numbers[i] = static_cast<double>(loadNative<Element>(bytes, i * sizeof(Element)));
    }
    setNumbers(std::move(numbers));
}

void TiffTag::processTiffTagAscii() {
    if (!std::holds_alternative<std::string>(value)) {
        value.emplace<std::string>();
    }
    const std::span<const unsigned char> bytes = getRawData();
    std::get<std::string>(value).append(bytes.begin(), bytes.end());
}

void TiffTag::processTiffTagRational() {
    bool hasZeroDenominator = false;
    Numbers numbers = copyNumbers();
    numbers.reserve(numbers.size() + componentCount);
    for (std::size_t i = 0; i < componentCount; ++i) {
        const double numerator = loadNative<std::uint32_t>(getRawData(), 8 * i);
        const double denominator = loadNative<std::uint32_t>(getRawData(), 8 * i + 4);
        hasZeroDenominator = hasZeroDenominator || denominator == 0;
        lastRationalIsOneOverZero = numerator == 1 && denominator == 0;
        numbers.push_back(divide(numerator, denominator));
    }
    setNumbers(std::move(numbers));
    // DNG gives 0/0 and 1/0 a meaning in the depth tags.
    const bool isDepth = tagId == tag_number::DepthNear || tagId == tag_number::DepthFar;
    if (hasZeroDenominator && !isDepth) {
        warnOfDivisionByZero();
    }
}

// Unlike its unsigned twin it exempts no tag and has no say in what DepthFar takes for infinity.
void TiffTag::processTiffTagSRational() {
    Numbers numbers = copyNumbers();
    numbers.reserve(numbers.size() + componentCount);
    for (std::size_t i = 0; i < componentCount; ++i) {
        const double numerator = loadNative<std::int32_t>(getRawData(), 8 * i);
        const double denominator = loadNative<std::int32_t>(getRawData(), 8 * i + 4);
        if (denominator == 0) {
            warnOfDivisionByZero();
        }
        numbers.push_back(divide(numerator, denominator));
    }
    setNumbers(std::move(numbers));
}

void TiffTag::warnOfDivisionByZero() const {
    tagFile->warnOncePerFile("badTagValueDivisionByZero" + std::string(getName()),
                             warnings::badTagValueDivisionByZero(getName()));
}

TiffTag::Numbers TiffTag::copyNumbers() const {
    const std::span<const double> numbers = getNumericValues();
    return {numbers.begin(), numbers.end()};
}

void TiffTag::setNumbers(Numbers numbers) {
    if (numbers.empty()) {
        value = std::monostate();
    } else if (numbers.size() == 1) {
        value = numbers.front();
    } else {
        value = std::move(numbers);
    }
}

}  // namespace corvinex
