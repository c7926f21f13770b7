#include "platform/ado/connection.h"

#include "store_fixture.h"

namespace zenvora::ado {
namespace {

using Texts = std::vector<std::string>;

class ConnectionTest : public StoreTest {
  protected:
    ConnectionTest() { connection_.Open(ConnectionText()); }

    int Refusal(std::string_view statement) {
        return FaultOf([&] { connection_.Execute(statement); });
    }

    Connection connection_{pool_, clock_};
};

TEST_F(ConnectionTest, InsertsARecordAndCountsIt) {
    EXPECT_EQ(
        connection_.Execute("INSERT INTO STOCK (KEYNAME,CITY,PRICE,LISTED) VALUES (\"12 Oak St\",\"Troy\","
                            "250000,\"3/1/2009\")"),
        1);
    EXPECT_EQ(Column("SELECT CITY FROM STOCK"), Texts{"Troy"});
    EXPECT_EQ(Column("SELECT LISTED FROM STOCK"), Texts{"3/1/2009"});
}

TEST_F(ConnectionTest, GivesColumnsNotNamedTheirDefaultElseNull) {
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    EXPECT_EQ(Column("SELECT PRICE FROM STOCK"), Texts{"0"});
    EXPECT_EQ(Column("SELECT LISTED FROM STOCK"), Texts{"1/1/1900"});
    EXPECT_EQ(Column("SELECT FLAG FROM STOCK"), Texts{"3"});
    EXPECT_EQ(Column("SELECT CITY FROM STOCK"), Texts{"<Null>"});
}

TEST_F(ConnectionTest, TakesNullInPlaceOfADefault) {
    connection_.Execute("INSERT INTO STOCK (KEYNAME,PRICE,LISTED,FLAG) VALUES ('A',Null,Null,Null)");
    EXPECT_EQ(Column("SELECT PRICE FROM STOCK"), Texts{"<Null>"});
    EXPECT_EQ(Column("SELECT LISTED FROM STOCK"), Texts{"<Null>"});
    EXPECT_EQ(Column("SELECT FLAG FROM STOCK"), Texts{"<Null>"});
}

TEST_F(ConnectionTest, FillsAllColumnsWhenNoneAreNamed) {
    connection_.Execute("INSERT INTO stock VALUES ('A','Troy',5,#3/1/2009#,'1','a memo');");
    EXPECT_EQ(Column("SELECT NOTES FROM STOCK"), Texts{"a memo"});
    EXPECT_EQ(Refusal("INSERT INTO STOCK VALUES ('B','Troy')"), fault::kSyntax);
}

TEST_F(ConnectionTest, KeepsLikeStatementsApart) {
    // The second has the head of the first in it, the third another order of columns.
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"B\")");
    connection_.Execute("INSERT INTO STOCK (KEYNAME,CITY) VALUES (\"C\",\"Troy\")");
    connection_.Execute("INSERT INTO STOCK (CITY,KEYNAME) VALUES (\"Flint\",\"D\")");
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK ORDER BY KEYNAME"), (Texts{"A", "B", "C", "D"}));
    EXPECT_EQ(Column("SELECT CITY FROM STOCK ORDER BY KEYNAME"),
              (Texts{"<Null>", "<Null>", "Troy", "Flint"}));
}

TEST_F(ConnectionTest, GoesOnAfterARefusedStatement) {
    connection_.Execute("INSERT INTO STOCK (KEYNAME,PRICE,CITY) VALUES (\"A\",1,\"Troy\")");
    EXPECT_EQ(Refusal("INSERT INTO STOCK (KEYNAME,PRICE,CITY) VALUES (\"B\",,\"Troy\")"), fault::kSyntax);
    EXPECT_EQ(Refusal("INSERT INTO STOCK (KEYNAME,PRICE,CITY) VALUES (\"B\",\"\",\"Troy\")"),
              fault::kTypeMismatch);
    EXPECT_EQ(Refusal("INSERT INTO STOCK (KEYNAME,PRICE,CITY) VALUES (\"B\",2,\"12345678901\")"),
              fault::kTooLong);
    EXPECT_EQ(Refusal("INSERT INTO STOCK (KEYNAME,PRICE,CITY) VALUES (\"B\",2)"), fault::kSyntax);
    EXPECT_EQ(Refusal("INSERT INTO STOCK (KEYNAME,PRICE,CITY) VALUES (\"B\",2,\"Troy\",3)"), fault::kSyntax);
    connection_.Execute("INSERT INTO STOCK (KEYNAME,PRICE,CITY) VALUES (\"C\",3,\"Flint\")");
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK"), (Texts{"A", "C"}));
}

TEST_F(ConnectionTest, RefusesASecondRecordOfTheSameKeyInAnyCase) {
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"12 Oak St\")");
    EXPECT_EQ(Refusal("INSERT INTO STOCK (KEYNAME) VALUES (\"12 OAK ST\")"), fault::kDuplicateKey);
    EXPECT_EQ(Refusal("INSERT INTO STOCK (CITY) VALUES (\"Troy\")"), fault::kNullKey);
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK"), Texts{"12 Oak St"});
}

