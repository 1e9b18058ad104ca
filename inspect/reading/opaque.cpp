#include <string_view>

#include "inspect/reading/elements.h"
#include "inspect/reading/filter_pattern.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {

// Digests and identifiers are compared by eye, digit by digit; of more bytes their number is all
// that a person can use.
Text readOpaque(const Subject& subject) {
    constexpr std::size_t mostInDigits = 16;
    constexpr std::uint16_t filterPattern = 41730;
    constexpr std::string_view digits = "0123456789abcdef";
    const auto bytes = bytesOf(subject.value);
    if (!bytes || charactersOf(subject.value)) {
        return std::nullopt;
    }
    if (subject.number == filterPattern) {
        if (auto pattern = filterPatternText(*bytes, subject.fileOrder)) {
            return pattern;
        }
    }
    if (bytes->size() > mostInDigits) {
        return byteCountText(bytes->size());
    }
    std::string text;
    for (const std::uint8_t byte : *bytes) {
        text += digits[byte >> 4U];
        text += digits[byte & 0xFU];
    }
    return text;
}

}  // namespace corvinex::inspect::reading
