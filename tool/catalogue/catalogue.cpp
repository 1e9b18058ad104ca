#include "tool/catalogue/catalogue.h"

#include <sqlite3.h>

#include <algorithm>
#include <ctime>
#include <vector>

#include "inspect/reading/charset.h"
#include "inspect/record/record_head.h"
#include "inspect/record/value_json.h"
#include "tool/catalogue/schema.h"

namespace tool {
namespace {

// With filesInTransaction: enough that a commit costs little beside its rows, and little enough
// that an interrupt is followed within a moment.
constexpr std::uint64_t rowsInTransaction = 200'000;

std::string now() {
    return corvinex::inspect::isoTime(std::time(nullptr));
}

/// Text where the bytes are UTF-8, else the bytes.
void bindName(Statement& statement, int parameter, const std::string& name) {
    if (corvinex::inspect::reading::isUtf8(name)) {
        statement.bind(parameter, std::string_view(name));
    } else {
        statement.bind(parameter, std::as_bytes(std::span(name)));
    }
}

void bindText(Statement& statement, int parameter, std::string_view text) {
    if (text.empty()) {
        statement.bindNull(parameter);
    } else {
        statement.bind(parameter, text);
    }
}

void bindNumber(Statement& statement, int parameter, const std::optional<std::uint64_t>& number) {
    if (number) {
        statement.bindUnsigned(parameter, *number);
    } else {
        statement.bindNull(parameter);
    }
}

}  // namespace

Catalogue::Statements::Statements(Database& database)
    : find(database,
           "SELECT status, size, mtime_ns, inode, id, scan_id FROM files WHERE path = ?1"),
      owner(database, "SELECT id, scan_id FROM files WHERE path = ?1"),
      insertFile(database,
                 "INSERT INTO files (id, path, file, file_bytes, scan_id, mtime_ns, inode, size, "
                 "modified, status, reason, container, byte_order, header_offset, width, height, "
                 "pages, taken, latitude, longitude, altitude, make, model, lens, crs, derived) "
                 "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16, "
                 "?17, ?18, ?19, ?20, ?21, ?22, ?23, ?24, ?25, ?26) ON CONFLICT (path) DO NOTHING"),
      insertDirectory(
          database,
          "INSERT INTO directories (id, file_id, position, path, kind, parent_id, offset, "
          "entries, compression, photometric, strips, tiles, bytes, derived) VALUES "
          "(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14)"),
      insertTags(database, TagSource::insertSql()),
      insertFinding(database,
                    "INSERT INTO findings (file_id, position, id, severity, directory, tag, "
                    "arguments, text) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)"),
      deleteTags(database,
                 "DELETE FROM tags WHERE directory_id IN "
                 "(SELECT id FROM directories WHERE file_id = ?1)"),
      deleteDirectories(database, "DELETE FROM directories WHERE file_id = ?1"),
      deleteFindings(database, "DELETE FROM findings WHERE file_id = ?1"),
      deleteFile(database, "DELETE FROM files WHERE id = ?1") {}

Catalogue::Catalogue(const std::string& path) : database_(path) {
    open();
    tagSource_.emplace(database_);
    statements_.emplace(database_);
    isNew_ = database_.number("SELECT EXISTS (SELECT 1 FROM files)") == 0;
}

void Catalogue::open() {
    const std::int64_t objects = database_.number("SELECT count(*) FROM sqlite_master");
    if (objects == 0) {
        // What an interrupted first run has left is as good as nothing.
        database_.execute("PRAGMA page_size = 8192; PRAGMA journal_mode = WAL;");
        database_.execute("BEGIN IMMEDIATE");
        if (database_.number("SELECT count(*) FROM sqlite_master") == 0) {
            database_.execute(std::string(schemaSql));
            database_.execute("PRAGMA application_id = " + std::to_string(catalogueMark));
            database_.execute("PRAGMA user_version = " + std::to_string(schemaVersion));
        }
        database_.execute("COMMIT");
    }
    if (database_.number("PRAGMA application_id") != catalogueMark) {
        throw DatabaseError(SQLITE_NOTADB, "it is no catalogue");
    }
    if (database_.number("PRAGMA user_version") > schemaVersion) {
        throw DatabaseError(SQLITE_ERROR, "a later version of the tool has made it");
    }
    if (database_.number("SELECT count(*) FROM pragma_table_info('scans') WHERE name = "
                         "'header_offset'") == 0) {
        database_.execute("ALTER TABLE scans ADD COLUMN header_offset");
    }
    database_.execute(
        "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA cache_size = -16384;");
}

Catalogue::State Catalogue::find(const std::string& path, const std::optional<FileStamp>& stamp,
                                 bool readsAll) {
    if (isNew_) {
        return State::Unknown;
    }
    const std::lock_guard lock(mutex_);
    Statement& find = statements_->find;
    bindName(find, 1, path);
    if (!find.next()) {
        return State::Unknown;
    }
    const std::int64_t id = find.integer(4);
    const std::int64_t scan = find.integer(5);
    const bool isOfThisScan = scan == scan_;
    std::optional<FileStamp> known;
    // The permission to read a file may change without a trace in its stamp.
    if (find.text(0) != unreadable && !find.isNull(2)) {
        known = FileStamp{.size = static_cast<std::uint64_t>(find.integer(1)),
                          .modified = find.integer(2),
                          .inode = static_cast<std::uint64_t>(find.integer(3))};
    }
    find.reset();
    if (!isOfThisScan && (readsAll || !known || known != stamp)) {
        return State::Changed;
    }
    if (isOfThisScan || !unchangedFiles_.insert(id)) {
        ++repeated_;
        return State::Repeated;
    }
    ++unchanged_;
    readOtherwise_ += scansWithOtherOptions_.contains(scan) ? 1 : 0;
    return State::Unchanged;
}

std::uint64_t Catalogue::writtenWith(std::string_view status) const {
    const auto number = byStatus_.find(status);
    return number == byStatus_.end() ? 0 : number->second;
}

void Catalogue::beginScan(const ScanFacts& facts) {
    const std::lock_guard lock(mutex_);
    const std::string started = now();
    Statement insert(database_,
                     "INSERT INTO scans (started, version, folder, max_values, header_offset) "
                     "VALUES (?1, ?2, ?3, ?4, ?5)");
    insert.bind(1, std::string_view(started)).bind(2, std::string_view(facts.version));
    bindName(insert, 3, facts.folder);
    insert.bindUnsigned(4, facts.maxValues);
    bindNumber(insert, 5, facts.headerOffset);
    insert.run();
    scan_ = database_.lastId();
    Statement others(database_,
                     "SELECT other.id FROM scans AS other JOIN scans AS mine ON mine.id = ?1 WHERE "
                     "other.max_values IS NOT mine.max_values OR "
                     "other.header_offset IS NOT mine.header_offset");
    others.bind(1, scan_);
    while (others.next()) {
        scansWithOtherOptions_.insert(others.integer(0));
    }
}

void Catalogue::begin() {
    database_.execute("BEGIN IMMEDIATE");
    nextDirectory_ = database_.number("SELECT coalesce(max(id), 0) + 1 FROM directories");
}

void Catalogue::commit() {
    const std::lock_guard lock(mutex_);
    if (database_.isInTransaction()) {
        database_.execute("COMMIT");
        hasCommitted_ = true;
    }
    pendingFiles_ = 0;
    pendingRows_ = 0;
}

void Catalogue::write(const RowBlock& block) {
    {
        const std::lock_guard lock(mutex_);
        if (!database_.isInTransaction()) {
            begin();
        }
        if (block.file) {
            writeFile(*block.file);
        }
        if (!isSkipping_) {
            std::ranges::for_each(block.directories,
                                  [this](const DirectoryRow& row) { writeDirectory(row); });
            writeTags(block);
            std::ranges::for_each(block.findings,
                                  [this](const FindingRow& row) { writeFinding(row); });
            pendingRows_ += block.directories.size() + block.tags.size() + block.findings.size();
        }
        if (block.isLast) {
            ++(isSkipping_ ? repeated_ : written_);
            ++pendingFiles_;
        }
    }
    if (block.isLast &&
        (pendingFiles_ >= filesInTransaction || pendingRows_ >= rowsInTransaction)) {
        commit();
    }
}

void Catalogue::writeFile(const FileRow& row) {
    isSkipping_ = false;
    nextFinding_ = 0;
    firstDirectory_ = nextDirectory_;
    if (insertFile(row, std::nullopt)) {
        ++byStatus_[std::string(row.status)];
        return;
    }
    Statement& owner = statements_->owner;
    bindName(owner, 1, row.path);
    owner.next();
    const std::int64_t id = owner.integer(0);
    isSkipping_ = owner.integer(1) == scan_;
    owner.reset();
    if (isSkipping_) {
        return;
    }
    removeRows(id);
    insertFile(row, id);
    ++byStatus_[std::string(row.status)];
    if (unchangedFiles_.contains(id)) {
        // It was found twice, and has changed in between.
        unchangedFiles_.erase(id);
        --unchanged_;
        ++repeated_;
    }
}

bool Catalogue::insertFile(const FileRow& row, std::optional<std::int64_t> id) {
    const std::string name = corvinex::inspect::validUtf8(row.name);
    Statement& insert = statements_->insertFile;
    insert.bindOptional(1, id);
    bindName(insert, 2, row.path);
    insert.bind(3, std::string_view(name));
    if (name == row.name) {
        insert.bindNull(4);
    } else {
        insert.bind(4, std::as_bytes(std::span(row.name)));
    }
    insert.bind(5, scan_);
    if (row.stamp) {
        insert.bind(6, row.stamp->modified).bind(7, static_cast<std::int64_t>(row.stamp->inode));
    } else {
        insert.bindNull(6).bindNull(7);
    }
    bindNumber(insert, 8, row.size);
    bindText(insert, 9, row.modified);
    bindText(insert, 10, row.status);
    bindText(insert, 11, row.reason);
    bindText(insert, 12, row.container);
    bindText(insert, 13, row.byteOrder);
    bindNumber(insert, 14, row.headerOffset);
    bindNumber(insert, 15, row.width);
    bindNumber(insert, 16, row.height);
    bindNumber(insert, 17, row.pages);
    bindText(insert, 18, row.taken);
    insert.bindOptional(19, row.latitude);
    insert.bindOptional(20, row.longitude);
    insert.bindOptional(21, row.altitude);
    bindText(insert, 22, row.make);
    bindText(insert, 23, row.model);
    bindText(insert, 24, row.lens);
    bindText(insert, 25, row.crs);
    insert.bind(26, std::string_view(row.derived)).run();
    file_ = id ? *id : database_.lastId();
    return database_.changes() == 1;
}

void Catalogue::writeDirectory(const DirectoryRow& row) {
    const std::int64_t id = firstDirectory_ + row.position;
    Statement& insert = statements_->insertDirectory;
    insert.bind(1, id).bind(2, file_).bind(3, std::int64_t{row.position});
    insert.bind(4, std::string_view(row.path)).bind(5, row.kind);
    insert.bindOptional(6, row.parent ? std::optional(firstDirectory_ + *row.parent)
                                      : std::optional<std::int64_t>());
    insert.bindUnsigned(7, row.offset).bindUnsigned(8, row.entries);
    bindText(insert, 9, row.compression);
    bindText(insert, 10, row.photometric);
    bindNumber(insert, 11, row.strips);
    bindNumber(insert, 12, row.tiles);
    bindNumber(insert, 13, row.bytes);
    insert.bind(14, std::string_view(row.derived)).run();
    nextDirectory_ = id + 1;
}

void Catalogue::writeTags(const RowBlock& block) {
    if (!block.tags.empty()) {
        tagSource_->choose(block, firstDirectory_);
        statements_->insertTags.run();
    }
}

void Catalogue::writeFinding(const FindingRow& row) {
    Statement& insert = statements_->insertFinding;
    insert.bind(1, file_).bind(2, nextFinding_++).bind(3, row.id).bind(4, row.severity);
    insert.bind(5, std::string_view(row.directory));
    insert.bindOptional(6, row.tag ? std::optional<std::int64_t>(*row.tag) : std::nullopt);
    insert.bind(7, std::string_view(row.arguments)).bind(8, std::string_view(row.text)).run();
}

void Catalogue::removeRows(std::int64_t file) {
    statements_->deleteTags.bind(1, file).run();
    statements_->deleteDirectories.bind(1, file).run();
    statements_->deleteFindings.bind(1, file).run();
    statements_->deleteFile.bind(1, file).run();
}

void Catalogue::checkRows() {
    commit();
    const std::lock_guard lock(mutex_);
    std::uint64_t rows = 0;
    if (written_ != 0) {
        rows = static_cast<std::uint64_t>(database_.number(
            "SELECT count(*) FROM files WHERE scan_id = " + std::to_string(scan_)));
    }
    Statement list(database_, "SELECT id FROM files");
    while (unchanged_ != 0 && list.next()) {
        rows += unchangedFiles_.contains(list.integer(0)) ? 1 : 0;
    }
    if (rows != written_ + unchanged_) {
        throw DatabaseError(SQLITE_ERROR, "it has " + std::to_string(rows) + " rows of the " +
                                              std::to_string(written_ + unchanged_) +
                                              " files that were found");
    }
}

void Catalogue::finishScan(const ScanCounts& counts) {
    const std::lock_guard lock(mutex_);
    database_.execute(std::string(indexSql));
    const std::string finished = now();
    Statement update(database_,
                     "UPDATE scans SET finished = ?1, found = ?2, written = ?3, unchanged = ?4, "
                     "removed = ?5 WHERE id = ?6");
    update.bind(1, std::string_view(finished))
        .bindUnsigned(2, counts.found)
        .bindUnsigned(3, counts.written)
        .bindUnsigned(4, counts.unchanged)
        .bindUnsigned(5, counts.removed)
        .bind(6, scan_)
        .run();
    leaveOneFile();
}

void Catalogue::leaveOneFile() {
    try {
        database_.execute("PRAGMA busy_timeout = 0; PRAGMA journal_mode = DELETE;");
    } catch (const DatabaseError&) {
        // Somebody searches it right now: the next scan tries again.
    }
}

}  // namespace tool
