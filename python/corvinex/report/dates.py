"""When the files of a catalogue were made."""

import sqlite3

from corvinex.report.chart_data import Bars

MOST_YEARS = 60
MOST_MONTHS = 36

# What the camera tells, else the date of the first image.
_MONTHS = """
SELECT month, count(*) FROM (
    SELECT coalesce(substr(f.taken, 1, 7), i.month) AS month FROM files AS f
    LEFT JOIN report_image AS i ON i.file_id = f.id AND i.position = 0)
WHERE month GLOB '[0-9][0-9][0-9][0-9]-[01][0-9]' AND substr(month, 6) BETWEEN '01' AND '12'
GROUP BY month
"""


def dates(database: sqlite3.Connection) -> Bars:
    """Files by the month in which they were made when they all fit, else by the year."""
    total: int = database.execute("SELECT count(*) FROM files").fetchone()[0]
    counts: dict[str, int] = dict(database.execute(_MONTHS).fetchall())
    known = sum(counts.values())
    labels = _months(min(counts), max(counts)) if counts else []
    title = "Months in which files were made"
    if len(labels) > MOST_MONTHS:
        counts = _by_year(counts)
        labels = _years(counts)
        title = "Years in which files were made"
    rows = tuple((label, counts.get(label, 0)) for label in labels)
    return Bars(
        "dates",
        title,
        "files",
        rows,
        others=known - sum(count for _, count in rows),
        kinds_of_others=len(counts.keys() - set(labels)),
        unknown=total - known,
        is_ordered=True,
    )


def _months(first: str, last: str) -> list[str]:
    """All months from one to another, both included."""
    start, end = (12 * int(month[:4]) + int(month[5:]) - 1 for month in (first, last))
    return [f"{place // 12:04}-{place % 12 + 1:02}" for place in range(start, end + 1)]


def _by_year(months: dict[str, int]) -> dict[str, int]:
    counts: dict[str, int] = {}
    for month, count in months.items():
        counts[month[:4]] = counts.get(month[:4], 0) + count
    return counts


def _years(counts: dict[str, int]) -> list[str]:
    """The run of years that has most files. A clock that was never set tells a year far away."""
    starts = sorted(int(year) for year in counts)
    best = max(
        starts,
        key=lambda start: (
            sum(counts.get(f"{year:04}", 0) for year in range(start, start + MOST_YEARS)),
            start,
        ),
    )
    last = max(year for year in starts if year < best + MOST_YEARS)
    return [f"{year:04}" for year in range(best, last + 1)]
