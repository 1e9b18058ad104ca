#include <tiff.h>

#include <algorithm>
#include <bit>
#include <limits>
#include <string>

#include "entry/fatal_errors.h"
#include "entry/warnings.h"
#include "file/byte_order.h"
#include "file/tag_file.h"
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
    if (tagId == tag_number::ImageSourceData) {
        imageSourceBytes.assign(rawData.begin(),
                                rawData.begin() + static_cast<std::ptrdiff_t>(componentCount));
        return;
    }
    switch (dataType) {
        case TIFF_NOTYPE:
            tagFile->warnOncePerFile("noTypeFormatId" + std::string(name),
                                     warnings::noTypeFormatId(name));
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
            return processTiffTagSLong8();
        case TIFF_IFD:
        case TIFF_IFD8:
            // A directory offset on a tag that is not a pointer leads nowhere that is known.
            tagFile->warnOncePerFile("unrecognizedIfd" + std::to_string(tagId),
                                     warnings::unrecognizedIfd(tagId));
            dropEntry();
        default:
            raiseFatal(
                quorra::corvinex::unrecognizedTagFormatId(static_cast<std::uint16_t>(dataType)));
    }
}

template <class Element>
void TiffTag::processTiffTagNumbers() {
    numericValues.resize(componentCount);
    for (std::size_t i = 0; i < numericValues.size(); ++i) {
        numericValues[i] = static_cast<double>(loadNative<Element>(rawData, i * sizeof(Element)));
    }
}

void TiffTag::processTiffTagAscii() {
    rawText.append(rawData.begin(), rawData.end());
}

// SLONG8 is read at a 4-byte stride over its 8-byte elements; callers rely on it.
void TiffTag::processTiffTagSLong8() {
    numericValues.resize(componentCount);
    for (std::size_t i = 0; i < numericValues.size(); ++i) {
        numericValues[i] = loadNative<std::int32_t>(rawData, i * sizeof(std::int32_t));
    }
}

void TiffTag::processTiffTagRational() {
    bool hasZeroDenominator = false;
    numericValues.reserve(numericValues.size() + componentCount);
    for (std::size_t i = 0; i < componentCount; ++i) {
        lastNumerator = loadNative<std::uint32_t>(rawData, 8 * i);
        lastDenominator = loadNative<std::uint32_t>(rawData, 8 * i + 4);
        hasZeroDenominator = hasZeroDenominator || lastDenominator == 0;
        numericValues.push_back(divide(lastNumerator, lastDenominator));
    }
    // DNG gives 0/0 and 1/0 a meaning in the depth tags.
    const bool isDepth = tagId == tag_number::DepthNear || tagId == tag_number::DepthFar;
    if (hasZeroDenominator && !isDepth) {
        warnOfDivisionByZero();
    }
}

// Unlike its unsigned twin it leaves the last rational alone and exempts no tag.
void TiffTag::processTiffTagSRational() {
    numericValues.reserve(numericValues.size() + componentCount);
    for (std::size_t i = 0; i < componentCount; ++i) {
        const double numerator = loadNative<std::int32_t>(rawData, 8 * i);
        const double denominator = loadNative<std::int32_t>(rawData, 8 * i + 4);
        if (denominator == 0) {
            warnOfDivisionByZero();
        }
        numericValues.push_back(divide(numerator, denominator));
    }
}

void TiffTag::warnOfDivisionByZero() const {
    tagFile->warnOncePerFile("badTagValueDivisionByZero" + std::string(name),
                             warnings::badTagValueDivisionByZero(name));
}

}  // namespace corvinex
