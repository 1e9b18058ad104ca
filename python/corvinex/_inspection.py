"""Inspects files: what stands in them, exact and complete, and what is wrong with them."""

from __future__ import annotations

import dataclasses
import json
from collections.abc import Iterable, Iterator, Sequence
from types import TracebackType
from typing import Any, NoReturn, SupportsIndex, TypeVar, Union, overload

from corvinex import _html, _native
from corvinex._arguments import Key, element_index, is_key, tag_word, tag_words, whole
from corvinex._native import Entry
from corvinex._source import Source, resolve

# What is told of a file as a whole, or of a directory.
Fact = Union[int, float, str, list[float]]

Default = TypeVar("Default")


@dataclasses.dataclass(frozen=True)
class Finding:
    """Something that is wrong with a file, or worth knowing of it."""

    id: str
    """What is found, a name that stays the same from version to version."""
    severity: str
    """One of "error", "warning" and "note"."""
    directory: str
    """The path of the directory that it belongs to; empty for the file as a whole."""
    tag: int | None
    """The number of the tag that it is about."""
    arguments: tuple[int | str, ...]
    """The numbers and texts that `text` names."""
    text: str
    """One English sentence."""

    def __str__(self) -> str:
        return self.text


class FileDirectory:
    """One directory of a file, a collection of entries that are found by name and number.

    It belongs to its file, and raises ValueError when that is closed.

    >>> import corvinex
    >>> directory = corvinex.inspect("samples/photo.jpg").directory("0.exif")
    >>> directory["FNumber"].text
    'f/2.8'
    """

    __slots__ = ("_file", "_index")

    def __init__(self, file: File, index: int) -> None:
        self._file = file
        self._index = index

    @property
    def path(self) -> str:
        """Where it stands: "0", "1" in the main chain, "0.exif", "0.gps", "0.sub3" below."""
        return self._file._native.describe_directory(self._index)[0]

    @property
    def kind(self) -> str:
        """One of "main", "sub", "exif", "gps" and "interop"."""
        return self._file._native.describe_directory(self._index)[1]

    @property
    def offset(self) -> int:
        """The position of its entry count in the file, in bytes."""
        return self._file._native.describe_directory(self._index)[2]

    @property
    def entries(self) -> list[Entry]:
        """Its entries in file order: of those selected the ones that lie in the file whole."""
        return self._file._native.entries(self._index)

    @property
    def derived(self) -> dict[str, Fact]:
        """Facts of a main or sub directory: compression, photometric, strips or tiles.

        Widths and heights are in pixels, sizes in bytes.
        """
        return self._file._native.derived_of_directory(self._index)

    def get(self, key: Key, default: Default | None = None) -> Entry | Default | None:
        """The first entry with this name or number, or the default."""
        found = self._file._native.find(tag_word(key), self._index)
        return default if found is None else found

    def __getitem__(self, key: Key) -> Entry:
        word = tag_word(key)
        found = self._file._native.find(word, self._index)
        if found is None:
            self._file._refuse(word, self.path)
        return found

    def __contains__(self, key: object) -> bool:
        return is_key(key) and self.get(key) is not None

    def __iter__(self) -> Iterator[Entry]:
        return iter(self._file._native.entries(self._index))

    def __len__(self) -> int:
        return len(self.entries)

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, FileDirectory):
            return NotImplemented
        return self._file is other._file and self._index == other._index

    def __hash__(self) -> int:
        return hash((id(self._file), self._index))

    def __repr__(self) -> str:
        if self._file.closed:
            return f"<corvinex.FileDirectory of {_shown(self._file)}: closed>"
        return f"<corvinex.FileDirectory {self.path} of {_shown(self._file)}: {len(self)} entries>"

    def _repr_html_(self) -> str:
        is_closed = self._file.closed
        return _html.closed_page(self._file) if is_closed else _html.directory_page(self)

    def __reduce__(self) -> NoReturn:
        raise TypeError("a directory belongs to its open file and cannot be pickled")


