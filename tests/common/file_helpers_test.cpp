#include "common/file_helpers.h"

#include <gtest/gtest.h>

#include "platform/fault.h"
#include "support/temp_folder.h"
#include "support/test_session.h"

namespace zenvora::common {
namespace {

using controls::Answer;
using testing_support::TempFolder;
using testing_support::TestSession;

class Files : public testing::Test {
  protected:
    TempFolder folder_;
    files::DriveMap drives_{folder_.Path()};
    TestSession test_;
};

TEST_F(Files, AnEmptyFileIsAbsent) {
    folder_.Write("ZVR/EMPTY.INI", "");
    folder_.Write("ZVR/ZVR.INI", "x");
    EXPECT_FALSE(FileExists(test_.session, drives_, "C:\\ZVR\\EMPTY.INI"));
    EXPECT_TRUE(FileExists(test_.session, drives_, "C:\\ZVR\\ZVR.INI"));
    EXPECT_TRUE(FileExists(test_.session, drives_, "\\zvr\\zvr.ini"));
    EXPECT_FALSE(FileExists(test_.session, folder_ / "ZVR/EMPTY.INI"));
    EXPECT_TRUE(FileExists(test_.session, folder_ / "ZVR/ZVR.INI"));
}

TEST_F(Files, NoFileNoFolderAndNoDriveAreAbsentWithoutAMessage) {
    EXPECT_FALSE(FileExists(test_.session, drives_, "C:\\NONE.INI"));
    EXPECT_FALSE(FileExists(test_.session, drives_, "C:\\NONE\\NONE.INI"));
    EXPECT_FALSE(FileExists(test_.session, drives_, "Q:\\NONE.INI"));
    EXPECT_FALSE(FileExists(test_.session, drives_, "C:\\"));
    EXPECT_FALSE(FileExists(test_.session, folder_ / "none/none"));
}

TEST_F(Files, OtherTroublesOfFileExistsTakeTheErrorRule) {
    try {
        static_cast<void>(FileExists(test_.session, folder_ / std::string(300, 'n')));
        ADD_FAILURE();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kPathAccess);
    }
    EXPECT_EQ(test_.session.lastProcedure, "FileExists");
}

TEST_F(Files, MakeDirectoryTellsAndMakesIt) {
    test_.desktop.Expect("Creating directory C:\\ZVR.");
    MakeDirectory(test_.session, drives_, " C:\\ZVR\\ ");
    EXPECT_TRUE(std::filesystem::is_directory(folder_ / "ZVR"));
    ASSERT_EQ(test_.desktop.messages.size(), 1U);
    EXPECT_EQ(test_.desktop.messages[0].title, "Creating Directory");
    EXPECT_EQ(test_.desktop.messages[0].buttons, controls::Buttons::Ok);
}

TEST_F(Files, MakeDirectoryIsSilentWhenItIsThere) {
    std::filesystem::create_directory(folder_ / "Zvr");
    MakeDirectory(test_.session, drives_, "C:\\ZVR");
    MakeDirectory(test_.session, drives_, "C:");
    MakeDirectory(test_.session, drives_, "C:\\");
    EXPECT_TRUE(test_.desktop.messages.empty());
}

TEST_F(Files, MakeDirectoryGivesABareDriveItsBackslashBack) {
    const files::DriveMap absent(folder_ / "drive");
    test_.desktop.Expect("Creating directory C:\\.");
    MakeDirectory(test_.session, absent, "C:\\");
    EXPECT_TRUE(std::filesystem::is_directory(folder_ / "drive"));
}

TEST_F(Files, MakeDirectoryMakesNothingWithoutOk) {
    test_.desktop.ExpectAny(Answer::Cancel);
    MakeDirectory(test_.session, drives_, "C:\\ZVR");
    EXPECT_FALSE(std::filesystem::exists(folder_ / "ZVR"));
}

TEST_F(Files, MakeDirectoryFaultsWithoutAParent) {
    test_.desktop.Expect("Creating directory C:\\NONE\\DATA.");
    try {
        MakeDirectory(test_.session, drives_, "C:\\NONE\\DATA");
        ADD_FAILURE();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kPathNotFound);
    }
}

