#pragma once

#include "vocabulary/registry.h"
#include "vocabulary/registry_rules.h"

// The words of tag values, one table a tag or a family of tags with the same values. Per-element
// tags (such as 258 and 339) have one word for each element.

namespace corvinex::registry::words {

// clang-format off

// 254 NewSubfileType.
inline constexpr ValueWord newSubfileTypeValues[] = {
    {    0, "Full-resolution image"},
    {    1, "Reduced-resolution image"},
    {    2, "Page of a multi-page image"},
    {    3, "Reduced-resolution page of a multi-page image"},
    {    4, "Transparency mask"},
    {    5, "Transparency mask of a reduced-resolution image"},
    {    6, "Transparency mask of a multi-page image"},
    {    7, "Transparency mask of a reduced-resolution page"},
    {    8, "Depth map"},
    {    9, "Depth map of a reduced-resolution image"},
    {   16, "Enhanced image"},
    {65537, "Alternative reduced-resolution image"},
    {65540, "Semantic mask"},
    {65541, "Semantic mask of a reduced-resolution image"},
};
inline constexpr BitWord newSubfileTypeBits[] = {
    { 0,  0, 1, "Reduced resolution"},
    { 1,  1, 1, "Page of a multi-page image"},
    { 2,  2, 1, "Transparency mask"},
    { 3,  3, 1, "Depth map (DNG) or final page (TIFF/IT)"},
    { 4,  4, 1, "Enhanced image (DNG) or mixed raster content (TIFF-FX)"},
    {16, 16, 1, "Alternative preview or semantic mask (DNG)"},
};
inline constexpr Words newSubfileType{newSubfileTypeValues, newSubfileTypeBits};
static_assert(isWordTable(newSubfileType));

// 255 SubfileType.
inline constexpr ValueWord subfileTypeValues[] = {
    {1, "Full-resolution image"},
    {2, "Reduced-resolution image"},
    {3, "Page of a multi-page image"},
};
inline constexpr Words subfileType{subfileTypeValues};
static_assert(isWordTable(subfileType));

// 259 Compression, 20515 ThumbnailCompression.
inline constexpr ValueWord compressionValues[] = {
    {    1, "Uncompressed"},
    {    2, "CCITT 1D"},
    {    3, "CCITT Group 3"},
    {    4, "CCITT Group 4"},
    {    5, "LZW"},
    {    6, "JPEG (old-style)"},
    {    7, "JPEG"},
    {    8, "Adobe Deflate"},
    {    9, "JBIG B&W (T.85)"},
    {   10, "JBIG color (T.43)"},
    {   99, "JPEG (Leaf)"},
    {  262, "Kodak 262"},
    {22610, "JPEG XR (NDPI)"},
    {32766, "NeXT 2-bit RLE"},
    {32767, "Sony ARW"},
    {32769, "Packed raw"},
    {32770, "Samsung SRW"},
    {32771, "CCITT 1D, word aligned"},
    {32772, "Samsung SRW 2"},
    {32773, "PackBits"},
    {32809, "ThunderScan"},
    {32867, "Kodak KDC"},
    {32895, "IT8 CT with padding"},
    {32896, "IT8 linework"},
    {32897, "IT8 monochrome picture"},
    {32898, "IT8 binary line art"},
    {32908, "Pixar film"},
    {32909, "Pixar log"},
    {32946, "Deflate"},
    {32947, "Kodak DCS"},
    {33003, "Aperio JPEG 2000 YCbCr"},
    {33004, "JPEG 2000 lossy"},
    {33005, "Aperio JPEG 2000 RGB"},
    {33007, "JPEG (alternative)"},
    {34661, "JBIG"},
    {34676, "SGI Log"},
    {34677, "SGI Log 24-bit"},
    {34712, "JPEG 2000"},
    {34713, "Nikon NEF"},
    {34715, "JBIG2"},
    {34718, "MDI binary level"},
    {34719, "MDI progressive transform"},
    {34720, "MDI vector"},
    {34887, "LERC"},
    {34892, "Lossy JPEG"},
    {34925, "LZMA"},
    {34926, "ZSTD (old code)"},
    {34927, "WebP (old code)"},
    {34933, "PNG"},
    {34934, "JPEG XR"},
    {50000, "ZSTD"},
    {50001, "WebP"},
    {50002, "JPEG XL"},
    {52546, "JPEG XL (DNG 1.7)"},
    {65000, "Kodak DCR"},
    {65535, "Pentax PEF"},
};
inline constexpr Words compression{compressionValues};
static_assert(isWordTable(compression));

// 262 PhotometricInterpretation, 20516 ThumbnailPhotometricInterp.
inline constexpr ValueWord photometricInterpretationValues[] = {
    {    0, "WhiteIsZero"},
    {    1, "BlackIsZero"},
    {    2, "RGB"},
    {    3, "RGB Palette"},
    {    4, "Transparency mask"},
    {    5, "CMYK"},
    {    6, "YCbCr"},
    {    8, "CIELab"},
    {    9, "ICCLab"},
    {   10, "ITULab"},
    {32803, "CFA"},
    {32844, "LogL"},
    {32845, "LogLuv"},
    {32892, "Sequential CFA"},
    {34892, "LinearRaw"},
    {51177, "Depth"},
    {52527, "PhotometricMask"},
};
inline constexpr Words photometricInterpretation{photometricInterpretationValues};
static_assert(isWordTable(photometricInterpretation));

// 263 Threshholding.
inline constexpr ValueWord threshholdingValues[] = {
    {1, "No dithering or halftoning"},
    {2, "Ordered dither or halftone"},
    {3, "Randomized process"},
};
inline constexpr Words threshholding{threshholdingValues};
static_assert(isWordTable(threshholding));

// 266 FillOrder.
inline constexpr ValueWord fillOrderValues[] = {
    {1, "Most significant bit first"},
    {2, "Least significant bit first"},
};
inline constexpr Words fillOrder{fillOrderValues};
static_assert(isWordTable(fillOrder));

// 274 Orientation, 20521 ThumbnailOrientation.
inline constexpr ValueWord orientationValues[] = {
    {1, "top-left"},
    {2, "top-right"},
    {3, "bottom-right"},
    {4, "bottom-left"},
    {5, "left-top"},
    {6, "right-top"},
    {7, "right-bottom"},
    {8, "left-bottom"},
};
inline constexpr Words orientation{orientationValues};
static_assert(isWordTable(orientation));

// 284 PlanarConfiguration, 20527 ThumbnailPlanarConfig.
inline constexpr ValueWord planarConfigurationValues[] = {
    {1, "Chunky"},
    {2, "Planar"},
};
inline constexpr Words planarConfiguration{planarConfigurationValues};
static_assert(isWordTable(planarConfiguration));

// 290 GrayResponseUnit, 300 ColorResponseUnit.
inline constexpr ValueWord responseUnitValues[] = {
    {1, "Tenths"},
    {2, "Hundredths"},
    {3, "Thousandths"},
    {4, "Ten-thousandths"},
    {5, "Hundred-thousandths"},
};
inline constexpr Words responseUnit{responseUnitValues};
static_assert(isWordTable(responseUnit));

// 292 T4Options.
inline constexpr BitWord t4OptionsBits[] = {
    {0, 0, 1, "Two-dimensional coding"},
    {1, 1, 1, "Uncompressed mode"},
    {2, 2, 1, "Fill bits before EOL"},
};
inline constexpr Words t4Options{{}, t4OptionsBits};
static_assert(isWordTable(t4Options));

// 293 T6Options.
inline constexpr BitWord t6OptionsBits[] = {
    {1, 1, 1, "Uncompressed mode"},
};
inline constexpr Words t6Options{{}, t6OptionsBits};
static_assert(isWordTable(t6Options));

// 296 ResolutionUnit, 20528 ThumbnailResolutionUnit.
inline constexpr ValueWord resolutionUnitValues[] = {
    {1, "None"},
    {2, "inch"},
    {3, "centimeter"},
};
inline constexpr Words resolutionUnit{resolutionUnitValues};
static_assert(isWordTable(resolutionUnit));

// 317 Predictor.
inline constexpr ValueWord predictorValues[] = {
    {    1, "None"},
    {    2, "Horizontal differencing"},
    {    3, "Floating point"},
    {34892, "Horizontal differencing X2"},
    {34893, "Horizontal differencing X4"},
    {34894, "Floating point X2"},
    {34895, "Floating point X4"},
};
inline constexpr Words predictor{predictorValues};
static_assert(isWordTable(predictor));

// 327 CleanFaxData.
inline constexpr ValueWord cleanFaxDataValues[] = {
    {0, "Clean"},
    {1, "Regenerated"},
    {2, "Unclean"},
};
inline constexpr Words cleanFaxData{cleanFaxDataValues};
static_assert(isWordTable(cleanFaxData));

// 332 InkSet.
inline constexpr ValueWord inkSetValues[] = {
    {1, "CMYK"},
    {2, "Not CMYK"},
};
inline constexpr Words inkSet{inkSetValues};
static_assert(isWordTable(inkSet));

// 338 ExtraSamples.
inline constexpr ValueWord extraSamplesValues[] = {
    {0, "Unspecified"},
    {1, "Associated alpha"},
    {2, "Unassociated alpha"},
};
inline constexpr Words extraSamples{extraSamplesValues};
static_assert(isWordTable(extraSamples));

// 339 SampleFormat.
inline constexpr ValueWord sampleFormatValues[] = {
    {1, "Unsigned integer"},
    {2, "Signed integer"},
    {3, "IEEE floating point"},
    {4, "Undefined"},
    {5, "Complex integer"},
    {6, "Complex IEEE floating point"},
};
inline constexpr Words sampleFormat{sampleFormatValues};
static_assert(isWordTable(sampleFormat));

// 346 Indexed.
inline constexpr ValueWord indexedValues[] = {
    {0, "Not indexed"},
    {1, "Indexed"},
};
inline constexpr Words indexed{indexedValues};
static_assert(isWordTable(indexed));

// 351 OPIProxy.
inline constexpr ValueWord opiProxyValues[] = {
    {0, "No higher-resolution version"},
    {1, "Higher-resolution version exists"},
};
inline constexpr Words opiProxy{opiProxyValues};
static_assert(isWordTable(opiProxy));

// 401 ProfileType.
inline constexpr ValueWord profileTypeValues[] = {
    {0, "Unspecified"},
    {1, "Group 3 fax"},
};
inline constexpr Words profileType{profileTypeValues};
static_assert(isWordTable(profileType));

// 402 FaxProfile.
inline constexpr ValueWord faxProfileValues[] = {
    {  0, "Unknown"},
    {  1, "Profile S (minimal black and white)"},
    {  2, "Profile F (extended black and white)"},
    {  3, "Profile J (lossless JBIG black and white)"},
    {  4, "Profile C (lossy color and grayscale)"},
    {  5, "Profile L (lossless color and grayscale)"},
    {  6, "Profile M (mixed raster content)"},
    {  7, "Profile T"},
    {255, "Multiple profiles"},
};
inline constexpr Words faxProfile{faxProfileValues};
static_assert(isWordTable(faxProfile));

// 403 CodingMethods.
inline constexpr BitWord codingMethodsBits[] = {
    {0, 0, 1, "Unspecified"},
    {1, 1, 1, "T.4 one-dimensional (MH)"},
    {2, 2, 1, "T.4 two-dimensional (MR)"},
    {3, 3, 1, "T.6 (MMR)"},
    {4, 4, 1, "T.82 with T.85 (JBIG)"},
    {5, 5, 1, "T.81 (JPEG)"},
    {6, 6, 1, "T.82 with T.43 (JBIG color)"},
};
inline constexpr Words codingMethods{{}, codingMethodsBits};
static_assert(isWordTable(codingMethods));

// 512 JPEGProc.
inline constexpr ValueWord jpegProcValues[] = {
    { 1, "Baseline sequential"},
    {14, "Lossless with Huffman coding"},
};
inline constexpr Words jpegProc{jpegProcValues};
static_assert(isWordTable(jpegProc));

// 517 JPEGLosslessPredictors.
inline constexpr ValueWord jpegLosslessPredictorsValues[] = {
    {1, "A"},
    {2, "B"},
    {3, "C"},
    {4, "A+B-C"},
    {5, "A+((B-C)/2)"},
    {6, "B+((A-C)/2)"},
    {7, "(A+B)/2"},
};
inline constexpr Words jpegLosslessPredictors{jpegLosslessPredictorsValues};
static_assert(isWordTable(jpegLosslessPredictors));

// 531 YCbCrPositioning, 20537 ThumbnailYCbCrPositioning.
inline constexpr ValueWord yCbCrPositioningValues[] = {
    {1, "Centered"},
    {2, "Co-sited"},
};
inline constexpr Words yCbCrPositioning{yCbCrPositioningValues};
static_assert(isWordTable(yCbCrPositioning));

// 771 SRGBRenderingIntent.
inline constexpr ValueWord srgbRenderingIntentValues[] = {
    {0, "Perceptual"},
    {1, "Relative colorimetric"},
    {2, "Saturation"},
    {3, "Absolute colorimetric"},
};
inline constexpr Words srgbRenderingIntent{srgbRenderingIntentValues};
static_assert(isWordTable(srgbRenderingIntent));

// 20481 ResolutionXUnit, 20482 ResolutionYUnit.
inline constexpr ValueWord resolutionUnitNameValues[] = {
    {1, "Pixels per inch"},
    {2, "Pixels per centimeter"},
};
inline constexpr Words resolutionUnitName{resolutionUnitNameValues};
static_assert(isWordTable(resolutionUnitName));

// 20483 ResolutionXLengthUnit, 20484 ResolutionYLengthUnit.
inline constexpr ValueWord lengthUnitValues[] = {
    {1, "inch"},
    {2, "centimeter"},
    {3, "point"},
    {4, "pica"},
    {5, "column"},
};
inline constexpr Words lengthUnit{lengthUnitValues};
static_assert(isWordTable(lengthUnit));

// 20491 HalftoneLPIUnit.
inline constexpr ValueWord halftoneLPIUnitValues[] = {
    {1, "Lines per inch"},
    {2, "Lines per centimeter"},
};
inline constexpr Words halftoneLPIUnit{halftoneLPIUnitValues};
static_assert(isWordTable(halftoneLPIUnit));

// 20493 HalftoneShape.
inline constexpr ValueWord halftoneShapeValues[] = {
    {0, "Round"},
    {1, "Ellipse"},
    {2, "Line"},
    {3, "Square"},
    {4, "Cross"},
    {6, "Diamond"},
};
inline constexpr Words halftoneShape{halftoneShapeValues};
static_assert(isWordTable(halftoneShape));

// 20495 HalftoneScreen.
inline constexpr ValueWord halftoneScreenValues[] = {
    {1, "Printer default screens"},
    {2, "Other"},
};
inline constexpr Words halftoneScreen{halftoneScreenValues};
static_assert(isWordTable(halftoneScreen));

// 20498 ThumbnailFormat.
inline constexpr ValueWord thumbnailFormatValues[] = {
    {0, "Raw RGB"},
    {1, "JPEG"},
};
inline constexpr Words thumbnailFormat{thumbnailFormatValues};
static_assert(isWordTable(thumbnailFormat));

// 20752 PixelUnit.
inline constexpr ValueWord pixelUnitValues[] = {
    {0, "Unknown"},
};
inline constexpr Words pixelUnit{pixelUnitValues};
static_assert(isWordTable(pixelUnit));

// 28672 SonyRawFileType.
inline constexpr ValueWord sonyRawFileTypeValues[] = {
    {0, "Uncompressed 14-bit raw"},
    {1, "Uncompressed 12-bit raw"},
    {2, "Compressed raw"},
    {3, "Lossless compressed raw"},
    {4, "Lossless compressed raw 2"},
    {6, "Compressed raw 2"},
};
inline constexpr Words sonyRawFileType{sonyRawFileTypeValues};
static_assert(isWordTable(sonyRawFileType));

// 28721 VignettingCorrection.
inline constexpr ValueWord sonyVignettingCorrectionValues[] = {
    {256, "Off"},
    {257, "Auto"},
    {272, "Auto (ILCE-1)"},
    {511, "No correction parameters"},
};
inline constexpr Words sonyVignettingCorrection{sonyVignettingCorrectionValues};
static_assert(isWordTable(sonyVignettingCorrection));

// 28724 ChromaticAberrationCorrection.
inline constexpr ValueWord sonyChromaticAberrationCorrectionValues[] = {
    {  0, "Off"},
    {  1, "Auto"},
    {255, "No correction parameters"},
};
inline constexpr Words sonyChromaticAberrationCorrection{sonyChromaticAberrationCorrectionValues};
static_assert(isWordTable(sonyChromaticAberrationCorrection));

// 28726 DistortionCorrection.
inline constexpr ValueWord sonyDistortionCorrectionValues[] = {
    {  0, "Off"},
    {  1, "Auto"},
    { 17, "Auto, fixed by lens"},
    {255, "No correction parameters"},
};
inline constexpr Words sonyDistortionCorrection{sonyDistortionCorrectionValues};
static_assert(isWordTable(sonyDistortionCorrection));

// 32995 Matteing.
inline constexpr ValueWord matteingValues[] = {
    {1, "Associated alpha present"},
};
inline constexpr Words matteing{matteingValues};
static_assert(isWordTable(matteing));

// 32996 DataType.
inline constexpr ValueWord dataTypeValues[] = {
    {0, "Untyped"},
    {1, "Signed integer"},
    {2, "Unsigned integer"},
    {3, "IEEE floating point"},
};
inline constexpr Words dataType{dataTypeValues};
static_assert(isWordTable(dataType));

// 33422 CFAPattern, 50710 CFAPlaneColor.
inline constexpr ValueWord filterColorValues[] = {
    {0, "Red"},
    {1, "Green"},
    {2, "Blue"},
    {3, "Cyan"},
    {4, "Magenta"},
    {5, "Yellow"},
    {6, "White"},
};
inline constexpr Words filterColor{filterColorValues};
static_assert(isWordTable(filterColor));

// 33445 MDFileTag.
inline constexpr ValueWord mdFileTagValues[] = {
    {  2, "Square root"},
    {128, "Linear"},
};
inline constexpr Words mdFileTag{mdFileTagValues};
static_assert(isWordTable(mdFileTag));

// 34019 RasterPadding.
inline constexpr ValueWord rasterPaddingValues[] = {
    { 0, "Byte"},
    { 1, "Word"},
    { 2, "Long word"},
    { 9, "Sector"},
    {10, "Long sector"},
};
inline constexpr Words rasterPadding{rasterPaddingValues};
static_assert(isWordTable(rasterPadding));

// 34023 ImageColorIndicator.
inline constexpr ValueWord imageColorIndicatorValues[] = {
    {0, "Unspecified image color"},
    {1, "Specified image color"},
};
inline constexpr Words imageColorIndicator{imageColorIndicatorValues};
static_assert(isWordTable(imageColorIndicator));

// 34024 BackgroundColorIndicator.
inline constexpr ValueWord backgroundColorIndicatorValues[] = {
    {0, "Unspecified background color"},
    {1, "Specified background color"},
};
inline constexpr Words backgroundColorIndicator{backgroundColorIndicatorValues};
static_assert(isWordTable(backgroundColorIndicator));

// 34030 HCUsage.
inline constexpr ValueWord hcUsageValues[] = {
    {0, "Continuous tone"},
    {1, "Line art"},
    {2, "Trap"},
};
inline constexpr Words hcUsage{hcUsageValues};
static_assert(isWordTable(hcUsage));

// 34687 TIFF_FXExtensions.
inline constexpr BitWord tiffFXExtensionsBits[] = {
    {0, 0, 1, "Resolution and image width"},
    {1, 1, 1, "N-layer profile M"},
    {2, 2, 1, "Shared data"},
    {3, 3, 1, "JBIG2 black and white"},
    {4, 4, 1, "JBIG2 profile M"},
};
inline constexpr Words tiffFXExtensions{{}, tiffFXExtensionsBits};
static_assert(isWordTable(tiffFXExtensions));

// 34688 MultiProfiles.
inline constexpr BitWord multiProfilesBits[] = {
    { 0,  0, 1, "Profile S"},
    { 1,  1, 1, "Profile F"},
    { 2,  2, 1, "Profile J"},
    { 3,  3, 1, "Profile C"},
    { 4,  4, 1, "Profile L"},
    { 5,  5, 1, "Profile M"},
    { 6,  6, 1, "Profile T"},
    { 7,  7, 1, "Resolution and image width"},
    { 8,  8, 1, "N-layer profile M"},
    { 9,  9, 1, "Shared data"},
    {10, 10, 1, "JBIG2 profile M"},
};
inline constexpr Words multiProfiles{{}, multiProfilesBits};
static_assert(isWordTable(multiProfiles));

// 34850 ExposureProgram.
inline constexpr ValueWord exposureProgramValues[] = {
    {0, "Not defined"},
    {1, "Manual"},
    {2, "Normal program"},
    {3, "Aperture priority"},
    {4, "Shutter priority"},
    {5, "Creative program"},
    {6, "Action program"},
    {7, "Portrait mode"},
    {8, "Landscape mode"},
    {9, "Bulb"},  // not of the standard, but what cameras write
};
inline constexpr Words exposureProgram{exposureProgramValues};
static_assert(isWordTable(exposureProgram));

// 37383 MeteringMode.
inline constexpr ValueWord meteringModeValues[] = {
    {  0, "Unknown"},
    {  1, "Average"},
    {  2, "Center-weighted average"},
    {  3, "Spot"},
    {  4, "Multi-spot"},
    {  5, "Pattern"},
    {  6, "Partial"},
    {255, "Other"},
};
inline constexpr Words meteringMode{meteringModeValues};
static_assert(isWordTable(meteringMode));

// 37384 LightSource, 50778 CalibrationIlluminant1, 50779 CalibrationIlluminant2, 52529
// CalibrationIlluminant3.
inline constexpr ValueWord lightSourceValues[] = {
    {  0, "Unknown"},
    {  1, "Daylight"},
    {  2, "Fluorescent"},
    {  3, "Tungsten"},
    {  4, "Flash"},
    {  9, "Fine weather"},
    { 10, "Cloudy weather"},
    { 11, "Shade"},
    { 12, "Daylight fluorescent"},
    { 13, "Day white fluorescent"},
    { 14, "Cool white fluorescent"},
    { 15, "White fluorescent"},
    { 16, "Warm white fluorescent"},
    { 17, "Standard light A"},
    { 18, "Standard light B"},
    { 19, "Standard light C"},
    { 20, "D55"},
    { 21, "D65"},
    { 22, "D75"},
    { 23, "D50"},
    { 24, "ISO studio tungsten"},
    { 25, "Daylight source"},
    { 26, "Day white source"},
    { 27, "Cool white source"},
    { 28, "White source"},
    { 29, "Warm white source"},
    { 30, "Daylight LED"},
    { 31, "Day white LED"},
    { 32, "Cool white LED"},
    { 33, "White LED"},
    { 34, "Warm white LED"},
    {255, "Other light source"},
};
inline constexpr Words lightSource{lightSourceValues};
static_assert(isWordTable(lightSource));

// 37385 Flash.
inline constexpr ValueWord flashValues[] = {
    { 0, "Flash did not fire"},
    { 1, "Flash fired"},
    { 5, "Flash fired, return light not detected"},
    { 7, "Flash fired, return light detected"},
    { 8, "Flash did not fire, compulsory flash mode"},
    { 9, "Flash fired, compulsory flash mode"},
    {13, "Flash fired, compulsory flash mode, return light not detected"},
    {15, "Flash fired, compulsory flash mode, return light detected"},
    {16, "Flash did not fire, compulsory suppression"},
    {20, "Flash did not fire, compulsory suppression, return light not detected"},
    {24, "Flash did not fire, auto mode"},
    {25, "Flash fired, auto mode"},
    {29, "Flash fired, auto mode, return light not detected"},
    {31, "Flash fired, auto mode, return light detected"},
    {32, "No flash function"},
    {48, "No flash function, compulsory suppression"},
    {65, "Flash fired, red-eye reduction"},
    {69, "Flash fired, red-eye reduction, return light not detected"},
    {71, "Flash fired, red-eye reduction, return light detected"},
    {73, "Flash fired, compulsory flash mode, red-eye reduction"},
    {77, "Flash fired, compulsory flash mode, red-eye reduction, return light not detected"},
    {79, "Flash fired, compulsory flash mode, red-eye reduction, return light detected"},
    {80, "Flash did not fire, compulsory suppression, red-eye reduction"},
    {88, "Flash did not fire, auto mode, red-eye reduction"},
    {89, "Flash fired, auto mode, red-eye reduction"},
    {93, "Flash fired, auto mode, red-eye reduction, return light not detected"},
    {95, "Flash fired, auto mode, red-eye reduction, return light detected"},
};
inline constexpr BitWord flashBits[] = {
    {0, 0, 1, "Flash fired"},
    {1, 2, 0, "No return detection"},
    {1, 2, 1, "Reserved"},
    {1, 2, 2, "Return light not detected"},
    {1, 2, 3, "Return light detected"},
    {3, 4, 0, "Mode unknown"},
    {3, 4, 1, "Compulsory firing"},
    {3, 4, 2, "Compulsory suppression"},
    {3, 4, 3, "Auto mode"},
    {5, 5, 1, "No flash function"},
    {6, 6, 1, "Red-eye reduction"},
};
inline constexpr Words flash{flashValues, flashBits};
static_assert(isWordTable(flash));

// 37392 FocalPlaneResolutionUnit, 41488 FocalPlaneResolutionUnit.
inline constexpr ValueWord focalPlaneResolutionUnitValues[] = {
    {1, "None"},
    {2, "inch"},
    {3, "centimeter"},
    {4, "millimeter"},
    {5, "micrometer"},
};
inline constexpr Words focalPlaneResolutionUnit{focalPlaneResolutionUnitValues};
static_assert(isWordTable(focalPlaneResolutionUnit));

// 37394 SecurityClassification, 41490 SecurityClassification.
inline constexpr TextWord securityClassificationTexts[] = {
    {"C", "Confidential"},
    {"R", "Restricted"},
    {"S", "Secret"},
    {"T", "Top secret"},
    {"U", "Unclassified"},
};
inline constexpr Words securityClassification{{}, {}, securityClassificationTexts};
static_assert(isWordTable(securityClassification));

// 37399 SensingMethod.
inline constexpr ValueWord tiffEpSensingMethodValues[] = {
    {0, "Undefined"},
    {1, "Monochrome area"},
    {2, "One-chip color area"},
    {3, "Two-chip color area"},
    {4, "Three-chip color area"},
    {5, "Color sequential area"},
    {6, "Monochrome linear"},
    {7, "Trilinear"},
    {8, "Color sequential linear"},
};
inline constexpr Words tiffEpSensingMethod{tiffEpSensingMethodValues};
static_assert(isWordTable(tiffEpSensingMethod));

// 48130 Transformation.
inline constexpr ValueWord transformationValues[] = {
    {0, "Normal"},
    {1, "Flipped vertically"},
    {2, "Flipped horizontally"},
    {3, "Rotated 180"},
    {4, "Rotated 90 clockwise"},
    {5, "Rotated 90 clockwise, flipped horizontally"},
    {6, "Rotated 270 clockwise, flipped horizontally"},
    {7, "Rotated 270 clockwise"},
};
inline constexpr Words transformation{transformationValues};
static_assert(isWordTable(transformation));

// 48131 Uncompressed.
inline constexpr ValueWord noOrYesValues[] = {
    {0, "No"},
    {1, "Yes"},
};
inline constexpr Words noOrYes{noOrYesValues};
static_assert(isWordTable(noOrYes));

// 48132 ImageType.
inline constexpr BitWord imageTypeBits[] = {
    {0, 0, 1, "Preview"},
    {1, 1, 1, "Page"},
};
inline constexpr Words imageType{{}, imageTypeBits};
static_assert(isWordTable(imageType));

// 48324 ImageDataDiscard, 48325 AlphaDataDiscard.
inline constexpr ValueWord dataDiscardValues[] = {
    {0, "Full resolution"},
    {1, "Flexbits discarded"},
    {2, "High-pass data discarded"},
    {3, "High-pass and low-pass data discarded"},
};
inline constexpr Words dataDiscard{dataDiscardValues};
static_assert(isWordTable(dataDiscard));

// 50560 USPTO_OriginalContentType.
inline constexpr ValueWord usptoOriginalContentTypeValues[] = {
    {0, "Text or drawing"},
    {1, "Grayscale"},
    {2, "Color"},
};
inline constexpr Words usptoOriginalContentType{usptoOriginalContentTypeValues};
static_assert(isWordTable(usptoOriginalContentType));

// 50656 CR2CFAPattern.
inline constexpr ValueWord cr2CFAPatternValues[] = {
    {1, "Red,Green / Green,Blue"},
    {2, "Blue,Green / Green,Red"},
    {3, "Green,Blue / Red,Green"},
    {4, "Green,Red / Blue,Green"},
};
inline constexpr Words cr2CFAPattern{cr2CFAPatternValues};
static_assert(isWordTable(cr2CFAPattern));

// 50711 CFALayout.
inline constexpr ValueWord cfaLayoutValues[] = {
    {1, "Rectangular"},
    {2, "Even columns down 1/2 row"},
    {3, "Even columns up 1/2 row"},
    {4, "Even rows right 1/2 column"},
    {5, "Even rows left 1/2 column"},
    {6, "Even rows up 1/2 row, even columns left 1/2 column"},
    {7, "Even rows up 1/2 row, even columns right 1/2 column"},
    {8, "Even rows down 1/2 row, even columns left 1/2 column"},
    {9, "Even rows down 1/2 row, even columns right 1/2 column"},
};
inline constexpr Words cfaLayout{cfaLayoutValues};
static_assert(isWordTable(cfaLayout));

// 50741 MakerNoteSafety.
inline constexpr ValueWord makerNoteSafetyValues[] = {
    {0, "Unsafe"},
    {1, "Safe"},
};
inline constexpr Words makerNoteSafety{makerNoteSafetyValues};
static_assert(isWordTable(makerNoteSafety));

// 50879 ColorimetricReference.
inline constexpr ValueWord colorimetricReferenceValues[] = {
    {0, "Scene-referred"},
    {1, "Output-referred"},
    {2, "Output-referred, high dynamic range"},
};
inline constexpr Words colorimetricReference{colorimetricReferenceValues};
static_assert(isWordTable(colorimetricReference));

// 50941 ProfileEmbedPolicy.
inline constexpr ValueWord profileEmbedPolicyValues[] = {
    {0, "Allow copying"},
    {1, "Embed if used"},
    {2, "Embed never"},
    {3, "No restrictions"},
};
inline constexpr Words profileEmbedPolicy{profileEmbedPolicyValues};
static_assert(isWordTable(profileEmbedPolicy));

// 50970 PreviewColorSpace.
inline constexpr ValueWord previewColorSpaceValues[] = {
    {0, "Unknown"},
    {1, "Gray Gamma 2.2"},
    {2, "sRGB"},
    {3, "Adobe RGB"},
    {4, "ProPhoto RGB"},
};
inline constexpr Words previewColorSpace{previewColorSpaceValues};
static_assert(isWordTable(previewColorSpace));

// 51107 ProfileHueSatMapEncoding, 51108 ProfileLookTableEncoding.
inline constexpr ValueWord profileEncodingValues[] = {
    {0, "Linear"},
    {1, "sRGB"},
};
inline constexpr Words profileEncoding{profileEncodingValues};
static_assert(isWordTable(profileEncoding));

// 51110 DefaultBlackRender.
inline constexpr ValueWord defaultBlackRenderValues[] = {
    {0, "Auto"},
    {1, "None"},
};
inline constexpr Words defaultBlackRender{defaultBlackRenderValues};
static_assert(isWordTable(defaultBlackRender));

// 51177 DepthFormat.
inline constexpr ValueWord depthFormatValues[] = {
    {0, "Unknown"},
    {1, "Linear"},
    {2, "Inverse"},
};
inline constexpr Words depthFormat{depthFormatValues};
static_assert(isWordTable(depthFormat));

// 51180 DepthUnits.
inline constexpr ValueWord depthUnitsValues[] = {
    {0, "Unknown"},
    {1, "Meters"},
};
inline constexpr Words depthUnits{depthUnitsValues};
static_assert(isWordTable(depthUnits));

// 51181 DepthMeasureType.
inline constexpr ValueWord depthMeasureTypeValues[] = {
    {0, "Unknown"},
    {1, "Optical axis"},
    {2, "Optical ray"},
};
inline constexpr Words depthMeasureType{depthMeasureTypeValues};
static_assert(isWordTable(depthMeasureType));

// 52549 ProfileToneMethod.
inline constexpr ValueWord profileToneMethodValues[] = {
    {0, "Unspecified"},
    {1, "Adobe process version 5"},
    {2, "Adobe process version 6"},
};
inline constexpr Words profileToneMethod{profileToneMethodValues};
static_assert(isWordTable(profileToneMethod));

// 34864 SensitivityType.
inline constexpr ValueWord sensitivityTypeValues[] = {
    {0, "Unknown"},
    {1, "Standard output sensitivity"},
    {2, "Recommended exposure index"},
    {3, "ISO speed"},
    {4, "Standard output sensitivity and recommended exposure index"},
    {5, "Standard output sensitivity and ISO speed"},
    {6, "Recommended exposure index and ISO speed"},
    {7, "Standard output sensitivity, recommended exposure index and ISO speed"},
};
inline constexpr Words sensitivityType{sensitivityTypeValues};
static_assert(isWordTable(sensitivityType));

// 37121 ComponentsConfiguration.
inline constexpr ValueWord componentsConfigurationValues[] = {
    {0, "-"},
    {1, "Y"},
    {2, "Cb"},
    {3, "Cr"},
    {4, "R"},
    {5, "G"},
    {6, "B"},
};
inline constexpr Words componentsConfiguration{componentsConfigurationValues};
static_assert(isWordTable(componentsConfiguration));

// 40961 ColorSpace.
inline constexpr ValueWord colorSpaceValues[] = {
    {    1, "sRGB"},
    {    2, "Adobe RGB"},
    {65533, "Wide Gamut RGB"},
    {65534, "ICC Profile"},
    {65535, "Uncalibrated"},
};
inline constexpr Words colorSpace{colorSpaceValues};
static_assert(isWordTable(colorSpace));

// 41495 SensingMethod.
inline constexpr ValueWord exifSensingMethodValues[] = {
    {1, "Not defined"},
    {2, "One-chip color area"},
    {3, "Two-chip color area"},
    {4, "Three-chip color area"},
    {5, "Color sequential area"},
    {7, "Trilinear"},
    {8, "Color sequential linear"},
};
inline constexpr Words exifSensingMethod{exifSensingMethodValues};
static_assert(isWordTable(exifSensingMethod));

// 41728 FileSource.
inline constexpr ValueWord fileSourceValues[] = {
    {0, "Other"},
    {1, "Film scanner"},
    {2, "Reflection print scanner"},
    {3, "Digital still camera"},
};
inline constexpr Words fileSource{fileSourceValues};
static_assert(isWordTable(fileSource));

// 41729 SceneType.
inline constexpr ValueWord sceneTypeValues[] = {
    {1, "Directly photographed"},
};
inline constexpr Words sceneType{sceneTypeValues};
static_assert(isWordTable(sceneType));

// 41985 CustomRendered.
inline constexpr ValueWord customRenderedValues[] = {
    {0, "Normal process"},
    {1, "Custom process"},
};
inline constexpr Words customRendered{customRenderedValues};
static_assert(isWordTable(customRendered));

// 41986 ExposureMode.
inline constexpr ValueWord exposureModeValues[] = {
    {0, "Auto exposure"},
    {1, "Manual exposure"},
    {2, "Auto bracket"},
};
inline constexpr Words exposureMode{exposureModeValues};
static_assert(isWordTable(exposureMode));

// 41987 WhiteBalance.
inline constexpr ValueWord whiteBalanceValues[] = {
    {0, "Auto white balance"},
    {1, "Manual white balance"},
};
inline constexpr Words whiteBalance{whiteBalanceValues};
static_assert(isWordTable(whiteBalance));

// 41990 SceneCaptureType.
inline constexpr ValueWord sceneCaptureTypeValues[] = {
    {0, "Standard"},
    {1, "Landscape"},
    {2, "Portrait"},
    {3, "Night scene"},
};
inline constexpr Words sceneCaptureType{sceneCaptureTypeValues};
static_assert(isWordTable(sceneCaptureType));

// 41991 GainControl.
inline constexpr ValueWord gainControlValues[] = {
    {0, "None"},
    {1, "Low gain up"},
    {2, "High gain up"},
    {3, "Low gain down"},
    {4, "High gain down"},
};
inline constexpr Words gainControl{gainControlValues};
static_assert(isWordTable(gainControl));

// 41992 Contrast, 41994 Sharpness.
inline constexpr ValueWord softOrHardValues[] = {
    {0, "Normal"},
    {1, "Soft"},
    {2, "Hard"},
};
inline constexpr Words softOrHard{softOrHardValues};
static_assert(isWordTable(softOrHard));

// 41993 Saturation.
inline constexpr ValueWord saturationValues[] = {
    {0, "Normal"},
    {1, "Low saturation"},
    {2, "High saturation"},
};
inline constexpr Words saturation{saturationValues};
static_assert(isWordTable(saturation));

// 41996 SubjectDistanceRange.
inline constexpr ValueWord subjectDistanceRangeValues[] = {
    {0, "Unknown"},
    {1, "Macro"},
    {2, "Close view"},
    {3, "Distant view"},
};
inline constexpr Words subjectDistanceRange{subjectDistanceRangeValues};
static_assert(isWordTable(subjectDistanceRange));

// 41997 DevelopmentType.
inline constexpr BitWord developmentTypeBits[] = {
    {0,  7, 1, "Factory default settings"},
    {0,  7, 2, "Not default settings"},
    {0,  7, 4, "Unknown settings"},
    {8, 15, 1, "Accurate reproduction"},
    {8, 15, 2, "Small differences"},
    {8, 15, 4, "Extreme differences"},
};
inline constexpr Words developmentType{{}, developmentTypeBits};
static_assert(isWordTable(developmentType));

// 41999 DistortionCorrection, 42000 ChromaticAberrationCorrection, 42001 ShadingCorrection.
inline constexpr ValueWord appliedCorrectionValues[] = {
    {0, "Not applied"},
    {1, "Applied"},
};
inline constexpr Words appliedCorrection{appliedCorrectionValues};
static_assert(isWordTable(appliedCorrection));

// 42002 NoiseReduction.
inline constexpr ValueWord noiseReductionValues[] = {
    {0, "Not applied"},
    {1, "Low strength"},
    {2, "Normal strength"},
    {3, "High strength"},
};
inline constexpr Words noiseReduction{noiseReductionValues};
static_assert(isWordTable(noiseReduction));

// 42080 CompositeImage.
inline constexpr ValueWord compositeImageValues[] = {
    {0, "Unknown"},
    {1, "Non-composite image"},
    {2, "General composite image"},
    {3, "Composite image captured while shooting"},
};
inline constexpr Words compositeImage{compositeImageValues};
static_assert(isWordTable(compositeImage));

// 1 GPSLatitudeRef, 19 GPSDestLatitudeRef.
inline constexpr TextWord latitudeRefTexts[] = {
    {"N", "North"},
    {"S", "South"},
};
inline constexpr Words latitudeRef{{}, {}, latitudeRefTexts};
static_assert(isWordTable(latitudeRef));

// 3 GPSLongitudeRef, 21 GPSDestLongitudeRef.
inline constexpr TextWord longitudeRefTexts[] = {
    {"E", "East"},
    {"W", "West"},
};
inline constexpr Words longitudeRef{{}, {}, longitudeRefTexts};
static_assert(isWordTable(longitudeRef));

// 5 GPSAltitudeRef.
inline constexpr ValueWord gpsAltitudeRefValues[] = {
    {0, "Above sea level"},
    {1, "Below sea level"},
    {2, "Above sea level (sea-level reference)"},
    {3, "Below sea level (sea-level reference)"},
};
inline constexpr Words gpsAltitudeRef{gpsAltitudeRefValues};
static_assert(isWordTable(gpsAltitudeRef));

// 9 GPSStatus.
inline constexpr TextWord gpsStatusTexts[] = {
    {"A", "Measurement in progress"},
    {"V", "Measurement interrupted"},
};
inline constexpr Words gpsStatus{{}, {}, gpsStatusTexts};
static_assert(isWordTable(gpsStatus));

// 10 GPSMeasureMode.
inline constexpr TextWord gpsMeasureModeTexts[] = {
    {"2", "2-dimensional measurement"},
    {"3", "3-dimensional measurement"},
};
inline constexpr Words gpsMeasureMode{{}, {}, gpsMeasureModeTexts};
static_assert(isWordTable(gpsMeasureMode));

// 12 GPSSpeedRef.
inline constexpr TextWord gpsSpeedRefTexts[] = {
    {"K", "km/h"},
    {"M", "mph"},
    {"N", "knots"},
};
inline constexpr Words gpsSpeedRef{{}, {}, gpsSpeedRefTexts};
static_assert(isWordTable(gpsSpeedRef));

// 14 GPSTrackRef, 16 GPSImgDirectionRef, 23 GPSDestBearingRef.
inline constexpr TextWord directionRefTexts[] = {
    {"M", "Magnetic direction"},
    {"T", "True direction"},
};
inline constexpr Words directionRef{{}, {}, directionRefTexts};
static_assert(isWordTable(directionRef));

// 25 GPSDestDistanceRef.
inline constexpr TextWord gpsDestDistanceRefTexts[] = {
    {"K", "Kilometers"},
    {"M", "Miles"},
    {"N", "Nautical miles"},
};
inline constexpr Words gpsDestDistanceRef{{}, {}, gpsDestDistanceRefTexts};
static_assert(isWordTable(gpsDestDistanceRef));

// 30 GPSDifferential.
inline constexpr ValueWord gpsDifferentialValues[] = {
    {0, "Without correction"},
    {1, "Correction applied"},
};
inline constexpr Words gpsDifferential{gpsDifferentialValues};
static_assert(isWordTable(gpsDifferential));

// 1 InteroperabilityIndex.
inline constexpr TextWord interoperabilityIndexTexts[] = {
    {"R03", "DCF option file (Adobe RGB)"},
    {"R98", "DCF basic file (sRGB)"},
    {"THM", "DCF thumbnail file"},
};
inline constexpr Words interoperabilityIndex{{}, {}, interoperabilityIndexTexts};
static_assert(isWordTable(interoperabilityIndex));

// clang-format on

}  // namespace corvinex::registry::words
