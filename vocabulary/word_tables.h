#pragma once

#include <cstdint>
#include <span>

// The words of enumerated tag values, one constant table a tag, each row a value and its word. The
// tables are shorter than the published value sets in places and stay so: callers compare words.

namespace corvinex::words {

struct Word {
    std::uint16_t value;
    const char* word;
};

using Table = std::span<const Word>;

/// The word for a value, or null. Values outside 0 to 65535 match nothing; of two rows with one
/// value the first counts.
[[nodiscard]] const char* findWordOrNull(Table table, std::int32_t value) noexcept;

/// The place of a word in its table, or one of the two below.
using Place = std::uint8_t;
/// No word at all.
inline constexpr Place noWord = 0xFF;
/// The place of "unknown", which stands in no table.
inline constexpr Place unknownWord = 0xFE;

/// The place of the word for a value truncated toward zero to 32 bits (held at the limits, NaN
/// taken as 0), or unknownWord.
[[nodiscard]] Place findPlace(Table table, double value) noexcept;
/// The word at a place that findPlace told.
[[nodiscard]] const char* getWord(Table table, Place place) noexcept;
/// Both in one.
[[nodiscard]] const char* findWord(Table table, double value) noexcept;

// clang-format off

// 259 Compression (TIFF 6.0 and its registered extensions).
inline constexpr Word compression[] = {
    {    1, "Uncompressed"},
    {    2, "CCITT 1D"},
    {    3, "Group 3 Fax"},
    {    4, "Group 4 Fax"},
    {    5, "LZW"},
    {    6, "OJPEG"},
    {    7, "JPEG"},
    {32766, "Next"},
    {32771, "CCITT RLEW"},
    {32773, "PackBits"},
    {32809, "ThunderScan RLE"},
    {32895, "IT8 CT with padding"},
    {32896, "IT8 Linework RLE"},
    {32897, "IT8 Monochrome Picture"},
    {32898, "IT8 Binary Line Art"},
    {32908, "Pixar companded 10bit LZW"},
    {32909, "Pixar companded 11bit ZIP"},
    {32946, "Deflate"},
    {    8, "Deflate"},
    {32947, "DCS"},
    {34661, "ISO JBIG"},
    {34676, "SGI Log Luminance RLE"},
    {34677, "SGI Log 24-bit Packed"},
    {34712, "JPEG2000"},
    {33003, "JPEG2000 Aperio SVS YCbCr"},
    {33005, "JPEG2000 Aperio SVS RGB"},
};

// 262 PhotometricInterpretation (TIFF 6.0 and its registered extensions).
inline constexpr Word photometricInterpretation[] = {
    {    0, "WhiteIsZero"},
    {    1, "BlackIsZero"},
    {    2, "RGB"},
    {    3, "RGB Palette"},
    {    4, "Transparency Mask"},
    {    5, "CMYK"},
    {    6, "YCbCr"},
    {    8, "CIELab"},
    {    9, "ICCLab"},
    {   10, "ITULab"},
    {32803, "CFA"},
    {32844, "LogL"},
    {32845, "LogLuv"},
    {34892, "LinearRaw"},
};

// 284 PlanarConfiguration (TIFF 6.0).
inline constexpr Word planarConfiguration[] = {
    {    1, "Chunky"},
    {    2, "Planar"},
};

// 296 ResolutionUnit (TIFF 6.0).
inline constexpr Word resolutionUnit[] = {
    {    1, "None"},
    {    2, "Inch"},
    {    3, "Centimeter"},
};

// 317 Predictor (TIFF 6.0, TIFF Technical Note 3).
inline constexpr Word predictor[] = {
    {    1, "None"},
    {    2, "Horizontal differencing"},
    {    3, "Floating point differencing"},
};

// 332 InkSet (TIFF 6.0).
inline constexpr Word inkSet[] = {
    {    1, "CMYK"},
    {    2, "not CMYK"},
};

// 512 JPEGProc (TIFF 6.0).
inline constexpr Word jpegProc[] = {
    {    1, "Baseline sequential process"},
    {   14, "Lossless process with Huffman coding"},
};

// 531 YCbCrPositioning (TIFF 6.0).
inline constexpr Word yCbCrPositioning[] = {
    {    1, "Centered"},
    {    2, "Co-sited"},
};

// 34850 ExposureProgram (EXIF 2.3).
inline constexpr Word exposureProgram[] = {
    {    0, "Not defined"},
    {    1, "Manual"},
    {    2, "Normal program"},
    {    3, "Aperture priority"},
    {    4, "Shutter priority"},
    {    5, "Creative program (biased toward depth of field)"},
    {    6, "Action program (biased toward fast shutter speed)"},
    {    7, "Portrait mode (for closeup photos with the background out of focus)"},
    {    8, "Landscape mode (for landscape photos in the background in focus)"},
};

// 37383 MeteringMode (EXIF 2.3).
inline constexpr Word meteringMode[] = {
    {    0, "Unknown"},
    {    1, "Average"},
    {    2, "CenterWeightedAverage"},
    {    3, "Spot"},
    {    4, "Multispot"},
    {    5, "Pattern"},
    {    6, "Partial"},
    {  255, "Other"},
};

// 37384 LightSource (EXIF 2.3).
inline constexpr Word lightSource[] = {
    {    0, "unknown"},
    {    1, "Daylight"},
    {    2, "Fluorescent"},
    {    3, "Tungsten (incandescent light)"},
    {    4, "Flash"},
    {    9, "Fine weather"},
    {   10, "Cloudy weather"},
    {   11, "Shade"},
    {   12, "Daylight fluorescent (D 5700 - 7100K)"},
    {   13, "Daylight fluorescent (N 4600 - 5400K)"},
    {   14, "Daylight fluorescent (W 3900 - 4500K)"},
    {   15, "Daylight fluorescent (WW 3200 - 3700K)"},
    {   17, "Standard light A"},
    {   18, "Standard light B"},
    {   19, "Standard light C"},
    {   20, "D55"},
    {   21, "D65"},
    {   22, "D75"},
    {   23, "D50"},
    {   24, "ISO studio tungsten"},
    {  255, "Other light source"},
};

// 40961 ColorSpace (EXIF 2.3).
inline constexpr Word colorSpace[] = {
    {    1, "sRGB"},
    {65535, "Uncalibrated"},
};

// 41495 SensingMethod (EXIF 2.3).
inline constexpr Word sensingMethod[] = {
    {    1, "Not defined"},
    {    2, "One-chip color area sensor"},
    {    3, "Two-chip color area sensor"},
    {    4, "Three-chip color area sensor"},
    {    5, "Color sequential area sensor"},
    {    7, "Trilinear sensor"},
    {    8, "Color sequential linear sensor"},
};

// 41728 FileSource (EXIF 2.3).
inline constexpr Word fileSource[] = {
    {    3, "DSC"},
};

// 41729 SceneType (EXIF 2.3).
inline constexpr Word sceneType[] = {
    {    1, "A directly photographed image"},
};

// 41985 CustomRendered (EXIF 2.3).
inline constexpr Word customRendered[] = {
    {    0, "Normal process"},
    {    1, "Custom process"},
};

// 41986 ExposureMode (EXIF 2.3).
inline constexpr Word exposureMode[] = {
    {    0, "Auto exposure"},
    {    1, "Manual exposure"},
    {    2, "Auto bracket"},
};

// 41987 WhiteBalance (EXIF 2.3).
inline constexpr Word whiteBalance[] = {
    {    0, "Auto white balance"},
    {    1, "Manual white balance"},
};

// 41990 SceneCaptureType (EXIF 2.3).
inline constexpr Word sceneCaptureType[] = {
    {    0, "Standard"},
    {    1, "Landscape"},
    {    2, "Portrait"},
    {    3, "Night scene"},
};

// 41991 GainControl (EXIF 2.3).
inline constexpr Word gainControl[] = {
    {    0, "None"},
    {    1, "Low gain up"},
    {    2, "High gain up"},
    {    3, "High gain down"},
};

// 41992 Contrast (EXIF 2.3).
inline constexpr Word contrast[] = {
    {    0, "Normal"},
    {    1, "Soft"},
    {    2, "Hard"},
};

// 41993 Saturation (EXIF 2.3).
inline constexpr Word saturation[] = {
    {    0, "Normal"},
    {    1, "Low Saturation"},
    {    2, "High Saturation"},
};

// 41994 Sharpness (EXIF 2.3).
inline constexpr Word sharpness[] = {
    {    0, "Normal"},
    {    1, "Soft"},
    {    2, "Hard"},
};

// 41996 SubjectDistanceRange (EXIF 2.3).
inline constexpr Word subjectDistanceRange[] = {
    {    0, "unknown"},
    {    1, "Macro"},
    {    2, "Close view"},
};

// 339 SampleFormat (TIFF 6.0).
inline constexpr Word sampleFormat[] = {
    {    1, "Unsigned integer"},
    {    2, "Two's complement signed integer"},
    {    3, "IEEE floating point"},
    {    4, "Undefined"},
    {    5, "Complex integer"},
    {    6, "Complex IEEE floating point"},
};

// What the "ColorType" field says of a PhotometricInterpretation. 7 has no word.
inline constexpr Word colorType[] = {
    {    0, "grayscale"},
    {    1, "grayscale"},
    {    2, "truecolor"},
    {    3, "indexed"},
    {    4, "Transparency Mask"},
    {    5, "CMYK"},
    {    6, "YCbCr"},
    {    8, "CIELab"},
    {    9, "ICCLab"},
    {   10, "ITULab"},
    {32803, "CFA"},
    {32844, "LogL"},
    {32845, "LogLuv"},
    {34892, "LinearRaw"},
};

// clang-format on

}  // namespace corvinex::words
