#include "records/edit_record.h"

#include <string>
#include <vector>

#include "records/editor_fixture.h"

namespace zenvora::records {
namespace {

using Asked = std::vector<std::string>;
using EditRecordTest = EditorTest;

/// What the user types for a listing in order.
void TypeListing(User user) {
    user.Type("txtOrigListDate", "3/15/2010");
    user.Type("txtOrigListPrice", "259900");
}

TEST_F(EditRecordTest, AddingThenCancelLeavesARecordOfKeyAndAddressAlone) {
    Add(" 12 Oak St ", [](User user) {
        TypeListing(user);
        user.Type("txtCity", "Troy");
        user.Press("cmdCancel");
    });
    EXPECT_EQ(Keys(), Asked{"12 OAK ST"});
    EXPECT_EQ(Stored("12 OAK ST", "ADDRESS"), " 12 Oak St ");
    for (const char* column : {"CITY", "ST", "ZIP", "SELLINGPR", "PRICEFLD", "SALEDATE", "SALEFLD"})
        EXPECT_EQ(Stored("12 OAK ST", column), "(null)") << column;
    EXPECT_EQ(Stored("12 OAK ST", "ORIGLISTDATE"), "1/1/1900");
    EXPECT_EQ(Stored("12 OAK ST", "ORIGLISTPRICE"), "0");
    EXPECT_EQ(Stored("12 OAK ST", "SELECTED"), "0") << "the validity run has found it invalid";
}

TEST_F(EditRecordTest, AddingThenOkWithAnEmptyFormStoresTheFormsOfMissingValues) {
    Add("12 Oak St", [](User user) { user.Press("cmdOK"); });
    for (const char* column : {"ORIGLISTDATE", "LASTLISTDATE", "CONTRACTDATE", "LISTCANCELDATE", "SALEDATE"})
        EXPECT_EQ(Stored("12 OAK ST", column), "1/1/1900") << column;
    for (const char* column : {"ORIGLISTPRICE", "LASTLISTPRICE", "SELLINGPR"})
        EXPECT_EQ(Stored("12 OAK ST", column), "0") << column;
    EXPECT_EQ(Stored("12 OAK ST", "SALEFLD"), "(null)");
    EXPECT_EQ(Stored("12 OAK ST", "PRICEFLD"), "(null)");
    EXPECT_EQ(Stored("12 OAK ST", "ADDRESS"), "12 Oak St");
}

TEST_F(EditRecordTest, AnAddBringsTheMainFormUpToDateInOrderAndCalculates) {
    Add("12 Oak St", [](User user) {
        TypeListing(user);
        user.Press("cmdOK");
    });
    // In the dialog: the date that it loads with is shown and checked. Then its unload, the calculation, and
    // what every mode ends with.
    EXPECT_EQ(main.asked,
              (Asked{"reopen", "counts", "reopen", "calculate", "reopen", "counts", "counts", "buttons"}));
    EXPECT_TRUE(main.txtCentralKey.HasFocus());
    EXPECT_EQ(Stored("12 OAK ST", "SELECTED"), "1") << "invalid while it was empty, and sound now";
    EXPECT_EQ(Stored("12 OAK ST", "LASTLISTPRICE"), "259900") << "filled by the run";
    EXPECT_EQ(session.validRecords, 1);
}

TEST_F(EditRecordTest, AnEditChecksAndDoesNotCalculate) {
    Store("12 OAK ST", {{"ADDRESS", std::string("12 Oak St")}});
    Edit("12 oak st", [&](User user) {
        EXPECT_EQ(user.Edit().Caption(), "Edit");
        EXPECT_EQ(user.Text("txtStreet"), "12 Oak St");
        TypeListing(user);
        user.Press("cmdOK");
    });
    EXPECT_EQ(main.asked,
              (Asked{"counts", "reopen", "key box 12 OAK ST", "reopen", "counts", "counts", "buttons"}));
    EXPECT_TRUE(main.txtCentralKey.HasFocus());
    EXPECT_EQ(Stored("12 OAK ST", "ORIGLISTDATE"), "3/15/2010");
}

TEST_F(EditRecordTest, RenameShowsNoDialogAndBringsTheMainFormUpToDate) {
    Store("12 OAK ST");
    main.txtCentralKey.SetText(" 12 Oak St");
    main.asked.clear();
    EditRecord(application, main, " rename ");
    EXPECT_EQ(main.CurrentKey, "12 OAK ST");
    EXPECT_EQ(main.asked, (Asked{"reopen", "counts", "counts", "buttons"}));
    EXPECT_TRUE(desktop.shown.empty());
    EXPECT_EQ(Stored("12 OAK ST", "SELECTED"), "0");
}

TEST_F(EditRecordTest, AnyOtherModeEdits) {
    Store("12 OAK ST");
    main.txtCentralKey.SetText("12 Oak St");
    desktop.ExpectForm("frmEdit", [](controls::Form& form) { User{form}.Press("cmdCancel"); });
    EditRecord(application, main, "whatever");
    EXPECT_EQ(desktop.shown, std::vector<std::string>{"frmEdit"});
}

TEST_F(EditRecordTest, TheFirstTwoDatesOfTheMainFormAreOfferedWhenThereAreTwo) {
    Store("12 OAK ST");
    main.cboBaseDate.AddItem("6/30/2010");
    Edit("12 OAK ST", [](User user) { EXPECT_EQ(user.Edit().cboBaseDate.ListCount(), 0); });
    main.cboBaseDate.AddItem("05/31/2010");
    main.cboBaseDate.AddItem("04/30/2010");
    Edit("12 OAK ST", [](User user) {
        ASSERT_EQ(user.Edit().cboBaseDate.ListCount(), 2);
        EXPECT_EQ(user.Edit().cboBaseDate.List(1), "05/31/2010");
    });
}

TEST_F(EditRecordTest, ARenamedStreetReachesTheKeyBox) {
    Store("12 OAK ST", {{"ADDRESS", std::string("12 Oak St")}});
    Store("14 OAK ST");
    Edit("12 OAK ST", [](User user) {
        user.Type("txtStreet", "16 Oak Street");
        user.Press("cmdOK");
    });
    EXPECT_EQ(Keys(), (Asked{"14 OAK ST", "16 OAK STREET"}));
    EXPECT_EQ(Stored("16 OAK STREET", "ADDRESS"), "16 Oak Street");
    EXPECT_EQ(main.CurrentKey, "16 OAK STREET");
    EXPECT_EQ(main.txtCentralKey.Text(), "16 OAK STREET");
}

TEST_F(EditRecordTest, AStreetThatExistsKeepsTheOldKeyAndItsTypedAddress) {
    Store("12 OAK ST", {{"ADDRESS", std::string("12 Oak St")}});
    Store("14 OAK ST");
    Edit("12 OAK ST", [](User user) {
        user.Type("txtStreet", "14 Oak St");
        user.Press("cmdOK");
    });
    EXPECT_EQ(Keys(), (Asked{"12 OAK ST", "14 OAK ST"}));
    EXPECT_EQ(Stored("12 OAK ST", "ADDRESS"), "14 Oak St");
    EXPECT_EQ(main.txtCentralKey.Text(), "12 OAK ST");
}

TEST_F(EditRecordTest, AnEffectiveDateChangedInTheDialogReachesTheMainForm) {
    Store("12 OAK ST");
    Edit("12 OAK ST", [&](User user) {
        user.Type("txtBaseDate", "5/31/2010");
        EXPECT_EQ(main.EffectiveDate, kToday - 30) << "at once, for the whole program";
        user.Press("cmdCancel");
    });
    EXPECT_EQ(main.EffectiveDate, kToday - 30);
    EXPECT_EQ(main.txtBaseDate.Text(), "5/31/2010");
}

// The main form's box may show the same day in another form; taking it back from the dialog then looked like
// a change to the old date.
TEST_F(EditRecordTest, ItReachesTheMainFormHoweverThatWroteTheOldDate) {
    Store("12 OAK ST");
    main.txtBaseDate.SetText("06/30/2010");
    Edit("12 OAK ST", [](User user) {
        user.Type("txtBaseDate", "5/31/2010");
        user.Press("cmdOK");
    });
    EXPECT_EQ(main.EffectiveDate, kToday - 30);
    EXPECT_EQ(main.txtBaseDate.Text(), "5/31/2010");
    EXPECT_EQ(main.cboBaseDate.Text(), "6/30/2010") << "the date that the dialog opened with";
}

using DeleteRecordTest = EditorTest;

TEST_F(DeleteRecordTest, AsksByTheKeyBoxAndStopsOnNo) {
    Store("12 OAK ST");
    main.txtCentralKey.SetText("12 Oak St");
    main.asked.clear();
    desktop.Expect("Delete '12 Oak St' Are you sure?", controls::Answer::No);
    DeleteRecord(application, main);
    ASSERT_EQ(desktop.messages.size(), 1U);
    EXPECT_EQ(desktop.messages[0].title, "DELETE");
    EXPECT_EQ(desktop.messages[0].buttons, controls::Buttons::YesNo);
    EXPECT_EQ(desktop.messages[0].icon, controls::Icon::Critical);
    EXPECT_EQ(Keys(), Asked{"12 OAK ST"});
    EXPECT_TRUE(main.asked.empty());
}

TEST_F(DeleteRecordTest, SelectsTheRecordBehindTheDeletedOne) {
    for (const char* key : {"12 OAK ST", "14 OAK ST", "16 OAK ST"})
        Store(key);
    main.txtCentralKey.SetText("14 OAK ST");
    main.ReopenRecordViews();
    main.asked.clear();
    desktop.ExpectAny(controls::Answer::Yes);
    DeleteRecord(application, main);
    EXPECT_EQ(Keys(), (Asked{"12 OAK ST", "16 OAK ST"}));
    EXPECT_EQ(main.txtCentralKey.Text(), "16 OAK ST");
    EXPECT_EQ(main.CurrentKey, "16 OAK ST");
    EXPECT_EQ(main.asked, (Asked{"key box 16 OAK ST", "reopen", "rebind", "buttons"}))
        << "neither a run nor a calculation";
}

TEST_F(DeleteRecordTest, OfTheLastRecordSelectsTheOneBeforeIt) {
    for (const char* key : {"12 OAK ST", "14 OAK ST"})
        Store(key);
    main.txtCentralKey.SetText("14 OAK ST");
    main.ReopenRecordViews();
    desktop.ExpectAny(controls::Answer::Yes);
    DeleteRecord(application, main);
    EXPECT_EQ(main.txtCentralKey.Text(), "12 OAK ST");
}

TEST_F(DeleteRecordTest, OfTheOnlyRecordEmptiesTheKeyBox) {
    Store("12 OAK ST");
    main.txtCentralKey.SetText("12 OAK ST");
    main.ReopenRecordViews();
    desktop.ExpectAny(controls::Answer::Yes);
    DeleteRecord(application, main);
    EXPECT_TRUE(Keys().empty());
    EXPECT_EQ(main.txtCentralKey.Text(), "");
    EXPECT_EQ(main.CurrentKey, "");
}

}  // namespace
}  // namespace zenvora::records
