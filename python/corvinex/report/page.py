"""Makes the report page of a catalogue."""

import contextlib
import importlib.resources
import os
import pathlib
from typing import Any

import jinja2
from markupsafe import Markup

from corvinex._catalogue_file import errors_told, open_catalogue
from corvinex.report import display
from corvinex.report.atomic_file import refuse_same_file, write_whole
from corvinex.report.charts import bar_chart, position_chart
from corvinex.report.summary import Summary, summarise


def write_report(catalogue: str | os.PathLike[str], output: str | os.PathLike[str]) -> None:
    """Writes an HTML page about a catalogue of `corvinex scan`, which is the same each time.

    The page needs nothing but itself. It is written whole or not at all.

    Raises OSError when the catalogue cannot be opened or the page cannot be written, its subclass
    shutil.SameFileError when both are one file, and corvinex.CatalogueError (a ValueError) when the
    file is no catalogue or is damaged.
    """
    refuse_same_file(catalogue, output)
    write_whole(output, report_page(catalogue).encode("utf-8"))


def report_page(catalogue: str | os.PathLike[str]) -> str:
    """The page as a text. Raises what `write_report` raises of the catalogue."""
    name = os.fspath(catalogue)
    with contextlib.closing(open_catalogue(name)) as database, errors_told(name):
        summary = summarise(database)
    return _rendered(pathlib.Path(name).name, summary)


def _rendered(name: str, summary: Summary) -> str:
    found = summary.distributions
    charts = [(bars, bar_chart(bars) if bars.rows else None) for bars in found.bars]
    positions = position_chart(found.positions) if found.positions.dots else None
    template = _environment().get_template("page.html.jinja")
    return template.render(name=name, summary=summary, charts=charts, positions=positions)


def _environment() -> jinja2.Environment:
    environment = jinja2.Environment(
        loader=jinja2.FunctionLoader(_resource),
        autoescape=True,
        undefined=jinja2.StrictUndefined,
        trim_blocks=True,
        lstrip_blocks=True,
        finalize=_shown,
    )
    environment.filters |= {
        "number": display.number,
        "size": display.size,
        "share": display.share,
        "plural": display.plural,
    }
    environment.globals["style"] = Markup(_resource("page.css"))
    return environment


def _resource(name: str) -> str:
    return importlib.resources.files(__package__).joinpath(name).read_text("utf-8")


def _shown(value: Any) -> Any:
    """What the template prints: a text from the catalogue never without escapes for what hides."""
    return (
        display.visible(value)
        if isinstance(value, str) and not isinstance(value, Markup)
        else value
    )
