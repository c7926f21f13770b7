#include "records/frm_edit.h"

#include <optional>
#include <vector>

#include "common/placement.h"
#include "common/primitives.h"
#include "databook/field_access.h"
#include "databook/selection.h"
#include "platform/text/date.h"
#include "records/editor_message.h"

namespace zenvora::records {

frmEdit::frmEdit(const Application& application, MainForm& mainForm)
    : Form(application.session.forms, "frmEdit", "Edit"),
      adoDatabook(application.session.databooks, application.session.clock,
                  mainForm.Shared().adoDatabook.Mapper()),
      adoDatabookSearch(application.session.databooks, application.session.clock,
                        mainForm.Shared().adoDatabook.Mapper()),
      application_(application),
      main_(mainForm),
      shared_(mainForm.Shared()),
      // City, state and zip from the end: the list of places then sees the whole place at once.
      record_(adoDatabook, {{txtStreet, "ADDRESS", "Street"},
                            {txtZip, "ZIP", "Zip"},
                            {txtState, "ST", "State"},
                            {txtCity, "CITY", "City"},
                            {txtOrigListDate, "ORIGLISTDATE", "Original List Date"},
                            {txtOrigListPrice, "ORIGLISTPRICE", "Original List Price"},
                            {txtCurrListDate, "LASTLISTDATE", "Current List Date"},
                            {txtCurrListPrice, "LASTLISTPRICE", "Current List Price"},
                            {txtContractDate, "CONTRACTDATE", "Contract Date"},
                            {txtListCancelDate, "LISTCANCELDATE", "Listing Cancel Date"},
                            {txtSaleDate, "SALEDATE", "Sale Date"},
                            {txtSellingPr, "SELLINGPR", "Sale Price"}}),
      advice_(Advised(), rtxtInfo, shared_.EffectiveDate, application.session.clock),
      address_(application.session, {txtStreet, txtCity, txtState, txtZip, cboCity}, rtxtInfo,
               adoDatabookSearch, mCurrentKey) {
    LayOut();
    SetRules();
}

AdvisedFields frmEdit::Advised() {
    return {txtOrigListDate, txtOrigListPrice,  txtCurrListDate, txtCurrListPrice,
            txtContractDate, txtListCancelDate, txtSaleDate,     txtSellingPr};
}

void frmEdit::LayOut() {
    constexpr float kWidth = 11490;  // twips
    constexpr float kHeight = 7785;
    constexpr int kLongestEntry = 10;
    SetPlacement({0, 0, kWidth, kHeight});
    Label3.SetCaption("Effective Appraisal Date");
    Frame3.SetCaption("Address");
    lblStreet.SetCaption("Street");
    lblCity.SetCaption("City");
    lblState.SetCaption("State");
    lblZip.SetCaption("Zip");
    Frame4.SetCaption("Original List");
    Frame5.SetCaption("Current List");
    Frame6.SetCaption("Optional Dates");
    Frame2.SetCaption("Sale");
    for (controls::Label* label : {&lblOrigListDate, &lblCurrentListDate, &lblSaleDate})
        label->SetCaption("Date");
    for (controls::Label* label : {&lblOrigListPrice, &lblCurrentListPrice, &lblSalePrice})
        label->SetCaption("Price");
    lblContractDate.SetCaption("Contract Date");
    lblListCancelDate.SetCaption("Listing Cancel Date");
    cmdUseOrig.SetCaption("&Use Orig. Date/Price");
    cmdCancel.SetCaption("&Cancel");
    cmdOK.SetCaption("&OK");
    cmdOK.SetDefault(true);
    cmdCancel.SetCancel(true);
    cboBaseDate.SetVisible(false);
    cboCity.SetVisible(false);
    rtxtInfo.SetBackColor(kPanelNormal);

    txtStreet.SetMaxLength(35);
    txtCity.SetMaxLength(20);
    txtState.SetMaxLength(2);
    txtZip.SetMaxLength(kLongestEntry);
    for (controls::TextBox* field : {&txtOrigListDate, &txtOrigListPrice, &txtCurrListDate, &txtCurrListPrice,
                                     &txtContractDate, &txtListCancelDate, &txtSaleDate, &txtSellingPr})
        field->SetMaxLength(kLongestEntry);

    const std::vector<controls::Control*> inOrder{&Frame3,
                                                  &lblStreet,
                                                  &txtStreet,
                                                  &lblCity,
                                                  &txtCity,
                                                  &cboCity,
                                                  &lblState,
                                                  &txtState,
                                                  &lblZip,
                                                  &txtZip,
                                                  &fraNonAddrFields1,
                                                  &Frame4,
                                                  &lblOrigListDate,
                                                  &txtOrigListDate,
                                                  &lblOrigListPrice,
                                                  &txtOrigListPrice,
                                                  &Frame5,
                                                  &lblCurrentListDate,
                                                  &txtCurrListDate,
                                                  &lblCurrentListPrice,
                                                  &txtCurrListPrice,
                                                  &Frame6,
                                                  &lblContractDate,
                                                  &txtContractDate,
                                                  &lblListCancelDate,
                                                  &txtListCancelDate,
                                                  &Frame2,
                                                  &lblSaleDate,
                                                  &txtSaleDate,
                                                  &lblSalePrice,
                                                  &txtSellingPr,
                                                  &cmdUseOrig,
                                                  &cmdCancel,
                                                  &cmdOK,
                                                  &Label3,
                                                  &txtBaseDate,
                                                  &cboBaseDate,
                                                  &imaBaseDateCal,
                                                  &imaOrigListDate,
                                                  &imaCurrListDate,
                                                  &imaContractDate,
                                                  &imaListCancelDate,
                                                  &imaSaleDate,
                                                  &rtxtInfo};
    for (controls::Control* control : inOrder)
        Add(*control);
}

void frmEdit::OnLoad() {
    // A fault of the loading is not the dialog's to tell: it does not come up then.
    const Running running{rulesRunning_};
    if (common::UpTrim(application_.commandLine).find("/V") != std::string::npos) cboCity.SetVisible(true);
    mNextFocus = &txtOrigListDate;
    ConnectRecord();
    HideDefaults();
    cboBaseDate.SetText(text::DateText(shared_.EffectiveDate));
    mCurrentKey = databook::adogetfield(adoDatabook, "CENTRALKEY");
    address_.StorePlaces();
}

void frmEdit::ConnectRecord() {
    adoDatabook.Connectionstring = shared_.adoDatabook.Connectionstring;
    databook::AdoSelect(adoDatabook, application_.session.table, "", databook::kKeyOrder);
    // Opened when a street is searched for the first time: a large table need not be read twice to be edited.
    adoDatabookSearch.Connectionstring = shared_.adoDatabook.Connectionstring;
    adoDatabookSearch.RecordSource = "SELECT * FROM " + application_.session.table;
    ado::Recordset& records = adoDatabook.Recordset();
    if (records.RecordCount() > 0) {
        records.MoveFirst();
        if (!shared_.CurrentKey.empty()) records.Find(databook::KeyCriterion(shared_.CurrentKey));
    }
    record_.Show();
}

void frmEdit::HideDefaults() {
    const auto hide = [this](controls::TextBox& field) {
        field.SetText("");
        record_.FieldIsStored(field);
    };
    const int year = application_.session.clock.Year();
    for (controls::TextBox* field :
         {&txtOrigListDate, &txtCurrListDate, &txtSaleDate, &txtContractDate, &txtListCancelDate}) {
        const std::optional<text::Date> date = text::TextToDate(field->Text(), year);
        if (date && text::FormatDate(*date, "MM/DD/YYYY") == "01/01/1900") hide(*field);
    }
    for (controls::TextBox* field : {&txtOrigListPrice, &txtCurrListPrice, &txtSellingPr}) {
        if (field->Text() == "0") hide(*field);
    }
}

void frmEdit::OnActivate() {
    const auto focus = [this] { mNextFocus->SetFocus(); };
    Run("The dialog could not do that.", [&] {
        focus();
        mOrigListDate = txtOrigListDate.Text();
        mOrigListPrice = txtOrigListPrice.Text();
        focus();
    });
}

void frmEdit::OnUnload() {
    const Running running{rulesRunning_};
    address_.StorePlaces();
    try {
        main_.ReopenRecordViews();
        // The carrier still holds the date that the dialog opened with: the main form takes it, and the date
        // that was typed meanwhile stays the one in force.
        const common::Date effectiveDate = shared_.EffectiveDate;
        if (IsDateEntry(cboBaseDate.Text())) shared_.cboBaseDate.SetText(cboBaseDate.Text());
        shared_.EffectiveDate = effectiveDate;
    } catch (const Fault& fault) {
        // Told here, so that a dialog that cannot be brought back to the main form closes all the same.
        TellFault(application_.session, "The list of records could not be brought up to date.", {}, fault,
                  {});
    }
    common::SaveWindowPlacement(application_.session, *this);
    adoDatabook.Close();
    adoDatabookSearch.Close();
}

}  // namespace zenvora::records
