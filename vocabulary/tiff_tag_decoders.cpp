#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <string>
#include <utility>

#include "entry/fatal_errors.h"
#include "entry/numeric_conversion.h"
#include "tag/tag_rules.h"
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

std::span<const TagDecoder> TiffTag::getDecoders() noexcept {
    // clang-format off
    static constexpr TagDecoder decoders[] = {
        {  259, &TiffTag::processCompression},
        {  262, &TiffTag::processPhotometricInterpretation},
        {  270, &TiffTag::processImageDescription},
        {  284, &TiffTag::processPlanarConfiguration},
        {  290, &TiffTag::processGrayResponseUnit},
        {  296, &TiffTag::processResolutionUnit},
        {  317, &TiffTag::processPredictor},
        {  332, &TiffTag::processInkSet},
        {  512, &TiffTag::processJPEGProc},
        {  531, &TiffTag::processYCbCrPositioning},
        {  700, &TiffTag::processXMP},
        {34675, &TiffTag::processICCProfile},
        {34850, &TiffTag::processExposureProgram},
        {37383, &TiffTag::processMeteringMode},
        {37384, &TiffTag::processLightSource},
        {40961, &TiffTag::processColorSpace},
        {41495, &TiffTag::processSensingMethod},
        {41728, &TiffTag::processFileSource},
        {41729, &TiffTag::processSceneType},
        {41985, &TiffTag::processCustomRendered},
        {41986, &TiffTag::processExposureMode},
        {41987, &TiffTag::processWhiteBalance},
        {41990, &TiffTag::processSceneCaptureType},
        {41991, &TiffTag::processGainControl},
        {41992, &TiffTag::processContrast},
        {41993, &TiffTag::processSaturation},
        {41994, &TiffTag::processSharpness},
        {41996, &TiffTag::processSubjectDistanceRange},
        {51179, &TiffTag::processDepthFar},
    };
    // clang-format on
    return decoders;
}

// Built when the module is loaded, from constant tables alone.
// NOLINTNEXTLINE(cert-err58-cpp)
const TagRulesTable TiffTag::allRules(TiffTag::getDecoders());

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
    if (rules->decode != nullptr) {
        (this->*rules->decode)();
    }
}

// Only the first value counts.
void TiffTag::decodeWord(words::Table table) {
    decodedWord = words::findWord(table, getNumericValue(0));
}

void TiffTag::processCompression() {
    decodeWord(words::compression);
}

void TiffTag::processPhotometricInterpretation() {
    decodeWord(words::photometricInterpretation);
}

void TiffTag::processPlanarConfiguration() {
    decodeWord(words::planarConfiguration);
}

void TiffTag::processResolutionUnit() {
    decodeWord(words::resolutionUnit);
}

void TiffTag::processPredictor() {
    decodeWord(words::predictor);
}

void TiffTag::processInkSet() {
    decodeWord(words::inkSet);
}

void TiffTag::processJPEGProc() {
    decodeWord(words::jpegProc);
}

void TiffTag::processYCbCrPositioning() {
    decodeWord(words::yCbCrPositioning);
}

void TiffTag::processExposureProgram() {
    decodeWord(words::exposureProgram);
}

void TiffTag::processMeteringMode() {
    decodeWord(words::meteringMode);
}

void TiffTag::processLightSource() {
    decodeWord(words::lightSource);
}

void TiffTag::processColorSpace() {
    decodeWord(words::colorSpace);
}

void TiffTag::processSensingMethod() {
    decodeWord(words::sensingMethod);
}

void TiffTag::processFileSource() {
    decodeWord(words::fileSource);
}

void TiffTag::processSceneType() {
    decodeWord(words::sceneType);
}

void TiffTag::processCustomRendered() {
    decodeWord(words::customRendered);
}

void TiffTag::processExposureMode() {
    decodeWord(words::exposureMode);
}

void TiffTag::processWhiteBalance() {
    decodeWord(words::whiteBalance);
}

void TiffTag::processSceneCaptureType() {
    decodeWord(words::sceneCaptureType);
}

void TiffTag::processGainControl() {
    decodeWord(words::gainControl);
}

void TiffTag::processContrast() {
    decodeWord(words::contrast);
}

void TiffTag::processSaturation() {
    decodeWord(words::saturation);
}

void TiffTag::processSharpness() {
    decodeWord(words::sharpness);
}

void TiffTag::processSubjectDistanceRange() {
    decodeWord(words::subjectDistanceRange);
}

// Trailing zeros of a text go at output, and a tag without a text has nothing to shorten.
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

// The packet's bytes as they are become the value: nobody asks for their numbers any more. The
// value bytes go first, so that a large packet is not held three times.
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

// Where the profile lies, instead of its bytes.
void TiffTag::processICCProfile() {
    value = static_cast<double>(valueOffset);
}

// DNG: 1/0 is infinitely far.
void TiffTag::processDepthFar() {
    if (lastRationalIsOneOverZero) {
        value = std::numeric_limits<double>::infinity();
    }
}

}  // namespace corvinex
