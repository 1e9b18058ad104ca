#include "tool/display_width.h"

#include <algorithm>
#include <bit>
#include <cwchar>

namespace tool {
namespace {

struct Character {
    std::size_t bytes;
    std::size_t columns;
};

constexpr unsigned firstOfLatin1 = 0xA0;
constexpr unsigned firstCombining = 0x300;

Character firstCharacter(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        return {1, 1};
    }
    const auto ones = static_cast<std::size_t>(std::countl_one(first));
    const std::size_t bytes = std::clamp<std::size_t>(ones, 1, text.size());
    unsigned code = first & (0x7FU >> ones);
    for (std::size_t i = 1; i < bytes; ++i) {
        code = code << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    if (code >= firstOfLatin1 && code < firstCombining) {
        return {bytes, 1};  // whatever the locale
    }
    // Where the locale does not know a character, a terminal shows something in its place.
    const int columns = ::wcwidth(static_cast<wchar_t>(code));
    return {bytes, columns < 0 ? 1 : static_cast<std::size_t>(columns)};
}

}  // namespace

std::size_t columnsOf(std::string_view text) {
    std::size_t columns = 0;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        columns += character.columns;
        text.remove_prefix(character.bytes);
    }
    return columns;
}

std::string_view firstColumns(std::string_view text, std::size_t columns) {
    if (text.size() <= columns) {
        return text;  // no character takes more columns than bytes
    }
    std::size_t length = 0;
    while (length < text.size()) {
        const Character character = firstCharacter(text.substr(length));
        if (character.columns > columns) {
            break;
        }
        columns -= character.columns;
        length += character.bytes;
    }
    return text.substr(0, length);
}

std::string_view takeLine(std::string_view& text, std::size_t columns) {
    std::string_view line = firstColumns(text, columns);
    if (line.empty() && !text.empty()) {
        line = text.substr(0, firstCharacter(text).bytes);
    }
    if (line.size() < text.size() && text[line.size()] != ' ') {
        // The blanks that a line begins with are its indentation, and no place to break it.
        const std::size_t blank = line.find_last_of(' ');
        const std::size_t word = line.find_first_not_of(' ');
        if (blank != std::string_view::npos && word < blank) {
            line = line.substr(0, blank);
        }
    }
    text.remove_prefix(line.size());
    if (!text.empty()) {
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

}  // namespace tool
