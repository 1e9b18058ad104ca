#include "vocabulary/tag_table.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "vocabulary/tag_index.h"

namespace corvinex {

namespace {

using Types = TypeGroupId;

// The entries of columns that say nothing of a tag. Those behind the last that says something are
// left out.
constexpr const char* unnamed = nullptr;
constexpr TypeGroupId anyType = TypeGroupId::Any;
constexpr std::uint8_t any = 0;
constexpr std::uint8_t one = 1;
constexpr std::uint8_t no = 0;
constexpr TagDefault none{};
constexpr Pointer nowhere = Pointer::None;

constexpr TagDefault noValue{DefaultKind::NoValue};
constexpr TagDefault sampleCount{DefaultKind::SampleCount};
constexpr TagDefault bitsPerSample{DefaultKind::BitsPerSample};
constexpr TagDefault value(double number) {
    return {DefaultKind::Value, number};
}

constexpr auto withDefaultBits(auto rows) {
    std::uint32_t bit = 1;
    for (TagRow& row : rows) {
        if (row.standsIn.kind != DefaultKind::None) {
            row.defaultBit = bit;
            bit <<= 1U;
        }
    }
    return rows;
}

// clang-format off

// Directory kinds "main" and "EXIF". Columns: number, name, types, components, place among the
// baseline fields, default, pointer, decoder and its words.
constexpr auto primaryTags = withDefaultBits(std::to_array<TagRow>({
    // TIFF 6.0, its extensions and technical notes, TIFF/FX.
    {  254, "NewSubFileType",              Types::Long,        any,  1, value(0)},
    {  255, "SubFileType",                 Types::Short},
    {  256, "Width",                       Types::ShortOrLong, one},
    {  257, "Length",                      Types::ShortOrLong, one},
    {  258, "BitsPerSample",               Types::Short,       any,  2, sampleCount},
    {  259, "Compression",                 Types::Short,       any,  3, value(1), nowhere, Decoder::Compression,               words::compression},
    {  262, "PhotometricInterpretation",   Types::Short,       any,  4, none,     nowhere, Decoder::PhotometricInterpretation, words::photometricInterpretation},
    {  263, "Thresholding",                Types::Short,       any, 23, value(1)},
    {  264, "CellWidth"},
    {  265, "CellLength"},
    {  266, "FillOrder",                   Types::Short,       any, 19, value(1)},
    {  269, "DocumentName",                Types::Ascii},
    {  270, "ImageDescription",            Types::Ascii,       any, no, none,     nowhere, Decoder::ImageDescription},
    {  271, "Make",                        Types::Ascii},
    {  272, "Model",                       Types::Ascii},
    {  273, "StripOffsets",                Types::Offset,      any,  5, noValue},
    {  274, "Orientation",                 Types::Short,       any, 18, value(1)},
    {  277, "SamplesPerPixel",             Types::Short,       one,  6, value(1)},
    {  278, "RowsPerStrip",                Types::ShortOrLong, one,  7, value(4294967295)},
    {  279, "StripByteCounts",             Types::Offset,      any,  8, noValue},
    {  280, "MinSampleValue",              Types::Short,       any, 22, bitsPerSample},
    {  281, "MaxSampleValue",              Types::Short,       any, 21, bitsPerSample},
    {  282, "XResolution",                 Types::Rational,    any,  9, noValue},
    {  283, "YResolution",                 Types::Rational,    any, 10, noValue},
    {  284, "PlanarConfiguration",         Types::Short,       one, 13, value(1), nowhere, Decoder::PlanarConfiguration,       words::planarConfiguration},
    {  285, "PageName"},
    {  286, "XPosition",                   Types::Rational},
    {  287, "YPosition",                   Types::Rational},
    {  288, "FreeOffsets"},
    {  289, "FreeByteCounts"},
    {  290, "GrayResponseUnit",            anyType,            any, 20, value(2), nowhere, Decoder::GrayResponseUnit},
    {  291, "GrayResponseCurve"},
    {  292, "T4Options",                   Types::Long},
    {  293, "T6Options",                   Types::Long},
    {  296, "ResolutionUnit",              Types::Short,       any, 11, value(2), nowhere, Decoder::ResolutionUnit,            words::resolutionUnit},
    {  297, "PageNumber",                  Types::Short},
    {  300, "ColorResponseUnit"},
    {  301, "TransferFunction",            Types::Short},
    {  305, "Software",                    Types::Ascii},
    {  306, "DateTime",                    Types::Ascii},
    {  315, "Artist",                      Types::Ascii},
    {  316, "HostComputer",                Types::Ascii},
    {  317, "Predictor",                   Types::Short,       any, no, none,     nowhere, Decoder::Predictor,                 words::predictor},
    {  318, "WhitePoint",                  Types::Rational},
    {  319, "PrimaryChromaticities",       Types::Rational},
    {  320, "Colormap",                    Types::Short,       any, 12, noValue},
    {  321, "HalftoneHints",               Types::Short},
    {  322, "TileWidth",                   Types::ShortOrLong, one, 14, noValue},
    {  323, "TileLength",                  Types::ShortOrLong, one, 15, noValue},
    {  324, "TileOffsets",                 Types::Offset,      any, 16, noValue},
    {  325, "TileByteCounts",              Types::Offset,      any, 17, noValue},
    {  326, "BadFaxLines",                 Types::ShortOrLong},
    {  327, "CleanFaxData",                Types::Short},
    {  328, "ConsecutiveBadFaxLines",      Types::ShortOrLong},
    {  330, "SubIFDs",                     Types::Directory,   any, no, none,     Pointer::ToMain},
    {  332, "InkSet",                      Types::Short,       any, no, none,     nowhere, Decoder::InkSet,                    words::inkSet},
    {  333, "InkNames",                    Types::Ascii},
    {  334, "NumberOfInks",                Types::Short},
    {  336, "DotRange",                    Types::ByteOrShort},
    {  337, "TargetPrinter"},
    {  338, "ExtraSamples",                Types::Short},
    {  339, "SampleFormat",                Types::Short},
    {  340, "SMinSampleValue"},
    {  341, "SMaxSampleValue"},
    {  342, "TransferRange"},
    {  343, "ClipPath",                    Types::Byte},
    {  344, "XClipPathUnits"},
    {  345, "YClipPathUnits"},
    {  346, "Indexed"},
    {  347, "JPEGTables",                  Types::Undefined},
    // A second name for 347, which is never used: it belongs to 519, which has none, so that 519 is an
    // unknown tag. Kept on purpose: whoever reads "UnknownTags" would notice a change.
    {  347, "JPEGQTables"},
    {  351, "OPIProxy"},
    {  400, "GlobalParametersIFD"},
    {  401, "ProfileType"},
    {  402, "FaxProfile"},
    {  403, "CodingMethods"},
    {  404, "VersionYear"},
    {  405, "ModeNumber"},
    {  433, "Decode"},
    {  434, "DefaultImageColor"},
    {  512, "JPEGProc",                    Types::Short,       any, no, none,     nowhere, Decoder::JPEGProc,                  words::jpegProc},
    {  513, "JPEGInterchangeFormat",       Types::Long},
    {  514, "JPEGInterchangeFormatLength", Types::Long},
    {  515, "JPEGRestartInterval",         Types::Short},
    {  517, "JPEGLosslessPredictors"},
    {  518, "JPEGPointTransforms"},
    {  519, unnamed,                       Types::Long},
    {  520, "JPEGDCTables",                Types::Long},
    {  521, "JPEGACTables",                Types::Long},
    {  529, "YCbCrCoefficients",           Types::Rational},
    {  530, "YCbCrSubsampling",            Types::Short},
    {  531, "YCbCrPositioning",            Types::Short,       any, no, none,     nowhere, Decoder::YCbCrPositioning,          words::yCbCrPositioning},
    {  532, "ReferenceBlackWhite",         Types::Rational},
    {  559, "StripRowCounts"},
    {  700, "XMP",                         Types::Byte,        any, no, none,     nowhere, Decoder::XMP},
    // Private tags, GeoTIFF, and the tags of EXIF 2.3.
    {32781, "ImageID"},
    {32932, "WangAnnotation"},
    {32953, "RefPts"},
    {32954, "RegionTackPoint"},
    {32955, "RegionWarpCorners"},
    {32956, "RegionAffine"},
    {32995, "Matteing"},
    {32996, "Datatype"},
    {32997, "ImageDepth"},
    {32998, "TileDepth"},
    {33300, "PixarImageFullWidth"},
    {33301, "PixarImageFullLength"},
    {33302, "PixarTextureFormat"},
    {33303, "PixarWrapModes"},
    {33304, "PixarFovCot"},
    {33305, "PixarMatrixWorldToScreen"},
    {33405, "WriterSerialNumber"},
    {33432, "Copyright",            Types::Ascii},
    {33434, "ExposureTime"},
    {33437, "FNumber"},
    {33445, "MDFileTag"},
    {33446, "MDScalePixel"},
    {33447, "MDColorTable"},
    {33448, "MDLabName"},
    {33449, "MDSampleInfo"},
    {33450, "MDPrepDate"},
    {33451, "MDPrepTime"},
    {33452, "MDFileUnits"},
    {33550, "ModelPixelScaleTag"},
    {33723, "ITPC"},
    {33918, "INGRPacketDataTag"},
    {33919, "INGRFlagRegisters"},
    {33920, "IrasBTransformationMatrix"},
    {33922, "ModelTiepointTag"},
    {34016, "IT8Site"},
    {34017, "IT8ColorSequence"},
    {34018, "IT8Header"},
    {34019, "IT8RasterPadding"},
    {34020, "IT8BitsPerRunLength"},
    {34021, "IT8BitsPerExtendedRunLength"},
    {34022, "IT8ColorTable"},
    {34023, "IT8ImageColorIndicator"},
    {34024, "IT8BKGColorIndicator"},
    {34025, "IT8ImageColorValue"},
    {34026, "IT8BKGColorValue"},
    {34027, "IT8PixelIntensityRange"},
    {34028, "IT8TransparencyIndicator"},
    {34029, "IT8ColorCharacterization"},
    {34030, "IT8HCUsage"},
    {34031, "IT8TRapIndicator"},
    {34032, "IT8CMYKEquivalent"},
    {34232, "FrameCount"},
    {34264, "ModelTransformationTag"},
    {34377, "Photoshop"},
    {34665, "DigitalCamera",        anyType, any, no, none, Pointer::ToExif},
    {34675, "ICCProfileOffset",     anyType, any, no, none, nowhere, Decoder::ICCProfile},
    {34732, "ImageLayer"},
    {34735, "GeoKeyDirectoryTag"},
    {34736, "GeoDoubleParamsTag"},
    {34737, "GeoAsciiParamsTag"},
    {34750, "JBIGOptions"},
    {34850, "ExposureProgram",      anyType, any, no, none, nowhere, Decoder::ExposureProgram,      words::exposureProgram},
    {34852, "SpectralSensitivity"},
    {34853, "GPSInfo",              anyType, any, no, none, Pointer::ToGps},
    {34855, "ISOSpeedRatings"},
    {34856, "OECF"},
    {34908, "HylaFAXFaxRecvParams"},
    {34909, "HylaFAXFaxSubAddress"},
    {34910, "HylaFAXFaxRecvTime"},
    {34911, "FaxDCS"},
    {34929, "FedExEdr"},
    {36864, "ExifVersion"},
    {36867, "DateTimeOriginal"},
    {36868, "DateTimeDigitized"},
    {37121, "ComponentsConfiguration"},
    {37122, "CompressedBitsPerPixel"},
    {37377, "ShutterSpeedValue"},
    {37378, "ApertureValue"},
    {37379, "BrightnessValue"},
    {37380, "ExposureBiasValue"},
    {37381, "MaxApertureValue"},
    {37382, "SubjectDistance"},
    {37383, "MeteringMode",         anyType, any, no, none, nowhere, Decoder::MeteringMode,         words::meteringMode},
    {37384, "LightSource",          anyType, any, no, none, nowhere, Decoder::LightSource,          words::lightSource},
    {37385, "Flash"},
    {37386, "FocalLength"},
    {37396, "SubjectArea"},
    {37439, "StoNITS"},
    {37500, "MakerNote"},
    {37510, "UserComment"},
    {37520, "SubsecTime"},
    {37521, "SubsecTimeOriginal"},
    {37522, "SubsecTimeDigitized"},
    {37724, "ImageSourceData"},
    {40960, "FlashpixVersion"},
    {40961, "ColorSpace",           anyType, any, no, none, nowhere, Decoder::ColorSpace,           words::colorSpace},
    {40962, "CPixelXDimension"},
    {40963, "CPixelYDimension"},
    {40964, "RelatedSoundFile"},
    {40965, "InteroperabilityIFD",  anyType, any, no, none, Pointer::ToInteroperability},
    {41483, "FlashEnergy"},
    {41484, "SpatialFrequencyResponse"},
    {41486, "FocalPlaneXResolution"},
    {41487, "FocalPlaneYResolution"},
    {41488, "FocalPlaneResolutionUnit"},
    {41492, "SubjectLocation"},
    {41493, "ExposureIndex"},
    {41495, "SensingMethod",        anyType, any, no, none, nowhere, Decoder::SensingMethod,        words::sensingMethod},
    {41728, "FileSource",           anyType, any, no, none, nowhere, Decoder::FileSource,           words::fileSource},
    {41729, "SceneType",            anyType, any, no, none, nowhere, Decoder::SceneType,            words::sceneType},
    {41730, "CFAPattern"},
    {41985, "CustomRendered",       anyType, any, no, none, nowhere, Decoder::CustomRendered,       words::customRendered},
    {41986, "ExposureMode",         anyType, any, no, none, nowhere, Decoder::ExposureMode,         words::exposureMode},
    {41987, "WhiteBalance",         anyType, any, no, none, nowhere, Decoder::WhiteBalance,         words::whiteBalance},
    {41988, "DigitalZoomRatio"},
    {41989, "FocalLengthIn35mmFilm"},
    {41990, "SceneCaptureType",     anyType, any, no, none, nowhere, Decoder::SceneCaptureType,     words::sceneCaptureType},
    {41991, "GainControl",          anyType, any, no, none, nowhere, Decoder::GainControl,          words::gainControl},
    {41992, "Contrast",             anyType, any, no, none, nowhere, Decoder::Contrast,             words::contrast},
    {41993, "Saturation",           anyType, any, no, none, nowhere, Decoder::Saturation,           words::saturation},
    {41994, "Sharpness",            anyType, any, no, none, nowhere, Decoder::Sharpness,            words::sharpness},
    {41995, "DeviceSettingDescription"},
    {41996, "SubjectDistanceRange", anyType, any, no, none, nowhere, Decoder::SubjectDistanceRange, words::subjectDistanceRange},
    {42016, "ImageUniqueID"},
    {42112, "GDAL_METADATA"},
    {42113, "GDAL_NODATA"},
    // Private tags and DNG.
    {50215, "OceScanjobDescription"},
    {50216, "OceApplicationSelector"},
    {50217, "OceIdentificationNumber"},
    {50218, "OceImageLogicCharacteristics"},
    {50706, "DNGVersion"},
    {50707, "DNGBackwardVersion"},
    {50708, "UniqueCameraModel"},
    {50709, "LocalizedCameraModel"},
    {50710, "CFAPlaneColor"},
    {50711, "CFALayout"},
    {50712, "LinearizationTable"},
    {50713, "BlackLevelRepeatDim"},
    {50714, "BlackLevel"},
    {50715, "BlackLevelDeltaH"},
    {50716, "BlackLevelDeltaV"},
    {50717, "WhiteLevel"},
    {50718, "DefaultScale"},
    {50719, "DefaultCropOrigin"},
    {50720, "DefaultCropSize"},
    {50721, "ColorMatrix1"},
    {50722, "ColorMatrix2"},
    {50723, "CameraCalibration1"},
    {50724, "CameraCalibration2"},
    {50725, "ReductionMatrix1"},
    {50726, "ReductionMatrix2"},
    {50727, "AnalogBalance"},
    {50728, "AsShotNeutral"},
    {50729, "AsShotWhiteXY"},
    {50730, "BaselineExposure"},
    {50731, "BaselineNoise"},
    {50732, "BaselineSharpness"},
    {50733, "BayerGreenSplit"},
    {50734, "LinearResponseLimit"},
    {50735, "CameraSerialNumber"},
    {50736, "LensInfo"},
    {50737, "ChromaBlurRadius"},
    {50738, "AntiAliasStrength"},
    {50739, "ShadowScale"},
    {50740, "DNGPrivateData"},
    {50741, "MakerNoteSafety"},
    {50778, "CalibrationIlluminant1"},
    {50779, "CalibrationIlluminant2"},
    {50780, "BestQualityScale"},
    {50781, "AliasLayerMetadata"},
    {50827, "OriginalRawFileName"},
    {50828, "OriginalRawFileData"},
    {50829, "ActiveArea"},
    {50830, "MaskedAreas"},
    {50831, "AsShotICCProfile"},
    {50832, "AsShotPreProfileMatrix"},
    {50833, "CurrentICCProfile"},
    {50834, "CurrentICCProfileMatrix"},
    {50879, "ColorimetricReference"},
    {50931, "CameraCalibrationSignature"},
    {50932, "ProfileCalibrationSignature"},
    {50933, "ExtraCameraProfiles"},
    {50934, "AsShotProfileName"},
    {50935, "NoiseReductionApplied"},
    {50936, "ProfileName"},
    {50937, "ProfileHueSatMapDims"},
    {50938, "ProfileHueSatMapData1"},
    {50939, "ProfileHueSatMapData2"},
    {50940, "ProfileToneCurve"},
    {50941, "ProfileEmbedPolicy"},
    {50942, "ProfileCopyright"},
    {50964, "ForwardMatrix1"},
    {50965, "ForwardMatrix2"},
    {50966, "PreviewApplicationName"},
    {50967, "PreviewApplicationVersion"},
    {50968, "PreviewSettingsName"},
    {50969, "PreviewSettingsDigest"},
    {50970, "PreviewColorSpace"},
    {50971, "PreviewDateTime"},
    {50972, "RawImageDigest"},
    {50973, "OriginalRawFileDigest"},
    {50974, "SubTileBlockSize"},
    {50975, "RowInterleaveFactor"},
    {50981, "ProfileLookTableDims"},
    {50982, "ProfileLookTableData"},
    {51008, "OpcodeList1"},
    {51009, "OpcodeList2"},
    {51022, "OpcodeList3"},
    {51041, "NoiseProfile"},
    {51089, "OriginalDefaultFinalSize"},
    {51090, "OriginalBestQualityFinalSize"},
    {51091, "OriginalDefaultCropSize"},
    {51107, "ProfileHueSatMapEncoding"},
    {51108, "ProfileLookTableEncoding"},
    {51109, "BaselineExposureOffset"},
    {51110, "DefaultBlackRender"},
    {51111, "NewRawImageDigest"},
    {51112, "RawToPreviewGain"},
    {51125, "DefaultUserCrop"},
    {51177, "DepthFormat"},
    {51178, "DepthNear"},
    {51179, "DepthFar", anyType, any, no, none, nowhere, Decoder::DepthFar},
    {51180, "DepthUnits"},
    {51181, "DepthMeasureType"},
    {51182, "EnhanceParams"},
    {65535, "DCSHuesShiftValues"},
}));

// The GPS directory (EXIF 2.3).
constexpr TagRow gpsTags[] = {
    {    0, "GPSVersionID"},
    {    1, "GPSLatitudeRef"},
    {    2, "GPSLatitude"},
    {    3, "GPSLongitudeRef"},
    {    4, "GPSLongitude"},
    {    5, "GPSAltitudeRef"},
    {    6, "GPSAltitude"},
    {    7, "GPSTimeStamp"},
    {    8, "GPSSatellites"},
    {    9, "GPSStatus"},
    {   10, "GPSMeasureMode"},
    {   11, "GPSDOP"},
    {   12, "GPSSpeedRef"},
    {   13, "GPSSpeed"},
    {   14, "GPSTrackRef"},
    {   15, "GPSTrack"},
    {   16, "GPSImgDirectionRef"},
    {   17, "GPSImgDirection"},
    {   18, "GPSMapDatum"},
    {   19, "GPSDestLatitudeRef"},
    {   20, "GPSDestLatitude"},
    {   21, "GPSDestLongitudeRef"},
    {   22, "GPSDestLongitude"},
    {   23, "GPSDestBearingRef"},
    {   24, "GPSDestBearing"},
    {   25, "GPSDestDistanceRef"},
    {   26, "GPSDestDistance"},
    {   27, "GPSProcessingMethod"},
    {   28, "GPSAreaInformation"},
    {   29, "GPSDateStamp"},
    {   30, "GPSDifferential"},
};

// The interoperability directory (EXIF 2.3, DCF).
constexpr TagRow interopTags[] = {
    {    1, "InteroperabilityIndex"},
    {    2, "InteroperabilityVersion"},
    { 4096, "RelatedImageFileFormat"},
    { 4097, "RelatedImageWidth"},
    { 4098, "RelatedImageLength"},
};

// clang-format on

// What must hold of the tables.

constexpr std::span<const TagRow> primaryRows(primaryTags);
constexpr std::span<const TagRow> gpsRows(gpsTags);
constexpr std::span<const TagRow> interopRows(interopTags);

constexpr bool ascends(std::span<const TagRow> rows) {
    return std::ranges::is_sorted(rows, {}, &TagRow::number);
}
static_assert(ascends(primaryRows) && ascends(gpsRows) && ascends(interopRows));

/// The number that opens each pair of rows with one number.
constexpr std::size_t countRepeated(std::span<const TagRow> rows) {
    std::size_t repeated = 0;
    for (std::size_t i = 1; i < rows.size(); ++i) {
        repeated += rows[i].number == rows[i - 1].number ? 1 : 0;
    }
    return repeated;
}
static_assert(countRepeated(primaryRows) == 1, "347 alone is listed twice");
static_assert(countRepeated(interopRows) == 0);
static_assert(gpsRows.size() == gpsRows.back().number + 1U, "GPS tags have no gap");

constexpr bool everyGroupIsUsed() {
    for (std::size_t id = 0; id < typeGroups.size(); ++id) {
        if (std::ranges::count(primaryRows, static_cast<TypeGroupId>(id), &TagRow::types) == 0) {
            return false;
        }
    }
    return true;
}
static_assert(everyGroupIsUsed());

constexpr bool everyDecoderIsUsedOnce() {
    for (std::size_t id = 1; id < decoderCount; ++id) {
        if (std::ranges::count(primaryRows, static_cast<Decoder>(id), &TagRow::decoder) != 1) {
            return false;
        }
    }
    return true;
}
static_assert(everyDecoderIsUsedOnce());

// What is derived from them.

using PrimaryIndex = TagIndex<countIndexPages(primaryRows)>;
constexpr PrimaryIndex primaryIndex(primaryRows);

constexpr TagRow unknownTag{};

constexpr auto defaultTagRows = [] {
    std::array<const TagRow*, defaultTagCount> rows{};
    std::size_t count = 0;
    for (const TagRow& row : primaryRows) {
        if (row.defaultBit != 0) {
            rows.at(count) = &row;
            ++count;
        }
    }
    return count == defaultTagCount ? rows : decltype(rows){};
}();
static_assert(defaultTagRows.front() != nullptr, "the number of tags with a default is wrong");

constexpr auto baselineFieldNames = [] {
    std::array<const char*, baselineFieldCount> names{};
    for (const TagRow& row : primaryRows) {
        if (row.baselinePlace != 0) {
            names.at(row.baselinePlace - 1U) = row.name;
        }
    }
    return names;
}();
static_assert(std::ranges::count(baselineFieldNames, nullptr) == 0, "a baseline place is missing");

}  // namespace

std::span<const TagRow> primaryTagTable() noexcept {
    return primaryRows;
}

std::span<const TagRow> gpsTagTable() noexcept {
    return gpsRows;
}

std::span<const TagRow> interopTagTable() noexcept {
    return interopRows;
}

const TagRow& findTag(std::uint16_t number) noexcept {
    const std::uint16_t place = primaryIndex.find(number);
    return place == PrimaryIndex::none ? unknownTag : primaryTags[place];
}

const char* findGpsTagName(std::uint16_t number) noexcept {
    return number < gpsRows.size() ? gpsRows[number].name : nullptr;
}

const char* findInteropTagName(std::uint16_t number) noexcept {
    const auto row = std::ranges::find(interopRows, number, &TagRow::number);
    return row == interopRows.end() ? nullptr : row->name;
}

std::span<const TagRow* const, defaultTagCount> getDefaultTagRows() noexcept {
    return defaultTagRows;
}

std::span<const char* const, baselineFieldCount> getBaselineFieldNames() noexcept {
    return baselineFieldNames;
}

}  // namespace corvinex
