#pragma once

#include "common/dates.h"
#include "platform/controls/text_box.h"
#include "platform/shell/clock.h"

namespace zenvora::records {

/// The fields of the editor that are advised on.
struct AdvisedFields {
    controls::TextBox& txtOrigListDate;
    controls::TextBox& txtOrigListPrice;
    controls::TextBox& txtCurrListDate;
    controls::TextBox& txtCurrListPrice;
    controls::TextBox& txtContractDate;
    controls::TextBox& txtListCancelDate;
    controls::TextBox& txtSaleDate;
    controls::TextBox& txtSellingPr;
};

inline constexpr int kValid = -1;
inline constexpr int kEmpty = 0;  ///< nothing typed, which is allowed there
inline constexpr int kNotAnEntry = 1;
inline constexpr int kAfterEffectiveDate = 2;
inline constexpr int kBeforeOrigList = 3;
inline constexpr int kBeforeCurrList = 4;
inline constexpr int kBeforeContract = 5;

/// What stands in the fields of the editor, judged as of the Effective Appraisal Date: each operation gives
/// the first of the faults above that its field has, kValid or kEmpty. The original list date and price are
/// required: empty, they are kNotAnEntry. A text that is no date counts as 1/1/1900 where another date is
/// compared with it. Faults: none.
class FieldStatus {
  public:
    FieldStatus(const AdvisedFields& fields, const common::Date& effectiveDate, const shell::Clock& clock)
        : fields_(fields), effectiveDate_(effectiveDate), clock_(clock) {}

    [[nodiscard]] int ValidOLD() const;
    [[nodiscard]] int ValidOLP() const;
    [[nodiscard]] int ValidCLD() const;
    [[nodiscard]] int ValidCLP() const;
    [[nodiscard]] int ValidCD() const;
    [[nodiscard]] int ValidLCD() const;
    [[nodiscard]] int ValidSD() const;
    [[nodiscard]] int ValidSP() const;

  private:
    [[nodiscard]] common::Date DateIn(const controls::TextBox& field) const;
    [[nodiscard]] int RequiredDate(const controls::TextBox& field) const;
    [[nodiscard]] int OptionalDate(const controls::TextBox& field) const;
    [[nodiscard]] int DateAfterListing(const controls::TextBox& field) const;

    AdvisedFields fields_;
    const common::Date& effectiveDate_;
    const shell::Clock& clock_;
};

}  // namespace zenvora::records
