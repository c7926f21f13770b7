#include "databook/schema_upgrade.h"

#include <array>
#include <cstdlib>
#include <map>

#include "common/error_rule.h"
#include "databook/field_conversions.h"
#include "databook/upgrade_copy.h"
#include "databook_fixture.h"
#include "platform/files/whole_file.h"
#include "support/old_databook.h"
#include "support/run_command.h"

namespace zenvora::databook {
namespace {

namespace fs = std::filesystem;
using testing_support::CommandResult;
using testing_support::MakeOldDatabook;
using testing_support::OldRecord;
using testing_support::RunCommand;

constexpr const char* kBefore = "New Listing Fields will be added to your database for compatibility.";
constexpr const char* kAfter = "The New Listing Fields were added successfully.";
constexpr Date kDayZero = 2;

/// An old Databook, OLD.mdb, beside the new one of the fixture.
class SchemaUpgrade : public DatabookTest {
  protected:
    [[nodiscard]] fs::path Old() const { return folder_ / "OLD.mdb"; }
    [[nodiscard]] fs::path Bak() const { return folder_ / "OLD.mdb.bak"; }
    [[nodiscard]] fs::path Note() const { return folder_ / "OLD.mdb.upgrading"; }

    void Connect() { control_.Connectionstring = OneShotConnectionString(Old().string()); }
    void ExpectBothMessages() {
        desktop_.Expect(kBefore);
        desktop_.Expect(kAfter);
    }
    UpgradeOutcome Check() {
        Connect();
        return Check4NewListingFieldsMain(session_, control_, Old().string());
    }
    /// Upgrades a Databook of these records; the control is left on the first one.
    UpgradeOutcome Upgrade(const std::vector<OldRecord>& records,
                           const testing_support::OldDatabook& kind = {}) {
        MakeOldDatabook(Old(), records, kind);
        ExpectBothMessages();
        const UpgradeOutcome outcome = Check();
        if (!records.empty()) control_.Recordset().MoveFirst();
        return outcome;
    }
    std::string Get(std::string_view name) { return adogetfield(control_, name); }
    Date GetDate(std::string_view name) { return adogetfieldDate(control_, name); }
    double GetDouble(std::string_view name) { return adogetfieldDouble(control_, name); }

