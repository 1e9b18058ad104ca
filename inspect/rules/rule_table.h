#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "corvinex/finding.h"

namespace corvinex::inspect {

/// What can be wrong with a file, in the order in which findings are listed.
enum class Rule : std::uint8_t {
    FileUnreadable,
    HeaderTruncated,
    BigTiffHeader,
    JpegMarkerExpected,
    JpegSegmentPastEnd,
    JpegNoScan,
    JpegNoEnd,
    ExifBlockHeader,
    ExifBlockRepeated,
    BadDirectoryOffset,
    PointerZero,
    PointerType,
    ChainComesBack,
    DirectoryShared,
    DirectoryEmpty,
    SubdirectoryEmpty,
    DirectoryTruncated,
    DirectoryOverlap,
    LimitReached,
    UnknownFieldType,
    BlankEntry,
    BigTypeInClassic,
    ValuePastEnd,
    OutsideExifBlock,
    EntriesOutOfOrder,
    ExifEntriesOutOfOrder,
    DuplicateTag,
    ZeroCount,
    AsciiNotTerminated,
    NotAligned,
    ValueOverStructure,
    DataOverStructure,
    RangesOverlap,
    RangeShared,
    TagType,
    TagTypeUnusual,
    TagCount,
    NoImageData,
    StripsAndTiles,
    RequiredTagMissing,
    ExpectedTagMissing,
    ZeroGeometry,
    DataTableTooShort,
    DataTableTooLong,
    DataPastEnd,
    ZeroByteCount,
    SparseData,
    DataTooShort,
    DataLonger,
    JpegStreamNoStart,
    OldStyleJpeg,
    UnknownCode,
    UnlistedValue,
    BitsPerSampleCount,
    BitsForCompression,
    SamplesTooFew,
    ExtraSamplesCount,
    ColorMap,
    ResolutionUnknown,
    ZeroDenominator,
    DateForm,
    DateImpossible,
    ExifRequiredMissing,
    ExifVersionForm,
    DimensionsDisagree,
    GpsPartnerMissing,
    GpsValue,
    GeoKeyDirectory,
    IccProfile,
};

/// What a finding belongs to: the whole file, a directory, or a tag. Findings of a tag are told
/// with its number, but for those about the offset of the next or the first directory.
enum class Scope : std::uint8_t { File, Directory, Tag };

/// What is known of a rule. In a text {1}, {2} ... are the arguments, {list} all of them, {tag} the
/// tag's name and number, {dir} the directory's path.
struct RuleFact {
    Rule rule;
    Severity severity;
    Scope scope;
    std::string_view id;
    std::string_view source;  ///< the standard that asks for it, or "practice"
    std::string_view text;
};

inline constexpr std::size_t ruleCount = static_cast<std::size_t>(Rule::IccProfile) + 1;

/// All rules in their order; the row of a rule is its number.
[[nodiscard]] const std::array<RuleFact, ruleCount>& findingRules() noexcept;

/// "file", "directory" or "tag".
[[nodiscard]] std::string_view scopeName(Scope scope) noexcept;

}  // namespace corvinex::inspect
