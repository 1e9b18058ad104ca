#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "vocabulary/type_groups.h"
#include "vocabulary/word_tables.h"

// What is known of each tag, as constant data, one row a tag. Whatever else the module knows of a
// tag by its number is derived from its row by the compiler. Nothing here depends on the rest of
// the module.

namespace corvinex {

/// How the default of a baseline tag that a main directory lacks is made.
enum class DefaultKind : std::uint8_t {
    None,           ///< the tag is not a baseline tag, or is never made up for
    NoValue,        ///< the standard has no default: the tag is there without a value
    Value,          ///< the value of the row
    SampleCount,    ///< the number of values of SamplesPerPixel
    BitsPerSample,  ///< one value for each of BitsPerSample
};

struct TagDefault {
    DefaultKind kind = DefaultKind::None;
    double value = 0;
};

/// What the value of a tag is made into in main and EXIF directories: a word of the row's table, or
/// something special. Each has a member function of TiffTag, in this order.
enum class Decoder : std::uint8_t {
    None,
    Compression,
    PhotometricInterpretation,
    ImageDescription,
    PlanarConfiguration,
    GrayResponseUnit,
    ResolutionUnit,
    Predictor,
    InkSet,
    JPEGProc,
    YCbCrPositioning,
    XMP,
    ICCProfile,
    ExposureProgram,
    MeteringMode,
    LightSource,
    ColorSpace,
    SensingMethod,
    FileSource,
    SceneType,
    CustomRendered,
    ExposureMode,
    WhiteBalance,
    SceneCaptureType,
    GainControl,
    Contrast,
    Saturation,
    Sharpness,
    SubjectDistanceRange,
    DepthFar,
};
inline constexpr std::size_t decoderCount = static_cast<std::size_t>(Decoder::DepthFar) + 1;

/// The kind of the directories that a tag points to.
enum class Pointer : std::uint8_t { None, ToMain, ToExif, ToGps, ToInteroperability };

// The members stand in the order of the columns.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding)
struct TagRow {
    std::uint16_t number = 0;
    /// Serves as a field name of the result, so its spelling is fixed ("Width" for 256,
    /// "ICCProfileOffset" for 34675).
    const char* name = nullptr;  // null for a tag that has rules and no name
    /// The types that an entry should have.
    TypeGroupId types = TypeGroupId::Any;
    /// The number of components that an entry must have, 0 for any.
    std::uint8_t requiredCount = 0;
    /// The tag's place among the baseline fields that the result of a TIFF opens with, from 1 on.
    std::uint8_t baselinePlace = 0;
    /// What stands in for the tag where a main directory has none.
    TagDefault standsIn{};
    Pointer pointer = Pointer::None;
    Decoder decoder = Decoder::None;
    words::Table words{};
    /// The tag's bit among the tags with a default, which are counted by ascending number. Set by
    /// the compiler.
    std::uint32_t defaultBit = 0;
};

/// TIFF, TIFF extension, DNG, GeoTIFF, private and EXIF tags, which serve main and EXIF directories
/// alike, by ascending number: 321 rows, 347 listed twice, 519 without a name.
std::span<const TagRow> primaryTagTable() noexcept;
/// GPS tags 0 to 30.
std::span<const TagRow> gpsTagTable() noexcept;
/// Interoperability tags.
std::span<const TagRow> interopTagTable() noexcept;

/// The row of a tag of main and EXIF directories, or one without a name and without rules. All but
/// the name holds in directories of every kind.
[[nodiscard]] const TagRow& findTag(std::uint16_t number) noexcept;
/// The name of a tag of GPS and of interoperability directories, or null. It lives as long as the
/// module.
[[nodiscard]] const char* findGpsTagName(std::uint16_t number) noexcept;
[[nodiscard]] const char* findInteropTagName(std::uint16_t number) noexcept;

inline constexpr std::size_t defaultTagCount = 22;
/// The tags with a default, by ascending number.
[[nodiscard]] std::span<const TagRow* const, defaultTagCount> getDefaultTagRows() noexcept;

inline constexpr std::size_t baselineFieldCount = 23;
/// The names of the baseline fields, in their order.
[[nodiscard]] std::span<const char* const, baselineFieldCount> getBaselineFieldNames() noexcept;

}  // namespace corvinex
