#include "samples/geo_images.h"

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "samples/tiff_structure.h"

namespace samples {
namespace {

using namespace std::string_view_literals;

constexpr std::uint64_t side = 32;
constexpr std::uint64_t bytesPerSample = 2;

/// Rows of heights that rise to the middle of each row and from row to row.
Bytes heights(std::uint64_t width, std::uint64_t rows, std::uint64_t step) {
    ByteWriter out(ByteOrder::Little);
    for (std::uint64_t y = 0; y < rows; ++y) {
        for (std::uint64_t x = 0; x < width; ++x) {
            const std::uint64_t fromEdge = x < width - x ? x : width - x;
            out.number(280 + fromEdge * step + y * step / 2, bytesPerSample);
        }
    }
    return std::move(out).take();
}

std::vector<Field> imageFields(std::uint32_t newSubfileType, std::uint64_t width,
                               std::uint64_t length, std::size_t block) {
    return {
        longs(254, {newSubfileType}),
        shorts(256, {width}),
        shorts(257, {length}),
        shorts(258, {16}),
        shorts(259, {1}),
        shorts(262, {1}),
        blockAt(273, block),
        shorts(277, {1}),
        shorts(278, {length}),
        longs(279, {width * length * bytesPerSample}),
        shorts(284, {1}),
        shorts(339, {2}),
    };
}

std::vector<Field> geographicFields() {
    return {
        doubles(33550, {30, 30, 0}),
        doubles(33922, {0, 0, 0, 412'380, 6'180'060, 0}),
        shorts(34735,
               {
                   1,    1,     0,  7,       // version 1.1.0, seven keys
                   1024, 0,     1,  1,       // projected
                   1025, 0,     1,  1,       // a pixel is an area
                   1026, 34737, 22, 0,       // citation
                   2049, 34737, 7,  22,      // citation of the geographic system
                   2054, 0,     1,  9102,    // degrees
                   3072, 0,     1,  32'633,  // WGS 84 / UTM zone 33N
                   3076, 0,     1,  9001,    // metres
               }),
        text(34737, "WGS 84 / UTM zone 33N|WGS 84|"sv),
        text(42112,
             "<GDALMetadata>\n"
             "  <Item name=\"AREA_OR_POINT\">Area</Item>\n"
             "  <Item name=\"UNITTYPE\" sample=\"0\" role=\"unittype\">metre</Item>\n"
             "  <Item name=\"DESCRIPTION\" sample=\"0\" role=\"description\">Height</Item>\n"
             "</GDALMetadata>\n"sv),
        text(42113, "-32768"sv),
    };
}

}  // namespace

Sample elevation() {
    TiffStructure tiff(ByteOrder::Little);
    const std::size_t full = tiff.addBlock(heights(side, side, 6));
    const std::size_t half = tiff.addBlock(heights(side / 2, side / 2, 12));
    std::vector<Field> fields = imageFields(0, side, side, full);
    for (Field& field : geographicFields()) {
        fields.push_back(std::move(field));
    }
    const std::size_t main = tiff.add(std::move(fields));
    const std::size_t overview = tiff.add(imageFields(1, side / 2, side / 2, half));
    tiff.follow(main, overview);
    return {"elevation.tif", tiff.build()};
}

}  // namespace samples
