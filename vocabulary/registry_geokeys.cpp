#include <array>

#include "vocabulary/registry_rules.h"

// Keys of the GeoTIFF key directory (GeoTIFF 1.1; where 1.0 had another name the meaning gives it)
// with the small enumerations. Codes of the EPSG register are left to that register.

namespace corvinex::registry {
namespace {

using enum inspect::FieldType;

// clang-format off

// 1024 GTModelTypeGeoKey.
constexpr ValueWord modelTypeValues[] = {
    {    0, "Undefined"},
    {    1, "Projected"},
    {    2, "Geographic (2D)"},
    {    3, "Geocentric"},
    {32767, "User-defined"},
};
constexpr Words modelType{modelTypeValues, {}, {}};
static_assert(isWordTable(modelType));

// 1025 GTRasterTypeGeoKey.
constexpr ValueWord rasterTypeValues[] = {
    {    0, "Undefined"},
    {    1, "Pixel is area"},
    {    2, "Pixel is point"},
    {32767, "User-defined"},
};
constexpr Words rasterType{rasterTypeValues, {}, {}};
static_assert(isWordTable(rasterType));

// 2052 GeogLinearUnitsGeoKey, 3076 ProjLinearUnitsGeoKey, 4099 VerticalUnitsGeoKey.
constexpr ValueWord linearUnitValues[] = {
    {    0, "Undefined"},
    { 9001, "metre"},
    { 9002, "foot"},
    { 9003, "US survey foot"},
    { 9004, "Modified American foot"},
    { 9005, "Clarke's foot"},
    { 9006, "Indian foot"},
    { 9007, "link"},
    { 9008, "Benoit link"},
    { 9009, "Sears link"},
    { 9010, "Benoit chain"},
    { 9011, "Sears chain"},
    { 9012, "Sears yard"},
    { 9013, "Indian yard"},
    { 9014, "fathom"},
    { 9015, "international nautical mile"},
    {32767, "User-defined"},
};
constexpr Words linearUnit{linearUnitValues, {}, {}};
static_assert(isWordTable(linearUnit));

// 2054 GeogAngularUnitsGeoKey, 2060 GeogAzimuthUnitsGeoKey.
constexpr ValueWord angularUnitValues[] = {
    {    0, "Undefined"},
    { 9101, "radian"},
    { 9102, "degree"},
    { 9103, "arc-minute"},
    { 9104, "arc-second"},
    { 9105, "grad"},
    { 9106, "gon"},
    { 9107, "degree, minute, second"},
    { 9108, "degree, minute, second, hemisphere"},
    {32767, "User-defined"},
};
constexpr Words angularUnit{angularUnitValues, {}, {}};
static_assert(isWordTable(angularUnit));

// 3075 ProjMethodGeoKey.
constexpr ValueWord projectionMethodValues[] = {
    {    0, "Undefined"},
    {    1, "Transverse Mercator"},
    {    2, "Transverse Mercator, modified Alaska"},
    {    3, "Oblique Mercator (Hotine)"},
    {    4, "Oblique Mercator, Laborde"},
    {    5, "Oblique Mercator, Rosenmund"},
    {    6, "Oblique Mercator, spherical"},
    {    7, "Mercator"},
    {    8, "Lambert conformal conic, 2 standard parallels"},
    {    9, "Lambert conformal conic, 1 standard parallel"},
    {   10, "Lambert azimuthal equal area"},
    {   11, "Albers equal area"},
    {   12, "Azimuthal equidistant"},
    {   13, "Equidistant conic"},
    {   14, "Stereographic"},
    {   15, "Polar stereographic"},
    {   16, "Oblique stereographic"},
    {   17, "Equirectangular"},
    {   18, "Cassini-Soldner"},
    {   19, "Gnomonic"},
    {   20, "Miller cylindrical"},
    {   21, "Orthographic"},
    {   22, "Polyconic"},
    {   23, "Robinson"},
    {   24, "Sinusoidal"},
    {   25, "Van der Grinten"},
    {   26, "New Zealand map grid"},
    {   27, "Transverse Mercator, south oriented"},
    {   28, "Cylindrical equal area"},
    { 9815, "Hotine oblique Mercator, azimuth at centre"},
    {32767, "User-defined"},
};
constexpr Words projectionMethod{projectionMethodValues, {}, {}};
static_assert(isWordTable(projectionMethod));

constexpr auto keyTable = std::to_array<GeoKey>({
    {1024, "GTModelTypeGeoKey",              Short,  "Kind of coordinate reference system", &modelType},
    {1025, "GTRasterTypeGeoKey",             Short,  "Whether a pixel is an area or a point", &rasterType},
    {1026, "GTCitationGeoKey",               Ascii,  "Free text about the whole configuration"},
    {2048, "GeodeticCRSGeoKey",              Short,  "EPSG code of the geodetic system (1.0: GeographicTypeGeoKey)"},
    {2049, "GeodeticCitationGeoKey",         Ascii,  "Free text about the geodetic system (1.0: GeogCitationGeoKey)"},
    {2050, "GeodeticDatumGeoKey",            Short,  "EPSG code of the datum (1.0: GeogGeodeticDatumGeoKey)"},
    {2051, "PrimeMeridianGeoKey",            Short,  "EPSG code of the prime meridian (1.0: GeogPrimeMeridianGeoKey)"},
    {2052, "GeogLinearUnitsGeoKey",          Short,  "Unit of length of the geodetic system", &linearUnit},
    {2053, "GeogLinearUnitSizeGeoKey",       Double, "Size in metres of a user-defined unit of length"},
    {2054, "GeogAngularUnitsGeoKey",         Short,  "Unit of angle of the geodetic system", &angularUnit},
    {2055, "GeogAngularUnitSizeGeoKey",      Double, "Size in radians of a user-defined unit of angle"},
    {2056, "EllipsoidGeoKey",                Short,  "EPSG code of the ellipsoid (1.0: GeogEllipsoidGeoKey)"},
    {2057, "EllipsoidSemiMajorAxisGeoKey",   Double, "Semi-major axis of a user-defined ellipsoid (1.0: GeogSemiMajorAxisGeoKey)"},
    {2058, "EllipsoidSemiMinorAxisGeoKey",   Double, "Semi-minor axis of a user-defined ellipsoid (1.0: GeogSemiMinorAxisGeoKey)"},
    {2059, "EllipsoidInvFlatteningGeoKey",   Double, "Inverse flattening of a user-defined ellipsoid (1.0: GeogInvFlatteningGeoKey)"},
    {2060, "GeogAzimuthUnitsGeoKey",         Short,  "Unit of angle for azimuths", &angularUnit},
    {2061, "PrimeMeridianLongitudeGeoKey",   Double, "Longitude of a user-defined prime meridian (1.0: GeogPrimeMeridianLongGeoKey)"},
    {2062, "GeogTOWGS84GeoKey",              Double, "Three or seven datum shift parameters to WGS 84 (extension, not in the standard)"},
    {3072, "ProjectedCRSGeoKey",             Short,  "EPSG code of the projected system (1.0: ProjectedCSTypeGeoKey)"},
    {3073, "ProjectedCitationGeoKey",        Ascii,  "Free text about the projected system (1.0: PCSCitationGeoKey)"},
    {3074, "ProjectionGeoKey",               Short,  "EPSG code of the map projection"},
    {3075, "ProjMethodGeoKey",               Short,  "Coordinate transformation method (1.0: ProjCoordTransGeoKey)", &projectionMethod},
    {3076, "ProjLinearUnitsGeoKey",          Short,  "Unit of length of the projected system", &linearUnit},
    {3077, "ProjLinearUnitSizeGeoKey",       Double, "Size in metres of a user-defined unit of length"},
    {3078, "ProjStdParallel1GeoKey",         Double, "Latitude of the first standard parallel"},
    {3079, "ProjStdParallel2GeoKey",         Double, "Latitude of the second standard parallel"},
    {3080, "ProjNatOriginLongGeoKey",        Double, "Longitude of the natural origin"},
    {3081, "ProjNatOriginLatGeoKey",         Double, "Latitude of the natural origin"},
    {3082, "ProjFalseEastingGeoKey",         Double, "False easting at the natural origin"},
    {3083, "ProjFalseNorthingGeoKey",        Double, "False northing at the natural origin"},
    {3084, "ProjFalseOriginLongGeoKey",      Double, "Longitude of the false origin"},
    {3085, "ProjFalseOriginLatGeoKey",       Double, "Latitude of the false origin"},
    {3086, "ProjFalseOriginEastingGeoKey",   Double, "Easting of the false origin"},
    {3087, "ProjFalseOriginNorthingGeoKey",  Double, "Northing of the false origin"},
    {3088, "ProjCenterLongGeoKey",           Double, "Longitude of the projection centre"},
    {3089, "ProjCenterLatGeoKey",            Double, "Latitude of the projection centre"},
    {3090, "ProjCenterEastingGeoKey",        Double, "Easting of the projection centre"},
    {3091, "ProjCenterNorthingGeoKey",       Double, "Northing of the projection centre"},
    {3092, "ProjScaleAtNatOriginGeoKey",     Double, "Scale factor at the natural origin"},
    {3093, "ProjScaleAtCenterGeoKey",        Double, "Scale factor at the projection centre"},
    {3094, "ProjAzimuthAngleGeoKey",         Double, "Azimuth of the central line"},
    {3095, "ProjStraightVertPoleLongGeoKey", Double, "Longitude of the vertical meridian below a pole"},
    {3096, "ProjRectifiedGridAngleGeoKey",   Double, "Angle from the rectified to the skew grid (extension)"},
    {4096, "VerticalGeoKey",                 Short,  "EPSG code of the vertical system (1.0: VerticalCSTypeGeoKey)"},
    {4097, "VerticalCitationGeoKey",         Ascii,  "Free text about the vertical system"},
    {4098, "VerticalDatumGeoKey",            Short,  "EPSG code of the vertical datum"},
    {4099, "VerticalUnitsGeoKey",            Short,  "Unit of length of heights or depths", &linearUnit},
    {5120, "CoordinateEpochGeoKey",          Double, "Epoch of the coordinates as a decimal year (extension)"},
});
// clang-format on
static_assert(ascends(keyTable));

}  // namespace

std::span<const GeoKey> geoKeys() noexcept {
    return keyTable;
}

}  // namespace corvinex::registry
