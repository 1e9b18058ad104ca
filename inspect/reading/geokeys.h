#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "corvinex/value.h"
#include "inspect/reading/siblings.h"

namespace corvinex::inspect::reading {

/// One key of a GeoTIFF key directory as it stands.
struct GeoKeyEntry {
    std::uint16_t key;
    /// 0 when the value is here, otherwise the tag that holds it.
    std::uint16_t location;
    std::uint16_t count;
    /// The value itself, or its index in the values of the other tag.
    std::uint16_t value;
};

/// The keys of a directory: as many as it tells, as far as its values reach and at most some
/// hundred.
[[nodiscard]] std::vector<GeoKeyEntry> geoKeyEntries(const Value& directory);

/// The code of the coordinate reference system in the EPSG register: that of the projected system,
/// or without one that of the geodetic system. Nothing for systems that the file defines by itself.
[[nodiscard]] std::optional<std::uint16_t> epsgCodeOf(const std::vector<GeoKeyEntry>& keys);

/// What the keys say of their system in words: of the projected system, of the whole, or of the
/// geodetic system. Empty where they say nothing.
[[nodiscard]] std::string citationOf(const std::vector<GeoKeyEntry>& keys,
                                     const Siblings& directory);

/// Whether the keys say that coordinates belong to the centres of pixels, not to their corners.
[[nodiscard]] bool isPixelPoint(const std::vector<GeoKeyEntry>& keys);

}  // namespace corvinex::inspect::reading
