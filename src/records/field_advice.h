#pragma once

#include <string_view>

#include "platform/controls/rich_text.h"
#include "records/field_status.h"

namespace zenvora::records {

inline constexpr controls::Color kGood = controls::kWhite;
/// An optional field's entry is wrong.
inline constexpr controls::Color kCaution = controls::kLightYellow;
/// A required field's entry is wrong, or two fields contradict each other.
inline constexpr controls::Color kError = controls::kLightRed;
inline constexpr controls::Color kPanelNormal = controls::kSystemColor;

/// The change rules of the eight advised fields: each sets the colour and the tool tip of its field, some of
/// them of a neighbour too, and tints the help panel like the field. Nothing is refused.
///
/// A change of a date runs the rules of the dates that are compared with it; at the end of such a chain the
/// panel shows the colour of the field that began it. Faults: none.
class FieldAdvice {
  public:
    FieldAdvice(const AdvisedFields& fields, controls::RichText& rtxtInfo, const common::Date& effectiveDate,
                const shell::Clock& clock)
        : fields_(fields), rtxtInfo_(rtxtInfo), status_(fields, effectiveDate, clock) {}

    void OrigListDateChanged();
    void OrigListPriceChanged();
    void CurrListDateChanged();
    void CurrListPriceChanged();
    void ContractDateChanged();
    void ListCancelDateChanged();
    void SaleDateChanged();
    void SellingPrChanged();
    /// All eight, in the order of the fields.
    void AllChanged();

    /// Tints the panel like the field; panel normal for a good one.
    void ShowFieldColor(const controls::TextBox& field);

    [[nodiscard]] const FieldStatus& Status() const noexcept { return status_; }

  private:
    void SaleNeedsADate();

    AdvisedFields fields_;
    controls::RichText& rtxtInfo_;
    FieldStatus status_;
};

}  // namespace zenvora::records
