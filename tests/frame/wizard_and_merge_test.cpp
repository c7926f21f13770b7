#include "import/csv_wizard.h"
#include "import/frm_merge_dbs.h"
#include "program_fixture.h"

/// The import wizard and the merge dialog as the main window brings them up.
namespace zenvora::frame {
namespace {

namespace fs = std::filesystem;
using controls::Form;
using Names = std::vector<std::string>;

class WizardAndMerge : public ProgramTest {
  protected:
    [[nodiscard]] Names Keys() {
        Names keys;
        for (int row = 0; row < Main().tdbgData.RowCount(); ++row)
            keys.push_back(Cell(row, 1));
        return keys;
    }
    /// Starts the program with "Create Map" checked on a source, and does this with the wizard.
    void StartWithWizard(const fs::path& source, const std::function<void(importing::frmCSVWizard&)>& user) {
        desktop->ExpectForm("frmSplash1", [](Form& form) {
            ControlOf<controls::CheckBox>(form, "cbShowDetailedMapping")
                .SetValue(controls::CheckBox::kChecked);
            PressOn(form, "cmdOK");
        });
        desktop->ExpectFile(source.string());
        desktop->ExpectForm("frmCSVWizard",
                            [&](Form& form) { user(dynamic_cast<importing::frmCSVWizard&>(form)); });
        desktop->ExpectForm("frmMain");
        Start();
    }
    static void Map(importing::frmCSVWizard& wizard, const std::string& source, const std::string& caption) {
        const auto select = [](controls::ListBox& list, const std::string& text) {
            for (int i = 0; i < list.ListCount(); ++i) {
                if (list.List(i) == text) list.SetListIndex(i);
            }
        };
        select(wizard.lbSourceFields, source);
        select(wizard.lbDestFields, caption);
        wizard.btnAddMapping.Click();
    }
    fs::path Source(const char* rows) {
        return folder.Write("LISTINGS.CSV", std::string("House,Listed,Asked,Town\n") + rows);
    }
    /// Merges a Databook into another one, by the menu of the main window.
    void Merge(const fs::path& source, const fs::path& destination) {
        desktop->ExpectForm("frmMergeDBs", [&](Form& form) {
            desktop->ExpectFile(source.string());
            PressOn(form, "cmdFileDialog", 0);
            desktop->ExpectFile(destination.string());
            PressOn(form, "cmdFileDialog", 2);
            PressOn(form, "cmdCopy");
            PressOn(form, "cmdOK");
        });
        Press("mnuFileItem", 3);
    }
    static void MapAndLoad(importing::frmCSVWizard& wizard) {
        Map(wizard, "House", "Address");
        Map(wizard, "Listed", "Original Listing Date");
        Map(wizard, "Asked", "Original Listing Price");
        Map(wizard, "Town", "City");
        wizard.btnLoadDB.Click();
    }
};

TEST_F(WizardAndMerge, CreateMapShowsTheWizardAndItsDatabookIsOpened) {
    StartWithWizard(Source("1 Elm St,1/5/2010,250000,Troy"), [&](importing::frmCSVWizard& wizard) {
        EXPECT_EQ(fs::path(wizard.dlgMaps.directory), driveC / "ZVR/DATA");
        MapAndLoad(wizard);
        EXPECT_FALSE(wizard.Loaded());
    });
    EXPECT_TRUE(started);
    EXPECT_EQ(Keys(), Names{"1 Elm St"});
    EXPECT_TRUE(fs::exists(driveC / "ZVR/DATA/LISTINGS.mdb"));
    for (const auto& entry : fs::directory_iterator(driveC / "ZVR/DATA"))
        EXPECT_EQ(entry.path().string().find(".part"), std::string::npos) << entry.path();
}

TEST_F(WizardAndMerge, AMapMadeByHandAndSavedGivesTheSameDatabookUnattended) {
    const fs::path source = Source("1 Elm St,1/5/2010,250000,Troy\n2 Oak St,2/5/2010,150000,Novi");
    StartWithWizard(source, [&](importing::frmCSVWizard& wizard) {
        Map(wizard, "House", "Address");
        Map(wizard, "Listed", "Original Listing Date");
        Map(wizard, "Asked", "Original Listing Price");
        Map(wizard, "Town", "City");
        desktop->ExpectFile((folder / "LISTINGS.map").string());
        wizard.btnSaveMappings.Click();
        wizard.btnLoadDB.Click();
    });
    const Names byHand = StoredFlags(driveC / "ZVR/DATA/LISTINGS.mdb");
    NewRun();
    StartWith(source);
    EXPECT_EQ(StoredFlags(driveC / "ZVR/DATA/LISTINGS.mdb"), byHand);
    EXPECT_EQ(Keys(), (Names{"1 Elm St", "2 Oak St"}));
}

TEST_F(WizardAndMerge, TheMapUsedLastIsOfferedInTheNextRun) {
    StartWithWizard(Source("1 Elm St,1/5/2010,250000,Troy"), MapAndLoad);
    NewRun();
    StartWithWizard(Source("2 Oak St,1/5/2010,250000,Troy"), [](importing::frmCSVWizard& wizard) {
        ASSERT_TRUE(wizard.btnLastMap.Enabled());
        wizard.btnLastMap.Click();
        EXPECT_EQ(wizard.lbMappings.ListCount(), 4);
        wizard.btnLoadDB.Click();
    });
    EXPECT_EQ(Keys(), Names{"2 Oak St"});
}

TEST_F(WizardAndMerge, TheMenuMergesIntoTheDatabookThatIsOpen) {
    const fs::path open = MakeDatabook("OPEN.MDB", {{.key = "1 ELM ST"}});
    const fs::path other = MakeDatabook("OTHER.MDB", {{.key = "2 O'HARA ST"}});
    StartWith(open);
    Merge(other, open);
    EXPECT_EQ(Keys(), (Names{"1 ELM ST", "2 O'HARA ST"}));
    EXPECT_TRUE(desktop->Done());
}

TEST_F(WizardAndMerge, RecordsMergedIntoTheOpenDatabookAreCheckedBeforeTheyCount) {
    const fs::path open = MakeDatabook("OPEN.MDB", {{.key = "1 ELM ST"}});
    // Never checked: valid by its mark, and in truth without the list price that every record needs.
    const fs::path other =
        MakeDatabook("OTHER.MDB", {{.key = "2 OAK ST", .origListPrice = 0}, {.key = "3 PINE ST"}});
    StartWith(open);
    Press("txtCalculate");
    Merge(other, open);
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  2/3");
    EXPECT_EQ(Main().tdgViewer.Tab(), 0);
}

TEST_F(WizardAndMerge, MergedRecordsPastTheMostThatAreCheckedAtOnceWaitForTheUser) {
    const fs::path open = MakeLargeDatabook("OPEN.MDB", 500);
    const fs::path other = MakeDatabook("OTHER.MDB", {{.key = "2 OAK ST"}});
    StartWith(open);
    desktop->Expect("Please click the 'Check for Validity' button before doing your calculations.");
    Merge(other, open);
    EXPECT_TRUE(Main().cmdChkValidity.Visible());
    EXPECT_FALSE(Main().tdgViewer.TabEnabled(1));
    EXPECT_TRUE(desktop->Done());
}

TEST_F(WizardAndMerge, AMergeIntoAnotherDatabookLeavesTheOpenOneAsItIs) {
    const fs::path open = MakeLargeDatabook("OPEN.MDB", 501);
    const fs::path other = MakeDatabook("OTHER.MDB", {{.key = "2 OAK ST"}});
    desktop->ExpectAny();
    StartWith(open);
    desktop->ExpectAny(controls::Answer::Yes);
    Press("cmdChkValidity");
    Merge(open, other);
    EXPECT_FALSE(Main().cmdChkValidity.Visible());
    EXPECT_TRUE(Main().tdgViewer.TabEnabled(1));
    EXPECT_TRUE(desktop->Done());
}

}  // namespace
}  // namespace zenvora::frame
