#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <random>

#include "platform/fault.h"
#include "platform/jet/database.h"
#include "sample_table.h"
#include "support/fault_of.h"
#include "support/temp_folder.h"

namespace zenvora::jet {
namespace {

using testing_support::kNow;
using testing_support::MemoryDisk;
using testing_support::SampleTable;
using zenvora::testing_support::FaultOf;

Numeric Cents(std::uint64_t cents, bool negative) {
    Numeric value;
    value.scale = 2;
    value.negative = negative;
    for (std::size_t i = 16; i-- > 0 && cents != 0; cents /= 256)
        value.magnitude[i] = static_cast<std::uint8_t>(cents % 256);
    return value;
}

std::vector<Value> FullRow(const std::string& street) {
    Guid id;
    for (std::size_t i = 0; i < 16; ++i)
        id.bytes[i] = static_cast<std::uint8_t>(i * 16 + 1);
    return {street,
            true,
            200,
            -12345,
            123456789,
            Currency{-12345678},
            1.5F,
            259900.25,
            DateTime{39873.75},
            std::string("A note about Caf\xC3\xA9 and \xE6\x97\xA5."),
            Bytes(100, std::byte{7}),
            id,
            Cents(1234567, true),
            std::string("Troy"),
            std::string("3"),
            std::string("12")};
}

class TableTest : public testing::Test {
  protected:
    void SetUp() override {
        database_ = Database::Create("d.mdb", kNow, disk_);
        table_ = &database_->CreateTable(SampleTable(), kNow);
    }
    void Reopen() {
        database_.reset();
        database_ = Database::Open("d.mdb", Database::Access::ReadWrite, disk_);
        table_ = &database_->OpenTable("Sample");
    }
    std::size_t CountByScan() const {
        std::size_t rows = 0;
        table_->Scan([&](const RowView&) { return ++rows, true; });
        return rows;
    }
    MemoryDisk disk_;
    std::unique_ptr<Database> database_;
    Table* table_ = nullptr;
};

TEST_F(TableTest, GivesBackEveryTypeOfValue) {
    const std::vector<Value> row = FullRow("12 Oak St");
    const RowId id = table_->Insert(row);
    EXPECT_EQ(table_->Read(id), row);
    Reopen();
    EXPECT_EQ(table_->Read(id), row);
    EXPECT_EQ(table_->RowCount(), 1U);
}

TEST_F(TableTest, GivesBackNullsAndEmptyTexts) {
    std::vector<Value> row(16);
    row[0] = std::string("12 Oak St");
    row[1] = false;  // a Boolean is never Null
    row[13] = std::string();
    const RowId id = table_->Insert(row);
    EXPECT_EQ(table_->Read(id), row);
    std::vector<Value> given(16);
    given[0] = std::string("13 Oak St");
    EXPECT_EQ(table_->Read(table_->Insert(given))[1], Value{false});
}

TEST_F(TableTest, FixedTextsLoseTheirPadding) {
    const RowId id = table_->Insert(FullRow("12 Oak St"));
    table_->Scan([&](const RowView& view) {
        std::string days;
        view.AppendText(15, days);
        EXPECT_EQ(days, "12");
        EXPECT_EQ(view.Id(), id);
        EXPECT_EQ(view.Number(7), 259900.25);
        EXPECT_EQ(view.Number(5), -1234.5678);
        EXPECT_FALSE(view.IsNull(9));
        return true;
    });
}

TEST_F(TableTest, RefusesASecondRowWithAKeyWhateverItsCase) {
    table_->Insert(FullRow("12 Oak St"));
    EXPECT_EQ(FaultOf([&] { table_->Insert(FullRow("12 OAK ST ")); }), fault::kDuplicateKey);
    EXPECT_EQ(CountByScan(), 1U);
}

TEST_F(TableTest, RefusesAKeyWithoutAValue) {
    std::vector<Value> row = FullRow("x");
    row[0] = Null{};
    EXPECT_EQ(FaultOf([&] { table_->Insert(row); }), fault::kNullKey);
}

TEST_F(TableTest, UniqueIndexesTakeManyNullsButNoValueTwice) {
    std::vector<Value> row = FullRow("1");
    row[4] = Null{};
    table_->Insert(row);
    row[0] = std::string("2");
    table_->Insert(row);
    row[0] = std::string("3");
    row[4] = 5;
    table_->Insert(row);
    row[0] = std::string("4");
    EXPECT_EQ(FaultOf([&] { table_->Insert(row); }), fault::kDuplicateKey);
    std::size_t entries = 0;
    table_->ScanIndex(2, [&](RowId) { return ++entries, true; });
    EXPECT_EQ(entries, 1U) << "rows without a value have no entry there";
}

TEST_F(TableTest, RefusesWhatDoesNotFitItsColumn) {
    const auto refused = [&](std::size_t column, Value value) {
        std::vector<Value> row = FullRow("12 Oak St");
        row[column] = std::move(value);
        return FaultOf([&] { table_->Insert(row); });
    };
    EXPECT_EQ(refused(0, std::string(51, 'x')), fault::kTooLong);
    EXPECT_EQ(refused(2, 256), fault::kOverflow);
    EXPECT_EQ(refused(3, 40000), fault::kOverflow);
    EXPECT_EQ(refused(4, 3e9), fault::kOverflow);
    EXPECT_EQ(refused(4, 1.5), fault::kTypeMismatch);
    EXPECT_EQ(refused(8, std::string("no date")), fault::kTypeMismatch);
    EXPECT_EQ(refused(8, DateTime{1e7}), fault::kTypeMismatch);
    EXPECT_EQ(refused(7, std::string("12")), fault::kTypeMismatch) << "texts are converted above the engine";
    EXPECT_EQ(CountByScan(), 0U);
    EXPECT_EQ(table_->RowCount(), 0U);
}

TEST_F(TableTest, TakesFiftyCharactersHoweverManyBytesTheyHave) {
    std::string street;
    for (int i = 0; i < 50; ++i)
        street += "\xC3\xA9";
    std::vector<Value> row = FullRow(street);
    EXPECT_EQ(std::get<std::string>(table_->Read(table_->Insert(row))[0]), street);
}

TEST_F(TableTest, FindsARowByItsKey) {
    for (int i = 0; i < 100; ++i) {
        std::vector<Value> row = FullRow(std::to_string(i) + " Oak St");
        row[4] = i;
        table_->Insert(row);
    }
    const Value key = std::string("57 OAK st");
    const auto found = table_->Find(0, std::span(&key, 1));
    ASSERT_TRUE(found);
    EXPECT_EQ(std::get<std::string>(table_->Read(*found)[0]), "57 Oak St");
    const Value other = std::string("57 Oak");
    EXPECT_FALSE(table_->Find(0, std::span(&other, 1)));
}

TEST_F(TableTest, ADeletedRowIsGone) {
    const RowId id = table_->Insert(FullRow("12 Oak St"));
    table_->Delete(id);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(table_->Read(id)); }), fault::kNoCurrentRecord);
    EXPECT_EQ(FaultOf([&] { table_->Delete(id); }), fault::kNoCurrentRecord);
    EXPECT_EQ(CountByScan(), 0U);
    table_->Insert(FullRow("12 Oak St"));
    EXPECT_EQ(CountByScan(), 1U);
}

