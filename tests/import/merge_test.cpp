#include "import/merge.h"

#include <ctime>
#include <gtest/gtest.h>

#include "databook/selection.h"
#include "databook/template.h"
#include "platform/ado/adodc.h"
#include "platform/ado/connection.h"
#include "platform/fault.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

namespace zenvora::importing {
namespace {

class Merge : public testing::Test {
  protected:
    Merge() {
        databook::CreateTemplate(folder_ / "FROM.mdb", clock_.Now());
        databook::CreateTemplate(folder_ / "TO.mdb", clock_.Now());
    }

    void Execute(const char* book, const std::string& statement) {
        ado::Connection connection(pool_, clock_);
        connection.Open(databook::OneShotConnectionString((folder_ / book).string()));
        connection.Execute(statement);
    }
    void Add(const char* book, const std::string& key, const std::string& city, int price) {
        Execute(book, "INSERT INTO COMPS (CENTRALKEY,CITY,SELLINGPR) VALUES (\"" + key + "\"," +
                          (city.empty() ? "Null" : "\"" + city + "\"") + "," + std::to_string(price) + ")");
    }
    void AddMany(const char* book, int first, int count) {
        ado::Connection connection(pool_, clock_);
        connection.Open(databook::OneShotConnectionString((folder_ / book).string()));
        connection.BeginBatch();
        for (int i = 0; i < count; ++i) {
            // Scattered over the alphabet, as the order of an export is.
            const int number = 10000 + static_cast<int>((first + i) * 7919LL % 90001);
            connection.Execute("INSERT INTO COMPS (CENTRALKEY,ADDRESS,CITY,ST,SELLINGPR) VALUES (\"" +
                               std::to_string(number) + " O'HARA BLVD\",\"" + std::to_string(number) +
                               " O'Hara Blvd\",\"Troy\",\"MI\"," + std::to_string(i) + ")");
        }
        connection.EndBatch();
    }
    void Select(ado::Adodc& control, const char* book) {
        control.Connectionstring = databook::OneShotConnectionString((folder_ / book).string());
        databook::AdoSelect(control, "COMPS", "*", "");
    }
    MergeCounts Run(ExistingRecords existing, const char* from = "FROM.mdb", const char* to = "TO.mdb") {
        Select(source_, from);
        Select(destination_, to);
        counts_ = {};
        MergeRecords(session_, source_.Recordset(), destination_.Recordset(), existing, counts_);
        return counts_;
    }
    /// "KEY|CITY|PRICE" of each record of the destination as the file holds it.
    std::vector<std::string> Stored() {
        ado::Adodc fresh(pool_, clock_);
        fresh.Connectionstring = databook::OneShotConnectionString((folder_ / "TO.mdb").string());
        databook::AdoSelect(fresh, "COMPS", "CENTRALKEY, CITY, SELLINGPR", databook::kKeyOrder);
        std::vector<std::string> records;
        for (ado::Recordset& set = fresh.Recordset(); !set.Eof(); set.MoveNext())
            records.push_back(set.Text(0) + "|" + (set.IsNull(1) ? "Null" : set.Text(1)) + "|" + set.Text(2));
        return records;
    }

