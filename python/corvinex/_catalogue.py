"""Catalogues of `corvinex scan` as data frames."""

import functools
import operator
import os
import sqlite3
from collections.abc import Mapping, Sequence
from types import TracebackType
from typing import Any

import pandas as pd  # type: ignore[import]

from corvinex import _native
from corvinex._arguments import Key
from corvinex._catalogue_file import (
    CatalogueError,
    allow_reading_only,
    errors_told,
    open_catalogue,
)
from corvinex._columns import COLUMNS, Kind, kind_of_values, typed

__all__ = ["Catalogue", "CatalogueError", "catalogue"]

# Rows that are Python objects at one time; a frame takes a fraction of their memory.
_CHUNK = 50_000

# The zone that a camera tells, which a column of local times has no place for.
_OFFSET = """
CASE WHEN taken GLOB '*[0-9][+-][0-9][0-9]:[0-9][0-9]' THEN substr(taken, -6)
WHEN taken GLOB '*[0-9]Z' THEN '+00:00' END AS taken_offset
"""
_TAGS = """
SELECT d.file_id AS file_id, f.file AS file, t.directory_id AS directory_id, d.path AS directory,
       t.number AS number, t.entry AS entry, t.name AS name, t.field AS field, t.type AS type,
       t.count AS count, t.offset AS offset, t.integer AS integer, t.real AS real, t.text AS text,
       t.meaning AS meaning, t.json AS json, t.charset AS charset, t.rest AS rest,
       t.truncated AS truncated, t.directories AS directories
FROM tags AS t JOIN directories AS d ON d.id = t.directory_id JOIN files AS f ON f.id = d.file_id
"""


def catalogue(path: str | os.PathLike[str]) -> "Catalogue":
    """Opens a catalogue that `corvinex scan` has written, for reading.

    Raises FileNotFoundError or another OSError when the file cannot be opened, and CatalogueError
    (a ValueError) when it is no catalogue, one of a later version, or damaged.
    """
    return Catalogue(path)


