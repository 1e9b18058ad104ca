"""The task of a worker: one part, read anew or found as an earlier scan has left it."""

import dataclasses
import socket
import tempfile
import zlib
from collections import Counter
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

from corvinex import _native
from corvinex.cluster import _files, _isolation
from corvinex.cluster._errors import ClusterError
from corvinex.cluster._files import FileSum
from corvinex.cluster._listing import Partition, digest_of
from corvinex.cluster._manifest import (
    Counts,
    PartManifest,
    PartPaths,
    ReadOptions,
    UnreadableFile,
    name_of,
    parts_folder,
    text_of,
    utc_now,
)


@dataclass(frozen=True)
class Order:
    """What a worker is to do. It goes through the scheduler, and is kept small."""

    out_dir: str
    run: str
    """A file that the client has made in the folder, to tell whether a worker sees the folder."""
    part: str
    names: bytes = field(repr=False)
    """Separated by zeros, compressed."""
    asked: bytes = field(repr=False)
    stamps: str
    """The digest of the files' stamps as the client has seen them."""
    options: ReadOptions
    verify: bool
    """Whether the contents of a part that is there are compared with its sums."""
    isolated: bool = False
    """Whether the files are read in a process of their own, as workers have died from them."""

    @staticmethod
    def of(
        partition: Partition, out_dir: Path, run: str, options: ReadOptions, verify: bool
    ) -> "Order":
        """The order for a partition."""
        return Order(
            out_dir=str(out_dir),
            run=run,
            part=partition.part_name(),
            names=zlib.compress(b"\0".join(partition.names), 1),
            asked=partition.asked,
            stamps=partition.stamps_digest(),
            options=options,
            verify=verify,
        )

    def unpacked_names(self) -> list[bytes]:
        """The names of the files."""
        return zlib.decompress(self.names).split(b"\0")


@dataclass(frozen=True)
class PartReport:
    """What a worker tells of a part."""

    part: str
    counts: Counts
    reasons: dict[str, int]
    read: bool


def make_part(order: Order) -> PartReport:
    """Sees to it that a part is there and tells what its files hold.

    :raises ClusterError: when this machine has another version, or does not see the folder
    :raises OSError: when the part cannot be written
    """
    if order.options.version != _native.version:
        raise ClusterError(
            f"{socket.gethostname()} has corvinex {_native.version} and the client has "
            f"{order.options.version}"
        )
    paths = PartPaths(parts_folder(Path(order.out_dir)), order.part)
    _refuse_without_run(order)
    manifest = _unchanged_part(order, paths)
    if manifest is None:
        manifest = _read_part(order, paths)
    reasons = dict(Counter(file.reason for file in manifest.unreadable))
    # A worker that was lost may have read it for the same scan.
    return PartReport(order.part, manifest.counts, reasons, manifest.run == order.run)


def _refuse_without_run(order: Order) -> None:
    if not (Path(order.out_dir) / order.run).exists():
        raise ClusterError(
            f"{socket.gethostname()} does not see the folder {order.out_dir} of the client, "
            "or the scan is over"
        )


def _unchanged_part(order: Order, paths: PartPaths) -> PartManifest | None:
    """The part that is there, if reading its files again would give the same."""
    manifest = PartManifest.read(paths)
    if manifest is None or manifest.options != order.options or manifest.stamps != order.stamps:
        return None
    # Whether a file may be read can change without a trace in its stamp.
    for file in manifest.unreadable:
        if not file.refused and file.reason != _native.why_unreadable(
            name_of(file.file), order.options.header_offset
        ):
            return None
    is_whole = _is_whole(paths.jsonl, manifest.jsonl, order.verify) and _is_whole(
        paths.sqlite, manifest.sqlite, order.verify
    )
    return manifest if is_whole else None


def _is_whole(path: Path, told: FileSum, verify: bool) -> bool:
    try:
        return path.stat().st_size == told.bytes and (not verify or _files.sum_of(path) == told)
    except OSError:
        return False


def _scratch_folder() -> str | None:
    """Where a worker may write on its own machine; None outside of workers, for the usual place."""
    from distributed import get_worker

    try:
        return str(get_worker().local_directory)
    except ValueError:
        return None


def _read_part(order: Order, paths: PartPaths) -> PartManifest:
    names = order.unpacked_names()
    # A database is written to a disk of this machine: locks and journals of databases are not safe
    # on every network file system, and its pages would be written there one by one.
    with tempfile.TemporaryDirectory(prefix="corvinex-", dir=_scratch_folder()) as folder:
        records, catalogue = Path(folder, "part.jsonl"), Path(folder, "part.sqlite")
        refused: dict[int, str] = {}
        if order.isolated:
            refused = _isolation.killers(names, order.asked, order.options)
        result = _isolation.write_part(
            names, order.asked, records, catalogue, order.options, refused, order.isolated
        )
        # Another scan may go on by now, after this one was broken off.
        _refuse_without_run(order)
        jsonl, sqlite = _publish([(records, paths.jsonl), (catalogue, paths.sqlite)])
    refused_names = {names[place] for place in refused}
    manifest = PartManifest(
        options=order.options,
        stamps=digest_of(result["stamps"]) if result["is_steady"] else None,
        counts=_counts_of(result, len(names)),
        unreadable=[
            UnreadableFile(text_of(name), reason, name in refused_names)
            for name, reason in result["unreadable"]
        ],
        jsonl=jsonl,
        sqlite=sqlite,
        run=order.run,
        read_at=utc_now(),
    )
    manifest.write(paths)
    return manifest


def _counts_of(result: dict[str, Any], listed: int) -> Counts:
    members = {counted.name for counted in dataclasses.fields(Counts)} & result.keys()
    return Counts(listed=listed, **{name: result[name] for name in members})


def _publish(files: list[tuple[Path, Path]]) -> list[FileSum]:
    """Copies files to the shared folder. They get their names when all of them are whole there."""
    temporary = [_files.temporary_name(target) for _, target in files]
    try:
        sums = [_files.copy(source, copy) for (source, _), copy in zip(files, temporary)]
        for copy, (_, target) in zip(temporary, files):
            copy.rename(target)
    except BaseException:
        for copy in temporary:
            copy.unlink(missing_ok=True)
        raise
    _files.sync(files[0][1].parent)
    return sums
