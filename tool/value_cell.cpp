#include "tool/value_cell.h"

#include <algorithm>
#include <utility>

#include "tool/display_width.h"
#include "tool/text_display.h"

namespace tool {
namespace {

/// ASCII that a terminal shows as it is, as most texts are.
bool isPrintable(char character) {
    return character >= ' ' && character <= '~';
}

}  // namespace

ValueCell::ValueCell(corvinex::inspect::TextSink& sink, std::string head, std::size_t indentation,
                     Widths widths)
    : sink_(sink), head_(std::move(head)), indentation_(indentation), widths_(widths) {}

void ValueCell::line(std::string_view text) {
    std::string line = isEmpty_ ? std::move(head_) : std::string(indentation_, ' ');
    line.append(text);
    line.erase(line.find_last_not_of(' ') + 1);
    line += '\n';
    sink_.write(line);
    isEmpty_ = false;
}

void ValueCell::text(std::string_view text, std::size_t mostLines, std::string_view cutMark) {
    // No character takes more bytes, so that of a long text only the start has to be looked at.
    constexpr std::size_t mostBytes = 4;
    const std::size_t widest = std::max(widths_.first, widths_.others);
    const std::size_t shown = widest * std::min(mostLines, text.size() / widths_.first + 1);
    const bool isLong = shown < text.size() / mostBytes;
    std::string_view rest = isLong ? text.substr(0, shown * mostBytes) : text;
    std::size_t lines = 0;
    while (!rest.empty()) {
        std::string_view own = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(own.size() + 1, rest.size()));
        if (own.ends_with('\r')) {
            own.remove_suffix(1);
        }
        const bool isPlain = std::ranges::all_of(own, isPrintable);
        const std::string visible = isPlain ? std::string() : visibleText(own);
        std::string_view left = isPlain ? own : std::string_view(visible);
        do {
            std::string_view before = left;
            const std::size_t columns = isEmpty_ ? widths_.first : widths_.others;
            const std::string_view next = takeLine(left, columns);
            ++lines;
            if (lines < mostLines || (left.empty() && rest.empty() && !isLong)) {
                line(next);
                continue;
            }
            const std::size_t room = columns - std::min(columns, columnsOf(cutMark));
            const bool isNextShown = columnsOf(next) <= room || room == 0;
            cutLine(isNextShown ? next : takeLine(before, room), cutMark);
            return;
        } while (!left.empty());
    }
}

void ValueCell::cutLine(std::string_view start, std::string_view cutMark) {
    const std::size_t columns = isEmpty_ ? widths_.first : widths_.others;
    if (columnsOf(start) + columnsOf(cutMark) <= columns) {
        line(std::string(start).append(cutMark));
        return;
    }
    line(start);
    cutMark.remove_prefix(std::min(cutMark.find_first_not_of(' '), cutMark.size()));
    line(cutMark);
}

void ValueCell::finish() {
    if (isEmpty_) {
        line("");
    }
}

}  // namespace tool
