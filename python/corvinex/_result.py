"""The result of reading a file: directories with their fields, in the module's own terms."""

from __future__ import annotations

import difflib
import os
from collections.abc import ItemsView, Iterable, Iterator, Mapping, Sequence, ValuesView
from typing import Any, SupportsIndex, overload

from corvinex import _html, _native, _reports
from corvinex._arguments import Path, element_index, system_name, whole_double

_ONE_OF_AN_ARRAY = "a directory is one of an array"


class Directories(Sequence["Directory"]):
    """A sequence of directories that have the same fields: those of a file, or those that one
    field of another directory leads to. A slice is a sequence of the same kind.

    Nothing is copied. Each directory, and each array made of one, keeps the whole result of the
    read in memory.
    """

    __slots__ = ("_array", "_places", "_elements")

    _array: _native.StructArray | None
    _places: dict[str, int]
    _elements: range

    def __init__(self, array: _native.StructArray | None) -> None:
        self._array = array
        fields = array.fields if array is not None else ()
        self._places = {name: place for place, name in enumerate(fields)}
        self._elements = range(len(array) if array is not None else 0)

    @property
    def fields(self) -> tuple[str, ...]:
        """The names of the fields, which every directory has, in their order."""
        return tuple(self._places)

    def __len__(self) -> int:
        return len(self._elements)

    @overload
    def __getitem__(self, index: SupportsIndex) -> Directory: ...
    @overload
    def __getitem__(self, index: slice) -> Directories: ...
    def __getitem__(self, index: SupportsIndex | slice) -> Directory | Directories:
        if not isinstance(index, slice):
            place, count = element_index(index), len(self)
            if not -count <= place < count:
                raise IndexError(f"there is no directory {place}: there are {count}")
            return Directory(self, self._elements[place])
        part = Directories.__new__(Directories)
        part._array = self._array
        part._places = self._places
        part._elements = self._elements[index]
        return part

    def __iter__(self) -> Iterator[Directory]:
        for element in self._elements:
            yield Directory(self, element)

    def __repr__(self) -> str:
        return f"<Directories: {len(self)} with {len(self._places)} fields>"

    def _repr_html_(self) -> str:
        """What a notebook shows: a table that folds, of the first directories and fields."""
        return _html.result_page(self)


class Directory(Mapping[str, Any]):
    """The fields of one directory, in their order: ``directory["Width"]`` or ``directory.Width``.

    A value is made each time when it is asked for. By the class of the module's value it is

    - a float for a double of size 1 x 1,
    - a one-dimensional float64 array for a row of doubles, whatever its length, and a
      two-dimensional one of rows x columns in Fortran order for every other size; an empty double
      has the shape (0, 0),
    - the same with uint8 for uint8, also for a single byte,
    - a str for char, with surrogates that have no partner left as they are,
    - a list for cell,
    - a :class:`Directories` for a struct array,
    - None for a field that has no value in this directory.

    Arrays look at the memory of the result and cannot be written to; ``numpy.array(value)`` makes a
    copy that can, and that does not keep the result. Two directories are equal where they are the
    same one of one result.
    """

    __slots__ = ("_set", "_element")

    _set: Directories
    _element: int

    def __init__(self, directories: Directories, element: int) -> None:
        self._set = directories
        self._element = element

    @property
    def raw(self) -> RawDirectory:
        """The same fields with an array of rows and columns for every value."""
        return RawDirectory(self._set, self._element)

    def __getitem__(self, name: str) -> Any:
        return _finished(_array_of(self._set).value(self._element, self._set._places[name]))

    def __getattr__(self, name: str) -> Any:
        # Names that Python asks for by itself, perhaps of an object that is not complete yet.
        if name.startswith("_"):
            raise AttributeError(name)
        if name not in self._set._places:
            raise AttributeError(_missing(name, self._set._places))
        return self[name]

    def __iter__(self) -> Iterator[str]:
        return iter(self._set._places)

    def __len__(self) -> int:
        return len(self._set._places)

    def __contains__(self, name: object) -> bool:
        return name in self._set._places

    def values(self) -> ValuesView[Any]:
        return _Values(self)

    def items(self) -> ItemsView[str, Any]:
        return _Items(self)

    def __dir__(self) -> Iterable[str]:
        return [*super().__dir__(), *self._set._places]

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Directory) or type(other) is not type(self):
            return NotImplemented
        return self._set._array is other._set._array and self._element == other._element

    def __hash__(self) -> int:
        return hash((id(self._set._array), self._element))

    def __repr__(self) -> str:
        return f"<{type(self).__name__}: {_listed(list(self))}>"

    def _repr_html_(self) -> str:
        return _html.result_directory_page(self)


