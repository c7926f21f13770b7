#include <algorithm>
#include <gtest/gtest.h>

#include "common/error_rule.h"
#include "databook/selection.h"
#include "databook/template.h"
#include "import/csv_wizard.h"
#include "import/remembered_maps.h"
#include "platform/ado/adodc.h"
#include "platform/files/whole_file.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

namespace zenvora::importing {
namespace {

namespace fs = std::filesystem;
using Rows = std::vector<std::string>;

/// The wizard as a dialog over a source and a new Databook in a folder of the test.
class WizardForm : public testing::Test {
  protected:
    WizardForm() {
        databook::CreateTemplate(folder_ / "L.mdb", clock_.Now());
        wizard_.CSVFilename = (folder_ / "L.CSV").string();
        wizard_.CSVMDBFilename = (folder_ / "L.mdb").string();
        wizard_.CSVFiledate = clock_.Now();
        wizard_.MapsFolder = folder_.Path().string();
        Source("No,Street,Sold,Price,City\n12,Oak St,3/1/2009,\"$250,000\",Troy\n14,Elm St,,199900,Novi\n");
    }

    void Source(const std::string& text) { folder_.Write("L.CSV", text); }
    /// Shows the dialog as a view does.
    void Show() { Show(wizard_); }
    void Show(frmCSVWizard& wizard) {
        desktop_.ExpectForm("frmCSVWizard");
        wizard.Show(controls::Modality::Modeless);
    }
    static Rows Items(const controls::ListControl& list) {
        Rows items;
        for (int i = 0; i < list.ListCount(); ++i)
            items.push_back(list.List(i));
        return items;
    }
    void Press(const char* name) {
        auto* const button = dynamic_cast<controls::Clickable*>(wizard_.Find(name));
        ASSERT_NE(button, nullptr) << name;
        button->Click();
    }
    static void Select(controls::ListBox& list, const Rows& texts) {
        list.SetListIndex(-1);
        for (int i = 0; i < list.ListCount(); ++i) {
            if (std::find(texts.begin(), texts.end(), list.List(i)) != texts.end()) list.SetSelected(i, true);
        }
    }
    void MapByHand(const std::string& source, const std::string& destination) {
        Select(wizard_.lbSourceFields, {source});
        Select(wizard_.lbDestFields, {destination});
        Press("btnAddMapping");
    }
    /// "KEY|CITY|PRICE" of every record in the Databook.
    Rows Stored() {
        ado::Adodc control(pool_, clock_);
        control.Connectionstring = databook::OneShotConnectionString((folder_ / "L.mdb").string());
        databook::AdoSelect(control, "COMPS", "CENTRALKEY, CITY, SELLINGPR", databook::kKeyOrder);
        Rows records;
        for (ado::Recordset& set = control.Recordset(); !set.Eof(); set.MoveNext())
            records.push_back(set.Text(0) + "|" + set.Text(1) + "|" + set.Text(2));
        return records;
    }

