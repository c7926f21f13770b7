#pragma once

#include <array>
#include <string_view>

#include "analysis/day_rules.h"

/// The three periods of Form 1004MC.
namespace zenvora::analysis {

/// One period column of the form. The days are counted back from the Effective Appraisal Date and both belong
/// to the period. They are a table and no formula of the offset: the form's months have no day bounds of
/// their own, and the three columns together cover 366 days without a gap.
struct PeriodColumn {
    int column;             ///< place on the form, 0 to 2
    int periodOffset;       ///< the key of the column: days from its last day to the effective date
    int firstDayBack;       ///< days from its first day to the effective date
    int lastDayBack;        ///< days from its last day to the effective date
    int months;             ///< divisor of the absorption rate
    std::string_view name;  ///< heading on the screen
};

inline constexpr std::array<PeriodColumn, 3> kPeriodColumns{{
    {0, 182, 365, 182, 6, "Prior 7-12 Months"},
    {1, 91, 181, 91, 3, "Prior 4-6 Months"},
    {2, 0, 90, 0, 3, "Current-3 Months"},
}};

/// First and last day of a period, both inside.
struct Period {
    Date start = 0;
    Date end = 0;
};

/// The column of a period offset: 0, 91 or 182. Fault 5: any other.
[[nodiscard]] const PeriodColumn& ColumnOfOffset(int periodOffset);

/// The days of a period as seen from the Effective Appraisal Date. Fault 5: an offset other than 0, 91, 182.
[[nodiscard]] Period PeriodOfOffset(int periodOffset, Date effective);

}  // namespace zenvora::analysis
