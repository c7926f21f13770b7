// What the fields and buttons of the editor do.

#include <utility>

#include "analysis/validity.h"
#include "common/number_helpers.h"
#include "common/primitives.h"
#include "platform/text/date.h"
#include "platform/text/utf8.h"
#include "records/date_entry.h"
#include "records/editor_message.h"
#include "records/frm_edit.h"
#include "records/help_panel.h"

namespace zenvora::records {
namespace {

constexpr double kLeastWholePrice = 1000;
constexpr std::string_view kWhatWasTyped = "What you typed is still there.";

}  // namespace

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

}  // namespace zenvora::records
