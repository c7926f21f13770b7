#include "frame/frm_config.h"

#include <gtest/gtest.h>

#include "common/globals.h"
#include "common/ini.h"
#include "frame/frm_about.h"
#include "frame/frm_path.h"
#include "platform/fault.h"
#include "support/test_session.h"

namespace zenvora::frame {
namespace {

using testing_support::TestSession;

class Configuration : public testing::Test {
  protected:
    Configuration() {
        for (const char* folder : {"ZVR/DATA", "DATABOOK/export"})
            std::filesystem::create_directories(test_.driveC / folder);
        Put("[DIRECTORIES]\nTABLE=COMPS\n");
    }
    void Put(std::string_view ini) {
        test_.driveC.Write("Appraise/ZVR.INI", ini);
        common::ReadGlobals(session_);
    }
    std::string Stored(std::string_view section, std::string_view key) {
        return common::ReadIni(session_, "C:\\Appraise\\ZVR.INI", section, key, "(none)");
    }
    /// Shows the dialog; the user does this and then closes it by its close box, unless he closed it himself.
    void Use(const std::function<void(frmConfig&)>& user) {
        test_.desktop.ExpectForm("frmConfig",
                                 [&](controls::Form& form) { user(dynamic_cast<frmConfig&>(form)); });
        ShowConfiguration(session_);
    }

