"""Threads, processes, interpreters, memory and interrupts."""

from __future__ import annotations

import concurrent.futures
import gc
import os
import pathlib
import signal
import subprocess
import sys
import textwrap

import pytest

import corvinex
from corvinex import _native
from tiff_bytes import grey_page, longs, tiff

SAMPLES = pathlib.Path(os.environ["CORVINEX_SAMPLES"])
IMAGES = sorted(path for path in SAMPLES.iterdir() if path.suffix in (".tif", ".jpg", ".dng"))


def run(code: str, *arguments: object) -> subprocess.CompletedProcess[str]:
    """A program of its own, which must end by itself."""
    return subprocess.run(
        [sys.executable, "-c", textwrap.dedent(code), *map(str, arguments)],
        capture_output=True,
        text=True,
        timeout=60,
    )


def resident_bytes() -> int:
    pages = pathlib.Path("/proc/self/statm").read_text().split()[1]
    return int(pages) * os.sysconf("SC_PAGE_SIZE")


def fields_of(path: pathlib.Path) -> list[list[str]]:
    return [[repr(value) for value in page.values()] for page in corvinex.read(path)]


@pytest.fixture
def stack(tmp_path: pathlib.Path) -> pathlib.Path:
    """A file whose read takes some milliseconds."""
    path = tmp_path / "stack.tif"
    path.write_bytes(tiff(*[[*grey_page(), longs(65000, *range(100))]] * 2000))
    return path


@pytest.mark.filterwarnings("ignore::corvinex.TagWarning")
def test_threads_read_the_same_as_one() -> None:
    expected = [fields_of(path) for path in IMAGES]
    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        for _ in range(20):
            assert list(pool.map(fields_of, IMAGES)) == expected


