#include "records/field_status.h"

#include <gtest/gtest.h>
#include <string>

namespace zenvora::records {
namespace {

/// The eight fields without a dialog; the Effective Appraisal Date is 6/30/2010.
class FieldStatusTest : public testing::Test {
  protected:
    controls::TextBox old_{"txtOrigListDate"};
    controls::TextBox olp_{"txtOrigListPrice"};
    controls::TextBox cld_{"txtCurrListDate"};
    controls::TextBox clp_{"txtCurrListPrice"};
    controls::TextBox cd_{"txtContractDate"};
    controls::TextBox lcd_{"txtListCancelDate"};
    controls::TextBox sd_{"txtSaleDate"};
    controls::TextBox sp_{"txtSellingPr"};
    common::Date effectiveDate_ = 40359;
    shell::FixedClock clock_{40359};
    FieldStatus status_{{old_, olp_, cld_, clp_, cd_, lcd_, sd_, sp_}, effectiveDate_, clock_};

    using Operation = int (FieldStatus::*)() const;
    struct DateField {
        controls::TextBox& box;
        Operation valid;
    };
    std::array<DateField, 5> dates_{{{old_, &FieldStatus::ValidOLD},
                                     {cld_, &FieldStatus::ValidCLD},
                                     {cd_, &FieldStatus::ValidCD},
                                     {lcd_, &FieldStatus::ValidLCD},
                                     {sd_, &FieldStatus::ValidSD}}};
    std::array<DateField, 3> prices_{
        {{olp_, &FieldStatus::ValidOLP}, {clp_, &FieldStatus::ValidCLP}, {sp_, &FieldStatus::ValidSP}}};

    int After(const DateField& field, const char* text) {
        field.box.SetText(text);
        return (status_.*field.valid)();
    }
};

TEST_F(FieldStatusTest, TheRequiredFieldsAreWrongWhenEmptyAndTheOthersAreEmpty) {
    EXPECT_EQ(status_.ValidOLD(), 1);
    EXPECT_EQ(status_.ValidOLP(), 1);
    EXPECT_EQ(status_.ValidCLD(), 0);
    EXPECT_EQ(status_.ValidCLP(), 0);
    EXPECT_EQ(status_.ValidCD(), 0);
    EXPECT_EQ(status_.ValidLCD(), 0);
    EXPECT_EQ(status_.ValidSD(), 0);
    EXPECT_EQ(status_.ValidSP(), 0);
}

TEST_F(FieldStatusTest, OfEachDateAlone) {
    for (const DateField& field : dates_) {
        SCOPED_TRACE(field.box.Name());
        EXPECT_EQ(After(field, "6/30/2010"), -1) << "the Effective Appraisal Date itself";
        EXPECT_EQ(After(field, "7/1/2010"), 2);
        EXPECT_EQ(After(field, "3/5/09"), 1) << "a year of two digits";
        EXPECT_EQ(After(field, "1/1/1900"), 1);
        EXPECT_EQ(After(field, "1/2/1900"), -1);
        EXPECT_EQ(After(field, "abc"), 1);
        EXPECT_EQ(After(field, " "), 1) << "a blank is an entry";
        EXPECT_EQ(After(field, "2/30/2010"), 1);
        field.box.SetText("");
    }
}

TEST_F(FieldStatusTest, OfEachPrice) {
    for (const DateField& field : prices_) {
        SCOPED_TRACE(field.box.Name());
        EXPECT_EQ(After(field, "1"), -1);
        EXPECT_EQ(After(field, "0.5"), -1);
        EXPECT_EQ(After(field, "$259,900"), -1);
        EXPECT_EQ(After(field, "0"), 1);
        EXPECT_EQ(After(field, "-5"), 1);
        EXPECT_EQ(After(field, "abc"), 1);
        field.box.SetText("");
    }
}

TEST_F(FieldStatusTest, NoDateMayLieBeforeTheOriginalListDate) {
    old_.SetText("3/15/2010");
    for (std::size_t i = 1; i < dates_.size(); ++i) {
        SCOPED_TRACE(dates_[i].box.Name());
        EXPECT_EQ(After(dates_[i], "3/15/2010"), -1);
        EXPECT_EQ(After(dates_[i], "3/14/2010"), 3);
        dates_[i].box.SetText("");
    }
}

TEST_F(FieldStatusTest, TheOriginalListDateBindsThoughItIsWrongItself) {
    old_.SetText("7/15/2010");
    for (std::size_t i = 1; i < dates_.size(); ++i) {
        SCOPED_TRACE(dates_[i].box.Name());
        EXPECT_EQ(After(dates_[i], "6/30/2010"), 3);
        dates_[i].box.SetText("");
    }
    old_.SetText("no date");
    EXPECT_EQ(After(dates_[1], "1/2/1900"), -1) << "a text that is no date is 1/1/1900";
}

TEST_F(FieldStatusTest, ContractAndCancelDateMayNotLieBeforeTheCurrentListDate) {
    old_.SetText("3/15/2010");
    cld_.SetText("5/1/2010");
    for (controls::TextBox* box : {&cd_, &lcd_}) {
        const bool isContract = box == &cd_;
        box->SetText("4/30/2010");
        EXPECT_EQ(isContract ? status_.ValidCD() : status_.ValidLCD(), 4);
        box->SetText("5/1/2010");
        EXPECT_EQ(isContract ? status_.ValidCD() : status_.ValidLCD(), -1);
        box->SetText("3/14/2010");
        EXPECT_EQ(isContract ? status_.ValidCD() : status_.ValidLCD(), 3) << "the first fault is told";
    }
}

TEST_F(FieldStatusTest, ACurrentListDateInTheFutureBindsContractAndCancelDateAndNotASaleDate) {
    old_.SetText("3/15/2010");
    cld_.SetText("7/1/2010");
    cd_.SetText("6/1/2010");
    EXPECT_EQ(status_.ValidCD(), 4);
    cd_.SetText("");
    lcd_.SetText("6/1/2010");
    EXPECT_EQ(status_.ValidLCD(), 4);
    sd_.SetText("6/1/2010");
    EXPECT_EQ(status_.ValidSD(), -1);
    cld_.SetText("6/2/2010");
    EXPECT_EQ(status_.ValidSD(), 4);
    cld_.SetText("6/1/2010");
    EXPECT_EQ(status_.ValidSD(), -1);
}

TEST_F(FieldStatusTest, ABadCurrentListDateBindsNothing) {
    cld_.SetText("abc");
    cd_.SetText("6/1/2010");
    EXPECT_EQ(status_.ValidCD(), -1);
}

TEST_F(FieldStatusTest, OnlyAContractDateInOrderBindsTheSaleDate) {
    old_.SetText("3/15/2010");
    sd_.SetText("5/14/2010");
    cd_.SetText("5/15/2010");
    EXPECT_EQ(status_.ValidSD(), 5);
    cd_.SetText("5/14/2010");
    EXPECT_EQ(status_.ValidSD(), -1);
    cd_.SetText("7/1/2010");
    EXPECT_EQ(status_.ValidSD(), -1) << "it is no contract date in order";
}

TEST_F(FieldStatusTest, FollowsTheEffectiveDate) {
    old_.SetText("7/1/2010");
    EXPECT_EQ(status_.ValidOLD(), 2);
    effectiveDate_ += 1;
    EXPECT_EQ(status_.ValidOLD(), -1);
}

}  // namespace
}  // namespace zenvora::records
