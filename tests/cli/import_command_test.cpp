#include <filesystem>
#include <nlohmann/json.hpp>

#include "cli_fixture.h"

namespace zenvora::cli {
namespace {

using Json = nlohmann::ordered_json;

/// Two sound rows, one with a key that exists, and a line break at the end.
constexpr const char* kSource =
    "Street,City,List Date,List Price\r\n"
    "12 Oak St,Troy,6/1/2010,\"259,900\"\r\n"
    "14 Oak St,\"Troy, MI\",4/11/2010,250000\r\n"
    "12 OAK ST,Troy,4/12/2010,1\r\n";
constexpr const char* kMap =
    "Street <-> Address\r\nCity <-> City\r\nList Date <-> Original Listing Date\r\nList Price <-> Original "
    "Listing Price\r\n";

class ImportCommand : public CliTest {
  protected:
    ImportCommand() {
        Write("A.CSV", kSource);
        Write("A.map", kMap);
    }
    /// The source without the row that the store refuses.
    std::string SoundSource() {
        const std::string source = kSource;
        return Write("SOUND.CSV", source.substr(0, source.find("12 OAK ST")));
    }
};

TEST_F(ImportCommand, ReportsRowsWrittenAndRefused) {
    const auto result = Run({"import", At("A.CSV"), "--into", At("B.mdb"), "--format=json"});
    EXPECT_EQ(result.status, Exit::SomethingRefused);
    const auto json = Json::parse(result.out);
    EXPECT_EQ(json["source"], At("A.CSV"));
    EXPECT_EQ(json["databook"], At("B.mdb"));
    EXPECT_EQ(json["map"], At("A.map"));
    EXPECT_EQ(json["rows"], 4);
    EXPECT_EQ(json["written"], 2);
    ASSERT_EQ(json["refused"].size(), 2U);
    EXPECT_EQ(json["refused"][0]["row"], 3);
    EXPECT_EQ(json["refused"][0]["reason"].get<std::string>().find("duplicate key"), 0U) << result.out;
    EXPECT_EQ(json["refused"][1], Json::parse(R"({"row":4,"reason":"blank row"})"));
    EXPECT_NE(result.err.find("row 3"), std::string::npos) << result.err;
    EXPECT_NE(result.LastLine().find(At("A.CSV")), std::string::npos) << result.err;
    EXPECT_NE(result.LastLine().find("1 of 4 rows"), std::string::npos) << result.err;

    EXPECT_EQ(
        Json::parse(MustRun(
            {"sql", At("B.mdb"),
             "SELECT CENTRALKEY, ADDRESS, CITY, ORIGLISTDATE, ORIGLISTPRICE FROM COMPS ORDER BY CENTRALKEY",
             "--format=json"}))["rows"],
        Json::parse(R"([["12 Oak St","12 Oak St","Troy","2010-06-01",259900],
                              ["14 Oak St","14 Oak St","Troy, MI","2010-04-11",250000]])"));
}

TEST_F(ImportCommand, KeysOfTheResultStandInOrder) {
    const auto out = Run({"import", At("A.CSV"), "--into", At("B.mdb"), "--format=json"}).out;
    std::size_t last = 0;
    for (const char* key :
         {"{\"source\":", ",\"databook\":", ",\"map\":", ",\"rows\":", ",\"written\":", ",\"refused\":["}) {
        const auto at = out.find(key);
        ASSERT_NE(at, std::string::npos) << key << out;
        EXPECT_GE(at, last) << key << out;
        last = at;
    }
}

TEST_F(ImportCommand, WritesCsvAndText) {
    const auto csv = Run({"import", At("A.CSV"), "--into", At("B.mdb"), "--format=csv"}).out;
    EXPECT_EQ(csv.substr(0, 12), "row,reason\r\n");
    EXPECT_NE(csv.find("\r\n4,blank row\r\n"), std::string::npos) << csv;
    EXPECT_EQ(Run({"import", At("A.CSV"), "--into", At("C.mdb")}).out,
              At("A.CSV") + ": 4 rows, 2 written into " + At("C.mdb") + ", 2 refused\n");
}

TEST_F(ImportCommand, IsDoneWhenOnlyBlankRowsWereRefused) {
    const auto result =
        Run({"import", SoundSource(), "--map", At("A.map"), "--into", At("B.mdb"), "--format=json"});
    EXPECT_EQ(result.status, Exit::Done) << result.err;
    EXPECT_EQ(Json::parse(result.out)["refused"], Json::parse(R"([{"row":3,"reason":"blank row"}])"));
    EXPECT_EQ(Run({"import", At("SOUND.CSV"), "--map", At("A.map"), "--into", At("C.mdb"), "--quiet"}).err,
              "");
}

TEST_F(ImportCommand, RefusesAnExistingDatabookWithoutForce) {
    const auto book = SixRecords();
    const auto before = Everything();
    const auto result = Run({"import", At("A.CSV"), "--into", book});
    EXPECT_EQ(result.status, Exit::FileTrouble);
    EXPECT_NE(result.LastLine().find(book), std::string::npos) << result.err;
    EXPECT_NE(result.LastLine().find("--force"), std::string::npos) << result.err;
    EXPECT_EQ(Everything(), before);
}

TEST_F(ImportCommand, KeepsTheDatabookThatItReplaces) {
    const auto book = SixRecords();
    const auto old = Read(book);
    const auto files = Everything().size();
    EXPECT_EQ(Run({"import", At("A.CSV"), "--into", book, "--force"}).status, Exit::SomethingRefused);
    EXPECT_EQ(Read(book + ".bak"), old);
    EXPECT_EQ(Everything().size(), files + 1);
    EXPECT_EQ(Json::parse(MustRun({"records", book, "--format=json"}))["records"].size(), 2U);
}

TEST_F(ImportCommand, FindsTheMapBesideTheSourceInAnyCase) {
    std::filesystem::rename(At("A.map"), At("a.MAP"));
    EXPECT_EQ(Json::parse(Run({"import", At("A.CSV"), "--into", At("B.mdb"), "--format=json"}).out)["map"],
              At("a.MAP"));
}

TEST_F(ImportCommand, MapsNothingByAnEmptyMap) {
    const auto result =
        Run({"import", At("A.CSV"), "--map", Write("EMPTY.map", ""), "--into", At("B.mdb"), "--format=json"});
    EXPECT_EQ(result.status, Exit::SomethingRefused);
    EXPECT_EQ(Json::parse(result.out)["written"], 0);
    EXPECT_NE(result.err.find(
                  "There are no field mappings specified. Either set them up now or load an existing Map"),
              std::string::npos)
        << result.err;
}

TEST_F(ImportCommand, TakesTheFirstLineForDataWhenTold) {
    const auto source = Write("BARE.CSV", "12 Oak St,Troy,x\n14 Oak St,Troy,y\n");
    // Without field names the name of column n stands one column before its values.
    const auto map = Write("BARE.map", "Field  2 <-> Address\nField  3 <-> City\n");
    const auto result =
        Run({"import", source, "--map", map, "--no-header", "--into", At("B.mdb"), "--format=json"});
    EXPECT_EQ(result.status, Exit::Done) << result.err;
    EXPECT_EQ(
        Json::parse(MustRun({"sql", At("B.mdb"), "SELECT CENTRALKEY, CITY FROM COMPS ORDER BY CENTRALKEY",
                             "--format=json"}))["rows"],
        Json::parse(R"([["12 Oak St","Troy"],["14 Oak St","Troy"]])"));
}

TEST_F(ImportCommand, WritesTheLoadLogWhereItIsTold) {
    const auto source = SoundSource();
    MustRun({"import", source, "--map", At("A.map"), "--into", At("B.mdb"), "--log", At("load.txt")});
    const auto log = Read(At("load.txt"));
    EXPECT_EQ(log.substr(0, 8), "\nRow  1\n");
    EXPECT_NE(log.find("\nCENTRALKEY loaded with 12 Oak St\n"), std::string::npos) << log;
    EXPECT_NE(log.find("\nRecord Written\n"), std::string::npos) << log;
    EXPECT_NE(log.find("\nRecord NOT Written\n"), std::string::npos) << log;
    const auto out = MustRun({"import", source, "--map", At("A.map"), "--into", At("C.mdb"), "--log=-"});
    EXPECT_EQ(out.substr(0, log.size()), log);
}

TEST_F(ImportCommand, NeverWritesOverItsOwnSourceOrMap) {
    const auto before = Everything();
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"import", At("A.CSV"), "--into", At("A.CSV"), "--force"},
             {"import", At("A.CSV"), "--into", At("A.map"), "--force"},
             {"import", At("A.CSV"), "--into", At("B.mdb"), "--log", At("A.CSV")},
             {"import", At("A.CSV"), "--into", At("B.mdb"), "--log", At("A.map")},
             {"import", At("A.CSV"), "--into", At("B.mdb"), "--log", At("B.mdb")},
         }) {
        const auto result = Run(arguments);
        EXPECT_EQ(result.status, Exit::BadCommandLine) << result.err;
        EXPECT_EQ(Everything(), before);
    }
}

