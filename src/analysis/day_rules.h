#pragma once

#include "platform/text/date.h"

/// Comparisons of date numbers, as the period rules and the validity rules make them. Faults: none.
namespace zenvora::analysis {

using text::Date;

/// Whole days from `from` to `to`, negative when `to` is the earlier one; times of day do not count.
[[nodiscard]] inline int DayDiff(Date from, Date to) noexcept {
    return static_cast<int>(text::DayPart(to) - text::DayPart(from));
}

/// low <= date <= high, times of day included.
[[nodiscard]] inline bool IsBetweenDates(Date low, Date date, Date high) noexcept {
    return low <= date && date <= high;
}

/// `a` is later than `b` by at least one whole day.
[[nodiscard]] inline bool IsDayAfter(Date a, Date b) noexcept {
    return DayDiff(b, a) >= 1;
}

/// `a` is earlier than `b` by at least one whole day.
[[nodiscard]] inline bool IsDayBefore(Date a, Date b) noexcept {
    return DayDiff(a, b) >= 1;
}

}  // namespace zenvora::analysis