TEST_F(TableTest, LongValuesOfEverySizeSurvive) {
    std::map<std::string, std::string> notes;
    int number = 0;
    for (std::size_t size : {0U, 1U, 31U, 32U, 33U, 62U, 63U, 64U, 65U, 1024U, 1025U, 2037U, 2038U, 2039U,
                             4072U, 4076U, 4077U, 9000U, 40000U}) {
        std::vector<Value> row = FullRow(std::to_string(size));
        row[4] = ++number;
        std::string note(size, 'n');
        for (std::size_t i = 0; i < size; ++i)
            note[i] = static_cast<char>('a' + i % 26);
        row[9] = note;
        notes[std::to_string(size)] = note;
        table_->Insert(row);
    }
    Reopen();
    std::size_t seen = 0;
    table_->Scan([&](const RowView& view) {
        std::string street;
        view.AppendText(0, street);
        EXPECT_EQ(std::get<std::string>(view.Get(9)), notes.at(street)) << street;
        return ++seen, true;
    });
    EXPECT_EQ(seen, notes.size());
}

TEST_F(TableTest, AChangeThatFaultsChangesNothing) {
    table_->Insert(FullRow("12 Oak St"));
    std::vector<Value> other = FullRow("13 Oak St");
    other[4] = 7;
    const RowId id = table_->Insert(other);
    const auto before = disk_.Content("d.mdb");
    const std::size_t column = 0;
    const Value taken = std::string("12 OAK ST");
    EXPECT_EQ(FaultOf([&] { table_->Update(id, std::span(&column, 1), std::span(&taken, 1)); }),
              fault::kDuplicateKey);
    EXPECT_EQ(disk_.Content("d.mdb"), before);
    EXPECT_EQ(table_->Read(id), other);
}

