#include "analysis/record_status.h"

#include "common/dates.h"

namespace zenvora::analysis {

bool IsMissingDate(Date date, const shell::Clock& clock) {
    return common::IsDayZero(date, clock);
}

RecordStatus GetRecordStatus(Date contractDate, Date cancelDate, Date saleDate, const shell::Clock& clock) {
    if (!IsMissingDate(saleDate, clock)) return RecordStatus::Sold;
    if (!IsMissingDate(cancelDate, clock)) return RecordStatus::CancelledOrExpired;
    if (!IsMissingDate(contractDate, clock)) return RecordStatus::UnderContract;
    return RecordStatus::Active;
}

}  // namespace zenvora::analysis
