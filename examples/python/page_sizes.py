"""page_sizes FILE...: prints the size of each page of TIFF files, in millimetres where they tell it."""

from __future__ import annotations

import sys

import corvinex

MILLIMETRES = {"Inch": 25.4, "Centimeter": 10.0}


def main() -> int:
    failed = False
    for path in sys.argv[1:]:
        try:
            pages = corvinex.read(path)
        except corvinex.Error as error:
            print(error, file=sys.stderr)
            failed = True
            continue
        for number, page in enumerate(pages, 1):
            unit = MILLIMETRES.get(page.get("ResolutionUnit", ""))
            if unit is None or not page.get("XResolution") or not page.get("YResolution"):
                print(f"{path}: page {number}: {page.Width:.0f} x {page.Height:.0f} pixels")
            else:
                width = page.Width / page.XResolution * unit
                height = page.Height / page.YResolution * unit
                print(f"{path}: page {number}: {width:.1f} x {height:.1f} mm")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
