#pragma once

#include <cstdint>
#include <string_view>

#include "host/interface/message.h"

// The messages of every warning, one function an identifier, arguments in the order of the message.
// Positions are absolute stream positions in bytes; names are dictionary names, empty for a tag
// without one.

namespace corvinex {

/// Issues a warning; the read goes on.
void warn(const resource_core::BaseMsgID& message);

namespace warnings {

using Message = resource_core::BaseMsgID;

// Directories and chains.
Message numberOfDirectoryEntriesReadError(std::uint64_t directoryPosition);
Message numDirectoryEntriesIsZero(std::uint64_t directoryPosition);
Message jpegApp1MaximumLengthExceeded(std::uint64_t entryCount);
Message badNextIfdPointerSeek();
Message nextIfdPointerOutOfRange(std::uint64_t target);
Message nextIfdOffsetReadError(std::uint64_t fieldPosition);

// Entries.
Message zeroComponentCount(std::string_view tagName);
Message unrecognizedTagFormatId(std::uint16_t type);
Message noTypeFormatId(std::string_view tagName);
Message unrecognizedTagId(std::uint16_t tag);
Message unrecognizedIfd(std::uint16_t tag);
Message badTagDataOffsetSeek(std::uint16_t tag);
Message tagDataPastEOF(std::uint16_t tag, std::uint64_t byteCount);
Message unableToReadTiffTag(std::string_view nameOrNumber, std::uint64_t position);
Message badTagValueDivisionByZero(std::string_view tagName);
Message expectedTagDataFormat(std::string_view tagName, std::string_view allowedType,
                              std::string_view actualType);
Message expectedTagDataFormatMultiple(std::string_view tagName, std::string_view actualType,
                                      std::string_view allowedTypes);

// Pointers to further directories.
Message badSubIfdSeek(std::uint64_t position);
Message illegallyNestedIFD(std::uint16_t tag, std::string_view enclosingDirectory);

}  // namespace warnings
}  // namespace corvinex
