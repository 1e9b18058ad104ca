#include "inspect/reading/georeference.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

#include "inspect/reading/elements.h"
#include "inspect/reading/geokeys.h"
#include "inspect/reading/number_text.h"

namespace corvinex::inspect::reading {
namespace {

constexpr std::uint16_t imageWidth = 256;
constexpr std::uint16_t imageLength = 257;
constexpr std::uint16_t modelPixelScale = 33550;
constexpr std::uint16_t modelTiepoint = 33922;
constexpr std::uint16_t modelTransformation = 34264;
constexpr std::uint16_t geoKeyDirectory = 34735;

using Geotransform = std::array<double, 6>;

template <std::size_t size>
std::optional<std::array<double, size>> numbersOf(const Siblings& directory, std::uint16_t number) {
    const auto value = directory.find(number, size * sizeof(double));
    std::array<double, size> numbers{};
    for (std::size_t index = 0; index < size; ++index) {
        const auto element = value ? numberAt(*value, index) : std::nullopt;
        if (!element || !std::isfinite(*element)) {
            return std::nullopt;
        }
        numbers[index] = *element;
    }
    return numbers;
}

/// From the size of a pixel and one point of the image whose coordinates are known. Several points
/// alone only say where these points are.
std::optional<Geotransform> fromScale(const Siblings& directory) {
    const auto scale = numbersOf<3>(directory, modelPixelScale);
    const auto tie = numbersOf<6>(directory, modelTiepoint);
    if (!scale || !tie || (*scale)[0] == 0 || (*scale)[1] == 0) {
        return std::nullopt;
    }
    const auto [column, row, depth, x, y, z] = *tie;
    const auto [width, height, thickness] = *scale;
    // Rows run south.
    return Geotransform{x - column * width, width, 0, y + row * height, 0, -height};
}

std::optional<Geotransform> fromMatrix(const Siblings& directory) {
    const auto matrix = numbersOf<16>(directory, modelTransformation);
    if (!matrix) {
        return std::nullopt;
    }
    const auto& m = *matrix;
    return Geotransform{m[3], m[0], m[1], m[7], m[4], m[5]};
}

/// From coordinates of centres of pixels to those of their corners.
void moveToCorner(Geotransform& transform) {
    constexpr double half = 0.5;
    auto& [x, xColumn, xRow, y, yColumn, yRow] = transform;
    x -= half * (xColumn + xRow);
    y -= half * (yColumn + yRow);
}

std::vector<double> boundsOf(const Geotransform& transform, double width, double height) {
    const auto& [x, xColumn, xRow, y, yColumn, yRow] = transform;
    std::array<double, 4> xs{};
    std::array<double, 4> ys{};
    for (std::size_t corner = 0; corner < xs.size(); ++corner) {
        const double column = corner % 2 == 0 ? 0 : width;
        const double row = corner / 2 == 0 ? 0 : height;
        xs[corner] = x + xColumn * column + xRow * row;
        ys[corner] = y + yColumn * column + yRow * row;
    }
    const auto [left, right] = std::ranges::minmax(xs);
    const auto [bottom, top] = std::ranges::minmax(ys);
    return {left, bottom, right, top};
}

bool areFinite(const auto& numbers) {
    return std::ranges::all_of(numbers, [](double number) { return std::isfinite(number); });
}

}  // namespace

void addGeoreference(std::vector<DerivedFact>& facts, const Siblings& directory) {
    constexpr std::size_t mostKeyBytes = 4096;
    const auto keyValue = directory.find(geoKeyDirectory, mostKeyBytes);
    const auto keys = keyValue ? geoKeyEntries(*keyValue) : std::vector<GeoKeyEntry>();
    if (const auto code = epsgCodeOf(keys)) {
        facts.push_back({"crs", concat({"EPSG:", integerText(std::uint64_t{*code})})});
    }
    auto transform = fromScale(directory);
    transform = transform ? transform : fromMatrix(directory);
    if (!transform) {
        return;
    }
    if (isPixelPoint(keys)) {
        moveToCorner(*transform);
    }
    if (!areFinite(*transform)) {
        return;
    }
    facts.push_back({"geotransform", std::vector<double>(transform->begin(), transform->end())});
    const auto width = unsignedOf(directory, imageWidth);
    const auto height = unsignedOf(directory, imageLength);
    if (width && height) {
        auto bounds =
            boundsOf(*transform, static_cast<double>(*width), static_cast<double>(*height));
        if (areFinite(bounds)) {
            facts.push_back({"bounds", std::move(bounds)});
        }
    }
}

}  // namespace corvinex::inspect::reading