    testing_support::TempFolder folder_;
    shell::FixedClock clock_{40359};  // 6/30/2010
    ado::DatabasePool pool_;
    testing_support::ScriptedDesktop desktop_;
    common::Session session_{desktop_, clock_, pool_, {}, "COMPS", 0};
    AdoLoadTarget target_{pool_, clock_};
    frmCSVWizard wizard_{session_, target_};
};

TEST_F(WizardForm, HasItsControlsByTheirNames) {
    EXPECT_EQ(wizard_.Name(), "frmCSVWizard");
    EXPECT_EQ(wizard_.Caption(), "CSV Load Wizard");
    for (const auto& [name, caption] :
         std::vector<std::pair<const char*, const char*>>{{"cbHeaderRow", "Header Row"},
                                                          {"btnAddMapping", "Add Map Item"},
                                                          {"btnRemoveMapItem", "Remove Item"},
                                                          {"btnReset", "Reset Map"},
                                                          {"btnLoadMappings", "Load Map"},
                                                          {"btnSaveMappings", "Save Map"},
                                                          {"btnLoadDB", "Load DB"},
                                                          {"btnCancel", "Cancel"},
                                                          {"btnClear", "Clear"},
                                                          {"btnSuggestMap", "Suggest Map"},
                                                          {"btnJoinFields", "Join Fields"}}) {
        auto* const control = dynamic_cast<controls::CaptionControl*>(wizard_.Find(name));
        ASSERT_NE(control, nullptr) << name;
        EXPECT_EQ(control->Caption(), caption);
    }
    for (const char* name : {"DataGridView1", "lbSourceFields", "lbDestFields", "lbMappings", "lbScratch",
                             "ListBox1", "pbLoadStatus", "btnShowAdvanced1", "btnShowAdvanced2"})
        EXPECT_NE(wizard_.Find(name), nullptr) << name;
    EXPECT_EQ(wizard_.cbHeaderRow.Value(), controls::CheckBox::kChecked);
    EXPECT_FALSE(wizard_.lbScratch.Visible());
    EXPECT_FALSE(wizard_.pbLoadStatus.Visible());
}

TEST_F(WizardForm, ReadsTheSourceWheneverItIsActivated) {
    Show();
    EXPECT_EQ(Items(wizard_.lbSourceFields), (Rows{"Field 0", "No", "Street", "Sold", "Price", "City"}));
    EXPECT_EQ(wizard_.lbDestFields.ListCount(), 13);
    EXPECT_EQ(wizard_.gridSource.RowCount(), 3);  // the line behind the last line break is one
    EXPECT_EQ(wizard_.gridSource.Columns()[2].caption, "Street");
    EXPECT_EQ(wizard_.gridSource.Value(1, 2), "Elm St");
    EXPECT_EQ(wizard_.dlgMaps.directory, folder_.Path().string());
    // The check box works when the dialog is activated anew, and mappings stay.
    MapByHand("City", "City");
    wizard_.cbHeaderRow.SetValue(controls::CheckBox::kUnchecked);
    EXPECT_EQ(wizard_.gridSource.RowCount(), 3);
    wizard_.Activate();
    EXPECT_EQ(wizard_.gridSource.RowCount(), 4);
    EXPECT_EQ(wizard_.lbSourceFields.List(0), "Field  1");
    EXPECT_EQ(Items(wizard_.lbMappings), Rows{"City <-> City"});
}

TEST_F(WizardForm, TakesTheXmlParserForAFolderWithXmlInItsName) {
    wizard_.CSVFilename = folder_.Write("a.xml.d/L.csv", "<City>Troy</City>\n").string();
    Show();
    EXPECT_EQ(Items(wizard_.lbSourceFields), Rows{"City"});
}

TEST_F(WizardForm, TakesTheLastSelectedFieldOfSeveral) {
    Show();
    Select(wizard_.lbSourceFields, {"No", "City"});
    Select(wizard_.lbDestFields, {"City"});
    Press("btnAddMapping");
    EXPECT_EQ(Items(wizard_.lbMappings), Rows{"City <-> City"});
}

TEST_F(WizardForm, CancelEndsTheProgram) {
    EXPECT_THROW(Press("btnCancel"), common::ProgramEnds);
}

TEST_F(WizardForm, OpensAndClosesItsLowerPanel) {
    EXPECT_EQ(wizard_.Placement().height, 7515);
    EXPECT_FALSE(wizard_.btnShowAdvanced2.Visible());
    Press("btnShowAdvanced1");
    EXPECT_EQ(wizard_.Placement().height, 11580);
    EXPECT_FALSE(wizard_.btnShowAdvanced1.Visible());
    EXPECT_TRUE(wizard_.fraAdvanced.Visible());
    Press("btnShowAdvanced2");
    EXPECT_EQ(wizard_.Placement().height, 7515);
    EXPECT_TRUE(wizard_.btnShowAdvanced1.Visible());
}

// ---- joined fields ----

TEST_F(WizardForm, JoinsTheSelectedFields) {
    Show();
    Select(wizard_.lbSourceFields, {"No", "Street"});
    Press("btnJoinFields");
    EXPECT_EQ(wizard_.lbSourceFields.List(6), "No + Street");
    EXPECT_EQ(wizard_.lbSourceFields.ListIndex(), 6);
    EXPECT_EQ(wizard_.gridSource.Columns()[1].caption, "No + Street");
    EXPECT_EQ(wizard_.gridSource.Value(0, 1), "12 Oak St");
    MapByHand("No + Street", "Address");
    MapByHand("City", "City");
    Press("btnLoadDB");
    EXPECT_EQ(Stored(), (Rows{"12 Oak St|Troy|", "14 Elm St|Novi|"}));
    // A joined field outlives a second look at the source.
    EXPECT_FALSE(wizard_.Loaded());
    Show();
    EXPECT_EQ(wizard_.gridSource.Columns()[1].caption, "No + Street");
}

TEST_F(WizardForm, SaysWhyFieldsCannotBeJoined) {
    Show();
    desktop_.Expect(
        "To Join fields, you must select two or more Source Fields and THEN press the Join Fields Button");
    Select(wizard_.lbSourceFields, {"No"});
    Press("btnJoinFields");
    desktop_.ExpectAny();
    Select(wizard_.lbSourceFields, {"Field 0", "No"});
    Press("btnJoinFields");
    EXPECT_EQ(wizard_.lbSourceFields.ListCount(), 6);
}

TEST_F(WizardForm, FindsTheJoinedFieldsOfAMapFile) {
    wizard_.g_MapFileName = folder_.Write("L.map", "No + Street <-> Address\r\nCity <-> City\r\n").string();
    Show();
    Press("btnLoadMappings");
    EXPECT_EQ(wizard_.lbSourceFields.List(6), "No + Street");
    Press("btnLoadDB");
    EXPECT_EQ(Stored(), (Rows{"12 Oak St|Troy|", "14 Elm St|Novi|"}));
}

TEST_F(WizardForm, LoadsJoinedFieldsUnattended) {
    wizard_.g_MapFileName =
        folder_.Write("L.map", "No + Street <-> Address\r\nNo + Lane <-> Zip\r\nCity <-> City\r\n").string();
    wizard_.RunUnattended(SourceKind::Delimited);
    EXPECT_EQ(Stored(), (Rows{"12 Oak St|Troy|", "14 Elm St|Novi|"}));  // a part is missing: maps nothing
}

TEST_F(WizardForm, SavesAndLoadsTheSameMap) {
    Show();
    Select(wizard_.lbSourceFields, {"No", "Street"});
    Press("btnJoinFields");
    MapByHand("No + Street", "Address");
    MapByHand("Price", "Selling Price");
    desktop_.ExpectFile((folder_ / "S.map").string());
    Press("btnSaveMappings");
    EXPECT_EQ(folder_.Read("S.map"), "No + Street <-> Address\r\nPrice <-> Selling Price\r\n");
    const Rows rows = Items(wizard_.lbMappings);
    Press("btnReset");
    EXPECT_EQ(wizard_.lbMappings.ListCount(), 0);
    wizard_.g_MapFileName = (folder_ / "S.map").string();
    Press("btnLoadMappings");
    EXPECT_EQ(Items(wizard_.lbMappings), rows);
    EXPECT_EQ(wizard_.lbDestFields.ListCount(), 13);  // a loaded map reduces no list
}

// ---- suggestions ----

TEST_F(WizardForm, SuggestsMappingsBesideTheUsersOwn) {
    Source("Street Number,Street Name,Sold Date,Sold Price,Town\n12,Oak St,3/1/2009,250000,Troy\n");
    Show();
    MapByHand("Town", "Zip");
    Press("btnSuggestMap");
    EXPECT_EQ(Items(wizard_.lbMappings), (Rows{"Town <-> Zip", "Street Number + Street Name <-> Address",
                                               "Sold Date <-> Sale Date", "Sold Price <-> Selling Price"}));
    EXPECT_EQ(Items(wizard_.lbSourceFields), (Rows{"Field 0", "Street Number", "Street Name"}));
    EXPECT_EQ(wizard_.lbDestFields.ListCount(), 9);
    EXPECT_GT(wizard_.lbNotes.ListCount(), 0);
    Press("btnLoadDB");
    EXPECT_EQ(Stored(), Rows{"12 Oak St||250000"});
}

TEST_F(WizardForm, SaysWhenItHasNothingToSuggest) {
    Source("a,b\n1,2\n");
    Show();
    desktop_.Expect("No further field of the source is known by its name. Map the others by hand.");
    Press("btnSuggestMap");
    EXPECT_EQ(wizard_.lbMappings.ListCount(), 0);
}

// ---- the preview ----

TEST_F(WizardForm, ShowsWhatTheFirstRowsWillBecomeAndWritesNothing) {
    Source(
        "A,Sold,Price,City\n12 Oak St,3/1/09,\"$250,000\",Troy\n12 Oak St,,5,Novi\n14 Elm,soon/,,Novi\n"
        "16 Elm,,N/A,Novi\n,,,\n");
    Show();
    MapByHand("A", "Address");
    MapByHand("Sold", "Sale Date");
    MapByHand("Price", "Selling Price");
    MapByHand("City", "City");
    const std::string before = files::ReadWholeFile(folder_ / "L.mdb");
    Press("btnPreview");
    EXPECT_TRUE(wizard_.fraAdvanced.Visible());
    const controls::Grid& grid = wizard_.gridPreview;
    ASSERT_EQ(grid.RowCount(), 6);
    const auto cell = [&](int row, const char* caption) {
        for (int col = 0; col < static_cast<int>(grid.Columns().size()); ++col) {
            if (grid.Columns()[static_cast<std::size_t>(col)].caption == caption)
                return grid.Value(row, col).value_or("-");
        }
        return std::string("no such column");
    };
    const char* const kWhy = "Not Written Because";
    EXPECT_EQ(cell(0, "Row"), "1");
    EXPECT_EQ(cell(0, "Address"), "12 Oak St");
    EXPECT_EQ(cell(0, "Sale Date"), "3/1/2009");
    EXPECT_EQ(cell(0, "Selling Price"), "250000");
    EXPECT_EQ(cell(0, "Contract Date"), "");
    EXPECT_EQ(cell(0, kWhy), "");
    EXPECT_EQ(cell(1, kWhy), "duplicate key: 12 Oak St");
    EXPECT_EQ(cell(2, kWhy), "no date in \"Sale Date\": soon/");
    EXPECT_EQ(cell(3, kWhy), "no number in \"Selling Price\": N/A");
    EXPECT_EQ(cell(4, kWhy), "blank row");
    EXPECT_EQ(files::ReadWholeFile(folder_ / "L.mdb"), before);
    EXPECT_TRUE(Stored().empty());
    // And the load afterwards does what was shown.
    Press("btnLoadDB");
    EXPECT_EQ(Stored(), Rows{"12 Oak St|Troy|250000"});
}

TEST_F(WizardForm, ShowsTheRefusalOfEveryRowWithoutMappings) {
    Show();
    const std::vector<PreviewRow> rows = wizard_.Preview(1);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].refusal, "no field is mapped to a column of the source");
    EXPECT_EQ(wizard_.FieldName()[0].source, "");
}

