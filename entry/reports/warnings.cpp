#include "entry/reports/warnings.h"

#include "entry/reports/fatal_errors.h"

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
    return Message("quorra:corvinex:numberOfDirectoryEntriesReadError", {directoryPosition});
}

Message numDirectoryEntriesIsZero(std::uint64_t directoryPosition) {
    return Message("quorra:corvinex:numDirectoryEntriesIsZero", {directoryPosition});
}

Message jpegApp1MaximumLengthExceeded(std::uint64_t entryCount) {
    return Message("quorra:corvinex:jpegApp1MaximumLengthExceeded", {entryCount});
}

Message badNextIfdPointerSeek() {
    return Message("quorra:corvinex:badNextIfdPointerSeek");
}

Message nextIfdPointerOutOfRange(std::uint64_t target) {
    return Message("quorra:corvinex:nextIfdPointerOutOfRange", {target});
}

Message nextIfdOffsetReadError(std::uint64_t fieldPosition) {
    return Message("quorra:corvinex:nextIfdOffsetReadError", {fieldPosition});
}

Message zeroComponentCount(std::string_view tagName) {
    return Message("quorra:corvinex:zeroComponentCount", {text(tagName)});
}

Message unrecognizedTagFormatId(std::uint16_t type) {
    return Message("quorra:corvinex:unrecognizedTagFormatId", {number(type)});
}

Message noTypeFormatId(std::string_view tagName) {
    return Message("quorra:corvinex:noTypeFormatId", {text(tagName)});
}

Message unrecognizedTagId(std::uint16_t tag) {
    return Message("quorra:corvinex:unrecognizedTagId", {number(tag)});
}

Message unrecognizedIfd(std::uint16_t tag) {
    return Message("quorra:corvinex:unrecognizedIfd", {number(tag)});
}

Message badTagDataOffsetSeek(std::uint16_t tag) {
    return Message("quorra:corvinex:badTagDataOffsetSeek", {number(tag)});
}

Message tagDataPastEOF(std::uint16_t tag, std::uint64_t byteCount) {
    return Message("quorra:corvinex:tagDataPastEOF", {number(tag), byteCount});
}

Message unableToReadTiffTag(std::string_view nameOrNumber, std::uint64_t position) {
    return Message("quorra:corvinex:unableToReadTiffTag", {text(nameOrNumber), position});
}

Message badTagValueDivisionByZero(std::string_view tagName) {
    return Message("quorra:corvinex:badTagValueDivisionByZero", {text(tagName)});
}

Message expectedTagDataFormat(std::string_view tagName, std::string_view allowedType,
                              std::string_view actualType) {
    return Message("quorra:corvinex:expectedTagDataFormat",
                   {text(tagName), text(allowedType), text(actualType)});
}

Message expectedTagDataFormatMultiple(std::string_view tagName, std::string_view actualType,
                                      std::string_view allowedTypes) {
    return Message("quorra:corvinex:expectedTagDataFormatMultiple",
                   {text(tagName), text(actualType), text(allowedTypes)});
}

Message badSubIfdSeek(std::uint64_t position) {
    return Message("quorra:corvinex:badSubIfdSeek", {position});
}

Message illegallyNestedIFD(std::uint16_t tag, std::string_view enclosingDirectory) {
    return Message("quorra:corvinex:illegallyNestedIFD", {number(tag), text(enclosingDirectory)});
}

}  // namespace warnings
}  // namespace corvinex
