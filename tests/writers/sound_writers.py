#!/usr/bin/python3
"""Files that common programs write with their usual options have no finding above a note:
sound_writers.py TOOL [FOLDER]. With FOLDER the files stay there.
"""

import contextlib
import json
import os
import pathlib
import subprocess
import sys
import tempfile

from PIL import Image

# At least so many files of each writer: one that refuses an option is left out, all of them are a fault.
FEWEST = {"libtiff": 60, "gdal": 120, "imagemagick": 120, "pillow": 40}


def run(*command):
    """Whether the command has made what it was asked for."""
    done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, check=False)
    return done.returncode == 0


def named(writer, *words):
    return "-".join([writer, *(word.replace("/", "_").replace(":", "_").replace(" ", "_").replace("=", "_")
                               for word in words if word)]) + ".tif"


def make(path, *command):
    if not run(*command):
        path.unlink(missing_ok=True)


@contextlib.contextmanager
def silent_errors():
    """Keeps what libraries print on the error output away: many options do not go together."""
    kept = os.dup(2)
    with open(os.devnull, "w", encoding="utf-8") as nothing:
        os.dup2(nothing.fileno(), 2)
    try:
        yield
    finally:
        os.dup2(kept, 2)
        os.close(kept)


def images():
    noise = Image.effect_noise((320, 240), 60)
    colour = Image.merge("RGB", [noise, noise.transpose(0), noise.transpose(1)])
    return {"1": noise.convert("1"), "L": noise, "LA": colour.convert("LA"), "P": colour.convert("P"),
            "RGB": colour, "RGBA": colour.convert("RGBA"), "CMYK": colour.convert("CMYK"),
            "YCbCr": colour.convert("YCbCr"), "I": noise.convert("I"), "F": noise.convert("F")}


def write_pillow(folder):
    compressions = [None, "tiff_lzw", "tiff_adobe_deflate", "packbits", "jpeg", "group3", "group4", "lzma",
                    "zstd", "webp"]
    pages = images()
    for mode, image in pages.items():
        for compression in compressions:
            path = folder / named("pillow", mode, str(compression))
            try:
                image.save(path, compression=compression, dpi=(300, 300))
            except Exception:  # what the mode cannot be compressed with
                path.unlink(missing_ok=True)
    pages["RGB"].save(folder / "pillow-pages.tif", save_all=True, append_images=[pages["L"], pages["P"]])
    exif = Image.Exif()
    exif[271] = "Example Optics"
    exif[306] = "2024:03:05 14:07:09"
    exif.get_ifd(34665)[33434] = (1, 60)
    for name in ("pillow-exif.jpg", "pillow-exif.tif"):
        pages["RGB"].save(folder / name, exif=exif)


def write_libtiff(folder, source, bilevel):
    layouts = ["", "-s", "-s -r 16", "-t -w 128 -l 128", "-p separate", "-p separate -t -w 64 -l 64", "-8",
               "-8 -t", "-8 -p separate", "-B", "-L", "-f lsb2msb"]
    for compression in ("none", "lzw", "lzw:2", "zip", "zip:2", "packbits", "jpeg", "lzma", "zstd", "webp"):
        for layout in layouts:
            path = folder / named("libtiff", compression, layout)
            make(path, "tiffcp", *layout.split(), "-c", compression, source, path)
    for compression in ("g3", "g3:1d", "g3:2d", "g4"):
        path = folder / named("libtiff", compression)
        make(path, "tiffcp", "-c", compression, bilevel, path)
    make(folder / "libtiff-pages.tif", "tiffcp", source, source, bilevel, folder / "libtiff-pages.tif")
    for program in ("tiff2bw", "tiffmedian"):
        make(folder / f"libtiff-{program}.tif", program, source, folder / f"libtiff-{program}.tif")
    make(folder / "libtiff-rotated.tif", "tiffcrop", "-R", "90", source, folder / "libtiff-rotated.tif")


