#include "tool/catalogue/database.h"

#include <sqlite3.h>

#include <array>
#include <limits>
#include <system_error>

namespace tool {
namespace {

constexpr int lockPatience = 5000;  // milliseconds

struct ReasonRow {
    int code;
    std::string_view reason;
};

// What a person can do something about; of everything else the library's own words.
constexpr std::array reasons{
    ReasonRow{SQLITE_FULL, "the disk is full"},
    ReasonRow{SQLITE_BUSY, "another program has locked it"},
    ReasonRow{SQLITE_LOCKED, "another program has locked it"},
    ReasonRow{SQLITE_READONLY, "it may not be written"},
    ReasonRow{SQLITE_PERM, "it may not be written"},
    ReasonRow{SQLITE_CANTOPEN, "it cannot be opened or made"},
    ReasonRow{SQLITE_NOTADB, "it is no catalogue"},
    ReasonRow{SQLITE_TOOBIG, "a value is too large for it"},
    ReasonRow{SQLITE_CORRUPT, "its contents are damaged"},
};

constexpr int primary(int code) {
    return code & 0xFF;
}

std::string reasonFor(int code, sqlite3* handle) {
    for (const ReasonRow& row : reasons) {
        if (row.code == primary(code)) {
            const int cause = handle == nullptr ? 0 : sqlite3_system_errno(handle);
            return std::string(row.reason) + (row.code == SQLITE_CANTOPEN && cause != 0
                                                  ? ": " + std::generic_category().message(cause)
                                                  : "");
        }
    }
    return handle == nullptr ? sqlite3_errstr(code) : sqlite3_errmsg(handle);
}

int lengthOf(std::size_t size) {
    if (size > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throw DatabaseError(SQLITE_TOOBIG, reasonFor(SQLITE_TOOBIG, nullptr));
    }
    return static_cast<int>(size);
}

}  // namespace

void Database::Close::operator()(sqlite3* handle) const noexcept {
    sqlite3_close_v2(handle);
}

void Database::fail(int code) const {
    throw DatabaseError(primary(code), reasonFor(code, handle_.get()));
}

Database::Database(const std::string& path) {
    sqlite3* handle = nullptr;
    const int code =
        sqlite3_open_v2(path.c_str(), &handle,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    handle_.reset(handle);
    if (code != SQLITE_OK) {
        fail(code);
    }
    sqlite3_busy_timeout(handle, lockPatience);
}

void Database::execute(const std::string& sql) {
    const int code = sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        fail(code);
    }
}

void Database::addTable(const std::string& name, const sqlite3_module& module, void* source) {
    const int code =
        sqlite3_create_module_v2(handle_.get(), name.c_str(), &module, source, nullptr);
    if (code != SQLITE_OK) {
        fail(code);
    }
}

std::int64_t Database::number(const std::string& sql) {
    Statement statement(*this, sql);
    return statement.next() ? statement.integer(0) : 0;
}

std::int64_t Database::changes() const noexcept {
    return sqlite3_changes64(handle_.get());
}

std::int64_t Database::lastId() const noexcept {
    return sqlite3_last_insert_rowid(handle_.get());
}

bool Database::isInTransaction() const noexcept {
    return sqlite3_get_autocommit(handle_.get()) == 0;
}

void Statement::Finalize::operator()(sqlite3_stmt* statement) const noexcept {
    sqlite3_finalize(statement);
}

Statement::Statement(Database& database, std::string_view sql) : database_(&database) {
    sqlite3_stmt* handle = nullptr;
    const int code = sqlite3_prepare_v3(database.handle_.get(), sql.data(), lengthOf(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &handle, nullptr);
    handle_.reset(handle);
    check(code);
}

void Statement::check(int code) const {
    if (code != SQLITE_OK) {
        database_->fail(code);
    }
}

Statement& Statement::bind(int parameter, std::int64_t number) {
    check(sqlite3_bind_int64(handle_.get(), parameter, number));
    return *this;
}

Statement& Statement::bind(int parameter, double number) {
    check(sqlite3_bind_double(handle_.get(), parameter, number));
    return *this;
}

Statement& Statement::bind(int parameter, std::string_view text) {
    // Without an address the library would take an empty text for null.
    const char* const start = text.data() == nullptr ? "" : text.data();
    check(sqlite3_bind_text(handle_.get(), parameter, start, lengthOf(text.size()), SQLITE_STATIC));
    return *this;
}

Statement& Statement::bind(int parameter, std::span<const std::byte> bytes) {
    const void* const start = bytes.data() == nullptr ? "" : static_cast<const void*>(bytes.data());
    check(
        sqlite3_bind_blob(handle_.get(), parameter, start, lengthOf(bytes.size()), SQLITE_STATIC));
    return *this;
}

Statement& Statement::bindNull(int parameter) {
    check(sqlite3_bind_null(handle_.get(), parameter));
    return *this;
}

Statement& Statement::bindUnsigned(int parameter, std::uint64_t number) {
    if (number <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
        return bind(parameter, static_cast<std::int64_t>(number));
    }
    const std::string digits = std::to_string(number);
    check(sqlite3_bind_text(handle_.get(), parameter, digits.data(), lengthOf(digits.size()),
                            SQLITE_TRANSIENT));
    return *this;
}

bool Statement::next() {
    const int code = sqlite3_step(handle_.get());
    if (code == SQLITE_ROW) {
        return true;
    }
    sqlite3_reset(handle_.get());
    if (code != SQLITE_DONE) {
        database_->fail(code);
    }
    return false;
}

void Statement::run() {
    while (next()) {
    }
}

void Statement::reset() noexcept {
    sqlite3_reset(handle_.get());
}

bool Statement::isNull(int column) const noexcept {
    return sqlite3_column_type(handle_.get(), column) == SQLITE_NULL;
}

std::int64_t Statement::integer(int column) const noexcept {
    return sqlite3_column_int64(handle_.get(), column);
}

std::string_view Statement::text(int column) const noexcept {
    const void* const start = sqlite3_column_blob(handle_.get(), column);
    const int length = sqlite3_column_bytes(handle_.get(), column);
    return start == nullptr ? std::string_view()
                            : std::string_view(static_cast<const char*>(start),
                                               static_cast<std::size_t>(length));
}

}  // namespace tool