TEST_F(Files, ChooseFileShowsTheOpenDialog) {
    test_.desktop.ExpectFile("/data/LISTINGS.CSV");
    EXPECT_EQ(ChooseFile(test_.desktop, "Open Databook", "/data", "OLD.CSV", "CSV Files (*.csv)|*.csv"),
              "/data/LISTINGS.CSV");
    ASSERT_EQ(test_.desktop.dialogs.size(), 1U);
    const controls::FileDialog& dialog = test_.desktop.dialogs[0];
    EXPECT_EQ(dialog.title, "Open Databook");
    EXPECT_EQ(dialog.directory, "/data");
    EXPECT_EQ(dialog.fileName, "OLD.CSV");
    EXPECT_EQ(dialog.filter, "CSV Files (*.csv)|*.csv");
    EXPECT_FALSE(dialog.forSaving);
}

TEST_F(Files, ChooseFileIsEmptyWhenTheUserCancels) {
    test_.desktop.ExpectFile("");
    EXPECT_EQ(ChooseFile(test_.desktop, "t", "", "", ""), "");
}

TEST(ChooseFile, IsEmptyWhenTheDialogFails) {
    class FailingDesktop final : public controls::Desktop {
      public:
        Answer Show(const controls::MessageBox& /*message*/) override { return Answer::Ok; }
        std::string Choose(const controls::FileDialog& /*dialog*/) override {
            throw Fault(fault::kPathNotFound, "gone");
        }
        void SetHourglass(bool /*on*/) override {}
    } desktop;
    EXPECT_EQ(ChooseFile(desktop, "t", "", "", ""), "");
}

struct Parts {
    const char* name;
    const char* path;
    const char* drive;
    const char* dir;
    const char* file;
    const char* ext;
};
class FileNames : public testing::TestWithParam<Parts> {};

TEST_P(FileNames, AreTakenApart) {
    const Parts& c = GetParam();
    std::string drive = "old";
    std::string dir = "old";
    std::string name = "old";
    std::string ext = "old";
    ParseFileName(c.path, drive, dir, name, ext);
    EXPECT_EQ(drive, c.drive);
    EXPECT_EQ(dir, c.dir);
    EXPECT_EQ(name, c.file);
    EXPECT_EQ(ext, c.ext);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, FileNames,
    testing::Values(Parts{"Whole", "c:\\data\\a.b.csv", "C:", "\\DATA\\", "A.B", "CSV"},
                    Parts{"NameOnly", "listings.csv", "", "", "LISTINGS", "CSV"},
                    Parts{"NoExtensionKeepsTheCallers", "C:\\DATA\\LISTINGS", "C:", "\\DATA\\", "LISTINGS",
                          "old"},
                    Parts{"DirectoryOnly", "C:\\DATA\\", "C:", "\\DATA\\", "", "old"},
                    Parts{"DriveOnly", "C:", "C:", "", "", "old"},
                    Parts{"RelativeDirectory", "data\\x.map", "", "DATA\\", "X", "MAP"},
                    Parts{"RelativeOnADrive", "c:x.map", "C:", "", "X", "MAP"},
                    Parts{"Blank", "   ", "", "", "", ""}, Parts{"Empty", "", "", "", "", ""},
                    Parts{"UpToTheBracketIsDropped", "[sub]x.map", "", "", "X", "MAP"},
                    Parts{"OnlyTheFirstBracket", "c:\\[a]\\b].c", "C:", "\\", "B]", "C"},
                    Parts{"PointAtTheEnd", "C:\\A.", "C:", "\\", "A", ""},
                    Parts{"PointInADirectory", "C:\\A.B\\NAME", "C:", "\\", "A", "B\\NAME"}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace zenvora::common
