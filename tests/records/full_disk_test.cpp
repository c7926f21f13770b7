// The editor on a disk that is full for a while.

#include "support/full_disk.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "databook/template.h"
#include "records/edit_record.h"
#include "records/editor_fixture.h"
#include "records/small_main_form.h"
#include "support/recording_shell.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

namespace zenvora::records {
namespace {

class FullDisk : public testing::Test {
  protected:
    FullDisk() {
        std::filesystem::create_directories(driveC / "DATA");
        databook::CreateTemplate(driveC / "DATA/LISTINGS.mdb", clock.Now());
        main.EffectiveDate = clock.Now();
        main.txtBaseDate.SetText("6/30/2010");
        main.Load();
        main.ReopenRecordViews();
        ado::Recordset& records = main.adoDatabook.Recordset();
        records.AddNew();
        records.SetValue("CENTRALKEY", std::string("12 OAK ST"));
        records.Update();
    }

    void Edit(const std::function<void(User)>& user) {
        main.txtCentralKey.SetText("12 OAK ST");
        main.ReopenRecordViews();
        desktop.ExpectForm("frmEdit", [&](controls::Form& form) { user(User{form}); });
        EditRecord(application, main, "EDIT");
    }
    [[nodiscard]] std::string City() {
        main.ReopenRecordViews();
        return main.adoDatabook.Recordset().Text(main.adoDatabook.Recordset().FieldIndex("CITY"));
    }

    testing_support::TempFolder driveC;
    testing_support::RecordingShell machine;
    testing_support::ScriptedDesktop desktop;
    shell::FixedClock clock{40359};
    testing_support::FullDisk disk;
    ado::DatabasePool databooks{disk};
    common::Session session{.desktop = desktop,
                            .clock = clock,
                            .databooks = databooks,
                            .drives = files::DriveMap(driveC.Path()),
                            .machine = machine};
    SmallMainForm main{session};
    Application application{session, {}};
};

TEST_F(FullDisk, AsksOnceAndAfterAbortTheDialogStaysWithAllThatWasTyped) {
    Edit([&](User user) {
        user.Type("txtCity", "Troy");
        user.Type("txtOrigListDate", "3/5/09");
        disk.full = true;
        desktop.Expect("Disk full.\nError # 61 in module cmdOK.", controls::Answer::Abort);
        user.Press("cmdOK");
        ASSERT_TRUE(user.Edit().Loaded());
        EXPECT_EQ(user.Text("txtCity"), "Troy");
        EXPECT_EQ(user.Text("txtOrigListDate"), "3/5/09");
        EXPECT_EQ(City(), "");
        disk.full = false;
        user.Press("cmdOK");
        EXPECT_FALSE(user.Edit().Loaded());
    });
    EXPECT_EQ(City(), "Troy");
}

TEST_F(FullDisk, RetryStoresTheRecordOnceThereIsRoom) {
    Edit([&](User user) {
        user.Type("txtCity", "Troy");
        disk.fullFor = 2;
        desktop.ExpectAny(controls::Answer::Retry);
        desktop.ExpectAny(controls::Answer::Retry);
        user.Press("cmdOK");
        EXPECT_FALSE(user.Edit().Loaded());
    });
    EXPECT_EQ(City(), "Troy");
}

TEST_F(FullDisk, TheCloseBoxKeepsTheDialogOpenAfterAbort) {
    Edit([&](User user) {
        user.Type("txtCity", "Troy");
        disk.full = true;
        desktop.Expect("Disk full.\nError # 61 in module Form_QueryUnload.", controls::Answer::Abort);
        user.Edit().Close();
        ASSERT_TRUE(user.Edit().Loaded());
        EXPECT_EQ(user.Text("txtCity"), "Troy");
        disk.full = false;
    });
    EXPECT_EQ(City(), "Troy") << "closed again, with room";
}

TEST_F(FullDisk, ARecordThatCannotBeAddedIsToldInOneMessageAndNothingIsPending) {
    disk.full = true;
    main.txtCentralKey.SetText("14 Oak St");
    desktop.ExpectAny();
    EditRecord(application, main, "ADD");
    EXPECT_TRUE(desktop.shown.empty());
    EXPECT_EQ(desktop.messages.size(), 1U);
    EXPECT_EQ(main.adoDatabook.Recordset().Edit(), ado::EditMode::None);
    disk.full = false;
    EXPECT_EQ(main.adoDatabook.Recordset().RecordCount(), 1);
}

}  // namespace
}  // namespace zenvora::records
