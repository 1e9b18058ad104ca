#pragma once

#include <unicode/ucnv.h>

#include <memory>
#include <string>
#include <string_view>

// Conversion between bytes in a character set and UTF-16, by ICU.

namespace host {

struct CloseConverter {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
};
using ConverterPtr = std::unique_ptr<UConverter, CloseConverter>;

/// A converter for a character set by name; null when ICU has none of that name.
ConverterPtr openConverter(const std::string& charset);

/// This thread's converter for UTF-8.
UConverter& utf8Converter();

/// Whether all characters are ASCII's.
bool isAscii(std::string_view bytes) noexcept;
bool isAscii(std::u16string_view text) noexcept;
/// The same, with all characters widened to units, for which there is room.
bool widenAscii(std::string_view bytes, char16_t* units) noexcept;

/// UTF-16 of bytes of any length; each sequence that the character set does not allow, in UTF-8
/// each maximal invalid subpart, becomes one U+FFFD.
std::u16string lenientUtf16(UConverter& converter, std::string_view bytes);

/// The same, raising std::range_error at the first such sequence.
std::u16string strictUtf16(UConverter& converter, std::string_view bytes);

/// UTF-8 of UTF-16 of any length; each lone surrogate becomes U+FFFD.
std::string lenientUtf8(std::u16string_view text);

/// The same, raising std::range_error at the first lone surrogate.
std::string strictUtf8(std::u16string_view text);

}  // namespace host
