#include <gtest/gtest.h>

#include <boost/date_time/posix_time/posix_time.hpp>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <stdexcept>
#include <string>

#include "host/interface/platform.h"

using boost::posix_time::ptime;
using boost::posix_time::time_from_string;
using fl::i18n::time_zone::from_utc;
using Zone = fl::i18n::time_zone::timezone;

namespace {

/// Makes a zone the local one and, at its end, the one before.
class ScopedLocalZone {
  public:
    explicit ScopedLocalZone(const char* rule) {
        if (const char* const before = std::getenv("TZ")) {
            previous_ = before;
        }
        ::setenv("TZ", rule, 1);
        ::tzset();
    }
    ~ScopedLocalZone() {
        if (previous_) {
            ::setenv("TZ", previous_->c_str(), 1);
        } else {
            ::unsetenv("TZ");
        }
        ::tzset();
    }
    ScopedLocalZone(const ScopedLocalZone&) = delete;
    ScopedLocalZone& operator=(const ScopedLocalZone&) = delete;

  private:
    std::optional<std::string> previous_;
};

std::string local(const std::string& utc) {
    return boost::posix_time::to_iso_extended_string(from_utc(time_from_string(utc), Zone("")));
}

// Written out, so that no zone database is needed.
constexpr const char* centralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";

}  // namespace

TEST(TimeZone, TheEmptyNameIsTheLocalZoneWithItsSummerTime) {
    const ScopedLocalZone zone(centralEurope);
    EXPECT_EQ(local("2024-01-15 12:00:00"), "2024-01-15T13:00:00");
    EXPECT_EQ(local("2024-07-15 12:00:00"), "2024-07-15T14:00:00");
    EXPECT_EQ(local("2024-03-31 00:59:59"), "2024-03-31T01:59:59");
    EXPECT_EQ(local("2024-03-31 01:00:00"), "2024-03-31T03:00:00");
}

TEST(TimeZone, TheLocalDateMayBeTheNextOrThePreviousDay) {
    {
        const ScopedLocalZone zone(centralEurope);
        EXPECT_EQ(local("2023-12-31 23:30:00"), "2024-01-01T00:30:00");
    }
    const ScopedLocalZone zone("EST5");
    EXPECT_EQ(local("2024-03-01 04:59:59"), "2024-02-29T23:59:59");
}

TEST(TimeZone, TheLocalZoneFollowsTZAsItChanges) {
    const ScopedLocalZone zone(centralEurope);
    EXPECT_EQ(local("2024-01-15 12:00:00"), "2024-01-15T13:00:00");
    ::setenv("TZ", "EST5", 1);
    EXPECT_EQ(local("2024-01-15 12:00:00"), "2024-01-15T07:00:00");
    ::unsetenv("TZ");
    ::setenv("TZ", centralEurope, 1);
    EXPECT_EQ(local("2024-07-15 12:00:00"), "2024-07-15T14:00:00");
}

TEST(TimeZone, MicrosecondsStay) {
    const ScopedLocalZone zone(centralEurope);
    EXPECT_EQ(local("2024-01-15 12:00:00.123456"), "2024-01-15T13:00:00.123456");
}

TEST(TimeZone, TimesBefore1970Convert) {
    const ScopedLocalZone zone("EST5");
    EXPECT_EQ(local("1969-12-31 23:59:59.750000"), "1969-12-31T18:59:59.750000");
    EXPECT_EQ(local("1600-02-29 12:00:00"), "1600-02-29T07:00:00");
}

TEST(TimeZone, SpecialValuesStay) {
    const ScopedLocalZone zone(centralEurope);
    const Zone here("");
    EXPECT_TRUE(from_utc(ptime(boost::posix_time::not_a_date_time), here).is_not_a_date_time());
    EXPECT_TRUE(from_utc(ptime(boost::posix_time::pos_infin), here).is_pos_infinity());
    EXPECT_TRUE(from_utc(ptime(boost::posix_time::neg_infin), here).is_neg_infinity());
}

TEST(TimeZone, ALocalTimeBeyondTheDateLibrarysYearsRaisesItsError) {
    const ScopedLocalZone zone(centralEurope);
    EXPECT_THROW(local("9999-12-31 23:30:00"), std::out_of_range);
}

TEST(TimeZone, UtcIsAZoneByName) {
    const ScopedLocalZone zone(centralEurope);
    const ptime time = time_from_string("2024-07-15 12:00:00.5");
    EXPECT_EQ(from_utc(time, Zone("UTC")), time);
    EXPECT_EQ(Zone("UTC").name(), "UTC");
}

TEST(TimeZone, OtherNamesAreRefused) {
    EXPECT_THROW(Zone("Europe/Berlin"), std::invalid_argument);
    EXPECT_THROW(Zone("utc"), std::invalid_argument);
}
