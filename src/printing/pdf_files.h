#pragma once

#include <filesystem>
#include <string>

#include "platform/page/form_print.h"
#include "platform/page/pdf.h"
#include "printing/audit_report.h"

/// The printouts as PDF files, which need no printer. A file that is replaced is kept beside it as NAME.bak,
/// and a file is there only when it is whole.
namespace zenvora::printing {

/// Writes the audit report to a PDF file. Faults: as PrintAuditReport; 57, 61, 70, 75, 76 of the file, which
/// is then as it was.
AuditCounts WriteAuditPdf(const AuditReport& report, const page::PdfMaker& makePdf,
                          const std::filesystem::path& file);

/// The menu entry "Audit Report as PDF...": asks for the file, offers `directory` (a host path) and the
/// Databook's name, and writes the report. Cancelled: nothing happens. A failure is told to the user, for a
/// file that silently is not there would be missed only when it is needed. Faults: none.
void SaveAuditPdf(const AuditReport& report, const page::PdfMaker& makePdf, const std::string& directory);

/// The menu entry "Calculations as PDF...": the same for the main window as it stands.
void SaveCalculationPdf(common::Session& session, page::FormPrint& mainWindow, const std::string& directory,
                        const std::string& databookName);

}  // namespace zenvora::printing
