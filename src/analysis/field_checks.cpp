#include "analysis/field_checks.h"

#include "databook/field_access.h"

namespace zenvora::analysis {
namespace {

constexpr double kDaysOfAYear = 365;

bool IsPriceOk(double wholeDollars) {
    return wholeDollars > 0;
}

}  // namespace

FieldChecks CheckFields(const ComparableFacts& facts, Date effectiveDate, const shell::Clock& clock) {
    const auto isInTime = [&](Date date) {
        return !(date > effectiveDate) && common::IsValidDateEntry(date, clock);
    };
    FieldChecks ok;
    ok.origListPrice = IsPriceOk(facts.origListPrice);
    ok.currListPrice = IsPriceOk(facts.currListPrice);
    ok.salePrice = IsPriceOk(facts.salePrice);

    ok.origListDate = isInTime(facts.origListDate);
    const auto followsOriginal = [&](Date date) { return !(ok.origListDate && date < facts.origListDate); };
    ok.currListDate = isInTime(facts.currListDate) && followsOriginal(facts.currListDate);
    const auto followsListing = [&](Date date) {
        return followsOriginal(date) && !(ok.currListDate && date < facts.currListDate);
    };
    ok.contractDate = isInTime(facts.contractDate) && followsListing(facts.contractDate);
    ok.cancelDate = isInTime(facts.cancelDate) && followsListing(facts.cancelDate);
    ok.saleDateEntered = common::IsValidDateEntry(facts.saleDate, clock);
    ok.saleDate = ok.saleDateEntered && !(facts.saleDate > effectiveDate) && followsListing(facts.saleDate) &&
                  !(ok.contractDate && facts.saleDate < facts.contractDate);
    return ok;
}

bool IsSaleOverAYearAgo(const ComparableFacts& facts, const FieldChecks& checks, Date effectiveDate) {
    return checks.saleDate && !(facts.saleDate > effectiveDate) &&
           effectiveDate - facts.saleDate > kDaysOfAYear;
}

FieldChecks CheckFields(ado::Adodc& control, Date effectiveDate) {
    const ado::Recordset& records = control.Recordset();
    return CheckFields(ReadFacts(records, ComparableColumns{records}, control.Clock()), effectiveDate,
                       control.Clock());
}

bool IsOrigListDateOk(ado::Adodc& control, Date effectiveDate) {
    return CheckFields(control, effectiveDate).origListDate;
}

bool IsOrigListPriceOk(ado::Adodc& control, Date effectiveDate) {
    return CheckFields(control, effectiveDate).origListPrice;
}

bool IsCurrListDateOk(ado::Adodc& control, Date effectiveDate) {
    return CheckFields(control, effectiveDate).currListDate;
}

bool IsCurrListPriceOk(ado::Adodc& control, Date effectiveDate) {
    return CheckFields(control, effectiveDate).currListPrice;
}

bool IsContractDateOk(ado::Adodc& control, Date effectiveDate) {
    return CheckFields(control, effectiveDate).contractDate;
}

bool IsCancelDateOk(ado::Adodc& control, Date effectiveDate) {
    return CheckFields(control, effectiveDate).cancelDate;
}

bool IsSaleDateOk(ado::Adodc& control, Date effectiveDate) {
    return CheckFields(control, effectiveDate).saleDate;
}

bool IsSalePriceOk(ado::Adodc& control, Date effectiveDate) {
    return CheckFields(control, effectiveDate).salePrice;
}

bool IsSaleWithinYear(ado::Adodc& control, Date effectiveDate) {
    const ado::Recordset& records = control.Recordset();
    const ComparableFacts facts = ReadFacts(records, ComparableColumns{records}, control.Clock());
    const FieldChecks checks = CheckFields(facts, effectiveDate, control.Clock());
    return checks.saleDate && !IsSaleOverAYearAgo(facts, checks, effectiveDate);
}

bool HasOriginalListing(ado::Adodc& control) {
    return databook::adogetfieldDouble(control, "ORIGLISTPRICE") > 0 &&
           databook::adogetfieldDate(control, "ORIGLISTDATE") != common::kDayZero;
}

}  // namespace zenvora::analysis
