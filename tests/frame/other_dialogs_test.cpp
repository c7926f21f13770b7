// What the main window's buttons and menus bring up, and that the window follows.

#include <gtest/gtest.h>

#include "frame/program_fixture.h"

namespace zenvora::frame {
namespace {

using controls::Answer;
using controls::Form;

struct OtherDialogsTest : ProgramTest {
    OtherDialogsTest() {
        path = MakeDatabook("HOUSES.MDB", {{.key = "1 ELM ST"}, {.key = "2 OAK ST"}, {.key = "3 FIR ST"}});
        StartWith(path);
    }
    std::filesystem::path path;
};

TEST_F(OtherDialogsTest, AddStoresTheRecordShowsTheEditorAndWorksOutTheFigures) {
    Type("txtCentralKey", "9 New St");
    desktop->ExpectForm("frmEdit", [](Form& form) { PressOn(form, "cmdCancel"); });
    Press("cmdAdd");
    EXPECT_EQ(Main().tdbgData.RowCount(), 4);
    EXPECT_EQ(Main().CurrentKey, "9 NEW ST");
    EXPECT_EQ(Main().tdbgData.Row(), 3);
    EXPECT_EQ(Cell(3, 0), "cross");
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  3/4");
    EXPECT_EQ(Text("txtTotalL", 2), "3");
    EXPECT_FALSE(Enabled("cmdAdd"));
    EXPECT_TRUE(Enabled("cmdEdit"));
    EXPECT_NE(Text("lblExplanation"), "");
}

TEST_F(OtherDialogsTest, EditChangesTheRecordOfTheKeyBox) {
    ClickCell(1, 1);
    desktop->ExpectForm("frmEdit", [](Form& form) {
        EXPECT_EQ(ControlOf<controls::TextBox>(form, "txtStreet").Text(), "2 OAK ST");
        ControlOf<controls::TextBox>(form, "txtSaleDate").SetText("6/1/2010");
        ControlOf<controls::TextBox>(form, "txtSellingPr").SetText("255000");
        PressOn(form, "cmdOK");
    });
    Press("cmdEdit");
    EXPECT_EQ(Cell(1, 8), "6/1/2010");
    EXPECT_EQ(Cell(1, 9), "255000");
    EXPECT_EQ(Main().tdbgData.Row(), 1);
    EXPECT_EQ(Text("txtCentralKey"), "2 OAK ST");
}

TEST_F(OtherDialogsTest, ADoubleClickOnAnyOtherColumnEdits) {
    desktop->ExpectForm("frmEdit", [](Form& form) { PressOn(form, "cmdCancel"); });
    DblClickCell(2, 4);
    EXPECT_EQ(StoredFlags(path)[2], "3 FIR ST 1");
}

TEST_F(OtherDialogsTest, ADateChangedInTheEditorReachesTheMainWindow) {
    ClickCell(0, 1);
    desktop->ExpectForm("frmEdit", [](Form& form) {
        ControlOf<controls::TextBox>(form, "txtBaseDate").SetText("6/15/2010");
        PressOn(form, "cmdCancel");
    });
    Press("cmdEdit");
    EXPECT_EQ(Text("txtBaseDate"), "6/15/2010");
    EXPECT_EQ(Main().EffectiveDate, text::DayNumber(2010, 6, 15));
}

TEST_F(OtherDialogsTest, DeleteSelectsTheRecordBehindOrTheOneBefore) {
    ClickCell(1, 1);
    desktop->Expect("Delete '2 OAK ST' Are you sure?", Answer::No);
    Press("cmdDelete");
    EXPECT_EQ(Main().tdbgData.RowCount(), 3);
    desktop->Expect("Delete '2 OAK ST' Are you sure?", Answer::Yes);
    Press("cmdDelete");
    EXPECT_EQ(Main().tdbgData.RowCount(), 2);
    EXPECT_EQ(Text("txtCentralKey"), "3 FIR ST");
    EXPECT_EQ(Main().tdbgData.Row(), 1);
    desktop->ExpectAny(Answer::Yes);
    Press("cmdDelete");
    EXPECT_EQ(Text("txtCentralKey"), "1 ELM ST");
    desktop->ExpectAny(Answer::Yes);
    Press("cmdDelete");
    EXPECT_EQ(Text("txtCentralKey"), "");
    EXPECT_EQ(Main().tdbgData.RowCount(), 0);
    EXPECT_EQ(Text("lblExplanation"), "");
    EXPECT_FALSE(Enabled("cmdTransferAudit"));
}

TEST_F(OtherDialogsTest, TheCalendarSetsTheDateAndTheFocus) {
    desktop->ExpectForm("frmPickDate", [](Form& form) {
        EXPECT_EQ(form.Caption(), "Effective Appraisal Date:");
        PressOn(form, "cmdYesterDay");
        PressOn(form, "cmdOK");
    });
    Press("imaBaseDateCal");
    EXPECT_EQ(Text("txtBaseDate"), "6/29/2010");
    EXPECT_EQ(Main().EffectiveDate, kToday - 1);
    EXPECT_TRUE(Main().txtBaseDate.HasFocus());
}

TEST_F(OtherDialogsTest, TheSetupMenuShowsTheConfigurationAndClosesIt) {
    desktop->ExpectForm("frmConfig", [](Form& form) { PressOn(form, "cmdCancel"); });
    Press("mnuSetupConfig");
    for (const Form* form : Session().forms.Loaded())
        EXPECT_NE(form->Name(), "frmConfig");
}

TEST_F(OtherDialogsTest, AboutIsShownBesideTheMainWindowAndGoesWithIt) {
    desktop->ExpectForm("frmAbout");
    Press("mnuAbout");
    EXPECT_FALSE(desktop->ended);
    Press("cmdExit");
    EXPECT_TRUE(desktop->ended);
    EXPECT_TRUE(Session().forms.Loaded().empty());
}

TEST_F(OtherDialogsTest, HelpThatIsMissingIsToldFromTheMenu) {
    machine.answer = shell::opened::kFileNotFound;
    desktop->Expect("File not found");
    Press("mnuHelp2");
}

TEST_F(OtherDialogsTest, F1OpensTheHelp) {
    driveC.Write("ZVR/zvr.chm", "help");
    User([&] { Main().Help(); });
    ASSERT_EQ(machine.requests.size(), 1U);
    EXPECT_EQ(machine.requests[0].verb, "open");
}

}  // namespace
}  // namespace zenvora::frame