TEST_F(TableTest, ARollbackForgetsRowsColumnsAndTables) {
    table_->Insert(FullRow("12 Oak St"));
    const auto before = disk_.Content("d.mdb");
    database_->Begin();
    std::vector<Value> other = FullRow("13 Oak St");
    other[4] = 7;
    table_->Insert(other);
    table_->AddColumn(testing_support::TextColumn("More", 10));
    NewTable second = SampleTable();
    second.name = "Second";
    database_->CreateTable(second, kNow);
    EXPECT_EQ(database_->TableNames(), (std::vector<std::string>{"Sample", "Second"}));
    database_->Rollback();
    EXPECT_EQ(database_->TableNames(), std::vector<std::string>{"Sample"});
    EXPECT_FALSE(table_->Definition().FindColumn("More"));
    EXPECT_EQ(CountByScan(), 1U);
    EXPECT_EQ(table_->RowCount(), 1U);
    EXPECT_EQ(disk_.Content("d.mdb"), before);
    table_->Insert(other);
    Reopen();
    EXPECT_EQ(CountByScan(), 2U);
}

TEST_F(TableTest, ARowThatCannotBeStoredLeavesTheTransactionAsItWas) {
    database_->Begin();
    table_->Insert(FullRow("12 Oak St"));
    EXPECT_EQ(FaultOf([&] { table_->Insert(FullRow("12 Oak St")); }), fault::kDuplicateKey);
    std::vector<Value> other = FullRow("13 Oak St");
    other[4] = 7;
    table_->Insert(other);
    database_->Commit();
    Reopen();
    EXPECT_EQ(CountByScan(), 2U);
    EXPECT_EQ(table_->RowCount(), 2U);
}

TEST_F(TableTest, AnAddedColumnReadsAsNullInOldRowsAndHoldsValuesInNewOnes) {
    const RowId old = table_->Insert(FullRow("12 Oak St"));
    NewColumn price = testing_support::ColumnOf("LastPrice", ColumnType::Double);
    price.properties.defaultValue = "0";
    table_->AddColumn(price);
    table_->AddColumn(testing_support::ColumnOf("Story", ColumnType::Memo));
    table_->AddColumn(testing_support::TextColumn("Remark", 20));
    EXPECT_EQ(FaultOf([&] { table_->AddColumn(testing_support::TextColumn("REMARK", 20)); }),
              fault::kColumnExists);
    Reopen();
    ASSERT_EQ(table_->Definition().columns.size(), 19U);
    EXPECT_EQ(table_->DefaultOf(16), Value{0.0});
    std::vector<Value> row = table_->Read(old);
    EXPECT_EQ(row[16], Value{Null{}});
    EXPECT_EQ(row[17], Value{Null{}});
    EXPECT_EQ(row[18], Value{Null{}});
    row[0] = std::string("13 Oak St");
    row[4] = 9;
    row[16] = 250000.0;
    row[17] = std::string(5000, 's');
    row[18] = std::string("corner");
    EXPECT_EQ(table_->Read(table_->Insert(row)), row);
    row[0] = std::string("12 Oak St");
    row[4] = 123456789;
    table_->Update(old, row);
    EXPECT_EQ(table_->Read(old), row);
}

TEST_F(TableTest, AnAddedColumnNeedsANameThatAccessTakes) {
    const auto before = disk_.Content("d.mdb");
    for (const std::string& name :
         {std::string(), std::string("a.b"), std::string("[x]"), std::string("wow!"), std::string(" first"),
          std::string("a\nb"), std::string(65, 'n')}) {
        EXPECT_EQ(FaultOf([&] { table_->AddColumn(testing_support::TextColumn(name.c_str(), 10)); }),
                  fault::kUnsupported)
            << name;
    }
    EXPECT_EQ(disk_.Content("d.mdb"), before);
    table_->AddColumn(testing_support::TextColumn(std::string(64, 'n').c_str(), 10));
    Reopen();
    EXPECT_TRUE(table_->Definition().FindColumn(std::string(64, 'n')));
}

