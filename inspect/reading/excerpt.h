#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvinex::inspect::reading {

/// A text from inside a value up to its first zero, to be part of a line: valid UTF-8, without
/// blanks at its sides, each control character and line end a blank, cut to so many characters and
/// "..." when it is longer.
[[nodiscard]] std::string excerpt(std::string_view text, std::size_t mostCharacters = 80);

}  // namespace corvinex::inspect::reading
