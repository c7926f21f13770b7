#include "import/unattended_import.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>

#include "databook/selection.h"
#include "databook/template.h"
#include "grid_text.h"
#include "platform/ado/adodc.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

namespace zenvora::importing {
namespace {

using testing_support::FaultOf;
using testing_support::Row;

/// Imports into a Databook that the engine makes, and reads it back.
class UnattendedImport : public testing::Test {
  protected:
    ImportResult Import(const std::string& source, std::string_view bytes, std::string_view map) {
        job.source = folder.Write(source, bytes).string();
        job.map = folder.Write("L.map", map).string();
        return Run();
    }
    ImportResult Run() {
        job.databook = (folder / "L.mdb").string();
        job.sourceDate = *text::DayNumber(2026, 6, 30);
        return ImportFile(session, job, [this] {
            ++databooksMade;
            databook::CreateTemplate(folder / "L.mdb", clock.Now());
        });
    }
    /// The records in key order; "Null" for a field that holds none.
    std::vector<Row> Records(std::string_view fields) {
        ado::Adodc control(pool, clock);
        control.Connectionstring = "Data Source=" + (folder / "L.mdb").string() + ";Mode=Read";
        databook::AdoSelect(control, "COMPS", fields, databook::kKeyOrder);
        std::vector<Row> rows;
        ado::Recordset& records = control.Recordset();
        for (; !records.Eof(); records.MoveNext()) {
            Row& row = rows.emplace_back();
            for (int field = 0; field < static_cast<int>(records.Fields().size()); ++field)
                row.push_back(records.IsNull(field) ? "Null" : records.Text(field));
        }
        return rows;
    }

