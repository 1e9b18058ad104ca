#include "inspect/reading/times.h"

#include <gtest/gtest.h>

#include "tests/value_reading/entries.h"

// Dates and times, with what other entries add to them.

namespace {

using namespace test;

TEST(DateTime, ReadsWithOneDateOrder) {
    EXPECT_EQ(mainReading(306, ascii("2024:03:05 14:07:09")), "2024-03-05 14:07:09");
    EXPECT_EQ(mainReading(306, ascii("2024-03-05 14:07:09")), "2024-03-05 14:07:09");
    EXPECT_EQ(mainReading(306, ascii("2024:03:05T14:07:09")), "2024-03-05 14:07:09");
    EXPECT_EQ(mainReading(306, ascii("2016:12:31 23:59:60 ")), "2016-12-31 23:59:60");
}

TEST(DateTime, TakesFractionAndOffsetFromItsOwnTags) {
    const Entries entries{{37520, ascii("1")},     {36880, ascii("-11:11")},
                          {37521, ascii("042  ")}, {36881, ascii("+05:30")},
                          {37522, ascii("999")},   {36882, ascii("Z")}};
    const Elements time = ascii("2024:03:05 14:07:09");
    EXPECT_EQ(exifReading(36867, time, entries), "2024-03-05 14:07:09.042 +05:30");
    EXPECT_EQ(exifReading(36868, time, entries), "2024-03-05 14:07:09.999 Z");
    EXPECT_EQ(mainReading(306, time, entries), "2024-03-05 14:07:09.1 -11:11");
}

TEST(DateTime, LeavesOutWhatIsNoFractionOrOffset) {
    const Elements time = ascii("2024:03:05 14:07:09");
    EXPECT_EQ(exifReading(36867, time, {{37521, ascii("4x")}, {36881, ascii("   :  ")}}),
              "2024-03-05 14:07:09");
    EXPECT_EQ(exifReading(36867, time, {{37521, ascii("1234567890")}, {36881, ascii("+25:00")}}),
              "2024-03-05 14:07:09");
    EXPECT_EQ(exifReading(36867, time, {{37521, shorts({4})}}), "2024-03-05 14:07:09");
}

TEST(DateTime, BlanksAndImpossibleTimesAreNotRead) {
    for (const auto* text : {"    :  :     :  :  ", "0000:00:00 00:00:00", "2024:13:05 14:07:09",
                             "2024:03:32 14:07:09", "2024:02:30 14:07:09", "2023:02:29 14:07:09",
                             "2024:04:31 14:07:09", "2024:03:05 24:07:09", "2024:03:05 14:60:09",
                             "2024:03:05", "2024:03:05 14:07", "2024:03-05 14:07:09", "",
                             "2024:03:05 14:07:09 and more", "20240305 140709"}) {
        EXPECT_EQ(mainReading(306, ascii(text)), "-") << text;
    }
    EXPECT_EQ(mainReading(306, shorts({2024, 3, 5})), "-");
}

TEST(Date, ReadsWithoutATime) {
    EXPECT_EQ(gpsReading(29, ascii("2024:03:05")), "2024-03-05");
    EXPECT_EQ(gpsReading(29, ascii("2024:03:05 14:07:09")), "-");
    EXPECT_EQ(gpsReading(29, ascii("05.03.2024")), "-");
    EXPECT_EQ(gpsReading(29, ascii("2024:02:29")), "2024-02-29");
    EXPECT_EQ(gpsReading(29, ascii("1900:02:29")), "-");
}

}  // namespace
