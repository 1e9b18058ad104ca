#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "corvinex/directory_kind.h"

// Which types and counts the standards give to tags: one row a tag, by directory kind.

namespace corvinex::inspect {

/// What a standard asks of a tag's value. Several types are joined by or.
struct ListedTag {
    std::uint16_t number;
    std::uint8_t types;
    std::uint8_t count;  ///< 0: any
};

namespace listed_type {
inline constexpr std::uint8_t Byte = 1U << 0U;
inline constexpr std::uint8_t Ascii = 1U << 1U;
inline constexpr std::uint8_t Short = 1U << 2U;
inline constexpr std::uint8_t Long = 1U << 3U;
inline constexpr std::uint8_t Rational = 1U << 4U;
inline constexpr std::uint8_t SRational = 1U << 5U;
inline constexpr std::uint8_t Undefined = 1U << 6U;
inline constexpr std::uint8_t Double = 1U << 7U;

// clang-format off
// TIFF 6.0 and its extensions, GeoTIFF, ICC.1.
inline constexpr std::array<ListedTag, 75> imageTags{{
    {254,   Long,             1},   // NewSubfileType
    {255,   Short,            1},   // SubfileType
    {256,   Short | Long,     1},   // ImageWidth
    {257,   Short | Long,     1},   // ImageLength
    {258,   Short,            0},   // BitsPerSample
    {259,   Short,            1},   // Compression
    {262,   Short,            1},   // PhotometricInterpretation
    {263,   Short,            1},   // Threshholding
    {264,   Short,            1},   // CellWidth
    {265,   Short,            1},   // CellLength
    {266,   Short,            1},   // FillOrder
    {269,   Ascii,            0},   // DocumentName
    {270,   Ascii,            0},   // ImageDescription
    {271,   Ascii,            0},   // Make
    {272,   Ascii,            0},   // Model
    {273,   Short | Long,     0},   // StripOffsets
    {274,   Short,            1},   // Orientation
    {277,   Short,            1},   // SamplesPerPixel
    {278,   Short | Long,     1},   // RowsPerStrip
    {279,   Short | Long,     0},   // StripByteCounts
    {280,   Short,            0},   // MinSampleValue
    {281,   Short,            0},   // MaxSampleValue
    {282,   Rational,         1},   // XResolution
    {283,   Rational,         1},   // YResolution
    {284,   Short,            1},   // PlanarConfiguration
    {285,   Ascii,            0},   // PageName
    {286,   Rational,         1},   // XPosition
    {287,   Rational,         1},   // YPosition
    {290,   Short,            1},   // GrayResponseUnit
    {291,   Short,            0},   // GrayResponseCurve
    {292,   Long,             1},   // T4Options
    {293,   Long,             1},   // T6Options
    {296,   Short,            1},   // ResolutionUnit
    {297,   Short,            2},   // PageNumber
    {301,   Short,            0},   // TransferFunction
    {305,   Ascii,            0},   // Software
    {306,   Ascii,            0},   // DateTime
    {315,   Ascii,            0},   // Artist
    {316,   Ascii,            0},   // HostComputer
    {317,   Short,            1},   // Predictor
    {318,   Rational,         2},   // WhitePoint
    {319,   Rational,         6},   // PrimaryChromaticities
    {320,   Short,            0},   // ColorMap
    {321,   Short,            2},   // HalftoneHints
    {322,   Short | Long,     1},   // TileWidth
    {323,   Short | Long,     1},   // TileLength
    {324,   Short | Long,     0},   // TileOffsets
    {325,   Short | Long,     0},   // TileByteCounts
    {332,   Short,            1},   // InkSet
    {333,   Ascii,            0},   // InkNames
    {334,   Short,            1},   // NumberOfInks
    {336,   Byte | Short,     0},   // DotRange
    {337,   Ascii,            0},   // TargetPrinter
    {338,   Byte | Short,     0},   // ExtraSamples
    {339,   Short,            0},   // SampleFormat
    {347,   Undefined,        0},   // JPEGTables
    {512,   Short,            1},   // JPEGProc
    {513,   Long,             1},   // JPEGInterchangeFormat
    {514,   Long,             1},   // JPEGInterchangeFormatLength
    {519,   Long,             0},   // JPEGQTables
    {520,   Long,             0},   // JPEGDCTables
    {521,   Long,             0},   // JPEGACTables
    {529,   Rational,         3},   // YCbCrCoefficients
    {530,   Short,            2},   // YCbCrSubSampling
    {531,   Short,            1},   // YCbCrPositioning
    {532,   Rational,         6},   // ReferenceBlackWhite
    {700,   Byte | Undefined, 0},   // XMP
    {33432, Ascii,            0},   // Copyright
    {33550, Double,           3},   // ModelPixelScale
    {33922, Double,           0},   // ModelTiepoint
    {34264, Double,           16},  // ModelTransformation
    {34675, Undefined,        0},   // ICCProfile
    {34735, Short,            0},   // GeoKeyDirectory
    {34736, Double,           0},   // GeoDoubleParams
    {34737, Ascii,            0},   // GeoAsciiParams
}};

// EXIF.
inline constexpr std::array<ListedTag, 56> exifTags{{
    {33434, Rational,         1},   // ExposureTime
    {33437, Rational,         1},   // FNumber
    {34850, Short,            1},   // ExposureProgram
    {34852, Ascii,            0},   // SpectralSensitivity
    {34855, Short,            0},   // PhotographicSensitivity
    {36864, Undefined,        4},   // ExifVersion
    {36867, Ascii,            0},   // DateTimeOriginal
    {36868, Ascii,            0},   // DateTimeDigitized
    {37121, Undefined,        4},   // ComponentsConfiguration
    {37122, Rational,         1},   // CompressedBitsPerPixel
    {37377, SRational,        1},   // ShutterSpeedValue
    {37378, Rational,         1},   // ApertureValue
    {37379, SRational,        1},   // BrightnessValue
    {37380, SRational,        1},   // ExposureBiasValue
    {37381, Rational,         1},   // MaxApertureValue
    {37382, Rational,         1},   // SubjectDistance
    {37383, Short,            1},   // MeteringMode
    {37384, Short,            1},   // LightSource
    {37385, Short,            1},   // Flash
    {37386, Rational,         1},   // FocalLength
    {37510, Undefined,        0},   // UserComment
    {37520, Ascii,            0},   // SubSecTime
    {37521, Ascii,            0},   // SubSecTimeOriginal
    {37522, Ascii,            0},   // SubSecTimeDigitized
    {40960, Undefined,        4},   // FlashpixVersion
    {40961, Short,            1},   // ColorSpace
    {40962, Short | Long,     1},   // PixelXDimension
    {40963, Short | Long,     1},   // PixelYDimension
    {41483, Rational,         1},   // FlashEnergy
    {41486, Rational,         1},   // FocalPlaneXResolution
    {41487, Rational,         1},   // FocalPlaneYResolution
    {41488, Short,            1},   // FocalPlaneResolutionUnit
    {41492, Short,            2},   // SubjectLocation
    {41493, Rational,         1},   // ExposureIndex
    {41495, Short,            1},   // SensingMethod
    {41728, Undefined,        1},   // FileSource
    {41729, Undefined,        1},   // SceneType
    {41730, Undefined,        0},   // CFAPattern
    {41985, Short,            1},   // CustomRendered
    {41986, Short,            1},   // ExposureMode
    {41987, Short,            1},   // WhiteBalance
    {41988, Rational,         1},   // DigitalZoomRatio
    {41989, Short,            1},   // FocalLengthIn35mmFilm
    {41990, Short,            1},   // SceneCaptureType
    {41992, Short,            1},   // Contrast
    {41993, Short,            1},   // Saturation
    {41994, Short,            1},   // Sharpness
    {41995, Undefined,        0},   // DeviceSettingDescription
    {41996, Short,            1},   // SubjectDistanceRange
    {42016, Ascii,            0},   // ImageUniqueID
    {42032, Ascii,            0},   // CameraOwnerName
    {42033, Ascii,            0},   // BodySerialNumber
    {42034, Rational,         4},   // LensSpecification
    {42035, Ascii,            0},   // LensMake
    {42036, Ascii,            0},   // LensModel
    {42037, Ascii,            0},   // LensSerialNumber
}};

// EXIF, GPS information.
inline constexpr std::array<ListedTag, 32> gpsTags{{
    {0,     Byte,             4},   // GPSVersionID
    {1,     Ascii,            0},   // GPSLatitudeRef
    {2,     Rational,         3},   // GPSLatitude
    {3,     Ascii,            0},   // GPSLongitudeRef
    {4,     Rational,         3},   // GPSLongitude
    {5,     Byte,             1},   // GPSAltitudeRef
    {6,     Rational,         1},   // GPSAltitude
    {7,     Rational,         3},   // GPSTimeStamp
    {8,     Ascii,            0},   // GPSSatellites
    {9,     Ascii,            0},   // GPSStatus
    {10,    Ascii,            0},   // GPSMeasureMode
    {11,    Rational,         1},   // GPSDOP
    {12,    Ascii,            0},   // GPSSpeedRef
    {13,    Rational,         1},   // GPSSpeed
    {14,    Ascii,            0},   // GPSTrackRef
    {15,    Rational,         1},   // GPSTrack
    {16,    Ascii,            0},   // GPSImgDirectionRef
    {17,    Rational,         1},   // GPSImgDirection
    {18,    Ascii,            0},   // GPSMapDatum
    {19,    Ascii,            0},   // GPSDestLatitudeRef
    {20,    Rational,         3},   // GPSDestLatitude
    {21,    Ascii,            0},   // GPSDestLongitudeRef
    {22,    Rational,         3},   // GPSDestLongitude
    {23,    Ascii,            0},   // GPSDestBearingRef
    {24,    Rational,         1},   // GPSDestBearing
    {25,    Ascii,            0},   // GPSDestDistanceRef
    {26,    Rational,         1},   // GPSDestDistance
    {27,    Undefined,        0},   // GPSProcessingMethod
    {28,    Undefined,        0},   // GPSAreaInformation
    {29,    Ascii,            0},   // GPSDateStamp
    {30,    Short,            1},   // GPSDifferential
    {31,    Rational,         1},   // GPSHPositioningError
}};

// EXIF, interoperability.
inline constexpr std::array<ListedTag, 2> interopTags{{
    {1,     Ascii,            0},   // InteroperabilityIndex
    {2,     Undefined,        4},   // InteroperabilityVersion
}};
// clang-format on

}  // namespace listed_type

/// All rows of a kind, by ascending number.
[[nodiscard]] constexpr std::span<const ListedTag> listedTags(DirectoryKind kind) noexcept {
    switch (kind) {
        case DirectoryKind::Exif:
            return listed_type::exifTags;
        case DirectoryKind::Gps:
            return listed_type::gpsTags;
        case DirectoryKind::Interop:
            return listed_type::interopTags;
        case DirectoryKind::Main:
        case DirectoryKind::Sub:
            break;
    }
    return listed_type::imageTags;
}

/// The most rows that a kind has.
inline constexpr std::size_t mostListedTags = listed_type::imageTags.size();

/// A tag of one directory kind that rules ask for, with its row there.
struct KnownTag {
    std::uint16_t number;
    std::uint8_t row;
};

/// Only for numbers that are listed: the compiler refuses others.
[[nodiscard]] consteval KnownTag knownTag(DirectoryKind kind, std::uint16_t number) {
    const std::span<const ListedTag> rows = listedTags(kind);
    const auto row = std::ranges::lower_bound(rows, number, {}, &ListedTag::number);
    if (row == rows.end() || row->number != number) {
        throw number;
    }
    return {number, static_cast<std::uint8_t>(row - rows.begin())};
}
[[nodiscard]] consteval KnownTag imageTag(std::uint16_t number) {
    return knownTag(DirectoryKind::Main, number);
}
[[nodiscard]] consteval KnownTag exifTag(std::uint16_t number) {
    return knownTag(DirectoryKind::Exif, number);
}
[[nodiscard]] consteval KnownTag gpsTag(std::uint16_t number) {
    return knownTag(DirectoryKind::Gps, number);
}

}  // namespace corvinex::inspect
