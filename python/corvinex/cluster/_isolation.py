"""Reads files in a process of its own, after workers have died while they read them."""

import os
import pickle
import signal
import subprocess
import sys
import tempfile
from collections.abc import Mapping
from pathlib import Path
from typing import Any

from corvinex import _native
from corvinex.cluster._errors import ClusterError
from corvinex.cluster._manifest import ReadOptions


def write_part(
    names: list[bytes],
    asked: bytes,
    records: Path,
    catalogue: Path,
    options: ReadOptions,
    refused: Mapping[int, str],
    isolated: bool,
) -> dict[str, Any]:
    """Reads files into a file of records and a catalogue, in this process or in one of its own.

    :raises ClusterError: when that process dies
    """
    arguments = (names, asked, os.fsencode(records), os.fsencode(catalogue), options, dict(refused))
    if not isolated:
        return _write(*arguments)
    result = _in_process(*arguments)
    if isinstance(result, str):
        raise ClusterError(f"{result}, though it can read each of the files alone")
    return result


def killers(names: list[bytes], asked: bytes, options: ReadOptions) -> dict[int, str]:
    """The files that end a process that reads them, by their place, with what to tell of them."""
    found: dict[int, str] = {}
    with tempfile.TemporaryDirectory(prefix="corvinex-") as folder:
        _find_killers(names, asked, options, Path(folder), range(len(names)), found)
    return found


def _find_killers(
    names: list[bytes],
    asked: bytes,
    options: ReadOptions,
    folder: Path,
    places: range,
    found: dict[int, str],
) -> None:
    """Halves the files until each that ends a process is found alone."""
    records, catalogue = folder / "part.jsonl", folder / "part.sqlite"
    part = slice(places.start, places.stop)
    result = _in_process(
        names[part], asked[part], os.fsencode(records), os.fsencode(catalogue), options, {}
    )
    for path in folder.iterdir():
        path.unlink()
    if not isinstance(result, str):
        return
    if len(places) == 1:
        found[places.start] = result
        return
    middle = len(places) // 2
    for half in (places[:middle], places[middle:]):
        _find_killers(names, asked, options, folder, half, found)


def _write(
    names: list[bytes],
    asked: bytes,
    records: bytes,
    catalogue: bytes,
    options: ReadOptions,
    refused: dict[int, str],
) -> dict[str, Any]:
    return _native.write_part(
        names,
        asked,
        records=records,
        catalogue=catalogue,
        max_values=options.max_values,
        header_offset=options.header_offset,
        refused=refused,
    )


def answer() -> None:
    """What the process does: takes the arguments from its input, and prints what it returns."""
    arguments = pickle.load(sys.stdin.buffer)
    result: dict[str, Any] | OSError
    try:
        result = _write(*arguments)
    except OSError as error:
        result = error
    pickle.dump(result, sys.stdout.buffer)


_PROGRAM = """
import pickle, sys
sys.path[:] = pickle.load(sys.stdin.buffer)
from corvinex.cluster import _isolation
_isolation.answer()
"""


def _in_process(*arguments: Any) -> dict[str, Any] | str:
    """What a process of its own returns, or how it has ended."""
    # Not by multiprocessing: workers are daemons, which it allows no processes.
    run = subprocess.run(
        [sys.executable, "-c", _PROGRAM],
        input=pickle.dumps(sys.path) + pickle.dumps(arguments),
        stdout=subprocess.PIPE,
        check=False,
    )
    if run.returncode != 0:
        code = run.returncode
        how = signal.Signals(-code).name if code < 0 else f"status {code}"
        return f"a process that reads it ends with {how}"
    result = pickle.loads(run.stdout)
    if isinstance(result, OSError):
        raise result
    assert isinstance(result, dict)
    return result
