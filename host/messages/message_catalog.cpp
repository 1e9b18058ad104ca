#include "host/messages/message_catalog.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "host/messages/message_text.h"

namespace host {

namespace {

struct Message {
    std::string_view id;
    std::string_view text;  // for its placeholders see fillPlaceholders
};

constexpr Message catalog[] = {
    // Errors: the call ends without a result.
    {"quorra:corvinex:unsupportedFileFormat",
     "The file is neither a TIFF, a BigTIFF nor a JPEG file, or it cannot be opened"},
    {"quorra:corvinex:statFailure", "The file does not exist"},
    {"quorra:corvinex:tiffHeaderReadFailure",
     "The TIFF header cannot be read in full; the file is too short or unreadable there"},
    {"quorra:corvinex:badEndianness",
     "There is no TIFF header at the header offset: the byte-order mark is {0:byte} {1:byte}, not "
     "0x49 0x49 (little-endian) or 0x4D 0x4D (big-endian), in {2}"},
    {"quorra:corvinex:badTiffIfdOffset",
     "The first directory, at position {0}, lies past the end of the file, which has {1} bytes"},
    {"quorra:corvinex:badTiffHeaderIfdOffset",
     "The position of the first directory, or of one that follows a skipped directory, cannot be "
     "reached"},
    {"quorra:corvinex:unableToReadTagData",
     "The tags of the file cannot be read: the reading of its main directories was given up"},
    {"quorra:corvinex:badIFDread",
     "The entries of a directory cannot be read in full ({0}); the file ends before they do, or is "
     "unreadable there"},
    {"quorra:corvinex:strftimeFailure",
     "The modification time of the file cannot be written as a text"},
    {"quorra:corvinex:badTagDataCount",
     "Tag {1:name} ({0}) has a value count of {2}; it must be {3}"},
    {"quorra:corvinex:unrecognizedIfdId", "The directory kind {0} is not known"},
    {"quorra:corvinex:argumentOutOfBounds",
     "A number does not fit the range of what it is used for"},
    {"KORVEL:string:MustBeStringScalarOrCharacterVector",
     "The file name must be a string scalar or a character vector"},
    {"KORVEL:string:MissingNotSupported", "The file name must not be a missing string"},

    // Warnings that end a chain of directories, or the directory set.
    {"quorra:corvinex:numberOfDirectoryEntriesReadError",
     "The entry count of the directory at position {0} cannot be read; the chain of directories "
     "ends before it"},
    {"quorra:corvinex:numDirectoryEntriesIsZero",
     "The directory at position {0} has no entries; the chain of directories ends before it"},
    {"quorra:corvinex:jpegApp1MaximumLengthExceeded",
     "A directory of {0} entries does not fit in the 64 KiB of a JPEG file's EXIF block; it is not "
     "read"},
    {"quorra:corvinex:badNextIfdPointerSeek",
     "The position of the next directory, or of the offset that leads to it, cannot be reached; "
     "the chain of directories ends there"},
    {"quorra:corvinex:nextIfdPointerOutOfRange",
     "The next directory, at position {0}, lies past the end of the file; the chain of directories "
     "ends before it"},
    {"quorra:corvinex:nextIfdOffsetReadError",
     "The offset of the next directory, at position {0}, cannot be read; the chain of directories "
     "ends there"},

    // Both an error and a warning about one tag.
    {"quorra:corvinex:unrecognizedTagFormatId", "The field type code {0} of a tag is not known"},

    // Warnings about one tag.
    {"quorra:corvinex:zeroComponentCount",
     "Tag {0:name} has a value count of 0; it is kept without a value"},
    {"quorra:corvinex:noTypeFormatId", "Tag {0:name} has the field type code 0; it is left out"},
    {"quorra:corvinex:unrecognizedTagId",
     "Tag {0:tag} is missing and there is no default for it; it is left out"},
    {"quorra:corvinex:unrecognizedIfd",
     "Tag {0:tag} has a directory-pointer type, but it is not a tag that points to directories; it "
     "is left out"},
    {"quorra:corvinex:badTagDataOffsetSeek",
     "The position of the value of tag {0:tag} cannot be reached; the tag is left out"},
    {"quorra:corvinex:tagDataPastEOF",
     "The value of tag {0:tag}, {1} bytes, ends past the end of the file"},
    {"quorra:corvinex:unableToReadTiffTag",
     "The value of tag {0}, at position {1}, cannot be read in full; the tag is left out"},
    {"quorra:corvinex:badTagValueDivisionByZero",
     "Tag {0:name} holds a fraction whose denominator is 0; the value there is NaN"},
    {"quorra:corvinex:expectedTagDataFormat",
     "Tag {0:name} should have the field type {1}, but has {2}; its value is used as it is"},
    {"quorra:corvinex:expectedTagDataFormatMultiple",
     "Tag {0:name} has the field type {1}, but should have one of {2}; its value is used as it is"},
    {"quorra:corvinex:badSubIfdSeek",
     "The directory at position {0}, which a tag points to, cannot be reached; the tag is left "
     "out"},
    {"quorra:corvinex:illegallyNestedIFD",
     "Tag {0:tag} in a directory of the kind {1} points to a directory that is not read: such a "
     "pointer is not allowed there, it leads back into itself or nests too deep, or the file's "
     "pointers lead to too much data; the tag is left out"},
};

}  // namespace

std::string messageText(const Report& report) {
    const auto* const entry =
        std::find_if(std::begin(catalog), std::end(catalog),
                     [&report](const Message& message) { return message.id == report.id; });
    if (entry != std::end(catalog)) {
        return fillPlaceholders(entry->text, report.arguments);
    }
    std::string text = report.id;
    const char* separator = ": ";
    for (const auto& argument : report.arguments) {
        text += separator;
        text += plainText(argument);
        separator = ", ";
    }
    return text;
}

}  // namespace host
