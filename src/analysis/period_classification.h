#pragma once

#include "analysis/comparable_facts.h"
#include "analysis/period.h"
#include "analysis/record_status.h"

/// What a record counts as in a period of the form.
namespace zenvora::analysis {

/// What one record adds to the lists of one period: nothing, or one entry to each list of one family.
struct PeriodEntry {
    enum class Family { None, Sale, Listing };

    Family family = Family::None;
    int daysOnMarket = 0;      ///< as entered in the list, the day of listing counted as the first
    double price = 0;          ///< sale price of a sale; of a listing its price in force at the period
    double saleListPrice = 0;  ///< a sale's current list price

    friend bool operator==(const PeriodEntry&, const PeriodEntry&) = default;
};

/// The list price in force for a listing in a period: the current one when its date lies in the period, or
/// before it and no more than 365 days before `effectiveDate`; otherwise the original one. So a price change
/// that had not happened at the period's end is not seen, and a missing current list date takes the original
/// price.
[[nodiscard]] double SelectListPrice(const ComparableFacts& facts, const Period& period, Date effectiveDate,
                                     const PresentDates& present);

/// Classifies a record for the period of an offset (0, 91, 182).
///
/// `baseDate` is the date of the text of txtBaseDate and sets the period's days; `effectiveDate` is the value
/// EffectiveDate, which SelectListPrice measures from. They agree while that text is a valid date.
/// Fault 5: an offset of no period.
[[nodiscard]] PeriodEntry ClassifyRecordForPeriod(const ComparableFacts& facts, RecordStatus status,
                                                  int periodOffset, Date baseDate, Date effectiveDate,
                                                  const PresentDates& present);

}  // namespace zenvora::analysis
