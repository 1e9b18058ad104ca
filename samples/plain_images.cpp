#include "samples/plain_images.h"

#include <array>
#include <cmath>
#include <string>

#include "samples/tiff_memory.h"

namespace samples {
namespace {

/// Sizes and layout that every image has.
struct Shape {
    std::uint32_t width;
    std::uint32_t height;
    std::uint16_t samples = 1;
    std::uint16_t bits = 8;
    std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    std::uint16_t compression = COMPRESSION_NONE;
};

void set(TIFF& tiff, std::uint32_t tag, auto... values) {
    check(TIFFSetField(&tiff, tag, values...) == 1, "TIFFSetField");
}

void setShape(TIFF& tiff, const Shape& shape) {
    set(tiff, TIFFTAG_IMAGEWIDTH, shape.width);
    set(tiff, TIFFTAG_IMAGELENGTH, shape.height);
    set(tiff, TIFFTAG_BITSPERSAMPLE, shape.bits);
    set(tiff, TIFFTAG_SAMPLESPERPIXEL, shape.samples);
    set(tiff, TIFFTAG_PHOTOMETRIC, shape.photometric);
    set(tiff, TIFFTAG_COMPRESSION, shape.compression);
    set(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
}

void setResolution(TIFF& tiff, double dotsPerInch) {
    set(tiff, TIFFTAG_XRESOLUTION, dotsPerInch);
    set(tiff, TIFFTAG_YRESOLUTION, dotsPerInch);
    set(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
}

/// Rows of 8-bit samples in a diagonal gradient.
void writeGradient(TIFF& tiff, const Shape& shape, std::uint32_t levels = 256) {
    Bytes row(std::size_t{shape.width} * shape.samples);
    for (std::uint32_t y = 0; y < shape.height; ++y) {
        for (std::uint32_t i = 0; i < row.size(); ++i) {
            row[i] = static_cast<std::uint8_t>((3 * y + 2 * i) % levels);
        }
        check(TIFFWriteScanline(&tiff, row.data(), y, 0) == 1, "TIFFWriteScanline");
    }
}

void finishDirectory(TIFF& tiff) {
    check(TIFFWriteDirectory(&tiff) == 1, "TIFFWriteDirectory");
}

void writePage(TIFF& tiff, std::uint16_t page, std::uint16_t pages, const Shape& shape) {
    setShape(tiff, shape);
    setResolution(tiff, 300);
    set(tiff, TIFFTAG_ROWSPERSTRIP, std::uint32_t{16});
    set(tiff, TIFFTAG_SUBFILETYPE, std::uint32_t{FILETYPE_PAGE});
    set(tiff, TIFFTAG_PAGENUMBER, page, pages);
    const std::string name = "Page " + std::to_string(page + 1);
    set(tiff, TIFFTAG_PAGENAME, name.c_str());
    set(tiff, TIFFTAG_SOFTWARE, "corvinex make-samples");
    set(tiff, TIFFTAG_DATETIME, "2024:03:05 14:07:09");
    writeGradient(tiff, shape);
    finishDirectory(tiff);
}

void writePages(TIFF& tiff) {
    constexpr std::array pages{
        Shape{.width = 48, .height = 32},
        Shape{.width = 32,
              .height = 24,
              .samples = 3,
              .photometric = PHOTOMETRIC_RGB,
              .compression = COMPRESSION_LZW},
        Shape{.width = 16, .height = 40, .compression = COMPRESSION_PACKBITS},
    };
    std::uint16_t number = 0;
    for (const Shape& page : pages) {
        writePage(tiff, number++, pages.size(), page);
    }
}

void writeBigRgb(TIFF& tiff) {
    const Shape shape{.width = 40, .height = 30, .samples = 3, .photometric = PHOTOMETRIC_RGB};
    setShape(tiff, shape);
    setResolution(tiff, 72);
    set(tiff, TIFFTAG_ROWSPERSTRIP, std::uint32_t{4});
    set(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    set(tiff, TIFFTAG_IMAGEDESCRIPTION, "An RGB image with 64-bit offsets");
    writeGradient(tiff, shape);
    finishDirectory(tiff);
}

void writePalette(TIFF& tiff) {
    constexpr std::size_t colors = 256;
    const Shape shape{.width = 64, .height = 64, .photometric = PHOTOMETRIC_PALETTE};
    std::array<std::uint16_t, colors> red{};
    std::array<std::uint16_t, colors> green{};
    std::array<std::uint16_t, colors> blue{};
    for (std::size_t i = 0; i < colors; ++i) {
        red.at(i) = static_cast<std::uint16_t>(i * 257);
        green.at(i) = static_cast<std::uint16_t>((i * 2 % colors) * 257);
        blue.at(i) = static_cast<std::uint16_t>((colors - 1 - i) * 257);
    }
    setShape(tiff, shape);
    set(tiff, TIFFTAG_ROWSPERSTRIP, std::uint32_t{64});
    set(tiff, TIFFTAG_COLORMAP, red.data(), green.data(), blue.data());
    set(tiff, TIFFTAG_DOCUMENTNAME, "Palette of 256 colours");
    writeGradient(tiff, shape);
    finishDirectory(tiff);
}

void writeFloatTiles(TIFF& tiff) {
    constexpr std::uint32_t side = 16;
    const Shape shape{.width = 40, .height = 24, .bits = 32};
    setShape(tiff, shape);
    set(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    set(tiff, TIFFTAG_TILEWIDTH, side);
    set(tiff, TIFFTAG_TILELENGTH, side);
    set(tiff, TIFFTAG_SMINSAMPLEVALUE, 0.0);
    set(tiff, TIFFTAG_SMAXSAMPLEVALUE, 1.0);
    for (std::uint32_t top = 0; top < shape.height; top += side) {
        for (std::uint32_t left = 0; left < shape.width; left += side) {
            std::array<float, std::size_t{side} * side> tile{};
            for (std::uint32_t i = 0; i < tile.size(); ++i) {
                const std::uint32_t x = left + i % side;
                const std::uint32_t y = top + i / side;
                tile.at(i) = static_cast<float>(x + y) / 64.0F;
            }
            check(TIFFWriteTile(&tiff, tile.data(), left, top, 0, 0) > 0, "TIFFWriteTile");
        }
    }
    finishDirectory(tiff);
}

void writeReducedCopies(TIFF& tiff) {
    const Shape full{.width = 64, .height = 48, .samples = 3, .photometric = PHOTOMETRIC_RGB};
    std::array<toff_t, 2> offsets{};
    setShape(tiff, full);
    setResolution(tiff, 300);
    set(tiff, TIFFTAG_ROWSPERSTRIP, std::uint32_t{16});
    set(tiff, TIFFTAG_IMAGEDESCRIPTION, "Full image with two reduced copies");
    // libtiff writes the next two directories as children of this one and fills in the offsets.
    set(tiff, TIFFTAG_SUBIFD, static_cast<std::uint16_t>(offsets.size()), offsets.data());
    writeGradient(tiff, full);
    finishDirectory(tiff);
    for (std::uint32_t i = 1; i <= offsets.size(); ++i) {
        Shape reduced = full;
        reduced.width >>= i;
        reduced.height >>= i;
        setShape(tiff, reduced);
        set(tiff, TIFFTAG_ROWSPERSTRIP, reduced.height);
        set(tiff, TIFFTAG_SUBFILETYPE, std::uint32_t{FILETYPE_REDUCEDIMAGE});
        writeGradient(tiff, reduced);
        finishDirectory(tiff);
    }
}

}  // namespace

std::vector<Sample> plainImages() {
    return {
        {"pages-little-endian.tif", writtenByLibtiff("wl", writePages)},
        {"pages-big-endian.tif", writtenByLibtiff("wb", writePages)},
        {"big-rgb.tif", writtenByLibtiff("w8l", writeBigRgb)},
        {"palette.tif", writtenByLibtiff("wl", writePalette)},
        {"float-tiles.tif", writtenByLibtiff("wl", writeFloatTiles)},
        {"sub-images.tif", writtenByLibtiff("wl", writeReducedCopies)},
    };
}

}  // namespace samples
