#include "records/frm_edit.h"

#include <optional>
#include <utility>
#include <vector>

#include "analysis/validity.h"
#include "common/error_rule.h"
#include "common/number_helpers.h"
#include "common/placement.h"
#include "common/primitives.h"
#include "databook/field_access.h"
#include "databook/selection.h"
#include "platform/text/date.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"
#include "records/date_entry.h"
#include "records/editor_message.h"
#include "records/help_panel.h"

namespace zenvora::records {
namespace {

constexpr std::string_view kNoDate = "1/1/1900";
constexpr double kLeastWholePrice = 1000;
constexpr std::string_view kWhatWasTyped = "What you typed is still there.";

/// Counts the rules that run, so that only the outermost one tells of a fault.
class Running {
  public:
    explicit Running(int& rules) : rules_(rules) { ++rules_; }
    ~Running() { --rules_; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

  private:
    int& rules_;
};

double PriceOf(const std::string& text) {
    return text::NumericValue(text::TrimView(text)).value_or(0);
}

}  // namespace

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

// ---- rules ----

controls::TextBox* frmEdit::FieldOf(const Fault& fault) {
    const std::string& column = fault.place.column;
    if (fault.number == fault::kDuplicateKey || column == "CENTRALKEY") return &txtStreet;
    if (column == "SALEFLD") return &txtSaleDate;
    if (column == "PRICEFLD") return &txtSellingPr;
    return record_.BoxOf(column);
}

void frmEdit::Run(std::string_view what, const std::function<void()>& rule) {
    if (rulesRunning_ > 0) return rule();
    const Running running{rulesRunning_};
    try {
        rule();
    } catch (const Fault& fault) {
        TellFault(application_.session, what, {}, fault, kWhatWasTyped);
    }
}

std::function<void()> frmEdit::Rule(std::function<void()> rule) {
    return [this, rule = std::move(rule)] { Run("The dialog could not do that.", rule); };
}

void frmEdit::SetFieldRules(controls::TextBox& field, void (FieldAdvice::*changed)(),
                            std::string_view helpFile) {
    field.OnChange(Rule([this, &field, changed] {
        record_.FieldChanged(field);
        (advice_.*changed)();
    }));
    field.OnGotFocus(Rule([this, &field, helpFile] { EnterField(field, helpFile); }));
}

void frmEdit::SetPicture(controls::Image& picture, controls::TextBox& field, controls::Control& next,
                         std::string_view title, bool boundIsTold) {
    picture.SetPicture("calendar");
    picture.SetCaption("Calendar: " + std::string(title));
    picture.OnClick(Rule([this, &field, &next, title, boundIsTold] {
        mNextFocus = &next;
        const std::string& listed = txtOrigListDate.Text();
        GetCalandarDate(application_, field,
                        boundIsTold && IsDateEntry(listed)
                            ? std::string(title) + " must be on or after " + listed
                            : std::string(title) + ":");
    }));
}

void frmEdit::SetRules() {
    SetFieldRules(txtOrigListDate, &FieldAdvice::OrigListDateChanged, "OLD.rtf");
    SetFieldRules(txtOrigListPrice, &FieldAdvice::OrigListPriceChanged, "OLP.rtf");
    SetFieldRules(txtCurrListDate, &FieldAdvice::CurrListDateChanged, "CLD.rtf");
    SetFieldRules(txtCurrListPrice, &FieldAdvice::CurrListPriceChanged, "CLP.rtf");
    SetFieldRules(txtContractDate, &FieldAdvice::ContractDateChanged, "CD.rtf");
    SetFieldRules(txtListCancelDate, &FieldAdvice::ListCancelDateChanged, "LCD.rtf");
    SetFieldRules(txtSaleDate, &FieldAdvice::SaleDateChanged, "SD.rtf");
    SetFieldRules(txtSellingPr, &FieldAdvice::SellingPrChanged, "SP.rtf");
    for (controls::TextBox* field :
         {&txtOrigListDate, &txtCurrListDate, &txtContractDate, &txtListCancelDate, &txtSaleDate})
        field->OnLostFocus(Rule([this, field] { LeaveDate(*field); }));
    for (controls::TextBox* field : {&txtOrigListPrice, &txtCurrListPrice, &txtSellingPr})
        field->OnLostFocus(Rule([this, field] { LeavePrice(*field); }));

    const auto clears = [this](controls::TextBox& field) {
        return Rule([&field] {
            field.SetText("");
            field.SetFocus();
        });
    };
    lblOrigListDate.OnDblClick(clears(txtOrigListDate));
    lblOrigListPrice.OnDblClick(clears(txtOrigListPrice));
    // The one label that a single click will do for; users are used to it.
    lblCurrentListDate.OnClick(clears(txtCurrListDate));
    lblCurrentListPrice.OnDblClick(clears(txtCurrListPrice));
    lblContractDate.OnDblClick(clears(txtContractDate));
    lblListCancelDate.OnDblClick(clears(txtListCancelDate));
    lblSaleDate.OnDblClick(clears(txtSaleDate));
    lblSalePrice.OnDblClick(clears(txtSellingPr));
    fraNonAddrFields1.OnDblClick(Rule([this] {
        for (controls::TextBox* field :
             {&txtOrigListDate, &txtOrigListPrice, &txtCurrListDate, &txtCurrListPrice, &txtContractDate,
              &txtListCancelDate, &txtSaleDate, &txtSellingPr})
            field->SetText("");
    }));

    for (controls::TextBox* field : {&txtStreet, &txtCity, &txtState, &txtZip}) {
        field->OnClick(Rule([this] { ClearPanel(); }));
        field->OnGotFocus(Rule([this] { SelectFieldText(); }));
    }
    txtStreet.OnChange(Rule([this] { record_.FieldChanged(txtStreet); }));
    txtStreet.OnLostFocus([this] {
        Run("The street could not be compared with those of the other records.",
            [this] { address_.StreetLeft(); });
    });
    txtCity.OnChange(Rule([this] {
        record_.FieldChanged(txtCity);
        address_.PlaceChanged();
    }));
    txtState.OnChange(Rule([this] {
        record_.FieldChanged(txtState);
        address_.StateChanged();
    }));
    txtZip.OnChange(Rule([this] {
        record_.FieldChanged(txtZip);
        address_.PlaceChanged();
    }));
    for (controls::TextBox* field : {&txtCity, &txtState, &txtZip})
        field->OnLostFocus(Rule([this] { address_.StorePlaces(); }));
    cboCity.OnClick(Rule([this] {
        address_.CityPicked();
        address_.StorePlaces();
    }));

    SetPicture(imaOrigListDate, txtOrigListDate, txtOrigListPrice, "Original Listing Date", false);
    SetPicture(imaCurrListDate, txtCurrListDate, txtCurrListPrice, "Current Listing Date", true);
    SetPicture(imaContractDate, txtContractDate, txtListCancelDate, "Contract Date", true);
    SetPicture(imaListCancelDate, txtListCancelDate, txtSaleDate, "Listing Cancel Date", true);
    SetPicture(imaSaleDate, txtSaleDate, txtSellingPr, "Sale Date", true);
    imaBaseDateCal.SetPicture("calendar");
    imaBaseDateCal.SetCaption("Calendar: Effective Appraisal Date");
    imaBaseDateCal.OnClick(Rule([this] {
        GetCalandarDate(application_, txtBaseDate, "Effective Appraisal Date:");
        txtBaseDate.SetFocus();
    }));

    cboBaseDate.OnChange(Rule([this] {
        if (common::IsDate(cboBaseDate.Text(), application_.session.clock))
            txtBaseDate.SetText(cboBaseDate.Text());
    }));
    cboBaseDate.OnGotFocus(Rule([this] { cboBaseDate.SelectAll(); }));
    cboBaseDate.OnLostFocus(Rule([this] {
        std::string text = cboBaseDate.Text();
        if (common::IsDate(text, application_.session.clock))
            cboBaseDate.SetText(text::DateText(common::ConvDate(text, application_.session.clock)));
    }));
    txtBaseDate.OnChange([this] {
        Run("The records could not be checked against this Effective Appraisal Date.",
            [this] { BaseDateChanged(); });
    });
    txtBaseDate.OnGotFocus(Rule([this] { ClearPanel(); }));

    cmdUseOrig.OnClick(Rule([this] {
        txtCurrListDate.SetText(txtOrigListDate.Text());
        txtCurrListPrice.SetText(txtOrigListPrice.Text());
    }));
    cmdOK.OnClick([this] { Save(); });
    cmdCancel.OnClick(Rule([this] { Cancel(); }));
}

bool frmEdit::IsDateEntry(const std::string& text) const {
    return common::IsValidDateEntry(text, application_.session.clock);
}

void frmEdit::BaseDateChanged() {
    if (!IsDateEntry(txtBaseDate.Text())) return txtBaseDate.SetBackColor(kError);
    txtBaseDate.SetBackColor(kGood);
    shared_.EffectiveDate =
        common::ConvDate(std::string_view{txtBaseDate.Text()}, application_.session.clock);
    analysis::CheckRecordValidity(application_.session, shared_.adoDatabook, shared_.EffectiveDate, "M",
                                  true);
    main_.ShowRecordCounts();
    advice_.AllChanged();
}

void frmEdit::SelectFieldText() {
    if (auto* const field = dynamic_cast<controls::TextBox*>(ActiveControl())) field->SelectAll();
}

void frmEdit::EnterField(controls::TextBox& field, std::string_view helpFile) {
    SelectFieldText();
    mPreviousText = field.Text();
    ShowHelpText(application_.session, rtxtInfo, helpFile);
    advice_.ShowFieldColor(field);
}

void frmEdit::LeaveDate(controls::TextBox& field) {
    const std::string& text = field.Text();
    if (!text.empty() && !IsDateEntry(text) && IsDateEntry(mPreviousText)) field.SetText(mPreviousText);
}

void frmEdit::LeavePrice(controls::TextBox& field) {
    if (!common::IsValidPriceEntry(field.Text())) {
        if (!field.Text().empty() && common::IsValidPriceEntry(mPreviousText)) field.SetText(mPreviousText);
        return;
    }
    const bool isShort =
        common::CDouble(field.Text()) < kLeastWholePrice && field.Text().find('.') == std::string::npos;
    // Trimmed, because zeroes behind a blank would make it no number at all.
    if (isShort && application_.session.settings.addZeroes) field.SetText(text::Trim(field.Text()) + "000");
    std::string text = field.Text();
    field.SetText(common::PriceDigits(text));
}

void frmEdit::ClearPanel() {
    rtxtInfo.SetText("");
    rtxtInfo.SetBackColor(kPanelNormal);
}

// ---- the life of the dialog ----

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

bool frmEdit::HasRecords() {
    return adoDatabook.HasRecordset() && adoDatabook.Recordset().RecordCount() > 0;
}

void frmEdit::TellOfSaving(const Fault& fault) {
    controls::TextBox* const field = FieldOf(fault);
    TellFault(application_.session, "The record was not saved.",
              field == nullptr ? std::string_view{} : record_.TitleOf(*field), fault,
              "What you typed is still there. Mend it and save again, or press Cancel.");
    if (field != nullptr) field->SetFocus();
}

void frmEdit::ComeBackFrom(const BoundRecord::Typed& typed) {
    record_.Restore(typed);
    try {
        // A part of it may be stored: the next validity run must not judge, and repair, by what was.
        main_.ReopenRecordViews();
    } catch (const Fault&) {
        // The fault that broke the save off is the one to be told.
        return;
    }
}

void frmEdit::Save() {
    // As a press with the mouse does: the field that has the focus is left first, with its rules.
    cmdOK.SetFocus();
    const Running running{rulesRunning_};
    const BoundRecord::Typed typed = record_.Keep();
    const std::string key = shared_.CurrentKey;
    try {
        if (SaveRecord()) return;
        shared_.CurrentKey = key;
        ComeBackFrom(typed);
    } catch (const Fault& fault) {
        shared_.CurrentKey = key;
        ComeBackFrom(typed);
        TellOfSaving(fault);
    }
}

bool frmEdit::SaveRecord() {
    common::Session& session = application_.session;
    struct Column {
        controls::TextBox& field;
        std::string_view column;
    };
    std::vector<std::function<void()>> steps;
    if (adoDatabook.Recordset().RecordCount() > 0) {
        steps.emplace_back([this] {
            if (txtOrigListDate.Text().empty() && IsDateEntry(mOrigListDate))
                txtOrigListDate.SetText(mOrigListDate);
        });
        steps.emplace_back([this] {
            if (!IsDateEntry(txtOrigListDate.Text())) txtOrigListDate.SetText(std::string(kNoDate));
        });
        for (const Column& date :
             {Column{txtCurrListDate, "LASTLISTDATE"}, Column{txtSaleDate, "SALEDATE"},
              Column{txtContractDate, "CONTRACTDATE"}, Column{txtListCancelDate, "LISTCANCELDATE"}}) {
            steps.emplace_back([this, date] {
                if (!IsDateEntry(date.field.Text())) record_.Write(date.column, kNoDate);
            });
        }
        steps.emplace_back([this] {
            if (txtOrigListPrice.Text().empty() && common::IsValidPriceEntry(mOrigListPrice))
                txtOrigListPrice.SetText(mOrigListPrice);
        });
        for (const Column& price :
             {Column{txtOrigListPrice, "ORIGLISTPRICE"}, Column{txtCurrListPrice, "LASTLISTPRICE"},
              Column{txtSellingPr, "SELLINGPR"}}) {
            steps.emplace_back([this, &session, price] {
                if (common::IsValidPriceEntry(price.field.Text())) return;
                databook::AdoSetFieldDouble(session, adoDatabook, 0, price.column);
                record_.Written(price.column);
            });
        }
        steps.emplace_back([this] {
            if (txtStreet.Text().empty()) txtStreet.SetText(databook::adogetfield(adoDatabook, "CENTRALKEY"));
        });
        steps.emplace_back([this] {
            if (record_.IsPending()) record_.Update();
        });
        // The mirror columns take good values only: an emptied sale leaves them as they were.
        steps.emplace_back([this, &session] {
            if (IsDateEntry(txtSaleDate.Text()))
                databook::AdoSetFieldDate(session, adoDatabook, txtSaleDate.Text(), "SALEFLD");
        });
        steps.emplace_back([this, &session] {
            if (common::IsValidPriceEntry(txtSellingPr.Text()))
                databook::AdoSetFieldDouble(session, adoDatabook, PriceOf(txtSellingPr.Text()), "PRICEFLD");
        });
        steps.emplace_back([this, &session] {
            const std::string key = common::UpTrim(mCurrentKey);
            if (databook::adogetfield(adoDatabook, "CENTRALKEY") == key) return;
            databook::AdoSetField(session, adoDatabook, key, "CENTRALKEY");
            shared_.CurrentKey = key;
        });
    }
    steps.emplace_back([this] {
        if (record_.IsPending()) record_.Update();
    });
    steps.emplace_back([this] { Unload(); });
    for (const std::function<void()>& step : steps) {
        if (common::WithErrorRule(session, "cmdOK", step) == common::StatementEnd::LeaveProcedure)
            return false;
    }
    return true;
}

void frmEdit::Cancel() {
    if (HasRecords() && record_.IsPending()) record_.Cancel();
    Unload();
}

void frmEdit::OnQueryUnload(bool& cancel) {
    if (!HasRecords()) return;
    const Running running{rulesRunning_};
    const BoundRecord::Typed typed = record_.Keep();
    const auto update = [this] {
        if (record_.IsPending()) record_.Update();
    };
    try {
        cancel = common::WithErrorRule(application_.session, "Form_QueryUnload", update) ==
                 common::StatementEnd::LeaveProcedure;
        if (cancel) ComeBackFrom(typed);
    } catch (const Fault& fault) {
        cancel = true;
        ComeBackFrom(typed);
        TellOfSaving(fault);
    }
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
