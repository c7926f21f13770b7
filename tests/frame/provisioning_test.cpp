#include "frame/provisioning.h"

#include <gtest/gtest.h>

#include "common/globals.h"
#include "frame/frm_config.h"
#include "support/test_session.h"

namespace zenvora::frame {
namespace {

using testing_support::TempFolder;
using testing_support::TestSession;

constexpr const char* kNewSettings = "[DIRECTORIES]\r\nTABLE=COMPS\r\nDATADIR=C:\\ZVR\\DATA\r\n";

class Provisioning : public testing::Test {
  protected:
    Provisioning() {
        share_.Write("NEWDATA.MDB", "template");
        share_.Write("OLD.rtf", "{\\rtf1}");
        share_.Write("ZVR.CHM", "ITSF 1");
        share_.Write("HELP/ZVR.html", "<html>1");
    }
    void Start() { ProvisionDriveC(session_, share_.Path()); }

    TempFolder share_;
    TestSession test_;
    common::Session& session_ = test_.session;
    TempFolder& drive_ = test_.driveC;
};

TEST_F(Provisioning, TheFirstStartPutsEverythingInPlace) {
    Start();
    EXPECT_EQ(drive_.Read("Appraise/ZVR.INI"), kNewSettings);
    EXPECT_EQ(drive_.Read("ZVR/NEWDATA.MDB"), "template");
    EXPECT_EQ(drive_.Read("ZVR/OLD.rtf"), "{\\rtf1}");
    EXPECT_EQ(drive_.Read("ZVR/ZVR.CHM"), "ITSF 1");
    EXPECT_EQ(drive_.Read("ZVR/HELP/ZVR.html"), "<html>1");
    EXPECT_TRUE(std::filesystem::is_directory(drive_ / "ZVR/DATA"));
    EXPECT_TRUE(std::filesystem::is_directory(drive_ / "WINDOWS"));
    EXPECT_TRUE(test_.desktop.messages.empty());
    common::ReadGlobals(session_);
    EXPECT_EQ(session_.table, "COMPS");
}

TEST_F(Provisioning, ADriveThatIsNotThereYetIsMadeWithItsParents) {
    session_.drives = files::DriveMap(drive_ / "share/zenvora");
    Start();
    EXPECT_EQ(drive_.Read("share/zenvora/ZVR/NEWDATA.MDB"), "template");
}

TEST_F(Provisioning, WhatIsMissingIsRestoredAtEachStart) {
    Start();
    std::filesystem::remove_all(drive_ / "ZVR");
    std::filesystem::remove(drive_ / "Appraise/ZVR.INI");
    Start();
    EXPECT_EQ(drive_.Read("ZVR/NEWDATA.MDB"), "template");
    EXPECT_TRUE(std::filesystem::is_directory(drive_ / "ZVR/DATA"));
    EXPECT_EQ(drive_.Read("Appraise/ZVR.INI"), kNewSettings);
}

TEST_F(Provisioning, NothingOfTheUsersIsOverwritten) {
    drive_.Write("appraise/zvr.ini", "; mine\n[DIRECTORIES]\nTABLE=OTHER\n");
    drive_.Write("ZVR/newdata.mdb", "my template");
    drive_.Write("ZVR/OLD.rtf", "my text");
    Start();
    EXPECT_EQ(drive_.Read("appraise/zvr.ini"), "; mine\n[DIRECTORIES]\nTABLE=OTHER\n");
    EXPECT_FALSE(std::filesystem::exists(drive_ / "Appraise"));
    EXPECT_EQ(drive_.Read("ZVR/newdata.mdb"), "my template");
    EXPECT_FALSE(std::filesystem::exists(drive_ / "ZVR/NEWDATA.MDB"));
    EXPECT_EQ(drive_.Read("ZVR/OLD.rtf"), "my text");
}

TEST_F(Provisioning, AnEmptyFileCountsAsMissing) {
    drive_.Write("ZVR/NEWDATA.MDB", "");
    drive_.Write("Appraise/ZVR.INI", "");
    Start();
    EXPECT_EQ(drive_.Read("ZVR/NEWDATA.MDB"), "template");
    EXPECT_EQ(drive_.Read("Appraise/ZVR.INI"), kNewSettings);
}

TEST_F(Provisioning, SettingsWithoutATableGetItsName) {
    drive_.Write("Appraise/ZVR.INI",
                 "; mine\r\n[CONFIG]\r\nADDZEROES=0\r\n\r\n[DIRECTORIES]\r\nDATADIR=Z:\\A\r\n");
    Start();
    EXPECT_EQ(drive_.Read("Appraise/ZVR.INI"),
              "; mine\r\n[CONFIG]\r\nADDZEROES=0\r\n\r\n[DIRECTORIES]\r\nDATADIR=Z:\\A\r\nTABLE=COMPS\r\n");
}

TEST_F(Provisioning, TheConfigurationDialogShowsTheDataDirectoryThatIsUsedAndThatIsThere) {
    Start();
    common::ReadGlobals(session_);
    test_.desktop.ExpectForm("frmConfig", [&](controls::Form& form) {
        EXPECT_EQ(dynamic_cast<frmConfig&>(form).txtDataDir.Text() + "\\", session_.settings.dataDirectory);
    });
    ShowConfiguration(session_);
    // Looking at it has changed nothing.
    common::ReadGlobals(session_);
    EXPECT_TRUE(std::filesystem::is_directory(session_.drives.HostPath(session_.settings.dataDirectory)));
}

TEST_F(Provisioning, AnOlderHelpIsBroughtUpToDateAndKept) {
    Start();
    share_.Write("ZVR.CHM", "ITSF 2");
    share_.Write("HELP/ZVR.html", "<html>2");
    Start();
    EXPECT_EQ(drive_.Read("ZVR/ZVR.CHM"), "ITSF 2");
    EXPECT_EQ(drive_.Read("ZVR/HELP/ZVR.html"), "<html>2");
    EXPECT_EQ(drive_.Read("ZVR/HELP/ZVR.html.bak"), "<html>1");
    Start();
    EXPECT_EQ(drive_.Read("ZVR/HELP/ZVR.html.bak"), "<html>1");
}

TEST_F(Provisioning, AFolderThatCannotBeMadeIsToldOnceAndTheProgramGoesOn) {
    drive_.Write("file", "x");
    session_.drives = files::DriveMap(drive_ / "file/zenvora");
    test_.desktop.ExpectAny();
    Start();
    ASSERT_EQ(test_.desktop.messages.size(), 1U);
    const std::string& text = test_.desktop.messages[0].text;
    EXPECT_NE(text.find((drive_ / "file/zenvora").string()), std::string::npos) << text;
    EXPECT_NE(text.find("goes on"), std::string::npos) << text;
}

TEST_F(Provisioning, SettingsThatCannotBeWrittenAreTold) {
    std::filesystem::create_directories(drive_ / "Appraise/ZVR.INI");
    test_.desktop.ExpectAny();
    Start();
    ASSERT_EQ(test_.desktop.messages.size(), 1U);
    EXPECT_NE(test_.desktop.messages[0].text.find("The settings cannot be stored."), std::string::npos)
        << test_.desktop.messages[0].text;
    EXPECT_EQ(drive_.Read("ZVR/NEWDATA.MDB"), "template");
}

TEST_F(Provisioning, OneFileThatCannotBePutInPlaceKeepsNoOtherAway) {
    drive_.Write("ZVR/HELP", "a file in the way");
    test_.desktop.ExpectAny();
    Start();
    EXPECT_EQ(drive_.Read("ZVR/ZVR.CHM"), "ITSF 1");
    EXPECT_EQ(drive_.Read("ZVR/HELP"), "a file in the way");
}

TEST_F(Provisioning, FilesOfTheProgramThatAreNotInstalledAreTold) {
    test_.desktop.ExpectAny();
    ProvisionDriveC(session_, share_ / "none");
    EXPECT_NE(test_.desktop.messages[0].text.find("NEWDATA.MDB"), std::string::npos);
    EXPECT_EQ(drive_.Read("Appraise/ZVR.INI"), kNewSettings);
}

TEST(ShareFolder, StandsBesideTheFolderOfTheProgram) {
    const auto self = std::filesystem::canonical("/proc/self/exe");
    EXPECT_EQ(ShareFolder(), self.parent_path().parent_path() / "share/zenvora");
}

}  // namespace
}  // namespace zenvora::frame
