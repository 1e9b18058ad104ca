"""The client's side of a scan: finds the files, hands them to workers, and notes what they tell."""

import contextlib
import os
import uuid
from collections.abc import Callable, Iterable, Iterator
from concurrent.futures import CancelledError
from dataclasses import dataclass, field, replace
from pathlib import Path

from corvinex import _native
from corvinex._arguments import whole
from corvinex.cluster import _files
from corvinex.cluster._client import Client, Future, completed
from corvinex.cluster._errors import ClusterError
from corvinex.cluster._listing import (
    LEAST_PATHS,
    MOST_PATHS,
    ListingOptions,
    PathName,
    Partition,
    operands_of,
    partitions,
)
from corvinex.cluster._manifest import (
    Manifest,
    PartEntry,
    ReadOptions,
    add_numbers,
    parts_folder,
    text_of,
    utc_now,
)
from corvinex.cluster._part import Order, PartReport, make_part

_RUN = "run-"
_RETRIES = 2


def scan(
    paths_or_folder: PathName | Iterable[PathName],
    client: Client,
    out_dir: str | os.PathLike[str],
    *,
    part_size: int = 5_000,
    max_values: int = 64,
    header_offset: int | None = None,
    extensions: Iterable[str] = (),
    follow_links: bool = False,
    verify: bool = True,
    progress: Callable[[Manifest], None] | None = None,
) -> Manifest:
    """Reads files on a cluster into parts: records as `corvinex json` prints them, and catalogues
    as `corvinex scan` writes them.

    Files that an earlier scan into the same folder has read are not read again, unless the list of
    the files of their part or one of them has changed (size, time of modification, inode), the part
    is damaged, or it was read by another version or with other options. A file that cannot be read
    has a record that says so. Ctrl-C, or whatever else ends the scan, leaves the parts that are
    finished.

    All machines see the files and `out_dir` under the same names.

    :param paths_or_folder: a file or a folder, or any number of them; an iterator is taken from as
        the scan goes on. Relative names count from the client's current folder.
    :param client: a `distributed.Client`, not an asynchronous one
    :param out_dir: the folder of the results; made when it is not there. No folder that is read
        may hold it.
    :param part_size: the most files of a part, from 1,000 to 10,000
    :param max_values: elements, characters or bytes to which a value is cut
    :param header_offset: where the header of TIFF data stands in every file, in bytes; None to
        look for it
    :param extensions: endings of the files that are read in folders, as "tif"; all without any
    :param follow_links: whether links to folders are followed
    :param verify: whether the contents of parts that are there are compared with their sums, or
        only their lengths
    :param progress: called with what is known so far whenever a part is there; its parts stand in
        the order in which they were done
    :returns: what was found and read; the same stands in `manifest.json`
    :raises TypeError: for arguments of other types
    :raises ValueError: for a size of parts, or a name, that cannot be, and a client that is closed
    :raises ClusterError: when a part could not be written, the cluster was lost, or another scan
        writes into the folder
    """
    options = ListingOptions(_endings(extensions), follow_links)
    part_size, max_values = whole("part_size", part_size), whole("max_values", max_values)
    if header_offset is not None:
        header_offset = whole("header_offset", header_offset)
    _check_client(client)
    if not LEAST_PATHS <= part_size <= MOST_PATHS:
        raise ValueError(
            f"part_size is {part_size}; a part has from {LEAST_PATHS} to {MOST_PATHS} files"
        )
    for number in (max_values, header_offset or 0):
        if not 0 <= number < 1 << 63:
            raise ValueError(f"{number} is no number of values or bytes")
    folder = Path(out_dir).absolute()
    operands = operands_of(paths_or_folder, folder)
    is_one = isinstance(paths_or_folder, str | bytes | os.PathLike)
    manifest = Manifest(
        folder=folder,
        source=text_of(os.fsencode(paths_or_folder)) if is_one else None,  # type: ignore[arg-type]
        started_in=text_of(os.getcwdb()),
        options=ReadOptions(_native.version, max_values, header_offset),
        part_size=part_size,
        extensions=list(options.extensions),
        follow_links=follow_links,
        started=utc_now(),
    )
    found = partitions(operands, options, part_size)
    parts_folder(folder).mkdir(parents=True, exist_ok=True)
    with _files.locked(folder / "lock", f"another scan or merge uses {folder}"):
        _Run(client, manifest, verify, progress).run(found)
    return manifest


def _check_client(client: Client) -> None:
    if not callable(getattr(client, "submit", None)):
        raise TypeError(f"the client is a distributed.Client, not {type(client).__name__}")
    if getattr(client, "asynchronous", False):
        # Its answers would wait for the loop that waits for them.
        raise TypeError("the client is asynchronous; scan in a thread, with a client of its own")
    if getattr(client, "status", None) == "closed":
        raise ValueError("the client is closed")


