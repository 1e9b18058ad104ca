"""What a scan tells of itself, and each of its parts of itself."""

import dataclasses
import datetime
import json
import os
from collections.abc import Iterator, Mapping
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

from corvinex.cluster import _files
from corvinex.cluster._errors import ClusterError
from corvinex.cluster._files import FileSum

FORMAT = 1
"""Changes with what a manifest means. Parts of another format are read again."""


def utc_now() -> str:
    """The time as the tables of a catalogue have it."""
    return datetime.datetime.now(datetime.UTC).strftime("%Y-%m-%dT%H:%M:%SZ")


def add_numbers(total: dict[str, int], numbers: Mapping[str, int]) -> None:
    """Adds numbers by their names."""
    for name, number in numbers.items():
        total[name] = total.get(name, 0) + number


def text_of(name: bytes) -> str:
    """A name as JSON can hold it; bytes that are no UTF-8 become surrogates."""
    return name.decode("utf-8", "surrogateescape")


def name_of(text: str) -> bytes:
    """The name that a text stands for."""
    return text.encode("utf-8", "surrogateescape")


@dataclass(frozen=True)
class ReadOptions:
    """How files are read. Parts that were read in another way are read again."""

    version: str
    max_values: int
    header_offset: int | None


@dataclass(frozen=True)
class UnreadableFile:
    """A file that could not be read, and why."""

    file: str
    """Its name; bytes that are no UTF-8 stand as surrogates, see `os.fsdecode`."""
    reason: str
    refused: bool = False
    """Nobody tries to open it again, until it is changed: it has ended processes that read it."""


@dataclass
class Counts:
    """What files were found, and what became of them."""

    listed: int = 0
    """Files that were found."""
    records: int = 0
    """Files with a record and a row, unreadable ones included."""
    passed_over: int = 0
    """Files that are no images and do not have the ending of one."""
    repeated: int = 0
    """Files that were found again in the same part."""
    directories: int = 0
    tags: int = 0
    findings: int = 0
    by_status: dict[str, int] = field(default_factory=dict)
    """Records by their status."""

    def add(self, other: "Counts") -> None:
        """Adds those of a part."""
        for counted in dataclasses.fields(Counts):
            if counted.name != "by_status":
                total = getattr(self, counted.name) + getattr(other, counted.name)
                setattr(self, counted.name, total)
        add_numbers(self.by_status, other.by_status)


@dataclass(frozen=True)
class PartPaths:
    """Where the files of a part lie."""

    folder: Path
    name: str

    @property
    def jsonl(self) -> Path:
        """Its records."""
        return self.folder / f"{self.name}.jsonl"

    @property
    def sqlite(self) -> Path:
        """Its catalogue."""
        return self.folder / f"{self.name}.sqlite"

    @property
    def manifest(self) -> Path:
        """What it tells of itself."""
        return self.folder / f"{self.name}.json"

    def all(self) -> tuple[Path, Path, Path]:
        """All three of them."""
        return self.jsonl, self.sqlite, self.manifest


@dataclass
class PartManifest:
    """What a part tells of itself. It is written last, so that a part with it is whole."""

    options: ReadOptions
    stamps: str | None
    """The digest of the files' stamps; None when a file was being changed while it was read."""
    counts: Counts
    unreadable: list[UnreadableFile]
    jsonl: FileSum
    sqlite: FileSum
    run: str
    """The scan that has read the files."""
    read_at: str
    format: int = FORMAT

    def write(self, paths: PartPaths) -> None:
        """Writes it, atomically."""
        _files.write_text(paths.manifest, json.dumps(dataclasses.asdict(self)) + "\n")

    @staticmethod
    def read(paths: PartPaths) -> "PartManifest | None":
        """None when there is none that can be read."""
        try:
            members: dict[str, Any] = json.loads(paths.manifest.read_bytes())
            if members["format"] != FORMAT:
                return None
            return PartManifest(
                options=ReadOptions(**members.pop("options")),
                counts=Counts(**members.pop("counts")),
                unreadable=[UnreadableFile(**file) for file in members.pop("unreadable")],
                jsonl=FileSum(**members.pop("jsonl")),
                sqlite=FileSum(**members.pop("sqlite")),
                **members,
            )
        except (OSError, ValueError, TypeError, KeyError, AttributeError):
            return None


