#include <gtest/gtest.h>

#include "frame/program_fixture.h"

namespace zenvora::frame {
namespace {

using controls::Answer;

/// A Databook of three records: a sound listing, one without a list price (invalid), a sale.
struct CompsPageTest : ProgramTest {
    CompsPageTest() {
        path = MakeDatabook("HOUSES.MDB",
                            {{.key = "1 ELM ST"},
                             {.key = "2 OAK ST", .origListPrice = 0},
                             {.key = "3 O'BRIEN ST", .saleDate = "5/1/2010", .salePrice = 240000}});
        StartWith(path);
    }
    std::filesystem::path path;
};

using Rows = std::vector<std::string>;

// ---- the grid ----

TEST_F(CompsPageTest, TheGridHasItsTenColumns) {
    std::vector<std::string> captions;
    std::vector<int> widths;
    for (const controls::GridColumn& column : Main().tdbgData.Columns()) {
        captions.push_back(column.caption);
        widths.push_back(column.width);
    }
    EXPECT_EQ(captions, (Rows{"", "Address", "Orig List Dt", "Orig List $", "Curr List Dt", "Curr List $",
                              "Cont Dt", "List Canc Dt", "Sale Dt", "Sale $"}));
    EXPECT_EQ(widths, (std::vector<int>{355, 2295, 975, 975, 975, 975, 975, 975, 975, 975}));
    EXPECT_TRUE(Main().tdbgData.Columns()[0].pictures);
}

TEST_F(CompsPageTest, TheGridShowsTheRecordsWithTheirFlagsAndBlanksForWhatIsMissing) {
    Rows listing;
    Rows sale;
    for (int column = 0; column < 10; ++column) {
        listing.push_back(Cell(0, column));
        sale.push_back(Cell(2, column));
    }
    // The run at opening has filled the missing current list values from the original ones.
    EXPECT_EQ(listing,
              (Rows{"check", "1 ELM ST", "3/1/2010", "250000", "3/1/2010", "250000", "", "", "", ""}));
    EXPECT_EQ(sale, (Rows{"check", "3 O'BRIEN ST", "3/1/2010", "250000", "3/1/2010", "250000", "", "",
                          "5/1/2010", "240000"}));
    EXPECT_EQ(Cell(1, 0), "cross");
    EXPECT_EQ(Cell(1, 3), "");
}

TEST_F(CompsPageTest, AnExcludedRecordShowsNoPicture) {
    DblClickCell(0, 0);
    EXPECT_EQ(Main().tdbgData.Value(0, 0), "2");
    EXPECT_EQ(Cell(0, 0), "");
    DblClickCell(0, 0);
    EXPECT_EQ(Main().tdbgData.Value(0, 0), "3");
    EXPECT_EQ(Cell(0, 0), "check");
}

TEST_F(CompsPageTest, TheCaptionOfThePageCountsValidAndAllRecords) {
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  2/3");
}

TEST_F(CompsPageTest, TheExplanationFollowsTheCurrentRecord) {
    EXPECT_EQ(Text("lblExplanation"), "");
    ClickCell(1, 1);
    EXPECT_NE(Text("lblExplanation"), "");
    ClickCell(2, 1);
    EXPECT_EQ(Text("lblExplanation"), "");
}

TEST_F(CompsPageTest, AClickTakesTheKeyIntoTheKeyBox) {
    ClickCell(2, 4);
    EXPECT_EQ(Text("txtCentralKey"), "3 O'BRIEN ST");
    EXPECT_EQ(Main().CurrentKey, "3 O'BRIEN ST");
    EXPECT_TRUE(Enabled("cmdEdit"));
    EXPECT_TRUE(Enabled("cmdDelete"));
    EXPECT_FALSE(Enabled("cmdAdd"));
    EXPECT_EQ(Main().adoDatabook.Recordset().Position(), 2);
}

TEST_F(CompsPageTest, MovingWithTheKeyboardTakesTheKeyToo) {
    User([&] { Main().tdbgData.MoveTo(1, 1); });
    EXPECT_EQ(Text("txtCentralKey"), "2 OAK ST");
    User([&] { Main().tdbgData.MoveTo(2, 1); });
    EXPECT_EQ(Text("txtCentralKey"), "3 O'BRIEN ST");
}

TEST_F(CompsPageTest, AClickOnTheSameRowTakesTheKeyBack) {
    ClickCell(2, 1);
    Type("txtCentralKey", "");
    User([&] { Main().tdbgData.Click(); });
    EXPECT_EQ(Text("txtCentralKey"), "3 O'BRIEN ST");
}

// ---- the key box ----

TEST_F(CompsPageTest, WithAnEmptyKeyBoxAllThreeButtonsAreOffThoughRecordsExist) {
    EXPECT_EQ(Text("txtCentralKey"), "");
    for (const char* button : {"cmdAdd", "cmdEdit", "cmdDelete"})
        EXPECT_FALSE(Enabled(button)) << button;
}

TEST_F(CompsPageTest, AKeyThatIsFoundMovesTheGridThere) {
    Type("txtCentralKey", "  3 o'brien st ");
    EXPECT_EQ(Main().CurrentKey, "3 O'BRIEN ST");
    EXPECT_EQ(Main().tdbgData.Row(), 2);
    EXPECT_FALSE(Enabled("cmdAdd"));
    EXPECT_TRUE(Enabled("cmdEdit"));
    EXPECT_TRUE(Enabled("cmdDelete"));
    EXPECT_EQ(Text("txtCentralKey"), "  3 o'brien st ");
}

TEST_F(CompsPageTest, AKeyThatIsInNoRecordMovesNothingAndCanBeAdded) {
    ClickCell(1, 1);
    const std::string explanation = Text("lblExplanation");
    Type("txtCentralKey", "99 NEW ST");
    EXPECT_EQ(Main().tdbgData.Row(), 1);
    EXPECT_EQ(Main().adoDatabook.Recordset().Position(), 1);
    EXPECT_EQ(Text("lblExplanation"), explanation);
    EXPECT_TRUE(Enabled("cmdAdd"));
    EXPECT_FALSE(Enabled("cmdEdit"));
    EXPECT_FALSE(Enabled("cmdDelete"));
}

TEST_F(CompsPageTest, AKeyInAnEmptyDatabookCanBeAdded) {
    desktop->ExpectFile((folder / "NEW.MDB").string());
    Press("mnuFileItem", 1);
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  0/0");
    EXPECT_FALSE(Enabled("cmdTransferAudit"));
    Type("txtCentralKey", "1 ELM ST");
    EXPECT_TRUE(Enabled("cmdAdd"));
    EXPECT_FALSE(Enabled("cmdEdit"));
    EXPECT_EQ(Text("lblExplanation"), "");
}

// ---- excluding and including ----

TEST_F(CompsPageTest, ADoubleClickOnTheFlagExcludesAndIncludes) {
    DblClickCell(2, 0);
    EXPECT_EQ(StoredFlags(path), (Rows{"1 ELM ST 1", "2 OAK ST 0", "3 O'BRIEN ST 2"}));
    EXPECT_EQ(Main().tdbgData.Row(), 2);
    DblClickCell(2, 0);
    EXPECT_EQ(StoredFlags(path)[2], "3 O'BRIEN ST 3");
    DblClickCell(2, 0);
    EXPECT_EQ(StoredFlags(path)[2], "3 O'BRIEN ST 2");
}

TEST_F(CompsPageTest, ADoubleClickOnTheCrossChangesNothingButOpensTheViewsAnew) {
    ClickCell(1, 0);
    const unsigned generation = Main().adoDatabook.Generation();
    User([&] { Main().tdbgData.DblClick(); });
    EXPECT_EQ(StoredFlags(path)[1], "2 OAK ST 0");
    EXPECT_GT(Main().adoDatabook.Generation(), generation);
    EXPECT_EQ(Main().tdbgData.Row(), 1);
}

TEST_F(CompsPageTest, AnExclusionLastsOverALaterRun) {
    DblClickCell(0, 0);
    Type("txtBaseDate", "6/15/2010");
    EXPECT_EQ(StoredFlags(path)[0], "1 ELM ST 2");
}

TEST_F(CompsPageTest, WithoutRecordsADoubleClickDoesNothing) {
    desktop->ExpectFile((folder / "NEW.MDB").string());
    Press("mnuFileItem", 1);
    const unsigned generation = Main().adoDatabook.Generation();
    User([&] { Main().tdbgData.DblClick(); });
    EXPECT_EQ(Main().adoDatabook.Generation(), generation);
}

// ---- the date ----

TEST_F(CompsPageTest, AYearOfFewerThanFourDigitsPaintsTheBoxRedAndTheFourthStartsARun) {
    EXPECT_EQ(Main().txtBaseDate.BackColor(), 0xFFFFFFU);
    for (const char* text : {"", "4", "4/1/2", "4/1/20", "4/1/201", "2/30/2010", "never"}) {
        Type("txtBaseDate", text);
        EXPECT_EQ(Main().txtBaseDate.BackColor(), 0xFFC0C0U) << text;
        EXPECT_EQ(Main().EffectiveDate, kToday) << text;
        EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  2/3") << text;
    }
    // As of 4/1/2010 the sale of 5/1/2010 lies ahead: it is not in order.
    Type("txtBaseDate", "4/1/2010");
    EXPECT_EQ(Main().txtBaseDate.BackColor(), 0xFFFFFFU);
    EXPECT_EQ(Main().EffectiveDate, text::DayNumber(2010, 4, 1));
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  1/3");
    EXPECT_EQ(Cell(2, 0), "cross");
    EXPECT_EQ(StoredFlags(path)[2], "3 O'BRIEN ST 0");
}

TEST_F(CompsPageTest, TheExplanationFollowsTheDateToo) {
    ClickCell(2, 1);
    EXPECT_EQ(Text("lblExplanation"), "");
    Type("txtBaseDate", "4/1/2010");
    EXPECT_NE(Text("lblExplanation"), "");
    EXPECT_EQ(Main().tdbgData.Row(), 2);
}

TEST_F(CompsPageTest, LeavingTheDateBoxRewritesItsDate) {
    User([&] { Main().txtBaseDate.SetFocus(); });
    Type("txtBaseDate", "05/04/2010");
    User([&] { Main().cmdExit2.SetFocus(); });
    EXPECT_EQ(Text("txtBaseDate"), "5/4/2010");
    User([&] { Main().txtBaseDate.SetFocus(); });
    Type("txtBaseDate", "5/4/");
    User([&] { Main().cmdExit2.SetFocus(); });
    EXPECT_EQ(Text("txtBaseDate"), "5/4/");
}

TEST_F(CompsPageTest, TheComboBoxHandsItsDateToTheDateBox) {
    Type("txtBaseDate", "4/1/2010");
    User([&] { Main().cboBaseDate.Pick(0); });
    EXPECT_EQ(Text("txtBaseDate"), "6/30/2010");
    User([&] { Main().cboBaseDate.SetText("5/4/2010"); });
    EXPECT_EQ(Text("txtBaseDate"), "5/4/2010");
    User([&] { Main().cboBaseDate.SetText("5/4"); });
    EXPECT_EQ(Text("txtBaseDate"), "5/4/2010");
    // Picking the same entry again counts as well.
    User([&] { Main().cboBaseDate.Pick(0); });
    Type("txtBaseDate", "4/1/2010");
    User([&] { Main().cboBaseDate.Pick(0); });
    EXPECT_EQ(Text("txtBaseDate"), "6/30/2010");
}

TEST_F(CompsPageTest, TheParkedButtonSetsTheLastDayOf2008) {
    Press("Command2");
    EXPECT_EQ(Text("txtBaseDate"), "12/31/2008");
    EXPECT_EQ(Main().EffectiveDate, text::DayNumber(2008, 12, 31));
}

// ---- large Databooks ----

struct LargeDatabookTest : ProgramTest {
    LargeDatabookTest() {
        path = MakeLargeDatabook("LARGE.MDB", 600);
        desktop->ExpectAny();
        StartWith(path);
        desktop->messages.clear();
    }
    std::filesystem::path path;
};

TEST_F(LargeDatabookTest, TheRunIsMadeWhenTheWarningIsConfirmed) {
    desktop->Expect("It will take approximately 6 seconds to check the database. Do you wish to continue?",
                    Answer::Yes);
    Press("cmdChkValidity");
    EXPECT_EQ(desktop->messages[0].title, "Warning - Large Database Detected");
    EXPECT_EQ(desktop->messages[0].icon, controls::Icon::Exclamation);
    EXPECT_EQ(desktop->messages[0].buttons, controls::Buttons::YesNoCancel);
    EXPECT_TRUE(Main().tdgViewer.TabEnabled(1));
    EXPECT_FALSE(Visible("cmdChkValidity"));
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  600/600");
    EXPECT_FALSE(desktop->hourglass);
    EXPECT_GT(desktop->hourglassChanges, 0);
    EXPECT_EQ(desktop->lastDone, 600);
    EXPECT_EQ(desktop->lastTotal, 600);
}

TEST_F(LargeDatabookTest, ARefusedWarningLeavesEverythingAsItIs) {
    for (const Answer answer : {Answer::No, Answer::Cancel}) {
        desktop->ExpectAny(answer);
        Press("cmdChkValidity");
        EXPECT_FALSE(Main().tdgViewer.TabEnabled(1));
        EXPECT_TRUE(Visible("cmdChkValidity"));
        EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings");
    }
}

TEST_F(LargeDatabookTest, CalculateDoesNothingBeforeTheRun) {
    Press("txtCalculate");
    EXPECT_EQ(Main().tdgViewer.Tab(), 0);
}

TEST_F(LargeDatabookTest, ADateTypedStartsARunWithoutAWarning) {
    Type("txtBaseDate", "6/15/2010");
    EXPECT_TRUE(desktop->messages.empty());
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  600/600");
    EXPECT_FALSE(Main().tdgViewer.TabEnabled(1));
    EXPECT_TRUE(Visible("cmdChkValidity"));
}

TEST_F(LargeDatabookTest, AHiddenCheckButtonCannotBePressed) {
    desktop->ExpectFile(MakeDatabook("SMALL.MDB", {}).string());
    Press("mnuFileItem", 2);
    EXPECT_FALSE(Visible("cmdChkValidity"));
    EXPECT_TRUE(Main().tdgViewer.TabEnabled(1));
    Press("cmdChkValidity");
    EXPECT_TRUE(desktop->messages.empty());
}

TEST_F(LargeDatabookTest, ARunInTheModeOfTheRefreshMenuTakesChoicesBack) {
    DblClickCell(0, 0);
    EXPECT_EQ(StoredFlags(path)[0], "00001 MAIN ST 2");
    User([&] { Main().mnuRefreshItem[2].Click(); });
    EXPECT_EQ(StoredFlags(path)[0], "00001 MAIN ST 1");
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  600/600");
}

}  // namespace
}  // namespace zenvora::frame
