#include "import/csv_wizard.h"

#include <gtest/gtest.h>

#include "grid_text.h"
#include "recording_target.h"
#include "support/scripted_desktop.h"
#include "text_disk.h"

namespace zenvora::importing {
namespace {

using testing_support::FaultOf;
using testing_support::Row;

constexpr const char* kNoMappings =
    "There are no field mappings specified. Either set them up now or load an existing Map";

Row ItemsOf(const controls::ListBox& list) {
    Row items;
    for (int at = 0; at < list.ListCount(); ++at)
        items.push_back(list.List(at));
    return items;
}

Row LinesOf(const LoadLog& log) {
    Row lines;
    for (std::size_t at = 0; at < log.ListCount(); ++at)
        lines.emplace_back(log.List(at));
    return lines;
}

const Row kCaptions = {"Address",
                       "Original Listing Date",
                       "Original Listing Price",
                       "Current Listing Date",
                       "Current Listing Price",
                       "Contract Date",
                       "Listing Cancel Date",
                       "Sale Date",
                       "Selling Price",
                       "City",
                       "State",
                       "Zip",
                       "Days On Market"};

class CsvWizard : public testing::Test {
  protected:
    CsvWizard() {
        wizard.CSVFilename = "L.CSV";
        wizard.CSVFiledate = *text::DayNumber(2009, 4, 1);
        wizard.CSVMDBFilename = "L.mdb";
        wizard.g_MapFileName = "L.map";
        disk.Set("L.CSV", "Street,Town,Price\n12 Oak St,Troy,250000\n9 Elm St,Novi,300000");
        disk.Set("L.map", "Street <-> Address\r\nTown <-> City\r\nPrice <-> Selling Price\r\n");
    }
    [[nodiscard]] std::string SourceOf(const std::string& caption) const {
        for (const DestinationField& field : wizard.FieldName()) {
            if (field.caption == caption) return field.source;
        }
        return "no such field";
    }