TEST_F(WizardForm, LeavesTheMappingsAloneWhenNothingCanBeTried) {
    Show();
    MapByHand("Street", "Address");
    MapByHand("City", "City");
    fs::rename(folder_ / "L.mdb", folder_ / "away.mdb");
    EXPECT_THROW(Press("btnPreview"), Fault);
    EXPECT_EQ(wizard_.FieldName()[0].source, "");
    fs::rename(folder_ / "away.mdb", folder_ / "L.mdb");
    Press("btnPreview");
    EXPECT_EQ(wizard_.gridPreview.Value(0, 1), "Oak St");
}

TEST_F(WizardForm, TriesAgainOnceTheDatabookIsFree) {
    Show();
    MapByHand("Street", "Address");
    MapByHand("City", "City");
    {
        ado::Connection other(pool_, clock_);
        other.Open(databook::OneShotConnectionString((folder_ / "L.mdb").string()));
        other.Database().Begin();
        EXPECT_THROW(Press("btnPreview"), Fault);
        other.Database().Rollback();
    }
    Press("btnPreview");
    EXPECT_EQ(wizard_.gridPreview.Value(0, 1), "Oak St");
    EXPECT_TRUE(Stored().empty());
}

// ---- after a load ----

TEST_F(WizardForm, SumsTheLoadUpWithItsReasons) {
    Source("A,Price,City\n1 Oak,5,x\n1 Oak,6,x\n2 Oak,N/A,x\n3 Oak,none,x\n");
    Show();
    MapByHand("A", "Address");
    MapByHand("Price", "Selling Price");
    MapByHand("City", "City");
    Press("btnLoadDB");
    EXPECT_EQ(wizard_.Summary(),
              "5 rows: 1 written, 4 refused\n2 x no number in \"Selling Price\" (rows 3, 4)\n"
              "1 x duplicate key (row 2)\n1 x blank row (row 5)");
}

