"""`python3 -m corvinex report`."""

import argparse
import shutil
import sys

from corvinex._catalogue_file import CatalogueError
from corvinex.report.atomic_file import refuse_same_file, write_whole
from corvinex.report.display import visible

# As of the tool: docs/tool.md.
SUCCESS, FAILED, BAD_USAGE, OUTPUT_FAILED = range(4)


def add_parser(subparsers: "argparse._SubParsersAction[argparse.ArgumentParser]") -> None:
    """Adds the command to those of the package."""
    about = (
        "Makes an HTML page of a catalogue that `corvinex scan` has written. "
        "The page needs no network."
    )
    parser = subparsers.add_parser("report", help="make a page of a catalogue", description=about)
    parser.add_argument(
        "catalogue", metavar="CATALOGUE", help="what `corvinex scan -o` has written"
    )
    parser.add_argument(
        "-o", "--output", metavar="PAGE", required=True, help="the HTML file to write"
    )
    parser.set_defaults(run=run)


def run(arguments: argparse.Namespace) -> int:
    """Writes the page. Returns the exit status; messages go to standard error."""
    try:
        refuse_same_file(arguments.catalogue, arguments.output)
    except shutil.SameFileError as error:
        return _failed(BAD_USAGE, str(error))
    try:
        from corvinex.report.page import report_page
    except ImportError as error:
        return _failed(FAILED, f"{error}; Debian has it as python3-{error.name}")
    try:
        page = report_page(arguments.catalogue)
    except CatalogueError as error:
        return _failed(FAILED, str(error))
    except OSError as error:
        return _failed(FAILED, f"{arguments.catalogue}: {error.strerror}")
    try:
        write_whole(arguments.output, page.encode("utf-8"))
    except OSError as error:
        return _failed(OUTPUT_FAILED, f"{arguments.output}: {error.strerror}")
    return SUCCESS


def _failed(status: int, message: str) -> int:
    print(f"corvinex: {visible(message)}", file=sys.stderr)
    return status
