// What becomes of the record when the editor is closed by cmdOK, cmdCancel or its close box.

#include <vector>

#include "common/error_rule.h"
#include "common/primitives.h"
#include "databook/field_access.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"
#include "records/editor_message.h"
#include "records/frm_edit.h"

namespace zenvora::records {
namespace {

constexpr std::string_view kNoDate = "1/1/1900";

double PriceOf(const std::string& text) {
    return text::NumericValue(text::TrimView(text)).value_or(0);
}

}  // namespace

bool frmEdit::HasRecords() {
    return adoDatabook.HasRecordset() && adoDatabook.Recordset().RecordCount() > 0;
}

controls::TextBox* frmEdit::FieldOf(const Fault& fault) {
    const std::string& column = fault.place.column;
    if (fault.number == fault::kDuplicateKey || column == "CENTRALKEY") return &txtStreet;
    if (column == "SALEFLD") return &txtSaleDate;
    if (column == "PRICEFLD") return &txtSellingPr;
    return record_.BoxOf(column);
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

}  // namespace zenvora::records
