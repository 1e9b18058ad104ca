"""What the columns of a catalogue become in a data frame."""

import enum
import os
import re
from collections.abc import Callable, Sequence
from typing import Any

import numpy as np
import pandas as pd  # type: ignore[import]


class Kind(enum.Enum):
    """A type of columns in a frame."""

    WHOLE = "Int64"
    LARGE = "UInt64"  # whole numbers to 2**64, which the catalogue holds as text from 2**63 on
    REAL = "float64"
    TEXT = "string"
    TRUTH = "boolean"
    TIME = "datetime64[ns, UTC]"
    LOCAL_TIME = "datetime64[ns]"
    NAME = "path"  # text, or bytes that are no UTF-8
    ANY = "object"


def _columns(**names: str) -> dict[str, Kind]:
    return {name: Kind[kind] for kind, listed in names.items() for name in listed.split()}


# The columns of each table and view by their kind.
COLUMNS: dict[str, dict[str, Kind]] = {
    "files": _columns(
        WHOLE="id scan_id mtime_ns inode size header_offset",
        LARGE="width height pages",
        REAL="latitude longitude altitude",
        TIME="modified",
        LOCAL_TIME="taken",
        NAME="path",
        ANY="file_bytes",
        TEXT="file status reason container byte_order taken_offset make model lens crs derived",
    ),
    "directories": _columns(
        WHOLE="id file_id position parent_id entries",
        LARGE="offset strips tiles bytes",
        TEXT="path kind compression photometric derived",
    ),
    "findings": _columns(
        WHOLE="file_id position tag", TEXT="file id severity directory arguments text"
    ),
    "images": _columns(
        WHOLE="file_id directory_id width height bits samples",
        LARGE="pages",
        LOCAL_TIME="date",
        TEXT="file directory status compression photometric software",
    ),
    "photos": _columns(
        WHOLE="file_id iso",
        REAL="exposure f_number focal_length latitude longitude altitude",
        LOCAL_TIME="taken",
        TEXT="file status make model lens taken_offset",
    ),
    "scans": _columns(
        WHOLE="id max_values found written unchanged removed",
        LARGE="header_offset",
        TIME="started finished",
        TEXT="version",
        NAME="folder",
    ),
    "tags": _columns(
        WHOLE="file_id directory_id number entry integer",
        LARGE="count offset",
        REAL="real",
        TRUTH="truncated",
        ANY="rest",
        TEXT="file directory name field type text meaning json charset directories",
    ),
}

_Nothing: type = type(None)
_TIME = re.compile(
    r"(\d{4}-\d\d-\d\d)[T ](\d\d:\d\d:\d\d)(?:\.(\d+))?(?:Z|[+-]\d\d:\d\d)?\Z", re.ASCII
)


def typed(values: Sequence[Any], kind: Kind) -> Any:
    """The values of a column as an array of pandas or NumPy; what is not of its kind is missing."""
    return _MAKERS[kind](values)


def kind_of_values(values: Sequence[Any]) -> Kind:
    """The kind that holds values of SQLite without a change to them."""
    kinds = set(map(type, values)) - {_Nothing}
    if kinds == {int}:
        return Kind.WHOLE
    if kinds == {float}:
        return Kind.REAL
    return Kind.TEXT if kinds == {str} else Kind.ANY


def _numbers(dtype: type, sound: Callable[[Any], int | None]) -> Callable[[Sequence[Any]], Any]:
    def make(values: Sequence[Any]) -> Any:
        # A damaged file may tell half a bit.
        if not set(map(type, values)) <= {int, _Nothing} or dtype is np.uint64:
            values = [sound(value) for value in values]
        # pandas itself makes float64 of numbers on both sides of 2**63.
        missing = np.array([value is None for value in values], dtype=bool)
        numbers: Any = np.array([value or 0 for value in values], dtype=dtype)
        return pd.arrays.IntegerArray(numbers, missing)

    return make


def _whole(value: Any) -> int | None:
    if isinstance(value, float) and value.is_integer() and abs(value) < 2**63:
        return int(value)
    return value if isinstance(value, int) else None


def _large(value: Any) -> int | None:
    if isinstance(value, str):
        return (
            int(value)
            if re.fullmatch(r"\d{1,20}", value, re.ASCII) and int(value) < 2**64
            else None
        )
    number = _whole(value)
    return number if number is None or number >= 0 else None


def _reals(values: Sequence[Any]) -> Any:
    if not set(map(type, values)) <= {float, _Nothing}:
        values = [value if isinstance(value, (int, float)) else None for value in values]
    return np.array(values, dtype=np.float64)  # None is NaN


def _texts(values: Sequence[Any]) -> Any:
    if not set(map(type, values)) <= {str, _Nothing}:
        values = [value if value is None else str(value) for value in values]
    return pd.array(values, dtype="string")


def _names(values: Sequence[Any]) -> Any:
    return pd.array(
        [os.fsdecode(value) if value is not None else None for value in values], dtype="string"
    )


def _local_times(values: Sequence[Any]) -> Any:
    # Left to itself pandas guesses: it takes "May" for a day of this year and 13 for a day.
    texts = [_time(value) if isinstance(value, str) else None for value in values]
    times = pd.Series(texts, dtype=object)
    return pd.to_datetime(times, format="%Y-%m-%dT%H:%M:%S.%f", errors="coerce").array


def _time(text: str) -> str | None:
    """A time of ISO 8601 in the one form that has all of its parts, without its zone."""
    found = _TIME.match(text)
    if not found:
        return None
    date, time, fraction = found.groups()
    return f"{date}T{time}.{(fraction or '')[:9]:0<9}"


def _times(values: Sequence[Any]) -> Any:
    return _local_times(values).tz_localize("UTC")


def _objects(values: Sequence[Any]) -> Any:
    array = np.empty(len(values), dtype=object)
    array[:] = values
    return array


_MAKERS: dict[Kind, Callable[[Sequence[Any]], Any]] = {
    Kind.WHOLE: _numbers(np.int64, _whole),
    Kind.LARGE: _numbers(np.uint64, _large),
    Kind.REAL: _reals,
    Kind.TEXT: _texts,
    Kind.TRUTH: lambda values: pd.array(
        [None if value is None else bool(value) for value in values], dtype="boolean"
    ),
    Kind.TIME: _times,
    Kind.LOCAL_TIME: _local_times,
    Kind.NAME: _names,
    Kind.ANY: _objects,
}
