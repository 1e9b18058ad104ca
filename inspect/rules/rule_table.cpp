#include "inspect/rules/rule_table.h"

namespace corvinex::inspect {

namespace {

using enum Severity;

// clang-format off
constexpr std::array<RuleFact, ruleCount> rules{{
    // The file and its container.
    {Rule::FileUnreadable, Error, Scope::File, "fileUnreadable", "practice",
     "The file cannot be read."},
    {Rule::HeaderTruncated, Error, Scope::File, "headerTruncated", "TIFF 6 s2",
     "The file ends inside its header, after {1} bytes."},
    {Rule::BigTiffHeader, Error, Scope::File, "bigTiffHeader", "BigTIFF",
     "The BigTIFF header tells an offset size of {1} (must be 8) and a reserved {2} (must be 0)."},
    {Rule::JpegMarkerExpected, Error, Scope::File, "jpegMarkerExpected", "T.81 B.1",
     "No JPEG marker at position {1}."},
    {Rule::JpegSegmentPastEnd, Error, Scope::File, "jpegSegmentPastEnd", "T.81",
     "The JPEG segment {1} at position {2}, {3} bytes, ends past the end of the file."},
    {Rule::JpegNoScan, Warning, Scope::File, "jpegNoScan", "T.81",
     "The JPEG ends before any image data."},
    {Rule::JpegNoEnd, Error, Scope::File, "jpegNoEnd", "T.81",
     "The JPEG is cut off: its end marker is missing."},
    {Rule::ExifBlockHeader, Error, Scope::File, "exifBlockHeader", "EXIF 4.5",
     "The EXIF block does not begin with a TIFF header."},
    {Rule::ExifBlockRepeated, Warning, Scope::File, "exifBlockRepeated", "EXIF",
     "Another EXIF block at position {1} is not read."},
    // Directories.
    {Rule::BadDirectoryOffset, Error, Scope::Tag, "badDirectoryOffset", "TIFF 6 s2",
     "The directory offset {1} points outside the file's data."},
    {Rule::PointerZero, Warning, Scope::Tag, "pointerZero", "TIFF 6, EXIF",
     "{tag} points nowhere (offset 0)."},
    {Rule::PointerType, Error, Scope::Tag, "pointerType", "TIFF 6, EXIF",
     "{tag} is no offset: type {1}."},
    {Rule::ChainComesBack, Error, Scope::Tag, "chainComesBack", "TIFF 6 s2",
     "The offset {1} leads back to directory {2}."},
    {Rule::DirectoryShared, Warning, Scope::Tag, "directoryShared", "TIFF 6 s2",
     "The directory at {1} is also directory {2}."},
    {Rule::DirectoryEmpty, Error, Scope::Directory, "directoryEmpty", "TIFF 6 s2",
     "Directory {dir} has no entries."},
    {Rule::SubdirectoryEmpty, Note, Scope::Directory, "subdirectoryEmpty", "practice",
     "Directory {dir} has no entries."},
    {Rule::DirectoryTruncated, Error, Scope::Directory, "directoryTruncated", "TIFF 6",
     "Directory {dir} has {2} of its {1} entries before the data ends."},
    {Rule::DirectoryOverlap, Error, Scope::Directory, "directoryOverlap", "TIFF 6 s2",
     "Directory {dir}, bytes {1} to {2}, overlaps another directory."},
    {Rule::LimitReached, Warning, Scope::Directory, "limitReached", "practice",
     "Not all of directory {dir} was checked: the limit on {1} was reached."},
    // Entries.
    {Rule::UnknownFieldType, Error, Scope::Tag, "unknownFieldType", "TIFF 6 s2",
     "{tag} has the unknown field type {1}."},
    {Rule::BlankEntry, Note, Scope::Directory, "blankEntry", "practice",
     "{1} entries are blank."},
    {Rule::BigTypeInClassic, Warning, Scope::Tag, "bigTypeInClassic", "BigTIFF",
     "{tag} has the BigTIFF type {1} in a classic file."},
    {Rule::ValuePastEnd, Error, Scope::Tag, "valuePastEnd", "TIFF 6",
     "The value of {tag}, {2} bytes at {1}, ends past the end of the file."},
    {Rule::OutsideExifBlock, Warning, Scope::Tag, "outsideExifBlock", "EXIF 4.5",
     "The bytes {1} to {2} of {tag} lie outside the EXIF block."},
    {Rule::EntriesOutOfOrder, Warning, Scope::Tag, "entriesOutOfOrder", "TIFF 6 s2",
     "{tag} comes after tag {1}: entries are not sorted."},
    {Rule::ExifEntriesOutOfOrder, Note, Scope::Tag, "exifEntriesOutOfOrder", "TIFF 6 s2",
     "{tag} comes after tag {1}: entries are not sorted."},
    {Rule::DuplicateTag, Warning, Scope::Tag, "duplicateTag", "TIFF 6 s2",
     "{tag} stands {1} times in directory {dir}."},
    {Rule::ZeroCount, Note, Scope::Tag, "zeroCount", "practice",
     "{tag} has no value."},
    {Rule::AsciiNotTerminated, Note, Scope::Tag, "asciiNotTerminated", "TIFF 6 s2",
     "The text of {tag} does not end in NUL."},
    {Rule::NotAligned, Note, Scope::Directory, "notAligned", "TIFF 6 s2",
     "{1} offsets are odd, the first is {2}."},
    {Rule::ValueOverStructure, Warning, Scope::Tag, "valueOverStructure", "TIFF 6 s2",
     "The value of {tag}, bytes {1} to {2}, lies over a directory or the header."},
    {Rule::DataOverStructure, Error, Scope::Tag, "dataOverStructure", "TIFF 6",
     "Image data, bytes {1} to {2}, lie over a directory or the header."},
    {Rule::RangesOverlap, Warning, Scope::Tag, "rangesOverlap", "TIFF 6 s2",
     "Bytes {1} to {2} of {tag} overlap those of tag {3} in directory {4}."},
    {Rule::RangeShared, Note, Scope::Directory, "rangeShared", "TIFF 6 s2",
     "{1} values or blocks share their bytes with others, the first at {2}."},
    // Types and counts.
    {Rule::TagType, Warning, Scope::Tag, "tagType", "TIFF 6, EXIF",
     "{tag} has type {1}, which is no type for it."},
    {Rule::TagTypeUnusual, Note, Scope::Tag, "tagTypeUnusual", "TIFF 6, EXIF",
     "{tag} has the unusual type {1}."},
    {Rule::TagCount, Warning, Scope::Tag, "tagCount", "TIFF 6, EXIF",
     "{tag} has {1} values instead of {2}."},
    // Image data.
    {Rule::NoImageData, Warning, Scope::Directory, "noImageData", "TIFF 6 s3",
     "Directory {dir} holds no image."},
    {Rule::StripsAndTiles, Warning, Scope::Directory, "stripsAndTiles", "TIFF 6 s15",
     "Directory {dir} describes both strips and tiles."},
    {Rule::RequiredTagMissing, Error, Scope::Tag, "requiredTagMissing", "TIFF 6 s3-8, 15",
     "{tag} is missing: the image cannot be laid out."},
    {Rule::ExpectedTagMissing, Warning, Scope::Tag, "expectedTagMissing", "TIFF 6 s3-8",
     "{tag} is missing: readers must guess."},
    {Rule::ZeroGeometry, Error, Scope::Tag, "zeroGeometry", "TIFF 6",
     "{tag} is 0."},
    {Rule::DataTableTooShort, Error, Scope::Tag, "dataTableTooShort", "TIFF 6",
     "{tag} has {1} of the {2} values that the image needs."},
    {Rule::DataTableTooLong, Warning, Scope::Tag, "dataTableTooLong", "TIFF 6",
     "{tag} has {1} values, the image needs {2}."},
    {Rule::DataPastEnd, Error, Scope::Tag, "dataPastEnd", "TIFF 6",
     "Image data block {1}, {3} bytes at {2}, ends past the end of the file."},
    {Rule::ZeroByteCount, Warning, Scope::Tag, "zeroByteCount", "practice",
     "Image data block {1} at {2} has no bytes."},
    {Rule::SparseData, Note, Scope::Tag, "sparseData", "GDAL",
     "{1} image data blocks are left out."},
    {Rule::DataTooShort, Error, Scope::Tag, "dataTooShort", "TIFF 6",
     "Uncompressed block {1} has {2} of {3} bytes."},
    {Rule::DataLonger, Note, Scope::Tag, "dataLonger", "TIFF 6",
     "Uncompressed block {1} has {2} bytes, more than the {3} of a whole one."},
    {Rule::JpegStreamNoStart, Warning, Scope::Tag, "jpegStreamNoStart", "TIFF 6 s22, EXIF",
     "The JPEG stream at {1} does not begin like one."},
    {Rule::OldStyleJpeg, Note, Scope::Tag, "oldStyleJpeg", "TechNote 2",
     "Old-style JPEG compression: few readers get it right."},
    // Fields.
    {Rule::UnknownCode, Warning, Scope::Tag, "unknownCode", "TIFF 6, registries",
     "{tag} has the unknown value {1}."},
    {Rule::UnlistedValue, Note, Scope::Tag, "unlistedValue", "TIFF 6, EXIF",
     "{tag} has the value {1}, which has no meaning."},
    {Rule::BitsPerSampleCount, Warning, Scope::Tag, "bitsPerSampleCount", "TIFF 6 s3-8",
     "{tag} has {1} values for {2} samples."},
    {Rule::BitsForCompression, Error, Scope::Tag, "bitsForCompression", "TIFF 6 s10, 11",
     "Compression {2} cannot hold {1} bits a sample."},
    {Rule::SamplesTooFew, Error, Scope::Tag, "samplesTooFew", "TIFF 6",
     "{1} samples a pixel, the colour model needs {2}."},
    {Rule::ExtraSamplesCount, Note, Scope::Tag, "extraSamplesCount", "TIFF 6 p31",
     "{1} samples a pixel, but {2} colours and {3} extra samples are told."},
    {Rule::ColorMap, Error, Scope::Tag, "colorMap", "TIFF 6 s5",
     "The colour map has {1} of {2} values."},
    {Rule::ResolutionUnknown, Note, Scope::Directory, "resolutionUnknown", "TIFF 6, EXIF",
     "The resolution is not told (tags {list})."},
    {Rule::ZeroDenominator, Note, Scope::Tag, "zeroDenominator", "practice",
     "{tag} has a denominator of 0."},
    {Rule::DateForm, Warning, Scope::Tag, "dateForm", "TIFF 6, EXIF",
     "{tag} is no date of the standard form: {1}"},
    {Rule::DateImpossible, Warning, Scope::Tag, "dateImpossible", "EXIF",
     "{tag} is no possible date: {1}"},
    {Rule::ExifRequiredMissing, Note, Scope::Directory, "exifRequiredMissing", "EXIF 2.32",
     "Tags that the standard asks for are missing: {list}."},
    {Rule::ExifVersionForm, Warning, Scope::Tag, "exifVersionForm", "EXIF",
     "{tag} is no version: {1}"},
    {Rule::DimensionsDisagree, Note, Scope::Tag, "dimensionsDisagree", "EXIF",
     "EXIF tells {1} x {2} pixels, the JPEG has {3} x {4}."},
    {Rule::GpsPartnerMissing, Warning, Scope::Tag, "gpsPartnerMissing", "EXIF",
     "{tag} is missing while tag {1} is there."},
    {Rule::GpsValue, Warning, Scope::Tag, "gpsValue", "EXIF",
     "{tag} has an impossible value."},
    {Rule::GeoKeyDirectory, Warning, Scope::Tag, "geoKeyDirectory", "GeoTIFF",
     "The GeoTIFF key {1} lies outside its data."},
    {Rule::IccProfile, Warning, Scope::Tag, "iccProfile", "ICC.1",
     "{tag} holds {1} bytes of a profile of {2}, or no profile."},
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

std::string_view scopeName(Scope scope) noexcept {
    static constexpr std::array<std::string_view, 3> names{"file", "directory", "tag"};
    return names.at(static_cast<std::size_t>(scope));
}

}  // namespace corvinex::inspect
