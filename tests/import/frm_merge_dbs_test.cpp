#include "import/frm_merge_dbs.h"

#include <gtest/gtest.h>

#include "databook/selection.h"
#include "databook/template.h"
#include "platform/ado/connection.h"
#include "platform/fault.h"
#include "support/old_databook.h"
#include "support/test_session.h"

namespace zenvora::importing {
namespace {

namespace fs = std::filesystem;
using Records = std::vector<std::string>;

/// The merge dialog over Databooks A.MDB, B.MDB and C.MDB of the folder C:\DATA, of which C.MDB is open in
/// the main form.
class MergeForm : public testing::Test {
  protected:
    MergeForm() {
        fs::create_directory(Host("").parent_path());
        databook::CreateTemplate(folder_.driveC / "NEWDATA.MDB", folder_.clock.Now());
        for (const char* name : {"A.MDB", "B.MDB", "C.MDB"})
            databook::CreateTemplate(Host(name), folder_.clock.Now());
        folder_.session.settings.currentDirectory = "C:\\DATA\\";
        folder_.session.settings.currentFile = "C.MDB";
        open_.Connectionstring = databook::OneShotConnectionString("C:\\DATA\\C.MDB");
        databook::AdoSelect(open_, "COMPS", databook::kMainFieldList, databook::kKeyOrder);
        folder_.desktop.ExpectForm("frmMergeDBs");
        form_.Show(controls::Modality::Modeless);
    }

    [[nodiscard]] fs::path Host(const std::string& name) const {
        return folder_.driveC.Path() / "DATA" / name;
    }
    static std::string Text(const std::string& name) { return "C:\\DATA\\" + name; }
    void Add(const std::string& name, const std::string& key, const std::string& city) {
        ado::Connection connection(folder_.databooks, folder_.clock);
        connection.Open(databook::OneShotConnectionString(Host(name).string()));
        connection.Execute("INSERT INTO COMPS (CENTRALKEY,CITY) VALUES (\"" + key + "\",\"" + city + "\")");
    }
    /// Types a path and leaves the box.
    void Type(int index, const std::string& text) {
        form_.SetFocus(form_.txtFilename[index]);
        form_.txtFilename[index].SetText(text);
        form_.SetFocus(form_.cmdOK);
    }
    Records Stored(const std::string& name) {
        ado::Adodc control(folder_.databooks, folder_.clock);
        control.Connectionstring = databook::OneShotConnectionString(Host(name).string());
        databook::AdoSelect(control, "COMPS", "CENTRALKEY, CITY", databook::kKeyOrder);
        Records records;
        for (ado::Recordset& set = control.Recordset(); !set.Eof(); set.MoveNext())
            records.push_back(set.Text(0) + "|" + set.Text(1));
        return records;
    }