TEST_F(TableTest, DefinitionsMayGrowOverSeveralPages) {
    const RowId old = table_->Insert(FullRow("12 Oak St"));
    for (int i = 0; i < 150; ++i) {
        table_->AddColumn(testing_support::TextColumn(
            ("A rather long name of a column, number " + std::to_string(i)).c_str(), 10));
    }
    Reopen();
    EXPECT_EQ(table_->Definition().columns.size(), 166U);
    EXPECT_EQ(std::get<std::string>(table_->Read(old)[0]), "12 Oak St");
    std::vector<Value> row = table_->Read(old);
    row[0] = std::string("13 Oak St");
    row[4] = 2;
    row[165] = std::string("last");
    EXPECT_EQ(table_->Read(table_->Insert(row)), row);
}

TEST_F(TableTest, DefaultsAreLiteralsAndExpressionsGiveNone) {
    const auto defaultOf = [&](const char* column, const char* expression) {
        table_->SetDefault(column, expression);
        return table_->DefaultOf(*table_->Definition().FindColumn(column));
    };
    EXPECT_EQ(defaultOf("Flag", "\"3\""), Value{std::string("3")});
    EXPECT_EQ(defaultOf("Flag", "'2'"), Value{std::string("2")});
    EXPECT_EQ(defaultOf("Flag", "3"), Value{std::string("3")});
    EXPECT_EQ(defaultOf("Price", "=0"), Value{0.0});
    EXPECT_EQ(defaultOf("Listed", "#1/1/1900#"), Value{DateTime{2.0}});
    EXPECT_EQ(defaultOf("Listed", "01/01/1900"), Value{DateTime{2.0}});
    EXPECT_EQ(defaultOf("Listed", "Date()"), Value{Null{}});
    EXPECT_EQ(defaultOf("Yes", "True"), Value{true});
    EXPECT_EQ(defaultOf("Street", "Null"), Value{Null{}});
    EXPECT_EQ(FaultOf([&] { table_->SetDefault("Absent", "0"); }), fault::kItemNotFound);
    Reopen();
    EXPECT_EQ(table_->DefaultOf(*table_->Definition().FindColumn("Flag")), Value{std::string("3")});
}

TEST_F(TableTest, RequiredAndZeroLengthAreKeptTo) {
    NewTable table;
    table.name = "Strict";
    table.columns = {testing_support::TextColumn("Must", 10), testing_support::TextColumn("NotEmpty", 10)};
    table.columns[0].properties.required = true;
    table.columns[1].properties.allowZeroLength = false;
    database_->CreateTable(table, kNow);
    database_.reset();
    database_ = Database::Open("d.mdb", Database::Access::ReadWrite, disk_);
    Table& strict = database_->OpenTable("STRICT");
    const auto insert = [&](Value must, Value notEmpty) {
        const std::vector<Value> row{std::move(must), std::move(notEmpty)};
        return FaultOf([&] { strict.Insert(row); });
    };
    EXPECT_EQ(insert(Null{}, std::string("x")), fault::kRequired);
    EXPECT_EQ(insert(std::string("x"), std::string()), fault::kEmptyText);
    EXPECT_EQ(insert(std::string(), Null{}), 0);
}

TEST_F(TableTest, AutoNumbersGoOnFromTheLargestGiven) {
    NewTable table;
    table.name = "Counted";
    table.columns = {testing_support::ColumnOf("No", ColumnType::Long),
                     testing_support::TextColumn("Name", 10)};
    table.columns[0].autoNumber = true;
    Table& counted = database_->CreateTable(table, kNow);
    const auto insert = [&](Value number) {
        const std::vector<Value> row{std::move(number), std::string("x")};
        return std::get<std::int32_t>(counted.Read(counted.Insert(row))[0]);
    };
    EXPECT_EQ(insert(Null{}), 1);
    EXPECT_EQ(insert(Null{}), 2);
    EXPECT_EQ(insert(10), 10);
    EXPECT_EQ(insert(Null{}), 11);
    database_.reset();
    database_ = Database::Open("d.mdb", Database::Access::ReadWrite, disk_);
    Table& again = database_->OpenTable("Counted");
    const std::vector<Value> row{Null{}, std::string("x")};
    EXPECT_EQ(std::get<std::int32_t>(again.Read(again.Insert(row))[0]), 12);
}

