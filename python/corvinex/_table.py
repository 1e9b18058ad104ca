"""Tables about many files, as data frames."""

from __future__ import annotations

import os
from collections.abc import Iterable
from typing import TYPE_CHECKING, Any, SupportsIndex

from corvinex import _native
from corvinex._arguments import Key, Path, several_paths, system_name, tag_words, whole

if TYPE_CHECKING:
    import pandas  # type: ignore[import]

FIRST_COLUMNS = ("file", "directory", "status", "findings")
MOST_JOBS = 256


def _operand(path: Path) -> bytes:
    """A path as the system has it; "-" is a file of that name, and not the standard input."""
    name = system_name(os.fspath(path))
    return b"./-" if name == b"-" else name


def _operands(paths: Path | Iterable[Path]) -> list[bytes]:
    return [_operand(path) for path in several_paths(paths)]


def _names(tags: Iterable[Key] | None) -> list[str]:
    if tags is None:
        return [name for name in _native.usual_columns() if name != "file.status"]
    return tag_words(tags)


def _checked(number: SupportsIndex | None, what: str, least: int) -> int | None:
    if number is None:
        return None
    checked = whole(what, number)
    if not least <= checked < 2**63:
        raise ValueError(f"{what} is a whole number from {least}")
    return checked


def _column(kind: str, cells: Any, missing: Any) -> Any:
    import numpy
    import pandas

    if kind == "Int64":
        return pandas.arrays.IntegerArray(cells, missing)
    if kind == "datetime64[ns]":
        return cells.view("datetime64[ns]")
    if kind == "string":
        objects = numpy.empty(len(cells), object)
        objects[:] = cells
        return pandas.arrays.StringArray(objects)
    return cells


def table(
    paths: Path | Iterable[Path],
    *,
    tags: Iterable[Key] | None = None,
    jobs: SupportsIndex | None = None,
    max_values: SupportsIndex | None = None,
) -> pandas.DataFrame:
    """Reads the tags of many files into a data frame, a row for each main directory.

    paths are files and folders, one or any number of them. Folders are walked to the bottom, each
    in the order of names; what is no image in them is passed over unless its name ends as an
    image's does.

    The columns are file, directory (the path, "0" for the first page), status, findings (the IDs of
    what is wrong with the file, each once, parted by blanks), then one for each of tags: names or
    numbers of tags, either with a path before it ("0.exif.LensModel"), and facts of the file
    ("file.width"). A row holds the tags of its directory and of those that its pointers lead to.
    Without tags there is a useful set.

    The type of a column follows from the tag, whatever the files hold: Int64 where it is one
    integer or the ISO sensitivity, float64 where it is one rational or floating-point number,
    datetime64[ns] for dates (as the clock showed them), string for everything else: texts, words
    instead of codes, and several numbers parted by blanks. What a file does not hold, and what does
    not fit the type, is missing. max_values cuts values that become strings to so many numbers or
    characters.

    jobs threads read; by default as many as there are processors. A file that cannot be read is a
    row too: nothing but its name, its status and its findings. Latitudes and longitudes are in
    degrees, south and west negative, altitudes in metres, below the sea negative, sizes in bytes.
    Raises ValueError for a tag that does not exist or is asked for twice, TypeError for wrong
    types, and ModuleNotFoundError without pandas.

    >>> import corvinex
    >>> frame = corvinex.table("samples/photo.jpg", tags=["Model", "FNumber", "DateTime"])
    >>> frame.loc[0, ["directory", "status", "Model", "FNumber"]].tolist()
    ['0', 'ok', 'EO-1', 2.8]
    """
    try:
        import pandas
    except ModuleNotFoundError as error:
        hint = f"corvinex.table() needs {error.name}; Debian has it as python3-{error.name}"
        raise ModuleNotFoundError(hint, name=error.name) from None

    names = _names(tags)
    headings = [*FIRST_COLUMNS, *names]
    if len(set(headings)) < len(headings):
        twice = next(name for name in headings if headings.count(name) > 1)
        raise ValueError(f'the column "{twice}" is asked for twice')
    threads = _checked(jobs, "jobs", 1) or len(os.sched_getaffinity(0))
    columns = _native.read_table(
        _operands(paths),
        names,
        min(threads, MOST_JOBS),
        _checked(max_values, "max_values", 0),
        pandas.NA,
    )
    return pandas.DataFrame(
        {heading: _column(*column) for heading, column in zip(headings, columns)}
    )
