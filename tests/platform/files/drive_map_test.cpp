#include "platform/files/drive_map.h"

#include <gtest/gtest.h>

#include "platform/fault.h"
#include "platform/files/host_path.h"
#include "platform/files/whole_file.h"
#include "support/temp_folder.h"

namespace zenvora::files {
namespace {

using testing_support::TempFolder;

class Drives : public testing::Test {
  protected:
    TempFolder folder_;
    DriveMap drives_{folder_.Path()};
    [[nodiscard]] std::string Host(std::string_view text) const {
        return drives_.HostPath(text).lexically_relative(folder_.Path()).string();
    }
};

TEST_F(Drives, CIsTheProgramsOwnFolder) {
    EXPECT_EQ(Host("C:\\ZVR\\NEWDATA.MDB"), "ZVR/NEWDATA.MDB");
    EXPECT_EQ(Host("c:\\ZVR"), "ZVR");
    EXPECT_EQ(drives_.HostPath("C:\\"), folder_.Path());
    EXPECT_EQ(drives_.HostPath("C:"), folder_.Path());
}

TEST_F(Drives, APathWithoutADriveIsOnC) {
    EXPECT_EQ(Host("\\Appraise"), "Appraise");
    EXPECT_EQ(Host("\\Appraise\\ZVR.INI"), "Appraise/ZVR.INI");
    EXPECT_EQ(Host("ZVR.INI"), "ZVR.INI");
    EXPECT_EQ(drives_.HostPath(""), folder_.Path());
}

TEST_F(Drives, ZIsTheRootOfTheHost) {
    EXPECT_EQ(drives_.HostPath("Z:\\no-such-folder\\x"), "/no-such-folder/x");
    EXPECT_EQ(drives_.HostPath("z:\\"), "/");
    const auto file = folder_.Write("Listings.csv", "x");
    EXPECT_EQ(drives_.HostPath(DriveMap::TextPath(file)), file);
}

TEST_F(Drives, OtherLettersAreNoDrives) {
    for (const char* path : {"D:\\DATA", "A:", "1:\\x"}) {
        try {
            static_cast<void>(drives_.HostPath(path));
            ADD_FAILURE() << path;
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.number, fault::kPathNotFound);
            EXPECT_EQ(fault.place.file, path);
        }
    }
}

TEST_F(Drives, AnExactNameWinsOverOneInAnotherCase) {
    folder_.Write("zvr.ini", "lower");
    folder_.Write("ZVR.INI", "upper");
    EXPECT_EQ(Host("C:\\ZVR.INI"), "ZVR.INI");
    EXPECT_EQ(Host("C:\\zvr.ini"), "zvr.ini");
}

TEST_F(Drives, EachComponentIsFoundWithoutRegardToCase) {
    folder_.Write("Appraise/Data/Listings.Mdb", "x");
    EXPECT_EQ(Host("C:\\APPRAISE\\DATA\\LISTINGS.MDB"), "Appraise/Data/Listings.Mdb");
    EXPECT_EQ(Host("\\appraise\\data"), "Appraise/Data");
    folder_.Write("Ca\xC3\xB1on.mdb", "x");
    EXPECT_EQ(Host("C:\\CA\xC3\x91ON.MDB"), "Ca\xC3\xB1on.mdb");
}

TEST_F(Drives, OfSeveralCasesTheFirstInByteOrderIsTaken) {
    folder_.Write("Data.mdb", "x");
    folder_.Write("data.mdb", "x");
    folder_.Write("DATA.mdb", "x");
    EXPECT_EQ(Host("C:\\DATA.MDB"), "DATA.mdb");
}

TEST_F(Drives, ANewNameKeepsItsCase) {
    folder_.Write("Zvr/old.txt", "x");
    EXPECT_EQ(Host("C:\\ZVR\\New File.Txt"), "Zvr/New File.Txt");
    EXPECT_EQ(Host("C:\\Nowhere\\OLD.TXT"), "Nowhere/OLD.TXT");
    EXPECT_EQ(Host("C:\\ZVR\\OLD.TXT\\Below"), "Zvr/old.txt/Below");
}

TEST_F(Drives, ALinkThatLeadsNowhereIsStillAName) {
    std::filesystem::create_symlink("nowhere", folder_ / "Link");
    EXPECT_EQ(Host("C:\\LINK"), "Link");
}

TEST_F(Drives, SlashesDotsAndDoubledSeparatorsAreWorkedOut) {
    EXPECT_EQ(Host("C:/ZVR/DATA"), "ZVR/DATA");
    EXPECT_EQ(Host("C:\\\\ZVR\\\\DATA\\"), "ZVR/DATA");
    EXPECT_EQ(Host("C:\\ZVR\\.\\DATA"), "ZVR/DATA");
    EXPECT_EQ(Host("C:\\ZVR\\..\\DATA"), "DATA");
}

TEST_F(Drives, NoPathLeavesItsDrive) {
    EXPECT_EQ(Host("C:\\..\\..\\etc\\x"), "etc/x");
}

TEST(TextPath, IsTheHostPathOnZ) {
    EXPECT_EQ(DriveMap::TextPath("/home/ann/LISTINGS.CSV"), "Z:\\home\\ann\\LISTINGS.CSV");
    EXPECT_EQ(DriveMap::TextPath("/"), "Z:\\");
    EXPECT_EQ(DriveMap::TextPath("/a/../b"), "Z:\\b");
    EXPECT_EQ(DriveMap::TextPath("x.csv"), DriveMap::TextPath(std::filesystem::current_path() / "x.csv"));
}

TEST(TextPath, RefusesANameWithABackslash) {
    try {
        static_cast<void>(DriveMap::TextPath("/home/a\\b"));
        ADD_FAILURE();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kPathAccess);
    }
}

TEST(DriveCFolder, TakesTheFirstThatIsSet) {
    EXPECT_EQ(DriveCFolder("/opt/zvr", "/data", "/home/ann"), "/opt/zvr");
    EXPECT_EQ(DriveCFolder("", "/data", "/home/ann"), "/data/zenvora");
    EXPECT_EQ(DriveCFolder("", "", "/home/ann"), "/home/ann/.local/share/zenvora");
    EXPECT_EQ(DriveCFolder("", "relative", "/home/ann"), "/home/ann/.local/share/zenvora");
    EXPECT_EQ(DriveCFolder("here", "", ""), std::filesystem::current_path() / "here");
    EXPECT_TRUE(DriveCFolder().is_absolute());
}

TEST(DriveMap, NowhereHoldsNothingAndTakesNothing) {
    const auto path = DriveMap::Nowhere().HostPath("C:\\Appraise\\ZVR.INI");
    EXPECT_FALSE(PathExists(path));
    EXPECT_THROW(WriteWholeFile(path, "x"), Fault);
    EXPECT_THROW(MakeHostDirectory(DriveMap::Nowhere().HostPath("C:\\Appraise")), Fault);
}

}  // namespace
}  // namespace zenvora::files
