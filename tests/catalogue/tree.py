#!/usr/bin/python3
"""Scans a tree of everything that trees hold and compares catalogues: tree.py TOOL FILES KILLS FOLDER...

The tree has the files of the folders, damaged copies of them, FILES generated ones, pipes, devices, folders
that may not be read, links in circles, and names with line ends and bytes that are no UTF-8. What one thread,
four threads, a scan that is killed KILLS times, and a scan of files that another process changes in the
meantime make of it has to be the same, file by file, with nothing lost and nothing twice.
"""

import contextlib
import hashlib
import os
import pathlib
import random
import signal
import sqlite3
import stat
import struct
import subprocess
import sys
import tempfile
import threading
import time

ENDINGS = (b".tif", b".tiff", b".btf", b".dng", b".jpg", b".jpeg")
HEADERS = (b"II*\0", b"MM\0*", b"II+\0", b"MM\0+")
LARGEST_COPY = 1 << 20


def small_tiff(seed):
    """A grey image of one strip with a text, in either byte order."""
    order = "<>"[seed % 2]
    text = f"file {seed:06}".encode() + b"\0"
    entries = [(256, 3, 1, seed % 500 + 1), (257, 3, 1, 1), (258, 3, 1, 8), (259, 3, 1, 1), (262, 3, 1, 1),
               (270, 2, len(text), None), (273, 4, 1, 8), (277, 3, 1, 1), (278, 3, 1, 1),
               (279, 4, 1, seed % 500 + 1)]
    pixels = bytes(seed % 500 + 1)
    pixels += bytes(len(pixels) % 2)
    first = 8 + len(pixels)
    behind = first + 2 + 12 * len(entries) + 4
    made = (b"II*\0" if order == "<" else b"MM\0*") + struct.pack(order + "I", first) + pixels
    made += struct.pack(order + "H", len(entries))
    for tag, kind, count, value in entries:
        made += struct.pack(order + "HHI", tag, kind, count)
        if value is None:
            made += struct.pack(order + "I", behind)
        else:
            made += struct.pack(order + "HH" if kind == 3 else order + "I", *([value, 0] if kind == 3 else [value]))
    return made + struct.pack(order + "I", 0) + text


def add_copies(tree, folders):
    generator = random.Random(7)
    for number, folder in enumerate(folders):
        for path in sorted(pathlib.Path(folder).rglob("*")):
            if not path.is_file():
                continue
            place = tree / f"files-{number}" / path.relative_to(folder)
            place.parent.mkdir(parents=True, exist_ok=True)
            content = path.read_bytes()
            place.write_bytes(content)
            if content and len(content) < LARGEST_COPY:
                damaged = bytearray(content[:generator.randrange(len(content))])
                for _ in range(min(3, len(damaged))):
                    damaged[generator.randrange(min(len(damaged), 2000))] = generator.randrange(256)
                place.with_name("damaged-" + place.name).write_bytes(damaged)


def add_generated(tree, count):
    for seed in range(count):
        folder = tree / "generated" / f"{seed // 500:03}"
        if seed % 500 == 0:
            folder.mkdir(parents=True)
        (folder / f"{seed:06}.tif").write_bytes(small_tiff(seed))


def add_odd_things(tree):
    odd = tree / "odd"
    (odd / "deep" / "er").mkdir(parents=True)
    os.mkfifo(odd / "pipe.tif")
    with contextlib.suppress(PermissionError):
        os.mknod(odd / "null.tif", 0o600 | stat.S_IFCHR, os.makedev(1, 3))
    (odd / "zero.tif").symlink_to("/dev/zero")
    (odd / "nowhere.tif").symlink_to("missing.tif")
    (odd / "itself.tif").symlink_to("itself.tif")
    (odd / "deep" / "up").symlink_to("..")
    (odd / "deep" / "er" / "top").symlink_to(tree)
    (odd / "linked.tif").symlink_to("deep/real.tif")
    (odd / "deep" / "real.tif").write_bytes(small_tiff(3))
    (odd / "no ending").write_bytes(small_tiff(4))
    (odd / "emptied.TIF").write_bytes(b"")
    (odd / "overwritten.jpeg").write_bytes(bytes(4096))
    (odd / "note.txt").write_bytes(b"no image")
    for name in (b"a\nb.tif", b"bad-\xff\xfe.tif", b"tab\t\x1b[31m.tif", b" ", "\u2028\u00e4.tif".encode()):
        pathlib.Path(os.fsdecode(os.fsencode(odd) + b"/" + name)).write_bytes(small_tiff(5))
    closed = odd / "closed"
    closed.mkdir()
    (closed / "inside.tif").write_bytes(small_tiff(6))
    closed.chmod(0)


