"""Tags of TIFF, BigTIFF and EXIF files, and what is wrong with them.

`catalogue(path)` opens what `corvinex scan` has written; see `corvinex._catalogue`.
`python3 -m corvinex report` makes a page of it.
"""

from typing import Any

__all__ = ["Catalogue", "CatalogueError", "catalogue"]


def __getattr__(name: str) -> Any:
    # pandas takes a while to load, and not every use needs it.
    if name in __all__:
        from corvinex import _catalogue

        return getattr(_catalogue, name)
    raise AttributeError(f"module {__name__!r} has no attribute {name!r}")
