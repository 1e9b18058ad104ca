"""A page about a catalogue for people to look at: one HTML file that needs no network."""

import os


def write_report(catalogue: str | os.PathLike[str], output: str | os.PathLike[str]) -> None:
    """Writes the page about a catalogue of `corvinex scan`; see `corvinex.report.page`."""
    # matplotlib takes a second to load, which only who draws shall wait for.
    from corvinex.report import page

    page.write_report(catalogue, output)
