"""What a scan needs of the client of a cluster. `distributed.Client` has it."""

from collections.abc import Callable, Iterable
from typing import Any, Protocol, cast


class Future(Protocol):
    """What a worker is doing or has done."""

    key: str

    def result(self, timeout: float | None = None) -> Any:
        """What the function returned; raises what it raised."""


class Client(Protocol):
    """Hands functions to workers."""

    loop: Any
    """Where its futures are waited for."""

    def submit(
        self, func: Callable[..., Any], *args: Any, key: str, pure: bool, retries: int
    ) -> Any:
        """Has a worker call the function. Returns a `Future` at once."""

    def cancel(self, futures: Iterable[Any]) -> Any:
        """Takes back what no worker has begun yet."""

    def scheduler_info(self) -> Any:
        """What the scheduler knows of its workers, under "workers"."""


class Completed(Protocol):
    """Futures as they are done."""

    def add(self, future: Future) -> None:
        """One more to wait for."""

    def __next__(self) -> Future:
        """Waits for the next that is done."""


def completed(client: Client) -> Completed:
    """Waits for futures of a client, in the order in which they are done."""
    from distributed import as_completed

    return cast(Completed, as_completed(loop=client.loop))  # type: ignore[no-untyped-call]
