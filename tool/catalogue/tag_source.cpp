#include "tool/catalogue/tag_source.h"

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <limits>
#include <new>
#include <string_view>

namespace tool {
namespace {

constexpr std::string_view tableName = "block_tags";

// What is not set is null.

void setText(sqlite3_context* context, std::string_view text) {
    if (!text.empty()) {
        sqlite3_result_text64(context, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
    }
}

/// An empty text is one as well.
void setPlace(sqlite3_context* context, const RowBlock& block, const TextPlace& place) {
    if (place.start != TextPlace::none) {
        sqlite3_result_text64(context, block.texts.data() + place.start, place.length,
                              SQLITE_STATIC, SQLITE_UTF8);
    }
}

/// One that does not fit into SQLite's 63 bits as its digits.
void setUnsigned(sqlite3_context* context, std::uint64_t number) {
    if (number <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
        sqlite3_result_int64(context, static_cast<std::int64_t>(number));
    } else {
        const std::string digits = std::to_string(number);
        sqlite3_result_text64(context, digits.data(), digits.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    }
}

struct Column {
    std::string_view name;
    void (*set)(sqlite3_context* context, const TagSource& source, const TagRow& row);
};

constexpr std::array columns{
    Column{"directory_id",
           [](sqlite3_context* context, const TagSource& source, const TagRow& row) {
               sqlite3_result_int64(context, source.firstDirectory() + row.directory);
           }},
    Column{"number", [](sqlite3_context* context, const TagSource& /*source*/,
                        const TagRow& row) { sqlite3_result_int64(context, row.number); }},
    Column{"entry", [](sqlite3_context* context, const TagSource& /*source*/,
                       const TagRow& row) { sqlite3_result_int64(context, row.entry); }},
    Column{"name", [](sqlite3_context* context, const TagSource& /*source*/,
                      const TagRow& row) { setText(context, row.name); }},
    Column{"field", [](sqlite3_context* context, const TagSource& /*source*/,
                       const TagRow& row) { setText(context, row.field); }},
    Column{"type",
           [](sqlite3_context* context, const TagSource& /*source*/, const TagRow& row) {
               if (row.typeName.empty()) {
                   sqlite3_result_int64(context, row.typeCode);
               } else {
                   setText(context, row.typeName);
               }
           }},
    Column{"count", [](sqlite3_context* context, const TagSource& /*source*/,
                       const TagRow& row) { setUnsigned(context, row.count); }},
    Column{"offset",
           [](sqlite3_context* context, const TagSource& /*source*/, const TagRow& row) {
               if (row.offset) {
                   setUnsigned(context, *row.offset);
               }
           }},
    Column{"json",
           [](sqlite3_context* context, const TagSource& source, const TagRow& row) {
               if (row.json.start == TextPlace::none) {
                   setText(context, "null");
               } else {
                   setPlace(context, source.block(), row.json);
               }
           }},
    Column{"integer",
           [](sqlite3_context* context, const TagSource& /*source*/, const TagRow& row) {
               if (row.integer) {
                   sqlite3_result_int64(context, *row.integer);
               }
           }},
    Column{"real",
           [](sqlite3_context* context, const TagSource& /*source*/, const TagRow& row) {
               if (row.real) {
                   sqlite3_result_double(context, *row.real);
               }
           }},
    Column{"text", [](sqlite3_context* context, const TagSource& source,
                      const TagRow& row) { setPlace(context, source.block(), row.text); }},
    Column{"meaning", [](sqlite3_context* context, const TagSource& source,
                         const TagRow& row) { setPlace(context, source.block(), row.meaning); }},
    Column{"charset", [](sqlite3_context* context, const TagSource& /*source*/,
                         const TagRow& row) { setText(context, row.charset); }},
    Column{"rest",
           [](sqlite3_context* context, const TagSource& source, const TagRow& row) {
               if (row.rest.start != TextPlace::none) {
                   sqlite3_result_blob64(context, source.block().texts.data() + row.rest.start,
                                         row.rest.length, SQLITE_STATIC);
               }
           }},
    Column{"truncated", [](sqlite3_context* context, const TagSource& /*source*/,
                           const TagRow& row) { sqlite3_result_int(context, row.isTruncated); }},
    Column{"directories",
           [](sqlite3_context* context, const TagSource& source, const TagRow& row) {
               setPlace(context, source.block(), row.directories);
           }},
};

std::string columnList() {
    std::string list;
    for (const Column& column : columns) {
        list.append(list.empty() ? "" : ", ").append(column.name);
    }
    return list;
}

// The library asks for these by pointers to their first members. It hands over memory that is its
// own by pointers without an owner.

struct Table {
    sqlite3_vtab base{};
    const TagSource* source = nullptr;
};

struct Cursor {
    sqlite3_vtab_cursor base{};
    const TagSource* source = nullptr;
    std::size_t row = 0;
};

Cursor& cursorOf(sqlite3_vtab_cursor* cursor) {
    return *reinterpret_cast<Cursor*>(cursor);
}

int connect(sqlite3* database, void* source, int /*count*/, const char* const* /*words*/,
            sqlite3_vtab** result, char** /*error*/) noexcept {
    static const std::string sql =
        "CREATE TABLE " + std::string(tableName) + "(" + columnList() + ")";
    const int code = sqlite3_declare_vtab(database, sql.c_str());
    if (code != SQLITE_OK) {
        return code;
    }
    auto* const table = new (std::nothrow) Table;
    if (table == nullptr) {
        return SQLITE_NOMEM;
    }
    table->source = static_cast<const TagSource*>(source);
    *result = &table->base;
    return SQLITE_OK;
}

int disconnect(sqlite3_vtab* table) noexcept {
    delete reinterpret_cast<Table*>(table);
    return SQLITE_OK;
}

int planQuery(sqlite3_vtab* /*table*/, sqlite3_index_info* /*plan*/) noexcept {
    return SQLITE_OK;  // all rows one after the other
}

int openCursor(sqlite3_vtab* table, sqlite3_vtab_cursor** result) noexcept {
    auto* const cursor = new (std::nothrow) Cursor;
    if (cursor == nullptr) {
        return SQLITE_NOMEM;
    }
    cursor->source = reinterpret_cast<Table*>(table)->source;
    *result = &cursor->base;
    return SQLITE_OK;
}

int closeCursor(sqlite3_vtab_cursor* cursor) noexcept {
    delete &cursorOf(cursor);
    return SQLITE_OK;
}

int goToFirst(sqlite3_vtab_cursor* cursor, int /*plan*/, const char* /*planText*/, int /*count*/,
              sqlite3_value** /*values*/) noexcept {
    cursorOf(cursor).row = 0;
    return SQLITE_OK;
}

int goToNext(sqlite3_vtab_cursor* cursor) noexcept {
    ++cursorOf(cursor).row;
    return SQLITE_OK;
}

int isAtEnd(sqlite3_vtab_cursor* cursor) noexcept {
    const Cursor& at = cursorOf(cursor);
    return at.row >= at.source->block().tags.size() ? 1 : 0;
}

int getColumn(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int column) noexcept {
    const Cursor& at = cursorOf(cursor);
    columns.at(static_cast<std::size_t>(column))
        .set(context, *at.source, at.source->block().tags[at.row]);
    return SQLITE_OK;
}

int getRowId(sqlite3_vtab_cursor* cursor, sqlite3_int64* id) noexcept {
    *id = static_cast<sqlite3_int64>(cursorOf(cursor).row);
    return SQLITE_OK;
}

/// Without functions that make or change a table it can only be read, and needs no making.
sqlite3_module makeModule() {
    sqlite3_module module{};
    module.xConnect = connect;
    module.xBestIndex = planQuery;
    module.xDisconnect = disconnect;
    module.xOpen = openCursor;
    module.xClose = closeCursor;
    module.xFilter = goToFirst;
    module.xNext = goToNext;
    module.xEof = isAtEnd;
    module.xColumn = getColumn;
    module.xRowid = getRowId;
    return module;
}

}  // namespace

TagSource::TagSource(Database& database) {
    static const sqlite3_module module = makeModule();
    database.addTable(std::string(tableName), module, this);
}

std::string TagSource::insertSql() {
    const std::string list = columnList();
    return "INSERT INTO tags (" + list + ") SELECT " + list + " FROM " + std::string(tableName);
}

}  // namespace tool
