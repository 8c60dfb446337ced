#include "common/dates.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace velloria::plugins {
namespace {

TEST(PluginDates, AreThoseOfTheCalendar) {
    EXPECT_TRUE((DateTime{2024, 2, 29, 23, 59, 59}.exists()));
    EXPECT_TRUE((DateTime{100, 1, 1}.exists()));
    EXPECT_TRUE((DateTime{9999, 12, 31}.exists()));
    for (const DateTime& missing :
         {DateTime{2023, 2, 29}, DateTime{2024, 2, 31}, DateTime{0, 1, 1}, DateTime{99, 12, 31}, DateTime{10000, 1, 1},
          DateTime{2024, 0, 1}, DateTime{2024, 13, 1}, DateTime{2024, 1, 0}, DateTime{2024, 1, -1},
          DateTime{2024, 1, 1, 24}, DateTime{2024, 1, 1, 0, 60}, DateTime{2024, 1, 1, 0, 0, 60},
          DateTime{2024, 1, 1, -1}})
        EXPECT_FALSE(missing.exists()) << missing.stamp();
}

TEST(PluginDates, AreReadAsTheyAreWritten) {
    const DateTime time{2024, 2, 9, 3, 4, 5};
    EXPECT_EQ(time.stamp(), "2024/02/09 03:04:05");
    EXPECT_EQ(time.dayKey(), "2024/02/09");
    EXPECT_EQ(dateTimeOf("2024/02/09 03:04:05"), time);
    EXPECT_EQ(dateTimeOf("2024/02/09"), (DateTime{2024, 2, 9}));
    for (const char* text : {"", "2024/2/9", "2024/02/30", "2024-02-09", "2024/02/09 3:04:05", "2024/02/09 24:00:00",
                             "2024/02/09x03:04:05", "0000/00/00", "2024/02/0a"})
        EXPECT_FALSE(dateTimeOf(text)) << text;
}

TEST(PluginDates, OfTokyoNeedNoTableOfZones) {
    EXPECT_EQ(tokyoTime(0), (DateTime{1970, 1, 1, 9, 0, 0}));
    EXPECT_EQ(tokyoTime(1709866800), (DateTime{2024, 3, 8, 12, 0, 0}));
    EXPECT_EQ(tokyoTime(-32401), (DateTime{1969, 12, 31, 23, 59, 59}));
    EXPECT_FALSE(tokyoTime(INT64_MAX));
    EXPECT_FALSE(tokyoTime(INT64_MIN));
    EXPECT_FALSE(tokyoTime(253402268400)); // the year 10000
    for (const int64_t seconds : {int64_t(0), int64_t(1709866800), int64_t(-58000000001), int64_t(253402268399)})
        EXPECT_EQ(secondsOfTokyo(*tokyoTime(seconds)), seconds);
}

TEST(PluginDates, AreLocalOnThisMachinesClock) {
    const std::time_t now = 1709866800;
    const std::tm* local = std::localtime(&now);
    const std::optional<DateTime> time = localTime(now);
    ASSERT_TRUE(time);
    EXPECT_EQ(time->day, local->tm_mday);
    EXPECT_EQ(time->hour, local->tm_hour);
    EXPECT_FALSE(localTime(INT64_MAX));
}

} // namespace
} // namespace velloria::plugins
