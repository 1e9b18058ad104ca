#include "tool/catalogue/catalogue_merge.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "inspect/reading/charset.h"
#include "tool/catalogue/schema.h"

namespace tool {
namespace {

constexpr std::int64_t mergedScan = 1;  // scans.id

/// A column whose value differs from that in the part: an id, which is shifted.
struct ShiftedColumn {
    std::string_view table;
    std::string_view column;
    enum class By { File, Directory, Scan } by;
};

constexpr std::array shiftedColumns{
    ShiftedColumn{"files", "id", ShiftedColumn::By::File},
    ShiftedColumn{"files", "scan_id", ShiftedColumn::By::Scan},
    ShiftedColumn{"directories", "id", ShiftedColumn::By::Directory},
    ShiftedColumn{"directories", "file_id", ShiftedColumn::By::File},
    ShiftedColumn{"directories", "parent_id", ShiftedColumn::By::Directory},
    ShiftedColumn{"tags", "directory_id", ShiftedColumn::By::Directory},
    ShiftedColumn{"findings", "file_id", ShiftedColumn::By::File},
};

/// Finds a file of the part, `other`, among those of earlier parts.
constexpr const char* sameFile =
    "EXISTS (SELECT 1 FROM main.files AS mine WHERE mine.path = other.path)";

/// The columns by which the rows of a table are ordered, so that they are appended.
constexpr std::string_view orderOf(std::string_view table) {
    if (table == "tags") {
        return "directory_id, number, entry";
    }
    return table == "findings" ? "file_id, position" : "id";
}

/// Text where the bytes are UTF-8, else the bytes.
void bindFolder(Statement& statement, int parameter, const std::string& folder) {
    if (corvinex::inspect::reading::isUtf8(folder)) {
        statement.bind(parameter, std::string_view(folder));
    } else {
        statement.bind(parameter, std::as_bytes(std::span(folder)));
    }
}

}  // namespace

CatalogueMerge::CatalogueMerge(const std::string& path, const MergedScan& scan) : database_(path) {
    if (database_.number("SELECT count(*) FROM sqlite_master") != 0) {
        throw DatabaseError(SQLITE_ERROR, "there is a database already");
    }
    database_.execute(
        "PRAGMA page_size = 8192; PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;"
        "PRAGMA cache_size = -65536; PRAGMA application_id = " +
        std::to_string(catalogueMark) + "; PRAGMA user_version = " + std::to_string(schemaVersion) +
        ";");
    database_.execute(std::string(schemaSql));
    Statement insert(database_,
                     "INSERT INTO scans (id, started, finished, version, folder, max_values, "
                     "header_offset) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)");
    insert.bind(1, mergedScan)
        .bind(2, std::string_view(scan.started))
        .bind(3, std::string_view(scan.finished))
        .bind(4, std::string_view(scan.version));
    bindFolder(insert, 5, scan.folder);
    insert.bindUnsigned(6, scan.maxValues);
    if (scan.headerOffset) {
        insert.bindUnsigned(7, *scan.headerOffset);
    } else {
        insert.bindNull(7);
    }
    insert.run();
}

RowCounts CatalogueMerge::countRows(const std::string& schema) {
    const auto count = [&](const char* table) {
        return static_cast<std::uint64_t>(
            database_.number("SELECT count(*) FROM " + schema + "." + table));
    };
    return {.files = count("files"),
            .directories = count("directories"),
            .tags = count("tags"),
            .findings = count("findings")};
}

/// The columns of a table in SQL, in the order of the main one, with shifted ids.
std::string CatalogueMerge::columns(const std::string& table) {
    Statement names(database_, "SELECT name FROM pragma_table_info(?1, 'main')");
    names.bind(1, std::string_view(table));
    std::string list;
    while (names.next()) {
        const std::string name(names.text(0));
        list += list.empty() ? "" : ", ";
        const auto* const shifted = std::ranges::find_if(
            shiftedColumns,
            [&](const ShiftedColumn& row) { return row.table == table && row.column == name; });
        if (shifted == shiftedColumns.end()) {
            list += '"' + name + '"';
        } else if (shifted->by == ShiftedColumn::By::Scan) {
            list += std::to_string(mergedScan);
        } else {
            const bool isFile = shifted->by == ShiftedColumn::By::File;
            list += name + " + " + std::to_string(isFile ? shift_.file : shift_.directory);
        }
    }
    return list;
}

std::uint64_t CatalogueMerge::copy(const std::string& table, const std::string& condition) {
    database_.execute("INSERT INTO main." + table + " SELECT " + columns(table) + " FROM part." +
                      table + condition + " ORDER BY " + std::string(orderOf(table)));
    return static_cast<std::uint64_t>(database_.changes());
}

void CatalogueMerge::attach(const std::string& part) {
    Statement attach(database_, "ATTACH ?1 AS part");
    attach.bind(1, std::string_view(part)).run();
}

RowCounts CatalogueMerge::copyAll(const RowCounts& counts, std::uint64_t repeated) {
    RowCounts copied;
    std::string ofFile;
    std::string ofDirectory;
    if (repeated == 0) {
        copied.files = copy("files", "");
    } else {
        copied.files = copy("files", std::string(" AS other WHERE NOT ") + sameFile);
        const std::string files = "SELECT id - " + std::to_string(shift_.file) +
                                  " FROM main.files WHERE id > " + std::to_string(shift_.file);
        ofFile = " WHERE file_id IN (" + files + ")";
        ofDirectory = " WHERE directory_id IN (SELECT id FROM part.directories" + ofFile + ")";
    }
    copied.directories = copy("directories", ofFile);
    copied.tags = copy("tags", ofDirectory);
    copied.findings = copy("findings", ofFile);
    const bool isWhole = repeated == 0 ? copied == counts : copied.files + repeated == counts.files;
    if (!isWhole) {
        throw DatabaseError(SQLITE_ERROR, "not all rows of a part could be copied");
    }
    return copied;
}

CatalogueMerge::Added CatalogueMerge::add(const std::string& part) {
    attach(part);
    if (database_.number("PRAGMA part.application_id") != catalogueMark) {
        throw DatabaseError(SQLITE_NOTADB, "a part is no catalogue");
    }
    const RowCounts counts = countRows("part");
    const auto repeated = static_cast<std::uint64_t>(database_.number(
        std::string("SELECT count(*) FROM part.files AS other WHERE ") + sameFile));
    database_.execute("BEGIN");
    const RowCounts copied = copyAll(counts, repeated);
    database_.execute("COMMIT");
    database_.execute("DETACH part");
    shift_ = {.file = database_.number("SELECT coalesce(max(id), 0) FROM files"),
              .directory = database_.number("SELECT coalesce(max(id), 0) FROM directories")};
    total_.files += copied.files;
    total_.directories += copied.directories;
    total_.tags += copied.tags;
    total_.findings += copied.findings;
    return {.rows = copied, .repeated = repeated};
}

RowCounts CatalogueMerge::finish() {
    const RowCounts counted = countRows("main");
    if (counted != total_) {
        throw DatabaseError(SQLITE_ERROR, "it has not all the rows of its parts");
    }
    Statement update(database_,
                     "UPDATE scans SET found = ?1, written = ?1, unchanged = 0, removed = 0");
    update.bindUnsigned(1, counted.files).run();
    database_.execute(std::string(indexSql));
    return counted;
}

}  // namespace tool
