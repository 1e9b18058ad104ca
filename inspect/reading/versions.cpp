#include <algorithm>
#include <string_view>

#include "inspect/reading/elements.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {
namespace {

constexpr std::size_t versionLength = 4;

bool isDigit(char character) noexcept {
    return character >= '0' && character <= '9';
}

}  // namespace

Text readVersionBytes(const Subject& subject) {
    // Raw bytes are shown as their version in the value itself.
    if (subject.value.typeCode() == static_cast<std::uint16_t>(FieldType::Undefined) ||
        subject.value.size() != versionLength) {
        return std::nullopt;
    }
    std::string text;
    for (std::size_t index = 0; index < versionLength; ++index) {
        const auto number = unsignedAt(subject.value, index);
        if (!number) {
            return std::nullopt;
        }
        text += index > 0 ? "." : "";
        text += integerText(*number);
    }
    return text;
}

// Versions are two digits each of a major and a minor number: "0232" is 2.32, "0100" is 1.0.
Text readTextInUndefined(const Subject& subject) {
    const auto bytes = bytesOf(subject.value);
    if (!subject.fact.name.ends_with("Version") || !bytes || bytes->size() != versionLength) {
        return std::nullopt;
    }
    const std::string digits(bytes->begin(), bytes->end());
    if (!std::ranges::all_of(digits, isDigit)) {
        return std::nullopt;
    }
    const std::size_t major = digits[0] == '0' ? 1 : 0;
    const std::size_t minorEnd = digits[3] == '0' ? 3 : 4;
    return digits.substr(major, 2 - major) + "." + digits.substr(2, minorEnd - 2);
}

}  // namespace corvinex::inspect::reading
