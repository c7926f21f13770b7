#include "analysis/explanation.h"

#include <string_view>

#include "analysis/comparable_facts.h"
#include "analysis/field_checks.h"
#include "platform/text/utf8.h"

namespace zenvora::analysis {
namespace {

/// The current record as the explanation reads it: the stored values as texts beside the checks of the
/// verdict.
class Explanation {
  public:
    Explanation(const ado::Recordset& records, const shell::Clock& clock, Date effectiveDate)
        : records_(records),
          clock_(clock),
          effectiveDate_(effectiveDate),
          columns_(records),
          facts_(ReadFacts(records, columns_, clock)),
          ok_(CheckFields(facts_, effectiveDate, clock)) {}

    std::string Build() {
        ExplainOriginalDate();
        ExplainPrice(columns_.origListPrice, "Original List Price missing; ",
                     "Original List Price not valid; ");
        ExplainCurrentDate();
        ExplainPrice(columns_.currListPrice, "Curr List Price missing; ", "Curr List Price not valid; ");
        ExplainCancelled();
        ExplainSale();
        if (ok_.saleDateEntered && !ok_.saleDate) ExplainSaleDate();
        return text_;
    }

  private:
    [[nodiscard]] bool IsNull(int column) const { return column < 0 || records_.IsNull(column); }
    [[nodiscard]] std::string Text(int column) const { return text::Trim(records_.Text(column)); }
    [[nodiscard]] Date ConvDate(int column) const {
        return common::ConvDate(std::string_view{Text(column)}, clock_);
    }

    void Say(std::string_view message) { text_ += message; }
    void SayUnless(std::string_view held, std::string_view message) {
        if (text_.find(held) == std::string::npos) Say(message);
    }

    void ExplainOriginalDate() {
        const int column = columns_.origListDate;
        if (IsNull(column)) {
            Say("Original List Date missing; ");
        } else if (!common::IsValidDateEntry(std::string_view{Text(column)}, clock_)) {
            Say("Original List Date not valid; ");
        } else if (ConvDate(column) > effectiveDate_) {
            Say("Original List Date after Eff App Dt; ");
        }
    }

    void ExplainCurrentDate() {
        const int column = columns_.currListDate;
        if (IsNull(column)) {
            Say("Curr List Date missing; ");
        } else if (!common::IsValidDateEntry(std::string_view{Text(column)}, clock_)) {
            Say("Curr List Date not valid; ");
        } else if (ConvDate(column) > effectiveDate_) {
            Say("Curr List Date after Effective Appraisal Date; ");
        } else if (!ok_.currListDate) {
            Say("Curr List Date before Original List Date; ");
        }
    }

    void ExplainPrice(int column, std::string_view missing, std::string_view notValid) {
        if (IsNull(column)) {
            Say(missing);
        } else if (!common::IsValidPriceEntry(Text(column))) {
            Say(notValid);
        }
    }

    /// One name only is given, and the two later ones have their comma in front.
    void ExplainCancelled() {
        if (!ok_.cancelDate) return;
        std::string_view name;
        if (ok_.contractDate) {
            name = "Contract Dt";
        } else if (ok_.saleDate) {
            name = ", Sale Dt";
        } else if (ok_.salePrice) {
            name = ", Sale $";
        }
        if (name.empty()) return;
        Say(name);
        Say(" should not exist when there's a Cancel Date; ");
    }

    void ExplainSale() {
        if (ok_.saleDate && !ok_.salePrice) {
            Say(IsNull(columns_.salePrice) ? "Sale Price missing; " : "Sale Price invalid; ");
        }
        if (IsSaleOverAYearAgo(facts_, ok_, effectiveDate_)) Say("Comp Sale Date is over a year ago; ");
        if (ok_.salePrice && !ok_.saleDate && !ok_.contractDate) {
            text_ = "If there is a Sale Price, then there must be either a Sale Date or a Contract Date";
        }
    }

    void ExplainSaleDate() {
        const Date sold = ConvDate(columns_.saleDate);
        if (sold > effectiveDate_) {
            SayUnless("Sale Dt after Eff App Dt;", "Sale Date after Effective Appraisal Date; ");
            return;
        }
        if (ok_.origListDate && sold < facts_.origListDate) {
            SayUnless("Sale Dt before Orig List Dt;", "Sale Date before Original List Date; ");
        }
        if (ok_.currListDate && sold < facts_.currListDate) {
            SayUnless("Sale Dt before Curr List Dt;", "Sale Date before Current List Date; ");
        }
        if (ok_.contractDate && sold < facts_.contractDate) {
            SayUnless("Sale Date before Contract Date;", "Sale Date before Contract Date; ");
        }
    }

    const ado::Recordset& records_;
    const shell::Clock& clock_;
    const Date effectiveDate_;
    const ComparableColumns columns_;
    const ComparableFacts facts_;
    const FieldChecks ok_;
    std::string text_;
};

}  // namespace

std::string BuildInvalidExplanation(ado::Adodc& adoDatabook, Date effectiveDate) {
    ado::Recordset& records = adoDatabook.Recordset();
    if (records.RecordCount() <= 0) return {};
    if (records.Bof()) records.MoveNext();
    if (records.Eof()) records.MovePrevious();
    return Explanation{records, adoDatabook.Clock(), effectiveDate}.Build();
}

}  // namespace zenvora::analysis
