#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/interface/message.h"

// The errors that end a request: one class an identifier, named after it in the namespace of its
// component, each holding its message with the arguments in the order of the constructor.

namespace corvinex {

/// UTF-16 of a text that is plain ASCII (tag names, type names, numbers).
std::u16string asciiToUtf16(std::string_view text);

class FatalError : public foundation::core::except::IUserException, public std::exception {
  public:
    [[nodiscard]] const resource_core::BaseMsgID& message() const noexcept override {
        return message_;
    }
    [[nodiscard]] const char* what() const noexcept override { return message_.id().c_str(); }

  protected:
    explicit FatalError(std::string id,
                        std::vector<resource_core::BaseMsgID::Argument> arguments = {})
        : message_(std::move(id), std::move(arguments)) {}

  private:
    resource_core::BaseMsgID message_;
};

/// Hands the error to the host, which does not return; should it return, throws it.
template <class Error>
[[noreturn]] void raiseFatal(Error error) {
    matrix::detail::do_legacy_zx_error(error);
    throw Error(std::move(error));
}

}  // namespace corvinex

namespace quorra::corvinex {

using ::corvinex::FatalError;

/// Neither JPEG, classic TIFF nor BigTIFF, or not to be opened.
struct unsupportedFileFormat : FatalError {
    unsupportedFileFormat() : FatalError("quorra:corvinex:unsupportedFileFormat") {}
};

/// The file does not exist.
struct statFailure : FatalError {
    statFailure() : FatalError("quorra:corvinex:statFailure") {}
};

/// The header's bytes cannot be read.
struct tiffHeaderReadFailure : FatalError {
    tiffHeaderReadFailure() : FatalError("quorra:corvinex:tiffHeaderReadFailure") {}
};

/// The byte-order mark is neither "II" nor "MM".
struct badEndianness : FatalError {
    badEndianness(std::uint8_t firstByte, std::uint8_t secondByte, std::u16string filename)
        : FatalError("quorra:corvinex:badEndianness",
                     {std::uint64_t{firstByte}, std::uint64_t{secondByte}, std::move(filename)}) {}
};

/// The first directory lies beyond the end of the file. Both in bytes from its start.
struct badTiffIfdOffset : FatalError {
    badTiffIfdOffset(std::uint64_t position, std::uint64_t fileSize)
        : FatalError("quorra:corvinex:badTiffIfdOffset", {position, fileSize}) {}
};

/// A seek to the first directory, or while skipping directories, failed.
struct badTiffHeaderIfdOffset : FatalError {
    badTiffHeaderIfdOffset() : FatalError("quorra:corvinex:badTiffHeaderIfdOffset") {}
};

/// A recoverable error ended the main chain.
struct unableToReadTagData : FatalError {
    unableToReadTagData() : FatalError("quorra:corvinex:unableToReadTagData") {}
};

/// A directory's entries cannot be read in full.
struct badIFDread : FatalError {
    explicit badIFDread(std::u16string directory)
        : FatalError("quorra:corvinex:badIFDread", {std::move(directory)}) {}
};

/// The modification date cannot be formatted.
struct strftimeFailure : FatalError {
    strftimeFailure() : FatalError("quorra:corvinex:strftimeFailure") {}
};

/// A tag with a fixed component count has another.
struct badTagDataCount : FatalError {
    badTagDataCount(std::uint16_t tag, std::string_view name, std::uint64_t found,
                    std::uint64_t required)
        : FatalError("quorra:corvinex:badTagDataCount",
                     {std::uint64_t{tag}, ::corvinex::asciiToUtf16(name), found, required}) {}
};

/// A field type outside the known ones reached value conversion or naming.
struct unrecognizedTagFormatId : FatalError {
    explicit unrecognizedTagFormatId(std::uint16_t type)
        : FatalError("quorra:corvinex:unrecognizedTagFormatId", {std::uint64_t{type}}) {}
};

/// A directory kind other than main, GPS, interoperability and EXIF.
struct unrecognizedIfdId : FatalError {
    explicit unrecognizedIfdId(std::uint32_t kind)
        : FatalError("quorra:corvinex:unrecognizedIfdId", {std::uint64_t{kind}}) {}
};

/// A scalar argument does not fit its target type.
struct argumentOutOfBounds : FatalError {
    argumentOutOfBounds() : FatalError("quorra:corvinex:argumentOutOfBounds") {}
};

}  // namespace quorra::corvinex

namespace KORVEL::string {

/// The file-name argument is not a text scalar or character row.
struct MustBeStringScalarOrCharacterVector : ::corvinex::FatalError {
    MustBeStringScalarOrCharacterVector()
        : FatalError("KORVEL:string:MustBeStringScalarOrCharacterVector") {}
};

/// The file-name argument is a missing text value.
struct MissingNotSupported : ::corvinex::FatalError {
    MissingNotSupported() : FatalError("KORVEL:string:MissingNotSupported") {}
};

}  // namespace KORVEL::string
