#include "inspect/finding_rules.h"

namespace corvinex::inspect {

namespace {

using enum Severity;

// clang-format off
constexpr std::array<RuleFact, ruleCount> rules{{
    // The file and its container.
    {Rule::FileUnreadable,        Error,   "fileUnreadable",
     "The file cannot be read."},
    {Rule::HeaderTruncated,       Error,   "headerTruncated",
     "The file ends inside its header, after {1} bytes."},
    {Rule::BigTiffHeader,         Error,   "bigTiffHeader",
     "The BigTIFF header tells an offset size of {1} (must be 8) and a reserved {2} (must be 0)."},
    {Rule::JpegMarkerExpected,    Error,   "jpegMarkerExpected",
     "No JPEG marker at position {1}."},
    {Rule::JpegSegmentPastEnd,    Error,   "jpegSegmentPastEnd",
     "The JPEG segment {1} at position {2}, {3} bytes, ends past the end of the file."},
    {Rule::JpegNoScan,            Warning, "jpegNoScan",
     "The JPEG ends before any image data."},
    {Rule::JpegNoEnd,             Error,   "jpegNoEnd",
     "The JPEG is cut off: its end marker is missing."},
    {Rule::ExifBlockHeader,       Error,   "exifBlockHeader",
     "The EXIF block does not begin with a TIFF header."},
    {Rule::ExifBlockRepeated,     Warning, "exifBlockRepeated",
     "Another EXIF block at position {1} is not read."},
    // Directories.
    {Rule::BadDirectoryOffset,    Error,   "badDirectoryOffset",
     "The directory offset {1} points outside the file's data."},
    {Rule::PointerZero,           Warning, "pointerZero",
     "{tag} points nowhere (offset 0)."},
    {Rule::PointerType,           Error,   "pointerType",
     "{tag} is no offset: type {1}."},
    {Rule::ChainComesBack,        Error,   "chainComesBack",
     "The offset {1} leads back to directory {2}."},
    {Rule::DirectoryShared,       Warning, "directoryShared",
     "The directory at {1} is also directory {2}."},
    {Rule::DirectoryEmpty,        Error,   "directoryEmpty",
     "Directory {dir} has no entries."},
    {Rule::SubdirectoryEmpty,     Note,    "subdirectoryEmpty",
     "Directory {dir} has no entries."},
    {Rule::DirectoryTruncated,    Error,   "directoryTruncated",
     "Directory {dir} has {2} of its {1} entries before the data ends."},
    {Rule::DirectoryOverlap,      Error,   "directoryOverlap",
     "Directory {dir}, bytes {1} to {2}, overlaps another directory."},
    {Rule::LimitReached,          Warning, "limitReached",
     "Not all of directory {dir} was checked: the limit on {1} was reached."},
    // Entries.
    {Rule::UnknownFieldType,      Error,   "unknownFieldType",
     "{tag} has the unknown field type {1}."},
    {Rule::BlankEntry,            Note,    "blankEntry",
     "{1} entries are blank."},
    {Rule::BigTypeInClassic,      Warning, "bigTypeInClassic",
     "{tag} has the BigTIFF type {1} in a classic file."},
    {Rule::ValuePastEnd,          Error,   "valuePastEnd",
     "The value of {tag}, {2} bytes at {1}, ends past the end of the file."},
    {Rule::OutsideExifBlock,      Warning, "outsideExifBlock",
     "The bytes {1} to {2} of {tag} lie outside the EXIF block."},
    {Rule::EntriesOutOfOrder,     Warning, "entriesOutOfOrder",
     "{tag} comes after tag {1}: entries are not sorted."},
    {Rule::ExifEntriesOutOfOrder, Note,    "exifEntriesOutOfOrder",
     "{tag} comes after tag {1}: entries are not sorted."},
    {Rule::DuplicateTag,          Warning, "duplicateTag",
     "{tag} stands {1} times in directory {dir}."},
    {Rule::ZeroCount,             Note,    "zeroCount",
     "{tag} has no value."},
    {Rule::AsciiNotTerminated,    Note,    "asciiNotTerminated",
     "The text of {tag} does not end in NUL."},
    {Rule::NotAligned,            Note,    "notAligned",
     "{1} offsets are odd, the first is {2}."},
    {Rule::ValueOverStructure,    Warning, "valueOverStructure",
     "The value of {tag}, bytes {1} to {2}, lies over a directory or the header."},
    {Rule::DataOverStructure,     Error,   "dataOverStructure",
     "Image data, bytes {1} to {2}, lie over a directory or the header."},
    {Rule::RangesOverlap,         Warning, "rangesOverlap",
     "Bytes {1} to {2} of {tag} overlap those of tag {3} in directory {4}."},
    {Rule::RangeShared,           Note,    "rangeShared",
     "{1} values or blocks share their bytes with others, the first at {2}."},
}};
// clang-format on

constexpr bool rowsFollowTheRules() {
    for (std::size_t row = 0; row < rules.size(); ++row) {
        if (static_cast<std::size_t>(rules.at(row).rule) != row) {
            return false;
        }
    }
    return true;
}
static_assert(rowsFollowTheRules());

}  // namespace

const std::array<RuleFact, ruleCount>& findingRules() noexcept {
    return rules;
}

std::string_view severityName(Severity severity) noexcept {
    static constexpr std::array<std::string_view, 3> names{"note", "warning", "error"};
    return names.at(static_cast<std::size_t>(severity));
}

}  // namespace corvinex::inspect
