#include "analysis/validity_estimate.h"

#include "platform/text/number.h"

namespace zenvora::analysis {

std::string ValidityTimeText(long records) {
    const long seconds = records / 100;
    if (seconds < 60) return text::IntegerText(seconds) + " seconds";
    return text::IntegerText(seconds / 60) + " minute(s) " + text::IntegerText(seconds % 60) + " second(s)";
}

std::string GetValidityTimeEstimate(ado::Adodc& control) {
    return ValidityTimeText(control.Recordset().RecordCount());
}

}  // namespace zenvora::analysis
