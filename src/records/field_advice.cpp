#include "records/field_advice.h"

#include <array>
#include <string>

namespace zenvora::records {
namespace {

using controls::TextBox;

// The words are the ones that users of the program know, typing errors included.
constexpr std::string_view kNoDate = "Provide a valid date that is greater than 1/1/1900";
constexpr std::string_view kNoPrice = "Provide a value greater than 0";
constexpr std::string_view kTooLate = "The date must be on or befor the Effective Appraisal date";
constexpr std::string_view kMustFollowOrigList = "The date must be on or after the original list date";
constexpr std::string_view kMustFollowCurrList = "The date must be on or after the current list date";
constexpr std::string_view kSaleNeedsADate =
    "When there is a sale price, there must be a sale date or a contract date";

/// The notes of a field by its status, from kNotAnEntry on.
using Notes = std::array<std::string_view, 5>;

constexpr Notes kOrigListDateNotes{kNoDate, "The date must be on or before the Effective Appraisal Date."};
constexpr Notes kDateNotes{kNoDate, kTooLate, kMustFollowOrigList, kMustFollowCurrList,
                           "The date must be on or after the contract date"};
constexpr Notes kContractDateNotes{kNoDate, kTooLate, "The date has to be on or after the original list date",
                                   "The date has to be on or after the current list date"};
constexpr Notes kPriceNotes{kNoPrice};
constexpr Notes kSellingPrNotes{"The price must be a value greater than 0"};

void Set(TextBox& field, controls::Color color, std::string_view note = {}) {
    field.SetBackColor(color);
    field.SetToolTipText(std::string(note));
}

void Show(TextBox& field, int status, const Notes& notes, controls::Color wrong = kCaution) {
    if (status == kValid || status == kEmpty) {
        Set(field, kGood);
    } else {
        Set(field, wrong, notes.at(static_cast<std::size_t>(status - kNotAnEntry)));
    }
}

/// The colour of a contradiction; its note is for an empty field, one with an entry keeps the note of that.
void Contradict(TextBox& field, std::string_view noteWhenEmpty) {
    field.SetBackColor(kError);
    if (field.Text().empty()) field.SetToolTipText(std::string(noteWhenEmpty));
}

}  // namespace

void FieldAdvice::ShowFieldColor(const TextBox& field) {
    rtxtInfo_.SetBackColor(field.BackColor() == kGood ? kPanelNormal : field.BackColor());
}

void FieldAdvice::OrigListDateChanged() {
    Show(fields_.txtOrigListDate, status_.ValidOLD(), kOrigListDateNotes, kError);
    CurrListDateChanged();
    ShowFieldColor(fields_.txtOrigListDate);
}

void FieldAdvice::OrigListPriceChanged() {
    Show(fields_.txtOrigListPrice, status_.ValidOLP(), kPriceNotes, kError);
    ShowFieldColor(fields_.txtOrigListPrice);
}

void FieldAdvice::CurrListDateChanged() {
    Show(fields_.txtCurrListDate, status_.ValidCLD(), kDateNotes);
    ContractDateChanged();
    ShowFieldColor(fields_.txtCurrListDate);
}

void FieldAdvice::CurrListPriceChanged() {
    Show(fields_.txtCurrListPrice, status_.ValidCLP(), kPriceNotes);
    ShowFieldColor(fields_.txtCurrListPrice);
}

void FieldAdvice::ContractDateChanged() {
    TextBox& field = fields_.txtContractDate;
    Show(field, status_.ValidCD(), kContractDateNotes);
    if (status_.ValidCD() == kValid && status_.ValidLCD() == kValid)
        Set(field, kError, "When there is a list cancel date, there shouldn't be a contract date.");
    SaleDateChanged();
    ListCancelDateChanged();
    ShowFieldColor(field);
}

void FieldAdvice::ListCancelDateChanged() {
    TextBox& field = fields_.txtListCancelDate;
    const int status = status_.ValidLCD();
    Show(field, status, kDateNotes);
    const auto isSold = [&] {
        return status_.ValidCD() == kValid || status_.ValidSD() == kValid || status_.ValidSP() == kValid;
    };
    if (status == kValid && isSold()) {
        Set(field, kCaution,
            "When there is a saledate, saleprice and/or a contract date, there shouldn't be a list cancel "
            "date.");
    }
    ShowFieldColor(field);
}

void FieldAdvice::SaleNeedsADate() {
    const bool isDated = status_.ValidCD() == kValid || status_.ValidSD() == kValid;
    if (!isDated && status_.ValidSP() == kValid) Contradict(fields_.txtSaleDate, kSaleNeedsADate);
}

void FieldAdvice::SaleDateChanged() {
    TextBox& field = fields_.txtSaleDate;
    const int status = status_.ValidSD();
    Show(field, status, kDateNotes);
    if (status == kEmpty && fields_.txtSellingPr.Text().empty()) Set(fields_.txtSellingPr, kGood);

    SaleNeedsADate();
    if (status == kValid && status_.ValidLCD() == kValid)
        Set(field, kError, "When there is a list cancel date, there shouldn't be a sale date.");
    if (status == kValid && status_.ValidSP() != kValid)
        Contradict(fields_.txtSellingPr, "When there is a sale date, there must be a sale price");
    ShowFieldColor(field);
}

void FieldAdvice::SellingPrChanged() {
    TextBox& field = fields_.txtSellingPr;
    const int status = status_.ValidSP();
    Show(field, status, kSellingPrNotes);
    if (status == kEmpty && fields_.txtSaleDate.Text().empty()) Set(fields_.txtSaleDate, kGood);

    // The note names the wrong one of the two; users know it that way.
    if (status_.ValidSD() == kValid && status != kValid)
        Contradict(field, "When there is a sale price, there must be a sale date");
    if (status == kValid && status_.ValidLCD() == kValid)
        Set(field, kError, "When there is a list cancel date, there shouldn't be a sale price.");
    SaleNeedsADate();
    ShowFieldColor(field);
}

void FieldAdvice::AllChanged() {
    OrigListDateChanged();
    OrigListPriceChanged();
    CurrListDateChanged();
    CurrListPriceChanged();
    ContractDateChanged();
    ListCancelDateChanged();
    SaleDateChanged();
    SellingPrChanged();
}

}  // namespace zenvora::records
