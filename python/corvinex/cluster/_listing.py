"""Divides files into partitions, as they are found."""

import hashlib
import itertools
import os
import zlib
from collections.abc import Collection, Iterable, Iterator
from dataclasses import dataclass, field
from pathlib import Path

from corvinex import _native
from corvinex._arguments import several_paths

LEAST_PATHS = 1_000
"""Fewer files are not worth a task: the scheduler takes about a millisecond for each."""
MOST_PATHS = 10_000
"""With more files much work would be lost with a worker, or done again for a single file."""

_TAKEN_AT_ONCE = 1_000
_OPERANDS_AT_ONCE = 10_000

PathName = str | bytes | os.PathLike[str] | os.PathLike[bytes]


@dataclass(frozen=True)
class ListingOptions:
    """Which files are read."""

    extensions: tuple[str, ...] = ()
    follow_links: bool = False


@dataclass
class Partition:
    """Files that one task reads, in order."""

    names: list[bytes] = field(default_factory=list)
    asked: bytes = b""
    """A byte for each file: 1 when it is told even if it is no image."""

    def part_name(self) -> str:
        """The name of the part that these files become, however they change."""
        digest = hashlib.sha256(b"\0".join(self.names))
        digest.update(b"\0" + self.asked)
        return digest.hexdigest()[:32]

    def add(self, other: "Partition", start: int, end: int) -> None:
        """Adds some files of another partition."""
        self.names += other.names[start:end]
        self.asked += other.asked[start:end]


def absolute_name(path: PathName, folder: bytes) -> bytes:
    """The name of a file as every machine takes it, from the root on.

    :raises ValueError: for a name that the system has not
    """
    name = os.fsencode(path)
    if not name or b"\0" in name:
        raise ValueError(f"{path!r} is no name of a file")
    return name if name.startswith(b"/") else folder.rstrip(b"/") + b"/" + name


def operands_of(paths: PathName | Iterable[PathName], out_dir: Path) -> Iterator[bytes]:
    """The absolute names of what is to be read, one at a time.

    What is there at once is looked over at once: what cannot be read is refused before a scan
    begins. Of an iterator it is refused when the scan comes to it.

    :raises TypeError: for what is no name
    :raises ValueError: for a name that the system has not, and a folder that holds the folder of
        the results
    """
    folder = os.getcwdb()
    above = {os.fsencode(place) for place in (out_dir, *out_dir.parents)}
    several = several_paths(paths)

    def operand_of(path: PathName) -> bytes:
        name = absolute_name(path, folder)
        if os.path.normpath(name) in above:
            raise ValueError(f"{os.fsdecode(name)} holds the folder of the results, {out_dir}")
        return name

    if isinstance(several, Collection):
        for path in several:
            operand_of(path)
    return map(operand_of, several)


def _found(operands: Iterator[bytes], options: ListingOptions) -> Iterator[Partition]:
    while some := list(itertools.islice(operands, _OPERANDS_AT_ONCE)):
        listing = _native.Listing(
            some, extensions=list(options.extensions), follow_links=options.follow_links
        )
        while True:
            names, asked = listing.take(_TAKEN_AT_ONCE)
            if not names:
                break
            yield Partition(names, asked)


def _is_boundary(name: bytes, length: int, least: int, most: int) -> bool:
    """Whether a partition of this length, at least the least, ends behind a name.

    The name itself decides within bounds, so that a file that comes or goes moves the boundaries
    of a few partitions, and not of all that follow.
    """
    return length >= most or zlib.crc32(name) % ((most - least) // 2 + 1) == 0


def partitions(
    operands: Iterator[bytes], options: ListingOptions, part_size: int
) -> Iterator[Partition]:
    """The files below operands, in partitions of at most so many files, and at least half as many
    and LEAST_PATHS, but for the last one."""
    least = max(LEAST_PATHS, part_size // 2)
    partition = Partition()
    for found in _found(operands, options):
        start = 0
        for place, name in enumerate(found.names):
            length = len(partition.names) + place + 1 - start
            if length >= least and _is_boundary(name, length, least, part_size):
                partition.add(found, start, place + 1)
                yield partition
                partition = Partition()
                start = place + 1
        partition.add(found, start, len(found.names))
    if partition.names:
        yield partition
