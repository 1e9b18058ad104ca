#pragma once

#include <string>
#include <string_view>

// Character sets by name, and by what their texts look like. ICU knows all of them but UTF-8, which
// most texts are in.

namespace host {

enum class BadSequences {
    Replaced,  ///< each becomes U+FFFD
    Refused,   ///< the first one raises std::range_error
};

/// UTF-16 of bytes of any length in a named character set; a set without a converter is read as
/// ISO-8859-1.
[[nodiscard]] std::u16string utf16From(const std::string& charset, std::string_view bytes,
                                       BadSequences badSequences);

/// The name of the character set that bytes are most likely in, by their letters and their
/// byte-order mark; empty when it cannot be told. They are not valid UTF-8.
[[nodiscard]] std::string likelyCharset(std::string_view bytes);

}  // namespace host
