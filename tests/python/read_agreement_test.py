"""What read gives is what the module gives the tool: output, warnings and error of every file."""

from __future__ import annotations

import json
import math
import os
import pathlib
import subprocess
import warnings
from typing import Any

import numpy
import pytest

import corvinex

# A chain that comes back on itself would be read for ever.
LIMIT = 100

FILES = [
    path
    for folder in (os.environ["CORVINEX_SAMPLES"], os.environ.get("CORVINEX_CORPUS"))
    if folder
    for path in sorted(pathlib.Path(folder).rglob("*"))
    if path.is_file() and path.suffix not in (".json", ".txt", ".csv", ".md", ".cpp", ".h")
]


def number_of(value: float) -> float | str:
    if math.isnan(value):
        return "NaN"
    if math.isinf(value):
        return "Infinity" if value > 0 else "-Infinity"
    return value


def record_of(value: Any) -> Any:
    """A raw value as the record of a call has it."""
    if value is None:
        return None
    assert isinstance(value, numpy.ndarray) and value.ndim == 2
    size = list(value.shape)
    elements = value.flatten(order="F").tolist()
    if value.dtype == numpy.float64:
        return {"class": "double", "size": size, "data": [number_of(each) for each in elements]}
    if value.dtype == numpy.uint8:
        return {"class": "uint8", "size": size, "data": elements}
    if value.dtype == numpy.uint16:
        units = value.tobytes(order="F").decode("utf-16-le", "surrogatepass")
        return {"class": "char", "size": size, "data": units}
    assert value.dtype == object
    if elements and isinstance(elements[0], corvinex.RawDirectory):
        data = [{name: record_of(each[name]) for name in each} for each in elements]
        return {"class": "struct", "size": size, "fields": list(elements[0]), "data": data}
    return {"class": "cell", "size": size, "data": [record_of(each) for each in elements]}


def plain_of(record: Any) -> Any:
    """What a value of the record should be in Python, with lists for arrays."""
    if record is None:
        return None
    data = record["data"]
    if record["class"] == "char":
        return data
    if record["class"] == "cell":
        return [plain_of(each) for each in data]
    if record["class"] == "struct":
        return [{name: plain_of(value) for name, value in each.items()} for each in data]
    if record["class"] == "double" and record["size"] == [1, 1]:
        return data[0]
    if record["size"][0] == 1:
        return data
    rows = record["size"][0]
    return [data[row::rows] for row in range(rows)]


def listed(value: Any) -> Any:
    """A value from Python, with lists for arrays and names for what JSON has no number for."""
    if isinstance(value, numpy.ndarray):
        return listed(value.tolist())
    if isinstance(value, (list, corvinex.Directories)):
        return [listed(each) for each in value]
    if isinstance(value, corvinex.Directory):
        return {name: listed(each) for name, each in value.items()}
    return number_of(value) if isinstance(value, float) else value


def read_record(path: pathlib.Path) -> tuple[Any, corvinex.Directories | None]:
    """The record of a call as read would write it, and what it has read."""
    error = None
    directories = None
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        try:
            directories = corvinex.read(path, limit=LIMIT)
        except corvinex.Error as raised:
            error = {"id": raised.id, "arguments": list(raised.arguments)}
    output = None
    if directories is not None:
        elements = [record_of_directory(each.raw) for each in directories]
        output = {
            "class": "struct",
            "size": [len(elements), 1],
            "fields": list(directories.fields),
            "data": elements,
        }
        if not directories.fields:
            output = {"class": "double", "size": [0, 0], "data": []}
    reports = [
        {"id": warning.message.id, "arguments": list(warning.message.arguments)}
        for warning in caught
        if isinstance(warning.message, corvinex.TagWarning)
    ]
    return {"output": output, "warnings": reports, "error": error}, directories


def record_of_directory(directory: corvinex.RawDirectory) -> dict[str, Any]:
    return {name: record_of(value) for name, value in directory.items()}


@pytest.mark.parametrize("path", FILES, ids=str)
def test_read_agrees_with_the_record_of_a_call(path: pathlib.Path) -> None:
    told = subprocess.run(
        [os.environ["CORVINEX_TOOL"], "call", "--limit", str(LIMIT), path], capture_output=True
    ).stdout
    expected = json.loads(told)
    record, directories = read_record(path)
    if expected["error"] and expected["error"]["id"] is None:
        assert record["error"]["id"] is None and record["output"] is None
        return
    if record["error"] and record["error"]["id"] is None:
        # What cannot be handed to the module at all is refused before.
        assert expected["error"]["id"] == "quorra:corvinex:unsupportedFileFormat"
        return
    assert record == expected
    if directories:
        assert listed(directories) == plain_of(expected["output"])
