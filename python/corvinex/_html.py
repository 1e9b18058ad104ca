"""What notebooks show of a file: a page that folds, bounded whatever the file holds."""

from __future__ import annotations

import html
import itertools
import unicodedata
from collections.abc import Iterable, Iterator
from typing import TYPE_CHECKING, Any, TypeVar

from corvinex._native import Entry

if TYPE_CHECKING:
    from corvinex._inspection import File, FileDirectory, Finding
    from corvinex._result import Directories, Directory

MOST_DIRECTORIES = 50
MOST_ENTRIES = 200
MOST_FINDINGS = 50
MOST_CHARACTERS = 200
# A value of more elements is told by its size, unread.
MOST_ELEMENTS = 10_000

# No colours but the reader's own, so that it suits a dark page as well as a light one.
STYLE = (
    "<style>"
    ".corvinex table{border-collapse:collapse;margin:.3em 0 .6em 1.2em;font-size:.9em}"
    ".corvinex th,.corvinex td{text-align:left;vertical-align:top;padding:.1em .8em .1em 0;"
    "background:none;color:inherit;border-bottom:1px solid rgba(128,128,128,.35);"
    "white-space:pre}"
    ".corvinex th:last-child,.corvinex td:last-child{overflow-wrap:anywhere;min-width:8em;"
    "max-width:60em;white-space:pre-wrap}"
    ".corvinex details{overflow-x:auto}"
    ".corvinex th{opacity:.7;font-weight:normal}"
    ".corvinex summary{cursor:pointer}"
    ".corvinex .more{margin-left:1.2em;opacity:.7}"
    "</style>"
)

Item = TypeVar("Item")


def _escaped(text: object) -> str:
    """A text as HTML, cut where it is long; what would turn the line round or hide is shown."""
    shown = str(text)
    if len(shown) > MOST_CHARACTERS:
        shown = shown[:MOST_CHARACTERS] + " …"
    return html.escape("".join(c if _is_shown(c) else "\ufffd" for c in shown))


def _is_shown(character: str) -> bool:
    # Python calls no blank but one printable. Joiners shape letters, and join pictures into one.
    return (
        character.isprintable()
        or character in "\n\t\u200c\u200d"
        or unicodedata.category(character) == "Zs"
    )


def _row(cells: Iterable[object], tag: str = "td") -> str:
    return "<tr>" + "".join(f"<{tag}>{_escaped(cell)}</{tag}>" for cell in cells) + "</tr>"


def _table(headings: Iterable[str], rows: Iterable[str]) -> str:
    return f"<table><thead>{_row(headings, 'th')}</thead><tbody>{''.join(rows)}</tbody></table>"


def _fold(summary: str, content: str, is_open: bool = False) -> str:
    state = " open" if is_open else ""
    return f"<details{state}><summary>{summary}</summary>{content}</details>"


def _first(items: Iterable[Item], most: int) -> Iterator[Item]:
    return itertools.islice(items, most)


def _counted(count: int, one: str, several: str) -> str:
    return f"{count:,} {one if count == 1 else several}"


def _more(count: int, most: int, what: str) -> str:
    return f'<div class="more">… and {count - most:,} more {what}</div>' if count > most else ""


def _value(entry: Entry) -> str:
    if entry.count > MOST_ELEMENTS:
        return f"{entry.count:,} of type {entry.type}"
    return str(entry)


def _entry(entry: Entry) -> str:
    name = entry.name or entry.field or ""
    return _row((entry.number, name, entry.type, f"{entry.count:,}", _value(entry)))


def _entries(directory: FileDirectory) -> str:
    entries = directory.entries
    rows = (_entry(entry) for entry in _first(entries, MOST_ENTRIES))
    table = _table(("number", "name", "type", "count", "value"), rows)
    return table + _more(len(entries), MOST_ENTRIES, "entries")


def directory_fold(directory: FileDirectory, is_open: bool) -> str:
    """One directory that folds."""
    derived = directory.derived
    facts = [str(derived[fact]) for fact in ("compression", "photometric") if fact in derived]
    told = ", ".join([_counted(len(directory), "entry", "entries"), *facts])
    return _fold(
        f"<b>{_escaped(directory.path)}</b> {_escaped(told)}", _entries(directory), is_open
    )


def _finding(finding: Finding) -> str:
    return _row((finding.severity, finding.directory, finding.id, finding.text))


def _findings(findings: list[Finding]) -> str:
    if not findings:
        return ""
    shown = list(_first(findings, MOST_FINDINGS))
    table = _table(("severity", "directory", "finding", "what it says"), map(_finding, shown))
    count = _count_of(findings)
    return _fold(
        _counted(count, "finding", "findings"), table + _more(count, _count_of(shown), "findings")
    )


def _count_of(findings: Iterable[Finding]) -> int:
    # "more" stands for findings of a rule that the list is too short for.
    return sum(int(one.arguments[1]) if one.id == "more" else 1 for one in findings)


def _page(content: str) -> str:
    return f'{STYLE}<div class="corvinex">{content}</div>'


def file_page(file: File) -> str:
    """A file: what it is, its findings and its directories, of which the first stands open."""
    head = ", ".join([file.container or "no image", file.status, f"{file.size:,} bytes"])
    facts = file.derived
    folds = [
        directory_fold(directory, is_open=place == 0)
        for place, directory in enumerate(_first(file.directories, MOST_DIRECTORIES))
    ]
    content = [
        f"<div><b>{_escaped(file.name or 'bytes')}</b> {_escaped(head)}</div>",
        _fold("facts", _table(("fact", "value"), map(_row, facts.items()))) if facts else "",
        _findings(file.findings),
        *folds,
        _more(len(file.directories), MOST_DIRECTORIES, "directories"),
    ]
    return _page("".join(content))


def directory_page(directory: FileDirectory) -> str:
    """One directory by itself."""
    return _page(directory_fold(directory, is_open=True))


def _field_value(value: Any) -> str:
    """A value of read() in a few words. What is long is cut before a text is made of it."""
    if isinstance(value, str):
        return value[: MOST_CHARACTERS + 1]
    if isinstance(value, list):
        return f"list of {len(value):,}"
    size = getattr(value, "size", 0)
    if size > MOST_ELEMENTS:
        return f"{' x '.join(map(str, value.shape))} of {value.dtype}"
    return "" if value is None else str(value)


def _field_fold(directory: Directory, summary: str, is_open: bool) -> str:
    rows = (_row((name, _field_value(directory[name]))) for name in _first(directory, MOST_ENTRIES))
    content = _table(("field", "value"), rows) + _more(len(directory), MOST_ENTRIES, "fields")
    fields = _counted(len(directory), "field", "fields")
    return _fold(f"<b>{_escaped(summary)}</b> {fields}", content, is_open)


def result_page(directories: Directories) -> str:
    """What read() gives: its directories, of which the first stands open."""
    folds = [
        _field_fold(directory, str(place), is_open=place == 0)
        for place, directory in enumerate(_first(directories, MOST_DIRECTORIES))
    ]
    head = f"<div><b>{_counted(len(directories), 'directory', 'directories')}</b></div>"
    return _page(head + "".join(folds) + _more(len(directories), MOST_DIRECTORIES, "directories"))


def result_directory_page(directory: Directory) -> str:
    """One directory of what read() gives by itself."""
    return _page(_field_fold(directory, type(directory).__name__, is_open=True))


def closed_page(file: File) -> str:
    """All that is left of a file that was closed."""
    return _page(f"<div><b>{_escaped(file.name or 'bytes')}</b> closed</div>")