    TestSession test_;
    common::Session& session_ = test_.session;
};

TEST_F(Configuration, ShowsTheSettingsAndTheDefaultsOfItsTags) {
    Put("[CONFIG]\nSPLASH1=1\nLAUNCHKRN=2\n[DIRECTORIES]\nUSERDIR=C:\\ZVR\n");
    Use([](frmConfig& form) {
        EXPECT_EQ(form.Caption(), "Configuration");
        EXPECT_EQ(form.tdgConfig.Tab(), 0);
        EXPECT_EQ(form.chkOpeningScreen.Value(), 1);
        EXPECT_EQ(form.chkAddZeroes.Value(), 1);
        EXPECT_EQ(form.Check1.Value(), 2);
        EXPECT_FALSE(form.optDirToUse[0].Value());
        EXPECT_TRUE(form.optDirToUse[1].Value());
        EXPECT_EQ(form.txtDataDir.Text(), "C:\\DATABOOK\\export");
        EXPECT_EQ(form.txtUserDir.Text(), "C:\\ZVR");
        EXPECT_EQ(form.txtProgramDir.Text(), "C:\\zvr");
    });
}

TEST_F(Configuration, CancelStoresEveryFieldToo) {
    Use([](frmConfig& form) {
        form.txtDataDir.SetText("C:\\ELSEWHERE");
        form.cmdCancel.Click();
        EXPECT_FALSE(form.Loaded());
    });
    EXPECT_EQ(Stored("DIRECTORIES", "DATADIR"), "C:\\ELSEWHERE");
    EXPECT_EQ(session_.settings.dataDirectory, "C:\\ELSEWHERE");
    EXPECT_FALSE(std::filesystem::exists(test_.driveC / "ELSEWHERE"));
}

TEST_F(Configuration, OnlyOkChangesTheRuleAboutZeroesOfTheRunningProgram) {
    Use([](frmConfig& form) {
        form.chkAddZeroes.SetValue(0);
        form.PushButton1.Click();
    });
    EXPECT_TRUE(session_.settings.addZeroes);
    EXPECT_EQ(Stored("CONFIG", "ADDZEROES"), "0");
    Use([](frmConfig& form) { form.cmdOK.Click(); });
    EXPECT_FALSE(session_.settings.addZeroes);
    Use([](frmConfig& form) {
        form.chkAddZeroes.SetValue(1);
        form.cmdOk2.Click();
    });
    EXPECT_TRUE(session_.settings.addZeroes);
    Use([](frmConfig& form) {
        form.chkAddZeroes.SetValue(2);
        form.cmdOK.Click();
    });
    EXPECT_FALSE(session_.settings.addZeroes);
    EXPECT_EQ(Stored("CONFIG", "ADDZEROES"), "2");
}

TEST_F(Configuration, TheCloseBoxStoresAsCancelDoes) {
    Use([](frmConfig& form) {
        form.chkAddZeroes.SetValue(0);
        form.chkOpeningScreen.Toggle();
    });
    EXPECT_TRUE(session_.settings.addZeroes);
    EXPECT_EQ(Stored("CONFIG", "ADDZEROES"), "0");
    EXPECT_EQ(Stored("CONFIG", "SPLASH1"), "1");
    EXPECT_EQ(Stored("FORMS", "FRMCONFIGTOP"), "0");
}

TEST_F(Configuration, TheDefaultDirectoryMakesTheNextStartIgnoreTheLastDatabook) {
    Put("[DIRECTORIES]\nCURRDATADIR=Z:\\home\nCURRDATABOOK=LAST.MDB\nDATADIR=C:\\ZVR\\DATA\n");
    Use([](frmConfig& form) {
        form.optDirToUse[0].Select();
        EXPECT_FALSE(form.optDirToUse[1].Value());
        form.cmdOK.Click();
    });
    EXPECT_EQ(Stored("CONFIG", "MDBFILEPATH"), "1");
    common::ReadGlobals(session_);
    EXPECT_EQ(session_.settings.currentDirectory, "C:\\ZVR\\DATA\\");
    EXPECT_EQ(session_.settings.currentFile, "ZVR.MDB");
    Use([](frmConfig& form) {
        EXPECT_TRUE(form.optDirToUse[0].Value());
        EXPECT_FALSE(form.optDirToUse[1].Value());
        form.optDirToUse[1].Select();
    });
    EXPECT_EQ(Stored("CONFIG", "MDBFILEPATH"), "0");
}

TEST_F(Configuration, TheDirectoriesAreTakenAsTyped) {
    Use([](frmConfig& form) {
        form.txtDataDir.SetText("");
        form.txtProgramDir.SetText("c:\\zvr");
        form.cmdOK.Click();
    });
    EXPECT_EQ(session_.settings.dataDirectory, "");
    EXPECT_EQ(session_.settings.applicationDirectory, "c:\\zvr");
    EXPECT_EQ(session_.settings.userDirectory, "C:\\zvr");
}

TEST_F(Configuration, MakesTheDirectoriesOfProgramAndUserWithAMessage) {
    test_.desktop.Expect("Creating directory C:\\PROG.");
    test_.desktop.Expect("Creating directory C:\\ME.");
    Use([](frmConfig& form) {
        form.txtProgramDir.SetText("C:\\PROG\\");
        form.txtUserDir.SetText("C:\\ME");
        form.cmdOK.Click();
    });
    EXPECT_TRUE(std::filesystem::is_directory(test_.driveC / "PROG"));
    EXPECT_TRUE(std::filesystem::is_directory(test_.driveC / "ME"));
}

TEST_F(Configuration, ADirectoryThatCannotBeMadeFaultsOnceTheDialogIsClosed) {
    test_.desktop.Expect("Creating directory C:\\NONE\\PROG.");
    try {
        Use([](frmConfig& form) {
            form.txtProgramDir.SetText("C:\\NONE\\PROG");
            form.cmdOK.Click();
            EXPECT_FALSE(form.Loaded());
        });
        ADD_FAILURE();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kPathNotFound);
    }
    EXPECT_EQ(Stored("DIRECTORIES", "APPDIR"), "C:\\NONE\\PROG");
    EXPECT_TRUE(session_.forms.Loaded().empty());
}

TEST_F(Configuration, WithoutASettingsFileNothingIsStored) {
    std::filesystem::remove(test_.driveC / "Appraise/ZVR.INI");
    Use([](frmConfig& form) {
        EXPECT_EQ(form.chkAddZeroes.Value(), 1);
        form.txtProgramDir.SetText("C:\\ZVR");
        form.cmdOK.Click();
    });
    EXPECT_EQ(Stored("DIRECTORIES", "APPDIR"), "(none)");
    EXPECT_FALSE(std::filesystem::exists(test_.driveC / "WINDOWS"));
    EXPECT_EQ(session_.settings.applicationDirectory, "C:\\ZVR");
}

TEST_F(Configuration, TheButtonsBringTheFolderThatIsChosen) {
    Use([this](frmConfig& form) {
        form.txtDataDir.SetText("C:\\zvr\\data");
        test_.desktop.ExpectForm("frmPath", [](controls::Form& shown) {
            auto& path = dynamic_cast<frmPath&>(shown);
            EXPECT_EQ(path.Caption(), "Select A Path");
            EXPECT_EQ(path.drvDrive.Text(), "C:");
            EXPECT_EQ(path.txtFilename.Text(), "C:\\zvr\\data");
            EXPECT_EQ(path.Path(), "C:\\zvr\\data");
            path.dirPath.SetListIndex(0);
            path.dirPath.DblClick();
            EXPECT_EQ(path.txtFilename.Text(), "C:\\");
            ASSERT_EQ(path.dirPath.ListCount(), 4);
            EXPECT_EQ(path.dirPath.List(0), "C:\\");
            EXPECT_EQ(path.dirPath.List(1), "   Appraise");
            EXPECT_EQ(path.dirPath.List(2), "   DATABOOK");
            path.dirPath.SetListIndex(2);
            path.dirPath.DblClick();
            path.cmdOk.Click();
            EXPECT_TRUE(path.Loaded());
        });
        form.cmdChooseDataDir.Click();
        EXPECT_EQ(form.txtDataDir.Text(), "C:\\DATABOOK");

        test_.desktop.ExpectForm(
            "frmPath", [](controls::Form& shown) { dynamic_cast<frmPath&>(shown).cmdCancel.Click(); });
        form.cmdChooseUserDir.Click();
        EXPECT_EQ(form.txtUserDir.Text(), "C:\\zvr");

        test_.desktop.ExpectForm("frmPath", [](controls::Form& shown) {
            auto& path = dynamic_cast<frmPath&>(shown);
            path.txtFilename.SetText("C:\\ZVR");
            path.cmdOk.Click();
        });
        form.cmdChooseProgDir.Click();
        EXPECT_EQ(form.txtProgramDir.Text(), "C:\\ZVR");

        // Left open: the user closes it by its close box.
        test_.desktop.ExpectForm("frmPath", [](controls::Form& shown) {
            dynamic_cast<frmPath&>(shown).txtFilename.SetText("C:\\NONE");
        });
        form.cmdChooseProgDir.Click();
        EXPECT_EQ(form.txtProgramDir.Text(), "C:\\ZVR");
        form.txtUserDir.SetText("C:\\ZVR");
    });
    EXPECT_EQ(Stored("FORMS", "FRMPATHTOP"), "0");
}

constexpr const char* kUnavailable =
    "Device unavailable (could be an empty floppy drive, unwritable cdrom, or unavailable network drive).  "
    "Correct and try again.";

TEST_F(Configuration, AFolderWithoutADriveAndADriveThatIsNotThereAreTold) {
    frmPath path(session_);
    test_.desktop.Expect(kUnavailable);
    path.StartFrom("\\ZVR");
    EXPECT_EQ(path.drvDrive.Text(), "C:");
    EXPECT_EQ(path.txtFilename.Text(), "\\ZVR");
    test_.desktop.Expect(kUnavailable);
    path.drvDrive.SetText("Q:");
    EXPECT_EQ(path.drvDrive.Text(), "C:");
    EXPECT_EQ(path.Path(), "C:\\");
    EXPECT_TRUE(path.Loaded());
}

TEST_F(Configuration, EnterInTheFoldersWithNoneChosenGoesNowhere) {
    frmPath path(session_);
    path.StartFrom("C:\\ZVR\\DATA");
    path.dirPath.SetListIndex(-1);
    EXPECT_NO_THROW(path.dirPath.DblClick());
    EXPECT_EQ(path.Path(), "C:\\ZVR\\DATA");
}

TEST_F(Configuration, AnotherDriveShowsItsRoot) {
    frmPath path(session_);
    path.StartFrom("c:\\nowhere");
    EXPECT_EQ(path.Path(), "C:\\");
    EXPECT_EQ(path.txtFilename.Text(), "c:\\nowhere");
    path.drvDrive.Pick(1);
    EXPECT_EQ(path.drvDrive.Text(), "Z:");
    EXPECT_EQ(path.Path(), "Z:\\");
    EXPECT_EQ(path.txtFilename.Text(), "Z:\\");
    EXPECT_GT(path.dirPath.ListCount(), 1);
}

TEST_F(Configuration, HelpOpensAtThePageOfTheDialog) {
    test_.machine.reader = false;
    for (const char* page : {"ZVR", "config", "path"})
        test_.driveC.Write(std::string("ZVR/HELP/") + page + ".html", "<html>");
    test_.driveC.Write("ZVR/ZVR.CHM", "ITSF");
    frmConfig config(session_);
    config.Help();
    frmPath path(session_);
    path.Help();
    ASSERT_EQ(test_.machine.requests.size(), 2U);
    EXPECT_TRUE(test_.machine.requests[0].file.ends_with("config.html"));
    EXPECT_TRUE(test_.machine.requests[1].file.ends_with("path.html"));
}

TEST_F(Configuration, TheAboutBoxSaysWhatRunsWhere) {
    test_.machine.systemName = "Some & System";
    test_.desktop.ExpectForm("frmAbout", [](controls::Form& shown) {
        auto& about = dynamic_cast<frmAbout&>(shown);
        EXPECT_EQ(about.lblSystem.Caption(), "Some && System");
    });
    frmAbout about(session_, "0.1.0");
    EXPECT_EQ(about.Caption(), "About ");
    about.Show(controls::Modality::Modeless);
    EXPECT_EQ(about.lblProgram.Caption(), "Zenvora");
    EXPECT_EQ(about.lblVersion.Caption(), "Version 0.1.0");
    EXPECT_NE(about.lblFolder.Caption().find(test_.driveC.Path().string()), std::string::npos);
    about.cmdOK.Click();
    EXPECT_FALSE(about.Loaded());
    EXPECT_EQ(Stored("FORMS", "FRMABOUTTOP"), "0");
}

}  // namespace
}  // namespace zenvora::frame
