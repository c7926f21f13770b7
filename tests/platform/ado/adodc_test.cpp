#include "platform/ado/adodc.h"

#include "store_fixture.h"

namespace zenvora::ado {
namespace {

class AdodcTest : public StoreTest {};

TEST_F(AdodcTest, HasNoRecordsetBeforeTheFirstRefresh) {
    Adodc control(pool_, clock_);
    EXPECT_FALSE(control.HasRecordset());
    EXPECT_EQ(FaultOf([&] { static_cast<void>(control.Recordset()); }), fault::kObjectNotSet);
    EXPECT_EQ(control.Generation(), 0U);
    EXPECT_EQ(&control.Clock(), &clock_);
}

TEST_F(AdodcTest, CountsItsRecordsets) {
    const auto control = Select("SELECT * FROM STOCK");
    EXPECT_TRUE(control->HasRecordset());
    EXPECT_EQ(control->Generation(), 1U);
    control->Refresh();
    EXPECT_EQ(control->Generation(), 2U);
    control->Close();
    EXPECT_FALSE(control->HasRecordset());
    EXPECT_EQ(control->Generation(), 3U);
    control->Close();
    EXPECT_EQ(control->Generation(), 3U);
}

TEST_F(AdodcTest, KeepsTheOldRecordsetWhenARefreshFails) {
    Run("INSERT INTO STOCK (KEYNAME) VALUES ('A')");
    const auto control = Select("SELECT * FROM STOCK");
    Recordset* const old = &control->Recordset();
    const auto refresh = [&](std::string_view source) {
        control->RecordSource = source;
        return FaultOf([&] { control->Refresh(); });
    };
    EXPECT_EQ(refresh("SELECT FROM STOCK"), fault::kSyntax);
    EXPECT_EQ(refresh("SELECT * FROM SHOP"), fault::kNoSuchTable);
    EXPECT_EQ(refresh("SELECT COLOUR FROM STOCK"), fault::kItemNotFound);
    EXPECT_EQ(refresh("SELECT * FROM STOCK WHERE COLOUR = 1"), fault::kItemNotFound);
    EXPECT_EQ(&control->Recordset(), old);
    EXPECT_EQ(control->Recordset().TextView(0), "A");
    EXPECT_EQ(control->Generation(), 1U);
}

TEST_F(AdodcTest, FaultsOnAFileThatIsNotThereOrNoDatabook) {
    Adodc control(pool_, clock_);
    control.RecordSource = "SELECT * FROM STOCK";
    control.Connectionstring = "Data Source=" + (folder_ / "missing.mdb").string();
    EXPECT_EQ(FaultOf([&] { control.Refresh(); }), fault::kFileNotFound);
    control.Connectionstring = "Data Source=" + folder_.Write("text.mdb", std::string(9000, 'x')).string();
    EXPECT_EQ(FaultOf([&] { control.Refresh(); }), fault::kNotADatabook);
    control.Connectionstring = "";
    EXPECT_EQ(FaultOf([&] { control.Refresh(); }), fault::kFileNotFound);
}

TEST_F(AdodcTest, MapsItsDataSource) {
    Adodc control(pool_, clock_, [this](std::string_view) { return Path(); });
    control.Connectionstring = "Data Source=C:\\ZVR\\STOCK.MDB";
    control.RecordSource = "SELECT * FROM STOCK";
    control.Refresh();
    EXPECT_EQ(control.Recordset().RecordCount(), 0);
}

TEST_F(AdodcTest, LetsGoOfTheFileAtClose) {
    const auto control = Select("SELECT * FROM STOCK");
    DatabasePool otherProgram;
    const auto write = [&] {
        static_cast<void>(otherProgram.Open(Path(), jet::Database::Access::ReadWrite));
    };
    EXPECT_EQ(FaultOf(write), fault::kInUse);
    control->Close();
    EXPECT_EQ(FaultOf(write), 0);
}

TEST_F(AdodcTest, OrdersManyRecordsByTheirKeyIndexAfterDeletesAndChanges) {
    // Over more than one block of records, with holes and with records that have moved to another page.
    constexpr int kRecords = 3000;
    {
        Connection connection(pool_, clock_);
        connection.Open(ConnectionText());
        connection.BeginBatch();
        for (int i = 0; i < kRecords; ++i) {
            const std::string key = std::to_string(100000 + i * 7919 % kRecords);
            connection.Execute("INSERT INTO STOCK (KEYNAME,CITY) VALUES (\"" + key + "\",\"x\")");
        }
        connection.EndBatch();
    }
    const auto control = Select("SELECT * FROM STOCK ORDER BY KEYNAME");
    Recordset& records = control->Recordset();
    records.BeginBatch();
    for (int i = 0; !records.Eof(); ++i) {
        if (i % 10 == 3)
            records.Delete();
        else if (i % 10 == 5)
            records.SetValue("CITY", std::string("much wider"));
        records.MoveNext();
    }
    records.EndBatch();
    control->Refresh();
    ASSERT_EQ(control->Recordset().RecordCount(), kRecords * 9 / 10);
    int key = 0;
    for (; !control->Recordset().Eof(); control->Recordset().MoveNext(), ++key) {
        if (key % 10 == 3) ++key;
        ASSERT_EQ(control->Recordset().TextView(0), std::to_string(100000 + key));
        ASSERT_EQ(control->Recordset().TextView(1), key % 10 == 5 ? "much wider" : "x");
    }
}

}  // namespace
}  // namespace zenvora::ado
