#include "platform/files/whole_file.h"

#include <gtest/gtest.h>

#include "platform/fault.h"
#include "support/fault_of.h"
#include "support/faulty_disk.h"
#include "support/temp_folder.h"

namespace zenvora::files {
namespace {

using testing_support::FaultOf;
using testing_support::FaultyDisk;
using testing_support::TempFolder;

long CountEntries(const TempFolder& folder) {
    return std::distance(std::filesystem::directory_iterator(folder.Path()),
                         std::filesystem::directory_iterator());
}

TEST(WholeFile, IsReadAsItWasWritten) {
    const TempFolder folder;
    const std::string bytes("a\0\r\n\xFF", 5);
    WriteWholeFile(folder / "a", bytes);
    EXPECT_EQ(ReadWholeFile(folder / "a"), bytes);
    EXPECT_EQ(CountEntries(folder), 1);
    WriteWholeFile(folder / "a", "");
    EXPECT_EQ(ReadWholeFile(folder / "a"), "");
}

TEST(WholeFile, ReplacesWithoutATraceWhenNothingIsToBeKept) {
    const TempFolder folder;
    folder.Write("a", "old");
    WriteWholeFile(folder / "a", "new");
    EXPECT_EQ(folder.Read("a"), "new");
    EXPECT_EQ(CountEntries(folder), 1);
}

TEST(WholeFile, KeepsTheReplacedFileAsBak) {
    const TempFolder folder;
    WriteWholeFile(folder / "LISTINGS.map", "first", Replaced::KeptAsBak);
    EXPECT_EQ(CountEntries(folder), 1);
    WriteWholeFile(folder / "LISTINGS.map", "second", Replaced::KeptAsBak);
    EXPECT_EQ(folder.Read("LISTINGS.map.bak"), "first");
    WriteWholeFile(folder / "LISTINGS.map", "third", Replaced::KeptAsBak);
    EXPECT_EQ(folder.Read("LISTINGS.map"), "third");
    EXPECT_EQ(folder.Read("LISTINGS.map.bak"), "second");
    EXPECT_EQ(CountEntries(folder), 2);
}

TEST(WholeFile, KeepsThePermissionsOfTheReplacedFile) {
    const TempFolder folder;
    folder.Write("a", "old");
    const auto mine = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
    std::filesystem::permissions(folder / "a", mine);
    WriteWholeFile(folder / "a", "new", Replaced::KeptAsBak);
    EXPECT_EQ(std::filesystem::status(folder / "a").permissions(), mine);
}

TEST(WholeFile, WritesThroughALink) {
    const TempFolder folder;
    folder.Write("real", "old");
    std::filesystem::create_symlink("real", folder / "link");
    WriteWholeFile(folder / "link", "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(folder.Read("real"), "new");
}

TEST(WholeFile, StepsOverWhatACrashLeftBehind) {
    const TempFolder folder;
    folder.Write("a.new0", "half a file");
    WriteWholeFile(folder / "a", "whole");
    EXPECT_EQ(folder.Read("a"), "whole");
    EXPECT_EQ(folder.Read("a.new0"), "half a file");
}

TEST(WholeFile, CopiesPieceByPiece) {
    const TempFolder folder;
    std::string large((std::size_t{5} << 19U) + 7, 'x');  // two pieces and a half
    for (std::size_t at = 0; at < large.size(); at += 1000) {
        large[at] = static_cast<char>('a' + at / 1000 % 26);
    }
    folder.Write("from", large);
    folder.Write("to", "old");
    CopyWholeFile(folder / "from", folder / "to", Replaced::KeptAsBak);
    EXPECT_EQ(folder.Read("to"), large);
    EXPECT_EQ(folder.Read("to.bak"), "old");
    folder.Write("empty", "");
    CopyWholeFile(folder / "empty", folder / "to");
    EXPECT_EQ(folder.Read("to"), "");
}

TEST(WholeFile, FaultsAreTheDisks) {
    const TempFolder folder;
    folder.Write("file", "x");
    EXPECT_EQ(FaultOf([&] { static_cast<void>(ReadWholeFile(folder / "none")); }), fault::kFileNotFound);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(ReadWholeFile(folder.Path())); }), fault::kPathAccess);
    EXPECT_EQ(FaultOf([&] { WriteWholeFile(folder / "none/a", "x"); }), fault::kPathNotFound);
    EXPECT_EQ(FaultOf([&] { WriteWholeFile(folder / "file/a", "x"); }), fault::kPathNotFound);
    std::filesystem::create_directory(folder / "directory");
    EXPECT_EQ(FaultOf([&] { WriteWholeFile(folder / "directory", "x"); }), fault::kPathAccess);
    EXPECT_EQ(FaultOf([&] { CopyWholeFile(folder / "none", folder / "file"); }), fault::kFileNotFound);
    EXPECT_EQ(folder.Read("file"), "x");
    EXPECT_EQ(CountEntries(folder), 2);  // no new file left behind
}

TEST(WholeFile, FaultsNameTheFileThatIsWrittenAndNotTheNewOneBesideIt) {
    const TempFolder folder;
    std::filesystem::create_directory(folder / "directory");
    for (const char* name : {"none/a", "directory"}) {
        const std::string path = (folder / name).string();
        try {
            WriteWholeFile(path, "x");
            ADD_FAILURE() << name << " was written";
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.place.file, path);
            EXPECT_NE(fault.description.find('"' + path + '"'), std::string::npos) << fault.description;
            EXPECT_EQ(fault.description.find(".new"), std::string::npos) << fault.description;
        }
    }
}

TEST(WholeFile, PowerCutAnywhereLeavesTheOldFileOrTheNewOne) {
    bool written = false;
    for (long n = 1; !written; ++n) {
        const TempFolder folder;
        folder.Write("a", "old");
        folder.Write("a.bak", "older");
        FaultyDisk disk(n);
        try {
            WriteWholeFile(folder / "a", "new", Replaced::KeptAsBak, disk);
            written = true;
        } catch (const Fault&) {
            ASSERT_TRUE(disk.WasCut());
        }
        const std::string now = folder.Read("a");
        const std::string bak = folder.Read("a.bak");
        EXPECT_TRUE(now == "new" || (!written && now == "old")) << "cut at " << n << ": " << now;
        // Whatever is in the file, the text before it is not lost.
        EXPECT_TRUE(bak == "old" || (now == "old" && bak == "older")) << "cut at " << n << ": " << bak;
        ASSERT_LT(n, 100);
    }
}

}  // namespace
}  // namespace zenvora::files
