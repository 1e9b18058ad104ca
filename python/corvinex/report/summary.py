"""What the report page tells of a catalogue, as plain data.

Every list has an end: it is cut after a fixed number of rows and tells how many there are.
"""

import sqlite3
from dataclasses import dataclass

from corvinex.report.distributions import Distributions, distributions
from corvinex.report.explanations import Explanation, explanations

MOST_FILES_LISTED = 300
MOST_EXAMPLES = 3

# Every status, the worst behind; docs/tool.md tells the same.
STATUSES = (
    ("ok", "read whole, at most notes"),
    ("warnings", "read whole, departs from a standard, or readers differ"),
    ("no-metadata", "a sound JPEG without an EXIF block"),
    ("damaged", "something that the file tells cannot be read as told; the rest is there"),
    ("not-an-image", "neither TIFF nor JPEG"),
    ("unreadable", "could not be opened or read"),
)
LISTED_STATUSES = (
    ("damaged", "Damaged files"),
    ("unreadable", "Unreadable files"),
    ("not-an-image", "Files that are no images"),
)
_SEVERITIES = ("error", "warning", "note")

# A row "more" stands for as many findings of the rule that it names.
_MORE = """
SELECT json_extract(arguments, '$[0]'), sum(json_extract(arguments, '$[1]'))
FROM findings WHERE id = 'more' GROUP BY 1
"""
_EXAMPLES = """
SELECT f.file, f.file_bytes, g.directory, g.text
FROM (SELECT file_id, min(position) AS position FROM findings WHERE id = ?1
      GROUP BY file_id ORDER BY file_id LIMIT ?2) AS first
JOIN findings AS g ON g.file_id = first.file_id AND g.position = first.position
JOIN files AS f ON f.id = first.file_id ORDER BY first.file_id
"""
_RULES_OF_FILE = """
SELECT CASE id WHEN 'more' THEN json_extract(arguments, '$[0]') ELSE id END AS rule,
       sum(CASE id WHEN 'more' THEN json_extract(arguments, '$[1]') ELSE 1 END)
FROM findings WHERE file_id = ? AND severity = 'error' GROUP BY rule ORDER BY min(position)
"""


@dataclass(frozen=True)
class Scan:
    """The last run of `corvinex scan`; times are texts in UTC. One broken off has not finished."""

    started: str
    finished: str | None
    version: str


@dataclass(frozen=True)
class StatusTotal:
    """The files of one status, and their bytes."""

    status: str
    meaning: str
    files: int
    size: int


@dataclass(frozen=True)
class Example:
    """A file in which a rule fires, and what it says there."""

    file: str
    directory: str
    text: str


@dataclass(frozen=True)
class FindingTotal:
    """How often a rule fires, in how many files, and what it means."""

    id: str
    severity: str
    explanation: Explanation
    findings: int
    files: int
    examples: tuple[Example, ...]


@dataclass(frozen=True)
class ListedFile:
    """A file of a list: its errors by rule with their numbers, or why it could not be read."""

    file: str
    size: int | None
    reason: str | None
    errors: tuple[tuple[str, int], ...]


@dataclass(frozen=True)
class FileList:
    """The first files of a status, and the number of all."""

    status: str
    title: str
    files: tuple[ListedFile, ...]
    count: int


@dataclass(frozen=True)
class Summary:
    """Everything that the page shows."""

    scan: Scan | None
    scans: int
    files: int
    size: int
    photos: int
    statuses: tuple[StatusTotal, ...]
    findings: tuple[FindingTotal, ...]
    distributions: Distributions
    lists: tuple[FileList, ...]


def summarise(database: sqlite3.Connection) -> Summary:
    """Reads a catalogue as it is at one moment, whatever a scan writes meanwhile."""
    database.execute("PRAGMA temp_store = FILE")
    database.execute("BEGIN")
    try:
        statuses = _statuses(database)
        counts = {row.status: row.files for row in statuses}
        return Summary(
            scan=_last_scan(database),
            scans=_one(database, "SELECT count(*) FROM scans"),
            files=sum(row.files for row in statuses),
            size=sum(row.size for row in statuses),
            photos=_one(database, "SELECT count(*) FROM photos"),
            statuses=statuses,
            findings=_findings(database),
            distributions=distributions(database),
            lists=tuple(
                _file_list(database, status, title, counts[status])
                for status, title in LISTED_STATUSES
                if counts.get(status)
            ),
        )
    finally:
        database.execute("ROLLBACK")


def _one(database: sqlite3.Connection, sql: str) -> int:
    return int(database.execute(sql).fetchone()[0])


def _last_scan(database: sqlite3.Connection) -> Scan | None:
    row = database.execute(
        "SELECT started, finished, version FROM scans ORDER BY id DESC LIMIT 1"
    ).fetchone()
    return None if row is None else Scan(*row)


def _statuses(database: sqlite3.Connection) -> tuple[StatusTotal, ...]:
    # The sizes of sparse files may have a sum beyond 64 bits, which total() rounds.
    found = {
        status: (files, int(size))
        for status, files, size in database.execute(
            "SELECT status, count(*), total(size) FROM files GROUP BY status"
        )
    }
    known = dict(STATUSES)
    order = [*known, *sorted(found.keys() - known.keys())]
    return tuple(
        StatusTotal(status, known.get(status, ""), *found[status])
        for status in order
        if status in found
    )


def _findings(database: sqlite3.Connection) -> tuple[FindingTotal, ...]:
    more: dict[str, int] = dict(database.execute(_MORE).fetchall())
    rules = database.execute(
        "SELECT id, count(*), count(DISTINCT file_id) FROM findings WHERE id <> 'more' GROUP BY id"
    ).fetchall()
    rows = [
        _finding(database, rule, count + more.get(rule, 0), files) for rule, count, files in rules
    ]
    rank = {severity: place for place, severity in enumerate(_SEVERITIES)}
    rows.sort(key=lambda row: (rank.get(row.severity, len(rank)), -row.files, row.id))
    return tuple(rows)


def _finding(database: sqlite3.Connection, rule: str, count: int, files: int) -> FindingTotal:
    row = database.execute("SELECT severity FROM findings WHERE id = ? LIMIT 1", (rule,)).fetchone()
    if row is None:
        raise sqlite3.DatabaseError("an index is malformed: it tells of rows that are not there")
    severity: str = row[0]
    examples = tuple(
        Example(_name(file, file_bytes), directory, text)
        for file, file_bytes, directory, text in database.execute(_EXAMPLES, (rule, MOST_EXAMPLES))
    )
    return FindingTotal(
        rule, severity, explanations().get(rule, Explanation()), count, files, examples
    )


def _file_list(database: sqlite3.Connection, status: str, title: str, count: int) -> FileList:
    # In the order of their numbers, which is that of names in a first scan: an order by name would
    # sort all of them for the sake of a few.
    rows = database.execute(
        "SELECT id, file, file_bytes, size, reason FROM files WHERE status = ? ORDER BY id LIMIT ?",
        (status, MOST_FILES_LISTED),
    ).fetchall()
    files = tuple(
        ListedFile(
            _name(file, file_bytes),
            size,
            reason,
            tuple(database.execute(_RULES_OF_FILE, (number,)).fetchall()),
        )
        for number, file, file_bytes, size, reason in rows
    )
    return FileList(status, title, files, count)


def _name(file: str, file_bytes: bytes | None) -> str:
    """The name with surrogates for the bytes that are no UTF-8, which `file` does not show."""
    return file if file_bytes is None else file_bytes.decode("utf-8", "surrogateescape")
