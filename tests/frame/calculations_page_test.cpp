#include <algorithm>
#include <gtest/gtest.h>

#include "frame/program_fixture.h"
#include "platform/controls/option_button.h"

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
    OpenReport("URAR,1004MC,ICU,");
    Press("txtCalculate");
    EXPECT_TRUE(Enabled("cmdTransfer"));
    EXPECT_TRUE(Enabled("fraTransfer"));
    EXPECT_TRUE(Visible("cmdTransferAudit"));
    EXPECT_TRUE(Enabled("cmdTransferAudit"));
    EXPECT_TRUE(Enabled("cmdTransferCondoCoop"));
    EXPECT_EQ(Text("txtKrnReportName"), "C:\\KRN\\SMITH.RPT");

    Press("cmdBack");
    CloseReport();
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
    OpenReport("URAR", "5/15/2010");
    Press("mnuRefreshItem", 1);
    EXPECT_TRUE(Enabled("cmdTransfer"));
    EXPECT_EQ(Text("txtBaseDate"), "05/15/2010");
    EXPECT_EQ(Main().EffectiveDate, text::DayNumber(2010, 5, 15));
    EXPECT_EQ(Main().cboBaseDate.ListCount(), 2);
    // As of 5/15 the sale of 6/1 is ahead: the run has seen it.
    EXPECT_EQ(Cell(1, 0), "cross");
}

TEST_F(CalculationsPageTest, AReportThatHangsIsAskedForItsDateOnce) {
    OpenReport("URAR", "5/15/2010");
    link.faults["request OFFSCRN|11|2"] = fault::kLinkTimeOut;
    link.steps.clear();
    desktop->ExpectAny();
    Press("mnuRefreshItem", 1);
    EXPECT_EQ(Text("txtBaseDate"), "6/30/2010") << "today";
    EXPECT_EQ(std::count(link.steps.begin(), link.steps.end(), "request OFFSCRN|11|2"), 1);
}

TEST_F(CalculationsPageTest, TheFiguresAreSentAsShownAndTheNoticeSaysSo) {
    OpenReport("URAR,1004MC,ICU,");
    Press("txtCalculate");
    Press("cmdTransfer");
    ASSERT_EQ(link.pokes.size(), 27U);
    EXPECT_EQ(link.pokes[2], (std::pair<std::string, std::string>{"1004MC|16|3", "2"}));
    EXPECT_EQ(link.pokes[14], (std::pair<std::string, std::string>{"1004MC|21|3", "250,000"}));
    EXPECT_TRUE(Visible("lblDataSentMsg"));
    EXPECT_TRUE(Visible("imgDataSentMsg"));
    EXPECT_EQ(Text("lblDataSentMsg"), "Data sent to report");
    EXPECT_EQ(Text("lblTransferStatus"), "All 27 values arrived in the report \"C:\\KRN\\SMITH.RPT\".");
    Press("cmdBack");
    EXPECT_FALSE(Visible("lblDataSentMsg"));
    EXPECT_EQ(Text("lblTransferStatus"), "");

    link.pokes.clear();
    Press("txtCalculate");
    Press("cmdTransferCondoCoop");
    EXPECT_EQ(link.pokes.size(), 12U);
}

TEST_F(CalculationsPageTest, AReportThatHasGoneSinceIsToldInTheStatusLineAlone) {
    OpenReport();
    Press("txtCalculate");
    CloseReport();
    Press("cmdTransfer");
    EXPECT_TRUE(link.pokes.empty());
    EXPECT_FALSE(Visible("lblDataSentMsg"));
    EXPECT_TRUE(desktop->messages.empty());
    EXPECT_EQ(Text("lblTransferStatus"), "No report is open in the appraisal program. Nothing was sent.");
}

TEST_F(CalculationsPageTest, AKrnThatHangsInATransferIsToldAndTheProgramGoesOn) {
    OpenReport();
    Press("txtCalculate");
    link.faults["poke 1004MC|17|1"] = fault::kLinkTimeOut;
    desktop->ExpectAny();
    Press("cmdTransfer");
    EXPECT_EQ(link.pokes.size(), 3U);
    EXPECT_FALSE(Visible("lblDataSentMsg"));
    EXPECT_NE(Text("lblTransferStatus"), "");
    EXPECT_FALSE(desktop->ended);
    EXPECT_FALSE(desktop->hourglass);
}

TEST_F(CalculationsPageTest, TheAuditTrailGoesIntoAnAddendumByItsDialog) {
    OpenReport("URAR,1004MC,TEXT,TEXTB");
    for (const char* form : {"Text", "TextB"}) {
        link.values["KRN|C:\\KRN\\SMITH.RPT"][std::string(form) + "|5|1"] = "";
        link.values["KRN|C:\\KRN\\SMITH.RPT"][std::string(form) + "|10|1"] = "";
    }
    Press("txtCalculate");
    desktop->ExpectForm("frmText", [](controls::Form& form) {
        ControlOf<controls::OptionButton>(form, "optText", 1).Select();
        PressOn(form, "cmdTransfer");
    });
    Press("cmdTransferAudit");
    ASSERT_FALSE(link.pokes.empty());
    EXPECT_EQ(link.pokes.back().first, "TextB|10|1");
    EXPECT_NE(link.pokes.back().second.find("3 FIR ST"), std::string::npos);
    const std::string told = Text("lblTransferStatus");
    EXPECT_NE(told, "");
    // Looked into once more and left: what was told of the transfer stays.
    desktop->ExpectForm("frmText", [](controls::Form& form) { PressOn(form, "cmdExit"); });
    Press("cmdTransferAudit");
    EXPECT_EQ(Text("lblTransferStatus"), told);
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