    testing_support::ScriptedDesktop desktop;
    shell::FixedClock clock{*text::DayNumber(2026, 6, 30)};
    testing_support::RecordingTarget target;
    testing_support::TextDisk disk;
    ado::DatabasePool pool;
    common::Session session{desktop, clock, pool, {}, "COMPS", 0};
    frmCSVWizard wizard{session, target, disk};
};

TEST_F(CsvWizard, HasThirteenDestinationFields) {
    const Row columns = {"CENTRALKEY",
                         "ORIGLISTDATE",
                         "ORIGLISTPRICE",
                         "LASTLISTDATE",
                         "LASTLISTPRICE",
                         "CONTRACTDATE",
                         "LISTCANCELDATE",
                         "SALEDATE",
                         "SELLINGPR",
                         "CITY",
                         "ST",
                         "ZIP",
                         "DAYSONMARKET"};
    ASSERT_EQ(wizard.FieldName().size(), 13U);
    for (std::size_t at = 0; at < 13; ++at) {
        const DestinationField& field = wizard.FieldName()[at];
        EXPECT_EQ(field.caption, kCaptions[at]);
        EXPECT_EQ(field.column, columns[at]);
        EXPECT_EQ(field.source, "");
        const bool isDate = field.caption.ends_with("Date");
        const bool isNumber = field.caption.ends_with("Price") || field.caption == "Days On Market";
        EXPECT_EQ(field.type, isDate ? FieldType::Date : isNumber ? FieldType::Number : FieldType::Text);
    }
}

TEST_F(CsvWizard, InitDataGridLeavesOneEmptyCell) {
    wizard.ParseCSV("L.CSV");
    wizard.InitDataGrid();
    EXPECT_EQ(testing_support::CellsOf(wizard.DataGridView1), (std::vector<Row>{{""}}));
}

TEST_F(CsvWizard, ListsAllDestinationsAnew) {
    wizard.LoadDestFields();
    wizard.LoadDestFields();
    EXPECT_EQ(ItemsOf(wizard.lbDestFields), kCaptions);
}

TEST_F(CsvWizard, ListsSourceFieldsAndNumbersThoseWithoutName) {
    disk.Set("L.CSV", "Street,,Price\n");
    wizard.ParseCSV("L.CSV");
    wizard.LoadSourceFields();
    wizard.LoadSourceFields();
    EXPECT_EQ(ItemsOf(wizard.lbSourceFields), (Row{"Field 0", "Street", "Field 2", "Price"}));
}

TEST_F(CsvWizard, ListsFieldsOfASourceWithoutHeader) {
    wizard.cbHeaderRow.SetValue(controls::CheckBox::kUnchecked);
    disk.Set("L.CSV", "12 Oak St,Troy\n");
    wizard.ParseCSV("L.CSV");
    wizard.LoadSourceFields();
    EXPECT_EQ(ItemsOf(wizard.lbSourceFields), (Row{"Field  1", "Field  2", "Field 2"}));
}

TEST_F(CsvWizard, ActivationReadsTheSourceAndLeavesTheMappings) {
    wizard.AddMapItem("Street", "Address");
    wizard.ReadSource("/data");
    EXPECT_EQ(wizard.dlgMaps.directory, "/data");
    EXPECT_EQ(ItemsOf(wizard.lbSourceFields), (Row{"Field 0", "Street", "Town", "Price"}));
    EXPECT_EQ(ItemsOf(wizard.lbDestFields), kCaptions);
    EXPECT_EQ(ItemsOf(wizard.lbMappings), (Row{"Street <-> Address"}));
    EXPECT_EQ(wizard.Delimiter(), ',');
    EXPECT_TRUE(target.statements.empty());
}

TEST_F(CsvWizard, ActivationReadsTheHeaderBoxAnew) {
    wizard.cbHeaderRow.SetValue(controls::CheckBox::kUnchecked);
    wizard.ReadSource("");
    EXPECT_EQ(wizard.DataGridView1.Rows(), 4);
    wizard.cbHeaderRow.SetValue(controls::CheckBox::kChecked);
    wizard.ReadSource("");
    EXPECT_EQ(wizard.DataGridView1.Rows(), 3);
}

TEST_F(CsvWizard, ActivationTakesTheXmlReaderForAnyPathWithXmlInIt) {
    disk.Set("old.xml/L.csv", "<a>1</a>\n<b>2</b>\n");
    wizard.CSVFilename = "old.xml/L.csv";
    wizard.ReadSource("");
    EXPECT_EQ(ItemsOf(wizard.lbSourceFields), (Row{"a", "b"}));
    EXPECT_EQ(ItemsOf(wizard.lbScratch), (Row{"a", "b"}));
    disk.Set("L.XML", "a,b\n1,2");
    wizard.CSVFilename = "L.XML";  // only lower case counts here
    wizard.ReadSource("");
    EXPECT_EQ(ItemsOf(wizard.lbSourceFields), (Row{"Field 0", "a", "b"}));
}

TEST_F(CsvWizard, ReadsXmlTwiceWithoutKeepingOldTags) {
    disk.Set("L.xml", "<a>1</a>\n");
    wizard.ParseXML("L.xml");
    disk.Set("L.xml", "<b>1</b>\n");
    wizard.ParseXML("L.xml");
    EXPECT_EQ(ItemsOf(wizard.lbScratch), (Row{"b"}));
}

TEST_F(CsvWizard, AddMappingPairsTheTwoSelectedFields) {
    wizard.ReadSource("");
    wizard.lbSourceFields.SetListIndex(1);
    wizard.lbDestFields.SetListIndex(0);
    wizard.btnAddMapping_Click();
    EXPECT_EQ(ItemsOf(wizard.lbMappings), (Row{"Street <-> Address"}));
    EXPECT_EQ(ItemsOf(wizard.lbSourceFields), (Row{"Field 0", "Town", "Price"}));
    EXPECT_EQ(wizard.lbDestFields.ListCount(), 12);
    EXPECT_EQ(wizard.lbDestFields.List(0), "Original Listing Date");
}

TEST_F(CsvWizard, AddMappingNeedsBothSelections) {
    wizard.ReadSource("");
    wizard.lbSourceFields.SetListIndex(1);
    for (int press = 0; press < 2; ++press) {
        desktop.Expect(
            "To Map fields, you must select one Source Field and one Dest Field and THEN press the Add Map "
            "Item Button");
        wizard.btnAddMapping_Click();
        wizard.lbSourceFields.SetListIndex(-1);
        wizard.lbDestFields.SetListIndex(1);
    }
    EXPECT_EQ(wizard.lbMappings.ListCount(), 0);
}

TEST_F(CsvWizard, RemoveMapItemPutsBothNamesAtTheEnds) {
    wizard.ReadSource("");
    wizard.lbSourceFields.SetListIndex(1);
    wizard.lbDestFields.SetListIndex(0);
    wizard.btnAddMapping_Click();
    wizard.lbMappings.SetListIndex(0);
    wizard.btnRemoveMapItem_Click();
    EXPECT_EQ(wizard.lbMappings.ListCount(), 0);
    EXPECT_EQ(ItemsOf(wizard.lbSourceFields), (Row{"Field 0", "Town", "Price", "Street"}));
    EXPECT_EQ(wizard.lbDestFields.List(12), "Address");
}

TEST_F(CsvWizard, RemoveMapItemWithoutSelectionDoesNothing) {
    wizard.AddMapItem("Street", "Address");
    wizard.btnRemoveMapItem_Click();
    EXPECT_EQ(wizard.lbMappings.ListCount(), 1);
}

TEST_F(CsvWizard, RemoveMapItemFaultsAtARowThatIsNoMapping) {
    wizard.lbMappings.AddItem("nonsense");
    wizard.lbMappings.SetListIndex(0);
    EXPECT_EQ(FaultOf([&] { wizard.btnRemoveMapItem_Click(); }).number, fault::kInvalidCall);
}

TEST_F(CsvWizard, ResetFillsTheListsAndKeepsGridAndMaster) {
    wizard.ReadSource("");
    wizard.AddMapItem("Street", "Address");
    wizard.LoadMasterFieldArrayMap();
    wizard.btnReset_Click();
    EXPECT_EQ(wizard.lbMappings.ListCount(), 0);
    EXPECT_EQ(wizard.lbSourceFields.ListCount(), 4);
    EXPECT_EQ(wizard.lbDestFields.ListCount(), 13);
    EXPECT_EQ(SourceOf("Address"), "Street");
    EXPECT_EQ(wizard.DataGridView1.Rows(), 3);
}

TEST_F(CsvWizard, LoadMappingsReloadsTheKnownFileWithoutADialog) {
    wizard.ReadSource("");
    wizard.AddMapItem("x", "Zip");
    wizard.btnLoadMappings_Click();
    wizard.btnLoadMappings_Click();
    EXPECT_EQ(ItemsOf(wizard.lbMappings),
              (Row{"Street <-> Address", "Town <-> City", "Price <-> Selling Price"}));
    EXPECT_EQ(wizard.lbSourceFields.ListCount(), 4);  // the lists keep what is mapped by file
    EXPECT_EQ(wizard.lbDestFields.ListCount(), 13);
    EXPECT_TRUE(desktop.dialogs.empty());
}

TEST_F(CsvWizard, LoadMappingsAsksOnceForAnUnknownFile) {
    wizard.g_MapFileName = "";
    desktop.ExpectFile("L.map");
    wizard.btnLoadMappings_Click();
    wizard.btnLoadMappings_Click();
    EXPECT_EQ(wizard.g_MapFileName, "L.map");
    ASSERT_EQ(desktop.dialogs.size(), 1U);
    EXPECT_EQ(desktop.dialogs[0].title, "Load Map");
    EXPECT_EQ(desktop.dialogs[0].filter, "Map Files (*.map)|*.map");
    EXPECT_EQ(desktop.dialogs[0].defaultExtension, "map");
    EXPECT_FALSE(desktop.dialogs[0].forSaving);
}

TEST_F(CsvWizard, ACancelledDialogKeepsTheMappings) {
    wizard.g_MapFileName = "";
    wizard.AddMapItem("x", "Zip");
    desktop.ExpectFile("");
    wizard.btnLoadMappings_Click();
    EXPECT_EQ(wizard.lbMappings.ListCount(), 1);
}

TEST_F(CsvWizard, SavesAndLoadsTheSameMappings) {
    wizard.AddMapItem("Sale Dt", "Sale Date");
    wizard.AddMapItem("List Px", "Current Listing Price");
    desktop.ExpectFile("new.map");
    wizard.btnSaveMappings_Click();
    EXPECT_EQ(disk.Get("new.map"), "Sale Dt <-> Sale Date\r\nList Px <-> Current Listing Price\r\n");
    EXPECT_EQ(wizard.g_MapFileName, "L.map");
    EXPECT_EQ(desktop.dialogs[0].title, "Load Map");
    EXPECT_TRUE(desktop.dialogs[0].forSaving);
    wizard.LoadMap("new.map");
    EXPECT_EQ(ItemsOf(wizard.lbMappings),
              (Row{"Sale Dt <-> Sale Date", "List Px <-> Current Listing Price"}));
}

TEST_F(CsvWizard, SavesNothingWithoutMappingsOrName) {
    desktop.Expect("There are no mappings to save");
    wizard.btnSaveMappings_Click();
    wizard.AddMapItem("x", "Zip");
    desktop.ExpectFile("");
    wizard.btnSaveMappings_Click();
    EXPECT_FALSE(disk.Exists(""));
}

TEST_F(CsvWizard, AnEmptyMapFileEmptiesTheMappings) {
    disk.Set("L.map", "");
    wizard.AddMapItem("x", "Zip");
    wizard.LoadMap("L.map");
    EXPECT_EQ(wizard.lbMappings.ListCount(), 0);
}

TEST_F(CsvWizard, TheLaterOfTwoSourcesForOneDestinationCounts) {
    wizard.AddMapItem("Street", "Address");
    wizard.AddMapItem("Road", "Address");
    wizard.LoadMasterFieldArrayMap();
    EXPECT_EQ(SourceOf("Address"), "Road");
}

TEST_F(CsvWizard, UnknownDestinationsArePassedOverAndOldNamesStay) {
    wizard.AddMapItem("Street", "Address");
    wizard.LoadMasterFieldArrayMap();
    wizard.lbMappings.Clear();
    wizard.AddMapItem("Town", "city");
    wizard.LoadMasterFieldArrayMap();
    EXPECT_EQ(SourceOf("Address"), "Street");
    EXPECT_EQ(SourceOf("City"), "");
}

TEST_F(CsvWizard, AMapLineThatIsNoMappingIsAFaultWithItsPlace) {
    disk.Set("L.map", "Street <-> Address\r\n\r\nnonsense\r\n");
    wizard.LoadMap("L.map");
    const Fault fault = FaultOf([&] { wizard.LoadMasterFieldArrayMap(); });
    EXPECT_EQ(fault.number, fault::kInvalidCall);
    EXPECT_EQ(fault.place.file, "L.map");
    EXPECT_EQ(fault.place.line, 2);
}

TEST_F(CsvWizard, IsMappedLooksAtTheWholeRow) {
    wizard.AddMapItem("City Name", "Zip");
    EXPECT_TRUE(wizard.IsMapped("Zip"));
    EXPECT_TRUE(wizard.IsMapped("City"));
    EXPECT_FALSE(wizard.IsMapped("city"));
    EXPECT_FALSE(wizard.IsMapped("State"));
}

TEST_F(CsvWizard, RunsUnattendedFromFileToStatements) {
    wizard.RunUnattended(SourceKind::Delimited);
    EXPECT_EQ(
        target.connectionString,
        "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=L.mdb;Mode=ReadWrite;Persist Security Info=False");
    EXPECT_EQ(
        target.statements,
        (Row{"INSERT INTO COMPS (CENTRALKEY,ADDRESS, CITY,SELLINGPR) VALUES (\"12 Oak St\",\"12 Oak St\", "
             "\"Troy\",250000)",
             "INSERT INTO COMPS (CENTRALKEY,ADDRESS, CITY,SELLINGPR) VALUES (\"9 Elm St\",\"9 Elm St\", "
             "\"Novi\",300000)"}));
    EXPECT_EQ(target.timesClosed, 1);
    EXPECT_EQ(wizard.Outcome().rows, 2);
    EXPECT_EQ(wizard.Outcome().written, 2);
    EXPECT_TRUE(wizard.Outcome().refused.empty());
    EXPECT_EQ(desktop.lastDone, 2);
    EXPECT_EQ(desktop.lastTotal, 2);
    EXPECT_EQ(wizard.pbLoadStatus.Value(), 2);
    EXPECT_EQ(wizard.pbLoadStatus.Maximum(), 2);
}

TEST_F(CsvWizard, RunsUnattendedFromXml) {
    disk.Set("L.XML", "<r>\n<Street>12 Oak St</Street>\n<Town>Troy</Town>\n</r>\n");
    wizard.CSVFilename = "L.XML";
    wizard.RunUnattended(SourceKind::Xml);
    EXPECT_EQ(
        target.statements,
        (Row{"INSERT INTO COMPS (CENTRALKEY,ADDRESS, CITY) VALUES (\"12 Oak St\",\"12 Oak St\", \"Troy\")",
             "INSERT INTO COMPS (CENTRALKEY,ADDRESS, CITY) VALUES (\"\",\"\", )"}));
}

TEST_F(CsvWizard, RunsWithoutAMapWhenTheDialogIsCancelled) {
    wizard.g_MapFileName = "";
    desktop.ExpectFile("");
    desktop.Expect(kNoMappings);
    target.onExecute = [](std::string_view) { throw Fault{fault::kSyntax, "none of the forms"}; };
    wizard.RunUnattended(SourceKind::Delimited);
    EXPECT_EQ(target.statements, (Row{"INSERT INTO COMPS () VALUES ()", "INSERT INTO COMPS () VALUES ()"}));
    EXPECT_EQ(LinesOf(wizard.ListBox1.Log()).back(), "Record NOT Written");
    EXPECT_EQ(wizard.Outcome().written, 0);
    ASSERT_EQ(wizard.Outcome().refused.size(), 2U);
    EXPECT_EQ(wizard.Outcome().refused[0].reason, "no field is mapped to a column of the source");
}

TEST_F(CsvWizard, LogsEveryRow) {
    disk.Set("L.map", "Town <-> City\r\n");
    target.onExecute = [](std::string_view statement) {
        if (statement.find("Novi") != std::string_view::npos)
            throw Fault{fault::kNullKey, "The key is Null."};
    };
    wizard.RunUnattended(SourceKind::Delimited);
    EXPECT_EQ(LinesOf(wizard.ListBox1.Log()), (Row{"",   "Row  1",
                                                   "",   "CITY loaded with Troy",
                                                   "",   "INSERT INTO COMPS",
                                                   "(",  "CITY",
                                                   ") ", "VALUES",
                                                   "(",  "\"Troy\"",
                                                   ")",  "Record Written",  //
                                                   "",   "Row  2",
                                                   "",   "CITY loaded with Novi",
                                                   "",   "INSERT INTO COMPS",
                                                   "(",  "CITY",
                                                   ") ", "VALUES",
                                                   "(",  "\"Novi\"",
                                                   ")",  "Record NOT Written"}));
    wizard.btnClear_Click();
    EXPECT_EQ(wizard.ListBox1.ListCount(), 0);
}

TEST_F(CsvWizard, LeavesTheLogAloneWhenNobodyWantsIt) {
    wizard.LogWanted = false;
    wizard.RunUnattended(SourceKind::Delimited);
    EXPECT_EQ(wizard.ListBox1.ListCount(), 0);
    EXPECT_EQ(target.statements.size(), 2U);
}

TEST_F(CsvWizard, GoesOnAfterARefusedRow) {
    target.onExecute = [](std::string_view statement) {
        if (statement.find("12 Oak") != std::string_view::npos)
            throw Fault{fault::kDuplicateKey, "The key exists."};
    };
    wizard.RunUnattended(SourceKind::Delimited);
    EXPECT_EQ(wizard.Outcome().rows, 2);
    EXPECT_EQ(wizard.Outcome().written, 1);
    ASSERT_EQ(wizard.Outcome().refused.size(), 1U);
    EXPECT_EQ(wizard.Outcome().refused[0].row, 1);
    EXPECT_EQ(wizard.Outcome().refused[0].line, 2);
    EXPECT_EQ(wizard.Outcome().refused[0].reason, "duplicate key: 12 Oak St");
    EXPECT_TRUE(wizard.Outcome().HasErrors());
}

TEST_F(CsvWizard, ASourceNameThatTheGridLacksMapsNothing) {
    disk.Set("L.map", "Town <-> City\r\nPostcode <-> Zip\r\n");
    wizard.RunUnattended(SourceKind::Delimited);
    EXPECT_EQ(target.statements[0], "INSERT INTO COMPS (CITY) VALUES (\"Troy\")");
}

TEST_F(CsvWizard, ACaptionInsideAnotherMappingTakesTheNamelessColumn) {
    // "City" is found in the first row, its own source is empty, and so is the name of column 0.
    disk.Set("L.CSV", "City Name,Price\nTroy,5");
    disk.Set("L.map", "City Name <-> Zip\r\n");
    wizard.RunUnattended(SourceKind::Delimited);
    EXPECT_EQ(target.statements, (Row{"INSERT INTO COMPS (CITY,ZIP) VALUES (\"\",\"Troy\")"}));
}

TEST_F(CsvWizard, TheLaterFieldTakesAColumnThatTwoFieldsName) {
    disk.Set("L.map", "Price <-> Selling Price\r\nPrice <-> Original Listing Price\r\n");
    wizard.RunUnattended(SourceKind::Delimited);
    EXPECT_EQ(target.statements[0], "INSERT INTO COMPS (SELLINGPR) VALUES (250000)");
}

TEST_F(CsvWizard, ColumnsOfOneNameGoInTwice) {
    disk.Set("L.CSV", "Town,Town\nTroy,Novi");
    wizard.RunUnattended(SourceKind::Delimited);
    EXPECT_EQ(target.statements[0], "INSERT INTO COMPS (CITY,CITY) VALUES (\"Troy\",\"Novi\")");
}

TEST_F(CsvWizard, TheLastColumnWithoutHeaderCannotBeLoaded) {
    wizard.cbHeaderRow.SetValue(controls::CheckBox::kUnchecked);
    disk.Set("L.CSV", "12 Oak St,Troy");
    disk.Set("L.map", "Field  2 <-> Address\r\nField 2 <-> City\r\n");
    wizard.RunUnattended(SourceKind::Delimited);
    EXPECT_EQ(target.statements, (Row{"INSERT INTO COMPS (CENTRALKEY) VALUES (\"12 Oak St\")"}));
}

TEST_F(CsvWizard, AFaultOfTheSourceLoadsNothing) {
    disk.Set("L.CSV", disk.Get("L.CSV") + ",too,many");
    const Fault fault = FaultOf([&] { wizard.RunUnattended(SourceKind::Delimited); });
    EXPECT_EQ(fault.number, fault::kSubscript);
    EXPECT_EQ(fault.place.file, "L.CSV");
    EXPECT_EQ(fault.place.line, 3);
    EXPECT_TRUE(target.statements.empty());
    EXPECT_EQ(target.connectionString, "");
}

TEST_F(CsvWizard, ABadSaleDateBesideDaysOnMarketEndsTheLoadOnTheFirstRowOnly) {
    disk.Set("L.CSV", "Sold,DOM\nnever-ever,5\n3/1/2009,30");
    disk.Set("L.map", "Sold <-> Sale Date\r\nDOM <-> Days On Market\r\n");
    const Fault fault = FaultOf([&] { wizard.RunUnattended(SourceKind::Delimited); });
    EXPECT_EQ(fault.number, fault::kTypeMismatch);
    EXPECT_EQ(fault.place.file, "L.CSV");
    EXPECT_EQ(fault.place.line, 2);
    EXPECT_EQ(fault.place.record, 1);
    EXPECT_EQ(FaultOf([&] { wizard.CheckFirstRow(); }).number, fault::kTypeMismatch);
    EXPECT_TRUE(target.statements.empty());
    EXPECT_EQ(target.timesClosed, 1);

    disk.Set("L.CSV", "Sold,DOM\n3/1/2009,30\nnever-ever,5");
    wizard.RunUnattended(SourceKind::Delimited);
    wizard.CheckFirstRow();
    ASSERT_EQ(target.statements.size(), 2U);
    EXPECT_EQ(
        target.statements[1],
        "INSERT INTO COMPS (SALEDATE,ORIGLISTDATE, DAYSONMARKET) VALUES (\"never-ever\",\"01/30/2009\", 5)");
}

TEST_F(CsvWizard, LoadDbButtonEndsTheDialogUnlessTheLowerPanelIsOpen) {
    wizard.Load();
    wizard.ReadSource("");
    wizard.LoadMap("L.map");
    wizard.btnShowAdvanced1_Click();
    EXPECT_EQ(wizard.Placement().height, 11580);
    wizard.btnLoadDB_Click();
    EXPECT_TRUE(wizard.pbLoadStatus.Visible());
    EXPECT_TRUE(wizard.Loaded());
    wizard.btnShowAdvanced2_Click();
    EXPECT_EQ(wizard.Placement().height, 7515);
    wizard.btnLoadDB_Click();
    EXPECT_FALSE(wizard.Loaded());
    EXPECT_EQ(target.statements.size(), 4U);
}

TEST_F(CsvWizard, LoadDbButtonWithoutMappingsSaysSoAndLoadsAllTheSame) {
    wizard.Load();
    wizard.ReadSource("");
    desktop.Expect(kNoMappings);
    wizard.btnLoadDB_Click();
    EXPECT_EQ(target.statements.size(), 2U);
    EXPECT_FALSE(wizard.Loaded());
}

TEST(SourceKindOf, GoesByTheExtensionInAnyCase) {
    EXPECT_EQ(SourceKindOf("a/L.csv"), SourceKind::Delimited);
    EXPECT_EQ(SourceKindOf("L.TXT"), SourceKind::Delimited);
    EXPECT_EQ(SourceKindOf("L.Xml"), SourceKind::Xml);
    EXPECT_EQ(SourceKindOf("L.mdb"), std::nullopt);
    EXPECT_EQ(SourceKindOf("csv"), std::nullopt);
}

}  // namespace
}  // namespace zenvora::importing
