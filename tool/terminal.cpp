#include "tool/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace tool {
namespace {

// Narrower ones have no room for a name and a value beside each other.
constexpr std::size_t leastWidth = 40;
constexpr std::size_t mostWidth = 10000;

bool wantsColour() {
    const char* const refused = std::getenv("NO_COLOR");
    const char* const name = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && (refused == nullptr || *refused == '\0') &&
           name != nullptr && std::string_view(name) != "dumb";
}

std::optional<std::size_t> terminalWidth() {
    winsize size{};
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system has no other way
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return std::nullopt;
    }
    return size.ws_col;
}

}  // namespace

std::string Terminal::painted(Ink ink, std::string_view text) const {
    static constexpr std::array<std::string_view, 7> codes{
        "", "\x1b[1m", "\x1b[2m", "\x1b[31m", "\x1b[33m", "\x1b[31m", "\x1b[32m"};
    std::string result;
    if (!hasColour || ink == Ink::Plain) {
        return result.append(text);
    }
    return result.append(codes.at(static_cast<std::size_t>(ink))).append(text).append("\x1b[0m");
}

Terminal terminalOf(std::string_view colour, std::optional<std::uint64_t> width) {
    Terminal terminal;
    terminal.hasColour = colour == "always" || (colour != "never" && wantsColour());
    if (width) {
        terminal.width = static_cast<std::size_t>(std::min<std::uint64_t>(*width, mostWidth));
    } else if (const auto columns = terminalWidth()) {
        terminal.width = *columns;
    }
    terminal.width = std::max(terminal.width, leastWidth);
    return terminal;
}

}  // namespace tool