def test_other_threads_go_on_while_one_reads(stack: pathlib.Path) -> None:
    code = """
        import sys, threading, corvinex
        sys.setswitchinterval(1000)  # nobody gives the lock away unasked
        started = threading.Event()
        seen = []
        def read():
            started.set()
            for _ in range(100):
                corvinex.read(sys.argv[1])
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
    assert run(code, stack).stdout.split() == ["elsewhere", "read"]


def test_a_result_may_be_dropped_by_another_thread_than_its_reader(stack: pathlib.Path) -> None:
    with concurrent.futures.ThreadPoolExecutor(1) as pool:
        directories = pool.submit(corvinex.read, stack).result()
    value = directories[1999].UnknownTags[0].Value
    del directories
    assert value[99] == 99


def test_the_process_ends_while_threads_read(stack: pathlib.Path) -> None:
    code = """
        import sys, threading, time, corvinex
        def read():
            while True:
                corvinex.read(sys.argv[1])[0].UnknownTags[0].Value
        for _ in range(4):
            threading.Thread(target=read, daemon=True).start()
        time.sleep(0.1)
    """
    for _ in range(5):
        result = run(code, stack)
        assert (result.returncode, result.stderr) == (0, "")


@pytest.mark.parametrize("asked", ["write_part", "take", "stamps", "why_unreadable"])
def test_the_process_ends_while_threads_prepare_a_catalogue(
    asked: str, tmp_path: pathlib.Path
) -> None:
    code = """
        import itertools, sys, threading, time
        from corvinex import _native
        folder, samples, asked = sys.argv[1:]
        names = [f"{samples}/photo.jpg".encode()] * 40
        numbers = itertools.count()
        def write_part():
            part = f"{folder}/{next(numbers)}".encode()
            _native.write_part(
                names, b"\\1" * len(names), records=part + b".jsonl", catalogue=part + b".sqlite",
                max_values=64, header_offset=None, refused={},
            )
        def take():
            _native.Listing([samples.encode()] * 40, extensions=[], follow_links=False).take(1000)
        def stamps():
            _native.stamps(names * 50)
        def why_unreadable():
            _native.why_unreadable(names[0], None)
        def repeat():
            while True:
                globals()[asked]()
        for _ in range(2):
            threading.Thread(target=repeat, daemon=True).start()
        time.sleep(0.1)
    """
    for _ in range(3):
        result = run(code, tmp_path, SAMPLES, asked)
        assert (result.returncode, result.stderr) == (0, "")


def test_a_forked_process_reads_while_threads_of_its_parent_did(stack: pathlib.Path) -> None:
    code = """
        import os, sys, threading, time, corvinex
        stop = False
        def read():
            while not stop:
                corvinex.read(sys.argv[1])[0].UnknownTags[0].Value
        threads = [threading.Thread(target=read) for _ in range(4)]
        for thread in threads:
            thread.start()
        failed = 0
        for _ in range(10):
            child = os.fork()
            if child == 0:
                os._exit(0 if len(corvinex.read(sys.argv[1])) == 2000 else 1)
            failed += os.waitpid(child, 0)[1] != 0
        stop = True
        for thread in threads:
            thread.join()
        print(failed)
    """
    result = run(code, stack)
    assert (result.stdout.strip(), result.stderr) == ("0", "")


@pytest.mark.skipif(sys.version_info >= (3, 13), reason="the module has another name there")
@pytest.mark.parametrize("first", ["", "import corvinex"])
def test_other_interpreters_of_a_process_get_an_import_error(first: str) -> None:
    code = f"""
        import _xxsubinterpreters as interpreters
        {first}
        other = interpreters.create()
        interpreters.run_string(other, '''
        try:
            import corvinex
        except ImportError as error:
            print(error)
        ''')
        interpreters.destroy(other)
        import corvinex
        print(corvinex.__version__)
    """
    indented = textwrap.dedent(code).replace("\n" + " " * 8, "\n")
    result = run(indented)
    assert result.stdout.splitlines() == [
        "corvinex can only be imported by the main interpreter of a process",
        corvinex.__version__,
    ], result.stderr
    assert result.returncode == 0


def test_an_import_without_numpy_names_it() -> None:
    result = run("import sys; sys.modules['numpy'] = None; import corvinex")
    assert "ModuleNotFoundError: No module named 'numpy" in result.stderr


def test_memory_that_runs_out_is_a_memory_error(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "large.tif"
    path.write_bytes(tiff([*grey_page(), longs(65000, *range(4_000_000))]))
    code = """
        import resource, sys, corvinex
        corvinex.read(sys.argv[2])
        limit = int(open("/proc/self/statm").read().split()[0]) * 4096 + (20 << 20)
        resource.setrlimit(resource.RLIMIT_AS, (limit, limit))
        for _ in range(3):
            try:
                corvinex.read(sys.argv[1])
            except MemoryError as error:
                print(isinstance(error, corvinex.Error), error)
        print(len(corvinex.read(sys.argv[2])))
    """
    result = run(code, path, SAMPLES / "palette.tif")
    line = f"True {path}: not enough memory for what the file holds"
    assert result.stdout.splitlines() == [line, line, line, "1"], result.stderr


@pytest.mark.parametrize(
    "task",
    [
        "kept.append(_native.Listing(samples, extensions=[], follow_links=False))",
        "_native.read_table(samples, [], 1, None, None)",
    ],
)
def test_the_first_memory_that_is_missing_is_a_memory_error(task: str) -> None:
    # What is missing first depends on how much there is.
    code = f"""
        import os, resource, sys
        from corvinex import _native
        samples, kept = [sys.argv[1].encode()], []
        for kilobytes in range(800, 4800, 100):
            child = os.fork()
            if child == 0:
                limit = int(open("/proc/self/statm").read().split()[0]) * 4096 + (kilobytes << 10)
                resource.setrlimit(resource.RLIMIT_AS, (limit, limit))
                try:
                    while True:
                        {task}
                except MemoryError:
                    os._exit(0)
            assert os.waitpid(child, 0)[1] == 0, kilobytes
    """
    result = run(code, SAMPLES)
    assert (result.returncode, result.stderr) == (0, "")


@pytest.mark.filterwarnings("ignore::corvinex.TagWarning")
@pytest.mark.parametrize("name", ["photo.jpg", "damaged.tif", "none.tif"])
def test_ten_thousand_reads_of_a_file_leave_nothing(name: str) -> None:
    path = SAMPLES / name

    def read(times: int) -> None:
        for _ in range(times):
            try:
                for value in corvinex.read(path)[0].raw.values():
                    del value
            except corvinex.Error:
                pass

    read(1000)
    gc.collect()
    values, before = _native.living_values(), resident_bytes()
    read(9000)
    gc.collect()
    assert _native.living_values() == values
    assert resident_bytes() - before < 1 << 20
    assert not [link for link in os.listdir("/proc/self/fd") if "image" in link]


def test_an_interrupt_while_reading_is_a_keyboard_interrupt(stack: pathlib.Path) -> None:
    code = """
        import sys, corvinex
        print("reading", flush=True)
        while True:
            corvinex.read(sys.argv[1])
    """
    with subprocess.Popen(
        [sys.executable, "-c", textwrap.dedent(code), stack],
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        text=True,
    ) as process:
        assert process.stdout is not None and process.stderr is not None
        process.stdout.readline()
        process.send_signal(signal.SIGINT)
        assert process.stderr.read().splitlines()[-1] == "KeyboardInterrupt"
    assert process.returncode == -signal.SIGINT
