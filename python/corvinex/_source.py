"""What files are read from: names, bytes, and file objects."""

from __future__ import annotations

import dataclasses
import errno
import io
import mmap
import os
import tempfile
from typing import Any, Protocol, Union

import numpy

from corvinex._arguments import system_name


class Readable(Protocol):
    """A binary file object: what open() gives, and whatever else gives all of its bytes."""

    def read(self) -> bytes | bytearray | memoryview | None:
        """All bytes; None when there are none yet."""


Source = Union[
    str,
    os.PathLike[str],
    os.PathLike[bytes],
    bytes,
    bytearray,
    memoryview,
    mmap.mmap,
    numpy.ndarray[Any, Any],
    Readable,
]


@dataclasses.dataclass(frozen=True)
class Resolved:
    """A source as the extension module takes it: bytes, else a descriptor, else a name."""

    content: memoryview | None = None
    descriptor: int | None = None
    name: str | None = None
    """As it was given."""
    system_name: bytes | None = None
    """As the system has it."""


def resolve(source: Source) -> Resolved:
    """What a source reads. Raises TypeError for what is none, ValueError for what is closed."""
    if isinstance(source, (str, os.PathLike)):
        name = os.fspath(source)
        return Resolved(name=os.fsdecode(name), system_name=system_name(name))
    # A mapping has both memory and a method to read.
    if hasattr(source, "read") and not _has_memory(source):
        return _of_file_object(source)
    return _of_bytes(source)


def _has_memory(source: Any) -> bool:
    try:
        memoryview(source).release()
    except (TypeError, BufferError):
        return False
    return True


def _of_bytes(source: Any) -> Resolved:
    # The memory of objects holds addresses, and that of times is nobody's bytes.
    if isinstance(source, numpy.ndarray) and (
        source.dtype.hasobject or source.dtype.kind in "Mm"
    ):
        raise TypeError(f"an array of {source.dtype} does not hold the bytes of a file")
    try:
        content = memoryview(source)
    except (TypeError, BufferError):
        raise TypeError(
            "a file is given by its name, its bytes or a binary file object, "
            f"not by {type(source).__name__}"
        ) from None
    if not content.c_contiguous:
        raise TypeError("the bytes of a file must lie in memory one after the other; make a copy")
    return Resolved(content=content)


def _of_file_object(source: Any) -> Resolved:
    if isinstance(source, io.TextIOBase):
        raise TypeError("the file object gives text; open it in binary mode")
    if getattr(source, "closed", False):
        raise ValueError("the file object is closed")
    if not _is_plain(source):
        return _of_bytes(_content_of(source))
    if source.writable():
        source.flush()
    name = getattr(source, "name", None)
    if not isinstance(name, (str, bytes)):
        return Resolved(descriptor=source.fileno())
    return Resolved(
        descriptor=source.fileno(), name=os.fsdecode(name), system_name=system_name(name)
    )


def _is_plain(source: Any) -> bool:
    """Whether what a file object reads is what the file behind its descriptor holds.

    One that decompresses has the descriptor of what it reads from, so that only the classes of
    open() are believed.
    """
    if isinstance(source, tempfile._TemporaryFileWrapper):
        source = source.file
    if type(source) in (io.BufferedReader, io.BufferedRandom):
        source = source.raw
    return type(source) is io.FileIO and os.path.isfile(source.fileno())


def _content_of(source: Any) -> Any:
    """All that a file object gives, from its start where it can go there."""
    if hasattr(source, "seekable") and source.seekable():
        place = source.tell()
        try:
            source.seek(0)
            content = source.read()
        finally:
            source.seek(place)
    else:
        content = source.read()
    if isinstance(content, str):
        raise TypeError("the file object gives text; open it in binary mode")
    if content is None:
        # What does not wait for its bytes tells so that there are none yet.
        raise BlockingIOError(errno.EAGAIN, "the file object has no bytes yet and does not wait")
    return content
