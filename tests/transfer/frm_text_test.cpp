#include "transfer/frm_text.h"

#include "audit_fixture.h"
#include "platform/fault.h"
#include "support/recording_carrier.h"

namespace zenvora::transfer {
namespace {

using Steps = std::vector<std::string>;
using Pokes = std::vector<std::pair<std::string, std::string>>;

class FrmText : public AuditTest {
  protected:
    FrmText() {
        carrier.values["KRN|Query"]["ActiveReports"] = "Smith,";
        carrier.values["Krn|Smith"]["UserID"] = "7";
        carrier.values["KRN|Smith"] = {{"ListForms", "1004MC,Text,TextB,TextC,"},
                                       {"Text|5|1", ""},
                                       {"Text|10|1", " "},
                                       {"TextB|5|1", "Comments"},
                                       {"TextB|10|1", "The subject lies in a quiet street."},
                                       {"TextC|5|1", "Market Conditions Audit Trail"},
                                       {"TextC|10|1", "Listings:"}};
        carrier.values["KRN|SMITH"];
    }
    /// The dialog as it stands when it has been loaded.
    frmText& Loaded() {
        dialog = std::make_unique<frmText>(test.session, carrier, adoDatabook, effective);
        dialog->Load();
        return *dialog;
    }

    testing_support::RecordingCarrier carrier;
    std::unique_ptr<frmText> dialog;
};

TEST_F(FrmText, HasItsCaptionsAndTags) {
    frmText fresh(test.session, carrier, adoDatabook, effective);
    EXPECT_EQ(fresh.Name(), "frmText");
    EXPECT_EQ(fresh.Caption(), "Transfer Audit Report");
    EXPECT_EQ(fresh.fraText.Caption(), "Select Addendum to transfer Audit to");
    EXPECT_EQ(fresh.cmdTransfer.Caption(), "Transfer");
    EXPECT_EQ(fresh.cmdExit.Caption(), "Exit");
    const char* captions[] = {"Text Addendum A  ", "Text Addendum B  ", "Text Addendum C  ",
                              "Text Addendum D  ", "Text Addendum E  "};
    const char* tags[] = {"Text", "TextB", "TextC", "TextD", "TextE"};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(fresh.optText[i].Caption(), captions[i]);
        EXPECT_EQ(fresh.optText[i].Tag(), tags[i]);
        EXPECT_TRUE(fresh.optText[i].Enabled());
        EXPECT_FALSE(fresh.optText[i].Value());
    }
}

TEST_F(FrmText, LoadingSaysWhatEachAddendumHolds) {
    frmText& loaded = Loaded();
    EXPECT_EQ(loaded.txtReportname.Text(), "Smith");
    EXPECT_EQ(loaded.txtKrnFormList.Text(), "1004MC,TEXT,TEXTB,TEXTC,");
    EXPECT_EQ(loaded.optText[0].Caption(), "Text Addendum A   Empty/Available");
    EXPECT_EQ(loaded.optText[1].Caption(), "Text Addendum B   Contains Other Information");
    EXPECT_EQ(loaded.optText[2].Caption(), "Text Addendum C   Contains Audit Report");
    // The report refuses the fields of forms that it lacks.
    EXPECT_EQ(loaded.optText[3].Caption(), "Text Addendum D   Empty/Available");
    EXPECT_TRUE(loaded.optText[0].Enabled());
    EXPECT_FALSE(loaded.optText[1].Enabled()) << "somebody's text";
    EXPECT_TRUE(loaded.optText[2].Enabled()) << "may be overwritten";
    EXPECT_FALSE(loaded.optText[3].Enabled()) << "the report has no such form";
    EXPECT_FALSE(loaded.optText[4].Enabled());
}

TEST_F(FrmText, LoadingAsksInItsOrder) {
    Loaded();
    EXPECT_EQ(carrier.steps, (Steps{"open KRN|Query", "request ActiveReports", "close",
                                    "open Krn|Smith", "request UserID",        "close",
                                    "open KRN|Smith", "request ListForms",     "close",
                                    "open KRN|Smith", "request Text|5|1",      "close",
                                    "open KRN|Smith", "request Text|10|1",     "close",
                                    "open KRN|Smith", "request TextB|5|1",     "close",
                                    "open KRN|Smith", "request TextB|10|1",    "close",
                                    "open KRN|Smith", "request TextC|5|1",     "close",
                                    "open KRN|Smith", "request TextD|5|1",     "close",
                                    "open KRN|Smith", "request TextD|10|1",    "close",
                                    "open KRN|Smith", "request TextE|5|1",     "close",
                                    "open KRN|Smith", "request TextE|10|1"}));
}

TEST_F(FrmText, TheNameOfAFormIsSoughtAsASubstring) {
    carrier.values["KRN|Smith"]["ListForms"] = "1004mc,textb";
    frmText& loaded = Loaded();
    EXPECT_TRUE(loaded.optText[0].Enabled()) << "TEXT stands within TEXTB";
    EXPECT_FALSE(loaded.optText[2].Enabled());
}

TEST_F(FrmText, WithoutKrnAllOptionsAreDisabled) {
    carrier.values.clear();
    frmText& loaded = Loaded();
    for (int i = 0; i < 5; ++i) {
        EXPECT_FALSE(loaded.optText[i].Enabled());
        EXPECT_EQ(loaded.optText[i].Caption().size(), 17U) << "nothing is added";
    }
    EXPECT_EQ(carrier.steps, Steps{"open KRN|Query"});

    // The button then goes to the first addendum of the report without a name.
    AddListings(1);
    Select();
    Steps steps;
    loaded.TxtDde.OnStep([&](std::string_view step) { steps.emplace_back(step); });
    EXPECT_THROW(loaded.cmdTransfer.Click(), Fault);
    EXPECT_EQ(steps, (Steps{"mode 0", "topic KRN|", "mode 2"}));
    EXPECT_TRUE(loaded.Loaded());
}

TEST_F(FrmText, TransferWritesTheTitleTwiceAndTheBody) {
    AddListings(10);
    AddSales(5);
    Select();
    frmText& loaded = Loaded();
    loaded.optText[2].Select();
    adoDatabook.Recordset().MoveTo(4);
    carrier.steps.clear();
    loaded.cmdTransfer.Click();
    const std::string body = kHead + Listings(1, 10) + "Comparables:\r\n" + Sales(1, 5);
    EXPECT_EQ(carrier.pokes, (Pokes{{"Text|5|1", "Market Conditions Audit Trail"},
                                    {"TextC|5|1", "MARKET CONDITIONS AUDIT TRAIL"},
                                    {"TextC|10|1", body}}));
    EXPECT_EQ(carrier.steps[0], "close") << "of the last question while loading";
    EXPECT_EQ(carrier.steps[1], "open KRN|SMITH") << "the report's name in capitals";
    EXPECT_FALSE(loaded.Loaded());
    EXPECT_EQ(adoDatabook.Recordset().Position(), 4);
    EXPECT_EQ(StatusText(loaded.Outcome()), "All 3 values arrived in the report \"Smith\".");
}

TEST_F(FrmText, ASecondPartGoesIntoTheContinuation) {
    AddListings(71);
    Select();
    frmText& loaded = Loaded();
    loaded.optText[0].Select();
    loaded.cmdTransfer.Click();
    ASSERT_EQ(carrier.pokes.size(), 4U);
    EXPECT_EQ(carrier.pokes[2], (Pokes::value_type{"Text|10|1", kHead + Listings(1, 70)}));
    EXPECT_EQ(carrier.pokes[3], (Pokes::value_type{"Text|94|1", Listing(71) + "Comparables:\r\n"}));
    EXPECT_EQ(loaded.Outcome().values, 4);
}

TEST_F(FrmText, RecordsThatTheTextHasNoRoomForAreTold) {
    AddListings(143);
    Select();
    frmText& loaded = Loaded();
    loaded.optText[0].Select();
    loaded.cmdTransfer.Click();
    EXPECT_EQ(StatusText(loaded.Outcome()),
              "All 4 values arrived in the report \"Smith\". 1 record is left out of the audit text.");
}

TEST_F(FrmText, WithNoOptionSetTheFirstAddendumIsTaken) {
    AddListings(1);
    Select();
    frmText& loaded = Loaded();
    EXPECT_EQ(loaded.SelectedAddendum(), 0);
    loaded.cmdTransfer.Click();
    ASSERT_EQ(carrier.pokes.size(), 3U);
    EXPECT_EQ(carrier.pokes[2].first, "Text|10|1");
}

TEST_F(FrmText, WithoutRecordsTransferDoesNothing) {
    frmText& loaded = Loaded();
    loaded.optText[0].Select();
    loaded.cmdTransfer.Click();
    EXPECT_TRUE(carrier.pokes.empty());
    EXPECT_TRUE(loaded.Loaded());
}

TEST_F(FrmText, ExitOnlyCloses) {
    AddListings(1);
    Select();
    frmText& loaded = Loaded();
    carrier.steps.clear();
    loaded.cmdExit.Click();
    EXPECT_FALSE(loaded.Loaded());
    EXPECT_TRUE(carrier.steps.empty());
}

TEST_F(FrmText, ARefusedBodyIsToldAndTheDialogClosesAllTheSame) {
    AddListings(1);
    Select();
    frmText& loaded = Loaded();
    loaded.optText[2].Select();
    carrier.faults["poke TextC|10|1"] = 380;
    loaded.cmdTransfer.Click();
    EXPECT_FALSE(loaded.Loaded());
    EXPECT_EQ(StatusText(loaded.Outcome()),
              "2 of 3 values arrived in the report \"Smith\". 1 was refused: TextC|10|1.");
}

TEST_F(FrmText, AHangLeavesTheDialogOpenAndTheRowWhereItWas) {
    AddListings(5);
    Select();
    adoDatabook.Recordset().MoveTo(2);
    frmText& loaded = Loaded();
    loaded.optText[2].Select();
    carrier.faults["poke TextC|5|1"] = 286;
    EXPECT_THROW(loaded.cmdTransfer.Click(), Fault);
    EXPECT_TRUE(loaded.Loaded());
    EXPECT_EQ(loaded.Outcome().unknown, 1);
    EXPECT_EQ(adoDatabook.Recordset().Position(), 2);
}

TEST_F(FrmText, LoadedAnewItsCaptionsStartFresh) {
    test.desktop.ExpectForm("frmText", [](controls::Form& form) { form.Close(); });
    frmText first(test.session, carrier, adoDatabook, effective);
    first.Show(controls::Modality::Modal);
    frmText second(test.session, carrier, adoDatabook, effective);
    second.Load();
    EXPECT_EQ(second.optText[0].Caption(), "Text Addendum A   Empty/Available");
}

}  // namespace
}  // namespace zenvora::transfer