class FileDirectories(Sequence[FileDirectory]):
    """The directories of a file in the order of the walk, each made when it is asked for."""

    __slots__ = ("_file",)

    def __init__(self, file: File) -> None:
        self._file = file

    def __len__(self) -> int:
        return self._file._native.directory_count()

    def __iter__(self) -> Iterator[FileDirectory]:
        file = self._file
        for place in range(len(self)):
            yield FileDirectory(file, place)

    @overload
    def __getitem__(self, index: SupportsIndex) -> FileDirectory:
        ...

    @overload
    def __getitem__(self, index: slice) -> list[FileDirectory]:
        ...

    def __getitem__(self, index: SupportsIndex | slice) -> FileDirectory | list[FileDirectory]:
        if isinstance(index, slice):
            return [FileDirectory(self._file, place) for place in range(*index.indices(len(self)))]
        if isinstance(index, str):
            raise TypeError(
                f"directories are counted; one with a path is file.directory({index!r})"
            )
        wanted = element_index(index)
        count = len(self)
        place = wanted + count if wanted < 0 else wanted
        if not 0 <= place < count:
            raise IndexError(f"there is no directory {wanted}: the file has {count}")
        return FileDirectory(self._file, place)

    def __repr__(self) -> str:
        told = "closed" if self._file.closed else len(self)
        return f"<corvinex.FileDirectories of {_shown(self._file)}: {told}>"


class File:
    """A file that is open for inspection, as corvinex.inspect() gives it.

    Any number of threads may use it. It is closed by close(), at the end of a with statement, and
    with its last reference; after close() everything that is asked of it, its directories and its
    entries raises ValueError.
    """

    __slots__ = ("_native", "_name", "_is_selection", "__weakref__")

    def __init__(self, native: _native.Inspection, name: str | None, is_selection: bool) -> None:
        self._native = native
        self._name = name
        self._is_selection = is_selection

    @property
    def name(self) -> str | None:
        """The name as it was given; None for bytes."""
        return self._name

    @property
    def size(self) -> int:
        """In bytes, when it was opened."""
        return self._native.size

    @property
    def status(self) -> str:
        """What the findings come to.

        "ok", "warnings", "damaged", "no-metadata" or "not-an-image".
        """
        return self._native.status

    @property
    def container(self) -> str | None:
        """One of "JPEG", "TIFF" and "BigTIFF"; None for what is no image."""
        return self._native.container

    @property
    def byte_order(self) -> str | None:
        """As the header tells, "little-endian" or "big-endian"; None without a right header."""
        return self._native.byte_order

    @property
    def header_offset(self) -> int | None:
        """The position of the TIFF header, in bytes; None when none was found."""
        return self._native.header_offset

    @property
    def directories(self) -> FileDirectories:
        """The main chain, then what its pointers lead to."""
        return FileDirectories(self)

    @property
    def findings(self) -> list[Finding]:
        """What is wrong with the file. The first use looks everything over."""
        return [Finding(*members) for members in self._native.findings()]

    @property
    def derived(self) -> dict[str, Fact]:
        """Facts of the file as a whole, such as width, height, pages, taken, latitude.

        Widths and heights are in pixels, latitude and longitude in degrees, south and west
        negative, the altitude in metres, below the sea negative.
        """
        return self._native.derived()

    @property
    def closed(self) -> bool:
        """Whether the file was closed."""
        return self._native.closed

    def directory(self, path: str) -> FileDirectory:
        """The directory with this path, such as "0.exif". Raises KeyError when there is none."""
        if not isinstance(path, str):
            kind = type(path).__name__
            raise TypeError(f'a directory is named by its path, such as "0.exif", not by {kind}')
        index = self._native.find_directory(path)
        if index is None:
            raise KeyError(f'there is no directory "{path}"')
        return FileDirectory(self, index)

    def get(self, key: Key, default: Default | None = None) -> Entry | Default | None:
        """The entry that file[key] gives, or the default when there is none."""
        found = self._native.find(tag_word(key))
        return default if found is None else found

    def __getitem__(self, key: Key) -> Entry:
        word = tag_word(key)
        found = self._native.find(word)
        if found is None:
            path, point, _ = word.rpartition(".")
            if point:
                self.directory(path.lower())
            self._refuse(word, path or "the file")
        return found

    def __contains__(self, key: object) -> bool:
        return is_key(key) and self.get(key) is not None

    def __iter__(self) -> NoReturn:
        raise TypeError("a file is no sequence: loop over its directories, file.directories")

    def _refuse(self, word: str, place: str) -> NoReturn:
        reason = _native.why_no_tag(word)
        among = " among the selected tags" if self._is_selection else ""
        raise KeyError(reason or f"{place} has no {word.rpartition('.')[2]}{among}")

    def to_json(self) -> str:
        """The record of the file in one line, as `corvinex json` prints it."""
        return self._native.to_json()

    def to_dict(self) -> dict[str, Any]:
        """The record of the file, as `corvinex json` prints it."""
        record: dict[str, Any] = json.loads(self.to_json())
        return record

    def close(self) -> None:
        """Lets go of the file, or of the bytes. Closing twice does nothing."""
        self._native.close()

    def __enter__(self) -> File:
        if self.closed:
            raise ValueError("the file is closed")
        return self

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        self.close()

    def __repr__(self) -> str:
        what = "closed" if self.closed else self.container or "no image"
        return f"<corvinex.File {_shown(self)}: {what}>"

    def _repr_html_(self) -> str:
        """What a notebook shows: a table that folds, of the first pages and entries."""
        return _html.closed_page(self) if self.closed else _html.file_page(self)

    def __reduce__(self) -> NoReturn:
        raise TypeError("an open file cannot be pickled; its to_dict() can")


