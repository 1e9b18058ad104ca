#include "inspect/reading/reading.h"

#include <array>
#include <cstddef>

#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {
namespace {

using Reader = Text (*)(const Subject&);
using registry::Encoding;

struct Row {
    Encoding encoding;
    Reader read;
};

/// Positions, byte counts and pointers say all there is in their numbers.
Text readNothing(const Subject& /*subject*/) {
    return std::nullopt;
}

// clang-format off
constexpr std::array readers{
    Row{Encoding::Number,          readNumber},
    Row{Encoding::Text,            readText},
    Row{Encoding::Code,            readCode},
    Row{Encoding::Flags,           readFlags},
    Row{Encoding::Offsets,         readNothing},
    Row{Encoding::Pointer,         readNothing},
    Row{Encoding::Opaque,          readOpaque},
    Row{Encoding::RationalUnit,    readRationalUnit},
    Row{Encoding::ExposureTime,    readExposureTime},
    Row{Encoding::FNumber,         readFNumber},
    Row{Encoding::LensRange,       readLensRange},
    Row{Encoding::VersionBytes,    readVersionBytes},
    Row{Encoding::TextInUndefined, readTextInUndefined},
    Row{Encoding::Comment,         readComment},
    Row{Encoding::Utf16Bytes,      readUtf16Bytes},
    Row{Encoding::DateTime,        readDateTime},
    Row{Encoding::Date,            readDate},
    Row{Encoding::GpsCoordinate,   readGpsCoordinate},
    Row{Encoding::GpsTime,         readGpsTime},
    Row{Encoding::GeoKeys,         readGeoKeys},
    Row{Encoding::GdalMetadata,    readGdalMetadata},
    Row{Encoding::Xmp,             readXmp},
    Row{Encoding::Icc,             readIcc},
    Row{Encoding::Iptc,            readIptc},
    Row{Encoding::PhotoshopIrb,    readPhotoshopResources},
    Row{Encoding::MakerNote,       readMakerNote},
};
// clang-format on

constexpr bool isInOrder() {
    for (std::size_t row = 0; row < readers.size(); ++row) {
        if (readers[row].encoding != static_cast<Encoding>(row)) {
            return false;
        }
    }
    return true;
}
// A reader is found by the place of its encoding.
static_assert(isInOrder() && readers.back().encoding == Encoding::MakerNote);

}  // namespace

std::optional<std::string> readingOf(const Subject& subject) {
    if (subject.value.size() == 0) {
        return std::nullopt;
    }
    return readers[static_cast<std::size_t>(subject.fact.encoding)].read(subject);
}

}  // namespace corvinex::inspect::reading
