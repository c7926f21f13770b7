#include "analysis/period_classification.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <ostream>
#include <random>

#include "analysis/facts_builder.h"

namespace zenvora::analysis {

void PrintTo(const PeriodEntry& entry, std::ostream* out) {
    const char* family = entry.family == PeriodEntry::Family::None   ? "nothing"
                         : entry.family == PeriodEntry::Family::Sale ? "sale"
                                                                     : "listing";
    *out << family << " of " << entry.daysOnMarket << " days at " << entry.price << " / "
         << entry.saleListPrice;
}

namespace {

using Family = PeriodEntry::Family;

constexpr int kNever = 1 << 20;  // no such date
constexpr int kOffsets[] = {182, 91, 0};

PresentDates PresentIn(int year) {
    return PresentDates{shell::FixedClock{Day(year, 7, 4)}};
}

PeriodEntry Classify(const ComparableFacts& facts, int column) {
    const RecordStatus status =
        GetRecordStatus(facts.contractDate, facts.cancelDate, facts.saleDate, PresentIn(2010));
    return ClassifyRecordForPeriod(facts, status, kOffsets[column], Effective(), Effective(),
                                   PresentIn(2010));
}

// All days are counted back from the effective date E; a negative one lies behind it. What each column gets:
// 0 for nothing, the days of a listing, or the days of a sale as a negative number.
struct Case {
    const char* name;
    int listed;
    int contract;
    int cancelled;
    int sold;
    int prior7to12;
    int prior4to6;
    int current3;
};

class Classification : public testing::TestWithParam<Case> {
  protected:
    static ComparableFacts FactsOf(const Case& of) {
        const auto back = [](int days) { return days == kNever ? common::kDayZero : Effective() - days; };
        ComparableFacts facts = ActiveListing();
        facts.origListDate = back(of.listed);
        facts.contractDate = back(of.contract);
        facts.cancelDate = back(of.cancelled);
        facts.saleDate = back(of.sold);
        facts.salePrice = 240000;
        return facts;
    }
};

TEST_P(Classification, GivesEachPeriodItsDays) {
    const ComparableFacts facts = FactsOf(GetParam());
    const int expected[] = {GetParam().prior7to12, GetParam().prior4to6, GetParam().current3};
    for (int column = 0; column < 3; ++column) {
        const PeriodEntry entry = Classify(facts, column);
        const Family family = expected[column] == 0  ? Family::None
                              : expected[column] < 0 ? Family::Sale
                                                     : Family::Listing;
        EXPECT_EQ(entry.family, family) << "column " << column << ": " << testing::PrintToString(entry);
        EXPECT_EQ(entry.daysOnMarket, std::abs(expected[column])) << "column " << column;
    }
}

// Prior 7-12 is E-365 to E-182, Prior 4-6 E-181 to E-91, Current-3 E-90 to E. A listing from before a period
// shows period end - listing date days; one from inside it a day more.
INSTANTIATE_TEST_SUITE_P(
    Active, Classification,
    testing::Values(Case{"OfAnyAgeCountsInAllPeriods", 400, kNever, kNever, kNever, 218, 309, 400},
                    Case{"OnTheLastDayCountsNowhere", 0, kNever, kNever, kNever, 0, 0, 0},
                    Case{"TheDayBeforeTheLastShowsTwoDays", 1, kNever, kNever, kNever, 0, 0, 2},
                    Case{"OnTheFirstDayOfCurrent3", 90, kNever, kNever, kNever, 0, 0, 91},
                    Case{"TheDayBeforeCurrent3ShowsADayFewer", 91, kNever, kNever, kNever, 0, 0, 91},
                    Case{"TheDayBeforeTheLastOfPrior4To6", 92, kNever, kNever, kNever, 0, 2, 92},
                    Case{"OnTheFirstDayOfPrior4To6", 181, kNever, kNever, kNever, 0, 91, 181},
                    Case{"OnTheLastDayOfPrior7To12", 182, kNever, kNever, kNever, 0, 91, 182},
                    Case{"TheDayBeforeTheLastOfPrior7To12", 183, kNever, kNever, kNever, 2, 92, 183},
                    Case{"OnTheFirstDayOfPrior7To12", 365, kNever, kNever, kNever, 184, 274, 365},
                    Case{"TheDayBeforePrior7To12", 366, kNever, kNever, kNever, 184, 275, 366},
                    Case{"AfterTheEffectiveDate", -1, kNever, kNever, kNever, 0, 0, 0},
                    // Day zero is date number 2 and E is 40359: 40359 - 182 - 2, 40359 - 91 - 2, 40359 - 2.
                    Case{"WithoutAListingDateAnyNumberOfDays", kNever, kNever, kNever, kNever, 40175, 40266,
                         40357}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Sold, Classification,
    testing::Values(Case{"OnTheEffectiveDate", 400, kNever, kNever, 0, 218, 309, -401},
                    Case{"OnTheFirstDayOfCurrent3", 400, kNever, kNever, 90, 218, 309, -311},
                    Case{"OnTheLastDayOfPrior4To6", 400, kNever, kNever, 91, 218, -310, 0},
                    Case{"OnTheFirstDayOfPrior4To6", 400, kNever, kNever, 181, 218, -220, 0},
                    Case{"OnTheLastDayOfPrior7To12", 400, kNever, kNever, 182, -219, 0, 0},
                    Case{"OnTheFirstDayOfPrior7To12", 400, kNever, kNever, 365, -36, 0, 0},
                    Case{"OlderThanAYear", 400, kNever, kNever, 366, 0, 0, 0},
                    Case{"AfterTheEffectiveDateIsAListing", 400, kNever, kNever, -1, 218, 309, 400},
                    Case{"AfterTheEffectiveDateListedTwoDaysBefore", 2, kNever, kNever, -1, 0, 0, 2},
                    Case{"AfterTheEffectiveDateListedTheDayBefore", 1, kNever, kNever, -1, 0, 0, 0},
                    Case{"OnTheDayOfListingIsOneDay", 10, kNever, kNever, 10, 0, 0, -1},
                    Case{"BeforeItsListingIsNothing", 10, kNever, kNever, 11, 0, 0, 0},
                    Case{"LaterThePeriodOfItsListing", 183, kNever, kNever, 10, 0, 92, -174},
                    Case{"AlsoWhenCancelled", 50, kNever, 40, 30, 0, 0, -21}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    OffTheMarket, Classification,
    testing::Values(Case{"ContractInThePeriod", 50, 10, kNever, kNever, 0, 0, 41},
                    Case{"ContractOnTheDayOfListingIsNothing", 50, 50, kNever, kNever, 0, 0, 0},
                    Case{"ContractADayAfterListing", 50, 49, kNever, kNever, 0, 0, 2},
                    Case{"ContractOnTheFirstDayOfCurrent3", 400, 90, kNever, kNever, 218, 309, 311},
                    Case{"ContractOnTheLastDayOfPrior4To6", 400, 91, kNever, kNever, 218, 310, 0},
                    Case{"ContractOnTheLastDayOfPrior7To12", 400, 182, kNever, kNever, 219, 0, 0},
                    Case{"ContractOlderThanAYear", 400, 366, kNever, kNever, 0, 0, 0},
                    Case{"ContractAfterTheEffectiveDate", 400, -5, kNever, kNever, 218, 309, 400},
                    Case{"CancelInThePeriod", 50, kNever, 10, kNever, 0, 0, 41},
                    Case{"CancelOnTheFirstDayOfPrior4To6", 400, kNever, 181, kNever, 218, 220, 0},
                    Case{"CancelOlderThanAYear", 400, kNever, 366, kNever, 0, 0, 0},
                    Case{"CancelOutranksContract", 50, 20, 10, kNever, 0, 0, 41}),
    [](const auto& info) { return info.param.name; });

TEST(ClassifyRecordForPeriod, WorksOutTheExampleOfThreePeriods) {
    ComparableFacts facts = ActiveListing();
    facts.origListDate = Day(2009, 11, 1);
    facts.currListDate = Day(2009, 11, 1);
    facts.saleDate = Day(2010, 2, 15);
    facts.salePrice = 240000;
    EXPECT_EQ(Classify(facts, 0), (PeriodEntry{Family::Listing, 59, 249900, 0}));
    EXPECT_EQ(Classify(facts, 1), (PeriodEntry{Family::Sale, 107, 240000, 249900}));
    EXPECT_EQ(Classify(facts, 2), PeriodEntry{});
}

TEST(ClassifyRecordForPeriod, TakesTheCurrentListPriceOfASaleWhateverItsDate) {
    ComparableFacts facts = ActiveListing();
    facts.saleDate = Effective() - 30;
    facts.currListDate = Effective() - 10;
    facts.salePrice = 240000;
    EXPECT_EQ(Classify(facts, 2), (PeriodEntry{Family::Sale, 371, 240000, 249900}));
    facts.currListPrice = 0;
    EXPECT_EQ(Classify(facts, 2), (PeriodEntry{Family::Sale, 371, 240000, 0}));
}

TEST(ClassifyRecordForPeriod, TakesItsDaysFromTheTextAndItsPricesFromTheEffectiveDate) {
    // The price was cut 300 days before the date of the text, which is 400 days before the effective date.
    ComparableFacts facts = ActiveListing();
    facts.currListDate = Effective() - 300;
    const PresentDates present = PresentIn(2010);
    const PeriodEntry same =
        ClassifyRecordForPeriod(facts, RecordStatus::Active, 91, Effective(), Effective(), present);
    EXPECT_EQ(same, (PeriodEntry{Family::Listing, 309, 249900, 0}));
    const PeriodEntry later =
        ClassifyRecordForPeriod(facts, RecordStatus::Active, 91, Effective(), Effective() + 100, present);
    EXPECT_EQ(later, (PeriodEntry{Family::Listing, 309, 259900, 0}));
}

struct PriceCase {
    const char* name;
    int offset;
    int changedDaysBack;
    bool current;  // the current price, else the original one
};

class ListPrice : public testing::TestWithParam<PriceCase> {};

TEST_P(ListPrice, IsTheOneInForceInThePeriod) {
    ComparableFacts facts = ActiveListing();
    facts.currListDate =
        GetParam().changedDaysBack == kNever ? common::kDayZero : Effective() - GetParam().changedDaysBack;
    const Period period = PeriodOfOffset(GetParam().offset, Effective());
    EXPECT_EQ(SelectListPrice(facts, period, Effective(), PresentIn(2010)),
              GetParam().current ? 249900 : 259900);
}

INSTANTIATE_TEST_SUITE_P(
    Changed, ListPrice,
    testing::Values(
        PriceCase{"OnTheEffectiveDate", 0, 0, true}, PriceCase{"AfterTheEffectiveDate", 0, -1, false},
        PriceCase{"OnTheFirstDayOfCurrent3", 0, 90, true}, PriceCase{"BeforeCurrent3", 0, 91, true},
        PriceCase{"AYearAgo", 0, 365, true}, PriceCase{"OverAYearAgo", 0, 366, false},
        PriceCase{"AfterPrior4To6", 91, 90, false}, PriceCase{"OnTheLastDayOfPrior4To6", 91, 91, true},
        PriceCase{"OnTheFirstDayOfPrior4To6", 91, 181, true}, PriceCase{"BeforePrior4To6", 91, 182, true},
        PriceCase{"AYearAgoInPrior4To6", 91, 365, true}, PriceCase{"OverAYearAgoInPrior4To6", 91, 366, false},
        PriceCase{"AfterPrior7To12", 182, 181, false}, PriceCase{"OnTheLastDayOfPrior7To12", 182, 182, true},
        PriceCase{"OnTheFirstDayOfPrior7To12", 182, 365, true},
        PriceCase{"BeforePrior7To12", 182, 366, false}, PriceCase{"Never", 0, kNever, false}),
    [](const auto& info) { return info.param.name; });

TEST(SelectListPrice, TakesADateOfALaterYearThanTheClocksForMissing) {
    ComparableFacts facts = ActiveListing();
    facts.currListDate = Day(2011, 1, 5);
    const Date effective = Day(2011, 2, 1);
    const Period period = PeriodOfOffset(0, effective);
    EXPECT_EQ(SelectListPrice(facts, period, effective, PresentIn(2010)), 259900);
    EXPECT_EQ(SelectListPrice(facts, period, effective, PresentIn(2011)), 249900);
}

TEST(SelectListPrice, TakesAMissingDateForMissingEvenWhereThePeriodsReachDayZero) {
    ComparableFacts facts = ActiveListing();
    facts.currListDate = common::kDayZero;
    const Date effective = Day(1901, 1, 1);  // 365 days after day zero
    EXPECT_EQ(SelectListPrice(facts, PeriodOfOffset(0, effective), effective, PresentIn(2010)), 259900);
}

// The rules once more, told by the day a record was listed and the day it left the market.
PeriodEntry PlainModel(const ComparableFacts& facts, int column) {
    static constexpr int kFirst[] = {365, 181, 90};
    static constexpr int kLast[] = {182, 91, 0};
    const Date first = Effective() - kFirst[column];
    const Date last = Effective() - kLast[column];
    const Date listed = facts.origListDate;
    const Date cut = facts.currListDate;
    const bool cutSeen = cut != 2 && cut >= Effective() - 365 && cut <= last;
    const double price = cutSeen ? facts.currListPrice : facts.origListPrice;
    const bool sold = facts.saleDate != 2;
    const Date left = sold ? facts.saleDate : facts.cancelDate != 2 ? facts.cancelDate : facts.contractDate;
    const auto listing = [&](double days) {
        return PeriodEntry{Family::Listing, static_cast<int>(days), price, 0};
    };
    if (left != 2 && left < first) return {};
    if (left != 2 && left <= last) {
        if (sold) {
            if (left < listed) return {};
            return {Family::Sale, static_cast<int>(left - listed + 1), facts.salePrice, facts.currListPrice};
        }
        return left > listed ? listing(left - listed + 1) : PeriodEntry{};
    }
    if (left == 2 && listed >= first && listed <= last) {
        return listed < last ? listing(last - listed + 1) : PeriodEntry{};
    }
    return listed < last - 1 ? listing(last - listed) : PeriodEntry{};
}

TEST(ClassifyRecordForPeriod, AgreesWithAPlainModelOverManyRecords) {
    std::mt19937 random{1004};
    const auto dayOrNever = [&](int percentPresent) {
        const bool present = static_cast<int>(random() % 100) < percentPresent;
        return present ? Effective() - static_cast<int>(random() % 420) + 20 : common::kDayZero;
    };
    int seen[3] = {};
    for (int i = 0; i < 50000; ++i) {
        ComparableFacts facts;
        facts.origListDate = dayOrNever(98);
        facts.currListDate = dayOrNever(80);
        facts.contractDate = dayOrNever(30);
        facts.cancelDate = dayOrNever(20);
        facts.saleDate = dayOrNever(50);
        facts.origListPrice = static_cast<double>(random() % 900000);
        facts.currListPrice = static_cast<double>(random() % 900000);
        facts.salePrice = static_cast<double>(random() % 900000);
        for (int column = 0; column < 3; ++column) {
            const PeriodEntry entry = Classify(facts, column);
            ASSERT_EQ(entry, PlainModel(facts, column)) << "record " << i << ", column " << column;
            ++seen[static_cast<int>(entry.family)];
        }
    }
    for (const int count : seen)
        EXPECT_GT(count, 1000) << "the records must reach every outcome";
}

}  // namespace
}  // namespace zenvora::analysis