TEST_F(WizardForm, SavesTheLog) {
    Show();
    desktop_.Expect("There is no log to save");
    Press("btnSaveLog");
    MapByHand("City", "City");
    Press("btnLoadDB");
    desktop_.ExpectFile((folder_ / "L.log").string());
    Press("btnSaveLog");
    EXPECT_TRUE(folder_.Read("L.log").starts_with("\r\nRow  1\r\n\r\nCITY loaded with Troy\r\n"));
    EXPECT_EQ(desktop_.dialogs[0].title, "Save Log");
    EXPECT_TRUE(desktop_.dialogs[0].forSaving);
    desktop_.ExpectFile("");
    Press("btnSaveLog");
    Press("btnClear");
    EXPECT_EQ(wizard_.ListBox1.ListCount(), 0);
}

TEST_F(WizardForm, LoadsOnceMoreAndHasItsKeysRefused) {
    Show();
    Press("btnShowAdvanced1");
    MapByHand("Street", "Address");
    MapByHand("City", "City");
    Press("btnLoadDB");
    EXPECT_EQ(wizard_.Outcome().written, 2);
    Press("btnLoadDB");
    EXPECT_EQ(wizard_.Outcome().written, 0);
    EXPECT_EQ(Stored().size(), 2U);
}

// ---- remembered maps ----

