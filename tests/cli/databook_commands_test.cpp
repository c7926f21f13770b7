// The commands on small Databooks whose results are worked out by hand.

#include <filesystem>
#include <nlohmann/json.hpp>

#include "cli_fixture.h"

namespace zenvora::cli {
namespace {

using Json = nlohmann::ordered_json;

using NewCommand = CliTest;
using SqlCommand = CliTest;
using RecordsCommand = CliTest;
using CheckCommand = CliTest;
using CalcCommand = CliTest;
using SelectCommand = CliTest;

TEST_F(NewCommand, MakesAnEmptyDatabook) {
    EXPECT_EQ(MustRun({"new", At("A.mdb")}), At("A.mdb") + ": an empty Databook\n");
    EXPECT_EQ(MustRun({"records", At("A.mdb"), "--format=json"}), "{\"records\":[]}\n");
    EXPECT_EQ(Everything().size(), 1U);
}

TEST_F(NewCommand, WritesItsResultInEachForm) {
    EXPECT_EQ(MustRun({"new", At("A.mdb"), "--format=json"}), "{\"databook\":\"" + At("A.mdb") + "\"}\n");
    EXPECT_EQ(MustRun({"new", At("B.mdb"), "--format=csv"}), "databook\r\n" + At("B.mdb") + "\r\n");
}

TEST_F(NewCommand, RefusesAnExistingFileWithoutForce) {
    const auto path = Write("A.mdb", "mine");
    const auto before = Everything();
    const auto result = Run({"new", path});
    EXPECT_EQ(result.status, Exit::FileTrouble);
    EXPECT_NE(result.LastLine().find(path), std::string::npos) << result.err;
    EXPECT_NE(result.LastLine().find("--force"), std::string::npos) << result.err;
    EXPECT_EQ(Everything(), before);
}

TEST_F(NewCommand, KeepsTheFileThatItReplaces) {
    const auto path = Write("A.mdb", "mine");
    MustRun({"new", path, "--force"});
    EXPECT_EQ(Read(path + ".bak"), "mine");
    EXPECT_EQ(MustRun({"records", path, "--format=json"}), "{\"records\":[]}\n");
    EXPECT_EQ(Everything().size(), 2U);
}

TEST_F(NewCommand, RefusesAFolderAndAPlaceThatIsNone) {
    std::filesystem::create_directory(At("FOLDER.mdb"));
    Write("file.txt", "text");
    const auto before = Everything();
    for (const char* name : {"FOLDER.mdb", "no/such/A.mdb", "file.txt/A.mdb"}) {
        for (const bool force : {false, true}) {
            std::vector<std::string> arguments{"new", At(name)};
            if (force) arguments.emplace_back("--force");
            const auto result = Run(arguments);
            EXPECT_EQ(result.status, Exit::FileTrouble) << name;
            EXPECT_NE(result.LastLine().find(name), std::string::npos) << result.err;
        }
    }
    EXPECT_EQ(Everything(), before);
}

TEST_F(SqlCommand, SelectsInTheThreeForms) {
    const auto book = SixRecords();
    const std::string statement =
        "SELECT CENTRALKEY, SELLINGPR, SALEDATE, OTHERAREA2 FROM COMPS WHERE CENTRALKEY = '14 oak st'";
    EXPECT_EQ(Json::parse(MustRun({"sql", book, statement, "--format=json"})),
              Json::parse(R"({"columns":["CENTRALKEY","SELLINGPR","SALEDATE","OTHERAREA2"],
                              "rows":[["14 OAK ST",240000,"2010-06-10",null]]})"));
    EXPECT_EQ(MustRun({"sql", book, statement, "--format=csv"}),
              "CENTRALKEY,SELLINGPR,SALEDATE,OTHERAREA2\r\n14 OAK ST,240000,2010-06-10,\r\n");
    EXPECT_EQ(MustRun({"sql", book, statement}),
              "CENTRALKEY  SELLINGPR  SALEDATE   OTHERAREA2\n"
              "14 OAK ST      240000  6/10/2010\n");
}

TEST_F(SqlCommand, CountsTheRecordsThatAStatementChanged) {
    const auto book = NewDatabook();
    EXPECT_EQ(MustRun({"sql", book, "INSERT INTO COMPS (CENTRALKEY) VALUES (\"1 ELM\")", "--format=json"}),
              "{\"affected\":1}\n");
    EXPECT_EQ(MustRun({"sql", book, "INSERT INTO COMPS (CENTRALKEY) VALUES (\"2 ELM\")", "--format=csv"}),
              "affected\r\n1\r\n");
    EXPECT_EQ(MustRun({"sql", book, "INSERT INTO COMPS (CENTRALKEY) VALUES (\"3 ELM\")"}),
              "records affected: 1\n");
}

TEST_F(SqlCommand, GivesTheReasonOfARefusedStatement) {
    const auto book = SixRecords();
    const auto before = Everything();
    for (const char* statement :
         {"INSERT INTO COMPS (CENTRALKEY) VALUES ('12 oak st')",  // the key exists
          "INSERT INTO COMPS (CENTRALKEY) VALUES (Null)", "INSERT INTO COMPS (CENTRALKEY,) VALUES ('x',)",
          "INSERT INTO COMPS (CENTRALKEY, SALEDATE) VALUES ('x', \"20/09/0315\")", "SELECT NOSUCH FROM COMPS",
          "SELECT * FROM NOSUCH", "DROP TABLE COMPS", "",
          // what an index cannot sort, and what no column can be called
          "INSERT INTO COMPS (CENTRALKEY) VALUES ('\u041C')", "ALTER TABLE COMPS ADD [a.b] CHAR(4)"}) {
        const auto result = Run({"sql", book, statement});
        EXPECT_EQ(result.status, Exit::SomethingRefused) << statement << ": " << result.err;
        EXPECT_EQ(result.out, "") << statement;
        EXPECT_NE(result.LastLine().find(book), std::string::npos) << result.err;
    }
    EXPECT_EQ(Everything(), before);
}

TEST_F(RecordsCommand, ListsInKeyOrderWithTheMainFields) {
    const auto book = NewDatabook();
    MustRun({"sql", book,
             "INSERT INTO COMPS (CENTRALKEY, ADDRESS, CITY, ST, ZIP, SELLINGPR, SALEDATE, ORIGLISTPRICE, "
             "ORIGLISTDATE, "
             "LASTLISTPRICE, LASTLISTDATE, CONTRACTDATE, LISTCANCELDATE, SELECTED) VALUES (\"12 OAK ST\", "
             "\"12 Oak St\", "
             "\"Troy\", \"MI\", \"48083\", 250000, #3/1/2009#, 259900, #1/30/2009#, 259900, #1/30/2009#, "
             "#1/1/1900#, "
             "#1/1/1900#, \"1\")"});
    EXPECT_EQ(MustRun({"records", book, "--format=json"}),
              "{\"records\":[\n"
              "{\"CENTRALKEY\":\"12 OAK ST\",\"ADDRESS\":\"12 Oak "
              "St\",\"ADDRESS2\":null,\"CITY\":\"Troy\",\"ST\":\"MI\","
              "\"ZIP\":\"48083\",\"SELLINGPR\":250000,\"PRICEFLD\":null,\"SALEDATE\":\"2009-03-01\","
              "\"ORIGLISTPRICE\":259900,"
              "\"ORIGLISTDATE\":\"2009-01-30\",\"LASTLISTPRICE\":259900,\"LASTLISTDATE\":\"2009-01-30\","
              "\"CONTRACTDATE\":\"1900-01-01\",\"LISTCANCELDATE\":\"1900-01-01\",\"SELECTED\":\"1\","
              "\"LISTINGDOM\":null,"
              "\"OTHERAREA2\":null}\n]}\n");
    MustRun({"sql", book, "INSERT INTO COMPS (CENTRALKEY) VALUES ('1 ELM, REAR')"});
    const auto csv = MustRun({"records", book, "--format=csv"});
    EXPECT_EQ(csv.substr(0, csv.find("\r\n")),
              "CENTRALKEY,ADDRESS,ADDRESS2,CITY,ST,ZIP,SELLINGPR,PRICEFLD,SALEDATE,ORIGLISTPRICE,"
              "ORIGLISTDATE,LASTLISTPRICE,"
              "LASTLISTDATE,CONTRACTDATE,LISTCANCELDATE,SELECTED,LISTINGDOM,OTHERAREA2");
    EXPECT_LT(csv.find("\r\n\"1 ELM, REAR\","), csv.find("\r\n12 OAK ST,"));
    const auto text = MustRun({"records", book});
    EXPECT_NE(text.find("3/1/2009"), std::string::npos);
    EXPECT_EQ(text.find("1/1/1900"), std::string::npos);
}

TEST_F(CheckCommand, JudgesEachRecordInKeyOrder) {
    const auto book = SixRecords();
    EXPECT_EQ(Json::parse(MustRun({"check", book, "--date=6/30/2010", "--format=json"})), Json::parse(R"({
        "effectiveDate":"2010-06-30","records":6,"valid":5,
        "verdicts":[{"CENTRALKEY":"12 OAK ST","SELECTED":"1","explanation":""},
                    {"CENTRALKEY":"14 OAK ST","SELECTED":"1","explanation":""},
                    {"CENTRALKEY":"16 OAK ST","SELECTED":"1","explanation":""},
                    {"CENTRALKEY":"18 OAK ST","SELECTED":"3","explanation":""},
                    {"CENTRALKEY":"20 OAK ST","SELECTED":"0","explanation":"Comp Sale Date is over a year ago; "},
                    {"CENTRALKEY":"22 OAK ST","SELECTED":"2","explanation":""}]})"));
    // Verdicts and repairs are in the Databook now.
    EXPECT_EQ(Json::parse(MustRun(
                  {"sql", book,
                   "SELECT SELECTED, LASTLISTPRICE, LASTLISTDATE FROM COMPS WHERE CENTRALKEY = '20 OAK ST'",
                   "--format=json"}))["rows"],
              Json::parse(R"([["0",100000,"2009-01-01"]])"));
}

TEST_F(CheckCommand, WritesCsvAndText) {
    const auto book = SixRecords();
    const auto csv = MustRun({"check", book, "--date=6/30/2010", "--format=csv"});
    EXPECT_EQ(csv.substr(0, 52), "CENTRALKEY,SELECTED,explanation\r\n12 OAK ST,1,\r\n14 OA");
    EXPECT_EQ(MustRun({"check", book, "--date=6/30/2010"}),
              "CENTRALKEY  SELECTED  explanation\n"
              "12 OAK ST   1\n"
              "14 OAK ST   1\n"
              "16 OAK ST   1\n"
              "18 OAK ST   3\n"
              "20 OAK ST   0         Comp Sale Date is over a year ago;\n"
              "22 OAK ST   2\n"
              "\n"
              "Effective Appraisal Date 6/30/2010: 5 of 6 records are valid\n");
}

TEST_F(CheckCommand, OfAnEmptyDatabookCountsNothing) {
    EXPECT_EQ(MustRun({"check", NewDatabook(), "--date=6/30/2010", "--format=json"}),
              "{\"effectiveDate\":\"2010-06-30\",\"records\":0,\"valid\":0,\"verdicts\":[]}\n");
}

TEST_F(CalcCommand, GivesTheFiguresOfTheForm) {
    // One sale in each period; a listing in the first (59 days old at its end) and in the last one (30 days).
    // Supply is 1 / 0.17 and 1 / 0.33: it divides by the rate as displayed.
    EXPECT_EQ(Json::parse(MustRun({"calc", SixRecords(), "--date=6/30/2010", "--format=json"})),
              Json::parse(R"({
        "effectiveDate":"2010-06-30","records":6,"valid":5,
        "results":{"txtTotalC":["1","1","1"],"txtAveCPrice":["0.17","0.33","0.33"],"txtTotalL":["1","0","1"],
                   "txtTotalPerAveCPrice":["5.88","0.00","3.03"],"txtMedianCPrice":["150,000","190,000","240,000"],
                   "txtMedianCDOM":["1","107","61"],"txtMedianLPrice":["150000","200000","250000"],
                   "txtMedianLDOM":["59","0","30"],"txtMedianLPDivSP":["1.00",".95",".96"]}})"));
}

TEST_F(CalcCommand, TextLooksLikeTheForm) {
    EXPECT_EQ(MustRun({"calc", SixRecords(), "--date=6/30/2010"}),
              "Effective Appraisal Date 6/30/2010: 5 of 6 records are valid\n"
              "\n"
              "Inventory Analysis                            Prior 7-12 Months   Prior 4-6 Months   "
              "Current-3 Months\n"
              "----------------------------------------------------------------------------------------------"
              "-------\n"
              "Total # of Comparable Sales (Settled)                         1                  1            "
              "      1\n"
              "Absorption Rate                                            0.17               0.33            "
              "   0.33\n"
              "Total # of Comparable Active Listings                         1                  0            "
              "      1\n"
              "Months of Housing Supply                                   5.88               0.00            "
              "   3.03\n"
              "\n"
              "Median Sale & List Price, DOM, Sale / List %  Prior 7-12 Months   Prior 4-6 Months   "
              "Current-3 Months\n"
              "----------------------------------------------------------------------------------------------"
              "-------\n"
              "Median Comparable Sale Price                            150,000            190,000            "
              "240,000\n"
              "Median Comparable Sales Days on Market                        1                107            "
              "     61\n"
              "Median Comparable List Price                             150000             200000            "
              " 250000\n"
              "Median Comparable Listings Days on Market                    59                  0            "
              "     30\n"
              "Median Sale Price as % of List Price                       1.00                .95            "
              "    .96\n");
}

TEST_F(CalcCommand, CsvHasALineForEachRowOfTheForm) {
    const auto csv = MustRun({"calc", SixRecords(), "--date=6/30/2010", "--format=csv"});
    EXPECT_EQ(csv.substr(0, csv.find("Inventory")),
              "block,cell,caption,Prior 7-12 Months,Prior 4-6 Months,Current-3 Months\r\n");
    EXPECT_NE(csv.find("\r\nInventory Analysis,txtAveCPrice,Absorption Rate,0.17,0.33,0.33\r\n"),
              std::string::npos)
        << csv;
    EXPECT_NE(csv.find("\r\n\"Median Sale & List Price, DOM, Sale / List %\",txtMedianCPrice,Median "
                       "Comparable Sale Price,"
                       "\"150,000\",\"190,000\",\"240,000\"\r\n"),
              std::string::npos)
        << csv;
}

TEST_F(CalcCommand, AddsTheEighteenListsWhenAsked) {
    const auto book = SixRecords();
    const auto lists =
        Json::parse(MustRun({"calc", book, "--date=6/30/2010", "--format=json", "--lists"}))["lists"];
    ASSERT_EQ(lists.size(), 18U);
    EXPECT_EQ(
        lists[0].dump(),
        R"({"index":0,"caption":"Sale: Price","period":"Prior 7-12 Months","entries":["150000"],)"
        R"("average":"150000","median":"150000","total":"150000","lowest":"150000","highest":"150000"})");
    EXPECT_EQ(lists[11].dump(),
              R"({"index":11,"caption":"Listing: DOM","period":"Current-3 Months","entries":["30"],)"
              R"("average":"30","median":"30","total":"30","lowest":"30","highest":"30"})");
    EXPECT_EQ(lists[13].dump(),
              R"({"index":13,"caption":"Comps: Sale Price / List Price","period":"Prior 4-6 Months",)"
              R"("entries":[],"average":"","median":"","total":"","lowest":"","highest":""})");
    const auto text = MustRun({"calc", book, "--date=6/30/2010", "--lists"});
    EXPECT_NE(text.find("\nList Prices of Sales Only                     Prior 7-12 Months   Prior 4-6 "
                        "Months   Current-3 Months\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("\nHighest                                                  150000             "
                        "200000             250000\n"),
              std::string::npos)
        << text;
    const auto csv = MustRun({"calc", book, "--date=6/30/2010", "--lists", "--format=csv"});
    EXPECT_NE(csv.find("\r\nListing: DOM,lstData,Entry,59,,30\r\n"), std::string::npos) << csv;
    EXPECT_NE(csv.find("\r\nListing: DOM,txtAverage,Average,59,,30\r\n"), std::string::npos) << csv;
}

TEST_F(CalcCommand, WithoutTheCheckTrustsTheFlagsAndWritesNothing) {
    const auto book = SixRecords();
    const auto before = Everything();
    const auto json = Json::parse(MustRun({"calc", book, "--date=6/30/2010", "--format=json", "--no-check"}));
    EXPECT_TRUE(json["valid"].is_null());
    EXPECT_EQ(json["records"], 6);
    // No check has repaired the current list prices: those of the sales are 0 still, and the ratio has no
    // divisor.
    EXPECT_EQ(json["results"]["txtMedianLPrice"], Json::parse(R"(["0","0","0"])"));
    EXPECT_EQ(json["results"]["txtMedianLPDivSP"], Json::parse(R"(["0","0","0"])"));
    EXPECT_EQ(Everything(), before);
}

TEST_F(CalcCommand, OfAnEmptyDatabookShowsZeroes) {
    EXPECT_EQ(
        Json::parse(MustRun({"calc", NewDatabook(), "--date=6/30/2010", "--format=json"}))["results"],
        Json::parse(
            R"({"txtTotalC":["0","0","0"],"txtAveCPrice":["0.00","0.00","0.00"],"txtTotalL":["0","0","0"],
                   "txtTotalPerAveCPrice":["0.00","0.00","0.00"],"txtMedianCPrice":["0","0","0"],"txtMedianCDOM":["0","0","0"],
                   "txtMedianLPrice":["","",""],"txtMedianLDOM":["0","0","0"],"txtMedianLPDivSP":["0","0","0"]})"));
}

TEST_F(CalcCommand, GivesTheSameTwice) {
    const auto book = SixRecords();
    const auto first = MustRun({"calc", book, "--date=6/30/2010", "--lists"});
    EXPECT_EQ(MustRun({"calc", book, "--date=6/30/2010", "--lists"}), first);
}

struct Toggle {
    const char* name;
    const char* key;
    const char* wanted;
    const char* before;
    const char* after;
};
class SelectToggles : public CliTest, public testing::WithParamInterface<Toggle> {};

TEST_P(SelectToggles, TowardsTheWantedState) {
    const auto& [name, key, wanted, before, after] = GetParam();
    const auto book = SixRecords();
    MustRun({"check", book, "--date=6/30/2010"});
    const auto flag = [&] {
        return Json::parse(
            MustRun({"sql", book, "SELECT SELECTED FROM COMPS WHERE CENTRALKEY = '" + std::string(key) + "'",
                     "--format=json"}))["rows"][0][0];
    };
    EXPECT_EQ(flag(), before);
    MustRun({"select", book, key, wanted});
    EXPECT_EQ(flag(), after);
}

INSTANTIATE_TEST_SUITE_P(Records, SelectToggles,
                         testing::Values(Toggle{"ValidIsExcluded", "12 OAK ST", "exclude", "1", "2"},
                                         Toggle{"IncludedIsExcluded", "18 OAK ST", "exclude", "3", "2"},
                                         Toggle{"ExcludedStays", "22 OAK ST", "exclude", "2", "2"},
                                         Toggle{"ExcludedIsIncluded", "22 OAK ST", "include", "2", "3"},
                                         Toggle{"ValidStays", "12 OAK ST", "include", "1", "1"},
                                         Toggle{"IncludedStays", "18 OAK ST", "include", "3", "3"},
                                         Toggle{"KeyInAnyCase", "12 oak st", "exclude", "1", "2"}),
                         [](const auto& info) { return info.param.name; });

TEST_F(SelectCommand, RefusesAnInvalidRecordAndOneThatIsNotThere) {
    const auto book = SixRecords();
    MustRun({"check", book, "--date=6/30/2010"});
    const auto before = Everything();
    for (const char* key : {"20 OAK ST", "99 OAK ST", "", "O'HARE"}) {
        for (const char* wanted : {"exclude", "include"}) {
            const auto result = Run({"select", book, key, wanted});
            EXPECT_EQ(result.status, Exit::SomethingRefused) << key;
            EXPECT_NE(result.LastLine().find(book), std::string::npos) << result.err;
            EXPECT_NE(result.LastLine().find(key), std::string::npos) << result.err;
        }
    }
    EXPECT_EQ(Everything(), before);
}

TEST_F(SelectCommand, WritesItsResultInEachForm) {
    const auto book = SixRecords();
    EXPECT_EQ(MustRun({"select", book, "12 OAK ST", "exclude", "--format=json"}),
              "{\"CENTRALKEY\":\"12 OAK ST\",\"SELECTED\":\"2\"}\n");
    EXPECT_EQ(MustRun({"select", book, "12 OAK ST", "exclude", "--format=csv"}),
              "CENTRALKEY,SELECTED\r\n12 OAK ST,2\r\n");
    EXPECT_EQ(MustRun({"select", book, "12 OAK ST", "include"}), "12 OAK ST: included (SELECTED 3)\n");
}

}  // namespace
}  // namespace zenvora::cli