TEST_F(ConnectionTest, RefusesColumnsAndTablesThatThereAreNot) {
    EXPECT_EQ(Refusal("INSERT INTO STOCK (KEYNAME,COLOUR) VALUES (\"A\",\"red\")"), fault::kItemNotFound);
    EXPECT_EQ(Refusal("INSERT INTO SHOP (KEYNAME) VALUES (\"A\")"), fault::kNoSuchTable);
    EXPECT_EQ(Refusal("INSERT INTO STOCK (KEYNAME,CITY,keyname) VALUES (\"A\",\"B\",\"C\")"), fault::kSyntax);
    EXPECT_EQ(Refusal("ALTER TABLE STOCK ALTER COLUMN COLOUR SET DEFAULT 1"), fault::kItemNotFound);
    EXPECT_EQ(Refusal("ALTER TABLE SHOP ADD COLOUR TEXT(5)"), fault::kNoSuchTable);
}

TEST_F(ConnectionTest, NamesTheColumnThatThereIsNot) {
    const Fault fault = CaughtFault(
        [&] { connection_.Execute("INSERT INTO STOCK (KEYNAME,COLOUR) VALUES (\"A\",\"red\")"); });
    EXPECT_EQ(fault.place.column, "COLOUR");
}

TEST_F(ConnectionTest, AddsAColumnThatTheNextInsertFills) {
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    EXPECT_EQ(connection_.Execute("ALTER TABLE STOCK ADD COLOUR CHAR(4)"), 0);
    connection_.Execute("ALTER TABLE STOCK ALTER COLUMN COLOUR SET DEFAULT 7");
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"B\")");
    connection_.Execute("INSERT INTO STOCK (KEYNAME,COLOUR) VALUES (\"C\",\"red\")");
    EXPECT_EQ(Column("SELECT COLOUR FROM STOCK ORDER BY KEYNAME"), (Texts{"<Null>", "7", "red"}));
    EXPECT_EQ(Refusal("ALTER TABLE STOCK ADD colour TEXT(9)"), fault::kColumnExists);
}

TEST_F(ConnectionTest, SeesAColumnThatAnotherConnectionAdded) {
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    Run("ALTER TABLE STOCK ADD AMOUNT DOUBLE");
    Run("ALTER TABLE STOCK ALTER COLUMN AMOUNT SET DEFAULT 5");
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"B\")");
    EXPECT_EQ(Column("SELECT AMOUNT FROM STOCK ORDER BY KEYNAME"), (Texts{"<Null>", "5"}));
}

TEST_F(ConnectionTest, SetsABareDateDefaultAsADay) {
    connection_.Execute("ALTER TABLE STOCK ADD SOLD DATE");
    connection_.Execute("ALTER TABLE STOCK ALTER COLUMN SOLD SET DEFAULT 01/01/1900");
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    EXPECT_EQ(Column("SELECT SOLD FROM STOCK"), Texts{"1/1/1900"});
    const jet::TableDefinition& table = connection_.Database().OpenTable("STOCK").Definition();
    EXPECT_EQ(table.columns[*table.FindColumn("SOLD")].properties.defaultValue, "#1/1/1900#");
}

TEST_F(ConnectionTest, RefusesADefaultThatItsColumnDoesNotTake) {
    EXPECT_EQ(Refusal("ALTER TABLE STOCK ALTER COLUMN PRICE SET DEFAULT \"none\""), fault::kTypeMismatch);
    EXPECT_EQ(Refusal("ALTER TABLE STOCK ALTER COLUMN FLAG SET DEFAULT \"123\""), fault::kTooLong);
    EXPECT_EQ(Refusal("ALTER TABLE STOCK ALTER COLUMN FLAG SET DEFAULT "), fault::kSyntax);
    connection_.Execute("ALTER TABLE STOCK ALTER COLUMN PRICE SET DEFAULT Null");
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    EXPECT_EQ(Column("SELECT PRICE FROM STOCK"), Texts{"<Null>"});
}