TEST_F(WizardForm, OffersTheMapUsedLastForTheSameLayout) {
    Show();
    EXPECT_FALSE(wizard_.btnLastMap.Enabled());
    Select(wizard_.lbSourceFields, {"No", "Street"});
    Press("btnJoinFields");
    MapByHand("No + Street", "Address");
    MapByHand("City", "City");
    Press("btnLoadDB");

    // Another export of the same system, otherwise separated.
    Source("No|Street|Sold|Price|City\n99|Pine St|||Troy\n");
    frmCSVWizard next(session_, target_);
    next.CSVFilename = wizard_.CSVFilename;
    next.CSVMDBFilename = wizard_.CSVMDBFilename;
    next.MapsFolder = wizard_.MapsFolder;
    Show(next);
    EXPECT_EQ(next.lbMappings.ListCount(), 0);  // offered, not taken
    ASSERT_TRUE(next.btnLastMap.Enabled());
    next.btnLastMap.Click();
    EXPECT_EQ(Items(next.lbMappings), (Rows{"No + Street <-> Address", "City <-> City"}));
    next.btnLoadDB.Click();
    EXPECT_EQ(Stored().size(), 3U);

    Source("No;Street;Sold;Price;Town\n99;Pine St;;;Troy\n");
    Show(next);
    EXPECT_FALSE(next.btnLastMap.Enabled());
}

TEST_F(WizardForm, RemembersNoMapThatWroteNothing) {
    Show();
    MapByHand("City", "City");
    Press("btnLoadDB");
    EXPECT_EQ(wizard_.Outcome().written, 0);
    EXPECT_FALSE(wizard_.LastMap());
}

TEST_F(WizardForm, LoadsAllTheSameWhereNoMapCanBeRemembered) {
    wizard_.MapsFolder = (folder_ / "missing").string();
    Show();
    MapByHand("Street", "Address");
    MapByHand("City", "City");
    Press("btnLoadDB");
    EXPECT_EQ(Stored().size(), 2U);
    EXPECT_FALSE(wizard_.LastMap());
}

TEST(RememberedMaps, KeepsOneMapForEachLayout) {
    testing_support::TempFolder folder;
    const RememberedMaps maps(folder.Path(), files::SystemDisk());
    EXPECT_FALSE(maps.Find("a\nb\n"));
    maps.Remember("a\nb\n", {"a <-> City"});
    maps.Remember("b\na\n", {"b <-> City"});
    maps.Remember("a\nb\n", {"a <-> Zip",
                             "Stra\xC3\x9F"
                             "e <-> Address"});
    EXPECT_EQ(maps.Find("a\nb\n"), (Rows{"a <-> Zip",
                                         "Stra\xC3\x9F"
                                         "e <-> Address"}));
    EXPECT_EQ(maps.Find("b\na\n"), Rows{"b <-> City"});
}

}  // namespace
}  // namespace zenvora::importing
