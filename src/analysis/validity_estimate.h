#pragma once

#include <string>

#include "platform/ado/adodc.h"

namespace zenvora::analysis {

/// How long a validity run over so many records takes, at 100 records a second: "59 seconds", "1 minute(s) 0
/// second(s)". Whole seconds, the rest is dropped. Faults: none.
[[nodiscard]] std::string ValidityTimeText(long records);

/// The same for the records of a data control. Fault 91: no Recordset.
[[nodiscard]] std::string GetValidityTimeEstimate(ado::Adodc& control);

}  // namespace zenvora::analysis
