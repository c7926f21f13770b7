#include "records/field_status.h"

#include <string_view>

namespace zenvora::records {
namespace {

int RequiredPrice(const controls::TextBox& field) {
    return common::IsValidPriceEntry(field.Text()) ? kValid : kNotAnEntry;
}

int OptionalPrice(const controls::TextBox& field) {
    return field.Text().empty() ? kEmpty : RequiredPrice(field);
}

}  // namespace

common::Date FieldStatus::DateIn(const controls::TextBox& field) const {
    return common::ConvDate(std::string_view{field.Text()}, clock_);
}

int FieldStatus::RequiredDate(const controls::TextBox& field) const {
    if (!common::IsValidDateEntry(field.Text(), clock_)) return kNotAnEntry;
    return DateIn(field) > effectiveDate_ ? kAfterEffectiveDate : kValid;
}

int FieldStatus::OptionalDate(const controls::TextBox& field) const {
    if (field.Text().empty()) return kEmpty;
    const int status = RequiredDate(field);
    if (status != kValid) return status;
    return DateIn(field) < DateIn(fields_.txtOrigListDate) ? kBeforeOrigList : kValid;
}

int FieldStatus::DateAfterListing(const controls::TextBox& field) const {
    const int status = OptionalDate(field);
    if (status != kValid || ValidCLD() == kEmpty) return status;
    return DateIn(field) < DateIn(fields_.txtCurrListDate) ? kBeforeCurrList : kValid;
}

int FieldStatus::ValidOLD() const {
    return RequiredDate(fields_.txtOrigListDate);
}

int FieldStatus::ValidOLP() const {
    return RequiredPrice(fields_.txtOrigListPrice);
}

int FieldStatus::ValidCLD() const {
    return OptionalDate(fields_.txtCurrListDate);
}

int FieldStatus::ValidCLP() const {
    return OptionalPrice(fields_.txtCurrListPrice);
}

int FieldStatus::ValidCD() const {
    return DateAfterListing(fields_.txtContractDate);
}

int FieldStatus::ValidLCD() const {
    return DateAfterListing(fields_.txtListCancelDate);
}

int FieldStatus::ValidSD() const {
    const int status = OptionalDate(fields_.txtSaleDate);
    if (status != kValid) return status;
    // A current list date that is out of order itself binds a contract or cancel date, and does not bind a
    // sale date.
    const common::Date sale = DateIn(fields_.txtSaleDate);
    if (ValidCLD() == kValid && sale < DateIn(fields_.txtCurrListDate)) return kBeforeCurrList;
    if (ValidCD() == kValid && sale < DateIn(fields_.txtContractDate)) return kBeforeContract;
    return kValid;
}

int FieldStatus::ValidSP() const {
    return OptionalPrice(fields_.txtSellingPr);
}

}  // namespace zenvora::records
