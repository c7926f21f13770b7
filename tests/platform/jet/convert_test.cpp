#include "platform/jet/convert.h"

#include <gtest/gtest.h>

#include "access97_file.h"
#include "platform/fault.h"
#include "platform/jet/detail/file_guard.h"
#include "platform/jet/verify.h"
#include "sample_table.h"
#include "support/temp_folder.h"
#include "table_contents.h"

namespace zenvora::jet {
namespace {

using testing_support::ContentsOf;
using testing_support::kNow;
using testing_support::MemoryDisk;
using zenvora::testing_support::TempFolder;

TEST(Convert, BringsEveryValueIntoTheNewerFormat) {
    MemoryDisk disk;
    disk.Put("old.mdb", std::move(testing_support::SampleFile97().Bytes()));
    const auto original = disk.Content("old.mdb");
    std::map<std::string, std::vector<std::vector<std::string>>> before;
    {
        const auto database = Database::Open("old.mdb", Database::Access::ReadOnly, disk);
        before = ContentsOf(*database, false);
    }
    const RewriteReport report = Convert("old.mdb", kNow, disk);
    EXPECT_EQ(report.backup, "old.mdb.bak");
    EXPECT_EQ(disk.Content("old.mdb.bak"), original);
    ASSERT_EQ(report.contents.tables.size(), 1U);
    EXPECT_EQ(report.contents.tables[0].name, "Sales");
    EXPECT_EQ(report.contents.tables[0].rows, 4U);
    const auto database = Database::Open("old.mdb", Database::Access::ReadWrite, disk);
    EXPECT_EQ(ContentsOf(*database, false), before);
    Table& sales = database->OpenTable("Sales");
    EXPECT_TRUE(testing_support::IndexesNameEachRow(sales));
    EXPECT_TRUE(sales.Definition().columns[2].properties.required);
    EXPECT_EQ(sales.Definition().columns[2].name, "Pri\xC3\xA9");
    // CHAR(4): two bytes a character now.
    EXPECT_EQ(sales.Definition().columns[4].byteLength, 8);
    EXPECT_TRUE(sales.Definition().columns[4].fixedLength);
    EXPECT_TRUE(Verify("old.mdb", disk).Sound());
}

TEST(Convert, LeavesAFileThatCanBeWritten) {
    MemoryDisk disk;
    disk.Put("old.mdb", std::move(testing_support::SampleFile97().Bytes()));
    Convert("old.mdb", kNow, disk);
    {
        const auto database = Database::Open("old.mdb", Database::Access::ReadWrite, disk);
        Table& sales = database->OpenTable("Sales");
        std::vector<Value> row(sales.Definition().columns.size());
        row[0] = "99 New St";
        row[1] = std::string(5000, 's');
        row[2] = 1.5;
        row[4] = "XY";
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (sales.Definition().columns[i].type == ColumnType::Boolean) row[i] = true;
        }
        sales.Insert(row);
    }
    EXPECT_TRUE(Verify("old.mdb", disk).Sound());
}

TEST(Convert, RefusesWhatIsInTheNewerFormatAlready) {
    MemoryDisk disk;
    static_cast<void>(Database::Create("b.mdb", kNow, disk));
    const auto before = disk.Content("b.mdb");
    try {
        Convert("b.mdb", kNow, disk);
        ADD_FAILURE() << "converted";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kUnsupported);
        EXPECT_EQ(fault.place.file, "b.mdb");
    }
    EXPECT_EQ(disk.Content("b.mdb"), before);
    EXPECT_FALSE(disk.Exists("b.mdb.bak"));
}

TEST(Convert, RefusesWhatAnotherProgramIsWriting) {
    const TempFolder folder;
    const auto bytes = testing_support::SampleFile97().Bytes();
    const auto path = folder.Write("old.mdb", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    const std::shared_ptr<files::HostFile> file = files::SystemDisk().Open(path, files::OpenMode::ReadWrite);
    const detail::WriterGuard writer(files::SystemDisk(), path, file);
    try {
        Convert(path, kNow);
        ADD_FAILURE() << "converted";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kInUse);
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "old.mdb.bak"));
}

}  // namespace
}  // namespace zenvora::jet
