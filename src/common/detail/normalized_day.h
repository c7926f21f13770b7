#pragma once

#include "platform/text/date.h"

namespace zenvora::common::detail {

/// The table of years behind NormalizeDateText, on its own because no text leads to years below 100.
///
/// 1900s stay; 2000s up to the clock's year keep their last two digits in the 2000s; years below 0, 100 to
/// 1899 and beyond the clock's give 01/01/1900; 0 to 99 give the clock's two digits in the 2000s or the
/// 1900s. Faults: none.
[[nodiscard]] text::CalendarDay NormalizedDay(const text::CalendarDay& day, int currentYear) noexcept;

}  // namespace zenvora::common::detail
