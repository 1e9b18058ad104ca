"""Joins the parts of a scan into one catalogue."""

import os
from collections.abc import Callable
from dataclasses import dataclass
from pathlib import Path

from corvinex import _native
from corvinex.cluster import _files
from corvinex.cluster._errors import ClusterError
from corvinex.cluster._manifest import Manifest, PartEntry, PartManifest, name_of


@dataclass(frozen=True)
class Merged:
    """The rows of a merged catalogue."""

    files: int
    directories: int
    tags: int
    findings: int
    repeated: int
    """Files that stand in several parts, and have one row."""


def merge(
    out_dir: str | os.PathLike[str],
    catalogue: str | os.PathLike[str],
    *,
    replace: bool = False,
    progress: Callable[[int, int], None] | None = None,
) -> Merged:
    """Makes one catalogue of the parts of a scan, the same as `corvinex scan` makes of the files.

    The files have their rows in the order in which the scan found them. The catalogues of all
    parts are compared with their sums, and the rows are counted, before the new one gets its name.

    :param out_dir: the folder into which `scan` has written
    :param catalogue: the name of the catalogue
    :param replace: whether a catalogue of this name is replaced
    :param progress: called with the number of parts that are in it, and that of all
    :raises FileExistsError: when there is one and it is not to be replaced
    :raises FileNotFoundError: when no scan has written into the folder
    :raises ClusterError: when the scan has not come to its end, a part is damaged, or the catalogue
        is in use
    :raises OSError: when the catalogue cannot be written
    """
    target = Path(os.path.realpath(catalogue))
    folder = Path(out_dir).absolute()
    Manifest.read(folder)  # nothing is made where no scan has been
    with (
        _files.locked(folder / "lock", f"another scan or merge uses {folder}"),
        # A scan of the tool has the same lock.
        _files.locked(Path(f"{target}-lock"), f"{target} is in use by a scan"),
    ):
        manifest = Manifest.read(folder)
        if not manifest.is_complete:
            raise ClusterError("the scan has not come to its end: scan again")
        _refuse_existing(target, replace)
        temporary = _files.temporary_name(target)
        try:
            merged = _merge_into(temporary, manifest, progress)
            _files.sync(temporary)
            temporary.rename(target)
        except BaseException:
            temporary.unlink(missing_ok=True)
            raise
        _files.sync(target.parent)
    return merged


def _refuse_existing(target: Path, replace: bool) -> None:
    if target.exists() and not replace:
        raise FileExistsError(f"{target} is there already")
    for ending in ("-wal", "-journal"):
        if Path(f"{target}{ending}").exists():
            raise ClusterError(f"{target} is in use, or a scan into it was broken off")


def _merge_into(
    path: Path, manifest: Manifest, progress: Callable[[int, int], None] | None
) -> Merged:
    joined = _native.Merge(
        os.fsencode(path),
        started=manifest.started,
        finished=manifest.finished or manifest.started,
        version=manifest.options.version,
        folder=name_of(manifest.started_in),
        max_values=manifest.options.max_values,
        header_offset=manifest.options.header_offset,
    )
    repeated = 0
    for number, entry in enumerate(manifest.parts, 1):
        rows, repeated_here = joined.add(os.fsencode(_whole_part(manifest, entry)))
        repeated += repeated_here
        if rows[0] + repeated_here != entry.records:
            raise ClusterError(f"part {entry.name} has not the rows that it told of: scan again")
        if progress is not None:
            progress(number, len(manifest.parts))
    files, directories, tags, findings = joined.finish()
    if files + repeated != manifest.counts.records:
        raise ClusterError(
            f"{files} of {manifest.counts.records - repeated} files are in the catalogue"
        )
    return Merged(files, directories, tags, findings, repeated)


def _whole_part(manifest: Manifest, entry: PartEntry) -> Path:
    """The catalogue of a part, when it is as it was written."""
    paths = manifest.part(entry)
    part = PartManifest.read(paths)
    try:
        is_whole = (
            part is not None
            and part.options == manifest.options
            and part.counts.records == entry.records
            and _files.sum_of(paths.sqlite) == part.sqlite
        )
    except FileNotFoundError:
        is_whole = False
    if not is_whole:
        raise ClusterError(f"part {entry.name} is damaged or missing: scan again")
    return paths.sqlite