TEST_F(ImportCommand, TakesPathsWithAnyCharacters) {
    const auto book = At("a;b 'c' \xC3\xA9.mdb");
    EXPECT_EQ(Run({"import", At("A.CSV"), "--into", book}).status, Exit::SomethingRefused);
    EXPECT_EQ(Json::parse(MustRun({"records", book, "--format=json"}))["records"].size(), 2U);
}

TEST_F(ImportCommand, SuggestsAMapAndImportsNothing) {
    const auto source =
        Write("L.csv", "Street Number,Street Name,Sold Date,Sold Price,City\n12,Oak St,3/1/2009,5,Troy\n");
    const auto before = Everything();
    const auto result = Run({"import", source, "--suggest"});
    EXPECT_EQ(result.status, Exit::Done);
    EXPECT_EQ(
        result.out,
        "Street Number + Street Name <-> Address\nSold Date <-> Sale Date\nSold Price <-> Selling Price\n"
        "City <-> City\n");
    EXPECT_NE(result.err.find("the listing date"), std::string::npos);
    EXPECT_EQ(MustRun({"import", source, "--suggest", "--quiet", "--format", "csv"}),
              "source,destination\r\nStreet Number + Street Name,Address\r\nSold Date,Sale Date\r\n"
              "Sold Price,Selling Price\r\nCity,City\r\n");
    EXPECT_TRUE(
        MustRun({"import", source, "--suggest", "--format", "json"})
            .starts_with(
                R"({"source":")" + source +
                R"(","mappings":[{"source":"Street Number + Street Name","destination":"Address"},)"));
    EXPECT_EQ(Everything(), before);
}

TEST_F(ImportCommand, ImportsByTheMapThatItHasSaved) {
    const auto source =
        Write("L.csv", "Street Number,Street Name,Sold Date,Sold Price,City\n12,Oak St,3/1/2009,5,Troy\n");
    MustRun({"import", source, "--suggest", "--save", At("L.map")});
    EXPECT_EQ(Read(At("L.map")),
              "Street Number + Street Name <-> Address\r\nSold Date <-> Sale Date\r\n"
              "Sold Price <-> Selling Price\r\nCity <-> City\r\n");
    MustRun({"import", source, "--into", At("L.mdb")});
    EXPECT_EQ(MustRun({"sql", At("L.mdb"), "SELECT CENTRALKEY, ADDRESS, SALEDATE, SELLINGPR, CITY FROM COMPS",
                       "--format", "csv"}),
              "CENTRALKEY,ADDRESS,SALEDATE,SELLINGPR,CITY\r\n12 Oak St,12 Oak St,2009-03-01,5,Troy\r\n");
    // A map that somebody may have worked on is not replaced by the way.
    auto result = Run({"import", source, "--suggest", "--save", At("L.map")});
    EXPECT_EQ(result.status, Exit::FileTrouble);
    EXPECT_NE(result.LastLine().find("--force"), std::string::npos);
    MustRun({"import", source, "--suggest", "--save", At("L.map"), "--force"});
    EXPECT_EQ(Read(At("L.map.bak")), Read(At("L.map")));
}

TEST_F(ImportCommand, SaysWhenItHasNoMapToSuggest) {
    auto result = Run({"import", Write("L.csv", "a,b\n1,2\n"), "--suggest", "--save", At("L.map")});
    EXPECT_EQ(result.status, Exit::SomethingRefused);
    EXPECT_NE(result.LastLine().find("L.csv"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(At("L.map")));
    EXPECT_EQ(Run({"import", At("L.csv"), "--save", At("L.map")}).status, Exit::BadCommandLine);
    EXPECT_EQ(Run({"import", At("L.csv"), "--suggest", "--save", At("L.csv")}).status, Exit::BadCommandLine);
    EXPECT_EQ(Run({"import", At("M.csv"), "--suggest"}).status, Exit::FileTrouble);
}

}  // namespace
}  // namespace zenvora::cli
