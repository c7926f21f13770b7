#include <gtest/gtest.h>

#include "databook/selection.h"
#include "frame/frm_splash1.h"
#include "frame/program_fixture.h"
#include "platform/text/utf8.h"
#include "support/old_databook.h"

namespace zenvora::frame {
namespace {

using controls::Form;

struct StartTest : ProgramTest {};

const auto kGo = [](Form& form) { PressOn(form, "cmdOK"); };

TEST_F(StartTest, ClosingTheStartDialogEndsTheProgramSilently) {
    desktop->ExpectForm("frmSplash1");  // left open: its close box
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_FALSE(started);
    EXPECT_TRUE(desktop->ended);
    EXPECT_TRUE(desktop->messages.empty());
    EXPECT_TRUE(desktop->dialogs.empty());
    EXPECT_EQ(program->ExitStatus(), 0);
}

TEST_F(StartTest, GoAsksForAFileAndTheMainWindowComesUpWithIt) {
    StartWith(MakeDatabook("HOUSES.MDB", {{.key = "1 ELM ST"}, {.key = "2 OAK ST"}}));
    EXPECT_TRUE(started);
    EXPECT_EQ(desktop->shown, (std::vector<std::string>{"frmSplash1", "frmMain"}));
    ASSERT_EQ(desktop->dialogs.size(), 1U);
    EXPECT_EQ(desktop->dialogs[0].title, "Open Database");
    EXPECT_EQ(desktop->dialogs[0].filter,
              "CSV & TXT (*.csv; *.txt)|*.csv;*.txt|XML (*.xml)|*.xml|Access Files (*.mdb)|*.mdb");
    EXPECT_EQ(desktop->dialogs[0].directory, (driveC / "ZVR").string());
    EXPECT_EQ(desktop->dialogs[0].fileName, "ZVR");
    EXPECT_EQ(Main().tdbgData.RowCount(), 2);
    EXPECT_TRUE(Main().open.DatabookChosen);
    EXPECT_EQ(Main().open.OpenMode, 1);
    EXPECT_EQ(Main().tdgViewer.Tab(), 0);
}

TEST_F(StartTest, TheTitleNamesVersionAndDatabookInCapitals) {
    const auto path = MakeDatabook("houses.mdb", {});
    StartWith(path);
    const std::string title = Main().Caption();
    EXPECT_EQ(title.substr(0, 18), "Zenvora - Version ");
    const std::string source = text::Upper(files::DriveMap::TextPath(path));
    EXPECT_EQ(title.substr(title.find("   [")), "   [Data Source: " + source + "]");
}

TEST_F(StartTest, SlashVShowsTheStatisticsWindowBesideTheStartDialog) {
    NewRun("/v");
    desktop->ExpectForm("frmDataViewer");
    desktop->ExpectForm("frmSplash1");
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_EQ(desktop->shown, (std::vector<std::string>{"frmDataViewer", "frmSplash1", "frmMain"}));
}

TEST_F(StartTest, SlashVElsewhereOnTheCommandLineDoesNothing) {
    NewRun("X /V");
    desktop->ExpectForm("frmSplash1");
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_EQ(desktop->shown.front(), "frmSplash1");
}

TEST_F(StartTest, AFileOnTheCommandLineRunsTheOpenFlowAndTheProgramThenCloses) {
    const auto path = MakeDatabook("FILE.MDB", {{.key = "1 ELM ST"}});
    for (const std::string form : {"/F", "/F "}) {
        SCOPED_TRACE(form);
        NewRun(form + files::DriveMap::TextPath(path) + " and more");
        desktop->ExpectFile("");
        desktop->ExpectForm("frmMain");
        Start();
        EXPECT_FALSE(started);
        ASSERT_EQ(desktop->dialogs.size(), 1U);
        EXPECT_EQ(desktop->dialogs[0].fileName, "FILE");
        EXPECT_TRUE(desktop->ended);
        EXPECT_EQ(program->ExitStatus(), 0);
        EXPECT_EQ(Stored("DIRECTORIES", "CURRDATABOOK"), "FILE.MDB");
    }
}

TEST_F(StartTest, APathOfTheHostBehindSlashFIsFoundToo) {
    const auto path = MakeDatabook("FILE.MDB", {});
    NewRun("/F " + path.string());
    desktop->ExpectFile("");
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_EQ(Stored("DIRECTORIES", "CURRDATABOOK"), "FILE.MDB");
}

TEST_F(StartTest, AFileOnTheCommandLineThatIsNotThereLeadsToTheStartDialog) {
    for (const char* line : {"/F Z:\\NO\\SUCH.MDB", "/F Q:\\NO\\SUCH.MDB", "/F", "/F   ", "FILE.MDB"}) {
        SCOPED_TRACE(line);
        NewRun(line);
        desktop->ExpectForm("frmSplash1");
        desktop->ExpectForm("frmMain");
        Start();
        EXPECT_EQ(desktop->shown.front(), "frmSplash1");
    }
}

TEST_F(StartTest, AnEarlierCopyAtItsStartDialogEndsThisOne) {
    machine.earlierInstance = true;
    machine.otherWindows = {"Select File to Calculate"};
    desktop->Expect(
        "The current application is already running in memory.  If the application is not visible, "
        "please end the existing process in the Windows Task Manager.");
    Start();
    EXPECT_FALSE(started);
    EXPECT_TRUE(desktop->ended);
    EXPECT_TRUE(desktop->shown.empty());
    EXPECT_EQ(desktop->messages[0].title, "Program Already Running in Memory");
}

TEST_F(StartTest, AnEarlierCopyPastItsStartDialogDoesNot) {
    machine.earlierInstance = true;
    machine.otherWindows = {"Zenvora - Version 3.0.54"};
    StartWith(MakeDatabook("A.MDB", {}));
    EXPECT_TRUE(started);
}

TEST_F(StartTest, TheStartDialogIsAnnouncedAsLongAsItShows) {
    desktop->ExpectForm("frmSplash1", [&](Form& form) {
        EXPECT_TRUE(machine.FindWindow("Select File to Calculate"));
        PressOn(form, "cmdOK");
    });
    desktop->ExpectFile(MakeDatabook("A.MDB", {}).string());
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_FALSE(machine.FindWindow("Select File to Calculate"));
}

TEST_F(StartTest, TheParkedButtonsOfTheStartDialogCloseItWithoutADatabook) {
    const std::vector<std::string> choices{"D", "C", "N"};
    for (int index = 0; index < 3; ++index) {
        SCOPED_TRACE(index);
        const auto databook = MakeDatabook("LAST" + std::to_string(index) + ".MDB", {});
        LastOpened(databook);
        NewRun();
        desktop->ExpectForm("frmSplash1", [&](Form& form) { PressOn(form, "cmdOpenType", index); });
        if (index > 0) desktop->ExpectFile("");
        if (index == 2) {
            desktop->ExpectForm("frmOverwrite", [](Form& form) { PressOn(form, "cmdExit", 0); });
        }
        desktop->ExpectForm("frmMain");
        Start();
        EXPECT_FALSE(started);
        EXPECT_FALSE(Main().open.DatabookChosen);
        EXPECT_EQ(Main().open.OpenChoice, choices[static_cast<std::size_t>(index)]);
        EXPECT_EQ(Main().open.OpenMode, index);
    }
}

TEST_F(StartTest, AnAnswerOfAnEarlierAttemptIsForgottenWithTheStartDialogThatFollows) {
    const auto path = MakeDatabook("A.MDB", {{.key = "1 ELM ST"}});
    desktop->ExpectForm("frmSplash1", [](Form& form) { PressOn(form, "cmdOpenType", 2); });
    desktop->ExpectFile(path.string());
    // Ask again, and then a file that cannot be made.
    desktop->ExpectForm("frmOverwrite", [](Form& form) { PressOn(form, "cmdExit", 2); });
    desktop->ExpectFile((folder / "none/B.MDB").string());
    desktop->ExpectAny();
    desktop->ExpectForm("frmSplash1");  // its close box
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_FALSE(started);
    EXPECT_TRUE(desktop->ended);
}

TEST_F(StartTest, TheStartDialogWritesItsTagOnClosing) {
    desktop->ExpectForm("frmSplash1",
                        [](Form& form) { ControlOf<controls::CheckBox>(form, "chkDontShow").SetValue(1); });
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_EQ(Stored("CONFIG", "SPLASH1"), "1");
    EXPECT_NE(Stored("FORMS", "FRMSPLASH1TOP"), "(none)");
    // It is never read back: the dialog appears all the same.
    NewRun();
    desktop->ExpectForm("frmSplash1", [](Form& form) {
        EXPECT_EQ(ControlOf<controls::CheckBox>(form, "chkDontShow").Value(), 0);
    });
    desktop->ExpectForm("frmMain");
    Start();
}

TEST_F(StartTest, F1AndTheLabelsOpenTheHelpFileWhenItIsThere) {
    driveC.Write("ZVR/ZVR.CHM", "help");
    desktop->ExpectForm("frmSplash1", [&](Form& form) {
        form.Help();
        PressOn(form, "Label1");
        PressOn(form, "lblHelpLink");
    });
    desktop->ExpectForm("frmMain");
    Start();
    ASSERT_EQ(machine.requests.size(), 3U);
    EXPECT_EQ(machine.requests[0].verb, "open");
    EXPECT_EQ(machine.requests[0].file, (driveC / "ZVR/ZVR.CHM").string());
}

TEST_F(StartTest, AMissingHelpFileDoesNothingFromTheStartDialog) {
    desktop->ExpectForm("frmSplash1", [&](Form& form) { form.Help(); });
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_TRUE(machine.requests.empty());
    EXPECT_TRUE(desktop->messages.empty());
}

TEST_F(StartTest, WithoutAPrinterBothPrintButtonsAreOff) {
    StartWith(MakeDatabook("A.MDB", {{.key = "1 ELM ST"}}));
    EXPECT_FALSE(Enabled("cmdPrintAudit"));
    EXPECT_FALSE(Enabled("cmdPrintCalc"));
    EXPECT_EQ(Main().tdbgData.RowCount(), 1);
}

TEST_F(StartTest, TheTemplateAndTheCommentsFileGetTheListingColumnsWithoutAWord) {
    std::filesystem::remove(driveC / "ZVR/NEWDATA.MDB");
    testing_support::MakeOldDatabook(driveC / "ZVR/NEWDATA.MDB", {});
    testing_support::MakeOldDatabook(driveC / "ZVR/DATA/COMMENTS.MDB", {});
    StartWith(folder / "NEW.MDB");
    EXPECT_TRUE(started);
    EXPECT_TRUE(desktop->messages.empty());
    for (const char* file : {"ZVR/NEWDATA.MDB", "ZVR/DATA/COMMENTS.MDB"}) {
        ado::Adodc control(databooks, clock);
        control.Connectionstring = databook::OneShotConnectionString((driveC / file).string());
        databook::AdoSelect(control, "COMPS", "*", "");
        EXPECT_GE(control.Recordset().FieldIndex("LISTCANCELDATE"), 0) << file;
    }
}

TEST_F(StartTest, TheDateIsTodayWithoutAReport) {
    StartWith(MakeDatabook("A.MDB", {}));
    EXPECT_EQ(Text("txtBaseDate"), "6/30/2010");
    EXPECT_EQ(Main().EffectiveDate, kToday);
    EXPECT_EQ(Main().cboBaseDate.ListCount(), 1);
    EXPECT_EQ(Main().cboBaseDate.List(0), "6/30/2010");
}

TEST_F(StartTest, TheDateIsThatOfTheReportWhenItGivesOne) {
    OpenReport("URAR,1004MC", "5/4/2010");
    StartWith(MakeDatabook("A.MDB", {}));
    EXPECT_EQ(Text("txtBaseDate"), "05/04/2010");
    EXPECT_EQ(Main().EffectiveDate, text::DayNumber(2010, 5, 4));
    EXPECT_EQ(Main().cboBaseDate.ListCount(), 2);
    EXPECT_EQ(Main().cboBaseDate.List(1), "05/04/2010");
}

TEST_F(StartTest, AReportWithAWrongDateLeavesToday) {
    OpenReport("URAR,1004MC", "5/4/10");  // no year of four digits
    StartWith(MakeDatabook("A.MDB", {}));
    EXPECT_EQ(Text("txtBaseDate"), "6/30/2010");
    EXPECT_EQ(Main().cboBaseDate.ListCount(), 1);
}

TEST_F(StartTest, TheReportThatIsOpenIsOfferedInTheOpenDialog) {
    OpenReport();
    StartWith(MakeDatabook("A.MDB", {}));
    EXPECT_EQ(desktop->dialogs[0].fileName, "SMITH");
    EXPECT_EQ(Text("txtKrnReportName"), "C:\\KRN\\SMITH.RPT");
    EXPECT_EQ(Text("txtKrnFormList"), "URAR,1004MC");
}

TEST_F(StartTest, ALaunchOfKrnIsOfferedOnceAtTheEndOfTheStartOnlyWhereItIsInstalled) {
    const std::string question =
        "Would you like to launch the program?\nIf yes, please open AND save an Appraisal report.";
    StartWith(MakeDatabook("A.MDB", {}));  // no C:\KRN

    std::filesystem::create_directory(driveC / "KRN");
    NewRun();
    StartWith(folder / "A.MDB");  // a directory does not count

    std::filesystem::remove(driveC / "KRN");
    driveC.Write("KRN", "");
    NewRun();
    desktop->Expect(question, controls::Answer::No);
    StartWith(folder / "A.MDB");
    Press("txtCalculate");
    EXPECT_EQ(desktop->messages.size(), 1U);  // once in a run

    WriteSettings("[DIRECTORIES]\nTABLE=COMPS\n[CONFIG]\nLAUNCHKRN=1\n");
    NewRun();
    StartWith(folder / "A.MDB");
}

TEST_F(StartTest, SettingsThatNameADriveThatIsNotThereDoNotLockTheUserOut) {
    WriteSettings(
        "[DIRECTORIES]\nTABLE=COMPS\nDATADIR=Q:\\DATA\nCURRDATADIR=Q:\\BOOKS\\\n"
        "CURRDATABOOK=OLD.MDB\n");
    desktop->ExpectForm("frmSplash1", [](Form& form) { PressOn(form, "cmdOK"); });
    desktop->ExpectFile("");  // cancelled: the last Databook, which cannot be reached
    desktop->ExpectAny();
    desktop->ExpectForm("frmSplash1", [](Form& form) { PressOn(form, "cmdOK"); });
    desktop->ExpectFile(MakeDatabook("A.MDB", {{.key = "1 ELM ST"}}).string());
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_TRUE(started);
    EXPECT_EQ(desktop->dialogs.at(0).fileName, "OLD");
    EXPECT_NE(desktop->messages.at(0).text.find("There is no drive Q:"), std::string::npos);
    EXPECT_EQ(Main().tdbgData.RowCount(), 1);
}

TEST_F(StartTest, WithAProgramDirectoryThatIsNotThereADatabookCanStillBeOpened) {
    WriteSettings("[DIRECTORIES]\nTABLE=COMPS\nAPPDIR=Q:\\ZVR\n");
    StartWith(MakeDatabook("A.MDB", {{.key = "1 ELM ST"}}));
    EXPECT_TRUE(started);
    EXPECT_TRUE(desktop->messages.empty());
    // A new one needs the template.
    desktop->ExpectFile((folder / "NEW.MDB").string());
    desktop->ExpectAny();
    Press("mnuFileItem", 1);
    EXPECT_EQ(Main().tdbgData.RowCount(), 1);
}

TEST_F(StartTest, AKrnThatHangsDoesNotKeepTheUserFromHisWork) {
    OpenReport();
    link.faults["request"] = fault::kLinkTimeOut;
    StartWith(MakeDatabook("A.MDB", {{.key = "1 ELM ST"}}));
    EXPECT_TRUE(started);
    EXPECT_TRUE(desktop->messages.empty());
    EXPECT_EQ(Text("txtBaseDate"), "6/30/2010");
    EXPECT_FALSE(Enabled("cmdTransfer"));
    // The user who asks for it hears why.
    desktop->ExpectAny();
    Press("mnuRefreshItem", 1);
    EXPECT_TRUE(desktop->messages.at(0).text.starts_with(
        "The appraisal software could not be asked for its report.\n\n"));
    EXPECT_FALSE(desktop->ended);
}

TEST_F(StartTest, ADateThatTheReportDoesNotGiveForAFaultIsToldToTheUserWhoAsks) {
    OpenReport("URAR,1004MC", "5/4/2010");
    StartWith(MakeDatabook("A.MDB", {{.key = "1 ELM ST"}}));
    ASSERT_EQ(Text("txtBaseDate"), "05/04/2010");
    link.faults["request OFFSCRN|11|2"] = fault::kLinkTimeOut;
    desktop->ExpectAny();
    Press("mnuRefreshItem", 1);
    EXPECT_EQ(Text("txtBaseDate"), "6/30/2010");
    EXPECT_TRUE(Enabled("cmdTransfer"));
    EXPECT_TRUE(desktop->messages.at(0).text.starts_with(
        "The appraisal software could not be asked for its report.\n\n"));
    // A report that just has none is no fault.
    link.faults.clear();
    link.values.at("KRN|C:\\KRN\\SMITH.RPT").at("OFFSCRN|11|2").clear();
    Press("mnuRefreshItem", 1);
    EXPECT_EQ(desktop->messages.size(), 1U);
}

TEST_F(StartTest, WithFiveHundredRecordsTheRunIsMadeAtOnce) {
    StartWith(MakeLargeDatabook("A.MDB", 500));
    EXPECT_TRUE(Main().tdgViewer.TabEnabled(1));
    EXPECT_FALSE(Visible("cmdChkValidity"));
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  500/500");
    EXPECT_TRUE(desktop->messages.empty());
}

TEST_F(StartTest, WithOneMoreItIsNotAndTheNoticeComesOnce) {
    const auto path = MakeLargeDatabook("A.MDB", 501);
    desktop->Expect("Please click the 'Check for Validity' button before doing your calculations.");
    StartWith(path);
    EXPECT_FALSE(Main().tdgViewer.TabEnabled(1));
    EXPECT_TRUE(Visible("cmdChkValidity"));
    EXPECT_EQ(desktop->messages[0].title, "Database has more than 500 property records");
    EXPECT_EQ(desktop->messages[0].icon, controls::Icon::Exclamation);
    EXPECT_EQ(StoredFlags(path)[0], "00001 MAIN ST 1");
    User([&] { Main().Activate(); });
    EXPECT_EQ(desktop->messages.size(), 1U);
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings");
}

TEST_F(StartTest, TheNoticeStaysAwayWhenTheSettingIsOff) {
    WriteSettings("[DIRECTORIES]\nTABLE=COMPS\n[CONFIG]\n500REC=0\n");
    StartWith(MakeLargeDatabook("A.MDB", 501));
    EXPECT_TRUE(desktop->messages.empty());
    EXPECT_TRUE(Main().PendingValidityNotice);
}

TEST_F(StartTest, TheWindowStandsInTheUpperLeftCorner) {
    Main().SetPlacement({.left = 400, .top = 300, .width = 12015, .height = 7005});
    StartWith(MakeDatabook("A.MDB", {}));
    EXPECT_EQ(Main().Placement().left, 0);
    EXPECT_EQ(Main().Placement().top, 0);
}

}  // namespace
}  // namespace zenvora::frame
