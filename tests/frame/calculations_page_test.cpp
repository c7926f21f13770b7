#include <gtest/gtest.h>

#include "frame/program_fixture.h"

namespace zenvora::frame {
namespace {

/// Two sales of the current three months and one listing.
struct CalculationsPageTest : ProgramTest {
    CalculationsPageTest() {
        StartWith(MakeDatabook(
            "HOUSES.MDB",
            {{.key = "1 ELM ST", .origListPrice = 250000, .saleDate = "5/1/2010", .salePrice = 240000},
             {.key = "2 OAK ST", .origListPrice = 260000, .saleDate = "6/1/2010", .salePrice = 260000},
             {.key = "3 FIR ST"}}));
    }
};

TEST_F(CalculationsPageTest, CalculateGoesToThePageAndWorksOutTheFigures) {
    EXPECT_EQ(Text("txtTotalC", 2), "");
    Press("txtCalculate");
    EXPECT_EQ(Main().tdgViewer.Tab(), 1);
    EXPECT_EQ(Text("txtBaseDateT2"), "6/30/2010");
    EXPECT_EQ(Text("txtTotalC", 2), "2");
    EXPECT_EQ(Text("txtAveCPrice", 2), "0.67");
    EXPECT_EQ(Text("txtMedianCPrice", 2), "250,000");
    EXPECT_EQ(Text("txtMedianLPrice", 2), "255000");
    EXPECT_EQ(Text("txtMedianLPDivSP", 2), ".98");
    EXPECT_EQ(Text("txtTotalC", 0), "0");
    EXPECT_EQ(Text("txtMedianLPrice", 0), "");
    EXPECT_EQ(Text("txtMedianLPDivSP", 0), "0");
}

TEST_F(CalculationsPageTest, TheFiguresAreWorkedOutOnEnteringThePageAndNotOnReturning) {
    User([&] { Main().tdgViewer.SetTab(1); });
    EXPECT_EQ(Text("txtTotalC", 2), "2");
    Press("cmdBack");
    EXPECT_EQ(Main().tdgViewer.Tab(), 0);
    DblClickCell(0, 0);
    EXPECT_EQ(Text("txtTotalC", 2), "2");
    Press("txtCalculate");
    EXPECT_EQ(Text("txtTotalC", 2), "1");
}

TEST_F(CalculationsPageTest, TheStatisticsWindowHoldsTheListsOfTheCalculation) {
    Press("txtCalculate");
    const controls::ListControl& sales = Main().viewer.lstData[2];
    ASSERT_EQ(sales.ListCount(), 2);
    EXPECT_EQ(sales.List(0), "240000");
    EXPECT_EQ(sales.List(1), "260000");
}

TEST_F(CalculationsPageTest, TheDateBoxOfThePageOnlyShows) {
    EXPECT_TRUE(Main().txtBaseDateT2.Locked());
    EXPECT_TRUE(Main().results.txtTotalC[0].Locked());
    EXPECT_EQ(Main().results.txtTotalC[0].BackColor(), 0xFFFFC0U);
    Type("txtBaseDate", "5/15/2010");
    Press("txtCalculate");
    EXPECT_EQ(Text("txtBaseDateT2"), "5/15/2010");
    EXPECT_EQ(Text("txtTotalC", 2), "1");
}

TEST_F(CalculationsPageTest, WithARedDateBoxTheLastDateStillGoverns) {
    Type("txtBaseDate", "5/15/");
    Press("txtCalculate");
    EXPECT_EQ(Text("txtBaseDateT2"), "6/30/2010");
}

TEST_F(CalculationsPageTest, AChangeOfThePageHidesTheNotice) {
    Press("txtCalculate");
    Main().lblDataSentMsg.SetVisible(true);
    Main().imgDataSentMsg.SetVisible(true);
    Press("cmdBack");
    EXPECT_FALSE(Visible("lblDataSentMsg"));
    EXPECT_FALSE(Visible("imgDataSentMsg"));
}

TEST_F(CalculationsPageTest, WithoutKrnTheTransferControlsAreOff) {
    EXPECT_FALSE(Enabled("cmdTransfer"));
    EXPECT_FALSE(Enabled("fraTransfer"));
    EXPECT_FALSE(Visible("cmdTransferAudit"));
    EXPECT_TRUE(Visible("cmdTransferCondoCoop"));
    EXPECT_FALSE(Enabled("cmdTransferCondoCoop"));
}

TEST_F(CalculationsPageTest, EnteringThePageLooksForTheReport) {
    link.reachable = true;
    link.forms = "URAR,1004MC,ICU,";
    Press("txtCalculate");
    EXPECT_TRUE(Enabled("cmdTransfer"));
    EXPECT_TRUE(Enabled("fraTransfer"));
    EXPECT_TRUE(Visible("cmdTransferAudit"));
    EXPECT_TRUE(Enabled("cmdTransferAudit"));
    EXPECT_TRUE(Enabled("cmdTransferCondoCoop"));
    EXPECT_EQ(Text("txtKrnReportName"), "C:\\KRN\\SMITH.RPT");

    Press("cmdBack");
    link.reachable = false;
    Press("txtCalculate");
    EXPECT_FALSE(Enabled("cmdTransfer"));
    EXPECT_FALSE(Visible("cmdTransferAudit"));
    // The list of forms stays, and with it the button that goes by it.
    EXPECT_TRUE(Enabled("cmdTransferCondoCoop"));
}

TEST_F(CalculationsPageTest, TheCondoFormsAreKnownByTheirComma) {
    for (const char* list :
         {"ICU,", "ECU,", "ICI,", "ECI,", "NCU,", "NCE,", "ICUFM,", "ECUFM,", "URAR,NCU,X", "  XECU,  "}) {
        Main().txtKrnFormList.SetText(list);
        EXPECT_TRUE(Main().IsCondoForm()) << list;
    }
    for (const char* list : {"", "   ", "ICU", "URAR,1004MC", "icu,", "URAR,ICU"}) {
        Main().txtKrnFormList.SetText(list);
        EXPECT_FALSE(Main().IsCondoForm()) << list;
    }
}

TEST_F(CalculationsPageTest, TheRefreshMenuLooksForTheReportAndTakesItsDate) {
    link.reachable = true;
    link.effectiveDate = "5/15/2010";
    Press("mnuRefreshItem", 1);
    EXPECT_TRUE(Enabled("cmdTransfer"));
    EXPECT_EQ(Text("txtBaseDate"), "05/15/2010");
    EXPECT_EQ(Main().EffectiveDate, text::DayNumber(2010, 5, 15));
    EXPECT_EQ(Main().cboBaseDate.ListCount(), 2);
    // As of 5/15 the sale of 6/1 is ahead: the run has seen it.
    EXPECT_EQ(Cell(1, 0), "cross");
}

TEST_F(CalculationsPageTest, AnEmptyDatabookShowsZeroes) {
    desktop->ExpectFile((folder / "NEW.MDB").string());
    Press("mnuFileItem", 1);
    Press("txtCalculate");
    for (const char* row : {"txtTotalC", "txtTotalL", "txtMedianCPrice", "txtMedianCDOM", "txtMedianLDOM",
                            "txtMedianLPDivSP"}) {
        for (int column = 0; column < 3; ++column)
            EXPECT_EQ(Text(row, column), "0") << row << column;
    }
    EXPECT_EQ(Text("txtAveCPrice", 0), "0.00");
}

}  // namespace
}  // namespace zenvora::frame
