#include "analysis/record_status.h"

#include <algorithm>

#include "common/dates.h"

namespace zenvora::analysis {

bool IsMissingDate(Date date, const shell::Clock& clock) {
    return common::IsDayZero(date, clock);
}

// The days of the 1900s keep their year in the normalized form whatever the clock shows.
PresentDates::PresentDates(const shell::Clock& clock)
    : end_(text::DayNumber(std::max(clock.Year(), 1999), 12, 31).value_or(text::kLastDate) + 1) {}

RecordStatus GetRecordStatus(Date contractDate, Date cancelDate, Date saleDate,
                             const PresentDates& present) noexcept {
    if (present.Holds(saleDate)) return RecordStatus::Sold;
    if (present.Holds(cancelDate)) return RecordStatus::CancelledOrExpired;
    if (present.Holds(contractDate)) return RecordStatus::UnderContract;
    return RecordStatus::Active;
}

}  // namespace zenvora::analysis
