#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// What a text stands out as.
enum class Ink : std::uint8_t { Plain, Heading, Faint, Error, Warning, Removed, Added };

/// How the standard output shows text.
struct Terminal {
    bool hasColour = false;
    std::size_t width = 100;  ///< in columns

    /// The text with what makes a terminal show it in that ink.
    [[nodiscard]] std::string painted(Ink ink, std::string_view text) const;
};

/// The standard output. A colour choice of "always" or "never" decides; otherwise a terminal has
/// colours, unless NO_COLOR is set. The width is the one that is given, else the terminal's.
[[nodiscard]] Terminal terminalOf(std::string_view colour, std::optional<std::uint64_t> width);

}  // namespace tool
