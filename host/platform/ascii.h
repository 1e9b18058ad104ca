#pragma once

#include <string_view>
#include <type_traits>

// Most texts are ASCII, which converts without any table.

namespace host {

// All characters are looked at, so that the compiler takes several at once.

/// Whether all characters are ASCII's.
template <typename Character>
[[nodiscard]] bool isAscii(std::basic_string_view<Character> text) noexcept {
    unsigned int all = 0;
    for (const Character character : text) {
        all |= static_cast<std::make_unsigned_t<Character>>(character);
    }
    return all < 0x80;
}

/// The same, with all characters widened to units, for which there is room.
[[nodiscard]] inline bool widenAscii(std::string_view bytes, char16_t* units) noexcept {
    unsigned char all = 0;
    for (const char c : bytes) {
        all |= static_cast<unsigned char>(c);
        *units = static_cast<unsigned char>(c);
        ++units;
    }
    return all < 0x80;
}

}  // namespace host
