#pragma once

#include <string>

#include "common/dates.h"
#include "common/session.h"
#include "platform/ado/adodc.h"
#include "platform/page/printer.h"
#include "printing/audit_row.h"
#include "printing/print_defaults.h"

/// The Market Conditions Audit Report: the records behind the figures of Form 1004MC, on landscape pages.
namespace zenvora::printing {

/// What the report asks about the appraisal program. A fault ends the report.
class OpenReport {
  public:
    virtual ~OpenReport() = default;
    /// True when KRN.EXE is among the running processes.
    [[nodiscard]] virtual bool IsKrnRunning() = 0;
    /// Name of the report that is open in it, with or without a path; empty when none is.
    [[nodiscard]] virtual std::string ReportName() = 0;
};

/// What a report is made of. The records are those of the main field list, judged and in key order.
struct AuditReport {
    common::Session& session;
    ado::Adodc& adoDatabook;
    common::Date effectiveDate = 0;
    std::string databookName{};        ///< file name of the Databook as the program holds it, in upper case
    OpenReport* openReport = nullptr;  ///< nothing: as if the appraisal program were not running
    LongText longText = LongText::RunsOn;
};

/// What a report came to.
struct AuditCounts {
    long listings = 0;
    long comps = 0;
    int pages = 1;
};

/// Prints the report: the records with SELECTED 1 or 3 that have no sale date or one after the effective
/// date under "Listings:", those sold in the year before it under "Comps:". A record of which neither holds
/// is left out.
///
/// While KRN runs the user is asked whether the name of its report goes into the title. The Recordset comes
/// back to its current record, also after a fault. Faults: 482 (the printer), 91, those of reading and of the
/// appraisal program; the document is then neither ended nor abandoned.
AuditCounts PrintAuditReport(const AuditReport& report, page::Printer& printer,
                             const PrintDefaults& defaults);

/// The button Print of the first page: the report as above. Any failure passes without a message; one of the
/// printer abandons the document. Faults: none.
void cmdPrintAudit(const AuditReport& report, page::Printer& printer, const PrintDefaults& defaults);

}  // namespace zenvora::printing
