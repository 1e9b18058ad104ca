"""The command line of the package: `python3 -m corvinex COMMAND`."""

import argparse
import signal
import sys
from collections.abc import Sequence

from corvinex import __version__
from corvinex.report import command as report_command

COMMANDS = (report_command,)


def main(arguments: Sequence[str] | None = None) -> int:
    """Runs one command and returns the exit status that docs/tool.md gives."""
    parser = argparse.ArgumentParser(prog="python3 -m corvinex", description=__doc__)
    parser.add_argument("--version", action="version", version=f"corvinex {__version__}")
    subparsers = parser.add_subparsers(metavar="COMMAND", required=True)
    for command in COMMANDS:
        command.add_parser(subparsers)
    chosen = parser.parse_args(arguments)
    status: int = chosen.run(chosen)
    return status


if __name__ == "__main__":
    # A query of a large catalogue would put an interrupt off until it has ended.
    signal.signal(signal.SIGINT, signal.SIG_DFL)
    sys.exit(main())
