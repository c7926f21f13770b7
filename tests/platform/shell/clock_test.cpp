#include "platform/shell/clock.h"

#include <cmath>
#include <ctime>
#include <gtest/gtest.h>

namespace zenvora::shell {
namespace {

/// The C library's own idea of local time, as a date number.
double LibraryNow(std::time_t now) {
    std::tm local{};
    localtime_r(&now, &local);
    const auto day = text::DayNumber(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    return day.value_or(0) + (local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec) / 86400.0;
}

TEST(SystemClock, TellsLocalTime) {
    const double before = LibraryNow(std::time(nullptr));
    const double now = SystemClock().Now();
    const double after = LibraryNow(std::time(nullptr));
    EXPECT_GE(now, before - 1e-9);
    EXPECT_LE(now, after + 1e-9);
}

TEST(Clock, TodayHasNoTimeOfDay) {
    const FixedClock clock(40000.75);
    EXPECT_EQ(clock.Now(), 40000.75);
    EXPECT_EQ(clock.Today(), 40000);
    EXPECT_EQ(clock.Year(), 2009);  // 40000 is 7/6/2009
}

TEST(FixedClock, StandsStillUntilItIsSet) {
    FixedClock clock(1.0);
    EXPECT_EQ(clock.Now(), clock.Now());
    clock.Set(36526.0);
    EXPECT_EQ(clock.Year(), 2000);
}

}  // namespace
}  // namespace zenvora::shell
