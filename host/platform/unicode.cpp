#include "host/platform/unicode.h"

#include <stdexcept>

#include "host/platform/converter.h"

namespace host {

std::optional<std::u16string> utf16FromUtf8(std::string_view text) {
    try {
        return strictUtf16(utf8Converter(), text);
    } catch (const std::range_error&) {
        return std::nullopt;
    }
}

std::optional<std::string> utf8FromUtf16(std::u16string_view text) {
    try {
        return strictUtf8(text);
    } catch (const std::range_error&) {
        return std::nullopt;
    }
}

std::string displayText(std::u16string_view text) {
    return lenientUtf8(text);
}

}  // namespace host
