#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvinex::inspect {

/// A fact that follows from one or several entries, such as the width of the image or the place
/// where a photo was taken. Names are constant data. What a file does not say is left out; the
/// facts that are there stand in the order of these tables. An integer is a std::uint64_t, a number
/// a double, a text a std::string in UTF-8, and numbers are a std::vector<double>. All numbers are
/// finite.
///
/// Of a file (File::derived):
///
/// | Name           | Type      | What it tells                                                   |
/// |----------------|-----------|-----------------------------------------------------------------|
/// | `width`        | integer   | pixels of a JPEG's frame, else of the first main or sub         |
/// |                |           | directory that holds no reduced image                           |
/// | `height`       | integer   | the same, in rows                                               |
/// | `pages`        | integer   | directories of the main chain                                   |
/// | `taken`        | text      | date and time (ISO 8601), such as                               |
/// |                |           | "2024-03-05T14:07:09.5+01:00"; the fraction and the offset from |
/// |                |           | UTC only where they are told                                    |
/// | `latitude`     | number    | degrees from -90 to 90, positive to the north                   |
/// | `longitude`    | number    | degrees from -180 to 180, positive to the east                  |
/// | `altitude`     | number    | metres above the sea or the ellipsoid, negative below           |
/// | `make`         | text      | of the camera or scanner                                        |
/// | `model`        | text      | of the camera or scanner                                        |
/// | `lens`         | text      | its name, else its focal lengths and apertures                  |
/// | `crs`          | text      | the coordinate reference system, such as "EPSG:32633"           |
/// | `geotransform` | 6 numbers | g0 to g5 in this order (GDAL's), in the units of `crs`: the     |
/// |                |           | point at a column and a row, counted from the outer corner of   |
/// |                |           | the first pixel, has                                            |
/// |                |           | x = g0 + g1 column + g2 row and y = g3 + g4 column + g5 row     |
/// | `bounds`       | 4 numbers | least x, least y, greatest x, greatest y of the image, in the   |
/// |                |           | units of `crs`                                                  |
///
/// Latitude and longitude stand together or not at all.
///
/// Of a main or sub directory (Directory::derived); other directories have none:
///
/// | Name           | Type      | What it tells                                                   |
/// |----------------|-----------|-----------------------------------------------------------------|
/// | `compression`  | text      | the code's word, such as "LZW"; "unknown (50000)" without one   |
/// | `photometric`  | text      | the code's word, the same way                                   |
/// | `tiles`        | integer   | their number, when there are any                                |
/// | `strips`       | integer   | their number, when there are no tiles                           |
/// | `bytes`        | integer   | bytes of all strips or tiles as stored                          |
struct DerivedFact {
    std::string_view name;
    std::variant<std::uint64_t, double, std::string, std::vector<double>> value;
};

}  // namespace corvinex::inspect