// Inserts, updates that grow and shrink rows, renames and deletes against a plain map; then the file is
// checked by another program when there is one.
TEST_F(TableTest, StaysEqualToAModelThroughRandomChanges) {
    std::mt19937 random(7);
    struct Model {
        RowId id;
        std::vector<Value> row;
    };
    std::vector<Model> model;
    std::map<std::string, std::size_t> byStreet;
    const auto someText = [&](std::size_t longest) {
        return std::string(random() % (longest + 1), static_cast<char>('a' + random() % 26));
    };
    const auto makeRow = [&](int step) {
        std::vector<Value> row = FullRow(std::to_string(random() % 100000) + " Elm " + someText(20));
        row[4] = random() % 9 == 0 ? Value{Null{}} : Value{step};
        row[8] = random() % 11 == 0 ? Value{Null{}}
                                    : Value{DateTime{39000.0 + static_cast<double>(random() % 500)}};
        row[9] = random() % 5 == 0 ? Value{someText(9000)} : Value{Null{}};
        row[10] = Null{};
        row[13] = random() % 3 == 0 ? Value{someText(255)} : Value{std::string("Troy")};
        return row;
    };
    database_->Begin();
    for (int step = 0; step < 12000; ++step) {
        const auto kind = random() % 10;
        if (kind < 5 || model.empty()) {
            const std::vector<Value> row = makeRow(step);
            const std::string& street = std::get<std::string>(row[0]);
            if (byStreet.contains(street)) {
                EXPECT_EQ(FaultOf([&] { table_->Insert(row); }), fault::kDuplicateKey);
                continue;
            }
            byStreet[street] = model.size();
            model.push_back({table_->Insert(row), row});
        } else {
            const std::size_t at = random() % model.size();
            Model& each = model[at];
            if (kind < 8) {
                std::vector<std::size_t> columns{13, 9};
                std::vector<Value> values{someText(255),
                                          random() % 2 == 0 ? Value{someText(9000)} : each.row[9]};
                if (random() % 3 == 0) {
                    const std::string street = std::to_string(step) + " Renamed " + someText(30);
                    byStreet.erase(std::get<std::string>(each.row[0]));
                    byStreet[street] = at;
                    columns.push_back(0);
                    values.emplace_back(street);
                }
                table_->Update(each.id, columns, values);
                for (std::size_t i = 0; i < columns.size(); ++i)
                    each.row[columns[i]] = values[i];
            } else {
                table_->Delete(each.id);
                byStreet.erase(std::get<std::string>(each.row[0]));
                if (at + 1 != model.size()) {
                    model[at] = model.back();
                    byStreet[std::get<std::string>(model[at].row[0])] = at;
                }
                model.pop_back();
            }
        }
        if (step % 1500 == 0) {
            database_->Commit();
            database_->Begin();
        }
    }
    database_->Commit();
    Reopen();
    EXPECT_EQ(table_->RowCount(), model.size());
    EXPECT_EQ(CountByScan(), model.size());
    for (const Model& each : model)
        ASSERT_EQ(table_->Read(each.id), each.row);
    std::vector<std::string> byIndex;
    table_->ScanIndex(0, [&](RowId id) {
        byIndex.push_back(std::get<std::string>(table_->Read(id)[0]));
        return true;
    });
    ASSERT_EQ(byIndex.size(), model.size());
    for (std::size_t i = 1; i < byIndex.size(); ++i)
        EXPECT_LT(CompareGeneral(byIndex[i - 1], byIndex[i]), 0);

    if (const char* checker = std::getenv("ZENVORA_MDBCHECK")) {
        const zenvora::testing_support::TempFolder folder;
        disk_.Export("d.mdb", folder / "d.mdb");
        const std::string command =
            "python3 '" + std::string(checker) + "' '" + (folder / "d.mdb").string() + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
    }
}

}  // namespace
}  // namespace zenvora::jet
