#include "cli_fixture.h"
#include "support/old_databook.h"

namespace zenvora::cli {
namespace {

class UpgradeCommand : public CliTest {
  protected:
    std::string OldBook() {
        testing_support::MakeOldDatabook(At("OLD.mdb"), {{.key = "12 OAK ST",
                                                          .neighbourhood = "DALLAS, TX 75201",
                                                          .otherArea1 = "$259,900",
                                                          .otherArea2 = "1/30/2009"},
                                                         {.key = "14 OAK ST"}});
        return At("OLD.mdb");
    }
};

TEST_F(UpgradeCommand, BringsAnOldDatabookUpToDate) {
    const auto book = OldBook();
    const auto old = Read(book);
    const auto result = Run({"upgrade", book});
    EXPECT_EQ(result.status, Exit::Done);
    EXPECT_EQ(result.out, book + ": upgraded, 2 records; the old file is kept as " + book + ".bak\n");
    EXPECT_NE(result.err.find("New Listing Fields will be added"), std::string::npos);
    EXPECT_EQ(Read(book + ".bak"), old);
    EXPECT_EQ(
        MustRun({"sql", book, "SELECT CITY, ORIGLISTPRICE, ORIGLISTDATE, SELECTED FROM COMPS", "--format",
                 "csv"}),
        "CITY,ORIGLISTPRICE,ORIGLISTDATE,SELECTED\r\nDALLAS,259900,2009-01-30,3\r\n,0,1900-01-01,3\r\n");
}

TEST_F(UpgradeCommand, LeavesACurrentDatabookAlone) {
    const auto book = SixRecords();
    const auto before = Everything();
    EXPECT_EQ(MustRun({"upgrade", book}), book + ": up to date already\n");
    EXPECT_EQ(Everything(), before);
}

TEST_F(UpgradeCommand, SaysInJsonWhatItDid) {
    const auto book = OldBook();
    EXPECT_EQ(MustRun({"upgrade", book, "--format", "json", "--quiet"}),
              R"({"databook":")" + book + R"(","converted":false,"upgraded":true,"records":2,"backup":")" +
                  book + ".bak\"}\n");
    EXPECT_EQ(MustRun({"upgrade", book, "--format", "json"}),
              R"({"databook":")" + book +
                  R"(","converted":false,"upgraded":false,"records":0,"backup":null})" + "\n");
}

TEST_F(UpgradeCommand, RefusesWhatIsNoDatabook) {
    testing_support::MakeOldDatabook(At("OTHER.mdb"), {}, {.hasCentralKey = false});
    auto result = Run({"upgrade", At("OTHER.mdb")});
    EXPECT_EQ(result.status, Exit::FileTrouble);
    EXPECT_NE(result.LastLine().find("has no column CENTRALKEY"), std::string::npos) << result.err;
    result = Run({"upgrade", Write("TEXT.mdb", NoDatabook())});
    EXPECT_EQ(result.status, Exit::FileTrouble);
    result = Run({"upgrade", At("MISSING.mdb")});
    EXPECT_EQ(result.status, Exit::FileTrouble);
    EXPECT_NE(result.LastLine().find("MISSING.mdb"), std::string::npos);
}

}  // namespace
}  // namespace zenvora::cli
