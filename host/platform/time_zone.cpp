#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <mutex>
#include <new>
#include <stdexcept>

#include "host/interface/platform.h"
#include "host/platform/forking.h"

namespace fl::i18n::time_zone {

namespace {

constexpr const char* utcName = "UTC";

// Whether the C library once read the zone that TZ names without memory: it then takes UTC instead,
// and does not read again while TZ stays as it is.
constinit bool isZoneUnread = false;
// The C library has a lock of its own, which checkers of threads do not see.
constinit std::mutex zoneMutex;

std::mutex& mutexOfZone() noexcept {
    return zoneMutex;
}

[[maybe_unused]] const bool isForkable = host::holdWhileForking<mutexOfZone>();

/// Has the C library look at TZ anew, which may have changed. False when there was not the memory.
[[nodiscard]] bool readLocalZone() noexcept {
    const std::lock_guard lock(zoneMutex);
    errno = 0;
    ::tzset();
    const bool isRead = errno != ENOMEM;
    // Without TZ the system's zone is looked at each time.
    if (!isRead && std::getenv("TZ") != nullptr) {
        isZoneUnread = true;
    }
    return isRead && !isZoneUnread;
}

// A zone takes its memory where it is first read: while the host is loaded there is some.
[[maybe_unused]] const bool isReadAtLoad = readLocalZone();

}  // namespace

timezone::timezone(const std::string& name) : name_(name) {
    if (!name_.empty() && name_ != utcName) {
        throw std::invalid_argument("the time zone " + name_ + " is not known; there are UTC and " +
                                    "the local zone, which has the empty name");
    }
}

boost::posix_time::ptime from_utc(const boost::posix_time::ptime& utc, const timezone& zone) {
    if (utc.is_special() || zone.name() == utcName) {
        return utc;
    }
    const boost::posix_time::ptime epoch(boost::gregorian::date(1970, 1, 1));
    constexpr std::int64_t perSecond = 1'000'000;
    const std::int64_t total = (utc - epoch).total_microseconds();
    // Rounded down: also before 1970 the microseconds count forward from a whole second.
    const std::int64_t microseconds = (total % perSecond + perSecond) % perSecond;
    const std::time_t seconds = (total - microseconds) / perSecond;
    std::tm local{};
    if (!readLocalZone()) {
        throw std::bad_alloc();
    }
    // The lock of the C library is none that a forked process finds free.
    const std::lock_guard lock(zoneMutex);
    if (::localtime_r(&seconds, &local) == nullptr) {
        throw std::out_of_range("the local time of " + std::to_string(seconds) +
                                " s after 1970 cannot be told");
    }
    return {boost::gregorian::date(static_cast<unsigned short>(local.tm_year + 1900),
                                   static_cast<unsigned short>(local.tm_mon + 1),
                                   static_cast<unsigned short>(local.tm_mday)),
            boost::posix_time::time_duration(local.tm_hour, local.tm_min, local.tm_sec) +
                boost::posix_time::microseconds(microseconds)};
}

}  // namespace fl::i18n::time_zone
