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
};

/// ID, severity and text of a rule. In a text {1}, {2} ... are the arguments, {tag} the tag's name
/// and number, {dir} the directory's path.
struct RuleFact {
    Rule rule;
    Severity severity;
    std::string_view id;
    std::string_view text;
};

inline constexpr std::size_t ruleCount = static_cast<std::size_t>(Rule::RangeShared) + 1;

[[nodiscard]] const std::array<RuleFact, ruleCount>& findingRules() noexcept;

}  // namespace corvinex::inspect
