"""What comparisons with other readers share.

Values in a form that can be compared, and the count of what is equal and what differs."""

from __future__ import annotations

import collections
import dataclasses
import fractions
import math
import pathlib
import signal
from collections.abc import Callable, Iterable, Iterator, Sequence
from types import FrameType
from typing import Any

import numpy

import corvinex

# The bytes before a comment that name its character set.
CHARSETS = (b"ASCII\0\0\0", b"JIS\0\0\0\0\0", b"UNICODE\0", bytes(8))
SLOW = 1.0
"""Seconds of processor time after which another reader is not waited for."""

Told = tuple[str, int, Any]
"""What another reader tells: the path of a directory, the number of a tag, and a value."""


@dataclasses.dataclass(frozen=True)
class Pair:
    """One value of another reader, and the entries that have its place and number."""

    file: corvinex.File
    path: str
    number: int
    entries: list[corvinex.Entry]
    theirs: Any


Class = tuple[str, int, Callable[[Pair], bool]]
"""Why values differ, how many do over samples and corpus, and whether a pair is of the class."""


def quotient(numerator: float, denominator: float) -> float:
    if denominator:
        return numerator / denominator
    return math.copysign(math.inf, numerator) if numerator else math.nan


def numbers_of(value: Any) -> list[float] | None:
    """The numbers of a value, rationals divided; None for texts and bytes."""
    if isinstance(value, corvinex.Rational):
        return [float(value)]
    if isinstance(value, numpy.ndarray):
        if value.ndim == 2 and value.shape[1] == 2:
            return [quotient(*pair) for pair in value.tolist()]
        return list(value.ravel().tolist())
    return [value] if isinstance(value, (int, float)) else None


def encodings(text: str) -> list[bytes]:
    """The bytes that a text may have been read from."""
    found = [text.encode("utf-8", "surrogateescape"), text.encode("utf-16-le", "surrogatepass")]
    for charset in ("latin-1", "cp1252"):
        try:
            found.append(text.encode(charset))
        except UnicodeError:
            pass
    return found


def bytes_of(value: Any) -> list[bytes]:
    """The bytes that texts, bytes and small numbers may stand for."""
    if isinstance(value, bytes):
        return [value]
    if isinstance(value, str):
        return encodings(value)
    if isinstance(value, list) and all(isinstance(part, str) for part in value):
        return encodings("\0".join(value))
    try:
        return [bytes(int(number) for number in value)]
    except (TypeError, ValueError, OverflowError):
        return []


def trimmed(content: bytes) -> bytes:
    return content.split(b"\0")[0].rstrip()


def is_same_text(ours: Any, theirs: Any) -> bool:
    """Whether two values are the same bytes, or texts up to their first zero."""
    found, told = bytes_of(ours), bytes_of(theirs)
    told += [content[8:] for content in told if content[:8] in CHARSETS]
    if any(content in told for content in found):
        return True
    is_wide = isinstance(ours, str) and any(
        other.rstrip(b"\0") == content.rstrip(b"\0") for content in found for other in told
    )
    return is_wide or (
        isinstance(ours, (str, list))
        and any(trimmed(content) == trimmed(other) for content in found for other in told)
    )


def is_same(entry: corvinex.Entry, theirs: Any) -> bool:
    """Whether a reader tells the value of an entry. Numbers are lists there."""
    ours = entry.value
    if ours is None:
        return entry.count == 0 and len(theirs) == 0
    numbers = numbers_of(ours)
    if numbers is not None and isinstance(theirs, list):
        return len(numbers) == len(theirs) and all(
            one == other or (one != one and other != other) for one, other in zip(numbers, theirs)
        )
    return is_same_text(numbers if isinstance(ours, (int, numpy.ndarray)) else ours, theirs)


class Comparison:
    """Counts values that are equal, and the others by the class of their difference."""

    def __init__(self, classes: Sequence[Class]) -> None:
        self.classes = classes
        self.equal = 0
        self.files = 0
        self.unread: collections.Counter[str] = collections.Counter()
        self.counts: collections.Counter[str] = collections.Counter()
        self.unexplained: list[str] = []

    def add(self, path: pathlib.Path, read: Callable[[pathlib.Path], Iterable[Told]]) -> None:
        """Compares what another reader tells of a file, when it reads it."""
        file = corvinex.inspect(path)
        entries: dict[tuple[str, int], list[corvinex.Entry]] = collections.defaultdict(list)
        for directory in file.directories:
            for entry in directory:
                entries[directory.path, entry.number].append(entry)
        try:
            told = list(in_time(read(path)))
        except Exception as error:
            self.unread[type(error).__name__] += 1
            return
        self.files += 1
        for place, number, theirs in told:
            self.compare(Pair(file, place, number, entries.get((place, number), []), theirs))

    def compare(self, pair: Pair) -> None:
        if any(is_same(entry, pair.theirs) for entry in pair.entries):
            self.equal += 1
            return
        reason = next((reason for reason, _, holds in self.classes if holds(pair)), None)
        if reason:
            self.counts[reason] += 1
        else:
            ours = [(entry.type, entry.count, str(entry.value)[:60]) for entry in pair.entries]
            place = f"{pair.file.name}: {pair.path}.{pair.number}"
            self.unexplained.append(f"{place}: {str(pair.theirs)[:100]}, here {ours}")

    def check(self, least: int) -> None:
        """Fails where differences are unexplained, too many, or too few values were compared."""
        print(f"{self.equal} values of {self.files} files are equal; not read: {dict(self.unread)}")
        for reason, listed, _ in self.classes:
            print(f"{self.counts[reason]:5} of at most {listed}: {reason}")
        print(*self.unexplained, sep="\n")
        assert not self.unexplained
        assert all(self.counts[reason] <= listed for reason, listed, _ in self.classes)
        assert self.equal >= least


def in_time(told: Iterable[Told]) -> Iterator[Told]:
    """Passes on what a reader tells, and raises TimeoutError when it does not come to an end."""

    def stop(_signal: int, _frame: FrameType | None) -> None:
        raise TimeoutError

    before = signal.signal(signal.SIGVTALRM, stop)
    signal.setitimer(signal.ITIMER_VIRTUAL, SLOW)
    try:
        yield from told
    finally:
        signal.setitimer(signal.ITIMER_VIRTUAL, 0)
        signal.signal(signal.SIGVTALRM, before)


def flattened(value: Any) -> Any:
    """A value of another reader: texts and bytes as they are, numbers as a list."""
    if isinstance(value, (str, bytes)):
        return value
    if isinstance(value, fractions.Fraction):
        return [quotient(value.numerator, value.denominator)]
    if isinstance(value, numpy.ndarray):
        return value.ravel().tolist()
    if isinstance(value, (tuple, list)):
        parts = [flattened(part) for part in value]
        return [number for part in parts for number in (part if isinstance(part, list) else [part])]
    return [value]
