#include "store_fixture.h"
#include "support/full_disk.h"

/// Batches on a disk that gets full.
namespace zenvora::ado {
namespace {

using testing_support::FullDisk;

TEST_F(StoreTest, ABatchThatCannotBeWrittenIsTakenBackAndTheNextOneGoesOn) {
    FullDisk disk;
    DatabasePool pool(disk);
    Connection connection(pool, clock_);
    connection.Open(ConnectionText());
    connection.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
    connection.BeginBatch();
    connection.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"B\")");
    disk.full = true;
    EXPECT_EQ(FaultOf([&] { connection.EndBatch(); }), fault::kDiskFull);
    EXPECT_FALSE(connection.Database().InTransaction());
    disk.full = false;
    connection.BeginBatch();
    connection.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"C\")");
    connection.EndBatch();
    connection.Close();
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK ORDER BY KEYNAME"), (std::vector<std::string>{"A", "C"}));
}

TEST_F(StoreTest, ABatchIsForgottenQuietlyWhenItsUserGoesAwayOnAFullDisk) {
    FullDisk disk;
    DatabasePool pool(disk);
    {
        Connection connection(pool, clock_);
        connection.Open(ConnectionText());
        connection.BeginBatch();
        connection.Execute("INSERT INTO STOCK (KEYNAME) VALUES (\"A\")");
        disk.full = true;
    }
    disk.full = false;
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK"), std::vector<std::string>{});
}

}  // namespace
}  // namespace zenvora::ado
