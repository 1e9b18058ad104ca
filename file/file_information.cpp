#include "file/file_information.h"

#include <array>
#include <boost/date_time/posix_time/posix_time.hpp>
#include <cstddef>
#include <ctime>

#include "entry/reports/fatal_errors.h"
#include "host/interface/platform.h"

namespace corvinex {

namespace {

constexpr std::array formatTexts{"jpg", "tif", "tif"};

}  // namespace

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
