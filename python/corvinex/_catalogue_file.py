"""Opens a catalogue for reading, and says clearly why one cannot be opened."""

import contextlib
import os
import pathlib
import sqlite3
import stat
import urllib.parse
from collections.abc import Iterator

# What marks a catalogue, and the latest version of its tables that is understood here;
# docs/catalogue.md describes both.
APPLICATION_ID = 1668708419
SCHEMA_VERSION = 1

_MAGIC = b"SQLite format 3\0"
_LOCK_PATIENCE = 5.0  # seconds
_READING = {
    sqlite3.SQLITE_SELECT,
    sqlite3.SQLITE_READ,
    sqlite3.SQLITE_FUNCTION,
    sqlite3.SQLITE_RECURSIVE,
}


class CatalogueError(ValueError):
    """A file is no catalogue, one of a later version, or damaged."""


def decoded(text: bytes) -> str:
    """Text of the catalogue. Bytes that are no UTF-8 become lone surrogates, as in file names."""
    return text.decode("utf-8", "surrogateescape")


@contextlib.contextmanager
def errors_told(path: str) -> Iterator[None]:
    """Turns errors of SQLite into a CatalogueError that names the catalogue."""
    try:
        yield
    # Of a damaged catalogue SQLite repeats bytes that are no text, in its messages too.
    except (sqlite3.Error, OverflowError, UnicodeError) as error:
        raise CatalogueError(f"{path}: {error}") from error


def open_catalogue(path: str | os.PathLike[str]) -> sqlite3.Connection:
    """Opens a catalogue, which is never written to.

    Raises OSError (FileNotFoundError, PermissionError and so on) when the file cannot be read, and
    CatalogueError when it is no catalogue or a later version of corvinex has made it.
    """
    name = os.fsdecode(path)
    if not stat.S_ISREG(os.stat(name).st_mode):
        raise CatalogueError(f"{name}: it is no catalogue")
    with open(name, "rb") as file:
        if file.read(len(_MAGIC)) != _MAGIC:
            raise CatalogueError(f"{name}: it is no catalogue")
    place = urllib.parse.quote(os.fsencode(pathlib.Path(name).absolute()))
    with errors_told(name):
        connection = sqlite3.connect(
            f"file:{place}?mode=ro", uri=True, timeout=_LOCK_PATIENCE, isolation_level=None,
            check_same_thread=False,
        )
    try:
        with errors_told(name):
            _check(connection, name)
    except BaseException:
        connection.close()
        raise
    connection.text_factory = decoded
    return connection


def allow_reading_only(connection: sqlite3.Connection) -> None:
    """Lets a connection do nothing from now on but read what it has open.

    One to a file that is only read can still attach other files, and write to these.
    """
    connection.set_authorizer(
        lambda action, *_: sqlite3.SQLITE_OK if action in _READING else sqlite3.SQLITE_DENY
    )


def _check(connection: sqlite3.Connection, name: str) -> None:
    if connection.execute("PRAGMA application_id").fetchone()[0] != APPLICATION_ID:
        raise CatalogueError(f"{name}: it is no catalogue")
    if connection.execute("PRAGMA user_version").fetchone()[0] > SCHEMA_VERSION:
        raise CatalogueError(f"{name}: a later version of corvinex has made it")
