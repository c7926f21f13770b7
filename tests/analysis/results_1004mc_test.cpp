#include "analysis/results_1004mc.h"

#include <gtest/gtest.h>

#include "platform/fault.h"

namespace zenvora::analysis {
namespace {

struct Case {
    const char* name;
    int column;
    const char* sales;
    const char* listings;
    const char* rate;
    const char* supply;
};

class Counts : public testing::TestWithParam<Case> {};

TEST_P(Counts, GiveRateAndSupply) {
    const Case& of = GetParam();
    Results1004MC results;
    results.txtTotalL[of.column].SetText(of.listings);
    results.txtTotalC[of.column].SetText(of.sales);
    EXPECT_EQ(results.txtAveCPrice[of.column].Text(), of.rate);
    EXPECT_EQ(results.txtTotalPerAveCPrice[of.column].Text(), of.supply);
}

INSTANTIATE_TEST_SUITE_P(Form, Counts,
                         testing::Values(Case{"OneSaleInSixMonths", 0, "1", "0", "0.17", "0.00"},
                                         Case{"OneSaleInThreeMonths", 1, "1", "0", "0.33", "0.00"},
                                         Case{"OneSaleInTheCurrentMonths", 2, "1", "0", "0.33", "0.00"},
                                         Case{"NoSalesButListings", 2, "0", "5", "0.00", "0.00"},
                                         Case{"SalesButNoListings", 0, "6", "0", "1.00", "0.00"},
                                         // 20 / 3.33 = 6.006, and not 20 / (10 / 3) = 6.00
                                         Case{"SupplyGoesByTheDisplayedRate", 2, "10", "20", "3.33", "6.01"},
                                         // 5 / 0.17 = 29.4118
                                         Case{"SmallDisplayedRate", 0, "1", "5", "0.17", "29.41"},
                                         Case{"SixSalesAndEighteenListings", 1, "6", "18", "2.00", "9.00"},
                                         // 40000 / 6 = 6666.67; 50000 / 6666.67 = 7.5
                                         Case{"ManySales", 0, "40000", "50000", "6666.67", "7.50"},
                                         Case{"LeadingNumberCounts", 1, "3 sales", "6 listings", "1.00",
                                              "6.00"},
                                         Case{"EmptyListingsAreNone", 1, "3", "", "1.00", "0.00"}),
                         [](const auto& info) { return info.param.name; });

TEST(Results1004MC, AChangeOfListingsAloneWorksOutRateAndSupply) {
    Results1004MC results;
    results.txtTotalC[2].SetText("10");
    results.txtAveCPrice[2].SetText("overwritten");
    results.txtTotalL[2].SetText("20");
    EXPECT_EQ(results.txtAveCPrice[2].Text(), "3.33");
    EXPECT_EQ(results.txtTotalPerAveCPrice[2].Text(), "6.01");
}

TEST(Results1004MC, TheSameCountAgainWorksOutNothing) {
    Results1004MC results;
    results.txtTotalC[1].SetText("6");
    results.txtAveCPrice[1].SetText("overwritten");
    results.txtTotalC[1].SetText("6");
    EXPECT_EQ(results.txtAveCPrice[1].Text(), "overwritten");
}

TEST(Results1004MC, APeriodDoesNotTouchTheOthers) {
    Results1004MC results;
    results.txtTotalC[1].SetText("6");
    EXPECT_EQ(results.txtAveCPrice[0].Text(), "");
    EXPECT_EQ(results.txtAveCPrice[2].Text(), "");
}

TEST(Results1004MC, GivesItsRowsByName) {
    Results1004MC results;
    ASSERT_EQ(kResultRows.size(), 9U);
    for (const ResultRow& row : kResultRows) {
        EXPECT_EQ(results.Row(row.name).Name(), row.name);
        EXPECT_EQ(results.Row(row.name).Count(), 3);
        EXPECT_EQ(results.Row(row.name)[0].BackColor(), 0xFFFFC0U);
    }
    results.Row("txtMedianLPDivSP")[1].SetText(".97");
    EXPECT_EQ(results.txtMedianLPDivSP[1].Text(), ".97");
    EXPECT_THROW(static_cast<void>(results.Row("txtTotal")), Fault);
}

TEST(Results1004MC, StandsInTheOrderOfTheForm) {
    EXPECT_EQ(kResultRows[0].name, "txtTotalC");
    EXPECT_EQ(kResultRows[0].caption, "Total # of Comparable Sales (Settled)");
    EXPECT_EQ(kResultRows[3].name, "txtTotalPerAveCPrice");
    EXPECT_EQ(kResultRows[3].frame, "Inventory Analysis");
    EXPECT_EQ(kResultRows[4].name, "txtMedianCPrice");
    EXPECT_EQ(kResultRows[4].frame, "Median Sale && List Price, DOM, Sale / List %");
    EXPECT_EQ(kResultRows[8].name, "txtMedianLPDivSP");
    EXPECT_EQ(kResultRows[8].caption, "Median Sale Price as % of List Price");
}

}  // namespace
}  // namespace zenvora::analysis
