#include "inspect/record/record_head.h"

#include <gtest/gtest.h>

#include <array>
#include <ctime>
#include <limits>
#include <string>

namespace {

using corvinex::inspect::isoTime;

TEST(IsoTime, IsThatOfTheCalendarAtItsEdges) {
    EXPECT_EQ(isoTime(0), "1970-01-01T00:00:00Z");
    EXPECT_EQ(isoTime(-1), "1969-12-31T23:59:59Z");
    EXPECT_EQ(isoTime(951'782'400), "2000-02-29T00:00:00Z");
    EXPECT_EQ(isoTime(4'107'542'399), "2100-02-28T23:59:59Z");
    EXPECT_EQ(isoTime(253'402'300'799), "9999-12-31T23:59:59Z");
    EXPECT_EQ(isoTime(253'402'300'800), "10000-01-01T00:00:00Z");
    EXPECT_EQ(isoTime(-62'167'219'200), "0000-01-01T00:00:00Z");
}

TEST(IsoTime, IsEmptyForAYearThatNoCalendarHas) {
    EXPECT_EQ(isoTime(std::numeric_limits<std::time_t>::max()), "");
    EXPECT_EQ(isoTime(std::numeric_limits<std::time_t>::min()), "");
}

TEST(IsoTime, IsThatOfTheSystem) {
    constexpr std::time_t step = 86'399'993;  // days and seconds both change
    for (std::time_t time = -62'167'219'200; time < 253'402'300'800; time += step) {
        std::tm parts{};
        ASSERT_NE(gmtime_r(&time, &parts), nullptr);
        std::array<char, 32> text{};
        ASSERT_NE(std::strftime(text.data(), text.size(), "%m-%dT%H:%M:%SZ", &parts), 0U);
        const std::string year = std::to_string(parts.tm_year + 1900);
        EXPECT_EQ(isoTime(time), std::string(4 - year.size(), '0') + year + '-' + text.data());
    }
}

}  // namespace
