#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_module;
struct sqlite3_stmt;

namespace tool {

/// What a database could not do; what() says why in a sentence's part.
class DatabaseError : public std::runtime_error {
  public:
    DatabaseError(int code, const std::string& reason) : std::runtime_error(reason), code_(code) {}
    /// SQLite's primary result code.
    [[nodiscard]] int code() const noexcept { return code_; }

  private:
    int code_;
};

/// An open SQLite database. For one thread at a time. All calls raise DatabaseError.
class Database {
  public:
    /// Opens a file for reading and writing, and makes it when it is not there. Waits a few seconds
    /// for locks of other programs.
    explicit Database(const std::string& path);

    /// Carries out one or several statements without results.
    void execute(const std::string& sql);
    /// Adds a table to the connection whose rows the program makes, from this source. Both must
    /// live until the database is closed.
    void addTable(const std::string& name, const sqlite3_module& module, void* source);
    /// The first column of the first row.
    [[nodiscard]] std::int64_t number(const std::string& sql);
    /// The rows that the last statement inserted, changed or deleted.
    [[nodiscard]] std::int64_t changes() const noexcept;
    [[nodiscard]] std::int64_t lastId() const noexcept;
    [[nodiscard]] bool isInTransaction() const noexcept;

  private:
    friend class Statement;
    struct Close {
        void operator()(sqlite3* handle) const noexcept;
    };
    [[noreturn]] void fail(int code) const;

    std::unique_ptr<sqlite3, Close> handle_;
};

/// A prepared statement, carried out any number of times. Parameters count from 1, columns from 0.
/// Bound texts and bytes must live until the statement is reset.
class Statement {
  public:
    Statement(Database& database, std::string_view sql);

    Statement& bind(int parameter, std::int64_t number);
    Statement& bind(int parameter, double number);
    Statement& bind(int parameter, std::string_view text);
    Statement& bind(int parameter, std::span<const std::byte> bytes);
    Statement& bindNull(int parameter);
    /// A number that may not fit into SQLite's 63 bits; then its digits as text.
    Statement& bindUnsigned(int parameter, std::uint64_t number);
    template <class Type>
    Statement& bindOptional(int parameter, const std::optional<Type>& value) {
        return value ? bind(parameter, *value) : bindNull(parameter);
    }

    /// Goes to the next row. False when there is none; the statement is then reset.
    bool next();
    /// Carries out a statement without rows.
    void run();
    void reset() noexcept;

    [[nodiscard]] bool isNull(int column) const noexcept;
    [[nodiscard]] std::int64_t integer(int column) const noexcept;
    /// The bytes of a text or of bytes, until the next step.
    [[nodiscard]] std::string_view text(int column) const noexcept;

  private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };
    void check(int code) const;

    Database* database_;
    std::unique_ptr<sqlite3_stmt, Finalize> handle_;
};

}  // namespace tool
