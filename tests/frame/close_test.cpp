#include <fstream>
#include <gtest/gtest.h>

#include "analysis/frm_data_viewer.h"
#include "common/error_rule.h"
#include "common/fault_text.h"
#include "frame/program_fixture.h"
#include "platform/text/utf8.h"

namespace zenvora::frame {
namespace {

namespace fs = std::filesystem;

struct CloseTest : ProgramTest {
    CloseTest() {
        path = MakeDatabook("HOUSES.MDB", {{.key = "1 ELM ST"}, {.key = "2 OAK ST"}});
        StartWith(path);
    }
    fs::path path;
};

TEST_F(CloseTest, EachExitAndTheCloseBoxEndTheProgram) {
    const std::vector<std::function<void()>> ways{[&] { Press("cmdExit2"); }, [&] { Press("cmdExit"); },
                                                  [&] { Press("PushButton1"); },
                                                  [&] { User([&] { Main().Close(); }); }};
    for (const auto& way : ways) {
        NewRun("/V");
        desktop->ExpectForm("frmDataViewer");
        StartWith(path);
        EXPECT_FALSE(desktop->ended);
        way();
        EXPECT_TRUE(desktop->ended);
        EXPECT_FALSE(Main().Loaded());
        EXPECT_FALSE(Main().viewer.Loaded());
        EXPECT_EQ(program->ExitStatus(), 0);
    }
}

TEST_F(CloseTest, UnloadStoresTheDatabookAndThePlacements) {
    Press("cmdExit2");
    const std::string text = text::Upper(files::DriveMap::TextPath(path));
    EXPECT_EQ(Stored("DIRECTORIES", "CURRDATADIR"), text.substr(0, text.rfind('\\') + 1));
    EXPECT_EQ(Stored("DIRECTORIES", "CURRDATABOOK"), "HOUSES.MDB");
    EXPECT_EQ(Stored("DIRECTORIES", "TABLE"), "COMPS");
    EXPECT_EQ(Stored("FORMS", "FRMMAINWIDTH"), "12015");
    EXPECT_EQ(Stored("FORMS", "FRMMAINHEIGHT"), "7005");
    EXPECT_EQ(Stored("FORMS", "FRMMAINTOP"), "0");
    EXPECT_NE(Stored("FORMS", "FRMDATAVIEWERLEFT"), "(none)");
    // Never shown in this run, and stored as if it had been.
    EXPECT_EQ(Stored("FORMS", "FRMDATAVIEWERWIDTH"), "11440");
    // The Databook is let go of.
    EXPECT_FALSE(Main().adoDatabook.HasRecordset());
    EXPECT_FALSE(fs::exists(folder / "HOUSES.LDB"));
}

TEST_F(CloseTest, TheNextStartOffersTheLastDatabook) {
    Press("cmdExit2");
    NewRun();
    StartWith("");
    EXPECT_EQ(desktop->dialogs.at(0).fileName, "HOUSES");
    EXPECT_EQ(Cell(1, 1), "2 OAK ST");
}

TEST_F(CloseTest, WithTheDefaultDirectoryChosenItDoesNot) {
    Press("cmdExit2");
    WriteSettings("[DIRECTORIES]\nTABLE=COMPS\nCURRDATABOOK=HOUSES.MDB\n[CONFIG]\nMDBFILEPATH=1\n");
    NewRun();
    StartWith("");
    EXPECT_EQ(Session().settings.currentFile, "ZVR.MDB");
}

TEST_F(CloseTest, SettingsThatCannotBeStoredAreToldAndTheDatabookIsWhole) {
    DblClickCell(0, 0);
    // A folder stands where the settings file is to be written.
    fs::remove(driveC / "Appraise/ZVR.INI");
    fs::create_directory(driveC / "Appraise/ZVR.INI");
    desktop->ExpectAny();
    Press("cmdExit2");
    EXPECT_TRUE(desktop->messages.at(0).text.starts_with("The settings could not be stored in " +
                                                         common::Shown(driveC / "Appraise/ZVR.INI")));
    EXPECT_TRUE(desktop->ended);
    EXPECT_EQ(StoredFlags(path), (std::vector<std::string>{"1 ELM ST 2", "2 OAK ST 1"}));
}

TEST_F(CloseTest, TheDatabookIsWholeWhenTheProgramGoesAwayWithoutUnloading) {
    DblClickCell(0, 0);
    NewRun();
    EXPECT_EQ(StoredFlags(path), (std::vector<std::string>{"1 ELM ST 2", "2 OAK ST 1"}));
}

TEST_F(CloseTest, ClosingTheStatisticsWindowKeepsItsData) {
    NewRun("/V");
    desktop->ExpectForm("frmDataViewer");
    StartWith(path);
    Press("txtCalculate");
    EXPECT_EQ(Main().viewer.lstData[8].ListCount(), 2);
    User([&] { Main().viewer.Close(); });
    EXPECT_FALSE(desktop->ended);
    EXPECT_EQ(Main().viewer.lstData[8].ListCount(), 2);
    Press("cmdBack");
    Press("txtCalculate");
    EXPECT_EQ(Text("txtTotalL", 2), "2");
}

// ---- faults that nobody handles ----

TEST_F(CloseTest, AFaultInAnActionIsToldOnceAndTheProgramGoesOn) {
    desktop->ExpectAny();
    User([&] {
        Main().adoDatabook.Recordset().SetValue("CITY", std::string("ASHBY"));
        Place place;
        place.file = "HOUSES.MDB";
        place.record = 2;
        throw Fault{fault::kDiskFull, "There is no space left on the disk. Make room on it.", place};
    });
    ASSERT_EQ(desktop->messages.size(), 1U);
    EXPECT_EQ(desktop->messages[0].text,
              "The last action could not be finished.\n\nHOUSES.MDB, record 2: There is no space left on the "
              "disk. Make room on it. (error 61)");
    EXPECT_FALSE(desktop->ended);
    // Nothing half-made stays, and the window works.
    EXPECT_EQ(Main().adoDatabook.Recordset().Edit(), ado::EditMode::None);
    DblClickCell(0, 0);
    EXPECT_EQ(StoredFlags(path)[0], "1 ELM ST 2");
}

TEST_F(CloseTest, AFullDiskWhileADateIsTypedIsToldAndLosesNothing) {
    disk.full = true;
    desktop->ExpectAny();
    Type("txtBaseDate", "1/15/2010");  // both records become invalid: they are to be written
    EXPECT_EQ(desktop->messages.at(0).text,
              "The last action could not be finished.\n\nThere is no space left. Make room on the disk. "
              "(error 61)");
    EXPECT_FALSE(desktop->ended);
    EXPECT_FALSE(desktop->hourglass);
    disk.full = false;
    Type("txtBaseDate", "6/15/2010");
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  2/2");
    Press("cmdExit");
    EXPECT_EQ(StoredFlags(path), (std::vector<std::string>{"1 ELM ST 1", "2 OAK ST 1"}));
}

TEST_F(CloseTest, AFullDiskWhileADatabookIsOpenedLeavesTheOneThatWasOpen) {
    const fs::path other = MakeDatabook("OTHER.MDB", {{.key = "3 FIR ST"}});
    disk.full = true;
    desktop->ExpectFile(other.string());
    desktop->ExpectAny();
    Press("mnuFileItem", 2);
    disk.full = false;
    EXPECT_EQ(Session().settings.currentFile, "HOUSES.MDB");
    EXPECT_EQ(Cell(1, 1), "2 OAK ST");
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  2/2");
    EXPECT_EQ(StoredFlags(other), std::vector<std::string>{"3 FIR ST 1"});
}

TEST_F(CloseTest, ARuleThatEndsTheProgramEndsItWithoutAWord) {
    User([] { throw common::ProgramEnds{}; });
    EXPECT_TRUE(desktop->messages.empty());
    EXPECT_TRUE(desktop->ended);
    EXPECT_EQ(program->ExitStatus(), 0);
}

TEST_F(CloseTest, WhatIsNoFaultOfAFileIsToldAndEndsTheProgram) {
    desktop->ExpectAny();
    User([] { throw std::bad_alloc(); });
    EXPECT_TRUE(desktop->messages.at(0).text.find("not enough memory") != std::string::npos);
    EXPECT_TRUE(desktop->ended);
    EXPECT_EQ(program->ExitStatus(), 1);
}

TEST_F(CloseTest, AWriteProtectedDatabookIsTold) {
    const fs::path other = MakeDatabook("OTHER.MDB", {{.key = "3 FIR ST", .flag = "0"}});
    fs::permissions(other, fs::perms::owner_read);
    if (std::ofstream(other, std::ios::app)) GTEST_SKIP() << "the tests run as a user who may write anything";
    desktop->ExpectFile(other.string());
    desktop->ExpectAny();
    desktop->ExpectAny();
    Press("mnuFileItem", 2);
    EXPECT_FALSE(desktop->ended);
    EXPECT_EQ(Session().settings.currentFile, "HOUSES.MDB");
    EXPECT_EQ(Main().tdbgData.RowCount(), 2);
}

}  // namespace
}  // namespace zenvora::frame
