"""What is refused when there is no memory for one object or one block, whichever it is."""

from __future__ import annotations

import os
import subprocess
import sys
from pathlib import Path

import pytest

from files import SAMPLES

TASKS = """
import numpy, corvinex
from corvinex import _native

samples, path = sys.argv[1], sys.argv[1] + "/photo.jpg"
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
    try:
        return [repr(dict(directory)) for directory in corvinex.read(path)]
    except ValueError as error:  # the module cannot tell why a file does not open
        assert "or it cannot be opened" in str(error)
        raise MemoryError from None

def table():
    return len(_native.read_table([path.encode()], [], 1, None, None))

def make_listing():
    _native.Listing([samples.encode()], extensions=[], follow_links=False)
"""

# Each allocation is refused in a run of its own, until runs in a row have met none. What is there
# from the first run on is not among them.
LOOP = """
task = globals()[sys.argv[2]]
expected = [task() for _ in range(3)][-1]
refused, untouched, place = 0, 0, 0
while untouched < 50:
    outcome = None
    refuse(place)
    try:
        outcome = task()
    except MemoryError:
        outcome = "refused"
    finally:
        refuse_no_more()
    assert outcome in ("refused", expected), (place, outcome)
    refused += outcome == "refused"
    untouched = 0 if outcome == "refused" else untouched + 1
    place += 1
print("refused" if refused > 3 else refused)
"""


def outcome_of(program: str, task: str, **environment: str) -> tuple[str, str, int]:
    child = subprocess.run(
        [sys.executable, "-c", program, SAMPLES, task],
        env=dict(os.environ, PYTHONFAULTHANDLER="1", **environment),
        capture_output=True,
        text=True,
        timeout=200,
    )
    return child.stdout, child.stderr, child.returncode


@pytest.mark.parametrize("task", ["inspect_file", "inspect_bytes", "read"])
def test_any_object_may_be_refused(task: str) -> None:
    pytest.importorskip("_testcapi", reason="the interpreter has no hooks to refuse memory")
    hooks = """
import sys, _testcapi

def refuse(place):
    _testcapi.set_nomemory(place, place + 1)

refuse_no_more = _testcapi.remove_mem_hooks
"""
    assert outcome_of(hooks + TASKS + LOOP, task) == ("refused\n", "", 0)


@pytest.mark.skipif("LD_PRELOAD" in os.environ, reason="a sanitizer has allocations of its own")
@pytest.mark.parametrize("task", ["inspect_file", "inspect_bytes", "read", "table", "make_listing"])
def test_any_block_may_be_refused(task: str, tmp_path: Path) -> None:
    # The blocks are those of C++ and of larger objects: small ones come out of the interpreter's
    # own pools. The library counts the calls in the file.
    plan = tmp_path / "plan"
    plan.write_bytes(bytes(16))
    library = """
import mmap, os, struct, sys

with open(os.environ["CORVINEX_ALLOCATION_PLAN"], "r+b") as file:
    plan = mmap.mmap(file.fileno(), 16)

def refuse(place):
    plan[:8] = struct.pack("=Q", struct.unpack("=QQ", plan)[1] + place + 1)

def refuse_no_more():
    plan[:8] = bytes(8)
"""
    outcome = outcome_of(
        library + TASKS + LOOP,
        task,
        LD_PRELOAD=os.environ["CORVINEX_FAILING_ALLOCATION"],
        CORVINEX_ALLOCATION_PLAN=str(plan),
    )
    assert outcome == ("refused\n", "", 0)
