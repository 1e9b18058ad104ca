#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/interface/export.h"

namespace host {

/// UTF-16 of valid UTF-8; nothing when the bytes are not valid UTF-8.
ZX_HOST_API std::optional<std::u16string> utf16FromUtf8(std::string_view text);
/// UTF-8 of UTF-16; nothing when there is a lone surrogate.
ZX_HOST_API std::optional<std::string> utf8FromUtf16(std::u16string_view text);
/// UTF-8 of UTF-16, each lone surrogate as U+FFFD: for showing to people.
ZX_HOST_API std::string displayText(std::u16string_view text);

}  // namespace host
