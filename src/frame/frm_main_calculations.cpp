// The page "Calculations", and what it has to do with the report that is open in KRN.

#include "analysis/calculation.h"
#include "common/file_helpers.h"
#include "common/hourglass.h"
#include "common/primitives.h"
#include "common/processes.h"
#include "frame/fault_messages.h"
#include "frame/frm_main.h"
#include "transfer/conversation.h"
#include "transfer/frm_text.h"
#include "transfer/launch_krn.h"

namespace zenvora::frame {
namespace {

constexpr std::string_view kEffectiveDateField = "OFFSCRN|11|2";

}  // namespace

void frmMain::PageChanged(int previous) {
    lblDataSentMsg.SetVisible(false);
    imgDataSentMsg.SetVisible(false);
    lblTransferStatus.SetCaption("");
    lblTransferStatus.SetToolTipText("");
    if (previous != kCompsPage || tdgViewer.Tab() == kCompsPage) return;
    txtBaseDateT2.SetText(text::DateText(EffectiveDate));
    DoCalculations();
    RefreshKrnLink();
}

void frmMain::DoCalculations() {
    if (!adoDatabook.HasRecordset()) {
        analysis::FillWithZeroes(results);
        return;
    }
    const common::Hourglass hourglass(session_.desktop);
    analysis::DoCalculations({.session = session_,
                              .adoDatabook = adoDatabook,
                              .txtBaseDate = txtBaseDate.Text(),
                              .effectiveDate = EffectiveDate},
                             viewer);
}

// ---- the report that is open in KRN ----

bool frmMain::ReadReport(bool& mayAskToLaunch) {
    linkFault_.reset();
    try {
        const auto launch = [this] { transfer::LaunchKrn(session_); };
        if (!transfer::EnsureKrnRunning(TxtDde, session_, mayAskToLaunch, launch)) return false;
        const std::string report = transfer::FirstCommaField(TxtDde.Text());
        txtKrnReportName.SetText(report);
        transfer::KrnListForms(TxtDde, session_, report);
        txtKrnFormList.SetText(TxtDde.Text());
        return true;
    } catch (const Fault& fault) {
        // A program that hangs or goes away is one that is not there: it must not keep the user from his
        // work.
        linkFault_ = fault;
        return false;
    }
}

std::string frmMain::ReportedDate() {
    // Who has just hung would keep the user waiting a second time.
    if (linkFault_) return {};
    try {
        return transfer::KrnGetFieldInfo(TxtDde, session_, common::UpTrim(txtKrnReportName.Text()),
                                         kEffectiveDateField);
    } catch (const Fault& fault) {
        linkFault_ = fault;
        return {};
    }
}

void frmMain::RefreshKrnLink() {
    const bool reachable = ReadReport(askKrnAtStart_);
    cmdTransfer.SetEnabled(reachable);
    fraTransfer.SetEnabled(reachable);
    cmdTransferAudit.SetVisible(reachable);
    cmdTransferCondoCoop.SetVisible(true);
    cmdTransferCondoCoop.SetEnabled(IsCondoForm());
}

void frmMain::CheckForAppraisal() {
    RefreshKrnLink();
    std::optional<Fault> fault = linkFault_;
    SetUpDate(txtBaseDate, cboBaseDate);
    // Of a report that is there the date is missed: today has taken its place. Where there is none, asking
    // for its date could only fail.
    if (cmdTransfer.Enabled()) fault = linkFault_;
    if (fault) TellFault(session_, "The appraisal software could not be asked for its report.", *fault);
}

bool frmMain::IsCondoForm() const {
    return transfer::IsCondoForm(txtKrnFormList.Text());
}

std::string frmMain::ActiveReportName() {
    if (!common::IsKrnRunning(session_, lstProcesses)) return {};
    try {
        TxtDde.SetText("");
        transfer::KrnQueryActiveReports(TxtDde, session_);
    } catch (const Fault& fault) {
        // It is only a name to offer: a dialog must not stay away for it.
        linkFault_ = fault;
        return {};
    }
    std::string drive;
    std::string dir;
    std::string name;
    std::string ext;
    common::ParseFileName(transfer::FirstCommaField(TxtDde.Text()), drive, dir, name, ext);
    return name;
}

// ---- the transfers ----

void frmMain::TransferFields(std::span<const transfer::FieldRow> fields) {
    const common::Hourglass hourglass(session_.desktop);
    transfer::TransferOutcome outcome;
    try {
        transfer::TransferFields(TxtDde, session_, results, fields, outcome);
    } catch (const Fault&) {
        ShowTransferOutcome(outcome);
        throw;
    }
    transfer::ShowDataSent(outcome, lblDataSentMsg, imgDataSentMsg);
    ShowTransferOutcome(outcome);
}

void frmMain::TransferAuditTrail() {
    transfer::frmText dialog(session_, TxtDde.GetCarrier(), adoDatabook, EffectiveDate);
    dialog.Show(controls::Modality::Modal);
    Program().UnloadFormByName("frmText");
    // Who left without sending still sees what became of the last transfer.
    if (dialog.Outcome().end != transfer::TransferOutcome::End::NotBegun)
        ShowTransferOutcome(dialog.Outcome());
}

void frmMain::ShowTransferOutcome(const transfer::TransferOutcome& outcome) {
    lblTransferStatus.SetCaption(transfer::StatusText(outcome));
    lblTransferStatus.SetToolTipText(lblTransferStatus.Caption());
}

}  // namespace zenvora::frame
