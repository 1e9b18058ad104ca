#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "python/binding/table_column.h"
#include "tool/csv_cell.h"
#include "tool/csv_columns.h"
#include "tool/inspected_file.h"

namespace python {

/// What a table holds, for any number of threads.
struct TablePlan {
    TablePlan(std::span<const std::string> names, tool::CellOptions cellOptions);

    tool::CsvColumns columns;
    std::vector<ColumnKind> kinds;  ///< of the columns
    bool needsFacts = false;        ///< those that are derived from tags
    tool::CellOptions cells;
};

/// Rows of a table, by one thread: for each main directory of a file one, and one for a file
/// without directories.
class TableRows {
  public:
    explicit TableRows(const TablePlan& plan);

    /// The columns that every table has, then those of the plan.
    enum FirstColumns : std::uint8_t { File, Directory, Status, Findings, FirstPlanned };

    /// Adds the rows of a file. The number is its place among all files.
    void add(const tool::InspectedFile& file, std::uint64_t number);

    /// The rows of one file.
    struct Extent {
        std::uint64_t number;
        std::size_t first;
        std::size_t count;
    };
    [[nodiscard]] std::span<const Extent> extents() const noexcept { return extents_; }
    [[nodiscard]] const ColumnCells& column(std::size_t index) const { return columns_[index]; }

  private:
    const TablePlan* plan_;
    std::vector<ColumnCells> columns_;
    std::vector<Extent> extents_;
};

}  // namespace python
