#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <string>
#include <utility>

#include "entry/reports/fatal_errors.h"
#include "format/numeric_conversion.h"
#include "tag/tiff_tag.h"
#include "vocabulary/word_tables.h"

// The decoders of enumerated and special tag values.

namespace corvinex {

namespace {

struct Scale {
    double unit;
    double scale;
};

// 290 GrayResponseUnit (TIFF 6.0): tenths to hundred-thousandths.
constexpr Scale grayResponseScales[] = {
    {1, 0.1}, {2, 0.01}, {3, 0.001}, {4, 0.0001}, {5, 0.00001},
};

}  // namespace

// In the order of their identifiers.
const std::array<void (TiffTag::*)(), decoderCount> TiffTag::decoders{
    nullptr,
    &TiffTag::processCompression,
    &TiffTag::processPhotometricInterpretation,
    &TiffTag::processImageDescription,
    &TiffTag::processPlanarConfiguration,
    &TiffTag::processGrayResponseUnit,
    &TiffTag::processResolutionUnit,
    &TiffTag::processPredictor,
    &TiffTag::processInkSet,
    &TiffTag::processJPEGProc,
    &TiffTag::processYCbCrPositioning,
    &TiffTag::processXMP,
    &TiffTag::processICCProfile,
    &TiffTag::processExposureProgram,
    &TiffTag::processMeteringMode,
    &TiffTag::processLightSource,
    &TiffTag::processColorSpace,
    &TiffTag::processSensingMethod,
    &TiffTag::processFileSource,
    &TiffTag::processSceneType,
    &TiffTag::processCustomRendered,
    &TiffTag::processExposureMode,
    &TiffTag::processWhiteBalance,
    &TiffTag::processSceneCaptureType,
    &TiffTag::processGainControl,
    &TiffTag::processContrast,
    &TiffTag::processSaturation,
    &TiffTag::processSharpness,
    &TiffTag::processSubjectDistanceRange,
    &TiffTag::processDepthFar,
};

void TiffTag::processSpecificTag() {
    if (componentCount == 0 && !isConstructed) {
        return;
    }
    // A text is its own decoding.
    if (countNumericValues() == 0 || ifdType == IFDtype_t_::GPS ||
        ifdType == IFDtype_t_::Interoperability) {
        return;
    }
    if (ifdType != IFDtype_t_::Main && ifdType != IFDtype_t_::EXIF) {
        raiseFatal(quorra::corvinex::unrecognizedIfdId(static_cast<std::uint32_t>(ifdType)));
    }
    if (tagRow->decoder != Decoder::None) {
        (this->*decoders[static_cast<std::size_t>(tagRow->decoder)])();
    }
}

// Only the first value counts.
void TiffTag::decodeWord() {
    decodedWord = words::findPlace(tagRow->words, getNumericValue(0));
}

// The decoders of words differ by their tables alone, which stand in the rows of their tags.

void TiffTag::processCompression() {
    decodeWord();
}

void TiffTag::processPhotometricInterpretation() {
    decodeWord();
}

void TiffTag::processPlanarConfiguration() {
    decodeWord();
}

void TiffTag::processResolutionUnit() {
    decodeWord();
}

void TiffTag::processPredictor() {
    decodeWord();
}

void TiffTag::processInkSet() {
    decodeWord();
}

void TiffTag::processJPEGProc() {
    decodeWord();
}

void TiffTag::processYCbCrPositioning() {
    decodeWord();
}

void TiffTag::processExposureProgram() {
    decodeWord();
}

void TiffTag::processMeteringMode() {
    decodeWord();
}

void TiffTag::processLightSource() {
    decodeWord();
}

void TiffTag::processColorSpace() {
    decodeWord();
}

void TiffTag::processSensingMethod() {
    decodeWord();
}

void TiffTag::processFileSource() {
    decodeWord();
}

void TiffTag::processSceneType() {
    decodeWord();
}

void TiffTag::processCustomRendered() {
    decodeWord();
}

void TiffTag::processExposureMode() {
    decodeWord();
}

void TiffTag::processWhiteBalance() {
    decodeWord();
}

void TiffTag::processSceneCaptureType() {
    decodeWord();
}

void TiffTag::processGainControl() {
    decodeWord();
}

void TiffTag::processContrast() {
    decodeWord();
}

void TiffTag::processSaturation() {
    decodeWord();
}

void TiffTag::processSharpness() {
    decodeWord();
}

void TiffTag::processSubjectDistanceRange() {
    decodeWord();
}

// It would shorten a text by its last zero, but no text comes here: a text is its own decoding, and
// its trailing zeros go at output. The member is documented, and so it stays.
void TiffTag::processImageDescription() {}

void TiffTag::processGrayResponseUnit() {
    double& unit = unpackNumbers().front();
    const auto* row =
        std::find_if(std::begin(grayResponseScales), std::end(grayResponseScales),
                     [unit](const Scale& candidate) { return candidate.unit == unit; });
    if (row != std::end(grayResponseScales)) {
        unit = row->scale;
    }
}

// The packet's bytes become the value as they are, because nothing uses their numbers. The value
// bytes are given back first, so that a large packet is not held three times.
void TiffTag::processXMP() {
    rawData.reset();
    const std::size_t length = countNumericValues();
    Text packet{Bytes(length, &getMemoryFor(length))};
    std::size_t i = 0;
    for (unsigned char& character : packet.characters) {
        const auto code = static_cast<std::uint32_t>(truncateTo<std::int32_t>(getNumber(i)));
        character = static_cast<unsigned char>(code & 0xFF);
        ++i;
    }
    value = std::move(packet);
}

// The value is where the profile lies, instead of its bytes.
void TiffTag::processICCProfile() {
    value = static_cast<double>(valueOffset);
}

// DNG takes 1/0 for an infinite distance.
void TiffTag::processDepthFar() {
    if (lastRationalIsOneOverZero) {
        value = std::numeric_limits<double>::infinity();
    }
}

}  // namespace corvinex