@dataclass(frozen=True)
class PartEntry:
    """A part in the manifest of its scan."""

    name: str
    """Of its files in the folder `parts`, without their endings."""
    records: int
    read: bool
    """Whether this scan has read it; else an earlier one has, and nothing has changed since."""


@dataclass
class Manifest:
    """What a scan has read, with which options and by which version, and what became of it.

    It stands in `manifest.json` in the folder of the results.
    """

    folder: Path
    """The folder of the results."""
    source: str | None
    """What was read; None for a list of paths."""
    started_in: str
    """The folder from which relative names counted."""
    options: ReadOptions
    part_size: int
    extensions: list[str]
    follow_links: bool
    started: str
    """UTC, ISO 8601."""
    finished: str | None = None
    """None when it was broken off, or still goes on."""
    counts: Counts = field(default_factory=Counts)
    reasons: dict[str, int] = field(default_factory=dict)
    """Why files could not be read, and how many of them for each reason."""
    parts: list[PartEntry] = field(default_factory=list)
    """In the order of the files."""
    repeated_parts: int = 0
    """Lists of files that are the same as one before, and have no part of their own."""
    failures: list[str] = field(default_factory=list)
    """Why parts could not be read or written. Empty when it is finished."""
    format: int = FORMAT

    @property
    def is_complete(self) -> bool:
        """Whether everything was read."""
        return self.finished is not None

    @property
    def parts_read(self) -> int:
        """The number of parts that this scan has read; the others had not changed."""
        return sum(part.read for part in self.parts)

    def part(self, entry: PartEntry) -> PartPaths:
        """Where the files of a part lie."""
        return PartPaths(parts_folder(self.folder), entry.name)

    def record_files(self) -> list[Path]:
        """The files of records, a JSON text a line, in the order of the files that they tell of."""
        return [self.part(entry).jsonl for entry in self.parts]

    def unreadable(self) -> Iterator[UnreadableFile]:
        """The files that could not be read, and why, in order."""
        for entry in self.parts:
            part = PartManifest.read(self.part(entry))
            if part is None:
                raise ClusterError(f"part {entry.name} is damaged or missing: scan again")
            yield from part.unreadable

    def write(self) -> None:
        """Writes it, atomically."""
        members = dataclasses.asdict(self)
        del members["folder"]
        _files.write_text(manifest_path(self.folder), json.dumps(members, indent=1) + "\n")

    @staticmethod
    def read(out_dir: str | os.PathLike[str]) -> "Manifest":
        """Reads what a scan has written.

        :raises FileNotFoundError: when no scan has written into the folder
        :raises ClusterError: when it cannot be understood
        """
        folder = Path(out_dir).absolute()
        try:
            members: dict[str, Any] = json.loads(manifest_path(folder).read_bytes())
            if members["format"] != FORMAT:
                raise ClusterError(f"{manifest_path(folder)} is of another version")
            return Manifest(
                folder=folder,
                options=ReadOptions(**members.pop("options")),
                counts=Counts(**members.pop("counts")),
                parts=[PartEntry(**part) for part in members.pop("parts")],
                **members,
            )
        except (ValueError, TypeError, KeyError, AttributeError) as error:
            raise ClusterError(f"{manifest_path(folder)} is damaged: scan again") from error


def manifest_path(folder: Path) -> Path:
    """Where the manifest of a scan lies."""
    return folder / "manifest.json"


def parts_folder(folder: Path) -> Path:
    """Where its parts lie."""
    return folder / "parts"