def _endings(extensions: Iterable[str]) -> tuple[str, ...]:
    if isinstance(extensions, Iterable) and not isinstance(extensions, str):
        endings = tuple(extensions)
        if all(isinstance(ending, str) for ending in endings):
            return endings
    raise TypeError('extensions are any number of endings, such as ["tif", "jpg"]')


@dataclass
class _Run:
    """A scan while it goes on."""

    client: Client
    manifest: Manifest
    verify: bool
    progress: Callable[[Manifest], None] | None
    name: str = field(default_factory=lambda: _RUN + uuid.uuid4().hex)
    waiting: dict[str, tuple[int, Order, Future]] = field(default_factory=dict)
    """Tasks by their keys, with the place of their part."""
    entries: dict[int, PartEntry] = field(default_factory=dict)
    error: Exception | None = None
    """The first one that a worker has raised. No further parts are begun after it."""

    def run(self, found: Iterator[Partition]) -> None:
        """Has all partitions read, and writes the manifest, also when that fails."""
        folder = self.manifest.folder
        for left in folder.glob(_RUN + "*"):
            left.unlink(missing_ok=True)
        # From now on what an earlier scan has left is no whole, whatever becomes of this one.
        self.manifest.write()
        (folder / self.name).touch()
        try:
            self._read_all(found)
            if self.error is None:
                self._remove_others()
                self.manifest.finished = utc_now()
        finally:
            # A worker that is in the middle of a part gives it up when this file is gone.
            (folder / self.name).unlink(missing_ok=True)
            with contextlib.suppress(CancelledError, OSError):
                self.client.cancel([future for _, _, future in self.waiting.values()])
            self.manifest.parts = [self.entries[place] for place in sorted(self.entries)]
            self.manifest.write()
        if self.error is not None:
            raise ClusterError(
                f"{len(self.manifest.failures)} parts failed: {self.manifest.failures[0]}"
            ) from self.error

    def _read_all(self, found: Iterator[Partition]) -> None:
        orders = self._orders(found)
        done = completed(self.client)
        is_listed = False
        while True:
            # A scheduler that knew all tasks of a large collection would drown.
            while not is_listed and self.error is None and len(self.waiting) < self._most():
                order = next(orders, None)
                if order is None:
                    is_listed = True
                else:
                    done.add(self._submit(*order))
            if not self.waiting:
                return
            future: Future = next(done)
            again = self._take(future)
            if again is not None:
                done.add(again)

    def _most(self) -> int:
        """How many tasks are handed over at once: enough that no worker waits for the client."""
        workers = self.client.scheduler_info()["workers"].values()
        return 2 * sum(int(worker["nthreads"]) for worker in workers) + 2

    def _orders(self, found: Iterator[Partition]) -> Iterator[tuple[int, Order]]:
        manifest = self.manifest
        names = set()
        for place, partition in enumerate(found):
            order = Order.of(partition, manifest.folder, self.name, manifest.options, self.verify)
            if order.part in names:
                manifest.repeated_parts += 1
            else:
                names.add(order.part)
                yield place, order

    def _submit(self, place: int, order: Order) -> Future:
        key = f"corvinex-part-{order.part}-{uuid.uuid4().hex}"
        future: Future = self.client.submit(make_part, order, key=key, pure=False, retries=_RETRIES)
        self.waiting[key] = (place, order, future)
        return future

    def _take(self, future: Future) -> Future | None:
        """Notes what a task has told. Returns one that does its work again, if there is need."""
        from distributed import KilledWorker

        place, order, _ = self.waiting.pop(future.key)
        try:
            report: PartReport = future.result()
        except CancelledError as error:
            raise ClusterError("the scheduler was lost; what was finished stays") from error
        except KilledWorker as error:
            if not order.isolated:
                return self._submit(place, replace(order, isolated=True))
            self._fail(order, error)
        except Exception as error:  # whatever a worker raises, such as that it has not the package
            self._fail(order, error)
        else:
            self._note(place, report)
        return None

    def _fail(self, order: Order, error: Exception) -> None:
        self.manifest.failures.append(f"part {order.part}: {type(error).__name__}: {error}")
        self.error = self.error or error

    def _note(self, place: int, report: PartReport) -> None:
        self.manifest.counts.add(report.counts)
        add_numbers(self.manifest.reasons, report.reasons)
        self.entries[place] = PartEntry(report.part, report.counts.records, report.read)
        self.manifest.parts.append(self.entries[place])
        if self.progress is not None:
            self.progress(self.manifest)

    def _remove_others(self) -> None:
        """Removes parts of lists of files that are no more, and what was left of broken ones."""
        names = {entry.name for entry in self.entries.values()}
        with os.scandir(parts_folder(self.manifest.folder)) as files:
            for file in files:
                name, _, ending = file.name.partition(".")
                if name not in names or ending not in {"jsonl", "sqlite", "json"}:
                    with contextlib.suppress(FileNotFoundError):
                        os.unlink(file.path)
