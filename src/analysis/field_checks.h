#pragma once

#include "analysis/comparable_facts.h"
#include "platform/ado/adodc.h"
#include "platform/shell/clock.h"

/// The eight checks that the verdict on a record is made of.
///
/// They do not say "present": a date that is day zero fails its check, and that is how the rules ask whether
/// a date exists. A date must be valid and not after the Effective Appraisal Date, and not before each
/// earlier date of the record's story that is itself in order. A price must be above 0 in whole dollars.
namespace zenvora::analysis {

struct FieldChecks {
    bool origListDate = false;
    bool origListPrice = false;
    bool currListDate = false;
    bool currListPrice = false;
    bool contractDate = false;
    bool cancelDate = false;
    bool saleDate = false;
    bool saleDateEntered = false;  ///< a valid date, whatever its place among the others
    bool salePrice = false;
};

/// All checks of a record at once; each date is tested once, which a walk over a million records needs.
/// Faults: none.
[[nodiscard]] FieldChecks CheckFields(const ComparableFacts& facts, Date effectiveDate,
                                      const shell::Clock& clock);

/// True for a sale date in order that lies more than 365 days before the effective date. Faults: none.
[[nodiscard]] bool IsSaleOverAYearAgo(const ComparableFacts& facts, const FieldChecks& checks,
                                      Date effectiveDate);

/// The checks on the current record of a data control. Faults: 91 (no Recordset), 3021 (no current record).
[[nodiscard]] FieldChecks CheckFields(ado::Adodc& control, Date effectiveDate);
[[nodiscard]] bool IsOrigListDateOk(ado::Adodc& control, Date effectiveDate);
[[nodiscard]] bool IsOrigListPriceOk(ado::Adodc& control, Date effectiveDate);
[[nodiscard]] bool IsCurrListDateOk(ado::Adodc& control, Date effectiveDate);
[[nodiscard]] bool IsCurrListPriceOk(ado::Adodc& control, Date effectiveDate);
[[nodiscard]] bool IsContractDateOk(ado::Adodc& control, Date effectiveDate);
[[nodiscard]] bool IsCancelDateOk(ado::Adodc& control, Date effectiveDate);
[[nodiscard]] bool IsSaleDateOk(ado::Adodc& control, Date effectiveDate);
[[nodiscard]] bool IsSalePriceOk(ado::Adodc& control, Date effectiveDate);

/// The sale date is in order and at most 365 days before the effective date.
[[nodiscard]] bool IsSaleWithinYear(ado::Adodc& control, Date effectiveDate);
/// The original list price is above 0 and the original list date is not day zero.
[[nodiscard]] bool HasOriginalListing(ado::Adodc& control);

}  // namespace zenvora::analysis
