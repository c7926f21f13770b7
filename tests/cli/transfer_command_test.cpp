#include <algorithm>
#include <nlohmann/json.hpp>

#include "cli_fixture.h"
#include "platform/fault.h"
#include "support/recording_carrier.h"

namespace zenvora::cli {
namespace {

using Json = nlohmann::ordered_json;

class TransferCommandTest : public CliTest {
  protected:
    void OpenSmith(const std::string& forms = "1004MC,Text,") {
        krn.values["KRN|Query"]["ActiveReports"] = "Smith,";
        krn.values["KRN|Smith"]["ListForms"] = forms;
        krn.values["Krn|Smith"]["UserID"] = "7";
    }
    /// Item and value of the three cells of a field.
    static Json Cells(int field, const char* first, const char* second, const char* third) {
        Json cells = Json::array();
        int cell = 0;
        for (const char* value : {first, second, third}) {
            cells.push_back({{"item", "1004MC|" + std::to_string(field) + "|" + std::to_string(++cell)},
                             {"value", value}});
        }
        return cells;
    }
    testing_support::RecordingCarrier krn;
    const std::string book = SixRecords();
};

TEST_F(TransferCommandTest, DryRunListsThePokesInTheirOrder) {
    const auto result =
        Run({"transfer", book, "--date=06/30/2010", "--dry-run", "--report=Smith", "--format=json"});
    ASSERT_EQ(result.status, Exit::Done) << result.err;
    const Json json = Json::parse(result.out);
    EXPECT_EQ(json["topic"], "KRN|Smith");
    ASSERT_EQ(json["pokes"].size(), 27U);
    // A sale in each period; the listings that were for sale at the end of each.
    Json expected = Json::array();
    for (const Json& cells : {Cells(16, "1", "1", "1"), Cells(17, "0.17", "0.33", "0.33")})
        expected.insert(expected.end(), cells.begin(), cells.end());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(json["pokes"][i], expected[i]);
    const Json figures =
        Json::parse(MustRun({"calc", book, "--date=06/30/2010", "--format=json"}))["results"];
    std::vector<std::string> texts;
    for (const char* row :
         {"txtTotalC", "txtAveCPrice", "txtTotalL", "txtTotalPerAveCPrice", "txtMedianCPrice",
          "txtMedianCDOM", "txtMedianLPrice", "txtMedianLDOM", "txtMedianLPDivSP"}) {
        for (const auto& cell : figures[row])
            texts.push_back(cell);
    }
    for (std::size_t i = 0; i < texts.size(); ++i)
        EXPECT_EQ(json["pokes"][i]["value"], texts[i]) << i;
    EXPECT_EQ(json["pokes"][26]["item"], "1004MC|25|3");
}

TEST_F(TransferCommandTest, DryRunOfTheCondoSectionAndItsOtherForms) {
    const auto csv = MustRun(
        {"transfer", book, "--date=06/30/2010", "--dry-run", "--report", "Smith", "--condo", "--format=csv"});
    EXPECT_TRUE(
        csv.starts_with("item,value\r\n1004MC|54|1,1\r\n1004MC|54|2,1\r\n1004MC|54|3,1\r\n"
                        "1004MC|55|1,0.17\r\n"))
        << csv;
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 13);
    const auto text =
        MustRun({"transfer", book, "--date=06/30/2010", "--dry-run", "--report", "Smith", "--condo"});
    EXPECT_TRUE(text.starts_with("KRN|Smith\n\nitem ")) << text;
    EXPECT_NE(text.find("Nothing was sent."), std::string::npos);
}

TEST_F(TransferCommandTest, SendsTheFiguresIntoTheOpenReport) {
    OpenSmith();
    const auto result = Run({"transfer", book, "--date=06/30/2010"}, krn);
    ASSERT_EQ(result.status, Exit::Done) << result.err;
    ASSERT_EQ(krn.pokes.size(), 27U);
    EXPECT_EQ(krn.pokes[3].first, "1004MC|17|1");
    EXPECT_EQ(krn.pokes[3].second, "0.17");
    EXPECT_NE(result.out.find("All 27 values arrived in the report \"Smith\"."), std::string::npos);
    const Json json = Json::parse(Run({"transfer", book, "--date=06/30/2010", "--format=json"}, krn).out);
    EXPECT_EQ(json["pokes"][0], (Json{{"item", "1004MC|16|1"}, {"value", "1"}, {"result", "arrived"}}));
}

TEST_F(TransferCommandTest, WithoutKrnNothingIsWrittenIntoTheDatabook) {
    const auto before = Everything();
    const auto result = Run({"transfer", book, "--date=06/30/2012"});
    EXPECT_EQ(result.status, Exit::NoPeer);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.LastLine(),
              "zenvora-cli transfer: the appraisal program cannot be reached: This program has no way to the "
              "appraisal program. Nothing was sent. Open a report in it, save it, and try again.");
    EXPECT_EQ(Everything(), before);
    krn.values["KRN|Query"]["ActiveReports"] = "None ";
    EXPECT_EQ(Run({"transfer", book}, krn).status, Exit::NoPeer);
}

TEST_F(TransferCommandTest, AReportWithoutTheFormIsToldApartFromNoReport) {
    OpenSmith("1004,Text,");
    const auto result = Run({"transfer", book, "--date=06/30/2010"}, krn);
    EXPECT_EQ(result.status, Exit::SomethingRefused);
    EXPECT_EQ(
        result.LastLine(),
        "zenvora-cli transfer: The report \"Smith\" has no form 1004MC. Nothing was sent. Add the form to "
        "the report and try again.");
}