    testing_support::TestSession folder_;
    ado::Adodc open_{folder_.databooks, folder_.clock,
                     [this](std::string_view path) { return folder_.session.drives.HostPath(path); }};
    frmMergeDBs form_{folder_.session, open_, folder_.driveC / "NEWDATA.MDB"};
};

TEST_F(MergeForm, HasItsControlsByTheirNames) {
    EXPECT_EQ(form_.Caption(), "Merge Databook(s)");
    EXPECT_EQ(form_.fraOverwrite.Caption(), "If Comp/Listing exists already?");
    EXPECT_EQ(form_.optOverwrite[0].Caption(), "Overwrite all");
    EXPECT_EQ(form_.optOverwrite[1].Caption(), "Skip all");
    EXPECT_EQ(form_.optOverwrite[2].Caption(), "Ask first");
    EXPECT_EQ(form_.cmdRefreshGrids.Caption(), "&Refresh Grids");
    EXPECT_EQ(form_.cmdCopy.Caption(), "&Merge");
    EXPECT_EQ(form_.cmdOK.Caption(), "&OK");
    EXPECT_EQ(form_.optSource1[0].Caption(), "Selected");
    EXPECT_EQ(form_.optSource2[1].Caption(), "All");
    for (const char* name : {"txtFilename", "cmdFileDialog", "tdbgData"}) {
        for (int i = 0; i < 3; ++i)
            EXPECT_NE(form_.Find(name, i), nullptr) << name << i;
    }
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(form_.txtFilename[i].Text(), "");
}

TEST_F(MergeForm, CanMergeWithADestinationAndOneSource) {
    EXPECT_FALSE(form_.cmdCopy.Enabled());
    form_.txtFilename[2].SetText("x");
    EXPECT_FALSE(form_.cmdCopy.Enabled());
    form_.txtFilename[1].SetText("y");
    EXPECT_TRUE(form_.cmdCopy.Enabled());
    form_.txtFilename[1].SetText("");
    EXPECT_FALSE(form_.cmdCopy.Enabled());
    form_.txtFilename[0].SetText("y");
    EXPECT_TRUE(form_.cmdCopy.Enabled());
}

TEST_F(MergeForm, ShowsTheRecordsOfATypedPathInCapitals) {
    Add("A.MDB", "1 A ST", "Troy");
    Type(0, "  c:\\data\\a.mdb ");
    EXPECT_EQ(form_.txtFilename[0].Text(), Text("A.MDB"));
    EXPECT_EQ(form_.tdbgData[0].RowCount(), 1);
    EXPECT_EQ(form_.tdbgData[0].Columns()[analysis::kGridKey].caption, "Address");
    EXPECT_EQ(form_.tdbgData[0].Value(0, analysis::kGridKey), "1 A ST");
}

TEST_F(MergeForm, GoesBlankForATypedPathThatDoesNotExist) {
    Add("A.MDB", "1 A ST", "Troy");
    Type(0, Text("A.MDB"));
    Type(2, Text("B.MDB"));
    EXPECT_TRUE(form_.cmdCopy.Enabled());
    Type(0, Text("NOWHERE.MDB"));
    EXPECT_EQ(form_.tdbgData[0].RowCount(), 0);
    EXPECT_FALSE(form_.adoSQL(0).HasRecordset());
    EXPECT_EQ(form_.adoDatabook(0).RecordSource, "SELECT SELECTED FROM COMPS WHERE SELECTED ='9'");
    EXPECT_TRUE(form_.cmdCopy.Enabled());
    Type(0, "");
    EXPECT_FALSE(form_.cmdCopy.Enabled());
    Type(0, Text("A.MDB"));
    EXPECT_EQ(form_.tdbgData[0].RowCount(), 1);
}

// ---- the file dialogs ----

TEST_F(MergeForm, OffersTheFolderOfTheOpenDatabookFirst) {
    folder_.desktop.ExpectFile(Host("A.MDB").string());
    form_.cmdFileDialog[1].Click();
    ASSERT_EQ(folder_.desktop.dialogs.size(), 1U);
    EXPECT_EQ(folder_.desktop.dialogs[0].title, "Source 2");
    EXPECT_EQ(folder_.desktop.dialogs[0].filter, "Databooks (*.mdb)|*.mdb");
    EXPECT_EQ(fs::path(folder_.desktop.dialogs[0].directory) / "", Host(""));
    EXPECT_EQ(folder_.desktop.dialogs[0].fileName, "C.MDB");
    EXPECT_TRUE(form_.adoSQL(1).HasRecordset());
    folder_.desktop.ExpectFile("");
    form_.cmdFileDialog[1].Click();
    EXPECT_EQ(folder_.desktop.dialogs[1].fileName, "A.MDB");
}

TEST_F(MergeForm, PutsThePathBackWhenTheDialogIsCancelled) {
    Type(0, Text("A.MDB"));
    form_.SetFocus(form_.txtFilename[0]);
    folder_.desktop.ExpectFile("");
    form_.cmdFileDialog[0].Click();
    EXPECT_EQ(form_.txtFilename[0].Text(), Text("A.MDB"));
    folder_.desktop.ExpectFile("");
    form_.cmdFileDialog[1].Click();
    EXPECT_EQ(form_.txtFilename[1].Text(), "");
}

TEST_F(MergeForm, AsksAgainForASourceThatDoesNotExist) {
    folder_.desktop.ExpectFile(Host("NO.MDB").string());
    folder_.desktop.Expect("Please choose an existing database to copy from.", controls::Answer::Ok);
    folder_.desktop.ExpectFile(Host("NO.MDB").string());
    folder_.desktop.Expect("Please choose an existing database to copy from.", controls::Answer::Cancel);
    form_.cmdFileDialog[0].Click();
    EXPECT_EQ(folder_.desktop.messages[0].title, "File Does Not Exist");
    EXPECT_EQ(folder_.desktop.messages[0].icon, controls::Icon::Critical);
    EXPECT_EQ(folder_.desktop.messages[0].buttons, controls::Buttons::OkCancel);
    EXPECT_FALSE(form_.adoSQL(0).HasRecordset());
}

TEST_F(MergeForm, MakesADestinationThatDoesNotExist) {
    folder_.desktop.ExpectFile(Host("NEW.MDB").string());
    form_.cmdFileDialog[2].Click();
    EXPECT_TRUE(fs::exists(Host("NEW.MDB")));
    EXPECT_TRUE(form_.adoSQL(2).HasRecordset());
    EXPECT_EQ(folder_.desktop.dialogs[0].title, "Destination");
}

// ---- the merge ----

TEST_F(MergeForm, MergesSourceOneAndThenSourceTwo) {
    Add("A.MDB", "1 O'HARA ST", "A");
    Add("A.MDB", "2 ST", "A");
    Add("B.MDB", "2 ST", "B");
    Type(0, Text("A.MDB"));
    Type(1, Text("B.MDB"));
    Type(2, Text("C.MDB"));
    form_.optOverwrite[0].Select();
    form_.cmdCopy.Click();
    EXPECT_EQ(Stored("C.MDB"), (Records{"1 O'HARA ST|A", "2 ST|B"}));
    EXPECT_EQ(form_.lblResult.Caption(), "2 records added, 1 overwritten, 0 skipped");
    EXPECT_EQ(form_.tdbgData[2].RowCount(), 2);
    EXPECT_EQ(form_.MergedInto(), (std::vector<std::string>{Text("C.MDB"), Text("C.MDB")}));
    form_.optOverwrite[1].Select();
    form_.cmdCopy.Click();
    EXPECT_EQ(form_.lblResult.Caption(), "0 records added, 0 overwritten, 3 skipped");
}

TEST_F(MergeForm, AsksFirstUnlessToldOtherwise) {
    Add("A.MDB", "1 ST", "A");
    Add("A.MDB", "2 ST", "A");
    Add("C.MDB", "1 ST", "C");
    Type(0, Text("A.MDB"));
    Type(2, Text("C.MDB"));
    folder_.desktop.ExpectAny(controls::Answer::No);
    form_.cmdCopy.Click();
    EXPECT_EQ(Stored("C.MDB"), (Records{"1 ST|C", "2 ST|A"}));
}

TEST_F(MergeForm, DoesNothingWithEmptySourcesButRefreshTheGrids) {
    Type(0, Text("A.MDB"));
    Type(1, Text("B.MDB"));
    Type(2, Text("C.MDB"));
    Add("C.MDB", "1 ST", "C");
    EXPECT_EQ(form_.tdbgData[2].RowCount(), 0);
    form_.cmdCopy.Click();
    EXPECT_EQ(Stored("C.MDB"), Records{"1 ST|C"});
    EXPECT_EQ(form_.tdbgData[2].RowCount(), 1);
}

TEST_F(MergeForm, FindsEveryRecordOfADatabookMergedIntoItself) {
    Add("A.MDB", "1 ST", "A");
    Type(0, Text("A.MDB"));
    Type(2, Text("A.MDB"));
    form_.optOverwrite[0].Select();
    form_.cmdCopy.Click();
    EXPECT_EQ(Stored("A.MDB"), Records{"1 ST|A"});
    EXPECT_EQ(form_.lblResult.Caption(), "0 records added, 1 overwritten, 0 skipped");
}

TEST_F(MergeForm, BringsAnOldDatabookUpToDateWhenItIsChosen) {
    testing_support::MakeOldDatabook(Host("OLD.MDB"), {{.key = "1 ST", .otherArea1 = "100000"}});
    folder_.desktop.Expect("New Listing Fields will be added to your database for compatibility.");
    folder_.desktop.Expect("The New Listing Fields were added successfully.");
    Type(0, Text("OLD.MDB"));
    EXPECT_TRUE(fs::exists(Host("OLD.MDB.bak")));
    EXPECT_EQ(form_.tdbgData[0].Value(0, 3), "100000");
}

TEST_F(MergeForm, SaysHowFarAMergeCameThatBrokeOff) {
    Add("A.MDB", "1 ST", "A");
    Type(0, Text("A.MDB"));
    Type(2, Text("C.MDB"));
    {
        ado::Connection connection(folder_.databooks, folder_.clock);
        connection.Open(databook::OneShotConnectionString(Host("A.MDB").string()));
        connection.Execute("ALTER TABLE COMPS ADD REMARKS TEXT(20)");
        connection.Execute("INSERT INTO COMPS (CENTRALKEY,REMARKS) VALUES ('2 ST','x')");
    }
    try {
        form_.cmdCopy.Click();
        FAIL() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.place.file, Text("A.MDB"));
        EXPECT_EQ(fault.place.record, 2);
        EXPECT_NE(fault.description.find("1 record added, 0 overwritten, 0 skipped"), std::string::npos);
    }
    EXPECT_EQ(form_.lblResult.Caption(), "1 record added, 0 overwritten, 0 skipped");
    EXPECT_EQ(Stored("C.MDB"), Records{"1 ST|A"});
    EXPECT_FALSE(folder_.desktop.hourglass);
}

TEST_F(MergeForm, WantsADestinationThatIsThere) {
    Type(0, Text("A.MDB"));
    Type(2, Text("NOWHERE.MDB"));
    folder_.desktop.ExpectAny();
    form_.cmdCopy.Click();
    EXPECT_TRUE(form_.MergedInto().empty());
}

TEST_F(MergeForm, WritesAPendingEditWhenItCloses) {
    Add("A.MDB", "1 ST", "A");
    Type(0, Text("A.MDB"));
    form_.adoSQL(0).Recordset().SetValue("CITY", jet::Value{std::string("Novi")});
    form_.cmdOK.Click();
    EXPECT_FALSE(form_.Loaded());
    EXPECT_EQ(Stored("A.MDB"), Records{"1 ST|Novi"});
}

}  // namespace
}  // namespace zenvora::importing
