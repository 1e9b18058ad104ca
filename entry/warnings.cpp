#include "entry/warnings.h"

#include "entry/fatal_errors.h"

namespace corvinex {

void warn(const resource_core::BaseMsgID& message) {
    zxWarningMsgId(message);
}

namespace warnings {

namespace {

std::u16string text(std::string_view ascii) {
    return asciiToUtf16(ascii);
}

std::uint64_t number(std::uint16_t value) {
    return value;
}

}  // namespace

Message numberOfDirectoryEntriesReadError(std::uint64_t directoryPosition) {
    return Message("quorra:corvinex:numberOfDirectoryEntriesReadError",
                   makeArguments(directoryPosition));
}

Message numDirectoryEntriesIsZero(std::uint64_t directoryPosition) {
    return Message("quorra:corvinex:numDirectoryEntriesIsZero", makeArguments(directoryPosition));
}

Message jpegApp1MaximumLengthExceeded(std::uint64_t entryCount) {
    return Message("quorra:corvinex:jpegApp1MaximumLengthExceeded", makeArguments(entryCount));
}

Message badNextIfdPointerSeek() {
    return Message("quorra:corvinex:badNextIfdPointerSeek");
}

Message nextIfdPointerOutOfRange(std::uint64_t target) {
    return Message("quorra:corvinex:nextIfdPointerOutOfRange", makeArguments(target));
}

Message nextIfdOffsetReadError(std::uint64_t fieldPosition) {
    return Message("quorra:corvinex:nextIfdOffsetReadError", makeArguments(fieldPosition));
}

Message zeroComponentCount(std::string_view tagName) {
    return Message("quorra:corvinex:zeroComponentCount", makeArguments(text(tagName)));
}

Message unrecognizedTagFormatId(std::uint16_t type) {
    return Message("quorra:corvinex:unrecognizedTagFormatId", makeArguments(number(type)));
}

Message noTypeFormatId(std::string_view tagName) {
    return Message("quorra:corvinex:noTypeFormatId", makeArguments(text(tagName)));
}

Message unrecognizedTagId(std::uint16_t tag) {
    return Message("quorra:corvinex:unrecognizedTagId", makeArguments(number(tag)));
}

Message unrecognizedIfd(std::uint16_t tag) {
    return Message("quorra:corvinex:unrecognizedIfd", makeArguments(number(tag)));
}

Message badTagDataOffsetSeek(std::uint16_t tag) {
    return Message("quorra:corvinex:badTagDataOffsetSeek", makeArguments(number(tag)));
}

Message tagDataPastEOF(std::uint16_t tag, std::uint64_t byteCount) {
    return Message("quorra:corvinex:tagDataPastEOF", makeArguments(number(tag), byteCount));
}

Message unableToReadTiffTag(std::string_view nameOrNumber, std::uint64_t position) {
    return Message("quorra:corvinex:unableToReadTiffTag",
                   makeArguments(text(nameOrNumber), position));
}

Message badTagValueDivisionByZero(std::string_view tagName) {
    return Message("quorra:corvinex:badTagValueDivisionByZero", makeArguments(text(tagName)));
}

Message expectedTagDataFormat(std::string_view tagName, std::string_view allowedType,
                              std::string_view actualType) {
    return Message("quorra:corvinex:expectedTagDataFormat",
                   makeArguments(text(tagName), text(allowedType), text(actualType)));
}

Message expectedTagDataFormatMultiple(std::string_view tagName, std::string_view actualType,
                                      std::string_view allowedTypes) {
    return Message("quorra:corvinex:expectedTagDataFormatMultiple",
                   makeArguments(text(tagName), text(actualType), text(allowedTypes)));
}

Message badSubIfdSeek(std::uint64_t position) {
    return Message("quorra:corvinex:badSubIfdSeek", makeArguments(position));
}

Message illegallyNestedIFD(std::uint16_t tag, std::string_view enclosingDirectory) {
    return Message("quorra:corvinex:illegallyNestedIFD",
                   makeArguments(number(tag), text(enclosingDirectory)));
}

}  // namespace warnings
}  // namespace corvinex
