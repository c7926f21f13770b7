#include "platform/jet/compact.h"

#include <gtest/gtest.h>

#include "access97_file.h"
#include "platform/fault.h"
#include "platform/jet/verify.h"
#include "sample_table.h"
#include "support/crash_disk.h"
#include "support/temp_folder.h"
#include "table_contents.h"

namespace zenvora::jet {
namespace {

using testing_support::ColumnOf;
using testing_support::ContentsOf;
using testing_support::kNow;
using testing_support::MemoryDisk;
using testing_support::SampleTable;
using testing_support::TextColumn;
using zenvora::testing_support::CrashDisk;
using zenvora::testing_support::TempFolder;

std::vector<Value> SampleRow(int i) {
    const auto number = static_cast<std::int32_t>(i);
    std::string note;
    if (i % 7 != 0) note = std::string(static_cast<std::size_t>(i % 5 == 0 ? 9000 : i % 90), 'n');
    Guid guid;
    guid.bytes[0] = static_cast<std::uint8_t>(i);
    Numeric exact;
    exact.scale = 2;
    exact.magnitude[15] = static_cast<std::uint8_t>(i);
    return {std::to_string(100000 + (i * 7919) % 90000) + " Oak St",
            i % 2 == 0,
            number % 256,
            number % 1000,
            i % 3 == 0 ? Value{Null{}} : Value{number},
            Currency{i * 12345LL},
            static_cast<float>(i) / 3.0F,
            i / 7.0,
            i % 11 == 0 ? Value{Null{}} : Value{DateTime{40000.25 + i}},
            i % 7 == 0 ? Value{Null{}} : Value{note},
            i % 4 == 0 ? Value{Bytes(static_cast<std::size_t>(i % 6000), std::byte{0x5A})} : Value{Null{}},
            guid,
            exact,
            "Tr\xC3\xB6y " + std::to_string(i % 10),
            i % 2 == 0 ? Value{"1"} : Value{Null{}},
            "12"};
}

NewTable NumberedTable() {
    NewTable table;
    table.name = "Numbered";
    table.columns = {ColumnOf("No", ColumnType::Long), TextColumn("What", 20)};
    table.columns[0].autoNumber = true;
    table.columns[1].properties.defaultValue = "\"none\"";
    return table;
}

/// A file with two tables, holes where rows were deleted and rows that moved.
void MakeBook(files::HostDisk& disk, const std::filesystem::path& path, int rows) {
    const auto database = Database::Create(path, kNow, disk);
    Table& sample = database->CreateTable(SampleTable(), kNow);
    Table& numbered = database->CreateTable(NumberedTable(), kNow);
    database->Begin();
    std::vector<RowId> ids;
    for (int i = 0; i < rows; ++i)
        ids.push_back(sample.Insert(SampleRow(i)));
    for (int i = 0; i < rows; i += 3)
        sample.Delete(ids[static_cast<std::size_t>(i)]);
    for (int i = 1; i < rows; i += 9) {
        std::vector<Value> row = SampleRow(i);
        row[13] = std::string(240, 'T');
        sample.Update(ids[static_cast<std::size_t>(i)], row);
    }
    for (int i = 0; i < 20; ++i)
        ids.push_back(numbered.Insert(std::vector<Value>{Null{}, "row " + std::to_string(i)}));
    numbered.Delete(ids.back());
    database->Commit();
}

std::map<std::string, std::vector<std::vector<std::string>>> Contents(files::HostDisk& disk,
                                                                      const std::filesystem::path& path) {
    const auto database = Database::Open(path, Database::Access::ReadOnly, disk);
    return ContentsOf(*database);
}

Fault CompactFault(files::HostDisk& disk, const std::filesystem::path& path) {
    try {
        Compact(path, kNow, disk);
    } catch (const Fault& fault) {
        return fault;
    }
    return {0, "compacted"};
}

TEST(Compact, KeepsEveryTableColumnIndexAndRow) {
    MemoryDisk disk;
    MakeBook(disk, "b.mdb", 700);
    const auto before = Contents(disk, "b.mdb");
    const RewriteReport report = Compact("b.mdb", kNow, disk);
    EXPECT_EQ(Contents(disk, "b.mdb"), before);
    ASSERT_EQ(report.contents.tables.size(), 2U);
    EXPECT_EQ(report.contents.tables[0].name, "Numbered");
    EXPECT_EQ(report.contents.tables[0].rows, 19U);
    EXPECT_EQ(report.contents.tables[1].name, "Sample");
    EXPECT_EQ(report.contents.tables[1].rows, 466U);  // 700 without every third
    EXPECT_TRUE(report.contents.leftBehind.empty());
    const auto database = Database::Open("b.mdb", Database::Access::ReadOnly, disk);
    for (const char* name : {"Sample", "Numbered"})
        EXPECT_TRUE(testing_support::IndexesNameEachRow(database->OpenTable(name))) << name;
    EXPECT_EQ(database->OpenTable("Sample").RowCount(), 466U);
    EXPECT_TRUE(Verify("b.mdb", disk).Sound());
}

TEST(Compact, KeepsTheOriginalByteForByte) {
    MemoryDisk disk;
    MakeBook(disk, "b.mdb", 60);
    const auto original = disk.Content("b.mdb");
    const RewriteReport report = Compact("b.mdb", kNow, disk);
    EXPECT_EQ(report.backup, "b.mdb.bak");
    EXPECT_EQ(disk.Content("b.mdb.bak"), original);
    EXPECT_EQ(report.bytesBefore, original.size());
    EXPECT_EQ(report.bytesAfter, disk.Content("b.mdb").size());
    EXPECT_FALSE(disk.Exists("b.mdb.new0"));
}

TEST(Compact, GivesBackTheRoomOfDeletedRows) {
    MemoryDisk disk;
    MakeBook(disk, "b.mdb", 900);
    {
        const auto database = Database::Open("b.mdb", Database::Access::ReadWrite, disk);
        Table& table = database->OpenTable("Sample");
        std::vector<RowId> ids;
        table.Scan([&](const RowView& view) {
            ids.push_back(view.Id());
            return true;
        });
        database->Begin();
        for (RowId id : ids)
            table.Delete(id);
        database->Commit();
    }
    const RewriteReport report = Compact("b.mdb", kNow, disk);
    // Sixteen pages of an empty file, a few of two tables without long values.
    EXPECT_LE(report.bytesAfter, 32U * 4096);
    EXPECT_GT(report.bytesBefore, 20 * report.bytesAfter);
}

TEST(Compact, PutsRowsIntoTheOrderOfThePrimaryKey) {
    MemoryDisk disk;
    MakeBook(disk, "b.mdb", 300);
    Compact("b.mdb", kNow, disk);
    const auto database = Database::Open("b.mdb", Database::Access::ReadOnly, disk);
    std::string last;
    database->OpenTable("Sample").Scan([&](const RowView& view) {
        std::string key;
        view.AppendText(0, key);
        EXPECT_LT(last, key);
        last = key;
        return true;
    });
}

TEST(Compact, GoesOnCountingWhereTheAutoNumberStood) {
    MemoryDisk disk;
    MakeBook(disk, "b.mdb", 3);
    Compact("b.mdb", kNow, disk);
    const auto database = Database::Open("b.mdb", Database::Access::ReadWrite, disk);
    Table& numbered = database->OpenTable("Numbered");
    // Twenty were given; the last one was deleted and is not given again.
    const RowId row = numbered.Insert(std::vector<Value>{Null{}, "next"});
    EXPECT_EQ(numbered.Read(row)[0], Value{std::int32_t{21}});
}

TEST(Compact, KeepsPropertiesByteForByte) {
    MemoryDisk disk;
    MakeBook(disk, "b.mdb", 3);
    std::string before;
    {
        const auto database = Database::Open("b.mdb", Database::Access::ReadOnly, disk);
        before = testing_support::PropertiesOf(*database, "Numbered");
        EXPECT_FALSE(before.empty());
    }
    Compact("b.mdb", kNow, disk);
    const auto database = Database::Open("b.mdb", Database::Access::ReadOnly, disk);
    EXPECT_EQ(testing_support::PropertiesOf(*database, "Numbered"), before);
}

TEST(Compact, LeavesAFileThatTakesNewRows) {
    MemoryDisk disk;
    MakeBook(disk, "b.mdb", 120);
    Compact("b.mdb", kNow, disk);
    {
        const auto database = Database::Open("b.mdb", Database::Access::ReadWrite, disk);
        Table& table = database->OpenTable("Sample");
        database->Begin();
        for (int i = 1000; i < 1100; ++i)
            table.Insert(SampleRow(i));
        database->Commit();
    }
    EXPECT_TRUE(Verify("b.mdb", disk).Sound());
}

TEST(Compact, CanBeDoneTwice) {
    MemoryDisk disk;
    MakeBook(disk, "b.mdb", 200);
    Compact("b.mdb", kNow, disk);
    const auto once = Contents(disk, "b.mdb");
    const RewriteReport report = Compact("b.mdb", kNow, disk);
    EXPECT_EQ(Contents(disk, "b.mdb"), once);
    EXPECT_EQ(report.bytesAfter, report.bytesBefore);
}

TEST(Compact, RefusesAFileWithAFormAndNamesIt) {
    MemoryDisk disk;
    MakeBook(disk, "b.mdb", 5);
    {
        const auto database = Database::Open("b.mdb", Database::Access::ReadWrite, disk);
        Table& catalog = database->OpenTable("MSysObjects");
        std::vector<Value> row(catalog.Definition().columns.size());
        const auto set = [&](const char* column, Value value) {
            row[catalog.Definition().FindColumn(column).value()] = std::move(value);
        };
        set("Id", std::int32_t{-2147483000});
        set("ParentId", std::int32_t{0x0F000001});
        set("Name", std::string("Customers"));
        set("Type", std::int32_t{-32768});
        set("Flags", std::int32_t{0});
        catalog.Insert(row);
    }
    const auto before = disk.Content("b.mdb");
    const Fault fault = CompactFault(disk, "b.mdb");
    EXPECT_EQ(fault.number, fault::kUnsupported);
    EXPECT_NE(fault.description.find("form Customers"), std::string::npos) << fault.description;
    EXPECT_EQ(disk.Content("b.mdb"), before);
    EXPECT_FALSE(disk.Exists("b.mdb.bak"));
    EXPECT_FALSE(disk.Exists("b.mdb.new0"));
}

TEST(Compact, RefusesDamageAndLeavesTheFileAlone) {
    MemoryDisk disk;
    MakeBook(disk, "b.mdb", 300);
    auto& bytes = disk.Content("b.mdb");
    // Every leaf of an index.
    for (std::size_t page = 16; page < bytes.size() / 4096; ++page) {
        if (bytes[page * 4096] == std::byte{4})
            std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(page * 4096), 4096, std::byte{0});
    }
    const auto before = bytes;
    const Fault fault = CompactFault(disk, "b.mdb");
    EXPECT_EQ(fault.number, fault::kDamaged) << fault.description;
    EXPECT_EQ(disk.Content("b.mdb"), before);
    EXPECT_FALSE(disk.Exists("b.mdb.new0"));
}

TEST(Compact, RefusesWhatAnotherProgramIsWriting) {
    const TempFolder folder;
    MakeBook(files::SystemDisk(), folder / "b.mdb", 3);
    const auto writer = Database::Open(folder / "b.mdb", Database::Access::ReadWrite);
    EXPECT_EQ(CompactFault(files::SystemDisk(), folder / "b.mdb").number, fault::kInUse);
}

TEST(Compact, FollowsALinkAndKeepsThePermissions) {
    namespace fs = std::filesystem;
    const TempFolder folder;
    MakeBook(files::SystemDisk(), folder / "real.mdb", 30);
    fs::permissions(folder / "real.mdb", fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("real.mdb", folder / "link.mdb");
    const RewriteReport report = Compact(folder / "link.mdb", kNow);
    EXPECT_TRUE(fs::is_symlink(folder / "link.mdb"));
    EXPECT_EQ(report.backup, fs::canonical(folder / "real.mdb").string() + ".bak");
    EXPECT_EQ(fs::status(folder / "real.mdb").permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

class CompactCrash : public testing::TestWithParam<CrashDisk::Failure> {};

INSTANTIATE_TEST_SUITE_P(Failures, CompactCrash,
                         testing::Values(CrashDisk::Failure::PowerCut, CrashDisk::Failure::Error,
                                         CrashDisk::Failure::ShortWrite));

TEST_P(CompactCrash, LeavesTheOldFileOrTheNewOne) {
    CrashDisk disk;
    MakeBook(disk, "b.mdb", 40);
    const auto original = disk.Content("b.mdb");
    const auto contents = Contents(disk, "b.mdb");
    long n = 1;
    for (; n < 10000; ++n) {
        SCOPED_TRACE(n);
        CrashDisk again = disk;
        again.FailAt(n, GetParam());
        bool done = true;
        try {
            Compact("b.mdb", kNow, again);
        } catch (const Fault&) {
            done = false;
        }
        const bool failed = again.Failed();
        if (GetParam() == CrashDisk::Failure::PowerCut) again.Crash(static_cast<unsigned>(n));
        again.FailAt(0);
        ASSERT_TRUE(again.Exists("b.mdb"));
        ASSERT_EQ(Contents(again, "b.mdb"), contents);
        ASSERT_TRUE(Verify("b.mdb", again).Sound());
        if (again.Content("b.mdb") != original) {
            ASSERT_EQ(again.Content("b.mdb.bak"), original);
        } else {
            ASSERT_TRUE(!done || GetParam() == CrashDisk::Failure::PowerCut);
        }
        if (GetParam() != CrashDisk::Failure::PowerCut && !done) {
            ASSERT_EQ(again.Content("b.mdb"), original);
        }
        if (!failed) break;
    }
    EXPECT_GT(n, 10);  // there were operations that could fail
    EXPECT_LT(n, 10000);
}

TEST(Compact, SendsAFileOfAccess97ToConversion) {
    MemoryDisk disk;
    disk.Put("old.mdb", std::move(testing_support::SampleFile97().Bytes()));
    const Fault fault = CompactFault(disk, "old.mdb");
    EXPECT_EQ(fault.number, fault::kUnsupported);
    EXPECT_NE(fault.description.find("convert"), std::string::npos) << fault.description;
}

}  // namespace
}  // namespace zenvora::jet
