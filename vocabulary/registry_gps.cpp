#include <array>

#include "vocabulary/registry_rules.h"
#include "vocabulary/registry_tables.h"
#include "vocabulary/registry_values.h"

// Tags of GPS directories (EXIF 2.32). Number, name, types, encoding, source,
// count, unit, words.

namespace corvinex::registry {
namespace {

using enum inspect::FieldType;
using enum Encoding;

// clang-format off
constexpr auto gpsTable = sortedByNumber(std::to_array<TagFact>({
    {    0, "GPSVersionID",         Byte,      VersionBytes,  "EXIF2.32", "4"},
    {    1, "GPSLatitudeRef",       Ascii,     Code,          "EXIF2.32", "2",  "",  &words::latitudeRef},
    {    2, "GPSLatitude",          Rational,  GpsCoordinate, "EXIF2.32", "3",  "deg"},
    {    3, "GPSLongitudeRef",      Ascii,     Code,          "EXIF2.32", "2",  "",  &words::longitudeRef},
    {    4, "GPSLongitude",         Rational,  GpsCoordinate, "EXIF2.32", "3",  "deg"},
    {    5, "GPSAltitudeRef",       Byte,      Code,          "EXIF2.32", "1",  "",  &words::gpsAltitudeRef},
    {    6, "GPSAltitude",          Rational,  RationalUnit,  "EXIF2.32", "1",  "m"},
    {    7, "GPSTimeStamp",         Rational,  GpsTime,       "EXIF2.32", "3",  "h:m:s UTC"},
    {    8, "GPSSatellites",        Ascii,     Text,          "EXIF2.32", "N"},
    {    9, "GPSStatus",            Ascii,     Code,          "EXIF2.32", "2",  "",  &words::gpsStatus},
    {   10, "GPSMeasureMode",       Ascii,     Code,          "EXIF2.32", "2",  "",  &words::gpsMeasureMode},
    {   11, "GPSDOP",               Rational,  Number,        "EXIF2.32", "1"},
    {   12, "GPSSpeedRef",          Ascii,     Code,          "EXIF2.32", "2",  "",  &words::gpsSpeedRef},
    {   13, "GPSSpeed",             Rational,  RationalUnit,  "EXIF2.32", "1",  "by GPSSpeedRef"},
    {   14, "GPSTrackRef",          Ascii,     Code,          "EXIF2.32", "2",  "",  &words::directionRef},
    {   15, "GPSTrack",             Rational,  RationalUnit,  "EXIF2.32", "1",  "deg"},
    {   16, "GPSImgDirectionRef",   Ascii,     Code,          "EXIF2.32", "2",  "",  &words::directionRef},
    {   17, "GPSImgDirection",      Rational,  RationalUnit,  "EXIF2.32", "1",  "deg"},
    {   18, "GPSMapDatum",          Ascii,     Text,          "EXIF2.32", "N"},
    {   19, "GPSDestLatitudeRef",   Ascii,     Code,          "EXIF2.32", "2",  "",  &words::latitudeRef},
    {   20, "GPSDestLatitude",      Rational,  GpsCoordinate, "EXIF2.32", "3",  "deg"},
    {   21, "GPSDestLongitudeRef",  Ascii,     Code,          "EXIF2.32", "2",  "",  &words::longitudeRef},
    {   22, "GPSDestLongitude",     Rational,  GpsCoordinate, "EXIF2.32", "3",  "deg"},
    {   23, "GPSDestBearingRef",    Ascii,     Code,          "EXIF2.32", "2",  "",  &words::directionRef},
    {   24, "GPSDestBearing",       Rational,  RationalUnit,  "EXIF2.32", "1",  "deg"},
    {   25, "GPSDestDistanceRef",   Ascii,     Code,          "EXIF2.32", "2",  "",  &words::gpsDestDistanceRef},
    {   26, "GPSDestDistance",      Rational,  RationalUnit,  "EXIF2.32", "1",  "by GPSDestDistanceRef"},
    {   27, "GPSProcessingMethod",  Undefined, Comment,       "EXIF2.32", "N"},
    {   28, "GPSAreaInformation",   Undefined, Comment,       "EXIF2.32", "N"},
    {   29, "GPSDateStamp",         Ascii,     Date,          "EXIF2.32", "11"},
    {   30, "GPSDifferential",      Short,     Code,          "EXIF2.32", "1",  "",  &words::gpsDifferential},
    {   31, "GPSHPositioningError", Rational,  RationalUnit,  "EXIF2.32", "1",  "m"},
}));
// clang-format on
static_assert(isTagTable(gpsTable));
constexpr TagIndex<countPages(gpsTable)> gpsIndex(gpsTable);

}  // namespace

IndexedTags gpsTags() noexcept {
    return {gpsTable, gpsIndex.pageOf, gpsIndex.rows};
}

}  // namespace corvinex::registry
