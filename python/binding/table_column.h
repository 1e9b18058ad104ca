#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tool/csv_columns.h"

namespace python {

/// What a column holds.
enum class ColumnKind : std::uint8_t {
    Integer,  ///< 64 bits with a sign
    Number,   ///< double precision
    Time,     ///< nanoseconds since 1970 as a clock told them
    Text,     ///< UTF-8
};

/// What a column holds, by what the registry says of its tag, or of its fact. It does not depend on
/// what the files hold, so that tables of any files can be put together.
[[nodiscard]] ColumnKind kindOf(const tool::CsvColumn& column);

/// The cells of one column, in the order in which they are added. A cell costs no allocation of its
/// own.
class ColumnCells {
  public:
    explicit ColumnCells(ColumnKind kind) : kind_(kind) {}

    [[nodiscard]] ColumnKind kind() const noexcept { return kind_; }
    [[nodiscard]] std::size_t size() const noexcept { return isThere_.size(); }

    void addNothing();
    /// Of Integer and Time.
    void add(std::int64_t number);
    /// Of Number.
    void add(double number);
    /// Of Text.
    void add(std::string_view text);

    [[nodiscard]] bool isThere(std::size_t row) const { return isThere_[row] != 0; }
    [[nodiscard]] std::int64_t integer(std::size_t row) const { return integers_[row]; }
    [[nodiscard]] double number(std::size_t row) const { return numbers_[row]; }
    [[nodiscard]] std::string_view text(std::size_t row) const;

  private:
    ColumnKind kind_;
    std::vector<std::uint8_t> isThere_;
    std::vector<std::int64_t> integers_;
    std::vector<double> numbers_;
    std::vector<std::size_t> ends_;  ///< of the texts
    std::string texts_;
};

}  // namespace python
