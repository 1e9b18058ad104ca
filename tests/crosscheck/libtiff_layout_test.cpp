#include <gtest/gtest.h>
#include <tiffio.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/crosscheck/libtiff_file.h"
#include "tests/crosscheck/reading.h"

// Strips, tiles, pages and child images as libtiff lays them out, in every container.

namespace test {
namespace {

class Layouts : public ::testing::TestWithParam<Container> {};

std::vector<double> table(TIFF* tiff, std::uint32_t tag, std::uint32_t count) {
    const std::uint64_t* values = nullptr;
    LibtiffFile::require(TIFFGetField(tiff, tag, &values) == 1, "to tell a table");
    return {values, values + count};
}

TEST_P(Layouts, StripsLieWhereTheResultSays) {
    LibtiffFile file(GetParam());
    file.setImage(5, 3, 8, 1, PHOTOMETRIC_MINISBLACK);
    const std::string pixels =
        "first"
        "other"
        "third";
    for (std::uint32_t strip = 0; strip < 3; ++strip) {
        std::string row = pixels.substr(strip * 5, 5);
        file.require(TIFFWriteEncodedStrip(file.handle(), strip, row.data(), 5) == 5, "a strip");
    }
    const std::filesystem::path path = file.path();
    const Result result = file.read();
    const Bytes bytes = contentOf(path);
    std::string found;
    for (const double offset : result.numbers("StripOffsets")) {
        const auto start = bytes.begin() + static_cast<std::ptrdiff_t>(offset);
        found.append(start, start + 5);
    }
    EXPECT_EQ(found, pixels);
    EXPECT_EQ(result.numbers("StripByteCounts"), std::vector<double>(3, 5));
    EXPECT_TRUE(result.warnings().empty());
}

TEST_P(Layouts, PlanesHaveStripsOfTheirOwn) {
    LibtiffFile file(GetParam());
    file.setImage(4, 2, 8, 3, PHOTOMETRIC_RGB);
    file.set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
    file.writeStrips();
    file.require(TIFFFlushData(file.handle()) == 1, "to flush");
    const std::vector<double> offsets = table(file.handle(), TIFFTAG_STRIPOFFSETS, 6);
    const Result result = file.read();
    EXPECT_EQ(result.text("PlanarConfiguration"), "Planar");
    EXPECT_EQ(result.numbers("StripOffsets"), offsets);
}

TEST_P(Layouts, TilesLieWhereLibtiffPutThem) {
    LibtiffFile file(GetParam());
    file.set(TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    file.setImage(40, 20, 32, 1, PHOTOMETRIC_MINISBLACK);
    file.require(TIFFUnsetField(file.handle(), TIFFTAG_ROWSPERSTRIP) == 1, "no strips");
    file.set(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    file.set(TIFFTAG_TILEWIDTH, 16U);
    file.set(TIFFTAG_TILELENGTH, 32U);
    std::vector<float> tile(16 * 32, 0.5F);
    const std::uint32_t tiles = TIFFNumberOfTiles(file.handle());
    ASSERT_EQ(tiles, 3U);
    for (std::uint32_t i = 0; i < tiles; ++i) {
        file.require(TIFFWriteEncodedTile(file.handle(), i, tile.data(), 16 * 32 * 4) > 0,
                     "a tile");
    }
    file.require(TIFFFlushData(file.handle()) == 1, "to flush");
    const std::vector<double> offsets = table(file.handle(), TIFFTAG_TILEOFFSETS, tiles);
    const std::vector<double> lengths = table(file.handle(), TIFFTAG_TILEBYTECOUNTS, tiles);

    const Result result = file.read();
    EXPECT_EQ(result.number("TileWidth"), 16);
    EXPECT_EQ(result.number("TileLength"), 32);
    EXPECT_EQ(result.numbers("TileOffsets"), offsets);
    EXPECT_EQ(result.numbers("TileByteCounts"), lengths);
    EXPECT_EQ(result.text("SampleFormat"), "IEEE floating point");
    EXPECT_EQ(result.number("BitsPerSample"), 32);
    EXPECT_TRUE(result.warnings().empty());
}

TEST_P(Layouts, PagesComeInTheirOrder) {
    constexpr std::uint16_t pages = 5;
    LibtiffFile file(GetParam());
    for (std::uint16_t page = 0; page < pages; ++page) {
        file.setImage(10U + page, 2, 8, 1, PHOTOMETRIC_MINISBLACK);
        file.set(TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
        file.set(TIFFTAG_PAGENUMBER, page, pages);
        file.set(TIFFTAG_PAGENAME, ("page " + std::to_string(page)).c_str());
        file.writeStrips();
        file.writeDirectory();
    }
    std::vector<double> offsets;
    for (std::uint16_t page = 0; page < pages; ++page) {
        file.require(TIFFSetDirectory(file.handle(), page) == 1, "a page");
        offsets.push_back(static_cast<double>(TIFFCurrentDirOffset(file.handle())));
    }
    const Result result = file.read();
    ASSERT_EQ(result.directories(), pages);
    for (std::uint16_t page = 0; page < pages; ++page) {
        SCOPED_TRACE(page);
        EXPECT_EQ(result.number("Width", page), 10 + page);
        EXPECT_EQ(result.number("NewSubFileType", page), FILETYPE_PAGE);
        EXPECT_EQ(result.numbers("PageNumber", page), (std::vector<double>{1.0 * page, pages}));
        EXPECT_EQ(result.text("PageName", page), "page " + std::to_string(page));
        EXPECT_EQ(result.number("Offset", page), offsets[page]);
    }
}

TEST_P(Layouts, ChildImagesStandInTheirParent) {
    // The offsets of a BigTIFF are read as if they were half as long: more than one lead astray.
    const std::uint16_t children = GetParam().layout == Layout::Big ? 1 : 3;
    LibtiffFile file(GetParam());
    std::vector<std::uint64_t> offsets(children);
    file.set(TIFFTAG_SUBIFD, children, offsets.data());
    file.writeSmallImage();
    file.writeDirectory();
    for (std::uint16_t child = 0; child < children; ++child) {
        file.set(TIFFTAG_SUBFILETYPE, FILETYPE_REDUCEDIMAGE);
        file.setImage(4U - child, 1, 8, 1, PHOTOMETRIC_MINISWHITE);
        file.writeStrips();
        file.writeDirectory();
    }
    file.writeSmallImage();
    file.writeDirectory();

    const Result result = file.read();
    EXPECT_EQ(result.directories(), 2U);
    EXPECT_FALSE(result.isSet("SubIFDs", 1));
    const zxArray& cells = result.value("SubIFDs");
    ASSERT_EQ(host::sizeOf(cells), (host::Size{1, children}));
    for (std::uint16_t child = 0; child < children; ++child) {
        const zxArray& image = *host::cellAt(cells, child);
        EXPECT_EQ(numberOf(fieldOf(image, "Width")), 4 - child);
        EXPECT_EQ(numberOf(fieldOf(image, "NewSubFileType")), FILETYPE_REDUCEDIMAGE);
        EXPECT_EQ(textOf(fieldOf(image, "PhotometricInterpretation")), "WhiteIsZero");
    }
    EXPECT_TRUE(result.warnings().empty()) << ::testing::PrintToString(result.warnings());
}

INSTANTIATE_TEST_SUITE_P(OfLibtiff, Layouts, ::testing::ValuesIn(containers));

}  // namespace
}  // namespace test
