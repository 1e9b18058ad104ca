from typing import Any

version: str

class Listing:
    def __init__(
        self, operands: list[bytes], *, extensions: list[str], follow_links: bool
    ) -> None: ...
    def take(self, most: int) -> tuple[list[bytes], bytes]: ...

def write_part(
    names: list[bytes],
    asked: bytes,
    *,
    records: bytes,
    catalogue: bytes,
    max_values: int,
    header_offset: int | None,
    refused: dict[int, str],
) -> dict[str, Any]: ...
def stamps(names: list[bytes]) -> bytes: ...
def why_unreadable(name: bytes, header_offset: int | None) -> str | None: ...

class Merge:
    def __init__(
        self,
        path: bytes,
        *,
        started: str,
        finished: str,
        version: str,
        folder: bytes,
        max_values: int,
        header_offset: int | None,
    ) -> None: ...
    def add(self, part: bytes) -> tuple[tuple[int, int, int, int], int]: ...
    def finish(self) -> tuple[int, int, int, int]: ...
