"""How files and images of a catalogue are spread over sizes, codings, cameras, dates and places.

SQLite counts; what comes to Python is a number of rows that no catalogue can make large.
"""

import sqlite3
from dataclasses import dataclass

from corvinex.report.chart_data import Bars, Dot, Positions
from corvinex.report.dates import dates
from corvinex.report.display import number

MOST_BARS = 12
MOST_DOTS = 3000

# A row for each image of a main chain. The views of a catalogue would look each tag up once a chart.
_IMAGES = """
CREATE TEMP TABLE report_image AS
SELECT
    d.file_id AS file_id,
    d.position AS position,
    d.compression AS compression,
    (SELECT json_extract(json, '$[0]') FROM tags
     WHERE directory_id = d.id AND number = 258) AS bits,
    (SELECT integer FROM tags WHERE directory_id = d.id AND number = 277) AS samples,
    (SELECT real FROM tags WHERE directory_id = d.id AND number = 282) AS resolution,
    (SELECT integer FROM tags WHERE directory_id = d.id AND number = 296) AS unit,
    (SELECT substr(meaning, 1, 7) FROM tags WHERE directory_id = d.id AND number = 306) AS month
FROM directories AS d WHERE d.kind = 'main'
"""
_FIRST_IMAGES = "CREATE INDEX temp.report_first_image ON report_image (file_id) WHERE position = 0"

# Resolution in dots per inch: unit 3 is the centimetre, and no unit is the inch.
_DPI = """
CASE WHEN resolution > 0 AND resolution < 1e9 THEN
    CASE coalesce(unit, 2) WHEN 2 THEN round(resolution) WHEN 3 THEN round(resolution * 2.54) END
END
"""

_POSITIONS = """
CREATE TEMP TABLE report_position AS
SELECT latitude, longitude FROM files
WHERE latitude BETWEEN -90 AND 90 AND longitude BETWEEN -180 AND 180
"""
# The sides of squares in degrees in which positions become one dot, the finest first.
_DOT_STEPS = (0.001, 0.1, 0.5, 1.0, 5.0)


@dataclass(frozen=True)
class Distributions:
    """What the charts of the page show."""

    images: int
    bars: tuple[Bars, ...]
    positions: Positions


def distributions(database: sqlite3.Connection) -> Distributions:
    """Asks a catalogue for everything that is drawn. Makes temporary tables."""
    database.execute(_IMAGES)
    database.execute(_FIRST_IMAGES)
    database.execute(_POSITIONS)
    images: int = database.execute("SELECT count(*) FROM report_image").fetchone()[0]
    bars = (
        _most_frequent(database, "containers", "Containers", "files", "container", "files"),
        _file_sizes(database),
        _image_sizes(database),
        _most_frequent(database, "bits", "Bits of a pixel", "images", _BITS, "report_image"),
        _most_frequent(
            database, "compression", "Compression", "images", "compression", "report_image"
        ),
        _most_frequent(
            database,
            "resolution",
            "Resolution, dots per inch",
            "images",
            f"CAST({_DPI} AS INTEGER)",
            "report_image",
        ),
        _most_frequent(database, "cameras", "Cameras", "files", _CAMERA, "files"),
        dates(database),
    )
    return Distributions(images, bars, _positions(database))


_BITS = """
CASE WHEN coalesce(samples, 1) = 1 THEN bits || CASE bits WHEN 1 THEN ' bit' ELSE ' bits' END
ELSE samples || ' x ' || bits || CASE bits WHEN 1 THEN ' bit' ELSE ' bits' END END
"""

# Many makers begin the model with their name.
_CAMERA = """
CASE WHEN make IS NULL OR substr(model, 1, length(make)) = make THEN model
WHEN model IS NULL THEN make ELSE make || ' ' || model END
"""


