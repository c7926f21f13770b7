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
    desktop->ExpectForm("frmMergeDBs", [&](Form& form) {
        desktop->ExpectFile(other.string());
        PressOn(form, "cmdFileDialog", 0);
        desktop->ExpectFile(open.string());
        PressOn(form, "cmdFileDialog", 2);
        PressOn(form, "cmdCopy");
        PressOn(form, "cmdOK");
    });
    Press("mnuFileItem", 3);
    EXPECT_EQ(Keys(), (Names{"1 ELM ST", "2 O'HARA ST"}));
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  1/2");
    EXPECT_TRUE(desktop->Done());
}

}  // namespace
}  // namespace zenvora::frame
