#pragma once

#include "analysis/comparable_facts.h"
#include "analysis/day_rules.h"
#include "platform/text/date.h"

namespace zenvora::analysis {

[[nodiscard]] inline Date Day(int year, int month, int day) {
    return text::DayNumber(year, month, day).value();
}

/// The Effective Appraisal Date of most tests: Current-3 runs 04/01/2010 to 06/30/2010, Prior 4-6 12/31/2009
/// to 03/31/2010, Prior 7-12 06/30/2009 to 12/30/2009.
[[nodiscard]] inline Date Effective() {
    return Day(2010, 6, 30);
}

/// A sound active listing: both list dates 400 days before the effective date, listed at 259,900 and now at
/// 249,900.
[[nodiscard]] inline ComparableFacts ActiveListing() {
    ComparableFacts facts;
    facts.origListDate = Effective() - 400;
    facts.currListDate = Effective() - 400;
    facts.origListPrice = 259900;
    facts.currListPrice = 249900;
    return facts;
}

}  // namespace zenvora::analysis
