"""damage FILE...: counts the reports of each kind that reading the files brings."""

from __future__ import annotations

import collections
import sys
import warnings

import corvinex


def main() -> None:
    counts: collections.Counter[str] = collections.Counter()
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always", corvinex.TagWarning)
        for path in sys.argv[1:]:
            try:
                corvinex.read(path)
            except corvinex.Error as error:
                counts[error.id or str(error)] += 1
    for warning in caught:
        if isinstance(warning.message, corvinex.TagWarning):
            counts[warning.message.id or str(warning.message)] += 1
    for report, count in counts.most_common():
        print(f"{count:6} {report}")


if __name__ == "__main__":
    main()