class Catalogue:
    """The tables and views of a catalogue as pandas data frames, with a row for each of theirs.

    The columns are those of the tables. Their types do not depend on the rows: whole numbers are
    Int64 (UInt64 where a file may tell 2**63 or more: sizes of images in `files`, counts, offsets),
    others float64, texts and JSON string, truth boolean, bytes object. What is no number in a column of
    numbers is missing there, as what half a bit makes of `bits`.

    Times are datetime64[ns, UTC]. Those that a camera tells are datetime64[ns] without a zone; in
    `files` and `photos` the column `taken_offset` has the distance from UTC ("+01:00") where the
    file tells it. What is no time, or none between 1678 and 2261, is NaT.

    `path` is a name that can be opened, with surrogates for bytes that are no UTF-8; `file` is the
    name as the scan was led to it, with U+FFFD for them.

    A frame is read when it is first asked for, and kept. Use the catalogue as a context manager, or
    call `close`.
    """

    def __init__(self, path: str | os.PathLike[str]) -> None:
        self._name = os.fsdecode(path)
        self._database: sqlite3.Connection | None = open_catalogue(path)
        allow_reading_only(self._database)

    @functools.cached_property
    def files(self) -> pd.DataFrame:
        """A row for each file, with the index `id`."""
        return self._read(f"SELECT *, {_OFFSET} FROM files ORDER BY id", "files").set_index("id")

    @functools.cached_property
    def directories(self) -> pd.DataFrame:
        """A row for each directory of a file, with the index `id`."""
        return self._read("SELECT * FROM directories ORDER BY id", "directories").set_index("id")

    @functools.cached_property
    def findings(self) -> pd.DataFrame:
        """A row for each finding, with the name of its file."""
        sql = (
            "SELECT g.file_id AS file_id, f.file AS file, g.position AS position, g.id AS id, "
            "g.severity AS severity, g.directory AS directory, g.tag AS tag, "
            "g.arguments AS arguments, g.text AS text FROM findings AS g "
            "JOIN files AS f ON f.id = g.file_id ORDER BY g.file_id, g.position"
        )
        return self._read(sql, "findings")

    @functools.cached_property
    def images(self) -> pd.DataFrame:
        """A row for each directory of a main chain: size in pixels, bits, compression and so on."""
        return self._read("SELECT * FROM images ORDER BY file_id, directory_id", "images")

    @functools.cached_property
    def photos(self) -> pd.DataFrame:
        """A row for each file with an EXIF directory, a camera, a time or a place.

        `exposure` is in seconds, `focal_length` in mm, `latitude` and `longitude` in degrees
        (north and east positive), `altitude` in m.
        """
        return self._read(f"SELECT *, {_OFFSET} FROM photos ORDER BY file_id", "photos")

    @functools.cached_property
    def scans(self) -> pd.DataFrame:
        """A row for each run of `corvinex scan`, with the index `id`."""
        return self._read("SELECT * FROM scans ORDER BY id", "scans").set_index("id")

    def tags(self, name: Key | None = None) -> pd.DataFrame:
        """A row for each entry of a directory that has a tag, or of all without one.

        `name` is the tag's number, or its name by the standard or in `corvinex.read`, or a short
        one such as "ICC", without regard to case; a number is found faster. Without it a large
        catalogue gives a frame that may not fit into memory. `file` and `directory` tell where the
        entry stands; `json` is its value, exactly. Raises ValueError for a name that no tag has.
        """
        order = " ORDER BY t.directory_id, t.entry"
        if name is None:
            return self._read(_TAGS + order, "tags")
        if isinstance(name, str):
            if "." in name or (reason := _native.why_no_tag(name)):
                raise ValueError(reason if "." not in name else f"{name!r} is no name of a tag")
            if name[0].isdigit():  # a number as the command line takes it; no name begins so
                return self.tags(int(name, 16 if name[:2].lower() == "0x" else 10))
            full = _native.full_tag_name(name)
            condition = "t.name = ?1 COLLATE NOCASE OR t.field = ?1 COLLATE NOCASE"
            return self._read(f"{_TAGS} WHERE {condition}{order}", "tags", (full,))
        if isinstance(name, bool) or not 0 <= operator.index(name) < 1 << 16:
            raise ValueError(f"{name} is no number of a tag")
        return self._read(f"{_TAGS} WHERE t.number = ?{order}", "tags", (operator.index(name),))

    def query(self, sql: str, parameters: Sequence[Any] | Mapping[str, Any] = ()) -> pd.DataFrame:
        """What a query gives. A column's type follows from its values, which it does not change.

        Whole numbers are Int64, numbers float64, texts string; a column that mixes them is object.
        Raises CatalogueError when SQLite refuses the query; nothing can be written.
        """
        return self._read(sql, None, parameters)

    def close(self) -> None:
        """Closes the catalogue. Frames that were read stay."""
        if self._database is not None:
            self._database.close()
            self._database = None

    def __enter__(self) -> "Catalogue":
        return self

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"Catalogue({self._name!r}{', closed' if self._database is None else ''})"

    def _read(
        self, sql: str, source: str | None, parameters: Sequence[Any] | Mapping[str, Any] = ()
    ) -> pd.DataFrame:
        if self._database is None:
            raise ValueError(f"{self._name}: the catalogue is closed")
        with errors_told(self._name):
            cursor = self._database.execute(sql, parameters)
            names = [column[0] for column in cursor.description or ()]
            if not names:
                raise CatalogueError(f"{self._name}: the query gives no table")
            if source is None:
                return _frame(names, cursor.fetchall(), {})
            kinds = COLUMNS[source]
            chunks = []
            while rows := cursor.fetchmany(_CHUNK):
                chunks.append(_frame(names, rows, kinds))
        return pd.concat(chunks, ignore_index=True) if chunks else _frame(names, [], kinds)


def _frame(
    names: list[str], rows: list[tuple[Any, ...]], kinds: Mapping[str, Kind]
) -> pd.DataFrame:
    columns = []
    for name, values in zip(names, zip(*rows) if rows else [()] * len(names), strict=True):
        # A later version's tables may have columns that are not known here.
        columns.append(pd.Series(typed(values, kinds.get(name) or kind_of_values(values))))
    # Not by name: a query may give a name to several columns.
    return pd.concat(columns, axis=1, keys=range(len(names))).set_axis(names, axis=1)