def _shown(file: File) -> str:
    """What a file is called in one line: its name with whatever is not printable escaped."""
    return "bytes" if file.name is None else repr(file.name)


def inspect(
    source: Source,
    *,
    tags: Iterable[Key] | None = None,
    header_offset: SupportsIndex | None = None,
) -> File:
    """Opens a file for inspection: everything that stands in it, exact, and what is wrong with it.

    The source is a name (str or PathLike), bytes (bytes, bytearray, memoryview, or any object with
    contiguous memory, which is held until the file is closed), or a binary file object. Of a file
    object all bytes are read, wherever its position is, which stays; one that reads a regular file
    is read through a descriptor of its own, any other is read into memory. Directories and entries
    are read at once, values when they are asked for.

    tags selects entries as `corvinex json --tag` does: names, numbers, or either behind a path
    ("0.exif.LensModel"); none selects everything. header_offset tells where the TIFF header stands,
    in bytes, when that is not to be looked for.

    Damage never raises: what cannot be read is missing, and File.findings says so. Raises OSError
    (FileNotFoundError, PermissionError ...) for a file that cannot be opened or read, TypeError for
    any other source, and ValueError for a tag that does not exist and for a file object that is
    closed.

    >>> import corvinex
    >>> file = corvinex.inspect("samples/photo.jpg")
    >>> file.container, file.status
    ('JPEG', 'ok')
    >>> str(file["0.exif.FNumber"])
    'f/2.8'
    """
    position = None if header_offset is None else whole("header_offset", header_offset)
    if position is not None and not 0 <= position < 2**64:
        raise ValueError("header_offset is a position: 0 to 2^64 - 1")
    words = [] if tags is None else tag_words(tags)
    opened = resolve(source)
    native = _native.Inspection(
        opened.content, opened.descriptor, opened.system_name, position, words
    )
    return File(native, opened.name, bool(words))
