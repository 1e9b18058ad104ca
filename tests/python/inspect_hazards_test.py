"""Threads, closing, leaks, interrupts, and the end of the interpreter."""

from __future__ import annotations

import concurrent.futures
import gc
import os
import pathlib
import resource
import signal
import subprocess
import sys
import threading
import time
from collections.abc import Callable
from typing import Any

import pytest

import corvinex
from files import SAMPLES, big_tiff, many_pages, samples

PHOTO = SAMPLES / "photo.jpg"


def everything(file: corvinex.File) -> list[str]:
    told = [file.to_json()]
    for directory in file.directories:
        told += [f"{entry!r} {entry.value} {entry.text} {entry.words}" for entry in directory]
    return told


@pytest.mark.parametrize("source", [PHOTO, PHOTO.read_bytes()], ids=["file", "bytes"])
def test_eight_threads_may_use_one_file(source: Any) -> None:
    file = corvinex.inspect(source)
    expected = everything(corvinex.inspect(source))
    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        for told in pool.map(lambda _: everything(file), range(64)):
            assert told == expected


def test_eight_threads_may_open_files_of_their_own() -> None:
    paths = samples() * 8
    expected = {path: everything(corvinex.inspect(path)) for path in samples()}
    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        for path, told in zip(
            paths, pool.map(lambda path: everything(corvinex.inspect(path)), paths)
        ):
            assert told == expected[path]


def test_a_file_may_be_closed_while_other_threads_read_it() -> None:
    content = many_pages(300)
    for _ in range(10):
        file = corvinex.inspect(bytearray(content))
        refusals: list[str] = []

        def read() -> None:
            try:
                while True:
                    everything(file)
            except ValueError as error:
                refusals.append(str(error))

        threads = [threading.Thread(target=read) for _ in range(4)]
        for thread in threads:
            thread.start()
        time.sleep(0.005)
        file.close()
        for thread in threads:
            thread.join()
        assert refusals == ["the file is closed"] * 4


