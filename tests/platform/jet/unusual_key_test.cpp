#include <algorithm>
#include <gtest/gtest.h>

#include "hex.h"
#include "platform/fault.h"
#include "platform/jet/compact.h"
#include "sample_table.h"

/// Indexes over what is rarely indexed: texts that the engine cannot weigh, and long texts.
namespace zenvora::jet {
namespace {

using testing_support::BytesFromHex;
using testing_support::ColumnOf;
using testing_support::kNow;
using testing_support::MemoryDisk;
using testing_support::TextColumn;

NewTable KeyedTable(NewColumn key) {
    NewTable table;
    table.name = "T";
    table.columns = {std::move(key), ColumnOf("Price", ColumnType::Double), TextColumn("Note", 50)};
    NewIndex index;
    index.name = "ByKey";
    index.columns = {table.columns[0].name};
    table.indexes = {index};
    return table;
}

int EntriesOf(const Table& table) {
    int count = 0;
    table.ScanIndex(0, [&](RowId) { return ++count, true; });
    return count;
}

/// A row whose indexed text no longer is one that can be weighed, as another program may have stored it.
class UnknownKeyTest : public testing::Test {
  protected:
    void SetUp() override {
        {
            const auto database = Database::Create("d.mdb", kNow, disk_);
            Table& table = database->CreateTable(KeyedTable(TextColumn("Key", 50)), kNow);
            table.Insert(std::vector<Value>{std::string("aa"), 1.0, std::string("first")});
            row_ = table.Insert(std::vector<Value>{std::string("Qz"), 2.0, std::string("second")});
        }
        auto& bytes = disk_.Content("d.mdb");
        const auto before = BytesFromHex("51 00 7A 00");  // two characters are never compressed
        const auto after = BytesFromHex("E5 65 2C 67");
        const auto at = std::search(bytes.begin(), bytes.end(), before.begin(), before.end());
        ASSERT_NE(at, bytes.end());
        std::copy(after.begin(), after.end(), at);
        ASSERT_EQ(std::search(at, bytes.end(), before.begin(), before.end()), bytes.end());
        database_ = Database::Open("d.mdb", Database::Access::ReadWrite, disk_);
        table_ = &database_->OpenTable("T");
    }

    MemoryDisk disk_;
    RowId row_;
    std::unique_ptr<Database> database_;
    Table* table_ = nullptr;
};

TEST_F(UnknownKeyTest, LosesItsEntryWithItsRow) {
    ASSERT_EQ(EntriesOf(*table_), 2);
    table_->Delete(row_);
    EXPECT_EQ(EntriesOf(*table_), 1);
    EXPECT_EQ(table_->RowCount(), 1U);
}

TEST_F(UnknownKeyTest, StaysWhenOtherColumnsChange) {
    const std::vector<std::size_t> columns = {1, 2};
    table_->Update(row_, columns, std::vector<Value>{5.0, std::string("changed")});
    EXPECT_EQ(std::get<double>(table_->Read(row_)[1]), 5.0);
    EXPECT_EQ(std::get<std::string>(table_->Read(row_)[0]), "\xE6\x97\xA5\xE6\x9C\xAC");
    EXPECT_EQ(EntriesOf(*table_), 2);
}

TEST_F(UnknownKeyTest, GivesWayToAKeyThatIsKnown) {
    const std::vector<std::size_t> columns = {0};
    table_->Update(row_, columns, std::vector<Value>{std::string("bb")});
    EXPECT_EQ(EntriesOf(*table_), 2);
    EXPECT_EQ(table_->Find(0, std::vector<Value>{std::string("bb")}), row_);
}

TEST_F(UnknownKeyTest, IsNotMadeHere) {
    const std::vector<std::size_t> columns = {0};
    try {
        table_->Update(row_, columns, std::vector<Value>{std::string("\xE6\x97\xA5")});
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kUnsupported);
    }
    EXPECT_EQ(EntriesOf(*table_), 2);
}

TEST_F(UnknownKeyTest, KeepsTheFileFromBeingCompactedWhichIsNamed) {
    database_.reset();
    const auto before = disk_.Content("d.mdb");
    try {
        Compact("d.mdb", kNow, disk_);
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kUnsupported);
        EXPECT_EQ(fault.place.file, "d.mdb");
    }
    EXPECT_EQ(disk_.Content("d.mdb"), before);
}

TEST(LongTextKeys, FollowTheirRows) {
    MemoryDisk disk;
    const auto database = Database::Create("d.mdb", kNow, disk);
    Table& table = database->CreateTable(KeyedTable(ColumnOf("Story", ColumnType::Memo)), kNow);
    const std::string story = "Once upon a time " + std::string(5000, 'x');
    const RowId row = table.Insert(std::vector<Value>{story, 1.0, std::string("n")});
    EXPECT_EQ(table.Find(0, std::vector<Value>{story}), row);
    const std::vector<std::size_t> note = {2};
    table.Update(row, note, std::vector<Value>{std::string("longer than before")});
    EXPECT_EQ(table.Find(0, std::vector<Value>{story}), row);
    const std::vector<std::size_t> key = {0};
    table.Update(row, key, std::vector<Value>{std::string("The end")});
    EXPECT_FALSE(table.Find(0, std::vector<Value>{story}).has_value());
    EXPECT_EQ(table.Find(0, std::vector<Value>{std::string("The end")}), row);
    table.Delete(row);
    EXPECT_EQ(EntriesOf(table), 0);
}

}  // namespace
}  // namespace zenvora::jet
