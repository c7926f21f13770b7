#include "platform/files/host_path.h"

#include <gtest/gtest.h>

#include "platform/fault.h"
#include "support/fault_of.h"
#include "support/temp_folder.h"

namespace zenvora::files {
namespace {

using testing_support::FaultOf;
using testing_support::TempFolder;

TEST(FileExists, CountsAnEmptyFileAsAbsent) {
    const TempFolder folder;
    EXPECT_FALSE(FileExists(folder.Write("empty", "")));
    EXPECT_TRUE(FileExists(folder.Write("one", "x")));
}

TEST(FileExists, IsFalseForNoSuchFileOrFolderAndForADirectory) {
    const TempFolder folder;
    folder.Write("file", "x");
    EXPECT_FALSE(FileExists(folder / "none"));
    EXPECT_FALSE(FileExists(folder / "none/x"));
    EXPECT_FALSE(FileExists(folder / "file/x"));
    EXPECT_FALSE(FileExists(folder.Path()));
}

TEST(FileExists, FaultsOnOtherTroubles) {
    const TempFolder folder;
    EXPECT_EQ(FaultOf([&] { static_cast<void>(FileExists(folder / std::string(300, 'n'))); }),
              fault::kPathAccess);
}

TEST(PathExists, SeesFilesAndDirectories) {
    const TempFolder folder;
    EXPECT_TRUE(PathExists(folder.Path()));
    EXPECT_TRUE(PathExists(folder.Write("empty", "")));
    EXPECT_FALSE(PathExists(folder / "none"));
}

TEST(MakeHostDirectory, MakesOneAndOnlyOne) {
    const TempFolder folder;
    MakeHostDirectory(folder / "new");
    EXPECT_TRUE(std::filesystem::is_directory(folder / "new"));
    EXPECT_EQ(FaultOf([&] { MakeHostDirectory(folder / "new"); }), fault::kPathAccess);
    EXPECT_EQ(FaultOf([&] { MakeHostDirectory(folder / "none/new"); }), fault::kPathNotFound);
}

}  // namespace
}  // namespace zenvora::files
