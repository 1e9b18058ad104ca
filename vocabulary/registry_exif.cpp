#include <array>

#include "vocabulary/registry_rules.h"
#include "vocabulary/registry_tables.h"
#include "vocabulary/registry_values.h"

// Tags of EXIF directories. Number, name, types, encoding, source,
// count, unit, words.

namespace corvinex::registry {
namespace {

using enum inspect::FieldType;
using enum Encoding;

// clang-format off
constexpr auto exifTable = sortedByNumber(std::to_array<TagFact>({
    // TIFF/EP (ISO 12234-2).
    {34858, "TimeZoneOffset",                      SShort,                    Number,          "TIFF/EP",                "1 or 2", "h"},
    {34859, "SelfTimerMode",                       Short,                     Number,          "TIFF/EP",                "1",      "s"},
    {37393, "ImageNumber",                         Long,                      Number,          "TIFF/EP",                "1"},
    {37394, "SecurityClassification",              Ascii,                     Code,            "TIFF/EP",                "N",      "",   &words::securityClassification},
    {37395, "ImageHistory",                        Ascii,                     Text,            "TIFF/EP",                "N"},
    {41485, "Noise",                               Undefined,                 Opaque,          "TIFF/EP",                "N"},
    {41489, "ImageNumber",                         Long,                      Number,          "TIFF/EP",                "1"},
    {41490, "SecurityClassification",              Ascii,                     Code,            "TIFF/EP",                "N",      "",   &words::securityClassification},
    {41491, "ImageHistory",                        Ascii,                     Text,            "TIFF/EP",                "N"},
    {41494, "TIFFEPStandardID",                    Byte,                      VersionBytes,    "TIFF/EP",                "4"},
    // EXIF 2.32.
    {33434, "ExposureTime",                        Rational,                  ExposureTime,    "EXIF2.32",               "1",      "s"},
    {33437, "FNumber",                             Rational,                  FNumber,         "EXIF2.32",               "1"},
    {34850, "ExposureProgram",                     Short,                     Code,            "EXIF2.32",               "1",      "",   &words::exposureProgram},
    {34852, "SpectralSensitivity",                 Ascii,                     Text,            "EXIF2.32",               "N"},
    {34855, "PhotographicSensitivity",             Short,                     Number,          "EXIF2.32",               "N"},
    {34856, "OECF",                                Undefined,                 Opaque,          "EXIF2.32",               "N"},
    {34864, "SensitivityType",                     Short,                     Code,            "EXIF2.32",               "1",      "",   &words::sensitivityType},
    {34865, "StandardOutputSensitivity",           Long,                      Number,          "EXIF2.32",               "1"},
    {34866, "RecommendedExposureIndex",            Long,                      Number,          "EXIF2.32",               "1"},
    {34867, "ISOSpeed",                            Long,                      Number,          "EXIF2.32",               "1"},
    {34868, "ISOSpeedLatitudeyyy",                 Long,                      Number,          "EXIF2.32",               "1"},
    {34869, "ISOSpeedLatitudezzz",                 Long,                      Number,          "EXIF2.32",               "1"},
    {36864, "ExifVersion",                         Undefined,                 TextInUndefined, "EXIF2.32",               "4"},
    {36867, "DateTimeOriginal",                    Ascii,                     DateTime,        "EXIF2.32",               "20"},
    {36868, "DateTimeDigitized",                   Ascii,                     DateTime,        "EXIF2.32",               "20"},
    {36880, "OffsetTime",                          Ascii,                     Text,            "EXIF2.32",               "7"},
    {36881, "OffsetTimeOriginal",                  Ascii,                     Text,            "EXIF2.32",               "7"},
    {36882, "OffsetTimeDigitized",                 Ascii,                     Text,            "EXIF2.32",               "7"},
    {37121, "ComponentsConfiguration",             Undefined,                 Code,            "EXIF2.32",               "4",      "",   &words::componentsConfiguration},
    {37122, "CompressedBitsPerPixel",              Rational,                  Number,          "EXIF2.32",               "1",      "bit/px"},
    {37377, "ShutterSpeedValue",                   SRational,                 RationalUnit,    "EXIF2.32",               "1",      "APEX"},
    {37378, "ApertureValue",                       Rational,                  RationalUnit,    "EXIF2.32",               "1",      "APEX"},
    {37379, "BrightnessValue",                     SRational,                 RationalUnit,    "EXIF2.32",               "1",      "APEX"},
    {37380, "ExposureBiasValue",                   SRational,                 RationalUnit,    "EXIF2.32",               "1",      "APEX"},
    {37381, "MaxApertureValue",                    Rational,                  RationalUnit,    "EXIF2.32",               "1",      "APEX"},
    {37382, "SubjectDistance",                     Rational,                  RationalUnit,    "EXIF2.32",               "1",      "m"},
    {37383, "MeteringMode",                        Short,                     Code,            "EXIF2.32",               "1",      "",   &words::meteringMode},
    {37384, "LightSource",                         Short,                     Code,            "EXIF2.32",               "1",      "",   &words::lightSource},
    {37385, "Flash",                               Short,                     Flags,           "EXIF2.32",               "1",      "",   &words::flash},
    {37386, "FocalLength",                         Rational,                  RationalUnit,    "EXIF2.32",               "1",      "mm"},
    {37396, "SubjectArea",                         Short,                     Number,          "EXIF2.32",               "2..4",   "px"},
    {37500, "MakerNote",                           Undefined,                 MakerNote,       "EXIF2.32",               "N"},
    {37510, "UserComment",                         Undefined,                 Comment,         "EXIF2.32",               "N"},
    {37520, "SubSecTime",                          Ascii,                     Text,            "EXIF2.32",               "N"},
    {37521, "SubSecTimeOriginal",                  Ascii,                     Text,            "EXIF2.32",               "N"},
    {37522, "SubSecTimeDigitized",                 Ascii,                     Text,            "EXIF2.32",               "N"},
    {37888, "Temperature",                         SRational,                 RationalUnit,    "EXIF2.32",               "1",      "degC"},
    {37889, "Humidity",                            Rational,                  RationalUnit,    "EXIF2.32",               "1",      "%"},
    {37890, "Pressure",                            Rational,                  RationalUnit,    "EXIF2.32",               "1",      "hPa"},
    {37891, "WaterDepth",                          SRational,                 RationalUnit,    "EXIF2.32",               "1",      "m"},
    {37892, "Acceleration",                        Rational,                  RationalUnit,    "EXIF2.32",               "1",      "mGal"},
    {37893, "CameraElevationAngle",                SRational,                 RationalUnit,    "EXIF2.32",               "1",      "deg"},
    {40960, "FlashpixVersion",                     Undefined,                 TextInUndefined, "EXIF2.32",               "4"},
    {40961, "ColorSpace",                          Short,                     Code,            "EXIF2.32",               "1",      "",   &words::colorSpace},
    {40962, "PixelXDimension",                     Short | Long,              Number,          "EXIF2.32",               "1",      "px"},
    {40963, "PixelYDimension",                     Short | Long,              Number,          "EXIF2.32",               "1",      "px"},
    {40964, "RelatedSoundFile",                    Ascii,                     Text,            "EXIF2.32",               "13"},
    {40965, "InteroperabilityIFDPointer",          Long | Ifd | Long8 | Ifd8, Pointer,         "EXIF2.32",               "1"},
    {41483, "FlashEnergy",                         Rational,                  RationalUnit,    "EXIF2.32",               "1",      "BCPS"},
    {41484, "SpatialFrequencyResponse",            Undefined,                 Opaque,          "EXIF2.32",               "N"},
    {41486, "FocalPlaneXResolution",               Rational,                  RationalUnit,    "EXIF2.32",               "1",      "by FocalPlaneResolutionUnit"},
    {41487, "FocalPlaneYResolution",               Rational,                  RationalUnit,    "EXIF2.32",               "1",      "by FocalPlaneResolutionUnit"},
    {41488, "FocalPlaneResolutionUnit",            Short,                     Code,            "EXIF2.32",               "1",      "",   &words::focalPlaneResolutionUnit},
    {41492, "SubjectLocation",                     Short,                     Number,          "EXIF2.32",               "2",      "px"},
    {41493, "ExposureIndex",                       Rational,                  Number,          "EXIF2.32",               "1"},
    {41495, "SensingMethod",                       Short,                     Code,            "EXIF2.32",               "1",      "",   &words::exifSensingMethod},
    {41728, "FileSource",                          Undefined,                 Code,            "EXIF2.32",               "1",      "",   &words::fileSource},
    {41729, "SceneType",                           Undefined,                 Code,            "EXIF2.32",               "1",      "",   &words::sceneType},
    {41730, "CFAPattern",                          Undefined,                 Opaque,          "EXIF2.32",               "N"},
    {41985, "CustomRendered",                      Short,                     Code,            "EXIF2.32",               "1",      "",   &words::customRendered},
    {41986, "ExposureMode",                        Short,                     Code,            "EXIF2.32",               "1",      "",   &words::exposureMode},
    {41987, "WhiteBalance",                        Short,                     Code,            "EXIF2.32",               "1",      "",   &words::whiteBalance},
    {41988, "DigitalZoomRatio",                    Rational,                  Number,          "EXIF2.32",               "1"},
    {41989, "FocalLengthIn35mmFilm",               Short,                     Number,          "EXIF2.32",               "1",      "mm"},
    {41990, "SceneCaptureType",                    Short,                     Code,            "EXIF2.32",               "1",      "",   &words::sceneCaptureType},
    {41991, "GainControl",                         Short,                     Code,            "EXIF2.32",               "1",      "",   &words::gainControl},
    {41992, "Contrast",                            Short,                     Code,            "EXIF2.32",               "1",      "",   &words::softOrHard},
    {41993, "Saturation",                          Short,                     Code,            "EXIF2.32",               "1",      "",   &words::saturation},
    {41994, "Sharpness",                           Short,                     Code,            "EXIF2.32",               "1",      "",   &words::softOrHard},
    {41995, "DeviceSettingDescription",            Undefined,                 Opaque,          "EXIF2.32",               "N"},
    {41996, "SubjectDistanceRange",                Short,                     Code,            "EXIF2.32",               "1",      "",   &words::subjectDistanceRange},
    {42016, "ImageUniqueID",                       Ascii,                     Text,            "EXIF2.32",               "33"},
    {42032, "CameraOwnerName",                     Ascii | Utf8,              Text,            "EXIF2.32",               "N"},
    {42033, "BodySerialNumber",                    Ascii | Utf8,              Text,            "EXIF2.32",               "N"},
    {42034, "LensSpecification",                   Rational,                  LensRange,       "EXIF2.32",               "4",      "mm"},
    {42035, "LensMake",                            Ascii | Utf8,              Text,            "EXIF2.32",               "N"},
    {42036, "LensModel",                           Ascii | Utf8,              Text,            "EXIF2.32",               "N"},
    {42037, "LensSerialNumber",                    Ascii | Utf8,              Text,            "EXIF2.32",               "N"},
    {42080, "CompositeImage",                      Short,                     Code,            "EXIF2.32",               "1",      "",   &words::compositeImage},
    {42081, "SourceImageNumberOfCompositeImage",   Short,                     Number,          "EXIF2.32",               "2"},
    {42082, "SourceExposureTimesOfCompositeImage", Undefined,                 Opaque,          "EXIF2.32",               "N"},
    {42240, "Gamma",                               Rational,                  Number,          "EXIF2.32",               "1"},
    // EXIF 3.0.
    {42038, "ImageTitle",                          Ascii | Utf8,              Text,            "EXIF3.0",                "N"},
    {42039, "Photographer",                        Ascii | Utf8,              Text,            "EXIF3.0",                "N"},
    {42040, "ImageEditor",                         Ascii | Utf8,              Text,            "EXIF3.0",                "N"},
    {42041, "CameraFirmware",                      Ascii | Utf8,              Text,            "EXIF3.0",                "N"},
    {42042, "RAWDevelopingSoftware",               Ascii | Utf8,              Text,            "EXIF3.0",                "N"},
    {42043, "ImageEditingSoftware",                Ascii | Utf8,              Text,            "EXIF3.0",                "N"},
    {42044, "MetadataEditingSoftware",             Ascii | Utf8,              Text,            "EXIF3.0",                "N"},
    // EXIF 3.1 (some from 3.0 on).
    {37511, "LearningOptOutIn",                    Undefined,                 Opaque,          "EXIF3.1",                "N"},
    {41997, "DevelopmentType",                     Short,                     Flags,           "EXIF3.1",                "1",      "",   &words::developmentType},
    {41998, "DevelopmentTypeDescription",          Ascii | Utf8,              Text,            "EXIF3.1",                "N"},
    {41999, "DistortionCorrection",                Short,                     Code,            "EXIF3.1",                "1",      "",   &words::appliedCorrection},
    {42000, "ChromaticAberrationCorrection",       Short,                     Code,            "EXIF3.1",                "1",      "",   &words::appliedCorrection},
    {42001, "ShadingCorrection",                   Short,                     Code,            "EXIF3.1",                "1",      "",   &words::appliedCorrection},
    {42002, "NoiseReduction",                      Short,                     Code,            "EXIF3.1",                "1",      "",   &words::noiseReduction},
    // Private tags.
    {36873, "GooglePlusUploadCode",                Undefined,                 Opaque,          "private:Google",         "N"},
    {39321, "XiaomiSettings",                      Ascii,                     Text,            "private:Xiaomi",         "N"},
    {39424, "XiaomiModel",                         Ascii,                     Text,            "private:Xiaomi",         "N"},
    {59932, "Padding",                             Undefined,                 Opaque,          "private:Microsoft",      "N"},
    {59933, "OffsetSchema",                        SLong,                     Number,          "private:Microsoft",      "1",      "byte"},
    {65000, "OwnerName",                           Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65001, "SerialNumber",                        Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65002, "Lens",                                Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65100, "RawFile",                             Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65101, "Converter",                           Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65102, "WhiteBalance",                        Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65105, "Exposure",                            Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65106, "Shadows",                             Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65107, "Brightness",                          Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65108, "Contrast",                            Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65109, "Saturation",                          Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65110, "Sharpness",                           Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65111, "Smoothness",                          Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
    {65112, "MoireFilter",                         Ascii,                     Text,            "private:AdobeCameraRaw", "N"},
}));
// clang-format on
static_assert(isTagTable(exifTable));
constexpr TagIndex<countPages(exifTable)> exifIndex(exifTable);

}  // namespace

IndexedTags exifTags() noexcept {
    return {exifTable, exifIndex.pageOf, exifIndex.rows};
}

}  // namespace corvinex::registry