def expected_paths(tree):
    """The files that belong into a catalogue of the tree, found without the tool."""
    found = set()
    for folder, folders, names in os.walk(os.fsencode(tree)):
        for name in names:
            path = os.path.join(folder, name)
            if name.lower().endswith(ENDINGS):
                found.add(path)  # whatever it is, and wherever a link leads
                continue
            with contextlib.suppress(OSError):
                if stat.S_ISREG(os.stat(path).st_mode):
                    with open(path, "rb") as file:
                        first = file.read(4)
                    if first in HEADERS or first[:2] == b"\xff\xd8":
                        found.add(path)
        found |= {os.path.join(folder, name) for name in folders
                  if not os.access(os.path.join(folder, name), os.R_OK | os.X_OK)}
    return found


def scan(tool, tree, catalogue, *options):
    return subprocess.run([tool, "scan", tree, "-o", catalogue, *options], capture_output=True, check=False)


def digests(catalogue):
    """For each path a digest of everything that the catalogue tells of it, without its own numbers."""
    database = sqlite3.connect(catalogue)
    database.text_factory = bytes
    found = {}
    by_id = {}
    columns = [row[1].decode() for row in database.execute("PRAGMA table_info(files)")]
    kept = ", ".join(name for name in columns if name not in ("id", "scan_id", "path"))
    for number, path, *row in database.execute(f"SELECT id, path, {kept} FROM files ORDER BY path"):
        if path in found:
            sys.exit(f"{path} is there twice")
        found[path] = by_id[number] = hashlib.sha1(repr(row).encode())
    for number, *row in database.execute(
            "SELECT file_id, position, id, severity, directory, tag, arguments, text FROM findings "
            "ORDER BY file_id, position"):
        by_id[number].update(repr(row).encode())
    of_directory = {}
    for number, file, *row in database.execute(
            "SELECT d.id, d.file_id, d.position, d.path, d.kind, d.offset, d.entries, d.derived, "
            "p.path FROM directories AS d LEFT JOIN directories AS p ON p.id = d.parent_id ORDER BY d.id"):
        by_id[file].update(repr(row).encode())
        of_directory[number] = by_id[file]
    for number, *row in database.execute(
            "SELECT directory_id, number, entry, name, field, type, count, offset, json, integer, real, text, "
            "meaning, charset, rest, truncated, directories FROM tags ORDER BY directory_id, number, entry"):
        of_directory[number].update(repr(row).encode())
    database.close()
    return {path: digest.hexdigest() for path, digest in found.items()}


def compare(what, found, wanted):
    lost = wanted.keys() - found.keys()
    added = found.keys() - wanted.keys()
    changed = [path for path in wanted.keys() & found.keys() if wanted[path] != found[path]]
    if lost or added or changed:
        sys.exit(f"{what}: lost {sorted(lost)[:5]}, added {sorted(added)[:5]}, other rows {sorted(changed)[:5]}")
    print(f"{what}: the rows of {len(found)} files are the same", flush=True)


def check_halves(catalogue):
    """No file may be there in part, whenever the scan has ended."""
    database = sqlite3.connect(catalogue)
    if not database.execute("SELECT count(*) FROM sqlite_master").fetchone()[0]:
        print("the scan has ended before its tables were there", flush=True)
        database.close()
        return
    halves = database.execute(
        "SELECT count(*) FROM directories WHERE entries <> "
        "(SELECT count(*) FROM tags WHERE directory_id = directories.id)").fetchone()[0]
    strays = database.execute("SELECT count(*) FROM directories WHERE file_id NOT IN (SELECT id FROM files)")
    if halves or strays.fetchone()[0] or database.execute("PRAGMA quick_check").fetchone()[0] != "ok":
        sys.exit("a catalogue holds a part of a file")
    database.close()


def check_order_of_output(tool, tree):
    for command in (["json"], ["check", "--jsonl"], ["check", "--findings", "--all"]):
        outputs = {subprocess.run([tool, *command, "-q", "-j", jobs, tree], capture_output=True,
                                  check=False).stdout for jobs in ("1", "4")}
        if len(outputs) != 1:
            sys.exit(f"{command} prints something else with four threads")


