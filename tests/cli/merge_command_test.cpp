#include <filesystem>

#include "cli_fixture.h"
#include "support/old_databook.h"

namespace zenvora::cli {
namespace {

namespace fs = std::filesystem;

class MergeCommand : public CliTest {
  protected:
    std::string Book(const std::string& name, const std::vector<std::string>& keys, const std::string& city) {
        const auto book = NewDatabook(name);
        for (const auto& key : keys) {
            MustRun({"sql", book,
                     "INSERT INTO COMPS (CENTRALKEY, CITY) VALUES (\"" + key + "\", \"" + city + "\")"});
        }
        return book;
    }
    static std::string Records(const std::string& book) {
        return MustRun(
            {"sql", book, "SELECT CENTRALKEY, CITY FROM COMPS ORDER BY CENTRALKEY", "--format", "csv"});
    }
};

TEST_F(MergeCommand, MakesADestinationThatIsMissing) {
    const auto sold = Book("SOLD.mdb", {"1 O'HARA ST", "2 A ST"}, "Troy");
    const auto active = Book("ACTIVE.mdb", {"2 A ST", "3 A ST"}, "Novi");
    EXPECT_EQ(MustRun({"merge", At("ALL.mdb"), sold, active, "--existing", "overwrite"}),
              At("ALL.mdb") + ": 3 records added, 1 overwritten, 0 skipped\n");
    EXPECT_EQ(Records(At("ALL.mdb")),
              "CENTRALKEY,CITY\r\n1 O'HARA ST,Troy\r\n2 A ST,Novi\r\n3 A ST,Novi\r\n");
    EXPECT_FALSE(fs::exists(At("ALL.mdb.bak")));
}

TEST_F(MergeCommand, KeepsTheDestinationAsItWas) {
    const auto from = Book("FROM.mdb", {"1 A ST", "2 A ST"}, "Novi");
    const auto to = Book("TO.mdb", {"1 A ST"}, "Troy");
    const auto before = Read(to);
    EXPECT_EQ(MustRun({"merge", to, from, "--existing", "skip", "--format", "json"}),
              R"({"destination":")" + to + R"(","added":1,"overwritten":0,"skipped":1})" + "\n");
    EXPECT_EQ(Records(to), "CENTRALKEY,CITY\r\n1 A ST,Troy\r\n2 A ST,Novi\r\n");
    EXPECT_EQ(Read(to + ".bak"), before);
    EXPECT_EQ(MustRun({"merge", to, from, "--existing", "overwrite", "--format", "csv"}),
              "added,overwritten,skipped\r\n0,2,0\r\n");
    EXPECT_EQ(Records(to), "CENTRALKEY,CITY\r\n1 A ST,Novi\r\n2 A ST,Novi\r\n");
}

TEST_F(MergeCommand, LeavesTheDestinationAloneWhenTheMergeBreaksOff) {
    const auto from = Book("FROM.mdb", {"1 A ST"}, "Novi");
    MustRun({"sql", from, "ALTER TABLE COMPS ADD REMARKS TEXT(20)"});
    MustRun({"sql", from, "INSERT INTO COMPS (CENTRALKEY, REMARKS) VALUES ('2 A ST', 'x')"});
    const auto to = Book("TO.mdb", {"1 A ST"}, "Troy");
    const auto before = Everything();
    const auto result = Run({"merge", to, from, "--existing", "overwrite"});
    EXPECT_EQ(result.status, Exit::SomethingRefused);
    EXPECT_NE(result.LastLine().find("record 2"), std::string::npos) << result.err;
    EXPECT_NE(result.LastLine().find("REMARKS"), std::string::npos) << result.err;
    EXPECT_NE(result.LastLine().find("Nothing was merged"), std::string::npos) << result.err;
    EXPECT_EQ(Everything(), before);
}

TEST_F(MergeCommand, BringsOldDatabooksUpToDate) {
    testing_support::MakeOldDatabook(At("OLD.mdb"), {{.key = "1 A ST", .otherArea1 = "100000"}});
    testing_support::MakeOldDatabook(At("OLDER.mdb"), {{.key = "2 A ST", .otherArea1 = "200000"}});
    const auto old = Read(At("OLD.mdb"));
    MustRun({"merge", At("OLD.mdb"), At("OLDER.mdb"), "--existing", "skip"});
    EXPECT_EQ(
        MustRun({"sql", At("OLD.mdb"), "SELECT CENTRALKEY, ORIGLISTPRICE FROM COMPS", "--format", "csv"}),
        "CENTRALKEY,ORIGLISTPRICE\r\n1 A ST,100000\r\n2 A ST,200000\r\n");
    EXPECT_EQ(Read(At("OLD.mdb.bak")), old);
    std::vector<std::string> names;
    for (const auto& [path, bytes] : Everything())
        names.push_back(fs::path(path).filename().string());
    EXPECT_EQ(names, (std::vector<std::string>{"OLD.mdb", "OLD.mdb.bak", "OLDER.mdb", "OLDER.mdb.bak"}));
}

TEST_F(MergeCommand, RefusesWhatCannotBeMerged) {
    const auto to = Book("TO.mdb", {"1 A ST"}, "Troy");
    const auto before = Everything();
    EXPECT_EQ(Run({"merge", to, At("MISSING.mdb"), "--existing", "skip"}).status, Exit::FileTrouble);
    EXPECT_EQ(Run({"merge", to, to, "--existing", "skip"}).status, Exit::BadCommandLine);
    EXPECT_EQ(Run({"merge", to, At("X.mdb")}).status, Exit::BadCommandLine);
    EXPECT_EQ(Run({"merge", to, At("X.mdb"), "--existing", "ask"}).status, Exit::BadCommandLine);
    EXPECT_EQ(Everything(), before);
    const auto text = Write("TEXT.mdb", NoDatabook());
    EXPECT_EQ(Run({"merge", to, text, "--existing", "skip"}).status, Exit::FileTrouble);
    EXPECT_EQ(Run({"merge", At("NEW.mdb"), text, "--existing", "skip"}).status, Exit::FileTrouble);
    EXPECT_FALSE(fs::exists(At("NEW.mdb")));
}

}  // namespace
}  // namespace zenvora::cli
