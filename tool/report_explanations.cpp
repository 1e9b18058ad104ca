#include <array>

#include "tool/explanation.h"

namespace tool {
namespace {

using enum ReportGroup;

// What people can do is the same wherever bytes are missing, and where a writer departs from the
// standard.
constexpr std::string_view copyAnew = "Copy the file anew: it is cut off or damaged.";
constexpr std::string_view rewrite =
    "Have the file written anew by other software when the value matters.";
constexpr std::string_view tellUs = "Tell the maintainers how it came about.";

// clang-format off
constexpr auto reports = std::to_array<ReportExplanation>({
    // Errors.
    {Error, "statFailure", "none",
     "the file does not exist, its name is empty, or the first argument is no text", "", "",
     "Check the name."},
    {Error, "unsupportedFileFormat", "none",
     "neither JPEG, classic TIFF nor BigTIFF; also a file that cannot be opened, or a folder", "", "",
     "Check that the file may be read and is an image of one of these formats."},
    {Error, "tiffHeaderReadFailure", "none",
     "the header's bytes cannot be read", "", "",
     copyAnew},
    {Error, "badEndianness", "first byte, second byte, file name",
     R"(the byte-order mark is neither "II" nor "MM")", "", "",
     "In a JPEG pass the position of its EXIF header; otherwise the header is damaged."},
    {Error, "badTiffIfdOffset", "position, file size",
     "the first directory lies beyond the end of the file", "", "",
     copyAnew},
    {Error, "badTiffHeaderIfdOffset", "none",
     "a seek to the first directory, or while skipping directories, failed", "", "",
     "Skip fewer directories, or copy the file anew."},
    {Error, "badIFDread", "\"IFD #1\"",
     "a directory's entries cannot be read in full; the number is always 1", "", "",
     copyAnew},
    {Error, "badTagDataCount", "tag, name, count, required count",
     "one of tags 256, 257, 277, 278, 284, 322, 323 has a count other than 1, in a directory of any kind; the name is that of main directories", "", "",
     "Inspect the file: that shows all other entries."},
    {Error, "unableToReadTagData", "none",
     "the main chain was abandoned after `jpegApp1MaximumLengthExceeded`", "", "",
     "Inspect the file: that shows the entries that it holds."},
    {Error, "strftimeFailure", "none",
     "the modification date cannot be formatted; no ordinary locale makes it so long", "", "",
     "Set the file's date anew, or use another locale."},
    {Error, "unrecognizedTagFormatId", "type",
     "a field type outside the known ones reached conversion or naming; the checks before it make this unreachable in a read", "", "",
     tellUs},
    {Error, "unrecognizedIfdId", "directory kind",
     "a directory kind other than the four; unreachable in a read", "", "",
     tellUs},
    {Error, "argumentOutOfBounds", "none",
     "a numeric conversion failed its range check", "", "",
     "Pass whole numbers that are not negative."},
    {Error, "KORVEL:string:MissingNotSupported", "none",
     "the file name is a missing string", "", "",
     "Pass a name."},
    {Error, "KORVEL:string:MustBeStringScalarOrCharacterVector", "none",
     "a text is asked of a value that has none; the entry checks before it asks", "", "",
     "Pass one name as a text."},

    // Warnings about directories and chains.
    {Chain, "numberOfDirectoryEntriesReadError", "directory position",
     "the count of a directory's entries cannot be read",
     "the chain ends; directories before it are kept", "",
     copyAnew},
    {Chain, "numDirectoryEntriesIsZero", "directory position",
     "a directory has no entries",
     "the chain ends; directories before it are kept", "",
     "Inspect the file: that reads on behind an empty directory."},
    {Chain, "jpegApp1MaximumLengthExceeded", "entry count",
     "entries longer than a JPEG's APP1 segment",
     "the pointer to the directory is dropped; in the main chain the error `unableToReadTagData` follows", "",
     "The count is damaged: restore the metadata from a copy."},
    {Chain, "badNextIfdPointerSeek", "none",
     "a seek to the next directory, or to the offset that leads to it, failed",
     "the chain ends", "",
     copyAnew},
    {Chain, "nextIfdPointerOutOfRange", "target position",
     "the next directory lies at or beyond the end of the file",
     "the chain ends", "",
     copyAnew},
    {Chain, "nextIfdOffsetReadError", "position of the offset field",
     "the offset of the next directory cannot be read",
     "the chain ends", "",
     copyAnew},

    // Warnings about entries.
    {Entry, "unrecognizedTagFormatId", "type",
     "the field type is none of the known ones",
     "entry dropped", "ID, type",
     "Inspect the file: that shows the bytes of the value field."},
    {Entry, "noTypeFormatId", "name",
     "the field type is 0",
     "entry dropped", "ID, name",
     "Nothing needs to be done: such an entry holds nothing."},
    {Entry, "zeroComponentCount", "name",
     "the count is 0",
     "entry kept without a value", "ID, name",
     "Nothing needs to be done."},
    {Entry, "badTagDataOffsetSeek", "tag",
     "a seek to the value failed",
     "entry dropped", "ID, tag",
     copyAnew},
    {Entry, "tagDataPastEOF", "tag, byte count",
     "the value would end past the end of the file",
     "entry dropped", "ID, tag, byte count",
     copyAnew},
    {Entry, "unableToReadTiffTag", "name, or the tag's number for an unknown tag; position",
     "short read of the value",
     "entry dropped", "ID, first argument",
     copyAnew},
    {Entry, "expectedTagDataFormat", "name, allowed type, actual type",
     "the field type is not the one that the tag should have",
     "the value is used as it is", "group word, name, actual type",
     rewrite},
    {Entry, "expectedTagDataFormatMultiple", "name, actual type, allowed types",
     "the field type is none of those that the tag may have",
     "the value is used as it is", "group word, name, actual type",
     rewrite},
    {Entry, "unrecognizedIfd", "tag",
     "a directory-pointer type on a tag that is no pointer",
     "entry dropped", "ID, tag",
     "Inspect the file: that shows the value."},
    {Entry, "badTagValueDivisionByZero", "name",
     "a zero denominator",
     "the value is NaN there; entry kept", "ID, name",
     "Inspect the file: that shows both numbers of each fraction."},
    {Entry, "unrecognizedTagId", "tag",
     "a default was asked for a tag that has none; unreachable in a read",
     "the tag is left out", "",
     tellUs},

    // Warnings about pointers to directories.
    {Pointer, "badSubIfdSeek", "target position",
     "a seek to the directory failed",
     "entry dropped", "ID, position",
     copyAnew},
    {Pointer, "illegallyNestedIFD", "tag, directory word",
     "no pointer may stand there, or it leads into a directory that is being read, too deep, or to too much data",
     "entry dropped", "ID, tag, word",
     "Inspect the file: that reads each directory once, whichever way leads to it."},
});
// clang-format on

}  // namespace

std::span<const ReportExplanation> reportExplanations() noexcept {
    return reports;
}

}  // namespace tool
