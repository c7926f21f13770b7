#pragma once

#include <string>

#include "common/dates.h"
#include "platform/ado/adodc.h"

namespace zenvora::transfer {

/// The audit trail of a market analysis as an addendum takes it: a body, and its continuation. Lines end in
/// CR LF.
struct AuditText {
    std::string part1{};
    std::string part2{};
    int leftOut = 0;  ///< records that belong into the text and are in neither part
};

/// Lists the records that the analysis used, in the order of the Recordset: first the listings, then the
/// sales within the year before the Effective Appraisal Date. Without records both parts are empty.
///
/// A part takes 72 lines. The count of lines has corners that users of the addendum know and that stay: a run
/// of exactly 70 listings drops out of the text, so do the last 72 lines of 142, and with more than 142
/// listings there are no comparables.
///
/// The Recordset comes back to its current record. Faults: 91, 3265 (no column SELECTED), those of the store.
[[nodiscard]] AuditText BuildAuditText(ado::Adodc& adoDatabook, common::Date effectiveDate);

/// "72 records are left out of the audit text."
[[nodiscard]] std::string LeftOutText(int leftOut);

/// Adds the line of the current record to a text.
void AppendAuditLine(std::string& text, ado::Adodc& adoDatabook, common::Date effectiveDate);

}  // namespace zenvora::transfer
