#!/usr/bin/python3
"""Makes a catalogue of files that do not exist, as large as one likes: what a page does with a million files can
be tried without them.

  synthetic_catalogue.py TOOL FILES CATALOGUE
"""

import pathlib
import sqlite3
import subprocess
import sys
import tempfile

# A number for each file that looks like chance and is the same each time.
NUMBERS = """
CREATE TEMP TABLE number AS
WITH RECURSIVE series (n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM series WHERE n < :files)
SELECT n, (n * 2654435761) % 4294967296 AS h FROM series;
"""
FILES = """
INSERT INTO files (id, path, file, scan_id, mtime_ns, inode, size, modified, status, reason, container, byte_order,
                   header_offset, width, height, pages, taken, latitude, longitude, make, model, derived)
SELECT n, '/store/box-' || (n / 1000) || '/' || n || '.tif', 'box-' || (n / 1000) || '/' || n || '.tif', 1,
       n, n, 1000 + h % 40000000, '2024-01-01T00:00:00Z',
       CASE WHEN h % 100 < 5 THEN 'damaged' WHEN h % 100 < 15 THEN 'warnings' WHEN h % 1000 = 999 THEN 'unreadable'
            ELSE 'ok' END,
       CASE WHEN h % 1000 = 999 THEN 'Permission denied' END,
       CASE WHEN n % 3 = 0 THEN 'JPEG' ELSE 'TIFF' END, 'little-endian', 0, 100 + h % 8000, 100 + h % 6000, 1,
       CASE WHEN n % 3 = 0 THEN (1995 + h % 30) || '-0' || (1 + h % 9) || '-15T12:00:00' END,
       CASE WHEN n % 3 = 0 THEN (h % 1700000) / 10000.0 - 85 END,
       CASE WHEN n % 3 = 0 THEN (h / 7 % 3590000) / 10000.0 - 179 END,
       CASE WHEN n % 3 = 0 THEN 'Example ' || (h % 9) END, CASE WHEN n % 3 = 0 THEN 'EO-' || (h % 200) END,
       '{"width":' || (100 + h % 8000) || ',"height":' || (100 + h % 6000) || ',"pages":1,"taken":"2024"}'
FROM number;
"""
DIRECTORIES = """
INSERT INTO directories (id, file_id, position, path, kind, offset, entries, compression, photometric, strips, bytes,
                         derived)
SELECT n, n, 0, '0', 'main', 8, 13,
       CASE h % 5 WHEN 0 THEN 'LZW' WHEN 1 THEN 'PackBits' WHEN 2 THEN 'Deflate' ELSE 'Uncompressed' END,
       'RGB', 1, h % 40000000, '{"compression":"LZW","photometric":"RGB","strips":1,"bytes":1000}'
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
       CASE WHEN tag.number IN (282, 283) THEN 100.0 * (1 + h % 6) + (h % 97 = 0) * (h % 4999) END,
       CASE WHEN tag.type = 'ASCII' THEN 'text ' || n END,
       CASE tag.number WHEN 306 THEN (1995 + h % 30) || '-06-15 12:00:00' END, 0
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
