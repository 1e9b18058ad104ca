"""Charts as SVG that stands inside a page and takes its colours from the page's style."""

import math
import warnings
import xml.etree.ElementTree as ElementTree
from collections.abc import Iterator
from io import BytesIO
from typing import Any

import matplotlib  # type: ignore[import]
from markupsafe import Markup
from matplotlib.backends.backend_svg import FigureCanvasSVG  # type: ignore[import]
from matplotlib.figure import Figure  # type: ignore[import]
from matplotlib.ticker import MaxNLocator  # type: ignore[import]

from corvinex.report.chart_data import Bars, Positions
from corvinex.report.display import number, plural, shortened, visible

_WIDTH = 5.4  # inches of 72 units each
_LABEL_COLUMNS = 26

# matplotlib knows no variables of CSS: it draws in these colours, which nothing else has, and they
# are replaced.
_INK, _BAR, _GRID = "#010203", "#010204", "#010205"
_COLOURS = {_INK: "currentColor", _BAR: "var(--bar)", _GRID: "var(--grid)"}

_STYLE = {
    "svg.fonttype": "none",
    # Without it the IDs within would be others each time.
    "svg.hashsalt": "corvinex",
    # Labels come from files, and a dollar is no formula there.
    "text.parse_math": False,
    "font.size": 12.0,
    "font.family": "DejaVu Sans",
    "text.color": _INK,
    "axes.labelcolor": _INK,
    "axes.edgecolor": _GRID,
    "xtick.color": _INK,
    "ytick.color": _INK,
    "grid.color": _GRID,
    "figure.facecolor": "none",
    "axes.facecolor": "none",
    "figure.constrained_layout.use": True,
}

_SVG = "{http://www.w3.org/2000/svg}"


def bar_chart(bars: Bars) -> Markup:
    """Draws bars: upright ones along a scale of time, else lying ones with numbers behind them."""
    told = "; ".join(f"{visible(label)}: {number(count)}" for label, count in bars.rows)
    draw = _upright_bars if bars.name == "dates" else _lying_bars
    with matplotlib.rc_context(_STYLE), warnings.catch_warnings():
        # The page's reader has the glyphs that matplotlib's font lacks.
        warnings.filterwarnings("ignore", "Glyph .* missing from current font")
        return _inline_svg(draw(bars), bars.name, bars.title, f"Number of {bars.counted}. {told}.")


def position_chart(positions: Positions) -> Markup:
    """Draws positions as dots, of which larger ones stand for more files."""
    with matplotlib.rc_context(_STYLE):
        figure = Figure(figsize=(_WIDTH, 0.65 * _WIDTH))
        axes = figure.add_subplot()
        for area, dots in _dots_by_area(positions):
            axes.scatter(
                [dot.longitude for dot in dots],
                [dot.latitude for dot in dots],
                s=area,
                color=_BAR,
                alpha=0.75,
                linewidths=0,
            )
        _set_extent(axes, positions)
        axes.set_xlabel("longitude (degrees east)")
        axes.set_ylabel("latitude (degrees north)")
        axes.grid(linewidth=0.8)
        axes.set_axisbelow(True)
        south, north = (f(dot.latitude for dot in positions.dots) for f in (min, max))
        west, east = (f(dot.longitude for dot in positions.dots) for f in (min, max))
        told = (
            f"{plural(positions.count, 'position')} between {south:.4g} and {north:.4g} degrees "
            f"of latitude and {west:.4g} and {east:.4g} degrees of longitude."
        )
        return _inline_svg(figure, "positions", "Positions", told)


