// The page "Calculations", and what it has to do with the report that is open in KRN.

#include <algorithm>
#include <array>

#include "analysis/calculation.h"
#include "common/file_helpers.h"
#include "common/processes.h"
#include "frame/frm_main.h"
#include "frame/hourglass.h"
#include "platform/text/utf8.h"

namespace zenvora::frame {

void frmMain::PageChanged(int previous) {
    lblDataSentMsg.SetVisible(false);
    imgDataSentMsg.SetVisible(false);
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
    const Hourglass hourglass(session_.desktop);
    analysis::DoCalculations({.session = session_,
                              .adoDatabook = adoDatabook,
                              .txtBaseDate = txtBaseDate.Text(),
                              .effectiveDate = EffectiveDate},
                             viewer);
}

bool frmMain::ReadReport(bool& mayAskToLaunch) {
    AppraisalLink* const link = services_.link;
    if (link == nullptr || !link->EnsureKrnRunning(mayAskToLaunch)) return false;
    const std::string report = link->ActiveReport();
    txtKrnReportName.SetText(report);
    txtKrnFormList.SetText(link->FormList(report));
    return true;
}

void frmMain::RefreshKrnLink() {
    const bool reachable = ReadReport(askKrnAtStart_);
    cmdTransfer.SetEnabled(reachable);
    fraTransfer.SetEnabled(reachable);
    cmdTransferAudit.SetVisible(reachable);
    cmdTransferCondoCoop.SetVisible(true);
    cmdTransferCondoCoop.SetEnabled(IsCondoForm());
}

bool frmMain::IsCondoForm() const {
    static constexpr std::array<std::string_view, 8> kCondoForms{"ICU,", "ECU,", "ICI,",   "ECI,",
                                                                 "NCU,", "NCE,", "ICUFM,", "ECUFM,"};
    const std::string list = text::Trim(txtKrnFormList.Text());
    return std::any_of(kCondoForms.begin(), kCondoForms.end(),
                       [&](std::string_view form) { return list.find(form) != std::string::npos; });
}

std::string frmMain::ActiveReportName() {
    if (services_.link == nullptr || !common::IsKrnRunning(session_, lstProcesses)) return {};
    std::string drive;
    std::string dir;
    std::string name;
    std::string ext;
    common::ParseFileName(services_.link->ActiveReport(), drive, dir, name, ext);
    return name;
}

}  // namespace zenvora::frame
