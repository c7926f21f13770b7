#include "records/edit_record.h"

#include <string>

#include "analysis/validity.h"
#include "common/primitives.h"
#include "databook/field_access.h"
#include "platform/fault.h"
#include "platform/text/date.h"
#include "records/editor_message.h"
#include "records/frm_edit.h"

namespace zenvora::records {
namespace {

void CheckAllRecords(const Application& application, MainForm& main) {
    const SharedParts shared = main.Shared();
    analysis::CheckRecordValidity(application.session, shared.adoDatabook, shared.EffectiveDate, "M", true);
}

/// Stores a record of the key box. A record that is refused leaves nothing pending.
void AppendRecord(MainForm& main) {
    const SharedParts shared = main.Shared();
    ado::Recordset& records = shared.adoDatabook.Recordset();
    try {
        records.AddNew();
        records.SetValue("CENTRALKEY", shared.CurrentKey);
        records.SetValue("ADDRESS", shared.txtCentralKey.Text());
        records.Update();
    } catch (const Fault&) {
        records.CancelUpdate();
        throw;
    }
}

/// The dialog, from its loading to its end; `atEnd` runs while it may still be loaded.
template <class AtEnd>
void ShowDialog(const Application& application, MainForm& main, const AtEnd& atEnd) {
    const SharedParts shared = main.Shared();
    frmEdit dialog{application, main};
    for (int entry = 0; entry < 2 && shared.cboBaseDate.ListCount() >= 2; ++entry)
        dialog.cboBaseDate.AddItem(shared.cboBaseDate.List(entry));
    dialog.Show(controls::Modality::Modal);
    atEnd();
    application.session.forms.UnloadFormByName("frmEdit");
}

void AddRecord(const Application& application, MainForm& main) {
    AppendRecord(main);
    main.ReopenRecordViews();
    ShowDialog(application, main, [] {});
    CheckAllRecords(application, main);
    main.DoCalculations();
    main.Shared().txtCentralKey.SetFocus();
}

void ChangeRecord(const Application& application, MainForm& main) {
    ShowDialog(application, main, [&] { CheckAllRecords(application, main); });
    const SharedParts shared = main.Shared();
    // A copy, because the key box sets CurrentKey itself.
    const std::string key = shared.CurrentKey;
    shared.txtCentralKey.SetText(key);
    shared.txtCentralKey.SetFocus();
}

void BringUpToDate(const Application& application, MainForm& main) {
    main.ReopenRecordViews();
    main.ShowRecordCounts();
    CheckAllRecords(application, main);
    main.ShowRecordCounts();
    main.RefreshKeyButtons();
    const SharedParts shared = main.Shared();
    const std::string effectiveDate = text::DateText(shared.EffectiveDate);
    if (shared.txtBaseDate.Text() != effectiveDate) shared.txtBaseDate.SetText(effectiveDate);
}

}  // namespace

void EditRecord(const Application& application, MainForm& main, std::string_view mode) {
    const std::string kind = common::UpTrim(mode);
    const SharedParts shared = main.Shared();
    shared.CurrentKey = common::UpTrim(shared.txtCentralKey.Text());
    try {
        if (kind == "ADD") {
            AddRecord(application, main);
        } else if (kind != "RENAME") {
            ChangeRecord(application, main);
        }
        BringUpToDate(application, main);
    } catch (const Fault& fault) {
        const std::string what =
            (kind == "ADD" ? "Adding \"" : "Changing \"") + shared.CurrentKey + "\" did not come to its end.";
        const std::string& column = fault.place.column;
        const bool isStreet = column == "CENTRALKEY" || column == "ADDRESS";
        TellFault(application.session, what, isStreet ? "Street" : "", fault, {});
    }
}

void DeleteRecord(const Application& application, MainForm& main) {
    const SharedParts shared = main.Shared();
    controls::MessageBox question;
    question.text = "Delete '" + shared.txtCentralKey.Text() + "' Are you sure?";
    question.title = "DELETE";
    question.icon = controls::Icon::Critical;
    question.buttons = controls::Buttons::YesNo;
    if (application.session.desktop.Show(question) != controls::Answer::Yes) return;
    try {
        ado::Recordset& records = shared.adoDatabook.Recordset();
        records.Delete();
        std::string key;
        if (records.RecordCount() > 0) {
            records.MoveNext();
            if (records.Eof()) records.MovePrevious();
            key = databook::adogetfield(shared.adoDatabook, "CENTRALKEY");
        }
        shared.txtCentralKey.SetText(key);
        shared.CurrentKey = key;
        main.ReopenRecordViews();
        main.RebindGrid();
        main.RefreshKeyButtons();
    } catch (const Fault& fault) {
        TellFault(application.session,
                  "Deleting \"" + shared.txtCentralKey.Text() + "\" did not come to its end.", {}, fault, {});
    }
}

}  // namespace zenvora::records
