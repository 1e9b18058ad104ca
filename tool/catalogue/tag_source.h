#pragma once

#include <cstdint>
#include <string>

#include "tool/catalogue/database.h"
#include "tool/catalogue/rows.h"

namespace tool {

/// Gives SQLite the rows of a block's tags as a table to insert from: to bind each value of each
/// row to a statement would take half as long again. Stays where it is, as the database knows its
/// address.
class TagSource {
  public:
    /// Adds the table to this connection; a database's file has no trace of it. To be kept until
    /// the database is closed.
    explicit TagSource(Database& database);
    ~TagSource() = default;
    TagSource(const TagSource&) = delete;
    TagSource& operator=(const TagSource&) = delete;

    /// The statement that inserts all rows into `tags`.
    [[nodiscard]] static std::string insertSql();

    /// Chooses the block, which must live until its rows are inserted, and the number of its file's
    /// first directory.
    void choose(const RowBlock& block, std::int64_t firstDirectory) noexcept {
        block_ = &block;
        firstDirectory_ = firstDirectory;
    }

    [[nodiscard]] const RowBlock& block() const noexcept { return *block_; }
    [[nodiscard]] std::int64_t firstDirectory() const noexcept { return firstDirectory_; }

  private:
    const RowBlock* block_ = nullptr;
    std::int64_t firstDirectory_ = 0;
};

}  // namespace tool
