#include "platform/ini/profiles.h"

#include <gtest/gtest.h>

#include "support/faulty_disk.h"
#include "support/temp_folder.h"

namespace zenvora::ini {
namespace {

using testing_support::FaultyDisk;
using testing_support::TempFolder;

bool SetK(Document& document) {
    return document.Set("A", "K", "new");
}

TEST(IniProfiles, MakesAFileButNotItsFolder) {
    const TempFolder folder;
    Profiles profiles;
    EXPECT_TRUE(profiles.Change(folder / "ZVR.INI", SetK));
    EXPECT_EQ(folder.Read("ZVR.INI"), "[A]\r\nK=new\r\n");
    EXPECT_FALSE(profiles.Change(folder / "none/ZVR.INI", SetK));
    EXPECT_FALSE(std::filesystem::exists(folder / "none"));
}

TEST(IniProfiles, SeesWhatAnotherProgramHasWrittenAtOnce) {
    const TempFolder folder;
    Profiles profiles;
    const auto path = folder.Write("ZVR.INI", "[A]\nK=1\n");
    EXPECT_EQ(profiles.Look(path).Find("A", "K"), "1");
    // Of the same length, within the same tick of the clock of the disk.
    folder.Write("ZVR.INI", "[A]\nK=2\n");
    EXPECT_EQ(profiles.Look(path).Find("A", "K"), "2");
    EXPECT_TRUE(profiles.Change(path, [](Document& document) { return document.Set("A", "L", "3"); }));
    EXPECT_EQ(folder.Read("ZVR.INI"), "[A]\nK=2\nL=3\n");
    std::filesystem::remove(path);
    EXPECT_EQ(profiles.Look(path).Find("A", "K"), std::nullopt);
}

TEST(IniProfiles, WritesNothingWhenNothingChanges) {
    const TempFolder folder;
    Profiles profiles;
    EXPECT_TRUE(profiles.Change(folder / "ZVR.INI", [](Document&) { return false; }));
    EXPECT_FALSE(std::filesystem::exists(folder / "ZVR.INI"));
}

TEST(IniProfiles, NeverWritesOverAFileThatCannotBeRead) {
    const TempFolder folder;
    std::filesystem::create_directory(folder / "ZVR.INI");
    Profiles profiles;
    EXPECT_EQ(profiles.Look(folder / "ZVR.INI").Bytes(), "");
    EXPECT_FALSE(profiles.Change(folder / "ZVR.INI", SetK));
    EXPECT_TRUE(std::filesystem::is_directory(folder / "ZVR.INI"));
}

TEST(IniProfiles, AFileIsTheOldOneOrTheNewOneWheneverTheDiskFails) {
    int cuts = 0;
    for (long failAt = 1;; ++failAt) {
        const TempFolder folder;
        const auto path = folder.Write("ZVR.INI", "[A]\nK=old\n");
        FaultyDisk disk(failAt);
        Profiles profiles(disk);
        const bool stored = profiles.Change(path, SetK);
        const std::string now = folder.Read("ZVR.INI");
        EXPECT_TRUE(now == "[A]\nK=old\n" || now == "[A]\nK=new\n") << now;
        EXPECT_EQ(profiles.Look(path).Bytes(), now);
        if (!disk.WasCut()) {
            EXPECT_TRUE(stored);
            EXPECT_EQ(now, "[A]\nK=new\n");
            break;
        }
        ++cuts;
        EXPECT_FALSE(stored);
    }
    EXPECT_GE(cuts, 3);
}

}  // namespace
}  // namespace zenvora::ini
