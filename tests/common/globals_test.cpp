#include "common/globals.h"

#include <gtest/gtest.h>

#include "common/directories.h"
#include "common/os_version.h"
#include "support/test_session.h"

namespace zenvora::common {
namespace {

using testing_support::TestSession;

class Globals : public testing::Test {
  protected:
    const Settings& ReadWith(std::string_view ini) {
        test_.driveC.Write("Appraise/ZVR.INI", ini);
        ReadGlobals(session_);
        return session_.settings;
    }

    TestSession test_;
    Session& session_ = test_.session;
};

TEST_F(Globals, WithoutASettingsFileEveryKeyHasItsDefault) {
    ReadGlobals(session_);
    const Settings& settings = session_.settings;
    EXPECT_EQ(settings.windowsDirectory, "C:\\WINDOWS\\");
    EXPECT_EQ(settings.drive, "C:");
    EXPECT_EQ(settings.appraiseDirectory, "\\Appraise");
    EXPECT_EQ(settings.settingsFile, "C:\\Appraise\\ZVR.INI");
    EXPECT_EQ(settings.applicationDirectory, "C:\\ZVR\\");
    EXPECT_EQ(settings.dataDirectory, "C:\\ZVR\\DATA\\");
    EXPECT_EQ(settings.dataFile, "ZVR.MDB");
    EXPECT_EQ(session_.table, "");
    EXPECT_EQ(settings.filePathChoice, "0");
    EXPECT_EQ(settings.currentDirectory, "C:\\ZVR\\DATA\\");
    EXPECT_EQ(settings.currentFile, "ZVR.MDB");
    EXPECT_EQ(settings.splash1, "0");
    EXPECT_EQ(settings.splash2, "0");
    EXPECT_EQ(settings.launchChoice, "0");
    EXPECT_TRUE(settings.addZeroes);
    EXPECT_TRUE(settings.notice500);
    EXPECT_EQ(settings.companyName, "Orvane, Inc.");
    EXPECT_EQ(settings.programAlias, "Zenvora");
    EXPECT_EQ(session_.lastProcedure, "ReadGlobals");
    EXPECT_TRUE(test_.desktop.messages.empty());
}

TEST_F(Globals, EveryKeyIsTaken) {
    const Settings& settings = ReadWith(
        "[DIRECTORIES]\nAPPDIR=C:\\APP\nDATADIR=C:\\DATA\\\nDATAFILE=MINE.MDB\nTABLE=COMPS\n"
        "CURRDATADIR=Z:\\home\\data\nCURRDATABOOK=LAST.MDB\n"
        "[CONFIG]\nMDBFILEPATH=0\nSPLASH1=1\nSPLASH2=a\nLAUNCHKRN=1\nADDZEROES=0\n500REC=0\n"
        "[PRODUCT INFO]\nCOMPANY NAME=Ashby Appraisals\n[PROGRAM ALIAS]\nZENVORA=Comps\n");
    EXPECT_EQ(settings.applicationDirectory, "C:\\APP\\");
    EXPECT_EQ(settings.dataDirectory, "C:\\DATA\\");
    EXPECT_EQ(settings.dataFile, "MINE.MDB");
    EXPECT_EQ(session_.table, "COMPS");
    EXPECT_EQ(settings.currentDirectory, "Z:\\home\\data");
    EXPECT_EQ(settings.currentFile, "LAST.MDB");
    EXPECT_EQ(settings.splash1, "1");
    EXPECT_EQ(settings.splash2, "A");
    EXPECT_EQ(settings.launchChoice, "1");
    EXPECT_FALSE(settings.addZeroes);
    EXPECT_FALSE(settings.notice500);
    EXPECT_EQ(settings.companyName, "Ashby Appraisals");
    EXPECT_EQ(settings.programAlias, "Comps");
}

TEST_F(Globals, AFixedFilePathIgnoresTheDatabookLastOpened) {
    const Settings& settings = ReadWith(
        "[DIRECTORIES]\nCURRDATADIR=Z:\\home\\data\nCURRDATABOOK=LAST.MDB\n[CONFIG]\nMDBFILEPATH=1\n");
    EXPECT_EQ(settings.currentDirectory, "C:\\ZVR\\DATA\\");
    EXPECT_EQ(settings.currentFile, "ZVR.MDB");
}

TEST_F(Globals, OnlyTheTextZeroTurnsASettingOff) {
    EXPECT_TRUE(ReadWith("[CONFIG]\nADDZEROES=\n").addZeroes);
    EXPECT_FALSE(ReadWith("[CONFIG]\nADDZEROES=0\n").addZeroes);
    EXPECT_TRUE(ReadWith("[CONFIG]\nADDZEROES=no\n").addZeroes);
}

TEST_F(Globals, AnEmptyWindowsDirectoryLeavesEveryPathRelative) {
    test_.machine.windowsDirectory = "";
    ReadGlobals(session_);
    EXPECT_EQ(session_.settings.windowsDirectory, "");
    EXPECT_EQ(session_.settings.drive, "");
    EXPECT_EQ(session_.settings.settingsFile, "\\Appraise\\ZVR.INI");
}

TEST_F(Globals, ASettingsFileInTheAppraiseDirectoryHasAUsablePath) {
    ReadWith("[CONFIG]\n");
    EXPECT_EQ(TagSubstituteDirectory(session_, "<IniDir>Zvr.ini"), "C:\\APPRAISE\\ZVR.INI");
    EXPECT_EQ(TagSubstituteDirectory(session_, "<AppraiseDir>Zvr.ini"), "C:\\APPRAISE\\ZVR.INI");
    EXPECT_EQ(TagSubstituteDirectory(session_, "<Appraise>Zvr.ini|"), "C:\\APPRAISE\\ZVR.INI");
    EXPECT_EQ(TagSubstituteDirectory(session_, " < inifile > zvr.ini "), "C:\\APPRAISE\\ZVR.INI");
}

TEST_F(Globals, TheOtherTokensGivePathsWithABar) {
    ReadGlobals(session_);
    EXPECT_EQ(TagSubstituteDirectory(session_, "<WINDIR>ATLAS.INI"), "C:\\WINDOWS\\ATLAS.INI|");
    EXPECT_EQ(TagSubstituteDirectory(session_, "<WinSys>a.ini"), "C:\\WINDOWS\\SYSTEM32\\A.INI|");
    EXPECT_EQ(TagSubstituteDirectory(session_, "<WINSYSDIR>a.ini"), "C:\\WINDOWS\\SYSTEM32\\A.INI|");
    EXPECT_EQ(TagSubstituteDirectory(session_, "<WINDIR>a.ini|Rest"), "C:\\WINDOWS\\A.INI|Rest|");
    EXPECT_EQ(TagSubstituteDirectory(session_, "<QUINDARINIFILE>x"), "C:\\APPRAISE\\QUINDAR.INI");
    EXPECT_EQ(TagSubstituteDirectory(session_, "<NONE>a.ini"), "");
    EXPECT_EQ(TagSubstituteDirectory(session_, ""), "");
}

TEST_F(Globals, ASettingsFileThatIsNotThereOrEmptyHasNoUsablePath) {
    ReadGlobals(session_);
    EXPECT_EQ(TagSubstituteDirectory(session_, "<IniDir>Zvr.ini"), "C:\\WINDOWS\\ZVR.INI|");
    ReadWith("");
    EXPECT_EQ(TagSubstituteDirectory(session_, "<IniDir>Zvr.ini"), "C:\\WINDOWS\\ZVR.INI|");
}

TEST_F(Globals, UnderTheVistaFlagTheSettingsFileHasNoUsablePath) {
    ReadWith("[CONFIG]\n");
    test_.machine.version = shell::OsVersion{6, 1, 2, "Service Pack 1"};
    EXPECT_EQ(TagSubstituteDirectory(session_, "<IniDir>Zvr.ini"), "C:\\APPRAISE\\ZVR.INI");
    EXPECT_TRUE(IsVista(session_));
    EXPECT_EQ(TagSubstituteDirectory(session_, "<IniDir>Zvr.ini"), "C:\\ZVR.INI|");
}

TEST_F(Globals, TheFileOfTheAppraisalProgramIsSoughtInBothDirectories) {
    ReadGlobals(session_);
    EXPECT_EQ(KrnIniDir(session_), "");
    EXPECT_EQ(TagSubstituteDirectory(session_, "<KRNINIDIR>krn.ini"), "KRN.INI|");
    test_.driveC.Write("Appraise/KRN.INI", "x");
    EXPECT_EQ(KrnIniDir(session_), "\\Appraise\\");
    EXPECT_EQ(TagSubstituteDirectory(session_, "<KRNINIDIR>krn.ini"), "\\Appraise\\KRN.INI|");
    test_.driveC.Write("WINDOWS/KRN.INI", "x");
    EXPECT_EQ(KrnIniDir(session_), "C:\\WINDOWS\\Krn.ini");
    test_.machine.version = shell::OsVersion{6, 0, 2, {}};
    EXPECT_EQ(KrnIniDir(session_), "\\Appraise\\");
}

TEST_F(Globals, TheVersionTextFollowsTheNumbers) {
    const auto text = [&](int major, int minor, int platform, std::string pack = {}) {
        test_.machine.version = shell::OsVersion{major, minor, platform, std::move(pack)};
        return OsVersionText(session_);
    };
    EXPECT_EQ(text(3, 51, 2), "Windows NT 3.x");
    EXPECT_EQ(text(3, 1, 0), "Windows 3.x");
    EXPECT_EQ(text(4, 0, 2), "Windows NT 4.0");
    EXPECT_EQ(text(4, 0, 1), "Windows 95");
    EXPECT_EQ(text(4, 10, 1), "Windows 98/Windows ME");
    EXPECT_EQ(text(5, 0, 2, "Service Pack 4"), "Windows 2000 Service Pack 4");
    EXPECT_EQ(text(5, 1, 2, std::string("Service Pack 3\0\0", 16)), "Windows XP Service Pack 3");
    EXPECT_EQ(text(5, 2, 2), "");
    EXPECT_EQ(text(6, 0, 2), "Windows Vista");
    EXPECT_EQ(text(10, 0, 2), "Unknown Windows Version");
    test_.machine.version.reset();
    EXPECT_EQ(OsVersionText(session_), "");
}

TEST_F(Globals, EveryVersionOfMajorNumberSixIsVista) {
    test_.machine.version = shell::OsVersion{6, 1, 2, "Service Pack 1"};
    EXPECT_EQ(OsVersionText(session_), "Windows Vista Service Pack 1");
    EXPECT_TRUE(session_.vistaFlag);
    EXPECT_TRUE(IsVista(session_));
    test_.machine.version = shell::OsVersion{10, 0, 2, {}};
    EXPECT_FALSE(IsVista(session_));
    EXPECT_FALSE(session_.vistaFlag);
}

}  // namespace
}  // namespace zenvora::common
