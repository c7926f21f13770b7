// The page "Comps and Listings": grid, key box, date box, the validity run.

#include "analysis/explanation.h"
#include "analysis/selection_toggle.h"
#include "analysis/validity.h"
#include "analysis/validity_estimate.h"
#include "common/hourglass.h"
#include "common/primitives.h"
#include "databook/selection.h"
#include "frame/frm_main.h"
#include "platform/text/number.h"

namespace zenvora::frame {

// ---- the records ----

void frmMain::MovedInRecords() {
    std::string explanation;
    int row = -1;
    if (adoDatabook.HasRecordset()) {
        const ado::Recordset& records = adoDatabook.Recordset();
        row = static_cast<int>(records.Position());
        if (records.RecordCount() > 0 && !records.Eof())
            explanation = analysis::BuildInvalidExplanation(adoDatabook, EffectiveDate);
    }
    lblExplanation.SetCaption(explanation);
    tdbgData.ShowCurrent(row);
}

bool frmMain::FindCurrentKey() {
    ado::Recordset& records = adoDatabook.Recordset();
    const ado::Bookmark before = records.GetBookmark();
    records.Find(databook::KeyCriterion(CurrentKey));
    const bool found = !records.Eof();
    // A key that is in no record moves nothing.
    if (!found) records.SetBookmark(before);
    MovedInRecords();
    return found;
}

void frmMain::ReopenRecordViews() {
    const common::Hourglass hourglass(session_.desktop);
    databook::AdoConnectSelect(adoDatabook, session_.settings.currentDirectory, session_.settings.currentFile,
                               session_.table, databook::kMainFieldList, databook::kKeyOrder);
    ConnectSql();
    tdbgData.Refresh();
    if (CurrentKey.empty()) {
        MovedInRecords();
    } else {
        FindCurrentKey();
    }
}

void frmMain::RebindGrid() {
    tdbgData.Refresh();
    MovedInRecords();
}

void frmMain::ShowRecordCounts() {
    tdgViewer.SetTabCaption(kCompsPage, "Comps and Listings:  " + text::IntegerText(session_.validRecords) +
                                            "/" + text::IntegerText(adoDatabook.Recordset().RecordCount()));
}

void frmMain::RefreshKeyButtons() {
    const bool hasKey = !CurrentKey.empty();
    const long records = adoDatabook.HasRecordset() ? adoDatabook.Recordset().RecordCount() : 0;
    const bool found = hasKey && records > 0 && FindCurrentKey();
    cmdAdd.SetEnabled(hasKey && !found);
    cmdEdit.SetEnabled(found);
    cmdDelete.SetEnabled(found);
    cmdPrintAudit.SetEnabled(records > 0 && printDefaults_.has_value());
    cmdTransferAudit.SetEnabled(records > 0);
}

// ---- the validity run ----

void frmMain::CheckAllRecords(std::string_view mode) {
    {
        const common::Hourglass hourglass(session_.desktop);
        analysis::CheckRecordValidity(session_, adoDatabook, EffectiveDate, mode, true);
    }
    ShowRecordCounts();
    RebindGrid();
}

void frmMain::ConfirmValidityRun() {
    const controls::Answer answer = session_.desktop.Show(
        {.text = "It will take approximately " + analysis::GetValidityTimeEstimate(adoDatabook) +
                 " to check the database. Do you wish to continue?",
         .title = "Warning - Large Database Detected",
         .icon = controls::Icon::Exclamation,
         .buttons = controls::Buttons::YesNoCancel});
    if (answer != controls::Answer::Yes) return;
    tdgViewer.SetTabEnabled(kCalculationsPage, true);
    CheckAllRecords("M");
    cmdChkValidity.SetVisible(false);
}

// ---- the date ----

void frmMain::BaseDateChanged() {
    const std::string& text = txtBaseDate.Text();
    if (!common::IsValidDateEntry(text, session_.clock)) {
        txtBaseDate.SetBackColor(controls::kLightRed);
        return;
    }
    txtBaseDate.SetBackColor(controls::kWhite);
    EffectiveDate = common::ConvDate(std::string_view(text), session_.clock);
    if (adoDatabook.HasRecordset()) CheckAllRecords("M");
}

void frmMain::BaseDateLeft() {
    const std::string& text = txtBaseDate.Text();
    if (common::IsDate(text, session_.clock))
        txtBaseDate.SetText(text::DateText(common::ConvDate(std::string_view(text), session_.clock)));
}

void frmMain::BaseDatePicked() {
    if (common::IsDate(cboBaseDate.Text(), session_.clock)) txtBaseDate.SetText(cboBaseDate.Text());
}

// ---- key box and grid ----

void frmMain::CentralKeyChanged() {
    CurrentKey = common::UpTrim(txtCentralKey.Text());
    RefreshKeyButtons();
}

void frmMain::GridRowChosen() {
    const int row = tdbgData.Row();
    if (row < 0 || row >= tdbgData.RowCount()) return;
    ado::Recordset& records = adoDatabook.Recordset();
    if (records.Position() != row) {
        records.MoveTo(row);
        MovedInRecords();
    }
    if (const std::optional<std::string> key = tdbgData.Value(row, analysis::kGridKey))
        txtCentralKey.SetText(*key);
}

void frmMain::GridDblClick() {
    const int row = tdbgData.Row();
    if (row < 0 || !tdbgData.Value(row, analysis::kGridFlag)) return;
    if (tdbgData.Col() > analysis::kGridFlag) {
        cmdEdit.Click();
        return;
    }
    if (analysis::ToggleSelection(session_, adoDatabook)) ReopenRecordViews();
}

}  // namespace zenvora::frame
