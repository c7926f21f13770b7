// What the main window prints, and the PDF entries of its File menu.

#include "common/fault_text.h"
#include "common/primitives.h"
#include "common/processes.h"
#include "frame/frm_main.h"
#include "printing/calculation_print.h"
#include "printing/pdf_files.h"
#include "transfer/conversation.h"

namespace zenvora::frame {

/// What the audit report asks about KRN.
class frmMain::ReportInKrn final : public printing::OpenReport {
  public:
    explicit ReportInKrn(frmMain& main) : main_(main) {}
    bool IsKrnRunning() override { return common::IsKrnRunning(main_.session_, main_.lstProcesses); }
    std::string ReportName() override {
        main_.TxtDde.SetText("");
        transfer::KrnQueryActiveReports(main_.TxtDde, main_.session_);
        return transfer::FirstCommaField(main_.TxtDde.Text());
    }

  private:
    frmMain& main_;
};

void frmMain::ProbePrinter() {
    printDefaults_.reset();
    if (services_.printer != nullptr) printDefaults_ = printing::ProbePrinter(*services_.printer);
    cmdPrintAudit.SetEnabled(printDefaults_.has_value());
    cmdPrintCalc.SetEnabled(printDefaults_.has_value());
    mnuPdfAudit.SetEnabled(static_cast<bool>(services_.makePdf));
    mnuPdfFit.SetEnabled(static_cast<bool>(services_.makePdf));
    mnuPdfCalc.SetEnabled(static_cast<bool>(services_.mainWindow));
}

printing::AuditReport frmMain::AuditReportOf(printing::OpenReport& openReport, printing::LongText longText) {
    return {session_, adoDatabook, EffectiveDate, session_.settings.currentFile, &openReport, longText};
}

void frmMain::PrintAudit() {
    ReportInKrn krn(*this);
    printing::cmdPrintAudit(AuditReportOf(krn, printing::LongText::RunsOn), *services_.printer,
                            *printDefaults_);
    MovedInRecords();
}

void frmMain::PrintCalculations() {
    if (!services_.mainWindow) return;
    printing::cmdPrintCalc(session_, *services_.mainWindow());
}

void frmMain::SaveAuditPdf() {
    ReportInKrn krn(*this);
    const auto longText = mnuPdfFit.Checked() ? printing::LongText::Shrinks : printing::LongText::RunsOn;
    printing::SaveAuditPdf(AuditReportOf(krn, longText), services_.makePdf, DatabookFolder());
    MovedInRecords();
}

void frmMain::SaveCalculationsPdf() {
    // The document is the page with the figures, wherever the user stands.
    tdgViewer.SetTab(kCalculationsPage);
    if (tdgViewer.Tab() != kCalculationsPage) {
        TellToCheckFirst();
        return;
    }
    printing::SaveCalculationPdf(session_, *services_.mainWindow(), DatabookFolder(),
                                 session_.settings.currentFile);
}

std::string frmMain::DatabookFolder() const {
    return HostText(common::CkRSlash(session_.settings.currentDirectory));
}

}  // namespace zenvora::frame