def _most_frequent(
    database: sqlite3.Connection, name: str, title: str, counted: str, label: str, table: str
) -> Bars:
    """The most frequent labels. An expression of SQL gives the label of a row, or null."""
    found = f"SELECT {label} AS label, count(*) AS rows FROM {table} GROUP BY label"
    totals = database.execute(
        "SELECT count(label), coalesce(sum(rows) FILTER (WHERE label IS NOT NULL), 0), "
        f"coalesce(sum(rows) FILTER (WHERE label IS NULL), 0) FROM ({found})"
    ).fetchone()
    rows = database.execute(
        f"SELECT label, rows FROM ({found}) WHERE label IS NOT NULL "
        "ORDER BY rows DESC, label LIMIT ?",
        (MOST_BARS,),
    ).fetchall()
    shown = sum(count for _, count in rows)
    return Bars(
        name,
        title,
        counted,
        tuple((_label(value), count) for value, count in rows),
        others=totals[1] - shown,
        kinds_of_others=totals[0] - len(rows),
        unknown=totals[2],
    )


def _label(value: object) -> str:
    return number(value) if isinstance(value, int) else str(value)


_SIZE_STEPS = (
    (1e3, "under 1 kB"),
    (1e4, "1 to 10 kB"),
    (1e5, "10 to 100 kB"),
    (1e6, "100 kB to 1 MB"),
    (1e7, "1 to 10 MB"),
    (1e8, "10 to 100 MB"),
    (1e9, "100 MB to 1 GB"),
    (1e10, "1 to 10 GB"),
    (float("inf"), "10 GB and more"),
)

_PIXEL_STEPS = (
    (1e5, "under 0.1 Mpx"),
    (1e6, "0.1 to 1 Mpx"),
    (2e6, "1 to 2 Mpx"),
    (5e6, "2 to 5 Mpx"),
    (1e7, "5 to 10 Mpx"),
    (2e7, "10 to 20 Mpx"),
    (5e7, "20 to 50 Mpx"),
    (1e8, "50 to 100 Mpx"),
    (1e9, "0.1 to 1 Gpx"),
    (float("inf"), "1 Gpx and more"),
)


def _file_sizes(database: sqlite3.Connection) -> Bars:
    return _steps(database, "size", "Size of files", "size", _SIZE_STEPS)


def _image_sizes(database: sqlite3.Connection) -> Bars:
    # A width of 2^63 or more is text.
    return _steps(
        database,
        "pixels",
        "Size of first images",
        "CAST(width AS REAL) * CAST(height AS REAL)",
        _PIXEL_STEPS,
    )


def _steps(
    database: sqlite3.Connection,
    name: str,
    title: str,
    value: str,
    steps: tuple[tuple[float, str], ...],
) -> Bars:
    """Files by the step of a scale in which a value lies, from the first to the last with any."""
    cases = " ".join(
        f"WHEN value < {limit!r} THEN {place}" for place, (limit, _) in enumerate(steps[:-1])
    )
    counts: dict[int | None, int] = dict(
        database.execute(
            f"SELECT CASE WHEN value IS NULL THEN NULL {cases} ELSE {len(steps) - 1} END AS step, "
            f"count(*) FROM (SELECT {value} AS value FROM files) GROUP BY step"
        ).fetchall()
    )
    unknown = counts.pop(None, 0)
    known = [place for place in counts if place is not None]
    places = range(min(known), max(known) + 1) if known else range(0)
    return Bars(
        name,
        title,
        "files",
        tuple((steps[place][1], counts.get(place, 0)) for place in places),
        unknown=unknown,
        is_ordered=True,
    )


def _positions(database: sqlite3.Connection) -> Positions:
    count: int = database.execute("SELECT count(*) FROM report_position").fetchone()[0]
    dots: list[Dot] = []
    step = _DOT_STEPS[0]
    for step in _DOT_STEPS:
        dots = [
            Dot(*row)
            for row in database.execute(
                "SELECT avg(latitude), avg(longitude), count(*) FROM report_position "
                "GROUP BY round(latitude / ?1), round(longitude / ?1) "
                "ORDER BY 1, 2 LIMIT ?2",
                (step, MOST_DOTS + 1),
            )
        ]
        if len(dots) <= MOST_DOTS:
            break
    return Positions(tuple(dots), count, step)