    testing_support::TempFolder folder;
    testing_support::ScriptedDesktop desktop;
    shell::FixedClock clock{*text::DayNumber(2026, 6, 30)};
    ado::DatabasePool pool;
    common::Session session{desktop, clock, pool, {}};
    ImportJob job;
    int databooksMade = 0;
};

TEST_F(UnattendedImport, StoresWhatTheMapNames) {
    const ImportResult result =
        Import("L.csv",
               "Street,Town,St,Zip,Listed,Asked,Sold,Price,Remarks\r\n"
               "12 Oak St,Troy,MI,02124,2009-01-30,\"$259,900\",3/1/09,\"$250,000.00\",nice\r\n"
               "\"9 Elm St, Unit 2\",Novi,MI,48083,03152009,310000,,,\r\n",
               "Street <-> Address\r\nTown <-> City\r\nSt <-> State\r\nZip <-> Zip\r\n"
               "Listed <-> Original Listing Date\r\nAsked <-> Original Listing Price\r\n"
               "Sold <-> Sale Date\r\nPrice <-> Selling Price\r\n");
    EXPECT_EQ(result.outcome.rows, 3);
    EXPECT_EQ(result.outcome.written, 2);
    ASSERT_EQ(result.outcome.refused.size(), 1U);
    EXPECT_EQ(result.outcome.refused[0].row, 3);
    EXPECT_EQ(result.outcome.refused[0].line, 4);
    EXPECT_EQ(result.outcome.refused[0].reason, "blank row");
    EXPECT_FALSE(result.outcome.HasErrors());
    EXPECT_EQ(result.log.ListCount(), 0U);
    EXPECT_EQ(Records("CENTRALKEY, ADDRESS, CITY, ST, ZIP, ORIGLISTDATE, ORIGLISTPRICE, SALEDATE, SELLINGPR"),
              (std::vector<Row>{{"12 Oak St", "12 Oak St", "Troy", "MI", "02124", "1/30/2009", "259900",
                                 "3/1/2009", "250000"},
                                {"9 Elm St, Unit 2", "9 Elm St, Unit 2", "Novi", "MI", "48083", "3/15/2009",
                                 "310000", "1/1/1900", "0"}}));
}

TEST_F(UnattendedImport, GivesUnmappedColumnsTheirDefaults) {
    static_cast<void>(Import("L.csv", "A,Z\n12 Oak St,48083", "A <-> Address\r\nZ <-> Zip\r\n"));
    EXPECT_EQ(Records("CENTRALKEY, CITY, SELLINGPR, SALEDATE, ORIGLISTDATE, ORIGLISTPRICE, SELECTED"),
              (std::vector<Row>{{"12 Oak St", "Null", "Null", "Null", "1/1/1900", "0", "3"}}));
}

TEST_F(UnattendedImport, RefusesWhatTheStoreCannotTakeAndGoesOn) {
    const ImportResult result =
        Import("L.txt",
               "Street|Town|Sold|Price\n"
               "1 Oak St|Troy|3/1/2009|250000\n"
               "1 OAK ST|Novi|3/1/2009|1\n"
               "2 Oak St|Troy|20090315|2\n"
               "3 Oak St|Troy|3/1/2009|N/A\n"
               "4 Oak \"\"B\"\"|Troy|3/1/2009|4\n"
               "|Troy|3/1/2009|5\n"
               "6 Oak St|Troy|2009-03-15|$1,250,000\n"
               "7 O'Dell St|Troy|031509|-5",
               "Street <-> Address\rTown <-> City\rSold <-> Sale Date\rPrice <-> Selling Price\r");
    Row reasons;
    for (const RefusedRow& row : result.outcome.refused)
        reasons.push_back(std::to_string(row.row) + ": " + row.reason);
    EXPECT_EQ(reasons,
              (Row{"2: duplicate key: 1 OAK ST", "3: no date in \"Sale Date\": 20090315 (sent as 20/09/0315)",
                   "4: no number in \"Selling Price\": N/A",
                   "5: a double quote in \"Address\": 4 Oak \"\"B\"", "6: no address"}));
    EXPECT_EQ(result.outcome.rows, 8);
    EXPECT_EQ(result.outcome.written, 3);
    EXPECT_EQ(Records("CENTRALKEY, SALEDATE, SELLINGPR"),
              (std::vector<Row>{{"1 Oak St", "3/1/2009", "250000"},
                                {"6 Oak St", "3/15/2009", "1250000"},
                                {"7 O'Dell St", "3/15/2009", "5"}}));
}

TEST_F(UnattendedImport, DerivesTheListingDateFromDaysOnMarket) {
    static_cast<void>(Import("L.csv", "A,Sold,DOM,Z\n12 Oak St,3/1/2009,30,48083\n9 Elm St,,10,48083",
                             "A <-> Address\nSold <-> Sale Date\nDOM <-> Days On Market\nZ <-> Zip\n"));
    EXPECT_EQ(Records("CENTRALKEY, ORIGLISTDATE, DAYSONMARKET"),
              (std::vector<Row>{{"12 Oak St", "1/30/2009", "30"}, {"9 Elm St", "6/20/2026", "10"}}));
}

TEST_F(UnattendedImport, RefusesEveryRowWithDaysOnMarketBesideAListingDate) {
    const ImportResult result =
        Import("L.csv", "A,Listed,DOM,Z\n12 Oak St,3/1/2009,30,48083",
               "A <-> Address\nListed <-> Original Listing Date\nDOM <-> Days On Market\nZ <-> Zip\n");
    EXPECT_EQ(result.outcome.written, 0);
    ASSERT_EQ(result.outcome.refused.size(), 1U);
    EXPECT_EQ(
        result.outcome.refused[0].reason,
        "two values for the column ORIGLISTDATE: map either the original listing date or the days on market");
}

TEST_F(UnattendedImport, WritesTheClearedCancelDateAsDayZero) {
    static_cast<void>(Import("L.csv", "A,Off,Sold\n12 Oak St,2/1/2009,3/1/2009\n9 Elm St,2/1/2009,",
                             "A <-> Address\nOff <-> Listing Cancel Date\nSold <-> Sale Date\n"));
    EXPECT_EQ(Records("CENTRALKEY, LISTCANCELDATE"),
              (std::vector<Row>{{"12 Oak St", "1/1/1900"}, {"9 Elm St", "2/1/2009"}}));
}

TEST_F(UnattendedImport, ReadsXmlByItsExtensionInAnyCase) {
    const ImportResult result =
        Import("L.XML", "<r>\n<A>12 Oak St</A>\n<Z>48083</Z>\n</r>\n", "A <-> Address\r\nZ <-> Zip\r\n");
    EXPECT_EQ(result.outcome.rows, 2);
    EXPECT_EQ(result.outcome.written, 1);
    ASSERT_EQ(result.outcome.refused.size(), 1U);
    EXPECT_TRUE(result.outcome.refused[0].isBlank);
    EXPECT_EQ(result.outcome.refused[0].line, 0);
    EXPECT_EQ(Records("CENTRALKEY, ZIP"), (std::vector<Row>{{"12 Oak St", "48083"}}));
}

TEST_F(UnattendedImport, ReadsASourceWithoutHeader) {
    job.headerRow = false;
    static_cast<void>(Import("L.csv", "12 Oak St,48083,x", "Field  2 <-> Address\r\nField  3 <-> Zip\r\n"));
    EXPECT_EQ(Records("CENTRALKEY, ZIP"), (std::vector<Row>{{"12 Oak St", "48083"}}));
}

TEST_F(UnattendedImport, KeepsLettersOfBothEncodings) {
    static_cast<void>(Import("L.csv",
                             "Stra\xDF"
                             "e,Z\n5 Caf\xE9 St,48083",
                             "Stra\xC3\x9F"
                             "e <-> Address\nZ <-> Zip\n"));
    EXPECT_EQ(Records("CENTRALKEY"), (std::vector<Row>{{"5 Caf\xC3\xA9 St"}}));
}

TEST_F(UnattendedImport, GivesTheLogWhenItIsWanted) {
    job.logWanted = true;
    const ImportResult result =
        Import("L.csv", "A,Z\n12 Oak St,48083\n12 Oak St,48084", "A <-> Address\nZ <-> Zip\n");
    Row lines;
    for (std::size_t at = 0; at < result.log.ListCount(); ++at)
        lines.emplace_back(result.log.List(at));
    EXPECT_EQ(lines, (Row{"",
                          "Row  1",
                          "",
                          "CENTRALKEY loaded with 12 Oak St",
                          "ZIP loaded with 48083",
                          "",
                          "INSERT INTO COMPS",
                          "(",
                          "CENTRALKEY,",
                          "ADDRESS, ",
                          "ZIP",
                          ") ",
                          "VALUES",
                          "(",
                          "\"12 Oak St\",",
                          "\"12 Oak St\", ",
                          "\"48083\"",
                          ")",
                          "Record Written",  //
                          "",
                          "Row  2",
                          "",
                          "CENTRALKEY loaded with 12 Oak St",
                          "ZIP loaded with 48084",
                          "",
                          "INSERT INTO COMPS",
                          "(",
                          "CENTRALKEY,",
                          "ADDRESS, ",
                          "ZIP",
                          ") ",
                          "VALUES",
                          "(",
                          "\"12 Oak St\",",
                          "\"12 Oak St\", ",
                          "\"48084\"",
                          ")",
                          "Record NOT Written"}));
}

TEST_F(UnattendedImport, WithoutAMapMakesAnEmptyDatabookAndSaysSo) {
    job.source = folder.Write("L.csv", "A,Z\n12 Oak St,48083").string();
    desktop.ExpectFile("");
    desktop.Expect("There are no field mappings specified. Either set them up now or load an existing Map");
    const ImportResult result = Run();
    EXPECT_EQ(result.outcome.written, 0);
    EXPECT_EQ(result.outcome.refused.at(0).reason, "no field is mapped to a column of the source");
    EXPECT_TRUE(Records("CENTRALKEY").empty());
}

TEST_F(UnattendedImport, FaultsBeforeTheDatabookIsMade) {
    const auto check = [this](const std::string& source, std::string_view bytes, std::string_view map,
                              int number, const std::string& file, long line) {
        const Fault fault = FaultOf([&] { static_cast<void>(Import(source, bytes, map)); });
        EXPECT_EQ(fault.number, number) << fault.description;
        EXPECT_EQ(std::filesystem::path(fault.place.file).filename(), file);
        EXPECT_EQ(fault.place.line, line);
        EXPECT_FALSE(fault.description.empty());
    };
    const char* map = "A <-> Address\nS <-> Sale Date\nD <-> Days On Market\n";
    check("L.csv", "A,B\n1,2,3\n", map, fault::kSubscript, "L.csv", 2);
    check("L.csv", "A,B\n\"1,2\n", map, fault::kSourceFormat, "L.csv", 2);
    check("L.xml", "<a>\n</a>\n", map, fault::kSourceFormat, "L.xml", 1);
    check("L.csv", "A,B\n1,2\n", "A <-> Address\nnonsense\n", fault::kInvalidCall, "L.map", 2);
    check("L.csv", "A,S,D\n1,never-ever,5\n", map, fault::kTypeMismatch, "L.csv", 2);
    check("L.csv", "", map, fault::kSourceFormat, "L.csv", 0);
    check("L.doc", "A,B\n1,2\n", map, fault::kSourceFormat, "L.doc", 0);
    EXPECT_EQ(databooksMade, 0);
    EXPECT_FALSE(std::filesystem::exists(folder / "L.mdb"));
}

TEST_F(UnattendedImport, NamesAMissingSourceOrMap) {
    job.source = (folder / "no.csv").string();
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Run()); }).number, fault::kFileNotFound);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(SourceFileDate(job.source)); }).number, fault::kFileNotFound);
    job.source = folder.Write("L.csv", "A\n1").string();
    job.map = (folder / "no.map").string();
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Run()); }).number, fault::kFileNotFound);
    EXPECT_EQ(databooksMade, 0);
}

