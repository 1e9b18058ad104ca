"""Reads the tags of TIFF, BigTIFF and EXIF files."""

from typing import TYPE_CHECKING, Any

from corvinex import _native

if TYPE_CHECKING:
    from corvinex._catalogue import Catalogue as Catalogue
    from corvinex._catalogue import CatalogueError as CatalogueError
    from corvinex._catalogue import catalogue as catalogue

__version__: str = _native.version

_OF_CATALOGUES = ("Catalogue", "CatalogueError", "catalogue")


def __getattr__(name: str) -> Any:
    # pandas takes a while to load, and not every use needs it.
    if name in _OF_CATALOGUES:
        from corvinex import _catalogue

        return getattr(_catalogue, name)
    raise AttributeError(f"module {__name__!r} has no attribute {name!r}")
