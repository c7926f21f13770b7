#include "analysis/period.h"

#include <string>

#include "platform/fault.h"

namespace zenvora::analysis {

const PeriodColumn& ColumnOfOffset(int periodOffset) {
    for (const PeriodColumn& column : kPeriodColumns) {
        if (column.periodOffset == periodOffset) return column;
    }
    throw Fault{fault::kInvalidCall, "No period of the form begins " + std::to_string(periodOffset) +
                                         " days before the effective date."};
}

Period PeriodOfOffset(int periodOffset, Date effective) {
    const PeriodColumn& column = ColumnOfOffset(periodOffset);
    return {effective - column.firstDayBack, effective - column.lastDayBack};
}

}  // namespace zenvora::analysis
