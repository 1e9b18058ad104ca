#pragma once

#include <cstdint>

// The names that the dictionaries must hold, ascending by number: a list of its own, so that a slip
// in the module's tables shows.

namespace test {

struct ExpectedName {
    std::uint16_t tag;
    const char* name;
};

// clang-format off

/// Main and EXIF directories.
inline constexpr ExpectedName primaryNames[] = {
    {254, "NewSubFileType"}, {255, "SubFileType"}, {256, "Width"}, {257, "Length"},
    {258, "BitsPerSample"}, {259, "Compression"}, {262, "PhotometricInterpretation"},
    {263, "Thresholding"}, {264, "CellWidth"}, {265, "CellLength"}, {266, "FillOrder"},
    {269, "DocumentName"}, {270, "ImageDescription"}, {271, "Make"}, {272, "Model"},
    {273, "StripOffsets"}, {274, "Orientation"}, {277, "SamplesPerPixel"}, {278, "RowsPerStrip"},
    {279, "StripByteCounts"}, {280, "MinSampleValue"}, {281, "MaxSampleValue"},
    {282, "XResolution"}, {283, "YResolution"}, {284, "PlanarConfiguration"}, {285, "PageName"},
    {286, "XPosition"}, {287, "YPosition"}, {288, "FreeOffsets"}, {289, "FreeByteCounts"},
    {290, "GrayResponseUnit"}, {291, "GrayResponseCurve"}, {292, "T4Options"}, {293, "T6Options"},
    {296, "ResolutionUnit"}, {297, "PageNumber"}, {300, "ColorResponseUnit"},
    {301, "TransferFunction"}, {305, "Software"}, {306, "DateTime"}, {315, "Artist"},
    {316, "HostComputer"}, {317, "Predictor"}, {318, "WhitePoint"}, {319, "PrimaryChromaticities"},
    {320, "Colormap"}, {321, "HalftoneHints"}, {322, "TileWidth"}, {323, "TileLength"},
    {324, "TileOffsets"}, {325, "TileByteCounts"}, {326, "BadFaxLines"}, {327, "CleanFaxData"},
    {328, "ConsecutiveBadFaxLines"}, {330, "SubIFDs"}, {332, "InkSet"}, {333, "InkNames"},
    {334, "NumberOfInks"}, {336, "DotRange"}, {337, "TargetPrinter"}, {338, "ExtraSamples"},
    {339, "SampleFormat"}, {340, "SMinSampleValue"}, {341, "SMaxSampleValue"},
    {342, "TransferRange"}, {343, "ClipPath"}, {344, "XClipPathUnits"}, {345, "YClipPathUnits"},
    {346, "Indexed"}, {347, "JPEGTables"}, {351, "OPIProxy"}, {400, "GlobalParametersIFD"},
    {401, "ProfileType"}, {402, "FaxProfile"}, {403, "CodingMethods"}, {404, "VersionYear"},
    {405, "ModeNumber"}, {433, "Decode"}, {434, "DefaultImageColor"}, {512, "JPEGProc"},
    {513, "JPEGInterchangeFormat"}, {514, "JPEGInterchangeFormatLength"},
    {515, "JPEGRestartInterval"}, {517, "JPEGLosslessPredictors"}, {518, "JPEGPointTransforms"},
    {520, "JPEGDCTables"}, {521, "JPEGACTables"}, {529, "YCbCrCoefficients"},
    {530, "YCbCrSubsampling"}, {531, "YCbCrPositioning"}, {532, "ReferenceBlackWhite"},
    {559, "StripRowCounts"}, {700, "XMP"}, {32781, "ImageID"}, {32932, "WangAnnotation"},
    {32953, "RefPts"}, {32954, "RegionTackPoint"}, {32955, "RegionWarpCorners"},
    {32956, "RegionAffine"}, {32995, "Matteing"}, {32996, "Datatype"}, {32997, "ImageDepth"},
    {32998, "TileDepth"}, {33300, "PixarImageFullWidth"}, {33301, "PixarImageFullLength"},
    {33302, "PixarTextureFormat"}, {33303, "PixarWrapModes"}, {33304, "PixarFovCot"},
    {33305, "PixarMatrixWorldToScreen"}, {33405, "WriterSerialNumber"}, {33432, "Copyright"},
    {33434, "ExposureTime"}, {33437, "FNumber"}, {33445, "MDFileTag"}, {33446, "MDScalePixel"},
    {33447, "MDColorTable"}, {33448, "MDLabName"}, {33449, "MDSampleInfo"}, {33450, "MDPrepDate"},
    {33451, "MDPrepTime"}, {33452, "MDFileUnits"}, {33550, "ModelPixelScaleTag"}, {33723, "ITPC"},
    {33918, "INGRPacketDataTag"}, {33919, "INGRFlagRegisters"},
    {33920, "IrasBTransformationMatrix"}, {33922, "ModelTiepointTag"}, {34016, "IT8Site"},
    {34017, "IT8ColorSequence"}, {34018, "IT8Header"}, {34019, "IT8RasterPadding"},
    {34020, "IT8BitsPerRunLength"}, {34021, "IT8BitsPerExtendedRunLength"},
    {34022, "IT8ColorTable"}, {34023, "IT8ImageColorIndicator"}, {34024, "IT8BKGColorIndicator"},
    {34025, "IT8ImageColorValue"}, {34026, "IT8BKGColorValue"}, {34027, "IT8PixelIntensityRange"},
    {34028, "IT8TransparencyIndicator"}, {34029, "IT8ColorCharacterization"}, {34030, "IT8HCUsage"},
    {34031, "IT8TRapIndicator"}, {34032, "IT8CMYKEquivalent"}, {34232, "FrameCount"},
    {34264, "ModelTransformationTag"}, {34377, "Photoshop"}, {34665, "DigitalCamera"},
    {34675, "ICCProfileOffset"}, {34732, "ImageLayer"}, {34735, "GeoKeyDirectoryTag"},
    {34736, "GeoDoubleParamsTag"}, {34737, "GeoAsciiParamsTag"}, {34750, "JBIGOptions"},
    {34850, "ExposureProgram"}, {34852, "SpectralSensitivity"}, {34853, "GPSInfo"},
    {34855, "ISOSpeedRatings"}, {34856, "OECF"}, {34908, "HylaFAXFaxRecvParams"},
    {34909, "HylaFAXFaxSubAddress"}, {34910, "HylaFAXFaxRecvTime"}, {34911, "FaxDCS"},
    {34929, "FedExEdr"}, {36864, "ExifVersion"}, {36867, "DateTimeOriginal"},
    {36868, "DateTimeDigitized"}, {37121, "ComponentsConfiguration"},
    {37122, "CompressedBitsPerPixel"}, {37377, "ShutterSpeedValue"}, {37378, "ApertureValue"},
    {37379, "BrightnessValue"}, {37380, "ExposureBiasValue"}, {37381, "MaxApertureValue"},
    {37382, "SubjectDistance"}, {37383, "MeteringMode"}, {37384, "LightSource"}, {37385, "Flash"},
    {37386, "FocalLength"}, {37396, "SubjectArea"}, {37439, "StoNITS"}, {37500, "MakerNote"},
    {37510, "UserComment"}, {37520, "SubsecTime"}, {37521, "SubsecTimeOriginal"},
    {37522, "SubsecTimeDigitized"}, {37724, "ImageSourceData"}, {40960, "FlashpixVersion"},
    {40961, "ColorSpace"}, {40962, "CPixelXDimension"}, {40963, "CPixelYDimension"},
    {40964, "RelatedSoundFile"}, {40965, "InteroperabilityIFD"}, {41483, "FlashEnergy"},
    {41484, "SpatialFrequencyResponse"}, {41486, "FocalPlaneXResolution"},
    {41487, "FocalPlaneYResolution"}, {41488, "FocalPlaneResolutionUnit"},
    {41492, "SubjectLocation"}, {41493, "ExposureIndex"}, {41495, "SensingMethod"},
    {41728, "FileSource"}, {41729, "SceneType"}, {41730, "CFAPattern"}, {41985, "CustomRendered"},
    {41986, "ExposureMode"}, {41987, "WhiteBalance"}, {41988, "DigitalZoomRatio"},
    {41989, "FocalLengthIn35mmFilm"}, {41990, "SceneCaptureType"}, {41991, "GainControl"},
    {41992, "Contrast"}, {41993, "Saturation"}, {41994, "Sharpness"},
    {41995, "DeviceSettingDescription"}, {41996, "SubjectDistanceRange"}, {42016, "ImageUniqueID"},
    {42112, "GDAL_METADATA"}, {42113, "GDAL_NODATA"}, {50215, "OceScanjobDescription"},
    {50216, "OceApplicationSelector"}, {50217, "OceIdentificationNumber"},
    {50218, "OceImageLogicCharacteristics"}, {50706, "DNGVersion"}, {50707, "DNGBackwardVersion"},
    {50708, "UniqueCameraModel"}, {50709, "LocalizedCameraModel"}, {50710, "CFAPlaneColor"},
    {50711, "CFALayout"}, {50712, "LinearizationTable"}, {50713, "BlackLevelRepeatDim"},
    {50714, "BlackLevel"}, {50715, "BlackLevelDeltaH"}, {50716, "BlackLevelDeltaV"},
    {50717, "WhiteLevel"}, {50718, "DefaultScale"}, {50719, "DefaultCropOrigin"},
    {50720, "DefaultCropSize"}, {50721, "ColorMatrix1"}, {50722, "ColorMatrix2"},
    {50723, "CameraCalibration1"}, {50724, "CameraCalibration2"}, {50725, "ReductionMatrix1"},
    {50726, "ReductionMatrix2"}, {50727, "AnalogBalance"}, {50728, "AsShotNeutral"},
    {50729, "AsShotWhiteXY"}, {50730, "BaselineExposure"}, {50731, "BaselineNoise"},
    {50732, "BaselineSharpness"}, {50733, "BayerGreenSplit"}, {50734, "LinearResponseLimit"},
    {50735, "CameraSerialNumber"}, {50736, "LensInfo"}, {50737, "ChromaBlurRadius"},
    {50738, "AntiAliasStrength"}, {50739, "ShadowScale"}, {50740, "DNGPrivateData"},
    {50741, "MakerNoteSafety"}, {50778, "CalibrationIlluminant1"},
    {50779, "CalibrationIlluminant2"}, {50780, "BestQualityScale"}, {50781, "AliasLayerMetadata"},
    {50827, "OriginalRawFileName"}, {50828, "OriginalRawFileData"}, {50829, "ActiveArea"},
    {50830, "MaskedAreas"}, {50831, "AsShotICCProfile"}, {50832, "AsShotPreProfileMatrix"},
    {50833, "CurrentICCProfile"}, {50834, "CurrentICCProfileMatrix"},
    {50879, "ColorimetricReference"}, {50931, "CameraCalibrationSignature"},
    {50932, "ProfileCalibrationSignature"}, {50933, "ExtraCameraProfiles"},
    {50934, "AsShotProfileName"}, {50935, "NoiseReductionApplied"}, {50936, "ProfileName"},
    {50937, "ProfileHueSatMapDims"}, {50938, "ProfileHueSatMapData1"},
    {50939, "ProfileHueSatMapData2"}, {50940, "ProfileToneCurve"}, {50941, "ProfileEmbedPolicy"},
    {50942, "ProfileCopyright"}, {50964, "ForwardMatrix1"}, {50965, "ForwardMatrix2"},
    {50966, "PreviewApplicationName"}, {50967, "PreviewApplicationVersion"},
    {50968, "PreviewSettingsName"}, {50969, "PreviewSettingsDigest"}, {50970, "PreviewColorSpace"},
    {50971, "PreviewDateTime"}, {50972, "RawImageDigest"}, {50973, "OriginalRawFileDigest"},
    {50974, "SubTileBlockSize"}, {50975, "RowInterleaveFactor"}, {50981, "ProfileLookTableDims"},
    {50982, "ProfileLookTableData"}, {51008, "OpcodeList1"}, {51009, "OpcodeList2"},
    {51022, "OpcodeList3"}, {51041, "NoiseProfile"}, {51089, "OriginalDefaultFinalSize"},
    {51090, "OriginalBestQualityFinalSize"}, {51091, "OriginalDefaultCropSize"},
    {51107, "ProfileHueSatMapEncoding"}, {51108, "ProfileLookTableEncoding"},
    {51109, "BaselineExposureOffset"}, {51110, "DefaultBlackRender"}, {51111, "NewRawImageDigest"},
    {51112, "RawToPreviewGain"}, {51125, "DefaultUserCrop"}, {51177, "DepthFormat"},
    {51178, "DepthNear"}, {51179, "DepthFar"}, {51180, "DepthUnits"}, {51181, "DepthMeasureType"},
    {51182, "EnhanceParams"}, {65535, "DCSHuesShiftValues"},
};

/// GPS directories.
inline constexpr ExpectedName gpsNames[] = {
    {0, "GPSVersionID"}, {1, "GPSLatitudeRef"}, {2, "GPSLatitude"}, {3, "GPSLongitudeRef"},
    {4, "GPSLongitude"}, {5, "GPSAltitudeRef"}, {6, "GPSAltitude"}, {7, "GPSTimeStamp"},
    {8, "GPSSatellites"}, {9, "GPSStatus"}, {10, "GPSMeasureMode"}, {11, "GPSDOP"},
    {12, "GPSSpeedRef"}, {13, "GPSSpeed"}, {14, "GPSTrackRef"}, {15, "GPSTrack"},
    {16, "GPSImgDirectionRef"}, {17, "GPSImgDirection"}, {18, "GPSMapDatum"},
    {19, "GPSDestLatitudeRef"}, {20, "GPSDestLatitude"}, {21, "GPSDestLongitudeRef"},
    {22, "GPSDestLongitude"}, {23, "GPSDestBearingRef"}, {24, "GPSDestBearing"},
    {25, "GPSDestDistanceRef"}, {26, "GPSDestDistance"}, {27, "GPSProcessingMethod"},
    {28, "GPSAreaInformation"}, {29, "GPSDateStamp"}, {30, "GPSDifferential"},
};

/// Interoperability directories.
inline constexpr ExpectedName interopNames[] = {
    {1, "InteroperabilityIndex"}, {2, "InteroperabilityVersion"}, {4096, "RelatedImageFileFormat"},
    {4097, "RelatedImageWidth"}, {4098, "RelatedImageLength"},
};

// clang-format on

}  // namespace test