class RawDirectory(Directory):
    """The fields of one directory with an array of rows and columns for every value, as the module
    made it.

    Doubles are float64, uint8 is uint8, char is uint16 with a UTF-16 code unit in each element, all
    without a copy. A cell array is an array of objects with such arrays, a struct array one with a
    :class:`RawDirectory` in each element. None stands for a field without a value. Arrays with more
    than one column are in Fortran order.
    """

    __slots__ = ()

    def __getitem__(self, name: str) -> Any:
        return _raw(_array_of(self._set).raw(self._element, self._set._places[name]))

    def values(self) -> ValuesView[Any]:
        return ValuesView(self)


class _Values(ValuesView[Any]):
    """All values at once, which takes less time than one after the other."""

    __slots__ = ()

    _mapping: Directory

    def __len__(self) -> int:
        return len(self._mapping._set._places)

    def __iter__(self) -> Iterator[Any]:
        directory = self._mapping
        array = directory._set._array
        assert array is not None, _ONE_OF_AN_ARRAY
        return iter(array.values(directory._element, _finished))


class _Items(ItemsView[str, Any]):
    __slots__ = ()

    _mapping: Directory

    def __iter__(self) -> Iterator[tuple[str, Any]]:
        return zip(self._mapping, self._mapping.values())


def read(
    path: Path,
    *,
    header_offset: SupportsIndex | None = None,
    skip: SupportsIndex = 0,
    limit: SupportsIndex = 0,
) -> Directories:
    """Reads the tags of a TIFF, a BigTIFF, or the EXIF block of a JPEG.

    ``header_offset`` is the byte position of the TIFF header. It is looked for where none is given.
    ``skip`` is the number of directories to leave out at the start of the main chain, ``limit`` the
    largest number of directories to keep in each set, 0 for all. A chain of directories that comes
    back on itself is cut.

    >>> import corvinex
    >>> directories = corvinex.read("samples/pages-big-endian.tif")
    >>> len(directories)
    3
    >>> directories[0].XResolution
    300.0
    >>> directories[0]["BitsPerSample"]
    8.0

    What is left out of a damaged file is told by :class:`TagWarning`. The whole file is read, and no
    other thread waits for it. Raises :class:`Error` where a file cannot be read, TypeError and
    ValueError for arguments that cannot be used.
    """
    native_path = system_name(os.fspath(path))
    numbers = (
        None if header_offset is None else whole_double("header_offset", header_offset),
        whole_double("skip", skip),
        whole_double("limit", limit),
    )
    shown = os.fspath(path)
    try:
        array, reports, failure = _native.read(native_path, *numbers)
    except MemoryError:
        raise _reports.out_of_memory(shown) from None
    _reports.warn(reports, shown, stacklevel=2)
    if failure is not None:
        raise _reports.error_from(*failure, shown)
    return Directories(array)


def _array_of(directories: Directories) -> _native.StructArray:
    array = directories._array
    assert array is not None, _ONE_OF_AN_ARRAY
    return array


def _finished(value: Any) -> Any:
    kind = type(value)
    if kind is _native.StructArray:
        return Directories(value)
    if kind is list:
        return [_finished(each) for each in value]
    return value


def _raw(value: Any) -> Any:
    import numpy

    if type(value) is _native.StructArray:
        directories = Directories(value)
        elements = numpy.empty(value.shape, dtype=object)
        for index in range(elements.size):
            elements.flat[index] = RawDirectory(directories, index)
        return elements
    if isinstance(value, numpy.ndarray) and value.dtype == object:
        for index in range(value.size):
            value.flat[index] = _raw(value.flat[index])
    return value


def _listed(names: Sequence[str]) -> str:
    shown = 3
    if len(names) <= shown + 1:
        return ", ".join(names)
    return f"{', '.join(names[:shown])} and {len(names) - shown} more fields"


def _missing(name: str, names: Iterable[str]) -> str:
    nearest = difflib.get_close_matches(name, list(names), n=1)
    hint = f"; the nearest name is {nearest[0]}" if nearest else ""
    return f"the directory has no field {name}{hint}"
