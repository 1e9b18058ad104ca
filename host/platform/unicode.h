#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/interface/export.h"

// Conversion between UTF-8 and UTF-16 of any length.

namespace host {

/// UTF-16 of valid UTF-8; nothing when the bytes are not valid UTF-8.
ZX_HOST_API std::optional<std::u16string> utf16FromUtf8(std::string_view text);
/// UTF-8 of UTF-16; nothing when there is a lone surrogate.
ZX_HOST_API std::optional<std::string> utf8FromUtf16(std::u16string_view text);
/// UTF-8 of UTF-16, each lone surrogate as U+FFFD: for showing to people.
ZX_HOST_API std::string displayText(std::u16string_view text);

/// UTF-16 of any bytes; each maximal subpart that is not valid UTF-8 becomes one U+FFFD.
[[nodiscard]] std::u16string lenientUtf16FromUtf8(std::string_view text);
/// Whether the bytes are valid UTF-8.
[[nodiscard]] bool isUtf8(std::string_view bytes) noexcept;

}  // namespace host