@pytest.mark.parametrize(
    "reading",
    ["corvinex.inspect(source)", "file.findings", "file.to_json()", "file['60001'].value"],
)
def test_other_threads_go_on_while_one_reads(reading: str, tmp_path: pathlib.Path) -> None:
    path = tmp_path / "large.tif"
    numbers = bytes(8_000_000)
    path.write_bytes(
        many_pages(20_000)
        if "value" not in reading
        else big_tiff([(60001, 4, len(numbers) // 4, numbers)])
    )
    program = f"""
import sys, threading, corvinex
source = sys.argv[1]
file = corvinex.inspect(source)
sys.setswitchinterval(1000)  # nobody gives the lock away unasked
started = threading.Event()
seen = []
def read():
    started.set()
    for _ in range(100):
        {reading}
        if seen:
            break
    seen.append("read")
thread = threading.Thread(target=read)
thread.start()
started.wait()
seen.append("elsewhere")
thread.join()
print(*seen)
"""
    assert run(program, str(path)).communicate(timeout=60) == ("elsewhere read\n", "")


def test_a_closed_file_refuses_everything() -> None:
    file = corvinex.inspect(PHOTO)
    directory, entry = file.directories[0], file["0.Make"]
    directories = file.directories
    file.close()
    file.close()
    assert file.closed
    asked: list[Callable[[], object]] = [
        lambda: file.size,
        lambda: file.status,
        lambda: file.container,
        lambda: file.byte_order,
        lambda: file.header_offset,
        lambda: file.findings,
        lambda: file.derived,
        lambda: file["0.Make"],
        lambda: "0.Make" in file,
        lambda: file.to_dict(),
        lambda: file.__enter__(),
        lambda: len(directories),
        lambda: directory.path,
        lambda: directory.derived,
        lambda: list(directory),
        lambda: directory["Make"],
        lambda: entry.number,
        lambda: entry.name,
        lambda: entry.value,
        lambda: entry.text,
        lambda: entry.words,
        lambda: entry.directories,
        lambda: str(entry),
    ]
    for ask in asked:
        with pytest.raises(ValueError, match="the file is closed"):
            ask()


def test_a_with_statement_closes_its_file() -> None:
    with corvinex.inspect(PHOTO) as file:
        assert file.status == "ok"
    assert file.closed


def test_entries_keep_their_file_open() -> None:
    entry = corvinex.inspect(bytearray(PHOTO.read_bytes()))["0.Make"]
    gc.collect()
    assert entry.value == "Example Optics"


def resident_memory() -> int:
    """In bytes, now."""
    pages = int(pathlib.Path("/proc/self/statm").read_text().split()[1])
    return pages * resource.getpagesize()


@pytest.mark.parametrize(
    "source",
    [lambda: PHOTO, PHOTO.read_bytes, lambda: PHOTO.open("rb", buffering=0)],
    ids=["file", "bytes", "file object"],
)
def test_ten_thousand_readings_leave_nothing_behind(source: Callable[[], Any]) -> None:
    def read(times: int) -> None:
        for _ in range(times):
            file = corvinex.inspect(opened)
            for name in ("0.Make", "0.exif.FNumber", "0.gps.GPSLatitude", "0.Copyright"):
                assert file[name].value is not None
            assert file.get("0.exif.Make") is None
            file.status

    opened = source()
    read(200)
    gc.collect()
    objects, descriptors = len(gc.get_objects()), len(os.listdir("/proc/self/fd"))
    blocks, memory = sys.getallocatedblocks(), resident_memory()
    read(10_000)
    gc.collect()
    assert len(gc.get_objects()) <= objects + 10
    assert len(os.listdir("/proc/self/fd")) == descriptors
    assert sys.getallocatedblocks() < blocks + 1000
    assert resident_memory() < memory + 2**22
    if hasattr(opened, "close"):
        opened.close()


def test_refusals_leave_nothing_behind(tmp_path: pathlib.Path) -> None:
    closed = corvinex.inspect(PHOTO)
    closed.close()

    def refuse() -> None:
        for wrong in (tmp_path, tmp_path / "none", 3):
            with pytest.raises((OSError, TypeError)):
                corvinex.inspect(wrong)  # type: ignore[arg-type]
        with pytest.raises(ValueError):
            corvinex.inspect(PHOTO, tags=["no such tag"])
        with pytest.raises(ValueError):
            closed.size

    for _ in range(20):
        refuse()
    gc.collect()
    blocks, descriptors = sys.getallocatedblocks(), len(os.listdir("/proc/self/fd"))
    for _ in range(150):
        refuse()
    gc.collect()
    assert sys.getallocatedblocks() < blocks + 500
    assert len(os.listdir("/proc/self/fd")) == descriptors


def run(program: str, *words: str) -> subprocess.Popen[str]:
    return subprocess.Popen(
        [sys.executable, "-B", "-c", program, *words],
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        text=True,
    )


def test_an_interrupt_ends_the_reading_of_a_large_file(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "large.tif"
    path.write_bytes(many_pages(20_000))
    program = """
import sys, corvinex
print("reading", flush=True)
try:
    while True:
        corvinex.inspect(sys.argv[1]).to_json()
except KeyboardInterrupt:
    print("interrupted")
"""
    child = run(program, str(path))
    assert child.stdout is not None and child.stdout.readline() == "reading\n"
    time.sleep(0.05)
    child.send_signal(signal.SIGINT)
    out, err = child.communicate(timeout=60)
    assert (child.returncode, out, err) == (0, "interrupted\n", "")


def test_the_interpreter_may_end_while_threads_read(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "large.tif"
    path.write_bytes(many_pages(2_000))
    program = """
import sys, threading, time, corvinex
content = open(sys.argv[1], "rb").read()
def read():
    while True:
        for source in (content, sys.argv[1]):
            file = corvinex.inspect(source)
            file.status, file.to_json()
            [entry.value for page in file.directories for entry in page]
for _ in range(4):
    threading.Thread(target=read, daemon=True).start()
time.sleep(0.1)
"""
    for _ in range(3):
        child = run(program, str(path))
        assert child.communicate(timeout=60) == ("", "")
        assert child.returncode == 0


def test_a_forked_process_may_use_what_was_opened() -> None:
    file = corvinex.inspect(PHOTO)
    expected = everything(file)
    child = os.fork()
    if child == 0:
        os._exit(0 if everything(file) == expected else 1)
    assert os.waitpid(child, 0)[1] == 0


def test_a_forked_process_may_use_what_another_thread_was_reading(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "stack.tif"
    path.write_bytes(many_pages(5_000))
    program = """
import os, sys, threading, corvinex
file = corvinex.inspect(sys.argv[1])
length = len(file.to_json())
is_over = False
def read():
    while not is_over:
        file.to_json()
threads = [threading.Thread(target=read) for _ in range(2)]
for thread in threads:
    thread.start()
for _ in range(20):
    child = os.fork()
    if child == 0:
        is_read = len(file.to_json()) == length
        file.close()
        os._exit(0 if is_read else 1)
    assert os.waitpid(child, 0)[1] == 0
is_over = True
for thread in threads:
    thread.join()
"""
    child = run(program, str(path))
    assert child.communicate(timeout=60) == ("", "")
    assert child.returncode == 0


def test_what_does_not_fit_into_memory_is_a_memory_error(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "large.tif"
    length = 100 * 2**20
    head = big_tiff([(60001, 7, 16, bytes(16))])
    count = head.index((16).to_bytes(8, "little"), 24)
    with open(path, "wb") as out:
        out.write(head[:count] + length.to_bytes(8, "little") + head[count + 8 :])
        out.truncate(len(head) + length)
    program = """
import resource, sys, corvinex
import numpy
file = corvinex.inspect(sys.argv[1])
now = int(open("/proc/self/statm").read().split()[0]) * resource.getpagesize()
resource.setrlimit(resource.RLIMIT_AS, (now + 150 * 2**20,) * 2)
for _ in range(2):
    try:
        file["60001"].value
    except MemoryError:
        print("refused", file["60001"].count)
"""
    child = run(program, str(path))
    assert child.communicate(timeout=60) == (f"refused {length}\n" * 2, "")


def test_a_name_that_is_no_unicode_is_like_other_names_that_there_are_not() -> None:
    with pytest.raises(ValueError, match=r"\\udcff"):
        corvinex.inspect(PHOTO, tags=["\udcff"])
    with pytest.raises(ValueError, match=r"\\udcff"):
        corvinex._native.read_table([bytes(PHOTO)], ["\udcff"], 1, None, None)
    with corvinex.inspect(PHOTO) as file:
        with pytest.raises(KeyError):
            file["\udcff"]