TEST_F(UnattendedImport, StoresMoreRowsThanAPageHolds) {
    std::string bytes = "A,Z,P";
    for (int row = 1; row <= 3000; ++row)
        bytes += "\n" + std::to_string(row) + " Oak St,48083," + std::to_string(row * 100);
    const ImportResult result = Import("L.csv", bytes, "A <-> Address\nZ <-> Zip\nP <-> Selling Price\n");
    EXPECT_EQ(result.outcome.written, 3000);
    const std::vector<Row> records = Records("CENTRALKEY, SELLINGPR");
    ASSERT_EQ(records.size(), 3000U);
    EXPECT_EQ(records[0], (Row{"1 Oak St", "100"}));
    EXPECT_EQ(desktop.lastDone, 3000);
}

/// The sample of the repository, as its README describes it.
TEST_F(UnattendedImport, LoadsTheSample) {
    const std::filesystem::path samples = ZENVORA_SAMPLES;
    job.source = (samples / "LISTINGS.CSV").string();
    job.map = (samples / "LISTINGS.map").string();
    const ImportResult result = Run();
    std::vector<std::string> reasons;
    for (const RefusedRow& row : result.outcome.refused)
        reasons.push_back(row.reason.substr(0, row.reason.find(": ")) +
                          (row.field.empty() ? "" : " / " + row.field));
    std::sort(reasons.begin(), reasons.end());
    EXPECT_EQ(reasons, (Row{"a double quote in \"Address\" / Address", "blank row", "duplicate key / Address",
                            "duplicate key / Address", "no address / Address",
                            "no date in \"Contract Date\" / Contract Date",
                            "no date in \"Original Listing Date\" / Original Listing Date",
                            "no date in \"Sale Date\" / Sale Date",
                            "no number in \"Selling Price\" / Selling Price"}));
    EXPECT_EQ(result.outcome.rows, 393);
    EXPECT_EQ(result.outcome.written, 384);
    EXPECT_EQ(Records("CENTRALKEY").size(), 384U);
}

TEST(SourceFileDate, IsTheFilesLastChange) {
    // Two days before now by the file's own clock: whatever the time zone, the difference stays.
    const testing_support::TempFolder folder;
    const std::filesystem::path fresh = folder.Write("a.csv", "x");
    const std::filesystem::path old = folder.Write("b.csv", "x");
    const auto changed = std::filesystem::last_write_time(fresh);
    std::filesystem::last_write_time(old, changed - std::chrono::hours(48));
    EXPECT_NEAR(SourceFileDate(fresh.string()) - SourceFileDate(old.string()), 2.0,
                0.05);  // a clock change may lie between
    EXPECT_GT(SourceFileDate(old.string()), *text::DayNumber(2020, 1, 1));
}

}  // namespace
}  // namespace zenvora::importing