TEST_F(ConnectionTest, NumbersAnAutoNumberColumn) {
    connection_.Execute("ALTER TABLE STOCK ADD COUNTED COUNTER");
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"B\")");
    EXPECT_EQ(Column("SELECT COUNTED FROM STOCK ORDER BY KEYNAME"), (Texts{"1", "2"}));
}

TEST_F(ConnectionTest, KeepsABatchAcrossARefusedStatement) {
    connection_.BeginBatch();
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    EXPECT_EQ(Refusal("INSERT INTO STOCK (KEYNAME) VALUES (\"a\")"), fault::kDuplicateKey);
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"B\")");
    EXPECT_TRUE(connection_.Database().InTransaction());
    connection_.EndBatch();
    EXPECT_FALSE(connection_.Database().InTransaction());
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK"), (Texts{"A", "B"}));
}

TEST_F(ConnectionTest, StoresWhatABatchHeldWhenItIsClosedInTheMiddle) {
    connection_.BeginBatch();
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    connection_.Close();
    EXPECT_FALSE(connection_.IsOpen());
    const auto reopened = jet::Database::Open(Path(), jet::Database::Access::ReadOnly);
    EXPECT_EQ(reopened->OpenTable("STOCK").RowCount(), 1U);
}

TEST_F(ConnectionTest, SharesOneTransactionBetweenBatches) {
    connection_.BeginBatch();
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    {
        const auto control = Select("SELECT * FROM STOCK");
        control->Recordset().BeginBatch();
        control->Recordset().SetValue("CITY", std::string("Troy"));
        control->Recordset().Update();
        control->Recordset().EndBatch();
        EXPECT_TRUE(connection_.Database().InTransaction());
    }
    connection_.EndBatch();
    EXPECT_FALSE(connection_.Database().InTransaction());
    EXPECT_EQ(Column("SELECT CITY FROM STOCK"), Texts{"Troy"});
    EXPECT_EQ(FaultOf([&] { connection_.EndBatch(); }), fault::kInvalidCall);
}

TEST_F(ConnectionTest, WritesNothingWhenOpenForReadingOnly) {
    connection_.Close();
    connection_.Open("Data Source=" + Path().string() + ";Mode=Read");
    EXPECT_EQ(Refusal("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")"), fault::kReadOnly);
}

TEST_F(ConnectionTest, MapsItsDataSource) {
    Connection mapped(pool_, clock_, [this](std::string_view source) {
        EXPECT_EQ(source, "C:\\ZVR\\STOCK.MDB");
        return Path();
    });
    mapped.Open("Data Source=C:\\ZVR\\STOCK.MDB;Mode=ReadWrite");
    EXPECT_EQ(mapped.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")"), 1);
}

TEST_F(ConnectionTest, FaultsWhenNotOpen) {
    Connection closed(pool_, clock_);
    EXPECT_FALSE(closed.IsOpen());
    EXPECT_EQ(FaultOf([&] { closed.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")"); }),
              fault::kObjectNotSet);
    EXPECT_EQ(FaultOf([&] { closed.Open("Data Source=" + (folder_ / "missing.mdb").string()); }),
              fault::kFileNotFound);
    EXPECT_EQ(FaultOf([&] { closed.Open("Mode=ReadWrite"); }), fault::kFileNotFound);
    EXPECT_FALSE(closed.IsOpen());
}

TEST_F(ConnectionTest, SharesTheDatabaseOfAFileHoweverItIsNamed) {
    const auto one = pool_.Open(Path(), jet::Database::Access::ReadOnly);
    const auto other = pool_.Open(folder_.Path() / "." / "STOCK.mdb", jet::Database::Access::ReadWrite);
    EXPECT_EQ(one, other);
    EXPECT_EQ(one.get(), &connection_.Database());
}

TEST(DatabasePoolOpen, OpensAnewWhenWritingIsAskedFor) {
    const testing_support::TempFolder folder;
    static_cast<void>(jet::Database::Create(folder / "a.mdb", 40359));
    DatabasePool pool;
    const auto reading = pool.Open(folder / "a.mdb", jet::Database::Access::ReadOnly);
    EXPECT_TRUE(reading->IsReadOnly());
    const auto writing = pool.Open(folder / "a.mdb", jet::Database::Access::ReadWrite);
    EXPECT_FALSE(writing->IsReadOnly());
    EXPECT_EQ(pool.Open(folder / "a.mdb", jet::Database::Access::ReadOnly), writing);
}

