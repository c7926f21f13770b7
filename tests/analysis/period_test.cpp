#include "analysis/period.h"

#include <gtest/gtest.h>

#include "analysis/facts_builder.h"
#include "platform/fault.h"

namespace zenvora::analysis {
namespace {

struct Bounds {
    const char* name;
    int offset;
    int column;
    Date start;
    Date end;
    int days;
};

class PeriodBounds : public testing::TestWithParam<Bounds> {};

TEST_P(PeriodBounds, AreThoseOfTheForm) {
    const Period period = PeriodOfOffset(GetParam().offset, Effective());
    EXPECT_EQ(period.start, GetParam().start);
    EXPECT_EQ(period.end, GetParam().end);
    EXPECT_EQ(DayDiff(period.start, period.end) + 1, GetParam().days);
    EXPECT_EQ(ColumnOfOffset(GetParam().offset).column, GetParam().column);
}

INSTANTIATE_TEST_SUITE_P(Of06302010, PeriodBounds,
                         testing::Values(Bounds{"Prior7To12", 182, 0, Day(2009, 6, 30), Day(2009, 12, 30),
                                                184},
                                         Bounds{"Prior4To6", 91, 1, Day(2009, 12, 31), Day(2010, 3, 31), 91},
                                         Bounds{"Current3", 0, 2, Day(2010, 4, 1), Day(2010, 6, 30), 91}),
                         [](const auto& info) { return info.param.name; });

TEST(Periods, CoverAYearWithoutGapOrOverlap) {
    const Period oldest = PeriodOfOffset(182, 1000);
    const Period middle = PeriodOfOffset(91, 1000);
    const Period current = PeriodOfOffset(0, 1000);
    EXPECT_EQ(oldest.start, 1000 - 365);
    EXPECT_EQ(oldest.end + 1, middle.start);
    EXPECT_EQ(middle.end + 1, current.start);
    EXPECT_EQ(current.end, 1000);
}

TEST(Periods, AreCountedInDaysAcrossALeapDay) {
    // 02/29/2008 lies in between: 365 days before 06/30/2008 is 07/01/2007.
    EXPECT_EQ(PeriodOfOffset(182, Day(2008, 6, 30)).start, Day(2007, 7, 1));
}

TEST(Periods, FaultOnAnOffsetOfNone) {
    for (const int offset : {-1, 1, 90, 181, 365}) {
        EXPECT_THROW(static_cast<void>(PeriodOfOffset(offset, 1000)), Fault) << offset;
    }
}

TEST(Periods, HaveTheMonthsAndNamesOfTheForm) {
    EXPECT_EQ(kPeriodColumns[0].months, 6);
    EXPECT_EQ(kPeriodColumns[1].months, 3);
    EXPECT_EQ(kPeriodColumns[2].months, 3);
    EXPECT_EQ(kPeriodColumns[0].name, "Prior 7-12 Months");
    EXPECT_EQ(kPeriodColumns[1].name, "Prior 4-6 Months");
    EXPECT_EQ(kPeriodColumns[2].name, "Current-3 Months");
}

}  // namespace
}  // namespace zenvora::analysis
