#include <gtest/gtest.h>

#include "access97_file.h"
#include "platform/fault.h"
#include "platform/jet/database.h"
#include "support/memory_disk.h"

namespace zenvora::jet {
namespace {

using testing_support::File97;
using testing_support::SampleFile97;
using zenvora::testing_support::MemoryDisk;

Fault OpenFault(File97 file, Database::Access access = Database::Access::ReadOnly) {
    MemoryDisk disk;
    disk.Put("f.mdb", std::move(file.Bytes()));
    try {
        static_cast<void>(Database::Open("f.mdb", access, disk));
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.place.file, "f.mdb");
        return fault;
    }
    return {0, "opened"};
}

class Access97Test : public testing::Test {
  protected:
    void SetUp() override {
        disk_.Put("f.mdb", std::move(SampleFile97().Bytes()));
        database_ = Database::Open("f.mdb", Database::Access::ReadOnly, disk_);
        table_ = &database_->OpenTable("Sales");
    }

    [[nodiscard]] std::vector<std::vector<Value>> Rows() const {
        std::vector<std::vector<Value>> rows;
        table_->Scan([&](const RowView& view) {
            auto& row = rows.emplace_back();
            for (std::size_t i = 0; i < 5; ++i)
                row.push_back(view.Get(i));
            return true;
        });
        return rows;
    }

    MemoryDisk disk_;
    std::unique_ptr<Database> database_;
    Table* table_ = nullptr;
};

TEST_F(Access97Test, ListsItsUserTables) {
    EXPECT_EQ(database_->TableNames(), std::vector<std::string>{"Sales"});
}

TEST_F(Access97Test, ReadsDefinitionsThatRunOverTheirPage) {
    const TableDefinition& table = table_->Definition();
    ASSERT_EQ(table.columns.size(), 90U);
    EXPECT_EQ(table.columns[89].name, "Flag89");
    EXPECT_EQ(table.columns[89].number, 89U);
    const ColumnDefinition& street = table.columns[0];
    EXPECT_EQ(street.type, ColumnType::Text);
    EXPECT_FALSE(street.fixedLength);
    EXPECT_EQ(street.codePage, 1252U);
    EXPECT_EQ(street.sortOrder, 0x0409U);
    EXPECT_EQ(street.byteLength, 50U);
    EXPECT_EQ(street.CharacterLimit(), 50);
    const ColumnDefinition& price = table.columns[2];
    EXPECT_EQ(price.name, "Pri\xC3\xA9");
    EXPECT_EQ(price.type, ColumnType::Double);
    EXPECT_EQ(price.codePage, 0U);
    EXPECT_TRUE(price.properties.required);
    const ColumnDefinition& code = table.columns[4];
    EXPECT_TRUE(code.fixedLength);
    EXPECT_EQ(code.fixedOffset, 8U);
    EXPECT_EQ(code.CharacterLimit(), 4);
    ASSERT_EQ(table.indexes.size(), 1U);
    EXPECT_EQ(table.indexes[0].names, std::vector<std::string>{"PrimaryKey"});
    EXPECT_TRUE(table.indexes[0].primaryKey);
    EXPECT_TRUE(table.indexes[0].unique);
    EXPECT_TRUE(table.indexes[0].required);
    ASSERT_EQ(table.indexes[0].columns.size(), 1U);
    EXPECT_TRUE(table.indexes[0].columns[0].ascending);
    EXPECT_EQ(table_->RowCount(), 4U);
}

TEST_F(Access97Test, ReadsTextsNumbersAndLongValuesOfEveryKind) {
    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[0], (std::vector<Value>{std::string("12 Oak St"), std::string("Caf\xC3\xA9!"), 259900.5,
                                           true, std::string("AB")}));
    // Behind a deleted row one that was moved to another page; its story is a chain of two pages.
    EXPECT_EQ(rows[1],
              (std::vector<Value>{std::string(50, 'M'), std::string(2032, 'a') + std::string(968, 'b'),
                                  100000.0, false, std::string("WXYZ")}));
    EXPECT_EQ(rows[3], (std::vector<Value>{std::string("9 Ash Ct"), std::string(700, 'c'), Null{}, false,
                                           std::string()}));
}

TEST_F(Access97Test, RowsOfBeforeAColumnWasAddedHaveNullInIt) {
    EXPECT_EQ(Rows()[2], (std::vector<Value>{std::string("7 Elm \xC3\x84ve"), Null{}, -1.5, false, Null{}}));
}

TEST_F(Access97Test, ScansItsIndexOverAllLeaves) {
    std::vector<RowId> order;
    table_->ScanIndex(0, [&](RowId row) {
        order.push_back(row);
        return true;
    });
    EXPECT_EQ(order, (std::vector<RowId>{{7, 0}, {7, 3}, {7, 4}, {7, 2}}));
}

