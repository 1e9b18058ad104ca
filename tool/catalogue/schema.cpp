#include "tool/catalogue/schema.h"

namespace tool {

// Columns without a type keep what is stored as it is: a path that is no UTF-8 as bytes, a field
// type without a name as a number, and a count or offset of 2^63 or more as its digits.
const std::string_view schemaSql = R"sql(
CREATE TABLE scans (
    id INTEGER PRIMARY KEY,
    started TEXT NOT NULL,
    finished TEXT,
    version TEXT NOT NULL,
    folder NOT NULL,
    max_values INTEGER NOT NULL,
    found INTEGER,
    written INTEGER,
    unchanged INTEGER,
    removed INTEGER,
    header_offset
);
CREATE TABLE files (
    id INTEGER PRIMARY KEY,
    path NOT NULL UNIQUE,
    file TEXT NOT NULL,
    file_bytes BLOB,
    scan_id INTEGER NOT NULL REFERENCES scans (id),
    mtime_ns INTEGER,
    inode INTEGER,
    size INTEGER,
    modified TEXT,
    status TEXT NOT NULL,
    reason TEXT,
    container TEXT,
    byte_order TEXT,
    header_offset INTEGER,
    width,
    height,
    pages,
    taken TEXT,
    latitude REAL,
    longitude REAL,
    altitude REAL,
    make TEXT,
    model TEXT,
    lens TEXT,
    crs TEXT,
    derived TEXT NOT NULL
);
CREATE TABLE directories (
    id INTEGER PRIMARY KEY,
    file_id INTEGER NOT NULL REFERENCES files (id),
    position INTEGER NOT NULL,
    path TEXT NOT NULL,
    kind TEXT NOT NULL,
    parent_id INTEGER REFERENCES directories (id),
    offset,
    entries INTEGER NOT NULL,
    compression TEXT,
    photometric TEXT,
    strips,
    tiles,
    bytes,
    derived TEXT NOT NULL,
    UNIQUE (file_id, position)
);
CREATE TABLE tags (
    directory_id INTEGER NOT NULL REFERENCES directories (id),
    number INTEGER NOT NULL,
    entry INTEGER NOT NULL,
    name TEXT,
    field TEXT,
    type NOT NULL,
    count NOT NULL,
    offset,
    json TEXT NOT NULL,
    integer INTEGER,
    real REAL,
    text TEXT,
    meaning TEXT,
    charset TEXT,
    rest BLOB,
    truncated INTEGER NOT NULL,
    directories TEXT,
    PRIMARY KEY (directory_id, number, entry)
) WITHOUT ROWID;
CREATE TABLE findings (
    file_id INTEGER NOT NULL REFERENCES files (id),
    position INTEGER NOT NULL,
    id TEXT NOT NULL,
    severity TEXT NOT NULL,
    directory TEXT NOT NULL,
    tag INTEGER,
    arguments TEXT NOT NULL,
    text TEXT NOT NULL,
    PRIMARY KEY (file_id, position)
) WITHOUT ROWID;

CREATE VIEW images AS
SELECT
    f.id AS file_id,
    d.id AS directory_id,
    f.file AS file,
    d.path AS directory,
    f.status AS status,
    coalesce(
        (SELECT integer FROM tags WHERE directory_id = d.id AND number = 256),
        CASE WHEN f.container = 'JPEG' AND d.path = '0' THEN f.width END) AS width,
    coalesce(
        (SELECT integer FROM tags WHERE directory_id = d.id AND number = 257),
        CASE WHEN f.container = 'JPEG' AND d.path = '0' THEN f.height END) AS height,
    (SELECT json_extract(json, '$[0]') FROM tags WHERE directory_id = d.id AND number = 258) AS bits,
    (SELECT integer FROM tags WHERE directory_id = d.id AND number = 277) AS samples,
    d.compression AS compression,
    d.photometric AS photometric,
    f.pages AS pages,
    (SELECT text FROM tags WHERE directory_id = d.id AND number = 305) AS software,
    (SELECT coalesce(meaning, text) FROM tags WHERE directory_id = d.id AND number = 306) AS date
FROM directories AS d JOIN files AS f ON f.id = d.file_id
WHERE d.kind = 'main';

CREATE VIEW photos AS
SELECT
    f.id AS file_id,
    f.file AS file,
    f.status AS status,
    f.make AS make,
    f.model AS model,
    f.lens AS lens,
    (SELECT real FROM tags WHERE directory_id = e.id AND number = 33434) AS exposure,
    (SELECT real FROM tags WHERE directory_id = e.id AND number = 33437) AS f_number,
    (SELECT integer FROM tags WHERE directory_id = e.id AND number = 34855) AS iso,
    (SELECT real FROM tags WHERE directory_id = e.id AND number = 37386) AS focal_length,
    f.taken AS taken,
    f.latitude AS latitude,
    f.longitude AS longitude,
    f.altitude AS altitude
FROM files AS f LEFT JOIN directories AS e ON e.file_id = f.id AND e.path = '0.exif'
WHERE e.id IS NOT NULL OR f.make IS NOT NULL OR f.taken IS NOT NULL OR f.latitude IS NOT NULL;
)sql";

const std::string_view indexSql = R"sql(
CREATE INDEX IF NOT EXISTS tags_by_number ON tags (number, integer, text);
CREATE INDEX IF NOT EXISTS findings_by_id ON findings (id);
CREATE INDEX IF NOT EXISTS files_by_status ON files (status);
)sql";

}  // namespace tool
