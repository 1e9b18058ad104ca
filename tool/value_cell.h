#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "inspect/record/json_writer.h"

namespace tool {

/// The last cell of a row: its first line stands behind the row's head, the others below that one.
class ValueCell {
  public:
    /// The columns of a cell's first line and of the lines below it.
    struct Widths {
        std::size_t first;
        std::size_t others;
    };

    /// The head is printed as it is and takes so many columns; so many are left for the cell.
    ValueCell(corvinex::inspect::TextSink& sink, std::string head, std::size_t headColumns,
              std::size_t columns)
        : ValueCell(sink, std::move(head), headColumns, Widths{columns, columns}) {}
    /// The same for lines that begin at another column than the first one does.
    ValueCell(corvinex::inspect::TextSink& sink, std::string head, std::size_t indentation,
              Widths widths);

    [[nodiscard]] std::size_t columns() const noexcept { return widths_.others; }

    /// A line that is known to fit.
    void line(std::string_view text);
    /// Any text, with everything that does not print made visible: a line for each of its own,
    /// broken where it is too long. Of more lines than most the rest is left out, and what then
    /// stands at the end says so.
    void text(std::string_view text, std::size_t mostLines, std::string_view cutMark);
    /// The start of a value and what says that it is cut, which stands below where it has no room.
    void cutLine(std::string_view start, std::string_view cutMark);
    /// Ends the row, also of a cell without a line.
    void finish();

  private:
    corvinex::inspect::TextSink& sink_;
    std::string head_;
    std::size_t indentation_;
    Widths widths_;
    bool isEmpty_ = true;
};

}  // namespace tool