def _lying_bars(bars: Bars) -> Figure:
    labels = [shortened(visible(label), _LABEL_COLUMNS) for label, _ in bars.rows]
    counts = [count for _, count in bars.rows]
    figure = Figure(figsize=(_WIDTH, 0.34 * len(counts) + 0.2))
    axes = figure.add_subplot()
    places = range(len(counts))
    drawn = axes.barh(places, counts, color=_BAR, height=0.72)
    axes.bar_label(drawn, [number(count) for count in counts], padding=4)
    axes.set_yticks(places, labels)
    axes.set_ylim(len(counts) - 0.5, -0.5)
    # Room for the numbers behind the bars.
    axes.set_xlim(0, max(1, *counts) * (1.12 + 0.04 * len(number(max(counts)))))
    axes.xaxis.set_visible(False)
    axes.tick_params(length=0)
    axes.spines[:].set_visible(False)
    return figure


def _upright_bars(bars: Bars) -> Figure:
    counts = [count for _, count in bars.rows]
    figure = Figure(figsize=(_WIDTH, 0.55 * _WIDTH))
    axes = figure.add_subplot()
    # A single bar as broad as the chart would look like a background.
    axes.bar(range(len(counts)), counts, color=_BAR, width=0.85)
    axes.set_xlim(min(-0.5, len(counts) / 2 - 3), max(len(counts) - 0.5, len(counts) / 2 + 2))
    step = math.ceil(len(counts) / 6)
    axes.set_xticks(range(0, len(counts), step), [label for label, _ in bars.rows[::step]])
    axes.yaxis.set_major_locator(MaxNLocator(5, integer=True))
    axes.yaxis.set_major_formatter(lambda value, place: number(int(value)))
    axes.grid(axis="y", linewidth=0.8)
    axes.set_axisbelow(True)
    axes.tick_params(length=0, pad=6)
    axes.spines[["top", "right", "left"]].set_visible(False)
    return figure


def _dots_by_area(positions: Positions) -> Iterator[tuple[int, list[Any]]]:
    for least, most, area in ((1, 10, 24), (10, 1000, 48), (1000, math.inf, 90)):
        dots = [dot for dot in positions.dots if least <= dot.count < most]
        if dots:
            yield area, dots


def _set_extent(axes: Any, positions: Positions) -> None:
    """Leaves room around the dots, and shows one place alone within its degree."""
    for values, set_limits, end in (
        ([dot.longitude for dot in positions.dots], axes.set_xlim, 180),
        ([dot.latitude for dot in positions.dots], axes.set_ylim, 90),
    ):
        first, last = min(values), max(values)
        room = max(0.08 * (last - first), 0.5)
        set_limits(max(first - room, -end - 2), min(last + room, end + 2))


def _inline_svg(figure: Figure, name: str, title: str, description: str) -> Markup:
    """The figure as an element of HTML: without namespaces, with a title, and its IDs its own."""
    FigureCanvasSVG(figure)
    written = BytesIO()
    nothing = dict.fromkeys(("Date", "Creator", "Format", "Type"))
    figure.savefig(written, format="svg", metadata=nothing)
    root = ElementTree.fromstring(written.getvalue())
    for metadata in root.findall(f"{_SVG}metadata"):
        root.remove(metadata)
    for element in root.iter():
        element.tag = element.tag.rpartition("}")[2]
        attributes = {key.rpartition("}")[2]: value for key, value in element.attrib.items()}
        element.attrib.clear()
        element.attrib.update(
            {key: _of_page(key, value, name) for key, value in attributes.items()}
        )
    for attribute in ("width", "height", "version"):
        root.attrib.pop(attribute, None)
    root.attrib.update({"role": "img", "aria-labelledby": f"{name}-title {name}-desc"})
    for place, (tag, text) in enumerate((("title", title), ("desc", description))):
        element = ElementTree.Element(tag, {"id": f"{name}-{tag}"})
        element.text = text
        root.insert(place, element)
    return Markup(ElementTree.tostring(root, encoding="unicode", short_empty_elements=False))


def _of_page(key: str, value: str, name: str) -> str:
    if key == "id":
        return f"{name}-{value}"
    if key == "href":
        return value.replace("#", f"#{name}-", 1)
    for drawn, of_page in _COLOURS.items():
        value = value.replace(drawn, of_page)
    return value.replace("url(#", f"url(#{name}-")
