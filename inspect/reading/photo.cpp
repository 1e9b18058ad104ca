#include "inspect/reading/photo.h"

#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "inspect/reading/elements.h"
#include "inspect/reading/excerpt.h"
#include "inspect/reading/lens_range.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/positions.h"
#include "inspect/reading/times.h"

namespace corvinex::inspect::reading {
namespace {

constexpr std::uint16_t make = 271;
constexpr std::uint16_t model = 272;
constexpr std::uint16_t dateTimeOriginal = 36867;
constexpr std::uint16_t lensModel = 42036;
/// A text that raw converters keep the lens in.
constexpr std::uint16_t converterLens = 65002;
constexpr std::uint16_t lensSpecification = 42034;
constexpr std::uint16_t lensInfo = 50736;

constexpr std::uint16_t latitudeRef = 1;
constexpr std::uint16_t latitude = 2;
constexpr std::uint16_t longitudeRef = 3;
constexpr std::uint16_t longitude = 4;
constexpr std::uint16_t altitudeRef = 5;
constexpr std::uint16_t altitude = 6;

constexpr std::size_t longestName = 256;

std::optional<std::string> nameOf(const Siblings* directory, std::uint16_t number) {
    const auto value = directory != nullptr ? directory->find(number, longestName) : std::nullopt;
    const auto text = value ? textBytesOf(*value) : std::nullopt;
    std::string name = text ? excerpt(*text, longestName) : "";
    return name.empty() ? std::nullopt : std::optional(std::move(name));
}

std::optional<std::string> lensOf(const FileParts& parts) {
    for (const std::uint16_t number : {lensModel, converterLens}) {
        if (auto name = nameOf(parts.exif, number)) {
            return name;
        }
    }
    const auto rangeOf = [](const Siblings* directory, std::uint16_t number) {
        const auto value = directory != nullptr ? directory->find(number, fewBytes) : std::nullopt;
        return value ? lensRangeText(*value) : std::nullopt;
    };
    const auto range = rangeOf(parts.exif, lensSpecification);
    return range ? range : rangeOf(parts.first, lensInfo);
}

/// When a photo was taken; raw formats keep the tag in the main directory.
std::optional<std::string> takenOf(const Siblings* directory) {
    const auto value =
        directory != nullptr ? directory->find(dateTimeOriginal, fewBytes) : std::nullopt;
    const auto moment = value ? momentOf(dateTimeOriginal, *value, *directory) : std::nullopt;
    if (!moment) {
        return std::nullopt;
    }
    return concat({moment->date, "T", moment->time, moment->fraction.empty() ? "" : ".",
                   moment->fraction, moment->offset});
}

/// Degrees with the sign of the hemisphere, when both are told and the angle is one on the earth.
std::optional<double> signedDegrees(const Siblings& gps, std::uint16_t number,
                                    std::uint16_t reference, std::string_view hemispheres,
                                    double largest) {
    const auto hemisphere = hemisphereOf(gps, reference);
    const auto value = gps.find(number, fewBytes);
    if (!value || !hemisphere || hemispheres.find(*hemisphere) == std::string_view::npos) {
        return std::nullopt;
    }
    const double degrees = degreesOf(*value).value_or(std::numeric_limits<double>::infinity());
    if (std::abs(degrees) > largest) {
        return std::nullopt;
    }
    // Not "-degrees": zero has no sign.
    return *hemisphere == hemispheres.front() ? degrees : 0 - degrees;
}

void addPosition(std::vector<DerivedFact>& facts, const Siblings& gps) {
    constexpr double quarterTurn = 90;
    constexpr double halfTurn = 180;
    const auto north = signedDegrees(gps, latitude, latitudeRef, "NS", quarterTurn);
    const auto east = signedDegrees(gps, longitude, longitudeRef, "EW", halfTurn);
    if (north && east) {
        facts.push_back({"latitude", *north});
        facts.push_back({"longitude", *east});
    }
    if (const auto height = numberOf(gps, altitude); height && std::isfinite(*height)) {
        // 1 and 3 are below, the one of the sea and the other of what the version of the standard
        // has.
        const std::uint64_t reference = unsignedOf(gps, altitudeRef).value_or(0);
        const bool isBelow = reference == 1 || reference == 3;
        facts.push_back({"altitude", isBelow ? 0 - *height : *height});
    }
}

}  // namespace

void addPhotoFacts(std::vector<DerivedFact>& facts, const FileParts& parts) {
    auto taken = takenOf(parts.exif);
    taken = taken ? taken : takenOf(parts.first);
    if (taken) {
        facts.push_back({"taken", *taken});
    }
    if (parts.gps != nullptr) {
        addPosition(facts, *parts.gps);
    }
    if (const auto name = nameOf(parts.first, make)) {
        facts.push_back({"make", *name});
    }
    if (const auto name = nameOf(parts.first, model)) {
        facts.push_back({"model", *name});
    }
    if (const auto lens = lensOf(parts)) {
        facts.push_back({"lens", *lens});
    }
}

}  // namespace corvinex::inspect::reading
