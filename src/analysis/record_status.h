#pragma once

#include "analysis/day_rules.h"
#include "platform/shell/clock.h"

/// What a record stands for, told by its dates.
namespace zenvora::analysis {

enum class RecordStatus { Active = 1, Sold = 2, UnderContract = 3, CancelledOrExpired = 4 };

/// A date is missing when it is day zero in its normalized form: 01/01/1900, every year before 1900, and
/// every calendar year later than the clock's. Faults: none.
[[nodiscard]] bool IsMissingDate(Date date, const shell::Clock& clock);

/// The same question for a walk over many records: the days that are not missing, told from the clock once.
class PresentDates {
  public:
    explicit PresentDates(const shell::Clock& clock);
    [[nodiscard]] bool Holds(Date date) const noexcept { return date >= kFirst && date < end_; }

  private:
    static constexpr Date kFirst = 3.0;  ///< 01/02/1900
    Date end_;  ///< the first day of the year after the clock's, of 2000 at the earliest
};

/// A sale date outranks a cancel date and that a contract date, whatever their order in time. Faults: none.
[[nodiscard]] RecordStatus GetRecordStatus(Date contractDate, Date cancelDate, Date saleDate,
                                           const PresentDates& present) noexcept;

}  // namespace zenvora::analysis
