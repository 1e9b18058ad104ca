"""A scan on a cluster of worker processes, beside the tool's on one machine."""

import asyncio
import contextlib
import json
import os
import shutil
import sqlite3
import struct
import subprocess
import sys
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import pytest

pytest.importorskip("distributed")

import dask
from distributed import Client, LocalCluster

import corvinex
from corvinex import cluster
from corvinex.cluster import _files, _listing, _manifest, _part

TOOL = os.environ["CORVINEX_TOOL"]
SAMPLES = Path(os.environ["CORVINEX_SAMPLES"])
PART_SIZE = 1_000
FILES = 2_300
LONG_AGO = 1_600_000_000


def small_tiff(width: int) -> bytes:
    """A header and a directory of two entries."""
    entries = struct.pack("<HHII", 256, 3, 1, width) + struct.pack("<HHII", 257, 4, 1, 7)
    return b"II*\0" + struct.pack("<IH", 8, 2) + entries + bytes(4)


def set_long_ago(path: Path | bytes) -> None:
    """A file that was changed a moment ago could change again without a trace."""
    os.utime(path, (LONG_AGO, LONG_AGO), follow_symlinks=False)


def make_collection(folder: Path) -> None:
    """Images, damaged ones, what cannot be read, and names of all kinds."""
    for number in range(FILES):
        path = folder / f"{number % 7}" / f"{number:05}.tif"
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(small_tiff(number))
    for sample in SAMPLES.iterdir():
        if sample.suffix in {".tif", ".jpg", ".dng"}:
            content = sample.read_bytes()
            (folder / sample.name).write_bytes(content)
            (folder / f"cut-{sample.name}").write_bytes(content[: len(content) // 3])
    (folder / "two\nlines.tif").write_bytes(small_tiff(1))
    Path(os.fsdecode(bytes(folder) + b"/no-utf-8-\xff\xfe.tif")).write_bytes(small_tiff(2))
    (folder / "empty.tif").touch()
    (folder / "text.txt").write_text("no image, and nobody asked for it")
    (folder / "without-ending").write_bytes(small_tiff(3))
    (folder / "leads-nowhere.tif").symlink_to("gone.tif")
    Path(os.fsdecode(bytes(folder) + b"/nowhere-\xff.tif")).symlink_to("gone.tif")
    (folder / "link.tif").symlink_to("empty.tif")
    os.mkfifo(folder / "pipe.tif")
    (folder / "closed.tif").write_bytes(small_tiff(4))
    (folder / "closed.tif").chmod(0)
    for path in folder.rglob("*"):
        if not path.is_dir():
            set_long_ago(path)


def tool(*arguments: str | Path) -> bytes:
    """What the tool prints. That files could not be read is no failure here."""
    run = subprocess.run([TOOL, *map(os.fsencode, arguments)], capture_output=True, check=False)
    assert run.returncode in {0, 1}, run.stderr
    return run.stdout


def columns_of(database: sqlite3.Connection, table: str, *without: str) -> str:
    names = [row[1] for row in database.execute(f"PRAGMA table_info({table})")]
    return ", ".join(f'{table}."{name}"' for name in names if name not in without)


def content_of(catalogue: Path) -> dict[str, list[Any]]:
    """All that a catalogue holds but ids and times, which differ between two scans."""
    database = sqlite3.connect(catalogue)
    with contextlib.closing(database):
        files = columns_of(database, "files", "id", "scan_id")
        directories = columns_of(database, "directories", "id", "file_id", "parent_id")
        tags = columns_of(database, "tags", "directory_id")
        findings = columns_of(database, "findings", "file_id")
        scans = columns_of(database, "scans", "id", "started", "finished", "folder")
        queries = {
            "files": f"SELECT {files} FROM files ORDER BY id",
            "directories": f"""SELECT files.path, {directories}, parents.position FROM directories
                JOIN files ON files.id = directories.file_id
                LEFT JOIN directories AS parents ON parents.id = directories.parent_id
                ORDER BY files.id, directories.position""",
            "tags": f"""SELECT files.path, directories.position, {tags} FROM tags
                JOIN directories ON directories.id = tags.directory_id
                JOIN files ON files.id = directories.file_id
                ORDER BY files.id, directories.position, number, entry""",
            "findings": f"""SELECT files.path, {findings} FROM findings
                JOIN files ON files.id = findings.file_id ORDER BY files.id, findings.position""",
            "images": "SELECT * FROM images ORDER BY file, directory",
            "scans": f"SELECT {scans} FROM scans",
            "tables": "SELECT type, name, sql FROM sqlite_master ORDER BY name",
            "mark": "PRAGMA application_id",
            "version": "PRAGMA user_version",
            "damage": "PRAGMA integrity_check",
        }
        content = {name: database.execute(query).fetchall() for name, query in queries.items()}
    # An image's ids differ.
    content["images"] = [row[2:] for row in content["images"]]
    return content


def assert_is_what_one_machine_makes(folder: Path, manifest: cluster.Manifest, work: Path) -> None:
    """Compares records with the tool's records, and the merged catalogue with its catalogue."""
    expected, merged = work / "expected.sqlite", work / "merged.sqlite"
    expected.unlink(missing_ok=True)
    tool("scan", "-q", folder, "-o", expected)
    cluster.merge(manifest.folder, merged, replace=True)
    content = content_of(merged)
    for name, rows in content_of(expected).items():
        assert content[name] == rows, name
    records = b"".join(path.read_bytes() for path in manifest.record_files())
    assert records == tool("json", "-q", "--max-values", "64", folder)


@pytest.fixture(scope="module")
def collection(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """Files that no test changes."""
    folder = tmp_path_factory.mktemp("collection")
    make_collection(folder)
    return folder


@contextlib.contextmanager
def local_client(work: Path) -> Iterator[Client]:
    with (
        LocalCluster(  # type: ignore[no-untyped-call]
            n_workers=2,
            threads_per_worker=1,
            processes=True,
            dashboard_address="127.0.0.1:0",
            local_directory=str(work / "workers"),
        ) as machines,
        Client(machines) as client,  # type: ignore[no-untyped-call]
    ):
        yield client


@pytest.fixture(scope="module")
def client(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Client]:
    """A cluster for the tests that leave it as it is."""
    with local_client(tmp_path_factory.mktemp("cluster")) as client:
        yield client


@pytest.fixture(scope="module")
def scanned(collection: Path, client: Client, tmp_path_factory: pytest.TempPathFactory) -> Path:
    """The results of a scan that no test changes."""
    out_dir = tmp_path_factory.mktemp("scanned") / "out"
    cluster.scan(collection, client, out_dir, part_size=PART_SIZE)
    return out_dir


@pytest.fixture
def copied(scanned: Path, tmp_path: Path) -> Path:
    """Results for a test of its own."""
    return Path(shutil.copytree(scanned, tmp_path / "out"))


def scan_again(collection: Path, client: Client, out_dir: Path) -> cluster.Manifest:
    return cluster.scan(collection, client, out_dir, part_size=PART_SIZE)


def test_a_cluster_makes_what_one_machine_makes(
    collection: Path, scanned: Path, tmp_path: Path
) -> None:
    manifest = cluster.Manifest.read(scanned)
    assert manifest.is_complete
    assert len(manifest.parts) == manifest.parts_read == 3
    assert manifest.counts.records == sum(manifest.counts.by_status.values())
    assert manifest.counts.listed == manifest.counts.records + manifest.counts.passed_over
    assert_is_what_one_machine_makes(collection, manifest, tmp_path)


def test_the_manifest_tells_which_files_could_not_be_read_and_why(
    collection: Path, scanned: Path
) -> None:
    manifest = cluster.Manifest.read(scanned)
    told = {Path(file.file).name: file.reason for file in manifest.unreadable()}
    assert told["leads-nowhere.tif"] == "No such file or directory"
    assert told[os.fsdecode(b"nowhere-\xff.tif")] == "No such file or directory"
    assert told["pipe.tif"].startswith("this is a pipe")
    assert sum(manifest.reasons.values()) == len(told) == manifest.counts.by_status["unreadable"]


def test_a_scan_of_the_tool_goes_on_with_a_merged_catalogue(
    collection: Path, scanned: Path, tmp_path: Path
) -> None:
    catalogue = tmp_path / "c.sqlite"
    merged = cluster.merge(scanned, catalogue)
    (collection / "later.tif").write_bytes(small_tiff(5))
    try:
        tool("scan", "-q", collection, "-o", catalogue)
    finally:
        (collection / "later.tif").unlink()
    with contextlib.closing(sqlite3.connect(catalogue)) as database:
        scans = "SELECT found, written, unchanged FROM scans ORDER BY id"
        rows = database.execute(scans).fetchall()
        [(unreadable,)] = database.execute(
            "SELECT count(*) FROM files WHERE status = 'unreadable'"
        ).fetchall()
    assert rows == [
        (merged.files, merged.files, 0),
        (merged.files + 1, unreadable + 1, merged.files - unreadable),
    ]


def test_a_second_scan_reads_nothing(collection: Path, client: Client, copied: Path) -> None:
    before = {path: path.stat().st_ino for path in (copied / "parts").iterdir()}
    manifest = scan_again(collection, client, copied)
    assert manifest.parts_read == 0
    assert manifest.counts == cluster.Manifest.read(copied).counts
    assert {path: path.stat().st_ino for path in (copied / "parts").iterdir()} == before


def test_a_changed_file_has_its_part_read_again(client: Client, tmp_path: Path) -> None:
    folder, out_dir = tmp_path / "files", tmp_path / "out"
    make_collection(folder)
    scan_again(folder, client, out_dir)
    (folder / "3" / "00003.tif").write_bytes(small_tiff(30_000))
    set_long_ago(folder / "3" / "00003.tif")  # the size and the time are what they were
    (folder / "new").write_bytes(small_tiff(3))
    set_long_ago(folder / "new")
    (folder / "new").replace(folder / "3" / "00010.tif")  # all but the inode is what it was
    manifest = scan_again(folder, client, out_dir)
    assert manifest.parts_read == 1
    (folder / "3" / "00003.tif").write_bytes(small_tiff(30_000) + b"longer")
    set_long_ago(folder / "3" / "00003.tif")
    manifest = scan_again(folder, client, out_dir)
    assert [part.read for part in manifest.parts].count(True) == 1
    assert_is_what_one_machine_makes(folder, manifest, tmp_path)


def test_a_file_that_can_be_read_again_has_its_part_read_again(
    client: Client, tmp_path: Path
) -> None:
    folder, out_dir = tmp_path / "files", tmp_path / "out"
    folder.mkdir()
    (folder / "link.tif").symlink_to("target")
    assert scan_again(folder, client, out_dir).reasons == {"No such file or directory": 1}
    os.mkfifo(folder / "target")
    manifest = scan_again(folder, client, out_dir)
    assert manifest.parts_read == 1
    [reason] = manifest.reasons
    assert reason.startswith("this is a pipe")
    assert scan_again(folder, client, out_dir).parts_read == 0


def test_a_file_that_was_just_changed_is_read_again(client: Client, tmp_path: Path) -> None:
    (tmp_path / "files").mkdir()
    (tmp_path / "files" / "new.tif").write_bytes(small_tiff(1))
    for _ in range(2):
        assert scan_again(tmp_path / "files", client, tmp_path / "out").parts_read == 1


def test_damaged_and_missing_parts_are_read_again(
    collection: Path, client: Client, copied: Path, tmp_path: Path
) -> None:
    manifest = cluster.Manifest.read(copied)
    records, catalogue, told = (manifest.part(entry) for entry in manifest.parts)
    content = bytearray(records.jsonl.read_bytes())
    content[len(content) // 2] ^= 1
    records.jsonl.write_bytes(content)
    with catalogue.sqlite.open("r+b") as file:
        file.truncate(4096)
    told.manifest.write_text('{"format": 1, "options": 7')
    (copied / "parts" / "left-by-a-dead-worker.jsonl.0.tmp").touch()
    with pytest.raises(cluster.ClusterError, match="damaged or missing"):
        cluster.merge(copied, tmp_path / "c.sqlite")
    assert not list(tmp_path.glob("c.sqlite*"))
    manifest = scan_again(collection, client, copied)
    assert manifest.parts_read == 3
    assert len(list((copied / "parts").iterdir())) == 9
    assert_is_what_one_machine_makes(collection, manifest, tmp_path)


def test_a_part_that_cannot_be_written_is_told_and_the_others_stay(
    collection: Path, client: Client, copied: Path, tmp_path: Path
) -> None:
    manifest = cluster.Manifest.read(copied)
    taken = manifest.part(manifest.parts[1]).jsonl
    taken.unlink()
    taken.mkdir()
    with pytest.raises(cluster.ClusterError, match="1 parts failed.*Is a directory"):
        scan_again(collection, client, copied)
    [failure] = cluster.Manifest.read(copied).failures
    assert manifest.parts[1].name in failure
    with pytest.raises(cluster.ClusterError, match="has not come to its end"):
        cluster.merge(copied, tmp_path / "c.sqlite")
    assert not list((copied / "parts").glob("*.tmp"))
    taken.rmdir()
    manifest = scan_again(collection, client, copied)
    assert [part.read for part in manifest.parts] == [False, True, False]
    assert_is_what_one_machine_makes(collection, manifest, tmp_path)


def test_with_other_options_all_is_read_again(
    collection: Path, client: Client, copied: Path, tmp_path: Path
) -> None:
    manifest = cluster.scan(collection, client, copied, part_size=PART_SIZE, max_values=2)
    assert manifest.parts_read == 3
    records = b"".join(path.read_bytes() for path in manifest.record_files())
    assert records == tool("json", "-q", "--max-values", "2", collection)


def test_an_interrupted_scan_is_not_merged_and_goes_on(
    collection: Path, client: Client, tmp_path: Path
) -> None:
    def interrupt(_: cluster.Manifest) -> None:
        raise KeyboardInterrupt

    out_dir = tmp_path / "out"
    with pytest.raises(KeyboardInterrupt):
        cluster.scan(collection, client, out_dir, part_size=PART_SIZE, progress=interrupt)
    assert len(cluster.Manifest.read(out_dir).parts) == 1
    with pytest.raises(cluster.ClusterError, match="has not come to its end"):
        cluster.merge(out_dir, tmp_path / "c.sqlite")
    manifest = scan_again(collection, client, out_dir)
    assert manifest.is_complete
    assert_is_what_one_machine_makes(collection, manifest, tmp_path)


KILLED_ONCE = """
import os
import signal

import corvinex._native as native

read = native.write_part


def write_part(*arguments, **options):
    result = read(*arguments, **options)
    try:
        os.close(os.open(os.environ["KILLED"], os.O_CREAT | os.O_EXCL))
    except FileExistsError:
        return result
    os.kill(os.getpid(), signal.SIGKILL)


native.write_part = write_part
"""


def change_workers(work: Path, monkeypatch: pytest.MonkeyPatch, program: str) -> None:
    """Has processes that are started from now on run a program first."""
    (work / "sitecustomize.py").write_text(program)
    monkeypatch.setenv("PYTHONPATH", f"{work}:{os.environ['PYTHONPATH']}")


def test_a_worker_that_is_killed_midway_changes_nothing(
    collection: Path, tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setenv("KILLED", str(tmp_path / "killed"))
    change_workers(tmp_path, monkeypatch, KILLED_ONCE)
    with local_client(tmp_path) as client:
        manifest = scan_again(collection, client, tmp_path / "out")
    assert (tmp_path / "killed").exists()
    assert manifest.parts_read == 3
    assert_is_what_one_machine_makes(collection, manifest, tmp_path)


def test_another_cluster_goes_on_where_one_was_lost(
    collection: Path, client: Client, tmp_path: Path
) -> None:
    out_dir = tmp_path / "out"
    with (
        dask.config.set({"distributed.comm.timeouts.connect": "1s"}),
        local_client(tmp_path) as lost,
    ):

        def lose(_: cluster.Manifest) -> None:
            assert lost.cluster is not None
            lost.cluster.close()

        with pytest.raises(cluster.ClusterError, match="the scheduler was lost"):
            cluster.scan(collection, lost, out_dir, part_size=PART_SIZE, progress=lose)
    manifest = scan_again(collection, client, out_dir)
    assert manifest.parts_read <= 2
    assert_is_what_one_machine_makes(collection, manifest, tmp_path)


KILLER = """
import os
import corvinex._native as native

read = native.write_part


def write_part(names, *arguments, refused, **options):
    if any(b"killer" in name for place, name in enumerate(names) if place not in refused):
        os.abort()
    return read(names, *arguments, refused=refused, **options)


native.write_part = write_part
"""


def test_a_file_that_kills_workers_becomes_unreadable(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    folder = tmp_path / "files"
    folder.mkdir()
    for name in ("a.tif", "b-killer.tif", "c.tif", "d.tif", "e-killer.tif"):
        (folder / name).write_bytes(small_tiff(1))
        set_long_ago(folder / name)
    change_workers(tmp_path, monkeypatch, KILLER)
    with (
        dask.config.set({"distributed.scheduler.allowed-failures": 0}),
        local_client(tmp_path) as client,
    ):
        manifest = scan_again(folder, client, tmp_path / "out")
        again = scan_again(folder, client, tmp_path / "out")
    assert [(Path(file.file).name, file.reason) for file in manifest.unreadable()] == [
        ("b-killer.tif", "a process that reads it ends with SIGABRT"),
        ("e-killer.tif", "a process that reads it ends with SIGABRT"),
    ]
    assert manifest.counts.by_status == {"warnings": 3, "unreadable": 2}
    assert again.parts_read == 0
    records = [json.loads(line) for line in manifest.record_files()[0].read_text().splitlines()]
    assert [Path(record["file"]).name for record in records] == sorted(os.listdir(folder))
    statuses = ["warnings", "unreadable", "warnings", "warnings", "unreadable"]
    assert [record["status"] for record in records] == statuses


def test_a_file_that_is_named_twice_has_one_row(
    collection: Path, client: Client, tmp_path: Path
) -> None:
    small = [collection / "0" / f"{number * 7:05}.tif" for number in range(300)]
    paths = [*small, collection / "0" / ".." / "0" / small[0].name, *small, collection / "0"] * 2
    manifest = cluster.scan(iter(paths), client, tmp_path / "out", part_size=PART_SIZE)
    merged = cluster.merge(tmp_path / "out", tmp_path / "merged.sqlite")
    tool("scan", "-q", *paths, "-o", tmp_path / "expected.sqlite")
    content = content_of(tmp_path / "merged.sqlite")
    expected = content_of(tmp_path / "expected.sqlite")
    assert content == expected
    assert merged.repeated > 0
    assert merged.files + merged.repeated == manifest.counts.records


def test_a_catalogue_is_replaced_only_when_that_is_asked_for(scanned: Path, tmp_path: Path) -> None:
    catalogue = tmp_path / "c.sqlite"
    catalogue.write_bytes(b"something else")
    with pytest.raises(FileExistsError):
        cluster.merge(scanned, catalogue)
    assert catalogue.read_bytes() == b"something else"
    with (
        _files.locked(tmp_path / "c.sqlite-lock", ""),
        pytest.raises(cluster.ClusterError, match="in use"),
    ):
        cluster.merge(scanned, catalogue, replace=True)
    cluster.merge(scanned, catalogue, replace=True)
    assert [path.name for path in tmp_path.iterdir()] == ["c.sqlite"]


def test_a_folder_has_one_scan_at_a_time(
    collection: Path, client: Client, copied: Path, tmp_path: Path
) -> None:
    with _files.locked(copied / "lock", ""):
        with pytest.raises(cluster.ClusterError, match="another scan or merge"):
            scan_again(collection, client, copied)
        with pytest.raises(cluster.ClusterError, match="another scan or merge"):
            cluster.merge(copied, tmp_path / "c.sqlite")


@pytest.mark.parametrize("part_size", [999, 10_001])
def test_a_part_is_neither_small_nor_large(
    collection: Path, client: Client, tmp_path: Path, part_size: int
) -> None:
    with pytest.raises(ValueError, match="from 1000 to 10000"):
        cluster.scan(collection, client, tmp_path / "out", part_size=part_size)


class NoClient:
    """Takes no task."""

    def submit(self) -> None: ...


@pytest.mark.parametrize("path", ["", "zero\0", "."])
@pytest.mark.parametrize("is_one", [True, False])
def test_names_that_cannot_be_read_are_refused_before_anything_is_written(
    tmp_path: Path, path: str, is_one: bool, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(tmp_path)
    paths = path if is_one else ["a.tif", path]
    client: Any = NoClient()
    with pytest.raises(ValueError, match="no name of a file|holds the folder of the results"):
        cluster.scan(paths, client, tmp_path / "out")
    assert not (tmp_path / "out").exists()


def test_a_name_that_an_iterator_gives_is_refused(client: Client, tmp_path: Path) -> None:
    with pytest.raises(ValueError, match="no name of a file"):
        cluster.scan(iter([""]), client, tmp_path / "out")


def test_a_new_file_moves_few_boundaries(tmp_path: Path) -> None:
    def part_names(names: list[str]) -> list[str]:
        operands = _listing.operands_of(names, tmp_path)
        found = _listing.partitions(operands, _listing.ListingOptions(), 2_000)
        return [partition.part_name() for partition in found]

    names = [f"/missing/{number:05}.tif" for number in range(20_000)]
    before = part_names(names)
    after = part_names(["/missing/00000-new.tif", *names])
    assert len(before) >= 10
    assert len(set(before) - set(after)) <= 4
    sizes = [
        len(partition.names)
        for partition in _listing.partitions(
            _listing.operands_of(names, tmp_path), _listing.ListingOptions(), 2_000
        )
    ]
    assert sum(sizes) == len(names)
    assert all(1_000 <= size <= 2_000 for size in sizes[:-1])


def test_a_worker_of_another_version_or_without_the_folder_refuses(tmp_path: Path) -> None:
    options = _manifest.ReadOptions("0.0.1", 64, None)
    partition = _listing.Partition([b"/a.tif"], b"\1")
    order = _part.Order.of(partition, tmp_path, "run-1", options, True)
    with pytest.raises(cluster.ClusterError, match="the client has 0.0.1"):
        _part.make_part(order)
    options = _manifest.ReadOptions(corvinex.__version__, 64, None)
    order = _part.Order.of(partition, tmp_path, "run-1", options, True)
    with pytest.raises(cluster.ClusterError, match="does not see the folder"):
        _part.make_part(order)


SHORT_OF_MEMORY = """
import json
import re
import resource
import sys

from corvinex import _native

names = [name.encode() for name in sys.argv[3:]]
taken = int(re.search(r"VmSize:\\s+(\\d+) kB", open("/proc/self/status").read())[1]) << 10
resource.setrlimit(resource.RLIMIT_AS, (taken + (24 << 20),) * 2)
result = _native.write_part(
    names,
    bytes([1] * len(names)),
    records=sys.argv[1].encode(),
    catalogue=sys.argv[2].encode(),
    max_values=64,
    header_offset=None,
    refused={},
)
print(json.dumps([result["by_status"], [reason for _, reason in result["unreadable"]]]))
"""


@pytest.mark.skipif("LD_PRELOAD" in os.environ, reason="a sanitizer takes all address space")
def test_a_file_that_needs_more_memory_than_there_is_becomes_unreadable(tmp_path: Path) -> None:
    count = 500_000
    large = b"II\x2b\0\x08\0\0\0" + struct.pack("<QQ", 16, count)
    large += struct.pack("<HHQQ", 1, 3, 1, 1) * count + bytes(8)
    names = [tmp_path / name for name in ("a.tif", "b.tif", "c.tif")]
    for name, content in zip(names, (small_tiff(1), large, small_tiff(2))):
        name.write_bytes(content)
    outputs = [tmp_path / "jsonl", tmp_path / "sqlite"]
    run = subprocess.run(
        [sys.executable, "-c", SHORT_OF_MEMORY, *outputs, *names], capture_output=True, check=True
    )
    assert json.loads(run.stdout) == [
        {"unreadable": 1, "warnings": 2},
        ["there is not enough memory to read it"],
    ]
    records = [json.loads(line) for line in (tmp_path / "jsonl").read_text().splitlines()]
    assert [record["file"] for record in records] == [str(name) for name in names]
    with contextlib.closing(sqlite3.connect(tmp_path / "sqlite")) as database:
        rows = database.execute("SELECT path, status FROM files ORDER BY id").fetchall()
    assert rows == [(record["file"], record["status"]) for record in records]


@pytest.mark.parametrize(
    ("options", "reason"),
    [
        ({"extensions": "tif"}, "extensions are"),
        ({"extensions": 3}, "extensions are"),
        ({"extensions": ["tif", 3]}, "extensions are"),
        ({"part_size": 1000.5}, "part_size must be a whole number, not float"),
        ({"max_values": None}, "max_values must be a whole number, not NoneType"),
        ({"header_offset": "8"}, "header_offset must be a whole number, not str"),
        ({"client": None}, "a distributed.Client, not NoneType"),
        ({"paths_or_folder": None}, "files and folders are named by str.*, not by NoneType"),
        ({"paths_or_folder": ["a.tif", 3]}, "expected str, bytes or os.PathLike object, not int"),
    ],
)
def test_arguments_of_other_types_are_refused_before_anything_is_written(
    tmp_path: Path, options: dict[str, Any], reason: str
) -> None:
    arguments: dict[str, Any] = {"paths_or_folder": "a.tif", "client": NoClient(), **options}
    with pytest.raises(TypeError, match=reason):
        cluster.scan(out_dir=tmp_path / "out", **arguments)
    assert not (tmp_path / "out").exists()


def test_a_closed_client_is_refused_before_anything_is_written(tmp_path: Path) -> None:
    options = {"n_workers": 0, "processes": False, "dashboard_address": None}
    with Client(**options) as client:  # type: ignore[no-untyped-call]
        pass
    with pytest.raises(ValueError, match="the client is closed"):
        cluster.scan(tmp_path / "a.tif", client, tmp_path / "out")
    assert not (tmp_path / "out").exists()


def test_an_asynchronous_client_is_refused(tmp_path: Path) -> None:
    async def scan() -> None:
        options = {"n_workers": 0, "processes": False, "dashboard_address": None}
        async with Client(asynchronous=True, **options) as client:  # type: ignore[no-untyped-call]
            cluster.scan(tmp_path, client, tmp_path / "out")

    with pytest.raises(TypeError, match="asynchronous"):
        asyncio.run(asyncio.wait_for(scan(), 60))
    assert not (tmp_path / "out").exists()
