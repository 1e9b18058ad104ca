#pragma once

#include <string>
#include <string_view>

#include "tool/output_buffer.h"

// Texts from files and file names as a terminal may safely show them, always valid UTF-8.

namespace tool {

/// UTF-8 of a UTF-16 text with everything that does not print made visible: line feeds and the like
/// as \n, \r, \t, other controls and direction marks as \uXXXX, lone surrogates too.
std::string visibleText(std::u16string_view text);
/// The same of UTF-8, with U+FFFD for each byte that is no part of valid UTF-8.
std::string visibleText(std::string_view text);
/// UTF-16 of UTF-8, with U+FFFD for each byte that is no part of valid UTF-8.
std::u16string lenientUtf16(std::string_view text);
/// visibleText between double quotes, with quotes and backslashes inside escaped.
std::string quotedText(std::u16string_view text);
void writeQuotedText(OutputBuffer& out, std::u16string_view text);

/// Whether a text is the same between quotes in every notation: printable ASCII without quotes and
/// backslashes, as most are.
bool isPlainText(std::u16string_view text);

}  // namespace tool
