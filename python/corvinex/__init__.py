"""Reads the tags of TIFF, BigTIFF and EXIF files."""

from __future__ import annotations

import importlib
from typing import TYPE_CHECKING, Any

from corvinex import _native

_native.require_main_interpreter()

from corvinex._inspection import File, FileDirectories, FileDirectory, Finding, inspect
from corvinex._native import Entry, Rational
from corvinex._reports import Error, TagWarning
from corvinex._result import Directories, Directory, RawDirectory, read
from corvinex._table import table

if TYPE_CHECKING:
    from corvinex import cluster as cluster
    from corvinex import report as report
    from corvinex._catalogue import Catalogue as Catalogue
    from corvinex._catalogue import CatalogueError as CatalogueError
    from corvinex._catalogue import catalogue as catalogue

# What needs pandas, and the packages inside, are imported by name: a star must work without.
__all__ = [
    "Directories",
    "Directory",
    "Entry",
    "Error",
    "File",
    "FileDirectories",
    "FileDirectory",
    "Finding",
    "RawDirectory",
    "Rational",
    "TagWarning",
    "inspect",
    "read",
    "table",
]
__version__: str = _native.version

_OF_CATALOGUES = ("Catalogue", "CatalogueError", "catalogue")
_PACKAGES = ("cluster", "report")


# To a type checker the names above are all that there are: any other is an error.
if not TYPE_CHECKING:

    def __getattr__(name: str) -> Any:
        # pandas takes a while to load, and not every use needs it.
        if name in _OF_CATALOGUES:
            return getattr(importlib.import_module("corvinex._catalogue"), name)
        if name in _PACKAGES:
            return importlib.import_module(f"corvinex.{name}")
        raise AttributeError(f"module {__name__!r} has no attribute {name!r}")


def __dir__() -> list[str]:
    return sorted([*__all__, *_OF_CATALOGUES, *_PACKAGES, "__version__"])