def scan_killed(tool, tree, catalogue, kills, seconds):
    """A catalogue of a scan that is killed at random moments and goes on each time."""
    generator = random.Random(11)
    done = 0
    while done < kills:
        process = subprocess.Popen([tool, "scan", tree, "-q", "-j", "3", "-o", catalogue],
                                   stderr=subprocess.DEVNULL)
        try:
            process.wait(generator.uniform(0, seconds))
        except subprocess.TimeoutExpired:
            process.kill()
            done += 1
        if process.wait() not in (0, 1, -signal.SIGKILL):
            sys.exit(f"a scan that was killed before ended with {process.returncode}")
        if process.returncode != -signal.SIGKILL and done < kills:
            for path in catalogue.parent.glob(catalogue.name + "*"):
                path.unlink()  # it was done before the moment came: from the start again
        elif catalogue.exists() and catalogue.stat().st_size and done % 5 == 0:
            check_halves(catalogue)
    result = scan(tool, tree, catalogue)
    if result.returncode not in (0, 1):
        sys.exit(f"the last scan ended with {result.returncode}: {result.stderr}")
    check_halves(catalogue)


def scan_interrupted(tool, tree, catalogue, seconds):
    process = subprocess.Popen([tool, "scan", tree, "-o", catalogue], stderr=subprocess.PIPE)
    time.sleep(seconds)
    process.send_signal(signal.SIGINT)
    _, errors = process.communicate()
    if process.returncode == -signal.SIGINT and b"interrupted; " not in errors:
        sys.exit(f"the interrupt is not told: {errors}")
    if process.returncode not in (0, 1, -signal.SIGINT):
        sys.exit(f"an interrupted scan ended with {process.returncode}: {errors}")
    check_halves(catalogue)
    if scan(tool, tree, catalogue).returncode not in (0, 1):
        sys.exit("the scan after an interrupt failed")


def change_files(folder, is_over):
    """Makes, cuts, lengthens, replaces and removes files until it is told to end."""
    generator = random.Random(13)
    while not is_over.is_set():
        path = folder / f"{generator.randrange(300):03}.tif"
        content = small_tiff(generator.randrange(1000))
        with contextlib.suppress(FileNotFoundError):
            kind = generator.randrange(5)
            if kind == 0:
                path.unlink()
            elif kind == 1:
                os.truncate(path, generator.randrange(len(content)))
            elif kind == 2:
                with path.open("ab") as file:
                    file.write(content * 50)
            elif kind == 3:
                path.write_bytes(content)
            else:
                other = folder / "new.tmp"
                other.write_bytes(content)
                other.rename(path)


def scan_restless(tool, tree, catalogue, wanted):
    restless = tree / "restless"
    restless.mkdir()
    for number in range(300):
        (restless / f"{number:03}.tif").write_bytes(small_tiff(number))
    is_over = threading.Event()
    changer = threading.Thread(target=change_files, args=(restless, is_over))
    changer.start()
    try:
        for _ in range(3):
            result = scan(tool, tree, catalogue, "-j", "4", "--force")
            if result.returncode not in (0, 1):
                sys.exit(f"files that change stopped the scan: {result.stderr[-2000:]}")
            scan(tool, restless, catalogue, "-j", "4")
    finally:
        is_over.set()
        changer.join()
    below = os.fsencode(restless) + b"/"
    steady = {path: digest for path, digest in digests(catalogue).items() if not path.startswith(below)}
    compare("beside files that change", steady, wanted)
    scan(tool, tree, catalogue, "--prune")
    fresh = catalogue.with_name("fresh.sqlite")
    scan(tool, tree, fresh)
    compare("after files have changed", digests(catalogue), digests(fresh))


def main():
    tool, count, kills = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        tree = work / "tree"
        tree.mkdir()
        add_copies(tree, sys.argv[4:])
        add_generated(tree, count)
        add_odd_things(tree)
        try:
            start = time.monotonic()
            first = scan(tool, tree, work / "one.sqlite", "-j", "1")
            seconds = time.monotonic() - start
            if first.returncode not in (0, 1):
                sys.exit(f"the scan ended with {first.returncode}: {first.stderr[-2000:]}")
            wanted = digests(work / "one.sqlite")
            compare("one thread", dict.fromkeys(wanted), dict.fromkeys(expected_paths(tree)))
            scan(tool, tree, work / "four.sqlite", "-j", "4")
            compare("four threads", digests(work / "four.sqlite"), wanted)
            again = scan(tool, tree, work / "four.sqlite", "-j", "4")
            unreadable = sum(line.startswith(b"corvinex: ") for line in again.stderr.splitlines())
            if f" {unreadable} written".encode() not in again.stderr:
                sys.exit(f"files were read again: {again.stderr}")
            check_order_of_output(tool, tree)
            scan_killed(tool, tree, work / "killed.sqlite", kills, seconds / 2)
            compare(f"killed {kills} times", digests(work / "killed.sqlite"), wanted)
            scan_interrupted(tool, tree, work / "interrupted.sqlite", seconds / 3)
            compare("interrupted", digests(work / "interrupted.sqlite"), wanted)
            scan_restless(tool, tree, work / "four.sqlite", wanted)
        finally:
            (tree / "odd" / "closed").chmod(0o700)


main()
