#include "file/file_information.h"

#include <algorithm>
#include <array>
#include <boost/date_time/posix_time/posix_time.hpp>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <iterator>

#include "entry/fatal_errors.h"
#include "host/interface/platform.h"
#include "vocabulary/tag_table.h"

namespace corvinex {

namespace {

// Of files of every kind. Those of TIFF and BigTIFF files have "ByteOrder", the baseline tags and
// "Offset" behind them.
constexpr std::array commonFields{"Filename",      "FileModDate",    "FileSize", "Format",
                                  "FormatVersion", "Width",          "Height",   "BitDepth",
                                  "ColorType",     "FormatSignature"};
constexpr std::size_t commonFieldCount = commonFields.size();

auto makeDefaultFieldNames() noexcept {
    std::array<const char*, commonFieldCount + 1 + baselineFieldCount + 1> names{};
    auto place = std::copy(commonFields.begin(), commonFields.end(), names.begin());
    *place = "ByteOrder";
    const auto baseline = getBaselineFieldNames();
    place = std::copy(baseline.begin(), baseline.end(), std::next(place));
    *place = "Offset";
    return names;
}

constexpr std::array formatTexts{"jpg", "tif", "tif"};

}  // namespace

std::span<const char* const> getDefaultFieldNames(FileFormat format) noexcept {
    static const auto names = makeDefaultFieldNames();
    const std::span<const char* const> all(names);
    return format == FileFormat::JPEG ? all.first(commonFieldCount) : all;
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