    /// Leaves the Databook as a crash in the walk over its records would: columns added, nothing converted.
    void BreakOff() {
        const UpgradeCopy copy(Old());
        copy.Begin(false);
        for (const ListingColumn& column : kListingColumns) {
            RunOn(Old(),
                  "ALTER TABLE COMPS ADD " + std::string(column.name) + " " + std::string(column.type));
        }
    }
    void RunOn(const fs::path& path, const std::string& statement) {
        ado::Connection connection(pool_, clock_);
        connection.Open(OneShotConnectionString(path.string()));
        connection.Execute(statement);
    }
    std::string BytesOf(const fs::path& path) { return files::ReadWholeFile(path); }
};

// ---- the columns ----

TEST_F(SchemaUpgrade, AddsTheEightColumnsInTheirOrderWithTheirTypesAndDefaults) {
    Upgrade({});
    control_.Close();
    const auto database = pool_.Open(Old(), jet::Database::Access::ReadOnly);
    const auto& columns = database->OpenTable("COMPS").Definition().columns;
    ASSERT_EQ(columns.size(), 15U + 8U);
    struct Expected {
        const char* name;
        jet::ColumnType type;
        int width;
        const char* defaultValue;
    };
    const std::array<Expected, 8> expected{{{"ORIGLISTPRICE", jet::ColumnType::Double, 0, "0"},
                                            {"ORIGLISTDATE", jet::ColumnType::DateTime, 0, "#1/1/1900#"},
                                            {"LISTINGDOM", jet::ColumnType::Text, 4, ""},
                                            {"SELECTED", jet::ColumnType::Text, 1, "\"3\""},
                                            {"LASTLISTPRICE", jet::ColumnType::Double, 0, "0"},
                                            {"LASTLISTDATE", jet::ColumnType::DateTime, 0, "#1/1/1900#"},
                                            {"CONTRACTDATE", jet::ColumnType::DateTime, 0, "#1/1/1900#"},
                                            {"LISTCANCELDATE", jet::ColumnType::DateTime, 0, "#1/1/1900#"}}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const jet::ColumnDefinition& column = columns[15 + i];
        EXPECT_EQ(column.name, expected[i].name);
        EXPECT_EQ(column.type, expected[i].type) << column.name;
        EXPECT_EQ(column.CharacterLimit(), expected[i].width) << column.name;
        EXPECT_EQ(column.fixedLength, column.type != jet::ColumnType::Text || expected[i].width > 0);
        EXPECT_EQ(column.properties.defaultValue.value_or(""), expected[i].defaultValue) << column.name;
    }
}

TEST_F(SchemaUpgrade, OfADatabookWithoutRecordsGivesColumnsAndBothMessages) {
    const UpgradeOutcome outcome = Upgrade({});
    EXPECT_TRUE(outcome.upgraded);
    EXPECT_EQ(outcome.records, 0);
    EXPECT_TRUE(AdoFieldexists(session_, control_, "LISTCANCELDATE"));
    EXPECT_EQ(control_.Recordset().RecordCount(), 0);
    EXPECT_TRUE(desktop_.Done());
}

TEST_F(SchemaUpgrade, GivesEveryRecordTheDefaultInEachNewColumnThatNothingFilled) {
    std::vector<OldRecord> records;
    for (int i = 0; i < 300; ++i)
        records.push_back({.key = std::to_string(i) + " OAK ST", .otherArea1 = i % 2 == 0 ? "" : "199,900"});
    EXPECT_EQ(Upgrade(records).records, 300);
    for (long i = 0; !control_.Recordset().Eof(); control_.Recordset().MoveNext(), ++i) {
        EXPECT_EQ(Get("ORIGLISTPRICE"), i % 2 == 0 ? "0" : "199900");
        for (const char* date : {"ORIGLISTDATE", "LASTLISTDATE", "CONTRACTDATE", "LISTCANCELDATE"})
            EXPECT_EQ(control_.Recordset().Value(date), jet::Value{jet::DateTime{kDayZero}}) << date;
        EXPECT_EQ(control_.Recordset().Value("LASTLISTPRICE"), jet::Value{0.0});
        EXPECT_EQ(Get("SELECTED"), "3");
        EXPECT_TRUE(jet::IsNull(control_.Recordset().Value("LISTINGDOM")));
    }
}

TEST_F(SchemaUpgrade, LeavesTheOldColumnsInTheFile) {
    Upgrade({{.key = "1 A ST", .otherArea1 = "100000", .contrKDate = "1/2/2005"}});
    EXPECT_EQ(Get("OtherArea1"), "100000");
    EXPECT_EQ(Get("ContrKDate"), "1/2/2005");
    EXPECT_EQ(Get("SELLINGPR"), "250000");
}

// ---- the check ----

TEST_F(SchemaUpgrade, FindsACurrentDatabookUpToDate) {
    control_.Connectionstring = OneShotConnectionString(Path().string());
    const std::string before = BytesOf(Path());
    EXPECT_FALSE(Check4NewListingFieldsMain(session_, control_, Path().string()).upgraded);
    EXPECT_EQ(control_.RecordSource, "SELECT * FROM COMPS");
    control_.Close();
    EXPECT_EQ(BytesOf(Path()), before);
    EXPECT_FALSE(fs::exists(folder_ / "DATA.mdb.bak"));
}

TEST_F(SchemaUpgrade, HappensOnce) {
    Upgrade({{.key = "1 A ST", .otherArea1 = "100000"}});
    AdoSetFieldDouble(session_, control_, 5, "ORIGLISTPRICE");
    control_.Recordset().Update();
    EXPECT_FALSE(Check().upgraded);
    EXPECT_EQ(GetDouble("ORIGLISTPRICE"), 5);
}

TEST_F(SchemaUpgrade, OfADatabookWithoutCentralKeyEndsTheProgram) {
    MakeOldDatabook(Old(), {}, {.hasCentralKey = false});
    desktop_.Expect("A required field 'CentralKey' in '" + Old().string() +
                    "' was not found.   This database appears to be invalid.  Reinstall the software and "
                    "contact your software provider.");
    EXPECT_THROW(Check(), common::ProgramEnds);
    EXPECT_FALSE(fs::exists(Bak()));
}

TEST_F(SchemaUpgrade, MeetsAMissingOldColumnAsAnEmptyOne) {
    Upgrade({{.key = "1 A ST"}}, {.hasOldColumns = false});
    EXPECT_EQ(GetDouble("ORIGLISTPRICE"), 0);
    EXPECT_EQ(GetDate("LASTLISTDATE"), kDayZero);
}

TEST_F(SchemaUpgrade, OfAFileThatMayNotBeWrittenSaysSo) {
    MakeOldDatabook(Old(), {{.key = "1 A ST"}});
    fs::permissions(Old(), fs::perms::owner_read);
    if (::access(Old().c_str(), W_OK) == 0) GTEST_SKIP() << "this user may write everything";
    desktop_.Expect(kBefore);
    EXPECT_EQ(FaultOf([&] { Check(); }), fault::kReadOnly);
    EXPECT_FALSE(fs::exists(Note()));
}

// ---- the conversions ----

TEST_F(SchemaUpgrade, TakesTheAddressLineApartAndEmptiesItsColumn) {
    Upgrade({{.key = "1 A ST", .neighbourhood = "DALLAS, TX 75201"}});
    EXPECT_EQ(Get("CITY"), "DALLAS");
    EXPECT_EQ(Get("ST"), "TX");
    EXPECT_EQ(Get("ZIP"), "75201");
    EXPECT_EQ(Get("NEIGHBORHD"), "");
    EXPECT_EQ(Get("ADDRESS2"), "DALLAS, TX 75201");
}

TEST_F(SchemaUpgrade, KeepsAnAddressLineWithoutAState) {
    Upgrade({{.key = "1 A ST", .neighbourhood = "DALLAS, 75201-1234"}});
    EXPECT_EQ(Get("CITY"), "DALLAS");
    EXPECT_EQ(Get("ST"), "");
    EXPECT_EQ(Get("ZIP"), "75201");
    EXPECT_EQ(Get("NEIGHBORHD"), "DALLAS, 75201-1234");
    EXPECT_EQ(Get("ADDRESS2"), "DALLAS, 75201-1234");
}

TEST_F(SchemaUpgrade, OverwritesNoAddressPartThatIsThere) {
    Upgrade({{.key = "1 A ST",
              .neighbourhood = "DALLAS, TX 75201",
              .address2 = "Kept",
              .city = "Plano",
              .zip = "75023"}});
    EXPECT_EQ(Get("ADDRESS2"), "Kept");
    EXPECT_EQ(Get("CITY"), "Plano");
    EXPECT_EQ(Get("ST"), "TX");
    EXPECT_EQ(Get("ZIP"), "75023");
}

TEST_F(SchemaUpgrade, EmptiesTheAddressLineWhereTheColumnTakesNoEmptyText) {
    Upgrade({{.key = "1 A ST", .neighbourhood = "DALLAS, TX 75201"},
             {.key = "2 A ST", .neighbourhood = "The Pines"}},
            {.takesEmptyText = false});
    EXPECT_EQ(Get("NEIGHBORHD"), "");
    EXPECT_EQ(Get("ST"), "TX");
    control_.Recordset().MoveNext();
    EXPECT_EQ(Get("NEIGHBORHD"), "The Pines");
}

TEST_F(SchemaUpgrade, TakesTheOriginalListPriceFromTheOldColumn) {
    Upgrade(
        {{.key = "1 A ST", .otherArea1 = "$259,900"}, {.key = "2 A ST"}, {.key = "3", .otherArea1 = "n/a"}});
    EXPECT_EQ(GetDouble("ORIGLISTPRICE"), 259900);
    control_.Recordset().MoveNext();
    // An empty old column keeps the default.
    EXPECT_EQ(control_.Recordset().Value("ORIGLISTPRICE"), jet::Value{0.0});
    control_.Recordset().MoveNext();
    EXPECT_EQ(GetDouble("ORIGLISTPRICE"), 0);
}

TEST_F(SchemaUpgrade, LeavesDayZeroForACurrentListDateThatIsNone) {
    Upgrade({{.key = "1 A ST", .contrKDate = "13/45/2001"},
             {.key = "2 A ST", .contrKDate = "soon"},
             {.key = "3 A ST", .contrKDate = "1/5/2005"},
             {.key = "4 A ST", .contrKDate = "1/5/2999"}});
    for (const Date expected : {kDayZero, kDayZero, 38357.0, kDayZero}) {
        EXPECT_EQ(GetDate("LASTLISTDATE"), expected) << Get("CENTRALKEY");
        control_.Recordset().MoveNext();
    }
}

TEST_F(SchemaUpgrade, TakesTheCurrentListPriceFromTheOldColumn) {
    Upgrade({{.key = "1 A ST", .ercFinal = "249,500"}, {.key = "2 A ST"}});
    EXPECT_EQ(GetDouble("LASTLISTPRICE"), 249500);
    control_.Recordset().MoveNext();
    EXPECT_EQ(GetDouble("LASTLISTPRICE"), 0);
}

TEST_F(SchemaUpgrade, TakesTheOriginalListDateFromTheOldColumn) {
    Upgrade({{.key = "1 A ST", .otherArea2 = "1/5/2005"},
             {.key = "2 A ST", .otherArea2 = "1/5"},
             {.key = "3 A ST", .otherArea2 = "1/5/2999"}});
    EXPECT_EQ(GetDate("ORIGLISTDATE"), 38357);
    control_.Recordset().MoveNext();
    EXPECT_EQ(GetDate("ORIGLISTDATE"), kDayZero);
    control_.Recordset().MoveNext();
    EXPECT_EQ(GetDate("ORIGLISTDATE"), kDayZero);
}

TEST_F(SchemaUpgrade, ConvertsNothingTwice) {
    Upgrade({{.key = "1 A ST",
              .neighbourhood = "DALLAS, TX 75201",
              .otherArea1 = "100000",
              .otherArea2 = "1/5/2005",
              .contrKDate = "2/5/2005",
              .ercFinal = "90000"},
             {.key = "2 A ST", .neighbourhood = "DALLAS, 75201-1234"}});
    control_.Close();
    const std::string once = BytesOf(Old());
    Connect();
    AdoSelect(control_, "COMPS", "*", "");
    EXPECT_TRUE(PerformFieldConversions(session_, control_, control_));
    control_.Close();
    EXPECT_EQ(BytesOf(Old()), once);
}

TEST_F(SchemaUpgrade, CompletesAddressPartsThroughTheControlOfTheMainForm) {
    MakeOldDatabook(Old(), {{.key = "1 A ST", .neighbourhood = "DALLAS, TX 75201"}});
    Run("INSERT INTO COMPS (CENTRALKEY,ZIP) VALUES ('OPEN', '1')");
    SelectAll();
    ado::Adodc other(pool_, clock_);
    other.Connectionstring = OneShotConnectionString(Old().string());
    ExpectBothMessages();
    Check4NewListingFieldsMain(session_, other, Old().string(), control_);
    EXPECT_EQ(Get("CITY"), "DALLAS");
    EXPECT_EQ(Get("ZIP"), "1");
    other.Recordset().MoveFirst();
    EXPECT_EQ(adogetfield(other, "ADDRESS2"), "DALLAS, TX 75201");
    EXPECT_EQ(adogetfield(other, "CITY"), "");
    EXPECT_EQ(adogetfield(other, "NEIGHBORHD"), "DALLAS, TX 75201");
}

TEST_F(SchemaUpgrade, LeavesAddressPartsOutWhileTheMainFormHasNoRecord) {
    MakeOldDatabook(Old(), {{.key = "1 A ST", .neighbourhood = "DALLAS, TX 75201", .otherArea1 = "7"}});
    SelectAll();  // no records
    ado::Adodc other(pool_, clock_);
    other.Connectionstring = OneShotConnectionString(Old().string());
    ExpectBothMessages();
    EXPECT_TRUE(Check4NewListingFieldsMain(session_, other, Old().string(), control_).upgraded);
    other.Recordset().MoveFirst();
    EXPECT_EQ(adogetfieldDouble(other, "ORIGLISTPRICE"), 7);
}

TEST_F(SchemaUpgrade, NamesTheRecordThatCannotBeConverted) {
    MakeOldDatabook(Old(), {{.key = "1 A ST"}, {.key = "2 A ST", .otherArea1 = "7"}});
    BreakOff();
    RunOn(Old(), "ALTER TABLE COMPS ADD X LONG");
    Connect();
    AdoSelect(control_, "COMPS", "*", "");
    try {
        PerformFieldConversions(session_, control_, control_, {{"X", "no number"}});
        FAIL() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kTypeMismatch);
        EXPECT_EQ(fault.place.record, 1);
    }
}

// ---- the copy, and what was broken off ----

TEST_F(SchemaUpgrade, KeepsTheOldFileAsBak) {
    MakeOldDatabook(Old(), {{.key = "1 A ST", .neighbourhood = "DALLAS, TX 75201"}});
    const std::string old = BytesOf(Old());
    ExpectBothMessages();
    EXPECT_EQ(Check().backup, Bak());
    EXPECT_EQ(BytesOf(Bak()), old);
    EXPECT_FALSE(fs::exists(Note()));
}

TEST_F(SchemaUpgrade, ThatWasBrokenOffIsFinishedFromTheCopy) {
    MakeOldDatabook(Old(), {{.key = "1 A ST", .neighbourhood = "DALLAS, TX 75201", .otherArea1 = "100000"}});
    const std::string old = BytesOf(Old());
    BreakOff();
    desktop_.ExpectAny(controls::Answer::Yes);
    ExpectBothMessages();
    EXPECT_TRUE(Check().upgraded);
    EXPECT_NE(desktop_.messages[0].text.find("was broken off"), std::string::npos);
    control_.Recordset().MoveFirst();
    EXPECT_EQ(GetDouble("ORIGLISTPRICE"), 100000);
    EXPECT_EQ(Get("SELECTED"), "3");
    EXPECT_EQ(Get("CITY"), "DALLAS");
    EXPECT_EQ(BytesOf(Bak()), old);
    EXPECT_FALSE(fs::exists(Note()));
}

TEST_F(SchemaUpgrade, ThatWasBrokenOffStaysSoWhenTheUserWantsIt) {
    MakeOldDatabook(Old(), {{.key = "1 A ST", .otherArea1 = "100000"}});
    BreakOff();
    desktop_.ExpectAny(controls::Answer::No);
    EXPECT_FALSE(Check().upgraded);
    EXPECT_EQ(GetDouble("ORIGLISTPRICE"), 0);
    EXPECT_TRUE(fs::exists(Bak()));
    // Asked once: what is done to the file from here on is not to be undone by a later answer.
    EXPECT_FALSE(Check().upgraded);
}

TEST_F(SchemaUpgrade, NeverTakesAnotherFileForTheCopy) {
    MakeOldDatabook(Old(), {{.key = "1 A ST"}});
    BreakOff();
    std::string bytes = BytesOf(Bak());
    files::WriteWholeFile(Bak(), bytes + bytes);
    desktop_.ExpectAny();
    EXPECT_FALSE(Check().upgraded);
    EXPECT_NE(desktop_.messages[0].text.find("is not beside it any more"), std::string::npos);
    EXPECT_FALSE(fs::exists(Note()));
}

TEST_F(SchemaUpgrade, ThatWasBrokenOffIsForgottenWithItsDatabook) {
    MakeOldDatabook(Old(), {{.key = "1 A ST"}});
    BreakOff();
    CopyNewData(session_, Path(), Old());
    EXPECT_FALSE(Check().upgraded);
    EXPECT_TRUE(desktop_.messages.empty());
}

TEST_F(SchemaUpgrade, ThatWasBrokenOffBeforeAnyColumnSimplyHappens) {
    MakeOldDatabook(Old(), {{.key = "1 A ST", .otherArea1 = "100000"}});
    UpgradeCopy(Old()).Begin(false);
    ExpectBothMessages();
    EXPECT_TRUE(Check().upgraded);
}

TEST_F(SchemaUpgrade, LeavesTheDatabookAloneWhenNoCopyCanBeMade) {
    MakeOldDatabook(Old(), {{.key = "1 A ST"}});
    fs::create_directory(Bak());
    files::WriteWholeFile(Bak() / "in the way", "x");
    const std::string old = BytesOf(Old());
    desktop_.Expect(kBefore);
    EXPECT_NE(FaultOf([&] { Check(); }), 0);
    control_.Close();
    EXPECT_EQ(BytesOf(Old()), old);
    EXPECT_FALSE(fs::exists(Note()));
}

// ---- files of Access 97 ----

TEST_F(SchemaUpgrade, BringsADatabookOfAccess97IntoTheFormatThatIsWritten) {
    const char* const samples = std::getenv("ZENVORA_JET_SAMPLES");
    if (samples == nullptr) GTEST_SKIP() << "ZENVORA_JET_SAMPLES names no folder: nothing was converted";
    fs::copy_file(fs::path(samples) / "a97-small.mdb", Old());
    fs::permissions(Old(), fs::perms::owner_all);
    const std::string old = BytesOf(Old());
    EXPECT_EQ(FaultOf([&] { Check(); }), fault::kNoSuchTable);
    EXPECT_EQ(BytesOf(Old()), old);
    EXPECT_FALSE(fs::exists(Bak()));

    session_.table = pool_.Open(Old(), jet::Database::Access::ReadOnly)->TableNames().front();
    desktop_.ExpectAny();
    desktop_.ExpectAny();
    EXPECT_THROW(Check(), common::ProgramEnds);  // for it has no CENTRALKEY
    EXPECT_NE(desktop_.messages[0].text.find("was of Access 97"), std::string::npos);
    EXPECT_EQ(BytesOf(Bak()), old);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(pool_.Open(Old(), jet::Database::Access::ReadWrite)); }), 0);
}