TEST_F(Access97Test, FindsRowsByTheirKeys) {
    const auto find = [&](const char* street) {
        return table_->Find(0, std::vector<Value>{std::string(street)});
    };
    EXPECT_EQ(find("12 OAK ST "), (RowId{7, 0}));
    EXPECT_EQ(find("7 elm \xC3\xA4ve"), (RowId{7, 3}));
    EXPECT_EQ(find("9 Ash Ct"), (RowId{7, 4}));
    EXPECT_FALSE(find("7 Elm Ave").has_value());
    EXPECT_FALSE(find("").has_value());
    EXPECT_FALSE(find("Z").has_value());
}

TEST_F(Access97Test, RefusesEveryChange) {
    const auto before = disk_.Content("f.mdb");
    std::vector<Value> row(90);
    row[0] = std::string("1 New St");
    row[2] = 1.0;
    EXPECT_THROW(table_->Insert(row), Fault);
    EXPECT_THROW(table_->Delete({7, 0}), Fault);
    EXPECT_EQ(disk_.Content("f.mdb"), before);
}

TEST(Opening97, ForWritingSaysWhatToDo) {
    const Fault fault = OpenFault(SampleFile97(), Database::Access::ReadWrite);
    EXPECT_EQ(fault.number, fault::kUnsupported);
    EXPECT_EQ(fault.description, "this is a database of Access 97: convert it first (zenvora-cli convert)");
}

TEST(Opening97, TellsAPasswordWhichNoDateHides) {
    File97 file = SampleFile97();
    file.PutMasked(0x42, "73 65 73 61 6D 65");
    EXPECT_EQ(OpenFault(file).number, fault::kPassword);
    file = SampleFile97();
    file.PutMasked(0x55, "01");  // the last of its twenty bytes
    EXPECT_EQ(OpenFault(file).number, fault::kPassword);
    file = SampleFile97();
    file.PutMasked(0x56, "1E 25");  // behind it: the build of the engine
    file.PutMasked(0x72, "00 00 00 00 00 AB E4 40");
    EXPECT_EQ(OpenFault(file).number, 0);
}

TEST(Opening97, TellsAnEncodedFile) {
    File97 file = SampleFile97();
    file.PutMasked(0x3E, "01");
    EXPECT_EQ(OpenFault(file).number, fault::kUnsupported);
}

TEST(Opening97, TakesThreePagesOfItsSize) {
    File97 file = SampleFile97();
    file.Bytes().resize(3 * 2048 - 1);
    const Fault fault = OpenFault(file);
    EXPECT_EQ(fault.number, fault::kDamaged);
    EXPECT_NE(fault.description.find("cut off"), std::string::npos);
    file = SampleFile97();
    file.Bytes().resize(file.Bytes().size() - 1000);  // the page of the longest text loses its end
    EXPECT_EQ(OpenFault(file).number, 0);
}

TEST(Opening97, TextsOfAnotherCodePageAreRefusedWhereTheyMatter) {
    File97 file = SampleFile97();
    file.PutMasked(0x3C, "E3 04");  // Cyrillic: column Pri(e9) is not what it seems
    MemoryDisk disk;
    disk.Put("f.mdb", std::move(file.Bytes()));
    const auto database = Database::Open("f.mdb", Database::Access::ReadOnly, disk);
    EXPECT_EQ(database->TableNames(), std::vector<std::string>{"Sales"});
    try {
        static_cast<void>(database->OpenTable("Sales"));
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kUnsupported);
        EXPECT_NE(fault.description.find("1251"), std::string::npos) << fault.description;
    }
}

// Whatever byte is hurt: reading ends in rows or in a fault, never in a crash or a loop.
TEST(Opening97, AnyDamagedByteGivesRowsOrAFault) {
    const auto sound = SampleFile97().Bytes();
    for (std::size_t at = 0; at < sound.size(); at += at % 2048 < 320 || at % 2048 > 1700 ? 1 : 31) {
        for (const auto change : {std::byte{0x81}, std::byte{0x10}, std::byte{0xFF}}) {
            auto hurt = sound;
            hurt[at] ^= change;
            MemoryDisk disk;
            disk.Put("f.mdb", std::move(hurt));
            try {
                const auto database = Database::Open("f.mdb", Database::Access::ReadOnly, disk);
                for (const std::string& name : database->TableNames()) {
                    const Table& table = database->OpenTable(name);
                    table.Scan([&](const RowView& view) {
                        for (std::size_t i = 0; i < table.Definition().columns.size(); ++i)
                            static_cast<void>(view.Get(i));
                        return true;
                    });
                    for (std::size_t i = 0; i < table.Definition().indexes.size(); ++i) {
                        table.ScanIndex(i, [](RowId) { return true; });
                        static_cast<void>(table.Find(i, std::vector<Value>{std::string("9 Ash Ct")}));
                    }
                }
            } catch (const Fault& fault) {
                EXPECT_FALSE(fault.description.empty()) << at;
            }
        }
    }
}

}  // namespace
}  // namespace zenvora::jet
