#include "databook/template.h"

#include <fstream>

#include "databook_fixture.h"

namespace zenvora::databook {
namespace {

using jet::ColumnType;

class Template : public DatabookTest {
  protected:
    std::shared_ptr<jet::Database> Open() { return pool_.Open(Path(), jet::Database::Access::ReadOnly); }
};

struct ColumnOfComps {
    const char* name;
    ColumnType type;
    int width;  ///< characters, 0 for numbers and dates
    const char* defaultValue;
};

TEST_F(Template, HoldsTheColumnsOfCompsInTheirOrder) {
    const ColumnOfComps expected[] = {{"CENTRALKEY", ColumnType::Text, 50, ""},
                                      {"ADDRESS", ColumnType::Text, 50, ""},
                                      {"ADDRESS2", ColumnType::Text, 50, ""},
                                      {"CITY", ColumnType::Text, 30, ""},
                                      {"ST", ColumnType::Text, 2, ""},
                                      {"ZIP", ColumnType::Text, 10, ""},
                                      {"NEIGHBORHD", ColumnType::Text, 50, ""},
                                      {"SELLINGPR", ColumnType::Double, 0, ""},
                                      {"PRICEFLD", ColumnType::Double, 0, ""},
                                      {"SALEDATE", ColumnType::DateTime, 0, ""},
                                      {"SALEFLD", ColumnType::DateTime, 0, ""},
                                      {"ORIGLISTPRICE", ColumnType::Double, 0, "0"},
                                      {"ORIGLISTDATE", ColumnType::DateTime, 0, "#1/1/1900#"},
                                      {"LASTLISTPRICE", ColumnType::Double, 0, "0"},
                                      {"LASTLISTDATE", ColumnType::DateTime, 0, "#1/1/1900#"},
                                      {"CONTRACTDATE", ColumnType::DateTime, 0, "#1/1/1900#"},
                                      {"LISTCANCELDATE", ColumnType::DateTime, 0, "#1/1/1900#"},
                                      {"SELECTED", ColumnType::Text, 1, "\"3\""},
                                      {"LISTINGDOM", ColumnType::Text, 4, ""},
                                      {"OTHERAREA2", ColumnType::Text, 20, ""},
                                      {"OtherArea1", ColumnType::Text, 20, ""},
                                      {"ContrKDate", ColumnType::Text, 20, ""},
                                      {"ERCFinal", ColumnType::Text, 20, ""},
                                      {"DAYSONMARKET", ColumnType::Double, 0, ""}};
    const auto database = Open();
    EXPECT_EQ(database->TableNames(), std::vector<std::string>{"COMPS"});
    const jet::TableDefinition& table = database->OpenTable("COMPS").Definition();
    ASSERT_EQ(table.columns.size(), std::size(expected));
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const jet::ColumnDefinition& column = table.columns[i];
        EXPECT_EQ(column.name, expected[i].name);
        EXPECT_EQ(column.type, expected[i].type) << column.name;
        EXPECT_EQ(column.CharacterLimit(), expected[i].width) << column.name;
        EXPECT_EQ(column.properties.defaultValue.value_or(""), expected[i].defaultValue) << column.name;
        const bool isChar = column.name == "SELECTED" || column.name == "LISTINGDOM";
        if (column.type == ColumnType::Text) {
            EXPECT_EQ(column.fixedLength, isChar) << column.name;
        }
        EXPECT_EQ(column.properties.required, i == 0) << column.name;
        EXPECT_EQ(column.properties.allowZeroLength, i != 0) << column.name;
    }
}

TEST_F(Template, HasItsKeyOnCentralKey) {
    const auto database = Open();
    const jet::TableDefinition& table = database->OpenTable("COMPS").Definition();
    ASSERT_TRUE(table.PrimaryKey());
    const jet::IndexDefinition& key = table.indexes[*table.PrimaryKey()];
    EXPECT_EQ(key.names, std::vector<std::string>{"PrimaryKey"});
    ASSERT_EQ(key.columns.size(), 1U);
    EXPECT_EQ(key.columns[0].column, table.columns[0].number);
    EXPECT_TRUE(key.unique);
}

TEST_F(Template, RefusesADuplicateNullOrEmptyKey) {
    const auto refusal = [this](std::string_view statement) { return FaultOf([&] { Run(statement); }); };
    Run("INSERT INTO COMPS (CENTRALKEY) VALUES (\"12 Oak St\")");
    EXPECT_EQ(refusal("INSERT INTO COMPS (CENTRALKEY) VALUES (\"12 OAK ST\")"), fault::kDuplicateKey);
    EXPECT_NE(refusal("INSERT INTO COMPS (CITY) VALUES (\"Troy\")"), 0);
    EXPECT_NE(refusal("INSERT INTO COMPS (CENTRALKEY,CITY) VALUES (\"\",\"Troy\")"), 0);
    SelectAll();
    EXPECT_EQ(control_.Recordset().RecordCount(), 1);
}

TEST_F(Template, AcceptsEmptyTextsAndGivesDefaults) {
    Run("INSERT INTO COMPS "
        "(CENTRALKEY,ADDRESS,ADDRESS2,CITY,ST,ZIP,NEIGHBORHD,OTHERAREA2,OtherArea1,ContrKDate,"
        "ERCFinal,DAYSONMARKET) VALUES (\"A\",\"\",\"\",\"\",\"\",\"\",\"\",\"\",\"\",\"\",\"\",30)");
    SelectAll();
    const ado::Recordset& records = control_.Recordset();
    EXPECT_FALSE(records.IsNull(records.FieldIndex("CITY")));
    EXPECT_EQ(records.Text(records.FieldIndex("SELECTED")), "3");
    EXPECT_TRUE(records.IsNull(records.FieldIndex("LISTINGDOM")));
    EXPECT_TRUE(records.IsNull(records.FieldIndex("SELLINGPR")));
    EXPECT_TRUE(records.IsNull(records.FieldIndex("SALEDATE")));
    for (const char* const price : {"ORIGLISTPRICE", "LASTLISTPRICE"})
        EXPECT_TRUE(records.Value(price) == jet::Value{0.0}) << price;
    for (const char* const date : {"ORIGLISTDATE", "LASTLISTDATE", "CONTRACTDATE", "LISTCANCELDATE"})
        EXPECT_TRUE(records.Value(date) == jet::Value{jet::DateTime{2}}) << date;
    EXPECT_EQ(records.Number(records.FieldIndex("DAYSONMARKET")), 30);
}

TEST_F(Template, IsTheSameBytesEveryTime) {
    CreateTemplate(folder_ / "SECOND.mdb", kToday);
    EXPECT_EQ(folder_.Read("SECOND.mdb"), folder_.Read("DATA.mdb"));
}

TEST_F(Template, DoesNotTakeTheNameOfAnotherFile) {
    const std::string before = folder_.Read("DATA.mdb");
    EXPECT_EQ(FaultOf([&] { CreateTemplate(Path(), kToday); }), fault::kFileExists);
    EXPECT_EQ(folder_.Read("DATA.mdb"), before);
    EXPECT_EQ(FaultOf([&] { CreateTemplate(folder_ / "none" / "x.mdb", kToday); }), fault::kPathNotFound);
}

class CopyOfTemplate : public DatabookTest {
  protected:
    void Copy(std::string_view name) { CopyNewData(session_, Path(), folder_ / name); }
    [[nodiscard]] bool Exists(std::string_view name) const { return std::filesystem::exists(folder_ / name); }
};

TEST_F(CopyOfTemplate, HasTheBytesOfTheTemplate) {
    Copy("NEW.mdb");
    EXPECT_EQ(folder_.Read("NEW.mdb"), folder_.Read("DATA.mdb"));
    EXPECT_FALSE(Exists("NEW.mdb.bak"));
}

TEST_F(CopyOfTemplate, KeepsWhatItReplaces) {
    folder_.Write("OLD.mdb", "the only copy of a year's work");
    Copy("OLD.mdb");
    EXPECT_EQ(folder_.Read("OLD.mdb"), folder_.Read("DATA.mdb"));
    EXPECT_EQ(folder_.Read("OLD.mdb.bak"), "the only copy of a year's work");
}

TEST_F(CopyOfTemplate, DoesNotKeepAnEmptyFileInPlaceOfAKeptOne) {
    folder_.Write("OLD.mdb", "");
    folder_.Write("OLD.mdb.bak", "kept before");
    Copy("OLD.mdb");
    EXPECT_EQ(folder_.Read("OLD.mdb.bak"), "kept before");
    EXPECT_EQ(folder_.Read("OLD.mdb"), folder_.Read("DATA.mdb"));
}

TEST_F(CopyOfTemplate, FaultsWithoutATemplateAndLeavesTheFile) {
    folder_.Write("OLD.mdb", "old");
    EXPECT_EQ(FaultOf([&] { CopyNewData(session_, folder_ / "none.mdb", folder_ / "OLD.mdb"); }),
              fault::kFileNotFound);
    folder_.Write("EMPTY.MDB", "");
    EXPECT_EQ(FaultOf([&] { CopyNewData(session_, folder_ / "EMPTY.MDB", folder_ / "OLD.mdb"); }),
              fault::kFileNotFound);
    EXPECT_EQ(folder_.Read("OLD.mdb"), "old");
    EXPECT_FALSE(Exists("OLD.mdb.bak"));
}

TEST_F(CopyOfTemplate, IsWhatADataControlMeetsAtItsNextRefresh) {
    Copy("WORK.mdb");
    ado::Adodc control(pool_, clock_);
    control.Connectionstring = OneShotConnectionString((folder_ / "WORK.mdb").string());
    AdoSelect(control, "COMPS", "*", "");
    control.Recordset().AddNew();
    control.Recordset().SetValue("CENTRALKEY", std::string("A"));
    control.Recordset().Update();
    Copy("WORK.mdb");
    EXPECT_EQ(control.Recordset().RecordCount(), 1);
    control.Refresh();
    EXPECT_EQ(control.Recordset().RecordCount(), 0);
    control.Connectionstring = OneShotConnectionString((folder_ / "WORK.mdb.bak").string());
    control.Refresh();
    EXPECT_EQ(control.Recordset().RecordCount(), 1);
}

TEST_F(CopyOfTemplate, LeavesADatabookThatAnotherProgramWrites) {
    Copy("WORK.mdb");
    const std::string before = folder_.Read("WORK.mdb");
    {
        ado::DatabasePool otherProgram;
        const auto open = otherProgram.Open(folder_ / "WORK.mdb", jet::Database::Access::ReadWrite);
        EXPECT_EQ(FaultOf([&] { Copy("WORK.mdb"); }), fault::kInUse);
    }
    EXPECT_EQ(folder_.Read("WORK.mdb"), before);
    EXPECT_FALSE(Exists("WORK.mdb.bak"));
    Copy("WORK.mdb");
    EXPECT_TRUE(Exists("WORK.mdb.bak"));
}

}  // namespace
}  // namespace zenvora::databook