TEST_F(SchemaUpgrade, SilentlyPassesOverATemplateOfAccess97) {
    const char* const samples = std::getenv("ZENVORA_JET_SAMPLES");
    if (samples == nullptr) GTEST_SKIP() << "ZENVORA_JET_SAMPLES names no folder: nothing was looked at";
    fs::copy_file(fs::path(samples) / "a97-small.mdb", Old());
    InsertMissingCompsFields(session_, Old().string());
    EXPECT_TRUE(desktop_.messages.empty());
}

// ---- the silent pass ----

TEST_F(SchemaUpgrade, SilentlyAddsTheColumnsToATemplate) {
    MakeOldDatabook(Old(), {{.key = "1 A ST", .otherArea1 = "100000"}});
    InsertMissingCompsFields(session_, "  " + Old().string() + " ");
    Connect();
    AdoSelect(control_, "COMPS", "*", "");
    EXPECT_EQ(GetDouble("ORIGLISTPRICE"), 0);  // nothing is converted here
    EXPECT_EQ(control_.Recordset().Value("ORIGLISTPRICE"), jet::Value{0.0});
    EXPECT_EQ(Get("SELECTED"), "3");
    EXPECT_EQ(GetDate("LISTCANCELDATE"), kDayZero);
    EXPECT_FALSE(fs::exists(Bak()));
}

