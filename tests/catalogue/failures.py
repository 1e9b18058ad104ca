#!/usr/bin/python3
"""What a scan says when its catalogue cannot be written, and that nothing breaks: failures.py TOOL"""

import pathlib
import resource
import shutil
import signal
import sqlite3
import struct
import subprocess
import sys
import tempfile

KEPT = "; what was written before stays\n"


def scan(tool, tree, catalogue, **options):
    return subprocess.run([tool, "scan", "-q", tree, "-o", catalogue], capture_output=True, text=True,
                          check=False, **options)


def expect(what, result, message):
    """The tool ends with status 3 and one line."""
    if result.returncode != 3 or not result.stderr.endswith(message) or result.stderr.count("\n") != 1:
        sys.exit(f"{what}: status {result.returncode}, {result.stderr!r}")
    print(f"{what}: {result.stderr}", end="")


def make_tree(tree, count):
    tree.mkdir()
    for number in range(count):
        text = b"x" * 60
        (tree / f"{number:05}.tif").write_bytes(
            b"II*\0" + struct.pack("<IH", 8, 2) + struct.pack("<HHII", 256, 3, 1, number % 60000) +
            struct.pack("<HHIII", 270, 2, len(text), 38, 0) + text)


def is_whole(catalogue, count):
    database = sqlite3.connect(catalogue)
    files = database.execute("SELECT count(*) FROM files").fetchone()[0]
    tags = database.execute("SELECT count(*) FROM tags").fetchone()[0]
    sound = database.execute("PRAGMA integrity_check").fetchone()[0] == "ok"
    database.close()
    return sound and tags == 2 * files and (count is None or files == count)


def limit_files(size):
    def limit():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))
    return limit


def check_full_disk(tool, tree, work, count):
    place = work / "small"
    place.mkdir()
    script = f'mount -t tmpfs -o size=6m tmpfs "{place}" && "$@"; status=$?; cp "{place}"/* "{work}/left/"; exit $status'
    (work / "left").mkdir()
    result = subprocess.run(["unshare", "--mount", "sh", "-c", script, "sh", tool, "scan", "-q", tree, "-o",
                             place / "c.sqlite"], capture_output=True, text=True, check=False)
    if "mount:" in result.stderr or "unshare:" in result.stderr:
        print("a full disk: not tried, nothing may be mounted here")
        return
    expect("a full disk", result, f"{place}/c.sqlite: the disk is full" + KEPT)
    left = work / "left" / "c.sqlite"
    if not is_whole(left, None) or scan(tool, tree, left).returncode != 0 or not is_whole(left, count):
        sys.exit("a full disk has broken the catalogue")


def check_file_limit(tool, tree, work, count):
    """A limit on the size of files ends a scan as a full disk does, in the middle of a transaction."""
    catalogue = work / "limited.sqlite"
    expect("a limit on files before anything is written",
           scan(tool, tree, catalogue, preexec_fn=limit_files(1 << 20)), "disk I/O error\n")
    result = scan(tool, tree, catalogue, preexec_fn=limit_files(4 << 20))
    expect("a limit on files", result, KEPT)
    if not is_whole(catalogue, None) or scan(tool, tree, catalogue).returncode != 0 or \
            not is_whole(catalogue, count):
        sys.exit("a limit on files has broken the catalogue")


def check_refusals(tool, tree, work):
    expect("a folder that is not there", scan(tool, tree, work / "missing" / "c.sqlite"),
           "/missing/c.sqlite: it cannot be opened or made: No such file or directory\n")
    expect("a folder that nothing can be written to", scan(tool, tree, "/proc/c.sqlite"),
           "corvinex: /proc/c.sqlite: it cannot be opened or made: No such file or directory\n")
    expect("a folder of that name", scan(tool, tree, work),
           f"corvinex: {work}: it cannot be opened or made: Is a directory\n")
    other = work / "other.sqlite"
    sqlite3.connect(other).execute("CREATE TABLE notes (text)")
    before = other.read_bytes()
    expect("another database", scan(tool, tree, other), "it is no catalogue\n")
    if other.read_bytes() != before:
        sys.exit("another database was changed")
    (work / "text").write_text("no database " * 100)
    expect("no database", scan(tool, tree, work / "text"),
           "it is no catalogue\n")
    later = work / "later.sqlite"
    scan(tool, tree / "00000.tif", later)
    database = sqlite3.connect(later)
    database.execute("PRAGMA user_version = 2")
    database.close()
    before = later.read_bytes()
    expect("a later version", scan(tool, tree, later),
           "a later version of the tool has made it\n")
    if later.read_bytes() != before:
        sys.exit("a catalogue of a later version was changed")


def check_lock(tool, tree, work):
    catalogue = work / "locked.sqlite"
    scan(tool, tree / "00000.tif", catalogue)
    database = sqlite3.connect(catalogue, isolation_level=None)
    database.execute("BEGIN IMMEDIATE")
    expect("a locked catalogue", scan(tool, tree, catalogue),
           "another program has locked it\n")
    database.execute("ROLLBACK")
    if scan(tool, tree, catalogue).returncode != 0:
        sys.exit("the catalogue stays locked")


def main():
    tool = pathlib.Path(sys.argv[1]).resolve()
    count = 6000
    work = pathlib.Path(tempfile.mkdtemp())
    try:
        tree = work / "tree"
        make_tree(tree, count)
        check_refusals(tool, tree, work)
        check_lock(tool, tree, work)
        check_file_limit(tool, tree, work, count)
        check_full_disk(tool, tree, work, count)
    finally:
        shutil.rmtree(work)


main()
