"""What charts show: numbers of files or images by label, and positions."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Bars:
    """A bar chart: labels with counts of what there is, and what is not among them."""

    name: str
    title: str
    counted: str  # what is counted: "files", "images"
    rows: tuple[tuple[str, int], ...]
    others: int = 0  # with labels beyond the most frequent ones
    kinds_of_others: int = 0
    unknown: int = 0  # that do not tell
    is_ordered: bool = False  # by a scale such as time, not by frequency


@dataclass(frozen=True)
class Dot:
    """Positions that lie close to one another: their mean in degrees, and their number."""

    latitude: float
    longitude: float
    count: int


@dataclass(frozen=True)
class Positions:
    """Positions of files. Those in a square whose sides are `step` degrees are one dot."""

    dots: tuple[Dot, ...]
    count: int
    step: float
