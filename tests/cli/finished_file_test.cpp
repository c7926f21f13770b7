#include "cli/finished_file.h"

#include <fstream>
#include <gtest/gtest.h>

#include "platform/fault.h"
#include "support/temp_folder.h"

namespace zenvora::cli {
namespace {

namespace fs = std::filesystem;
using testing_support::TempFolder;

void Put(const fs::path& path, const char* text) {
    std::ofstream(path) << text;
}

TEST(FinishedFile, AppearsOnlyAtTheEnd) {
    const TempFolder folder;
    FinishedFile file(folder / "A.mdb", false);
    Put(file.Path(), "new");
    EXPECT_FALSE(fs::exists(folder / "A.mdb"));
    file.Finish();
    EXPECT_EQ(folder.Read("A.mdb"), "new");
    EXPECT_FALSE(fs::exists(file.Path()));
    EXPECT_FALSE(fs::exists(folder / "A.mdb.bak"));
}

TEST(FinishedFile, LeavesNothingWhenItIsNotFinished) {
    const TempFolder folder;
    folder.Write("A.mdb", "old");
    {
        const FinishedFile file(folder / "A.mdb", true);
        Put(file.Path(), "new");
    }
    EXPECT_EQ(folder.Read("A.mdb"), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
}

TEST(FinishedFile, FaultsNameTheTarget) {
    const TempFolder folder;
    const FinishedFile file(folder / "A.mdb", false);
    try {
        file.Make([](const fs::path& path) {
            Place place;
            place.file = path.string();
            throw Fault{fault::kDiskFull, "Cannot write \"" + path.string() + "\"", place};
        });
        FAIL() << "the fault was swallowed";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.description, "Cannot write \"" + (folder / "A.mdb").string() + "\"");
        EXPECT_EQ(fault.place.file, (folder / "A.mdb").string());
    }
}

TEST(FinishedFile, KeepsTheOneThatItReplaces) {
    const TempFolder folder;
    folder.Write("A.mdb", "old");
    folder.Write("A.mdb.bak", "older");
    FinishedFile file(folder / "A.mdb", true);
    Put(file.Path(), "new");
    file.Finish();
    EXPECT_EQ(folder.Read("A.mdb"), "new");
    EXPECT_EQ(folder.Read("A.mdb.bak"), "old");
}

TEST(FinishedFile, LeavesTheOldFileWhenTheNewOneCannotTakeItsPlace) {
    const TempFolder folder;
    folder.Write("A.mdb", "old");
    FinishedFile file(folder / "A.mdb", true);  // and nothing is made at its path
    EXPECT_THROW(file.Finish(), Fault);
    EXPECT_EQ(folder.Read("A.mdb"), "old");
}

TEST(FinishedFile, StepsAsideOfALeftOver) {
    const TempFolder folder;
    folder.Write("A.mdb.part1", "of a run that was killed");
    const FinishedFile file(folder / "A.mdb", false);
    EXPECT_NE(file.Path(), folder / "A.mdb.part1");
}

TEST(FinishedFile, ReplacesWhatALinkPointsAt) {
    const TempFolder folder;
    folder.Write("REAL.mdb", "old");
    fs::create_symlink("REAL.mdb", folder / "LINK.mdb");
    FinishedFile file(folder / "LINK.mdb", true);
    Put(file.Path(), "new");
    file.Finish();
    EXPECT_TRUE(fs::is_symlink(folder / "LINK.mdb"));
    EXPECT_EQ(folder.Read("REAL.mdb"), "new");
    EXPECT_EQ(folder.Read("REAL.mdb.bak"), "old");
}

}  // namespace
}  // namespace zenvora::cli