TEST(DatabasePoolOpen, ClosesAFileWithItsLastUser) {
    const testing_support::TempFolder folder;
    static_cast<void>(jet::Database::Create(folder / "a.mdb", 40359));
    DatabasePool pool;
    DatabasePool otherProgram;
    const auto write = [&] {
        static_cast<void>(otherProgram.Open(folder / "a.mdb", jet::Database::Access::ReadWrite));
    };
    auto first = pool.Open(folder / "a.mdb", jet::Database::Access::ReadWrite);
    auto second = pool.Open(folder / "a.mdb", jet::Database::Access::ReadWrite);
    first.reset();
    EXPECT_EQ(FaultOf(write), fault::kInUse);
    second.reset();
    EXPECT_EQ(FaultOf(write), 0);
}

TEST_F(ConnectionTest, FaultsWhenItsFileWasReplaced) {
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    connection_.BeginBatch();
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"B\")");
    pool_.Forget(Path());
    EXPECT_EQ(Refusal("INSERT INTO STOCK (KEYNAME) VALUES (\"C\")"), fault::kObjectNotSet);
    connection_.EndBatch();
    EXPECT_EQ(FaultOf([&] { connection_.BeginBatch(); }), fault::kObjectNotSet);
    // The batch was given up; what comes to the path next is opened anew, for writing too.
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK"), Texts{"A"});
    connection_.Open(ConnectionText());
    connection_.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"C\")");
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK"), (Texts{"A", "C"}));
    pool_.Forget(folder_ / "never-opened.mdb");
}

/// The machine's disk, on which nothing can be opened for writing.
class ProtectedDisk final : public files::HostDisk {
  public:
    std::unique_ptr<files::HostFile> Open(const std::filesystem::path& path, files::OpenMode mode) override {
        if (mode != files::OpenMode::ReadOnly) {
            throw Fault{fault::kPathAccess, "The disk is write-protected.", Place{path.string()}};
        }
        return files::SystemDisk().Open(path, mode);
    }
    bool Exists(const std::filesystem::path& path) override { return files::SystemDisk().Exists(path); }
    void Remove(const std::filesystem::path& path) override { Refuse(path); }
    void Rename(const std::filesystem::path& from, const std::filesystem::path&) override { Refuse(from); }
    void SyncFolder(const std::filesystem::path&) override {}

  private:
    static void Refuse(const std::filesystem::path& path) {
        throw Fault{fault::kPathAccess, "The disk is write-protected.", Place{path.string()}};
    }
};

TEST(DatabasePoolOpen, OpensAWriteProtectedFileForReadingAndSaysSoOnce) {
    const testing_support::TempFolder folder;
    static_cast<void>(jet::Database::Create(folder / "a.mdb", 40359));
    ProtectedDisk disk;
    DatabasePool pool(disk);
    std::vector<std::string> heard;
    pool.SetListener([&](const std::filesystem::path& path, const std::string& notice) {
        EXPECT_EQ(path, folder / "a.mdb");
        heard.push_back(notice);
    });
    const auto first = pool.Open(folder / "a.mdb", jet::Database::Access::ReadWrite);
    EXPECT_TRUE(first->IsReadOnly());
    const auto second = pool.Open(folder / "a.mdb", jet::Database::Access::ReadWrite);
    EXPECT_EQ(second->Path(), first->Path());
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_NE(heard[0].find("for reading only"), std::string::npos);
}

TEST(DatabasePoolOpen, DoesNotReadInPlaceOfWritingWhatSomebodyElseWrites) {
    const testing_support::TempFolder folder;
    static_cast<void>(jet::Database::Create(folder / "a.mdb", 40359));
    const auto other = jet::Database::Open(folder / "a.mdb", jet::Database::Access::ReadWrite);
    DatabasePool pool;
    try {
        static_cast<void>(pool.Open(folder / "a.mdb", jet::Database::Access::ReadWrite));
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kInUse);
    }
    EXPECT_TRUE(pool.Open(folder / "a.mdb", jet::Database::Access::ReadOnly)->IsReadOnly());
}

}  // namespace
}  // namespace zenvora::ado
