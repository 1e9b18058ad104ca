#pragma once

#include <optional>
#include <string>

#include "inspect/reading/subject.h"

// One reader for each way in which a tag may be encoded. Each gives what a person wants to read, in
// UTF-8, or nothing where the value says it already or is not what the tag should hold. None throws
// but for lack of memory, and none takes longer than in proportion to the value.

namespace corvinex::inspect::reading {

using Text = std::optional<std::string>;

// words.cpp
[[nodiscard]] Text readCode(const Subject& subject);
[[nodiscard]] Text readFlags(const Subject& subject);
// texts.cpp
[[nodiscard]] Text readText(const Subject& subject);
[[nodiscard]] Text readComment(const Subject& subject);
[[nodiscard]] Text readUtf16Bytes(const Subject& subject);
// versions.cpp
[[nodiscard]] Text readVersionBytes(const Subject& subject);
[[nodiscard]] Text readTextInUndefined(const Subject& subject);
// quantities.cpp
[[nodiscard]] Text readNumber(const Subject& subject);
[[nodiscard]] Text readRationalUnit(const Subject& subject);
// exposure.cpp
[[nodiscard]] Text readExposureTime(const Subject& subject);
[[nodiscard]] Text readFNumber(const Subject& subject);
// lens_range.cpp
[[nodiscard]] Text readLensRange(const Subject& subject);
// times.cpp
[[nodiscard]] Text readDateTime(const Subject& subject);
[[nodiscard]] Text readDate(const Subject& subject);
// positions.cpp
[[nodiscard]] Text readGpsCoordinate(const Subject& subject);
[[nodiscard]] Text readGpsTime(const Subject& subject);
// geokeys.cpp
[[nodiscard]] Text readGeoKeys(const Subject& subject);
// gdal_metadata.cpp
[[nodiscard]] Text readGdalMetadata(const Subject& subject);
// xmp.cpp
[[nodiscard]] Text readXmp(const Subject& subject);
// icc_profile.cpp
[[nodiscard]] Text readIcc(const Subject& subject);
// iptc.cpp
[[nodiscard]] Text readIptc(const Subject& subject);
// photoshop_resources.cpp
[[nodiscard]] Text readPhotoshopResources(const Subject& subject);
// maker_note.cpp
[[nodiscard]] Text readMakerNote(const Subject& subject);
// opaque.cpp
[[nodiscard]] Text readOpaque(const Subject& subject);

}  // namespace corvinex::inspect::reading
