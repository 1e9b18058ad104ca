"""Files that are there whole or not at all, on a file system that several machines share."""

import contextlib
import errno
import fcntl
import hashlib
import os
import uuid
from collections.abc import Iterator
from dataclasses import dataclass
from pathlib import Path

from corvinex.cluster._errors import ClusterError

TEMPORARY = ".tmp"
_BLOCK = 1 << 20


@dataclass(frozen=True)
class FileSum:
    """What tells a file from one that was damaged: its length in bytes and its SHA-256."""

    bytes: int
    sha256: str


def temporary_name(path: Path) -> Path:
    """A name beside a file that nobody else uses."""
    return path.with_name(f"{path.name}.{uuid.uuid4().hex}{TEMPORARY}")


def sync(path: Path) -> None:
    """Waits until a file or the names in a folder are on the disk."""
    descriptor = os.open(path, os.O_RDONLY)
    try:
        os.fsync(descriptor)
    except OSError as error:
        # Some network file systems keep names safe without being asked, and refuse it for folders.
        if error.errno != errno.EINVAL or not path.is_dir():
            raise
    finally:
        os.close(descriptor)


def sum_of(path: Path) -> FileSum:
    """Reads a file for its sum."""
    with path.open("rb") as file:
        digest = hashlib.file_digest(file, "sha256")
        return FileSum(file.tell(), digest.hexdigest())


def copy(source: Path, target: Path) -> FileSum:
    """Copies a file to a new one and waits until it is on the disk. Returns the sum of it."""
    digest = hashlib.sha256()
    length = 0
    with source.open("rb", buffering=0) as read, target.open("xb", buffering=0) as written:
        while block := read.read(_BLOCK):
            digest.update(block)
            length += len(block)
            rest = memoryview(block)
            while rest:
                rest = rest[written.write(rest) :]
        os.fsync(written.fileno())
    return FileSum(length, digest.hexdigest())


def write_text(path: Path, text: str) -> None:
    """Writes a file in place of the one that is there, atomically."""
    temporary = temporary_name(path)
    try:
        with temporary.open("x", encoding="utf-8") as file:
            file.write(text)
            file.flush()
            os.fsync(file.fileno())
        temporary.rename(path)
    except BaseException:
        temporary.unlink(missing_ok=True)
        raise
    sync(path.parent)


@contextlib.contextmanager
def locked(path: Path, refusal: str) -> Iterator[None]:
    """Holds a lock on a file of its own, which is removed behind it.

    :raises ClusterError: with the refusal, when another process has the lock
    """
    while True:
        with path.open("ab") as file:
            try:
                fcntl.flock(file, fcntl.LOCK_EX | fcntl.LOCK_NB)
            except BlockingIOError:
                raise ClusterError(refusal) from None
            if not _is_at(file.fileno(), path):
                continue  # who had the lock before has removed its file
            try:
                yield
            finally:
                path.unlink(missing_ok=True)
            return


def _is_at(descriptor: int, path: Path) -> bool:
    try:
        return os.path.samestat(os.fstat(descriptor), path.stat())
    except FileNotFoundError:
        return False
