#include "records/frm_edit.h"

#include <algorithm>
#include <string>

#include "records/editor_fixture.h"

namespace zenvora::records {
namespace {

using FrmEdit = EditorTest;

TEST_F(FrmEdit, ShowsTheColumnsAndHidesStoredFormsOfMissingValues) {
    Store("12 OAK ST", {{"ADDRESS", std::string("12 Oak St")},
                        {"CITY", std::string("Troy")},
                        {"ST", std::string("OH")},
                        {"ZIP", std::string("45373")},
                        {"ORIGLISTDATE", Day(2010, 3, 15)},
                        {"ORIGLISTPRICE", 259900.0},
                        {"LASTLISTDATE", Day(2010, 5, 1)},
                        {"LASTLISTPRICE", 249900.0},
                        {"SALEDATE", Day(1900, 1, 1)},
                        {"SELLINGPR", 0.0}});
    Edit("12 OAK ST", [](User user) {
        EXPECT_EQ(user.Text("txtStreet"), "12 Oak St");
        EXPECT_EQ(user.Text("txtCity"), "Troy");
        EXPECT_EQ(user.Text("txtState"), "OH");
        EXPECT_EQ(user.Text("txtZip"), "45373");
        EXPECT_EQ(user.Text("txtOrigListDate"), "3/15/2010");
        EXPECT_EQ(user.Text("txtOrigListPrice"), "259900");
        EXPECT_EQ(user.Text("txtCurrListDate"), "5/1/2010");
        EXPECT_EQ(user.Text("txtCurrListPrice"), "249900");
        for (const char* field : {"txtContractDate", "txtListCancelDate", "txtSaleDate", "txtSellingPr"})
            EXPECT_EQ(user.Text(field), "") << field;
        EXPECT_EQ(user.Text("txtBaseDate"), "6/30/2010");
        EXPECT_EQ(user.Edit().cboBaseDate.Text(), "6/30/2010");
        EXPECT_FALSE(user.Edit().cboBaseDate.Visible());
        EXPECT_EQ(user.Focus(), "txtOrigListDate");
    });
}

TEST_F(FrmEdit, TheFieldsTakeTextsOfTheirLength) {
    Store("12 OAK ST");
    Edit("12 OAK ST", [](User user) {
        EXPECT_EQ(user.Edit().txtStreet.MaxLength(), 35);
        EXPECT_EQ(user.Edit().txtCity.MaxLength(), 20);
        EXPECT_EQ(user.Edit().txtState.MaxLength(), 2);
        EXPECT_EQ(user.Edit().txtZip.MaxLength(), 10);
        EXPECT_EQ(user.Edit().txtSellingPr.MaxLength(), 10);
    });
}

TEST_F(FrmEdit, TheKeyboardGoesThroughTheFieldsInTheirOrder) {
    Store("12 OAK ST");
    Edit("12 OAK ST", [](User user) {
        std::vector<std::string> order;
        for (const controls::Control* control : user.Edit().Controls()) {
            const std::string_view type = control->TypeName();
            if (type == "TEXTBOX" || type == "COMBOBOX") order.push_back(control->Name());
        }
        order.resize(13);
        EXPECT_EQ(order, (std::vector<std::string>{"txtStreet", "txtCity", "cboCity", "txtState", "txtZip",
                                                   "txtOrigListDate", "txtOrigListPrice", "txtCurrListDate",
                                                   "txtCurrListPrice", "txtContractDate", "txtListCancelDate",
                                                   "txtSaleDate", "txtSellingPr"}));
    });
}

TEST_F(FrmEdit, OkStoresEveryField) {
    Store("12 OAK ST");
    Edit("12 OAK ST", [](User user) {
        user.Type("txtCity", "Troy");
        user.Type("txtState", "OH");
        user.Type("txtZip", "45373-1234");
        user.Type("txtOrigListDate", "3/15/2010");
        user.Type("txtOrigListPrice", "$259,900");
        user.Type("txtCurrListDate", "May 1, 2010");
        user.Type("txtCurrListPrice", "250");
        user.Type("txtContractDate", "5/10/2010");
        user.Type("txtSaleDate", "5/14/2010");
        user.Type("txtSellingPr", "242,500");
        user.Press("cmdOK");
    });
    const std::pair<const char*, const char*> stored[] = {{"CITY", "Troy"},
                                                          {"ST", "OH"},
                                                          {"ZIP", "45373-1234"},
                                                          {"ORIGLISTDATE", "3/15/2010"},
                                                          {"ORIGLISTPRICE", "259900"},
                                                          {"LASTLISTDATE", "5/1/2010"},
                                                          {"LASTLISTPRICE", "250000"},
                                                          {"CONTRACTDATE", "5/10/2010"},
                                                          {"LISTCANCELDATE", "1/1/1900"},
                                                          {"SALEDATE", "5/14/2010"},
                                                          {"SELLINGPR", "242500"},
                                                          {"SALEFLD", "5/14/2010"},
                                                          {"PRICEFLD", "242500"},
                                                          {"SELECTED", "1"}};
    for (const auto& [column, value] : stored)
        EXPECT_EQ(Stored("12 OAK ST", column), value) << column;
}

TEST_F(FrmEdit, OkLeavesTheFieldThatHasTheFocusFirst) {
    Store("12 OAK ST", {{"SELLINGPR", 200000.0}});
    Edit("12 OAK ST", [](User user) {
        user.Type("txtSellingPr", "250");
        user.Press("cmdOK");
    });
    EXPECT_EQ(Stored("12 OAK ST", "SELLINGPR"), "250000");
}

TEST_F(FrmEdit, AnEmptiedOriginalDateAndPriceComeBackAtOkAndNoOtherField) {
    Store("12 OAK ST", {{"ORIGLISTDATE", Day(2010, 3, 15)},
                        {"ORIGLISTPRICE", 259900.0},
                        {"CONTRACTDATE", Day(2010, 5, 10)},
                        {"SELLINGPR", 242500.0}});
    Edit("12 OAK ST", [](User user) {
        for (const char* field : {"txtOrigListDate", "txtOrigListPrice", "txtContractDate", "txtSellingPr"})
            user.Type(field, "");
        user.Press("cmdOK");
    });
    EXPECT_EQ(Stored("12 OAK ST", "ORIGLISTDATE"), "3/15/2010");
    EXPECT_EQ(Stored("12 OAK ST", "ORIGLISTPRICE"), "259900");
    EXPECT_EQ(Stored("12 OAK ST", "CONTRACTDATE"), "1/1/1900");
    EXPECT_EQ(Stored("12 OAK ST", "SELLINGPR"), "0");
}

TEST_F(FrmEdit, OkThrowsAwayWhatIsNoEntryAndStoresWhatIsOnlyAdvisedAgainst) {
    Store("12 OAK ST");
    Edit("12 OAK ST", [](User user) {
        user.Type("txtOrigListDate", "3/15/10");
        user.Type("txtOrigListPrice", "abc");
        user.Type("txtContractDate", "7/1/2010");
        user.Type("txtSaleDate", "3/1/2010");
        user.Type("txtListCancelDate", "tomorrow");
        user.Press("cmdOK");
    });
    EXPECT_EQ(Stored("12 OAK ST", "ORIGLISTDATE"), "1/1/1900");
    EXPECT_EQ(Stored("12 OAK ST", "ORIGLISTPRICE"), "0");
    EXPECT_EQ(Stored("12 OAK ST", "CONTRACTDATE"), "7/1/2010") << "after the Effective Appraisal Date";
    EXPECT_EQ(Stored("12 OAK ST", "SALEDATE"), "3/1/2010");
    EXPECT_EQ(Stored("12 OAK ST", "LISTCANCELDATE"), "1/1/1900");
}

TEST_F(FrmEdit, AnEmptiedSaleLeavesItsMirrorColumns) {
    Store("12 OAK ST");
    Edit("12 OAK ST", [](User user) {
        user.Type("txtSaleDate", "5/14/2010");
        user.Type("txtSellingPr", "242500");
        user.Press("cmdOK");
    });
    Edit("12 OAK ST", [](User user) {
        user.Type("txtSaleDate", "");
        user.Type("txtSellingPr", "");
        user.Press("cmdOK");
    });
    EXPECT_EQ(Stored("12 OAK ST", "SALEDATE"), "1/1/1900");
    EXPECT_EQ(Stored("12 OAK ST", "SELLINGPR"), "0");
    EXPECT_EQ(Stored("12 OAK ST", "SALEFLD"), "5/14/2010");
    EXPECT_EQ(Stored("12 OAK ST", "PRICEFLD"), "242500");
}

TEST_F(FrmEdit, AnEmptyStreetBecomesTheKeyAtOk) {
    Store("12 OAK ST", {{"ADDRESS", std::string("12 Oak St")}});
    Edit("12 OAK ST", [](User user) {
        // By the program, so that the field is not left.
        user.Edit().txtStreet.SetText("");
        user.Press("cmdOK");
    });
    EXPECT_EQ(Stored("12 OAK ST", "ADDRESS"), "12 OAK ST");
}

TEST_F(FrmEdit, AKeyInLowerCaseIsPutIntoUpperCaseAtOk) {
    Store("12 Oak St");
    Edit("12 OAK ST", [](User user) { user.Press("cmdOK"); });
    EXPECT_EQ(Keys(), std::vector<std::string>{"12 OAK ST"});
}

TEST_F(FrmEdit, CancelStoresNothing) {
    Store("12 OAK ST", {{"ADDRESS", std::string("12 Oak St")}, {"ORIGLISTPRICE", 259900.0}});
    Edit("12 OAK ST", [](User user) {
        user.Type("txtStreet", "16 Oak St");
        user.Type("txtOrigListPrice", "1000");
        user.Press("cmdCancel");
    });
    EXPECT_EQ(Keys(), std::vector<std::string>{"12 OAK ST"});
    EXPECT_EQ(Stored("12 OAK ST", "ADDRESS"), "12 Oak St");
    EXPECT_EQ(Stored("12 OAK ST", "ORIGLISTPRICE"), "259900");
    EXPECT_EQ(main.CurrentKey, "12 OAK ST");
}

TEST_F(FrmEdit, TheCloseBoxStoresTextsAsTheyAre) {
    Store("12 OAK ST", {{"ADDRESS", std::string("12 Oak St")}});
    Edit("12 OAK ST", [](User user) {
        user.Type("txtStreet", "16 Oak St");
        user.Type("txtSaleDate", "3/5/09");
        user.Type("txtSellingPr", "999.5");
        user.Edit().Close();
        EXPECT_FALSE(user.Edit().Loaded());
    });
    EXPECT_EQ(Stored("12 OAK ST", "SALEDATE"), "3/5/2009") << "OK would have thrown it away";
    EXPECT_EQ(Stored("12 OAK ST", "SELLINGPR"), "999.5");
    EXPECT_EQ(Stored("12 OAK ST", "SALEFLD"), "(null)");
    EXPECT_EQ(Stored("12 OAK ST", "ADDRESS"), "16 Oak St") << "and the key stays";
}

TEST_F(FrmEdit, TheCloseBoxOfAnUntouchedRecordChangesNothing) {
    Store(
        "12 OAK ST",
        {{"ADDRESS", std::string("12 Oak St")}, {"ORIGLISTPRICE", 259900.4}, {"SALEDATE", Day(1900, 1, 1)}});
    Edit("12 OAK ST", [](User user) { user.Edit().Close(); });
    EXPECT_EQ(Stored("12 OAK ST", "ORIGLISTPRICE"), "259900.4");
    EXPECT_EQ(Stored("12 OAK ST", "SALEDATE"), "1/1/1900");
    EXPECT_EQ(Stored("12 OAK ST", "SELLINGPR"), "(null)");
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(FrmEdit, AFieldEmptiedAndClosedHoldsTheStoredFormOfAMissingValue) {
    Store("12 OAK ST", {{"SALEDATE", Day(2010, 5, 14)}, {"SELLINGPR", 242500.0}});
    Edit("12 OAK ST", [](User user) {
        user.Type("txtSaleDate", "");
        user.Type("txtSellingPr", "");
        user.Edit().Close();
    });
    EXPECT_EQ(Stored("12 OAK ST", "SALEDATE"), "1/1/1900");
    EXPECT_EQ(Stored("12 OAK ST", "SELLINGPR"), "0");
}

TEST_F(FrmEdit, TheDialogIsUnloadedOnceHoweverItIsClosed) {
    Store("12 OAK ST");
    for (const char* way : {"cmdOK", "cmdCancel", "close box"}) {
        Edit("12 OAK ST", [&](User user) {
            if (std::string_view(way) != "close box") user.Press(way);
        });
        EXPECT_EQ(std::count(main.asked.begin(), main.asked.end(), "reopen"), 2)
            << way << ": by the unload, and by the end of the edit";
    }
    EXPECT_NE(Settings().find("FRMEDITWIDTH=11490"), std::string::npos) << Settings();
}

TEST_F(FrmEdit, EveryDateThatIsValidTakesEffectAtOnce) {
    Store("12 OAK ST");
    Edit("12 OAK ST", [&](User user) {
        main.asked.clear();
        user.TypeSlowly("txtBaseDate", "5/31/2010");
        EXPECT_EQ(main.EffectiveDate, kToday - 30);
        EXPECT_EQ(main.asked, std::vector<std::string>{"counts"}) << "one text of nine was a date";
        user.Type("txtBaseDate", "5/31/201");
        EXPECT_EQ(user.Color("txtBaseDate"), kError);
        EXPECT_EQ(main.EffectiveDate, kToday - 30);
        user.Press("cmdCancel");
    });
    EXPECT_EQ(main.EffectiveDate, kToday - 30) << "though the dialog was cancelled";
}

TEST_F(FrmEdit, TheCarrierOfTheDateShowsADateInShortForm) {
    Store("12 OAK ST");
    Edit("12 OAK ST", [](User user) {
        controls::ComboBox& carrier = user.Edit().cboBaseDate;
        carrier.SetVisible(true);
        carrier.SetFocus();
        carrier.SetText("May 31, 2010");
        EXPECT_EQ(user.Text("txtBaseDate"), "May 31, 2010");
        user.GoTo("txtZip");
        EXPECT_EQ(carrier.Text(), "5/31/2010");
        carrier.SetFocus();
        carrier.SetText("no date");
        user.GoTo("txtZip");
        EXPECT_EQ(carrier.Text(), "no date");
        EXPECT_EQ(user.Text("txtBaseDate"), "5/31/2010");
    });
}

TEST_F(FrmEdit, OpensWithoutARecordWhenTheTableIsEmpty) {
    Edit("", [](User user) {
        EXPECT_EQ(user.Text("txtStreet"), "");
        user.Press("cmdOK");
    });
    EXPECT_TRUE(Keys().empty());
}

// ---- faults ----

TEST_F(FrmEdit, ATextThatDoesNotGoIntoItsColumnIsToldAndTheDialogStaysOpenWithAllThatWasTyped) {
    Store("12 OAK ST", {{"SELLINGPR", 200000.0}});
    Edit("12 OAK ST", [&](User user) {
        user.Type("txtCity", "Troy");
        user.Type("txtSaleDate", "someday");
        desktop.ExpectAny();
        user.Edit().Close();
        ASSERT_TRUE(user.Edit().Loaded());
        ASSERT_EQ(desktop.messages.size(), 1U);
        EXPECT_NE(desktop.messages[0].text.find("Sale Date: "), std::string::npos)
            << desktop.messages[0].text;
        EXPECT_NE(desktop.messages[0].text.find("\"someday\" is no date"), std::string::npos);
        EXPECT_EQ(user.Text("txtSaleDate"), "someday");
        EXPECT_EQ(user.Text("txtCity"), "Troy");
        EXPECT_EQ(user.Focus(), "txtSaleDate");
        EXPECT_EQ(Stored("12 OAK ST", "CITY"), "(null)") << "nothing is half stored";

        user.Type("txtSaleDate", "5/14/2010");
        user.Edit().Close();
        EXPECT_FALSE(user.Edit().Loaded());
    });
    EXPECT_EQ(Stored("12 OAK ST", "CITY"), "Troy");
    EXPECT_EQ(Stored("12 OAK ST", "SALEDATE"), "5/14/2010");
}

TEST_F(FrmEdit, AfterAFaultOfOkTheFieldsHoldWhatWasTypedAndNotWhatOkMadeOfIt) {
    Store("12 OAK ST", {{"ORIGLISTDATE", Day(2010, 3, 15)}});
    Edit("12 OAK ST", [&](User user) {
        user.Edit().txtState.SetText("Ohio");  // longer than the column
        user.Type("txtContractDate", "3/5/09");
        user.Type("txtOrigListDate", "");
        desktop.ExpectAny();
        user.Press("cmdOK");
        ASSERT_TRUE(user.Edit().Loaded());
        EXPECT_NE(desktop.messages.at(0).text.find("State: "), std::string::npos);
        EXPECT_EQ(user.Text("txtOrigListDate"), "");
        EXPECT_EQ(user.Text("txtContractDate"), "3/5/09");
        user.Type("txtState", "OH");
        user.Press("cmdOK");
        EXPECT_FALSE(user.Edit().Loaded());
    });
    EXPECT_EQ(Stored("12 OAK ST", "ST"), "OH");
    EXPECT_EQ(Stored("12 OAK ST", "ORIGLISTDATE"), "3/15/2010");
    EXPECT_EQ(Stored("12 OAK ST", "CONTRACTDATE"), "1/1/1900");
}

TEST_F(FrmEdit, AfterAFaultCancelStoresNothing) {
    Store("12 OAK ST");
    Edit("12 OAK ST", [&](User user) {
        user.Type("txtCity", "Troy");
        user.Type("txtSaleDate", "someday");
        desktop.ExpectAny();
        user.Edit().Close();
        user.Press("cmdCancel");
    });
    EXPECT_EQ(Stored("12 OAK ST", "CITY"), "(null)");
}

// Another program has stored the same street since the search: the key was changed in the main form though
// the record kept its own.
TEST_F(FrmEdit, AKeyThatIsTakenMeanwhileIsToldAndTheOldOneStays) {
    Store("12 OAK ST", {{"ADDRESS", std::string("12 Oak St")}});
    Edit("12 OAK ST", [&](User user) {
        user.Type("txtStreet", "16 Oak St");
        user.GoTo("txtCity");
        Store("16 OAK ST");
        desktop.ExpectAny();
        user.Press("cmdOK");
        ASSERT_TRUE(user.Edit().Loaded());
        EXPECT_NE(desktop.messages.at(0).text.find("Street: "), std::string::npos)
            << desktop.messages[0].text;
        EXPECT_EQ(main.CurrentKey, "12 OAK ST");
        user.Press("cmdCancel");
    });
    EXPECT_EQ(Keys(), (std::vector<std::string>{"12 OAK ST", "16 OAK ST"}));
    EXPECT_EQ(main.txtCentralKey.Text(), "12 OAK ST");
}

TEST_F(FrmEdit, AnAddressThatIsTooLongToAddIsToldAndNothingIsAdded) {
    main.txtCentralKey.SetText(std::string(60, 'x'));
    desktop.ExpectAny();
    EditRecord(application, main, "ADD");
    ASSERT_EQ(desktop.messages.size(), 1U);
    EXPECT_NE(desktop.messages[0].text.find("Street: "), std::string::npos) << desktop.messages[0].text;
    EXPECT_TRUE(Keys().empty());
    EXPECT_TRUE(desktop.shown.empty());
    Add("12 Oak St", [](User user) { user.Press("cmdCancel"); });
    EXPECT_EQ(Keys(), std::vector<std::string>{"12 OAK ST"});
}

TEST_F(FrmEdit, ADatabookThatCannotBeReadAgainIsToldOnceAndTheDialogClosesAllTheSame) {
    Store("12 OAK ST");
    main.txtCentralKey.SetText("12 OAK ST");
    main.ReopenRecordViews();
    desktop.ExpectForm("frmEdit", [&](controls::Form& form) {
        main.refusesToReopen = true;
        desktop.ExpectAny();
        User{form}.Press("cmdCancel");
        EXPECT_FALSE(form.Loaded());
        main.refusesToReopen = false;
    });
    EditRecord(application, main, "EDIT");
    ASSERT_EQ(desktop.messages.size(), 1U);
    EXPECT_NE(desktop.messages[0].text.find("The Databook is damaged."), std::string::npos);
}

}  // namespace
}  // namespace zenvora::records
