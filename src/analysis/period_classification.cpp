#include "analysis/period_classification.h"

namespace zenvora::analysis {
namespace {

using Family = PeriodEntry::Family;

/// The terms that the rules of one record and one period share.
struct Terms {
    const ComparableFacts& facts;
    const Period& period;
    Date effectiveDate;
    const PresentDates& present;

    [[nodiscard]] int DaysSinceListing(Date until) const { return DayDiff(facts.origListDate, until); }

    /// A listing needs a whole day on the market; a sale does not.
    [[nodiscard]] PeriodEntry Listing(int days) const {
        if (days <= 0) return {};
        return {Family::Listing, days + 1, SelectListPrice(facts, period, effectiveDate, present), 0};
    }

    /// A record that was listed before the period, or leaves the market behind it, is measured to the day
    /// before the period's last one.
    [[nodiscard]] PeriodEntry ListingThroughPeriod() const {
        return Listing(DaysSinceListing(period.end - 1));
    }

    [[nodiscard]] PeriodEntry Active() const {
        if (IsBetweenDates(period.start, facts.origListDate, period.end)) {
            return Listing(DaysSinceListing(period.end));
        }
        return ListingThroughPeriod();
    }

    [[nodiscard]] PeriodEntry Sold() const {
        if (IsDayAfter(period.start, facts.saleDate)) return {};
        if (!IsBetweenDates(period.start, facts.saleDate, period.end)) return ListingThroughPeriod();
        const int days = DaysSinceListing(facts.saleDate);
        if (days < 0) return {};
        return {Family::Sale, days + 1, facts.salePrice, facts.currListPrice};
    }

    /// Under contract, cancelled or expired: a listing until the day it left the market.
    [[nodiscard]] PeriodEntry OffMarket(Date day) const {
        if (IsDayAfter(period.start, day)) return {};
        if (IsBetweenDates(period.start, day, period.end)) return Listing(DaysSinceListing(day));
        return ListingThroughPeriod();
    }
};

}  // namespace

double SelectListPrice(const ComparableFacts& facts, const Period& period, Date effectiveDate,
                       const PresentDates& present) {
    const Date changed = facts.currListDate;
    const bool inForce = IsBetweenDates(period.start, changed, period.end) ||
                         IsBetweenDates(effectiveDate - 365, changed, period.start - 1);
    return inForce && present.Holds(changed) ? facts.currListPrice : facts.origListPrice;
}

PeriodEntry ClassifyRecordForPeriod(const ComparableFacts& facts, RecordStatus status, int periodOffset,
                                    Date baseDate, Date effectiveDate, const PresentDates& present) {
    const Period period = PeriodOfOffset(periodOffset, baseDate);
    const Terms terms{facts, period, effectiveDate, present};
    switch (status) {
        case RecordStatus::Sold:
            return terms.Sold();
        case RecordStatus::UnderContract:
            return terms.OffMarket(facts.contractDate);
        case RecordStatus::CancelledOrExpired:
            return terms.OffMarket(facts.cancelDate);
        case RecordStatus::Active:
            break;
    }
    return terms.Active();
}

}  // namespace zenvora::analysis