def write_gdal(folder, source):
    layouts = ["", "-co TILED=YES", "-co TILED=YES -co BLOCKXSIZE=128 -co BLOCKYSIZE=64",
               "-co BLOCKYSIZE=7", "-co INTERLEAVE=BAND", "-co BIGTIFF=YES",
               "-co BIGTIFF=YES -co TILED=YES -co INTERLEAVE=BAND", "-co PREDICTOR=2", "-co ENDIANNESS=BIG",
               "-co ALPHA=YES", "-co PHOTOMETRIC=YCBCR", "-b 1", "-b 1 -ot Float32 -co PREDICTOR=3",
               "-b 1 -ot UInt16", "-b 1 -ot Float64", "-b 1 -ot CFloat32", "-b 1 -co NBITS=4",
               "-a_nodata 0 -mo KEY=VALUE", "-a_srs EPSG:32633 -a_ullr 0 1000 1000 0",
               "-mask 1 --config GDAL_TIFF_INTERNAL_MASK YES"]
    for compression in ("NONE", "LZW", "DEFLATE", "PACKBITS", "JPEG", "LZMA", "ZSTD", "WEBP", "LERC"):
        for layout in layouts:
            path = folder / named("gdal", compression, layout)
            make(path, "gdal_translate", "-q", "-co", f"COMPRESS={compression}", *layout.split(), source, path)
        path = folder / named("gdal", "cog", compression)
        make(path, "gdal_translate", "-q", "-of", "COG", "-co", f"COMPRESS={compression}", "-co",
             "BLOCKSIZE=128", "-a_srs", "EPSG:32633", "-a_ullr", "0", "1000", "1000", "0", source, path)
    for name, options in (("inside", []), ("outside", ["-ro"])):
        path = folder / f"gdal-overviews-{name}.tif"
        make(path, "gdal_translate", "-q", "-co", "TILED=YES", source, path)
        run("gdaladdo", "-q", *options, path, "2", "4", "8")
    path = folder / "gdal-sparse.tif"
    make(path, "gdal_create", "-q", "-outsize", "1000", "1000", "-bands", "1", "-co", "SPARSE_OK=TRUE", path)


def write_imagemagick(folder, source):
    options = ["", "-type Grayscale", "-type Bilevel", "-type Palette", "-type TrueColorAlpha",
               "-type ColorSeparation", "-depth 16", "-endian MSB", "-define tiff:tile-geometry=128x128",
               "-define tiff:rows-per-strip=8", "-define tiff:alpha=associated -alpha set",
               "-interlace Plane", "-colorspace LAB", "-define quantum:format=floating-point -depth 32"]
    for compression in ("None", "LZW", "Zip", "RLE", "JPEG", "Group4", "LZMA", "WebP", "ZSTD"):
        for option in options:
            for kind in ("TIFF", "TIFF64"):
                path = folder / named("imagemagick", kind, compression, option)
                make(path, "convert", source, *option.split(), "-compress", compression, f"{kind}:{path}")
    make(folder / "imagemagick-pages.tif", "convert", source, source, folder / "imagemagick-pages.tif")
    make(folder / "imagemagick-pyramid.tif", "convert", source, f"PTIF:{folder}/imagemagick-pyramid.tif")
    make(folder / "imagemagick.jpg", "convert", source, folder / "imagemagick.jpg")


def check(tool, folder):
    counts = dict.fromkeys(FEWEST, 0)
    faults = 0
    printed = subprocess.run([tool, "check", "--jsonl", "-q", folder], capture_output=True, check=False).stdout
    for line in printed.decode().splitlines():
        record = json.loads(line)
        name = pathlib.Path(record["file"]).name
        counts[name.replace(".", "-").split("-")[0]] += 1
        if record["status"] in ("not-an-image", "unreadable"):
            sys.exit(f"{name}: {record['status']}")
        for finding in record["findings"]:
            if finding["severity"] != "note":
                print(f"{name}: {finding['severity']}: {finding['id']}: {finding['text']}")
                faults += 1
    for writer, fewest in FEWEST.items():
        if counts[writer] < fewest:
            sys.exit(f"only {counts[writer]} files of {writer}")
    if faults:
        sys.exit(f"{faults} findings above a note in sound files")
    print(f"no finding above a note in sound files: {counts}")


def main():
    with contextlib.ExitStack() as stack:
        work = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
        folder = pathlib.Path(sys.argv[2]) if len(sys.argv) > 2 else work / "files"
        folder.mkdir(exist_ok=True)
        pages = images()
        pages["RGB"].save(work / "source.png")
        pages["RGB"].save(work / "source.tif")
        pages["1"].save(work / "bilevel.tif")
        with silent_errors():
            write_pillow(folder)
        write_libtiff(folder, work / "source.tif", work / "bilevel.tif")
        write_gdal(folder, work / "source.png")
        write_imagemagick(folder, work / "source.png")
        check(sys.argv[1], folder)


main()
