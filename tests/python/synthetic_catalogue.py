#!/usr/bin/python3
"""Makes a catalogue of files that do not exist, as large as one likes: what a page does with a
million files can be tried without them.

  synthetic_catalogue.py TOOL FILES CATALOGUE
"""

import pathlib
import sqlite3
import subprocess
import sys
import tempfile

# Of each file a number h below 2**32 and three below 1 that look like chance and are the same each
# time.
NUMBERS = """
CREATE TEMP TABLE number AS
WITH RECURSIVE series (n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM series WHERE n < :files)
SELECT n, (n * 2654435761) % 4294967296 AS h, (n * n % 1000003 * 7919 + n * 31) % 1000003 / 1000003.0 AS a,
       (n * n % 999983 * n + 17 * n) % 999983 / 999983.0 AS b, (n * n % 998717 * 5 * n + n) % 998717 / 998717.0 AS c
FROM series;
CREATE TEMP TABLE place (id INTEGER PRIMARY KEY, latitude REAL, longitude REAL);
INSERT INTO place VALUES (0, 59.9, 10.7), (1, 64.1, -21.9), (2, 41.9, 12.5), (3, 35.7, 139.7), (4, -33.9, 151.2),
                         (5, -1.3, 36.8), (6, -22.9, -43.2), (7, 45.5, -73.6), (8, 52.5, 13.4), (9, 19.4, -99.1);
"""
# One file in three is a photo with a camera, a time and a place.
FILES = """
INSERT INTO files (id, path, file, scan_id, mtime_ns, inode, size, modified, status, reason, container, byte_order,
                   header_offset, width, height, pages, taken, latitude, longitude, make, model, derived)
SELECT n, '/store/box-' || (n / 1000) || '/' || n || '.tif', 'box-' || (n / 1000) || '/' || n || '.tif', 1,
       n, n, CAST(2000 * pow(10, 2.5 * (a + b)) AS INTEGER), '2024-01-01T00:00:00Z',
       CASE WHEN h % 100 < 5 THEN 'damaged' WHEN h % 100 < 15 THEN 'warnings' WHEN h % 1000 = 999 THEN 'unreadable'
            ELSE 'ok' END,
       CASE WHEN h % 1000 = 999 THEN 'Permission denied' END,
       CASE WHEN n % 3 = 0 THEN 'JPEG' WHEN n % 37 = 0 THEN 'BigTIFF' ELSE 'TIFF' END, 'little-endian', 0,
       CAST(200 + 6000 * a AS INTEGER), CAST(200 + 5000 * b AS INTEGER), 1,
       CASE WHEN n % 3 = 0 THEN CAST(2024 - 25 * a * b AS INTEGER) || '-0' || (1 + h % 9) || '-15T12:00:00' END,
       CASE WHEN n % 3 = 0 THEN place.latitude + 15 * (a + c - 1) * b END,
       CASE WHEN n % 3 = 0 THEN place.longitude + 25 * (b + c - 1) * a END,
       CASE WHEN n % 3 = 0 THEN 'Example Optics' END,
       CASE WHEN n % 3 = 0 THEN 'EO-' || CAST(1 + 40 * a * b * c AS INTEGER) END,
       '{"width":' || CAST(200 + 6000 * a AS INTEGER) || ',"height":' || CAST(200 + 5000 * b AS INTEGER) || ',"pages":1}'
FROM number JOIN place ON place.id = CAST(10 * b * c AS INTEGER);
"""
DIRECTORIES = """
INSERT INTO directories (id, file_id, position, path, kind, offset, entries, compression, photometric, strips, bytes,
                         derived)
SELECT n, n, 0, '0', 'main', 8, 13,
       CASE CAST(9 * a * b AS INTEGER) WHEN 0 THEN 'Uncompressed' WHEN 1 THEN 'LZW' WHEN 2 THEN 'Deflate'
            WHEN 3 THEN 'JPEG' ELSE 'PackBits' END,
       'RGB', 1, 1000, '{"compression":"LZW","photometric":"RGB","strips":1,"bytes":1000}'
FROM number;
"""
TAGS = """
WITH tag (number, name, type) AS (VALUES
    (256, 'ImageWidth', 'SHORT'), (257, 'ImageLength', 'SHORT'), (258, 'BitsPerSample', 'SHORT'),
    (259, 'Compression', 'SHORT'), (262, 'PhotometricInterpretation', 'SHORT'), (271, 'Make', 'ASCII'),
    (272, 'Model', 'ASCII'), (273, 'StripOffsets', 'LONG'), (277, 'SamplesPerPixel', 'SHORT'),
    (282, 'XResolution', 'RATIONAL'), (283, 'YResolution', 'RATIONAL'), (296, 'ResolutionUnit', 'SHORT'),
    (306, 'DateTime', 'ASCII'))
INSERT INTO tags (directory_id, number, entry, name, type, count, offset, json, integer, real, text, meaning, truncated)
SELECT n, tag.number, tag.number - 256, tag.name, tag.type, 1, 100,
       CASE tag.number WHEN 258 THEN CASE h % 3 WHEN 0 THEN '[8,8,8]' WHEN 1 THEN '[8]' ELSE '[16]' END
                       ELSE '[300,1]' END,
       CASE tag.number WHEN 277 THEN CASE h % 3 WHEN 0 THEN 3 ELSE 1 END WHEN 296 THEN 2
                       WHEN 256 THEN h % 8000 WHEN 257 THEN h % 6000 END,
       CASE WHEN tag.number IN (282, 283) THEN
            CASE CAST(5 * a * c AS INTEGER) WHEN 0 THEN 300 WHEN 1 THEN 600 WHEN 2 THEN 72 WHEN 3 THEN 400 ELSE 96 END
            + (h % 9973 = 0) * (h % 4999) END,
       CASE WHEN tag.type = 'ASCII' THEN 'text ' || n END,
       CASE tag.number WHEN 306 THEN CAST(2020 - 30 * a * c AS INTEGER) || '-06-15 12:00:00' END, 0
FROM number, tag;
"""
FINDINGS = """
INSERT INTO findings (file_id, position, id, severity, directory, tag, arguments, text)
SELECT n, 0, 'valuePastEnd', 'error', '0', 320, '[1000000,3072]', 'The value of ColorMap (320) ends past the end.'
FROM number WHERE h % 100 < 5 UNION ALL
SELECT n, 1, 'more', 'error', '0', NULL, '["valuePastEnd",7]', '7 more.' FROM number WHERE h % 100 < 2 UNION ALL
SELECT n, 2, 'tagType', 'warning', '0', 270, '[1]', 'ImageDescription (270) has type 1.' FROM number
WHERE h % 100 < 15 UNION ALL
SELECT n, 3, 'resolutionUnknown', 'note', '0', NULL, '[282]', 'The resolution is not told.' FROM number
WHERE h % 100 < 60;
"""
END = """
CREATE INDEX IF NOT EXISTS tags_by_number ON tags (number, integer, text);
CREATE INDEX IF NOT EXISTS findings_by_id ON findings (id);
CREATE INDEX IF NOT EXISTS files_by_status ON files (status);
"""


def empty_catalogue(tool: str, path: pathlib.Path) -> None:
    """A catalogue of a folder without files."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([tool, "scan", "-q", folder, "-o", path], check=True)


def make(tool: str, files: int, path: pathlib.Path) -> None:
    """Fills a new catalogue with rows of so many files, with one image of 13 tags each."""
    empty_catalogue(tool, path)
    database = sqlite3.connect(path)
    database.execute("PRAGMA synchronous = OFF")
    database.executescript(NUMBERS.replace(":files", str(files)))
    for sql in (FILES, DIRECTORIES, TAGS, FINDINGS, END):
        database.executescript(sql)
    database.close()


if __name__ == "__main__":
    make(sys.argv[1], int(sys.argv[2]), pathlib.Path(sys.argv[3]))
