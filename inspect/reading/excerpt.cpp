#include "inspect/reading/excerpt.h"

#include <cstdint>

#include "inspect/reading/charset.h"
#include "inspect/reading/elements.h"

namespace corvinex::inspect::reading {
namespace {

bool isControl(std::int32_t character) {
    constexpr std::int32_t lineSeparator = 0x2028;
    constexpr std::int32_t paragraphSeparator = 0x2029;
    return character < ' ' || (character >= 0x7F && character <= 0x9F) ||
           character == lineSeparator || character == paragraphSeparator;
}

}  // namespace

std::string excerpt(std::string_view text, std::size_t mostCharacters) {
    constexpr std::size_t mostBytesEach = 4;
    constexpr std::string_view more = "...";
    text = trimmed(text.substr(0, text.find('\0')));
    // Whatever the set of a text, a character has at most four bytes: what is behind can be left
    // out before a large text is decoded, and a character cut there is beyond what is shown.
    const std::string decoded =
        decodeText(isUtf8(text) ? text : text.substr(0, (mostCharacters + 1) * mostBytesEach));
    std::string result;
    std::string_view rest = decoded;
    for (std::size_t characters = 0; !rest.empty(); ++characters) {
        if (characters == mostCharacters) {
            return result.append(more);
        }
        const std::string_view start = rest;
        if (isControl(takeCharacter(rest))) {
            result += ' ';
        } else {
            result.append(start.substr(0, start.size() - rest.size()));
        }
    }
    // Control characters at the end have become blanks.
    result.resize(withoutEndBlanks(result).size());
    return result;
}

}  // namespace corvinex::inspect::reading