TEST_F(SchemaUpgrade, SilentlyLeavesACurrentTemplateAsItIs) {
    Run("INSERT INTO COMPS (CENTRALKEY,ORIGLISTDATE) VALUES ('1 A ST', Null)");
    const std::string before = BytesOf(Path());
    InsertMissingCompsFields(session_, Path().string());
    EXPECT_EQ(BytesOf(Path()), before);
}

TEST_F(SchemaUpgrade, SilentlyPassesOverATemplateThatIsNotThere) {
    InsertMissingCompsFields(session_, (folder_ / "COMMENTS.MDB").string());
    InsertMissingCompsFields(session_, "");
    files::WriteWholeFile(folder_ / "EMPTY.MDB", "");
    InsertMissingCompsFields(session_, (folder_ / "EMPTY.MDB").string());
    EXPECT_TRUE(desktop_.messages.empty());
}

TEST_F(SchemaUpgrade, SilentlyAddsOnlyWhatIsMissing) {
    MakeOldDatabook(Old(), {{.key = "1 A ST"}});
    RunOn(Old(), "ALTER TABLE COMPS ADD LASTLISTPRICE DOUBLE");
    InsertMissingCompsFields(session_, Old().string());
    Connect();
    AdoSelect(control_, "COMPS", "*", "");
    EXPECT_EQ(control_.Recordset().Fields().size(), 15U + 8U);
    // A column that was there keeps what it holds.
    EXPECT_TRUE(jet::IsNull(control_.Recordset().Value("LASTLISTPRICE")));
}

