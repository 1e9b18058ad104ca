#include "file/file_information.h"

#include <array>
#include <boost/date_time/posix_time/posix_time.hpp>
#include <cstddef>
#include <cstdint>
#include <ctime>

#include "entry/fatal_errors.h"
#include "host/interface/platform.h"

namespace corvinex {

namespace {

constexpr std::array defaultFieldNames{
    // These are fields of every kind of file.
    "Filename",
    "FileModDate",
    "FileSize",
    "Format",
    "FormatVersion",
    "Width",
    "Height",
    "BitDepth",
    "ColorType",
    "FormatSignature",
    // These are fields of TIFF and BigTIFF files only.
    "ByteOrder",
    "NewSubFileType",
    "BitsPerSample",
    "Compression",
    "PhotometricInterpretation",
    "StripOffsets",
    "SamplesPerPixel",
    "RowsPerStrip",
    "StripByteCounts",
    "XResolution",
    "YResolution",
    "ResolutionUnit",
    "Colormap",
    "PlanarConfiguration",
    "TileWidth",
    "TileLength",
    "TileOffsets",
    "TileByteCounts",
    "Orientation",
    "FillOrder",
    "GrayResponseUnit",
    "MaxSampleValue",
    "MinSampleValue",
    "Thresholding",
    "Offset",
};

constexpr std::size_t commonFieldCount = 10;

// A hash table of the names, because every set of directories looks up each of its tags.
constexpr std::size_t bucketCount = 128;

constexpr std::size_t bucketOf(std::string_view name) noexcept {
    const std::size_t first = static_cast<unsigned char>(name.front());
    const std::size_t last = static_cast<unsigned char>(name.back());
    return (name.size() * 13 + first * 5 + last) % bucketCount;
}

// A bucket holds the index of a name plus 1, or 0 where it is empty. A name whose bucket is taken
// stands in the next one that was free.
using Buckets = std::array<std::uint8_t, bucketCount>;

constexpr Buckets fillBuckets() {
    Buckets buckets{};
    std::uint8_t behind = 1;
    for (const std::string_view name : defaultFieldNames) {
        std::size_t bucket = bucketOf(name);
        while (buckets.at(bucket) != 0) {
            bucket = (bucket + 1) % bucketCount;
        }
        buckets.at(bucket) = behind;
        ++behind;
    }
    return buckets;
}

constexpr Buckets fieldBuckets = fillBuckets();

constexpr std::array formatTexts{"jpg", "tif", "tif"};

}  // namespace

std::span<const char* const> getDefaultFieldNames(FileFormat format) noexcept {
    const std::span<const char* const> all(defaultFieldNames);
    return format == FileFormat::JPEG ? all.first(commonFieldCount) : all;
}

bool isDefaultFieldName(FileFormat format, std::string_view name) noexcept {
    if (name.empty()) {
        return false;
    }
    std::size_t bucket = bucketOf(name);
    while (fieldBuckets[bucket] != 0) {
        const std::size_t place = fieldBuckets[bucket] - 1U;
        if (name == defaultFieldNames[place]) {
            return place < getDefaultFieldNames(format).size();
        }
        bucket = (bucket + 1) % bucketCount;
    }
    return false;
}

const char* getFormatText(FileFormat format) noexcept {
    const auto kind = static_cast<std::size_t>(format);
    return kind < formatTexts.size() ? formatTexts[kind] : "other";
}

std::string formatLocalTime(const boost::posix_time::ptime& utc) {
    const fl::i18n::time_zone::timezone localZone("");
    const std::tm calendar =
        boost::posix_time::to_tm(fl::i18n::time_zone::from_utc(utc, localZone));
    std::array<char, 64> text{};
    const std::size_t length =
        std::strftime(text.data(), text.size(), "%d-%b-%Y %H:%M:%S", &calendar);
    if (length == 0) {
        raiseFatal(quorra::corvinex::strftimeFailure());
    }
    return std::string(text.data(), length);
}

}  // namespace corvinex
