#pragma once

#include <cstddef>
#include <string_view>

// How much room texts take on a terminal. The texts are valid UTF-8 without control characters.

namespace tool {

/// The columns that a text takes: most characters one, accents none, East Asian ones two.
[[nodiscard]] std::size_t columnsOf(std::string_view text);

/// Takes a line of at most so many columns off the start of a text, broken at a blank where there
/// is one. At least one character is taken, so that a text always comes to its end.
[[nodiscard]] std::string_view takeLine(std::string_view& text, std::size_t columns);

/// The start of a text that takes at most so many columns.
[[nodiscard]] std::string_view firstColumns(std::string_view text, std::size_t columns);

}  // namespace tool
