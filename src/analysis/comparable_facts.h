#pragma once

#include "analysis/day_rules.h"
#include "common/dates.h"
#include "platform/ado/recordset.h"
#include "platform/shell/clock.h"

namespace zenvora::analysis {

/// The dates and prices of one record, as every rule of the analysis reads them: a Null date, and a value
/// that is no date, is day zero; a price is in whole dollars, and a Null price is 0.
///
/// Null needs no mark of its own, since day zero and 0 fail every check that Null fails.
struct ComparableFacts {
    Date origListDate = common::kDayZero;
    Date currListDate = common::kDayZero;
    Date contractDate = common::kDayZero;
    Date cancelDate = common::kDayZero;
    Date saleDate = common::kDayZero;
    double origListPrice = 0;
    double currListPrice = 0;
    double salePrice = 0;
};

/// Where the columns of the facts stand in a Recordset, -1 for a column that it does not have (it reads as
/// Null). Looked up once for a walk over many records, because a look-up by name costs more than the value
/// itself.
struct ComparableColumns {
    int origListDate = -1;
    int currListDate = -1;
    int contractDate = -1;
    int cancelDate = -1;
    int saleDate = -1;
    int origListPrice = -1;
    int currListPrice = -1;
    int salePrice = -1;

    explicit ComparableColumns(const ado::Recordset& records);
};

/// The facts of the current record. Fault 3021: there is none.
[[nodiscard]] ComparableFacts ReadFacts(const ado::Recordset& records, const ComparableColumns& columns,
                                        const shell::Clock& clock);

}  // namespace zenvora::analysis
