#include "analysis/record_status.h"

#include <gtest/gtest.h>

#include "analysis/facts_builder.h"

namespace zenvora::analysis {
namespace {

const Date kNone = 2.0;

struct MissingCase {
    const char* name;
    Date date;
    bool missing;
};

class MissingDate : public testing::TestWithParam<MissingCase> {};

TEST_P(MissingDate, IsDayZeroInItsNormalizedForm) {
    const shell::FixedClock clock{Day(2010, 7, 4)};
    EXPECT_EQ(IsMissingDate(GetParam().date, clock), GetParam().missing);
}

INSTANTIATE_TEST_SUITE_P(Dates, MissingDate,
                         testing::Values(MissingCase{"DayZero", Day(1900, 1, 1), true},
                                         MissingCase{"DayAfterDayZero", Day(1900, 1, 2), false},
                                         MissingCase{"LastDayOf1899", Day(1899, 12, 31), true},
                                         MissingCase{"DayOfABareTime", Day(1899, 12, 30), true},
                                         MissingCase{"LongAgo", Day(1776, 7, 4), true},
                                         MissingCase{"LastCentury", Day(1999, 12, 31), false},
                                         MissingCase{"Today", Day(2010, 7, 4), false},
                                         MissingCase{"LastDayOfTheClocksYear", Day(2010, 12, 31), false},
                                         MissingCase{"FirstDayOfALaterYear", Day(2011, 1, 1), true}),
                         [](const auto& info) { return info.param.name; });

TEST(PresentDates, AreThoseThatAreNotMissing) {
    for (const int year : {1950, 1999, 2000, 2010, 2024}) {
        const shell::FixedClock clock{Day(year, 3, 1)};
        const PresentDates present{clock};
        for (Date date = Day(1890, 1, 1); date < Day(2030, 1, 1); date += 0.5) {
            ASSERT_EQ(present.Holds(date), !IsMissingDate(date, clock)) << date << " in " << year;
        }
        for (const Date date : {text::kFirstDate, text::kLastDate}) {
            EXPECT_EQ(present.Holds(date), !IsMissingDate(date, clock)) << date << " in " << year;
        }
    }
}

struct StatusCase {
    const char* name;
    Date contract;
    Date cancel;
    Date sale;
    RecordStatus status;
};

class StatusOfDates : public testing::TestWithParam<StatusCase> {};

TEST_P(StatusOfDates, GoesByPrecedence) {
    const PresentDates present{shell::FixedClock{Effective()}};
    const StatusCase& of = GetParam();
    EXPECT_EQ(GetRecordStatus(of.contract, of.cancel, of.sale, present), of.status);
}

INSTANTIATE_TEST_SUITE_P(
    Dates, StatusOfDates,
    testing::Values(StatusCase{"NoneIsActive", kNone, kNone, kNone, RecordStatus::Active},
                    StatusCase{"ContractAlone", 40000, kNone, kNone, RecordStatus::UnderContract},
                    StatusCase{"CancelAlone", kNone, 40000, kNone, RecordStatus::CancelledOrExpired},
                    StatusCase{"SaleAlone", kNone, kNone, 40000, RecordStatus::Sold},
                    StatusCase{"SaleBeforeContract", 40100, kNone, 40000, RecordStatus::Sold},
                    StatusCase{"SaleBeforeCancel", kNone, 40100, 40000, RecordStatus::Sold},
                    StatusCase{"CancelBeforeContract", 40100, 40000, kNone, RecordStatus::CancelledOrExpired},
                    StatusCase{"AllThree", 40200, 40100, 40000, RecordStatus::Sold},
                    StatusCase{"SaleInALaterYearThanTheClocks", 40000, kNone, Day(2011, 1, 1),
                               RecordStatus::UnderContract},
                    StatusCase{"SaleOf12301899", kNone, kNone, 0.0, RecordStatus::Active}),
    [](const auto& info) { return info.param.name; });

TEST(RecordStatus, HasTheNumbersOfTheRules) {
    EXPECT_EQ(static_cast<int>(RecordStatus::Active), 1);
    EXPECT_EQ(static_cast<int>(RecordStatus::Sold), 2);
    EXPECT_EQ(static_cast<int>(RecordStatus::UnderContract), 3);
    EXPECT_EQ(static_cast<int>(RecordStatus::CancelledOrExpired), 4);
}

}  // namespace
}  // namespace zenvora::analysis
