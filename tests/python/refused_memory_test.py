"""What is refused when the interpreter has no memory for one object, whichever it is."""

from __future__ import annotations

import os
import subprocess
import sys

import pytest

from files import SAMPLES

pytest.importorskip("_testcapi", reason="the interpreter has no hooks to refuse memory")

# Each allocation is refused in a run of its own, until runs in a row have met none.
PROGRAM = """
import sys, _testcapi, numpy, corvinex

path = sys.argv[1]
with open(path, "rb") as image:
    content = image.read()

def entries(file):
    return [
        (entry.number, entry.name, entry.type, entry.count, entry.offset, entry.directory,
         entry.text, entry.words, entry.charset, entry.directories, repr(entry),
         numpy.asarray(entry.value).tolist() if entry.count < 9 else None)
        for directory in file.directories for entry in directory
    ]

def inspect_file():
    with corvinex.inspect(path) as file:
        return entries(file), file.status, file.to_json()

def inspect_bytes():
    file = corvinex.inspect(content)
    return file.findings, file.derived, file["0.exif.FNumber"].text, repr(file.directories)

def read():
    return [repr(dict(directory)) for directory in corvinex.read(path)]

task = globals()[sys.argv[2]]
expected = task()
refused, untouched, place = 0, 0, 0
while untouched < 50:
    outcome = None
    _testcapi.set_nomemory(place, place + 1)
    try:
        outcome = task()
    except MemoryError:
        outcome = "refused"
    finally:
        _testcapi.remove_mem_hooks()
    assert outcome in ("refused", expected), (place, outcome)
    refused += outcome == "refused"
    untouched = 0 if outcome == "refused" else untouched + 1
    place += 1
print("refused" if refused > 5 else refused)
"""


@pytest.mark.parametrize("task", ["inspect_file", "inspect_bytes", "read"])
def test_any_object_may_be_refused(task: str) -> None:
    child = subprocess.run(
        [sys.executable, "-c", PROGRAM, SAMPLES / "photo.jpg", task],
        env=dict(os.environ, PYTHONFAULTHANDLER="1"),
        capture_output=True,
        text=True,
        timeout=200,
    )
    assert (child.stdout, child.stderr, child.returncode) == ("refused\n", "", 0)
