#pragma once

#include <string_view>

#include "common/dates.h"
#include "common/session.h"
#include "platform/ado/adodc.h"

/// The validity run: judges records as of the Effective Appraisal Date and writes the verdict into SELECTED.
namespace zenvora::analysis {

/// Judges all records or the current one, repairs missing current list values from the original ones, and
/// writes the verdict: "0" invalid, else by `mode`: "M" and "R" "1", "U" "2", "S" "3" (trimmed, any case).
///
/// A run over all records in mode "M" leaves the flag of a sound record alone when it is 2 or more, so the
/// user's choices last while the record is sound. session.validRecords becomes the number of records whose
/// verdict is not "0". A value that cannot be stored in one record leaves that value as it was, and the run
/// goes on. The Recordset comes back to its current record; without records nothing happens but the reset of
/// the count.
///
/// Faults: 5 (another mode), 91, 3265 (no column SELECTED), 3021 (one record, none current), and those of the
/// disk and of a Databook that cannot be written; the verdicts written until then stay.
void CheckRecordValidity(common::Session& session, ado::Adodc& adoDatabook, common::Date effectiveDate,
                         std::string_view mode, bool allRecords);

}  // namespace zenvora::analysis
