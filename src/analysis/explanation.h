#pragma once

#include <string>

#include "common/dates.h"
#include "common/session.h"
#include "platform/ado/adodc.h"

namespace zenvora::analysis {

/// Why the current record is not in order as of the Effective Appraisal Date; empty when nothing is wrong,
/// and when there are no records. The texts stand one behind the other, trailing blanks included.
///
/// It reads the fields as they stand now and takes prices as stored, not in whole dollars, so it may differ
/// from the verdict of the last run. A position before the first record moves to the first, one behind the
/// last to the last. Faults: 91.
[[nodiscard]] std::string BuildInvalidExplanation(ado::Adodc& adoDatabook, common::Date effectiveDate);

}  // namespace zenvora::analysis