    testing_support::TempFolder folder_;
    shell::FixedClock clock_{40359};  // 6/30/2010
    ado::DatabasePool pool_;
    testing_support::ScriptedDesktop desktop_;
    common::Session session_{desktop_, clock_, pool_, {}, "COMPS", 0};
    ado::Adodc source_{pool_, clock_};
    ado::Adodc destination_{pool_, clock_};
    MergeCounts counts_;
};

using Records = std::vector<std::string>;

TEST_F(Merge, IntoAnEmptyDestinationAddsEveryRecord) {
    Add("FROM.mdb", "1 A ST", "Troy", 1);
    Add("FROM.mdb", "2 A ST", "", 2);
    const MergeCounts counts = Run(ExistingRecords::Ask);
    EXPECT_EQ(Stored(), (Records{"1 A ST|Troy|1", "2 A ST|Null|2"}));
    EXPECT_EQ(CountsText(counts), "2 records added, 0 overwritten, 0 skipped");
}

TEST_F(Merge, OfASourceWithoutRecordsDoesNothing) {
    Add("TO.mdb", "1 A ST", "Troy", 1);
    EXPECT_EQ(CountsText(Run(ExistingRecords::Overwrite)), "0 records added, 0 overwritten, 0 skipped");
    EXPECT_EQ(Stored(), Records{"1 A ST|Troy|1"});
}

TEST_F(Merge, OverwritesFieldByFieldAndBlanksNothing) {
    Add("FROM.mdb", "1 A ST", "", 2);
    Add("TO.mdb", "1 A ST", "Troy", 1);
    EXPECT_EQ(CountsText(Run(ExistingRecords::Overwrite)), "0 records added, 1 overwritten, 0 skipped");
    EXPECT_EQ(Stored(), Records{"1 A ST|Troy|2"});
}

TEST_F(Merge, SkipsWhatIsThere) {
    Add("FROM.mdb", "1 A ST", "Novi", 2);
    Add("FROM.mdb", "2 A ST", "Novi", 3);
    Add("TO.mdb", "1 A ST", "Troy", 1);
    EXPECT_EQ(CountsText(Run(ExistingRecords::Skip)), "1 record added, 0 overwritten, 1 skipped");
    EXPECT_EQ(Stored(), (Records{"1 A ST|Troy|1", "2 A ST|Novi|3"}));
}

TEST_F(Merge, AsksForEachRecordThatIsThere) {
    for (const char* key : {"1 A ST", "2 A ST", "3 A ST"})
        Add("FROM.mdb", key, "Novi", 2);
    Add("TO.mdb", "1 A ST", "Troy", 1);
    Add("TO.mdb", "2 A ST", "Troy", 1);
    desktop_.Expect(
        "1 A ST already exists in the destination database. Overwrite destination with source "
        "information?\nIf you choose No, the source record will not be copied to the destination.",
        controls::Answer::No);
    desktop_.ExpectAny(controls::Answer::Yes);
    EXPECT_EQ(CountsText(Run(ExistingRecords::Ask)), "1 record added, 1 overwritten, 1 skipped");
    EXPECT_EQ(Stored(), (Records{"1 A ST|Troy|1", "2 A ST|Novi|2", "3 A ST|Novi|2"}));
    EXPECT_EQ(desktop_.messages[0].title, "Overwrite?");
    EXPECT_EQ(desktop_.messages[0].icon, controls::Icon::Critical);
    EXPECT_EQ(desktop_.messages[0].buttons, controls::Buttons::YesNo);
}

TEST_F(Merge, FindsAKeyWithAnApostropheAndOneWithAnAsterisk) {
    Add("FROM.mdb", "1 O'HARA'S ST", "Novi", 2);
    Add("FROM.mdb", "2 STAR* ST", "Novi", 2);
    Add("FROM.mdb", "3 O'HARA ST", "Novi", 2);
    Add("TO.mdb", "1 O'HARA'S ST", "Troy", 1);
    Add("TO.mdb", "2 STAR* ST", "Troy", 1);
    EXPECT_EQ(CountsText(Run(ExistingRecords::Overwrite)), "1 record added, 2 overwritten, 0 skipped");
    EXPECT_EQ(Stored(), (Records{"1 O'HARA'S ST|Novi|2", "2 STAR* ST|Novi|2", "3 O'HARA ST|Novi|2"}));
}

TEST_F(Merge, FindsAKeyWithoutRegardToCase) {
    Add("FROM.mdb", "1 a st", "Novi", 2);
    Add("TO.mdb", "1 A ST", "Troy", 1);
    EXPECT_EQ(CountsText(Run(ExistingRecords::Skip)), "0 records added, 0 overwritten, 1 skipped");
}

TEST_F(Merge, CopiesTheValidityMarkLikeAnyField) {
    Execute("FROM.mdb", "INSERT INTO COMPS (CENTRALKEY,SELECTED) VALUES ('1 A ST','2')");
    Run(ExistingRecords::Skip);
    EXPECT_EQ(destination_.Recordset().Value("SELECTED"), jet::Value{std::string("2")});
}

TEST_F(Merge, OfADatabookIntoItselfFindsEveryRecord) {
    Add("TO.mdb", "1 A ST", "Troy", 1);
    Add("TO.mdb", "2 A ST", "Troy", 1);
    EXPECT_EQ(CountsText(Run(ExistingRecords::Overwrite, "TO.mdb", "TO.mdb")),
              "0 records added, 2 overwritten, 0 skipped");
    EXPECT_EQ(Stored(), (Records{"1 A ST|Troy|1", "2 A ST|Troy|1"}));
}

TEST_F(Merge, FindsAKeyThatTheSourceHoldsTwiceTheSecondTime) {
    // A table of another program without a key, so that a key can be there twice.
    auto database = jet::Database::Create(folder_ / "TWICE.mdb", clock_.Now());
    jet::NewTable table;
    table.name = "COMPS";
    for (const char* name : {"CENTRALKEY", "CITY"}) {
        jet::NewColumn column;
        column.name = name;
        column.characters = 50;
        table.columns.push_back(column);
    }
    jet::Table& comps = database->CreateTable(table, clock_.Now());
    comps.Insert(std::vector<jet::Value>{std::string("1 A ST"), std::string("Troy")});
    comps.Insert(std::vector<jet::Value>{std::string("1 A ST"), std::string("Novi")});
    database.reset();
    EXPECT_EQ(CountsText(Run(ExistingRecords::Overwrite, "TWICE.mdb")),
              "1 record added, 1 overwritten, 0 skipped");
    EXPECT_EQ(Stored(), Records{"1 A ST|Novi|"});
}

TEST_F(Merge, EndsAtAFieldThatTheDestinationLacksAndSaysHowFarItCame) {
    Execute("FROM.mdb", "ALTER TABLE COMPS ADD REMARKS TEXT(20)");
    Add("FROM.mdb", "1 A ST", "Troy", 1);  // Null in the new field: no harm
    Execute("FROM.mdb", "INSERT INTO COMPS (CENTRALKEY,REMARKS) VALUES ('2 A ST','x')");
    Add("FROM.mdb", "3 A ST", "Troy", 1);
    try {
        Run(ExistingRecords::Overwrite);
        FAIL() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kItemNotFound);
        EXPECT_EQ(fault.place.column, "REMARKS");
        EXPECT_EQ(fault.place.record, 2);
    }
    EXPECT_EQ(CountsText(counts_), "1 record added, 0 overwritten, 0 skipped");
    EXPECT_EQ(Stored(), Records{"1 A ST|Troy|1"});
}

TEST_F(Merge, OfFiftyThousandIntoFiftyThousandTakesLessThanThreeSeconds) {
    AddMany("TO.mdb", 0, 50000);
    AddMany("FROM.mdb", 25000, 50000);  // half of them are there
    const std::clock_t start = std::clock();
    const MergeCounts counts = Run(ExistingRecords::Overwrite);
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    EXPECT_EQ(CountsText(counts), "25000 records added, 25000 overwritten, 0 skipped");
    EXPECT_EQ(Stored().size(), 75000U);
#ifdef __SANITIZE_ADDRESS__
    constexpr double kLimit = 30;
#else
    constexpr double kLimit = 3;
#endif
    EXPECT_LT(seconds, kLimit);
}

}  // namespace
}  // namespace zenvora::importing