TEST_F(TransferCommandTest, TheCondoSectionNeedsACondoForm) {
    OpenSmith();
    const auto result = Run({"transfer", book, "--date=06/30/2010", "--condo"}, krn);
    EXPECT_EQ(result.status, Exit::SomethingRefused);
    EXPECT_TRUE(krn.pokes.empty());
    OpenSmith("1004MC,ICU,Text");
    EXPECT_EQ(Run({"transfer", book, "--date=06/30/2010", "--condo"}, krn).status, Exit::Done);
    EXPECT_EQ(krn.pokes.size(), 12U);
}

TEST_F(TransferCommandTest, ARefusedValueIsNamed) {
    OpenSmith();
    krn.faults["poke 1004MC|18|2"] = 380;
    const auto result = Run({"transfer", book, "--date=06/30/2010", "--format=csv"}, krn);
    EXPECT_EQ(result.status, Exit::SomethingRefused);
    EXPECT_EQ(result.LastLine(),
              "zenvora-cli transfer: 26 of 27 values arrived in the report \"Smith\". 1 was refused: "
              "1004MC|18|2. Enter what is missing by hand.");
    EXPECT_NE(result.out.find(",refused\r\n"), std::string::npos);
}

TEST_F(TransferCommandTest, AHangInMidTransferEndsIt) {
    OpenSmith();
    krn.faults["poke 1004MC|18|2"] = 286;
    const auto result = Run({"transfer", book, "--date=06/30/2010"}, krn);
    EXPECT_EQ(result.status, Exit::NoPeer);
    EXPECT_EQ(krn.pokes.size(), 7U);
    EXPECT_NE(result.LastLine().find("7 of 27 values arrived"), std::string::npos) << result.err;
    EXPECT_NE(result.LastLine().find("Of 1 it is not known"), std::string::npos) << result.err;
}

TEST_F(TransferCommandTest, DryRunAndReportBelongTogether) {
    EXPECT_EQ(Run({"transfer", book, "--dry-run"}).status, Exit::BadCommandLine);
    EXPECT_EQ(Run({"transfer", book, "--report=Smith"}).status, Exit::BadCommandLine);
    EXPECT_EQ(Run({"transfer"}).status, Exit::BadCommandLine);
    EXPECT_EQ(Run({"transfer", At("none.mdb"), "--dry-run", "--report=S"}).status, Exit::FileTrouble);
}

TEST_F(TransferCommandTest, AddendumShowsTheTextAsItWouldBeSent) {
    const auto json = Json::parse(MustRun({"addendum", book, "--date=06/30/2010", "--format=json"}));
    EXPECT_EQ(
        json["part1"],
        "Listings:\r\nAddr, City, State, Zip, Orig List Dt, Orig List $, Curr List Dt, Curr List $, Cont "
        "Dt, List Cancel Dt, Sale Dt, Sale $\r\n"
        "12 Oak St, Troy, , , 6/1/2010, 259900, 6/1/2010, 259900, , , , , \r\n"
        "Comparables:\r\n"
        "14 Oak St, Troy, , , 4/11/2010, 250000, 4/11/2010, 250000, , , 6/10/2010, 240000, \r\n"
        "16 Oak St, Troy, , , 11/1/2009, 200000, 11/1/2009, 200000, , , 2/15/2010, 190000, \r\n"
        "18 Oak St, Troy, , , 6/30/2009, 150000, 6/30/2009, 150000, , , 6/30/2009, 150000, \r\n");
    EXPECT_EQ(json["part2"], "");
    const auto csv = MustRun({"addendum", book, "--date=06/30/2010", "--format=csv"});
    EXPECT_TRUE(csv.starts_with("part,line,text\r\n1,1,Listings:\r\n1,2,\"Addr, City,")) << csv;
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 8);
    const auto text = MustRun({"addendum", book, "--date=06/30/2010"});
    EXPECT_NE(text.find("1     4  Comparables:"), std::string::npos) << text;
}

TEST_F(TransferCommandTest, AddendumSaysHowManyRecordsItLeavesOut) {
    // Exactly seventy listings drop out of the text.
    std::string rows = "Street,Listed,Asked\n";
    for (int i = 1; i <= 70; ++i)
        rows += std::to_string(i) + " Oak St,6/1/2010,259900\n";
    Write("SEVENTY.CSV", rows);
    Write("SEVENTY.map",
          "Street <-> Address\r\nListed <-> Original Listing Date\r\nAsked <-> Original Listing Price\r\n");
    const std::string seventy = At("SEVENTY.mdb");
    MustRun({"import", At("SEVENTY.CSV"), "--into", seventy});
    const RunResult result = Run({"addendum", seventy, "--date=06/30/2010", "--format=json"});
    EXPECT_EQ(result.status, Exit::Done);
    EXPECT_EQ(result.out, "{\"part1\":\"\",\"part2\":\"Comparables:\\r\\n\"}\n");
    EXPECT_TRUE(result.LastLine().starts_with(seventy + ": 70 records are left out of the audit text."))
        << result.err;
    EXPECT_EQ(Run({"addendum", seventy, "--date=06/30/2010", "--quiet"}).err, "");
}

TEST_F(TransferCommandTest, AddendumOfAnEmptyDatabookIsTwoEmptyParts) {
    const auto empty = NewDatabook("EMPTY.mdb");
    EXPECT_EQ(MustRun({"addendum", empty, "--format=json"}), "{\"part1\":\"\",\"part2\":\"\"}\n");
}

}  // namespace
}  // namespace zenvora::cli
