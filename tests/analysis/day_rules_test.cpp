#include "analysis/day_rules.h"

#include <gtest/gtest.h>

namespace zenvora::analysis {
namespace {

TEST(DayDiff, CountsWholeDaysWithASign) {
    EXPECT_EQ(DayDiff(40000, 40106), 106);
    EXPECT_EQ(DayDiff(40106, 40000), -106);
    EXPECT_EQ(DayDiff(40000, 40000), 0);
}

TEST(DayDiff, DoesNotCountTimesOfDay) {
    EXPECT_EQ(DayDiff(40000.9, 40001.1), 1);
    EXPECT_EQ(DayDiff(40000.1, 40000.9), 0);
}

TEST(IsBetweenDates, HoldsOnBothBounds) {
    EXPECT_TRUE(IsBetweenDates(10, 10, 20));
    EXPECT_TRUE(IsBetweenDates(10, 20, 20));
    EXPECT_FALSE(IsBetweenDates(10, 9, 20));
    EXPECT_FALSE(IsBetweenDates(10, 21, 20));
}

TEST(IsDayAfter, NeedsAWholeDay) {
    EXPECT_TRUE(IsDayAfter(11, 10));
    EXPECT_FALSE(IsDayAfter(10, 10));
    EXPECT_FALSE(IsDayAfter(10.9, 10.1));
    EXPECT_FALSE(IsDayAfter(9, 10));
}

TEST(IsDayBefore, NeedsAWholeDay) {
    EXPECT_TRUE(IsDayBefore(10, 11));
    EXPECT_FALSE(IsDayBefore(10, 10));
    EXPECT_FALSE(IsDayBefore(10.1, 10.9));
    EXPECT_FALSE(IsDayBefore(11, 10));
}

}  // namespace
}  // namespace zenvora::analysis
