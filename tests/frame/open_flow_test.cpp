#include <fstream>
#include <gtest/gtest.h>

#include "common/fault_text.h"
#include "frame/frm_overwrite.h"
#include "frame/program_fixture.h"
#include "platform/text/utf8.h"
#include "support/old_databook.h"

namespace zenvora::frame {
namespace {

using controls::Answer;
using controls::Form;
namespace fs = std::filesystem;

struct OpenFlowTest : ProgramTest {
    OpenFlowTest() { std::filesystem::create_directory(folder / "sources"); }

    /// A source of two sales with its map beside it; returns its path.
    fs::path WriteSource(const std::string& name, const std::string& rows) {
        folder.Write("sources/" + name + ".map",
                     "Addr <-> Address\nListed <-> Original Listing Date\nPrice <-> Original Listing Price\n"
                     "Sold <-> Sale Date\nFor <-> Selling Price\n");
        return folder.Write("sources/" + name + ".CSV", "Addr,Listed,Price,Sold,For\n" + rows);
    }
    fs::path WriteSource() {
        return WriteSource(
            "LISTINGS",
            "1 ELM ST,1/5/2010,250000,3/1/2010,240000\n2 OAK ST,2/5/2010,260000,4/1/2010,255000\n");
    }
    [[nodiscard]] std::string CurrentFile() { return Session().settings.currentFile; }
    [[nodiscard]] std::vector<std::string> Keys() {
        std::vector<std::string> keys;
        for (int row = 0; row < Main().tdbgData.RowCount(); ++row)
            keys.push_back(Cell(row, 1));
        return keys;
    }
};

using Names = std::vector<std::string>;

// ---- the start ----

TEST_F(OpenFlowTest, CancellingTheDialogOpensTheLastDatabook) {
    LastOpened(MakeDatabook("LAST.MDB", {{.key = "9 LAST ST"}}));
    NewRun();
    StartWith("");
    EXPECT_TRUE(started);
    EXPECT_EQ(Keys(), Names{"9 LAST ST"});
    EXPECT_EQ(CurrentFile(), "LAST.MDB");
}

TEST_F(OpenFlowTest, CancellingWithoutALastDatabookMakesIt) {
    StartWith("");
    EXPECT_TRUE(started);
    EXPECT_TRUE(fs::exists(driveC / "ZVR/DATA/ZVR.MDB"));
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  0/0");
}

TEST_F(OpenFlowTest, ANameThatIsNotThereMakesABlankDatabookInTheFolderOfTheDialog) {
    StartWith(folder / "Fresh.mdb");
    EXPECT_TRUE(fs::exists(folder / "Fresh.mdb"));
    EXPECT_EQ(CurrentFile(), "FRESH.MDB");
    EXPECT_EQ(Main().tdbgData.RowCount(), 0);
    EXPECT_TRUE(desktop->messages.empty());
}

TEST_F(OpenFlowTest, ANameWithoutAnExtensionMeansADatabook) {
    MakeDatabook("HOUSES.mdb", {{.key = "1 ELM ST"}});
    StartWith(folder / "HOUSES");
    EXPECT_EQ(Keys(), Names{"1 ELM ST"});
    EXPECT_FALSE(fs::exists(folder / "HOUSES"));
}

TEST_F(OpenFlowTest, AnEmptyFileCountsAsMissing) {
    folder.Write("EMPTY.MDB", "");
    StartWith(folder / "EMPTY.MDB");
    EXPECT_TRUE(started);
    EXPECT_GT(fs::file_size(folder / "EMPTY.MDB"), 0U);
}

TEST_F(OpenFlowTest, ASourceBecomesADatabookInTheCurrentDirectoryByTheMapBesideIt) {
    StartWith(WriteSource());
    EXPECT_TRUE(started);
    EXPECT_TRUE(fs::exists(driveC / "ZVR/DATA/LISTINGS.mdb"));
    EXPECT_FALSE(fs::exists(folder / "sources/LISTINGS.mdb"));
    EXPECT_EQ(Keys(), (Names{"1 ELM ST", "2 OAK ST"}));
    EXPECT_EQ(CurrentFile(), "LISTINGS.MDB");
    EXPECT_TRUE(desktop->messages.empty());
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  2/2");
}

TEST_F(OpenFlowTest, TheDatabookOfAnEarlierImportIsReplacedWithoutAQuestionAndKept) {
    fs::copy_file(MakeDatabook("OLD.MDB", {{.key = "9 OLD ST"}}), driveC / "ZVR/DATA/LISTINGS.mdb");
    StartWith(WriteSource());
    EXPECT_EQ(Keys(), (Names{"1 ELM ST", "2 OAK ST"}));
    EXPECT_EQ(StoredFlags(driveC / "ZVR/DATA/LISTINGS.mdb.bak"), Names{"9 OLD ST 1"});
    EXPECT_TRUE(desktop->messages.empty());
    for (const auto& entry : fs::directory_iterator(driveC / "ZVR/DATA"))
        EXPECT_EQ(entry.path().string().find(".part"), std::string::npos) << entry.path();
}

TEST_F(OpenFlowTest, WithoutAMapTheUserIsAskedForOne) {
    const fs::path source = WriteSource();
    fs::rename(folder / "sources/LISTINGS.map", folder / "other.map");
    desktop->ExpectForm("frmSplash1", [](Form& form) { PressOn(form, "cmdOK"); });
    desktop->ExpectFile(source.string());
    desktop->ExpectFile((folder / "other.map").string());
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_EQ(desktop->dialogs.at(1).title, "Load Map");
    EXPECT_EQ(Keys(), (Names{"1 ELM ST", "2 OAK ST"}));
}

TEST_F(OpenFlowTest, RowsThatWereRefusedAreTold) {
    const fs::path source = WriteSource(
        "LISTINGS", "1 ELM ST,1/5/2010,250000,3/1/2010,240000\n1 ELM ST,1/5/2010,250000,3/1/2010,240000\n");
    desktop->ExpectAny();
    StartWith(source);
    EXPECT_EQ(Keys(), Names{"1 ELM ST"});
    const std::string& text = desktop->messages.at(0).text;
    EXPECT_TRUE(text.starts_with("LISTINGS.CSV\n3 rows: 1 written, 2 refused\n")) << text;
    EXPECT_NE(text.find("(row 2)"), std::string::npos) << text;
}

TEST_F(OpenFlowTest, AFaultInASourceChangesNothingAndLeadsBackToTheStartDialog) {
    const fs::path source = WriteSource();
    folder.Write("sources/LISTINGS.map", "Addr <-> Address\nthis is no mapping\n");
    fs::copy_file(MakeDatabook("OLD.MDB", {{.key = "9 OLD ST"}}), driveC / "ZVR/DATA/LISTINGS.mdb");
    desktop->ExpectForm("frmSplash1", [](Form& form) { PressOn(form, "cmdOK"); });
    desktop->ExpectFile(source.string());
    desktop->ExpectAny();
    desktop->ExpectForm("frmSplash1");
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_FALSE(started);
    const std::string& text = desktop->messages.at(0).text;
    EXPECT_TRUE(text.starts_with("The file could not be opened.\n\n")) << text;
    EXPECT_NE(text.find("LISTINGS.map"), std::string::npos) << text;
    EXPECT_NE(text.find("line 2"), std::string::npos) << text;
    EXPECT_NE(text.find("(error 5)"), std::string::npos) << text;
    EXPECT_EQ(StoredFlags(driveC / "ZVR/DATA/LISTINGS.mdb"), Names{"9 OLD ST 1"});
    EXPECT_FALSE(fs::exists(driveC / "ZVR/DATA/LISTINGS.mdb.bak"));
}

TEST_F(OpenFlowTest, AFileThatIsNoDatabookIsToldAndAnotherCanBeChosen) {
    folder.Write("WRONG.MDB", "This is a letter and no Databook.");
    const fs::path good = MakeDatabook("GOOD.MDB", {{.key = "1 ELM ST"}});
    desktop->ExpectForm("frmSplash1", [](Form& form) { PressOn(form, "cmdOK"); });
    desktop->ExpectFile((folder / "WRONG.MDB").string());
    desktop->ExpectAny();
    desktop->ExpectForm("frmSplash1", [](Form& form) { PressOn(form, "cmdOK"); });
    desktop->ExpectFile(good.string());
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_TRUE(started);
    EXPECT_NE(desktop->messages.at(0).text.find("WRONG.MDB"), std::string::npos);
    EXPECT_EQ(folder.Read("WRONG.MDB"), "This is a letter and no Databook.");
    EXPECT_EQ(CurrentFile(), "GOOD.MDB");
}

TEST_F(OpenFlowTest, ADatabookWithoutItsKeyIsToldAndAnotherCanBeChosen) {
    testing_support::MakeOldDatabook(folder / "NOKEY.MDB", {}, {.hasCentralKey = false});
    desktop->ExpectForm("frmSplash1", [](Form& form) { PressOn(form, "cmdOK"); });
    desktop->ExpectFile((folder / "NOKEY.MDB").string());
    desktop->ExpectAny();
    desktop->ExpectForm("frmSplash1");
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_FALSE(started);
    ASSERT_EQ(desktop->messages.size(), 1U);
    EXPECT_NE(desktop->messages[0].text.find("A required field 'CentralKey'"), std::string::npos);
    EXPECT_EQ(Stored("DIRECTORIES", "CURRDATABOOK"), "ZVR.MDB");
}

TEST_F(OpenFlowTest, WithoutTheTemplateANewDatabookAtTheStartEndsTheProgram) {
    fs::remove(driveC / "ZVR/NEWDATA.MDB");
    desktop->ExpectForm("frmSplash1", [](Form& form) { PressOn(form, "cmdOK"); });
    desktop->ExpectFile((folder / "NEW.MDB").string());
    desktop->ExpectAny();
    Start();
    EXPECT_FALSE(started);
    EXPECT_TRUE(desktop->ended);
    EXPECT_EQ(program->ExitStatus(), 1);
    EXPECT_NE(desktop->messages.at(0).text.find("The template for new Databooks is missing"),
              std::string::npos);
}

TEST_F(OpenFlowTest, FoldersThatDifferInCaseAloneAreToldApart) {
    fs::create_directory(folder / "DATA");
    fs::create_directory(folder / "data");
    MakeDatabook("DATA/A.MDB", {{.key = "1 UPPER ST"}});
    StartWith(MakeDatabook("data/A.MDB", {{.key = "2 LOWER ST"}}));
    EXPECT_EQ(Keys(), Names{"2 LOWER ST"});
}

TEST_F(OpenFlowTest, AFolderWithABracketInItsNameIsFound) {
    fs::create_directory(folder / "[2010] comps");
    StartWith(MakeDatabook("[2010] comps/A.MDB", {{.key = "1 ELM ST"}}));
    EXPECT_EQ(Keys(), Names{"1 ELM ST"});
}

// ---- the question about overwriting ----

struct OverwriteTest : OpenFlowTest {
    /// Starts with a blank datafile (the parked button) onto a Databook that is there.
    void StartBlankOnto(const fs::path& path) {
        desktop->ExpectForm("frmSplash1", [](Form& form) { PressOn(form, "cmdOpenType", 2); });
        desktop->ExpectFile(path.string());
    }
};

TEST_F(OverwriteTest, OverwritesWhenTheUserSaysSoAndKeepsTheOldFile) {
    const fs::path path = MakeDatabook("A.MDB", {{.key = "1 ELM ST"}});
    StartBlankOnto(path);
    desktop->ExpectForm("frmOverwrite", [&](Form& form) {
        EXPECT_EQ(ControlOf<controls::TextBox>(form, "txtFileName").Text(), files::DriveMap::TextPath(path));
        EXPECT_EQ(ControlOf<controls::Label>(form, "lblOverwrite").Caption(),
                  "If you choose Overwrite, All the \ndata in the database will be lost!");
        PressOn(form, "cmdExit", 0);
    });
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_EQ(StoredFlags(path), Names{});
    EXPECT_EQ(StoredFlags(folder / "A.MDB.bak"), Names{"1 ELM ST 1"});
}

TEST_F(OverwriteTest, CancelAsksForTheFileAgain) {
    const fs::path path = MakeDatabook("A.MDB", {{.key = "1 ELM ST"}});
    StartBlankOnto(path);
    desktop->ExpectForm("frmOverwrite", [](Form& form) { PressOn(form, "cmdExit", 2); });
    desktop->ExpectFile((folder / "B.MDB").string());
    desktop->ExpectForm("frmMain");
    Start();
    EXPECT_EQ(StoredFlags(path), Names{"1 ELM ST 1"});
    EXPECT_TRUE(fs::exists(folder / "B.MDB"));
}

TEST_F(OverwriteTest, ExitEndsTheProgramAtOnce) {
    const fs::path path = MakeDatabook("A.MDB", {{.key = "1 ELM ST"}});
    StartBlankOnto(path);
    desktop->ExpectForm("frmOverwrite", [](Form& form) { PressOn(form, "cmdExit", 3); });
    Start();
    EXPECT_FALSE(started);
    EXPECT_TRUE(desktop->ended);
    EXPECT_EQ(program->ExitStatus(), 0);
    EXPECT_TRUE(desktop->messages.empty());
    EXPECT_EQ(StoredFlags(path), Names{"1 ELM ST 1"});
}

TEST_F(OverwriteTest, TheButtonOpenDoesNothingAndTheCloseBoxIsRefused) {
    const fs::path path = MakeDatabook("A.MDB", {{.key = "1 ELM ST"}});
    StartBlankOnto(path);
    desktop->ExpectForm("frmOverwrite", [&](Form& form) {
        EXPECT_EQ(Main().open.OverwriteChoice, -1);
        PressOn(form, "cmdOverwrite", 1);
        EXPECT_EQ(Main().open.OverwriteChoice, -1);
        EXPECT_TRUE(form.Loaded());
        form.Close();
        EXPECT_TRUE(form.Loaded());
        EXPECT_EQ(ControlOf<controls::Label>(form, "lblmsg").Caption(), "Please select an option");
        PressOn(form, "cmdExit", 3);
    });
    Start();
}

// ---- the File menu ----

struct FileMenuTest : OpenFlowTest {
    FileMenuTest() {
        first = MakeDatabook("FIRST.MDB", {{.key = "1 ELM ST"}, {.key = "2 OAK ST"}});
        StartWith(first);
        Type("txtCentralKey", "2 OAK ST");
    }
    fs::path first;
};

TEST_F(FileMenuTest, OpenDatabookShowsItsDialogAndTheOtherDatabook) {
    const fs::path second = MakeDatabook("SECOND.MDB", {{.key = "3 FIR ST"}});
    desktop->ExpectFile(second.string());
    Press("mnuFileItem", 2);
    EXPECT_EQ(desktop->dialogs.at(1).title, "Create a file");
    EXPECT_EQ(desktop->dialogs.at(1).filter, "Databooks (*.mdb)|*.mdb");
    EXPECT_EQ(desktop->dialogs.at(1).directory, folder.Path().string());
    EXPECT_EQ(desktop->dialogs.at(1).fileName, "");
    EXPECT_EQ(Keys(), Names{"3 FIR ST"});
    EXPECT_EQ(CurrentFile(), "SECOND.MDB");
    EXPECT_EQ(Main().open.OpenMode, 1);
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  1/1");
}

TEST_F(FileMenuTest, AnEmptyDatabookEmptiesTheKeyBoxAndAnyOtherLeavesIt) {
    const fs::path empty = MakeDatabook("EMPTY.MDB", {});
    const fs::path second = MakeDatabook("SECOND.MDB", {{.key = "3 FIR ST"}});
    Main().txtCentralKey.SetText("9 ASH ST");
    desktop->ExpectFile(second.string());
    Press("mnuFileItem", 2);
    EXPECT_EQ(Text("txtCentralKey"), "9 ASH ST");
    EXPECT_TRUE(Enabled("cmdAdd"));
    EXPECT_FALSE(Enabled("cmdEdit"));
    desktop->ExpectFile(empty.string());
    Press("mnuFileItem", 2);
    EXPECT_EQ(Text("txtCentralKey"), "");
    EXPECT_EQ(Main().CurrentKey, "");
    EXPECT_FALSE(Enabled("cmdAdd"));
}

TEST_F(FileMenuTest, TheCurrentDirectoryHoldsADoubleBackslashThatTheTitleDoesNotShow) {
    const fs::path second = MakeDatabook("SECOND.MDB", {});
    desktop->ExpectFile(second.string());
    Press("mnuFileItem", 2);
    EXPECT_TRUE(Session().settings.currentDirectory.starts_with("Z:\\\\"));
    EXPECT_EQ(Main().DataSourceOfConnection(), text::Upper(files::DriveMap::TextPath(second)));
}

TEST_F(FileMenuTest, OpeningAFileThatIsMissingOrEmptySaysSo) {
    folder.Write("EMPTY.MDB", "");
    for (const char* name : {"NONE.MDB", "EMPTY.MDB"}) {
        desktop->ExpectFile((folder / name).string());
        desktop->Expect("File not found.");
        Press("mnuFileItem", 2);
        EXPECT_EQ(CurrentFile(), "FIRST.MDB");
        EXPECT_EQ(Keys().size(), 2U);
    }
    EXPECT_FALSE(fs::exists(folder / "NONE.MDB"));
}

TEST_F(FileMenuTest, CancellingOpensNothing) {
    desktop->ExpectFile("");
    Press("mnuFileItem", 2);
    EXPECT_EQ(Keys().size(), 2U);
    EXPECT_EQ(Main().open.OpenMode, 1);
}

TEST_F(FileMenuTest, NewDatabookMakesAndOpensABlankOne) {
    desktop->ExpectFile((folder / "NEW.MDB").string());
    Press("mnuFileItem", 1);
    EXPECT_EQ(Main().tdbgData.RowCount(), 0);
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  0/0");
    EXPECT_EQ(Text("txtCentralKey"), "");
    EXPECT_EQ(Main().CurrentKey, "");
    EXPECT_EQ(Main().open.OpenMode, 2);
    EXPECT_EQ(StoredFlags(first).size(), 2U);
}

TEST_F(FileMenuTest, NewDatabookOntoAFileAsksAndNoChangesNothing) {
    const fs::path second = MakeDatabook("SECOND.MDB", {{.key = "3 FIR ST"}});
    desktop->ExpectFile(second.string());
    desktop->Expect("Overwrite " + files::DriveMap::TextPath(second), Answer::No);
    Press("mnuFileItem", 1);
    EXPECT_EQ(StoredFlags(second), Names{"3 FIR ST 1"});
    EXPECT_FALSE(fs::exists(folder / "SECOND.MDB.bak"));
    EXPECT_EQ(CurrentFile(), "FIRST.MDB");
    EXPECT_EQ(Main().open.OpenMode, 2);
}

TEST_F(FileMenuTest, NewDatabookOntoAFileWithYesKeepsTheOldOneBesideIt) {
    const fs::path second = MakeDatabook("SECOND.MDB", {{.key = "3 FIR ST"}});
    desktop->ExpectFile(second.string());
    desktop->Expect("Overwrite " + files::DriveMap::TextPath(second), Answer::Yes);
    Press("mnuFileItem", 1);
    EXPECT_EQ(Main().tdbgData.RowCount(), 0);
    EXPECT_EQ(StoredFlags(folder / "SECOND.MDB.bak"), Names{"3 FIR ST 1"});
}

TEST_F(FileMenuTest, NewDatabookOntoTheOpenOneShowsItEmpty) {
    desktop->ExpectFile(first.string());
    desktop->ExpectAny(Answer::Yes);
    Press("mnuFileItem", 1);
    EXPECT_EQ(Main().tdbgData.RowCount(), 0);
    EXPECT_EQ(StoredFlags(folder / "FIRST.MDB.bak").size(), 2U);
    EXPECT_EQ(Text("lblExplanation"), "");
}

TEST_F(FileMenuTest, AFaultInTheChosenFileLeavesTheDatabookThatWasOpen) {
    folder.Write("WRONG.MDB", "This is a letter and no Databook.");
    const std::string title = Main().Caption();
    desktop->ExpectFile((folder / "WRONG.MDB").string());
    desktop->ExpectAny();
    Press("mnuFileItem", 2);
    EXPECT_EQ(Main().Caption(), title);
    EXPECT_EQ(CurrentFile(), "FIRST.MDB");
    EXPECT_EQ(Keys().size(), 2U);
    EXPECT_EQ(Text("txtCentralKey"), "2 OAK ST");
    EXPECT_EQ(Main().tdbgData.Row(), 1);
    EXPECT_TRUE(Enabled("cmdEdit"));
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  2/2");
    // And it can be worked on.
    DblClickCell(0, 0);
    EXPECT_EQ(StoredFlags(first)[0], "1 ELM ST 2");
}

TEST_F(FileMenuTest, ADatabookWithoutItsKeyLeavesTheOneThatWasOpen) {
    testing_support::MakeOldDatabook(folder / "NOKEY.MDB", {}, {.hasCentralKey = false});
    desktop->ExpectFile((folder / "NOKEY.MDB").string());
    desktop->ExpectAny();
    Press("mnuFileItem", 2);
    EXPECT_EQ(desktop->messages.size(), 1U);
    EXPECT_FALSE(desktop->ended);
    EXPECT_EQ(Keys(), (Names{"1 ELM ST", "2 OAK ST"}));
}

TEST_F(FileMenuTest, WithoutTheTemplateANewDatabookLeavesTheOneThatWasOpen) {
    fs::remove(driveC / "ZVR/NEWDATA.MDB");
    desktop->ExpectFile((folder / "NEW.MDB").string());
    desktop->ExpectAny();
    Press("mnuFileItem", 1);
    EXPECT_FALSE(desktop->ended);
    EXPECT_EQ(Keys().size(), 2U);
    EXPECT_FALSE(fs::exists(folder / "NEW.MDB"));
}

TEST_F(FileMenuTest, OpeningALargeDatabookClosesTheCalculationsAndTellsAtOnce) {
    Press("txtCalculate");
    ASSERT_EQ(Main().tdgViewer.Tab(), 1);
    desktop->ExpectFile(MakeLargeDatabook("LARGE.MDB", 501).string());
    desktop->ExpectAny();
    Press("mnuFileItem", 2);
    EXPECT_EQ(Main().tdgViewer.Tab(), 0);
    EXPECT_FALSE(Main().tdgViewer.TabEnabled(1));
    EXPECT_EQ(desktop->messages.at(0).title, "Database has more than 500 property records");
    Press("txtCalculate");
    EXPECT_EQ(Main().tdgViewer.Tab(), 0);
}

TEST_F(FileMenuTest, TheReportsNameIsOfferedWhileKrnRuns) {
    OpenReport();
    desktop->ExpectFile("");
    Press("mnuFileItem", 2);
    EXPECT_EQ(desktop->dialogs.back().fileName, "");
    machine.processes = {"bash", " krn.exe "};
    desktop->ExpectFile("");
    Press("mnuFileItem", 2);
    EXPECT_EQ(desktop->dialogs.back().fileName, "SMITH");
    // The list of processes only grows: a program that has ended stays found.
    machine.processes = {"bash"};
    desktop->ExpectFile("");
    Press("mnuFileItem", 2);
    EXPECT_EQ(desktop->dialogs.back().fileName, "SMITH");
}

TEST_F(FileMenuTest, AKrnThatHangsDoesNotKeepTheDialogAway) {
    OpenReport();
    machine.processes = {"KRN.EXE"};
    link.faults["request"] = fault::kLinkTimeOut;
    desktop->ExpectFile(MakeDatabook("SECOND.MDB", {{.key = "3 FIR ST"}}).string());
    Press("mnuFileItem", 2);
    EXPECT_EQ(desktop->dialogs.back().fileName, "");
    EXPECT_EQ(Keys(), Names{"3 FIR ST"});
}

// ---- files that are dropped on the window ----

TEST_F(FileMenuTest, ADatabookThatIsDroppedIsOpened) {
    const fs::path second = MakeDatabook("SECOND.MDB", {{.key = "3 FIR ST"}});
    EXPECT_TRUE(Main().TakesFiles());
    User([&] { Main().DropFile(second.string()); });
    EXPECT_EQ(Keys(), Names{"3 FIR ST"});
}

TEST_F(FileMenuTest, ASourceThatIsDroppedIsImported) {
    const fs::path source = WriteSource();
    User([&] { Main().DropFile(source.string()); });
    EXPECT_EQ(Keys(), (Names{"1 ELM ST", "2 OAK ST"}));
    EXPECT_EQ(CurrentFile(), "LISTINGS.MDB");
    EXPECT_TRUE(fs::exists(folder / "LISTINGS.mdb"));
}

TEST_F(FileMenuTest, ASourceThatIsDroppedAgainAsksBeforeItReplacesItsDatabook) {
    const fs::path source = WriteSource();
    User([&] { Main().DropFile(source.string()); });
    DblClickCell(0, 0);
    desktop->ExpectAny(Answer::No);
    User([&] { Main().DropFile(source.string()); });
    EXPECT_TRUE(desktop->messages.back().text.starts_with("Overwrite "));
    EXPECT_EQ(StoredFlags(folder / "LISTINGS.mdb")[0], "1 ELM ST 2");
    desktop->ExpectAny(Answer::Yes);
    User([&] { Main().DropFile(source.string()); });
    EXPECT_EQ(StoredFlags(folder / "LISTINGS.mdb")[0], "1 ELM ST 3");
    EXPECT_EQ(StoredFlags(folder / "LISTINGS.mdb.bak")[0], "1 ELM ST 2");
    EXPECT_EQ(Keys().size(), 2U);
}

TEST_F(FileMenuTest, AnyOtherFileThatIsDroppedIsToldToBeNone) {
    const fs::path letter = folder.Write("letter.doc", "Dear Sir");
    desktop->ExpectAny();
    User([&] { Main().DropFile(letter.string()); });
    EXPECT_EQ(Keys().size(), 2U);
    EXPECT_FALSE(desktop->ended);
}

// ---- Open Recent ----

TEST_F(FileMenuTest, OpenRecentOffersTheLastTenDatabooksTheLatestFirst) {
    EXPECT_TRUE(Main().mnuRecentItem[0].Visible());
    EXPECT_FALSE(Main().mnuRecentItem[1].Visible());
    for (int number = 1; number <= 11; ++number) {
        desktop->ExpectFile(MakeDatabook("B" + std::to_string(number) + ".MDB", {}).string());
        Press("mnuFileItem", 2);
    }
    EXPECT_TRUE(Text("mnuRecentItem", 0).ends_with("B11.MDB"));
    EXPECT_TRUE(Text("mnuRecentItem", 0).starts_with("&1  Z:\\"));
    EXPECT_TRUE(Text("mnuRecentItem", 9).ends_with("B2.MDB"));
    // The same Databook again stands once.
    Press("mnuRecentItem", 3);
    EXPECT_EQ(CurrentFile(), "B8.MDB");
    EXPECT_TRUE(Text("mnuRecentItem", 0).ends_with("B8.MDB"));
    EXPECT_TRUE(Text("mnuRecentItem", 1).ends_with("B11.MDB"));
    EXPECT_TRUE(Text("mnuRecentItem", 9).ends_with("B2.MDB"));

    // The next run offers them too.
    User([&] { Main().Close(); });
    NewRun();
    StartWith("");
    EXPECT_TRUE(Text("mnuRecentItem", 0).ends_with("B8.MDB"));
    EXPECT_TRUE(Text("mnuRecentItem", 9).ends_with("B2.MDB"));
    EXPECT_FALSE(Main().mnuRecentItem[0].ToolTipText().empty());
}

TEST_F(FileMenuTest, ARecentDatabookThatIsGoneLeavesTheList) {
    const fs::path second = MakeDatabook("SECOND.MDB", {});
    desktop->ExpectFile(second.string());
    Press("mnuFileItem", 2);
    Press("mnuRecentItem", 1);
    fs::remove(second);
    desktop->Expect("File not found.");
    Press("mnuRecentItem", 1);
    EXPECT_EQ(CurrentFile(), "FIRST.MDB");
    EXPECT_TRUE(Text("mnuRecentItem", 0).ends_with("FIRST.MDB"));
    EXPECT_FALSE(Main().mnuRecentItem[1].Visible());
}

}  // namespace
}  // namespace zenvora::frame