// ---- files of other programs ----

/// An upgraded file as other readers see it.
class UpgradedFile : public SchemaUpgrade {
  protected:
    static std::vector<OldRecord> Records() {
        std::vector<OldRecord> records;
        for (int i = 0; i < 2000; ++i) {
            records.push_back({.key = std::to_string(1000 + i) + " O'HARA BLVD",
                               .neighbourhood = i % 3 == 0 ? "DALLAS, TX 75201" : "",
                               .otherArea1 = i % 2 == 0 ? "200000" : ""});
        }
        return records;
    }
    void CheckWithOtherReaders() {
        control_.Close();
        const std::string file = "'" + Old().string() + "'";
        if (const char* const checker = std::getenv("ZENVORA_MDBCHECK")) {
            const CommandResult checked = RunCommand("python3 '" + std::string(checker) + "' " + file);
            EXPECT_EQ(checked.status, 0) << checked.output.substr(0, 3000);
        }
        if (RunCommand("command -v mdb-export").status != 0)
            GTEST_SKIP() << "mdb-export is not installed (package mdbtools): nothing was compared";
        const CommandResult exported =
            RunCommand("mdb-export -Q -H -d '|' -D '%Y-%m-%d' -T '%Y-%m-%d' " + file + " COMPS");
        ASSERT_EQ(exported.status, 0) << exported.output.substr(0, 500);
        std::istringstream lines(exported.output);
        std::string line;
        int count = 0;
        for (; std::getline(lines, line); ++count) {
            const int number = std::stoi(line) - 1000;
            const bool hasPrice = number % 2 == 0;
            const bool hasCity = number % 3 == 0;
            EXPECT_NE(line.find(hasPrice ? "|200000|1900-01-01||3|0|" : "|0|1900-01-01||3|0|"),
                      std::string::npos)
                << line;
            EXPECT_EQ(line.find("|DALLAS|TX|75201|") != std::string::npos, hasCity) << line;
            EXPECT_TRUE(line.ends_with("|1900-01-01|1900-01-01|1900-01-01")) << line;
        }
        EXPECT_EQ(count, 2000);
    }
};

TEST_F(UpgradedFile, IsReadByOtherPrograms) {
    Upgrade(Records());
    CheckWithOtherReaders();
}

TEST_F(UpgradedFile, OfAnotherProgramIsReadByOtherPrograms) {
    const char* const samples = std::getenv("ZENVORA_JET_SAMPLES");
    if (samples == nullptr) GTEST_SKIP() << "ZENVORA_JET_SAMPLES names no folder: nothing was upgraded";
    fs::copy_file(fs::path(samples) / "empty-access2000.mdb", Old());
    fs::permissions(Old(), fs::perms::owner_all);
    Upgrade(Records());
    CheckWithOtherReaders();
}

}  // namespace
}  // namespace zenvora::databook
