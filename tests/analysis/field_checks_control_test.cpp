#include "analysis/databook_fixture.h"
#include "analysis/field_checks.h"
#include "analysis/selected_flag.h"
#include "analysis/validity_estimate.h"

namespace zenvora::analysis {
namespace {

class ControlChecks : public DatabookTest {
  protected:
    using Check = bool (*)(ado::Adodc&, Date);
    struct Column {
        const char* name;
        Check check;
        jet::Value sound;
    };
    const std::vector<Column> columns{
        {"ORIGLISTDATE", IsOrigListDateOk, DaysBack(100)}, {"ORIGLISTPRICE", IsOrigListPriceOk, 259900.0},
        {"LASTLISTDATE", IsCurrListDateOk, DaysBack(90)},  {"LASTLISTPRICE", IsCurrListPriceOk, 249900.0},
        {"CONTRACTDATE", IsContractDateOk, DaysBack(80)},  {"LISTCANCELDATE", IsCancelDateOk, DaysBack(80)},
        {"SALEDATE", IsSaleDateOk, DaysBack(70)},          {"SELLINGPR", IsSalePriceOk, 240000.0}};
};

TEST_F(ControlChecks, PassOnASoundRecord) {
    Fields fields;
    for (const Column& column : columns)
        fields.emplace_back(column.name, column.sound);
    Add("A", fields);
    Find("A");
    for (const Column& column : columns)
        EXPECT_TRUE(column.check(adoDatabook, Effective())) << column.name;
    EXPECT_TRUE(IsSaleWithinYear(adoDatabook, Effective()));
    EXPECT_TRUE(HasOriginalListing(adoDatabook));
}

TEST_F(ControlChecks, FailOnNull) {
    Fields fields;
    for (const Column& column : columns)
        fields.emplace_back(column.name, jet::Null{});
    Add("A", fields);
    Find("A");
    for (const Column& column : columns)
        EXPECT_FALSE(column.check(adoDatabook, Effective())) << column.name;
    EXPECT_FALSE(IsSaleWithinYear(adoDatabook, Effective()));
    EXPECT_FALSE(HasOriginalListing(adoDatabook));
}

TEST_F(ControlChecks, LookAtEachColumnByItself) {
    for (const Column& column : columns) {
        const std::string key = column.name;
        Add(key, {{column.name, column.sound}});
        Find(key);
        for (const Column& other : columns) {
            EXPECT_EQ(other.check(adoDatabook, Effective()), &other == &column)
                << column.name << ", " << other.name;
        }
    }
}

TEST_F(ControlChecks, RoundPricesToWholeDollars) {
    Add("A", {{"SELLINGPR", 0.49}, {"ORIGLISTPRICE", 0.5}});
    Find("A");
    EXPECT_FALSE(IsSalePriceOk(adoDatabook, Effective()));
    EXPECT_TRUE(IsOrigListPriceOk(adoDatabook, Effective()));
}

TEST_F(ControlChecks, SaleWithinYearEndsAt365Days) {
    Add("A", {{"SALEDATE", DaysBack(365)}});
    Add("B", {{"SALEDATE", DaysBack(366)}});
    Add("C", {{"SALEDATE", DaysBack(-1)}});
    Find("A");
    EXPECT_TRUE(IsSaleWithinYear(adoDatabook, Effective()));
    Find("B");
    EXPECT_FALSE(IsSaleWithinYear(adoDatabook, Effective()));
    Find("C");
    EXPECT_FALSE(IsSaleWithinYear(adoDatabook, Effective()));
}

TEST_F(ControlChecks, AnOriginalListingNeedsPriceAndDate) {
    Add("NO PRICE", {{"ORIGLISTDATE", DaysBack(100)}});
    Add("NO DATE", {{"ORIGLISTPRICE", 259900.0}});
    Add("TO COME", {{"ORIGLISTDATE", DaysBack(-100)}, {"ORIGLISTPRICE", 1.0}});
    Find("NO PRICE");
    EXPECT_FALSE(HasOriginalListing(adoDatabook));
    Find("NO DATE");
    EXPECT_FALSE(HasOriginalListing(adoDatabook));
    Find("TO COME");
    EXPECT_TRUE(HasOriginalListing(adoDatabook)) << "no effective date has a say in it";
}

TEST_F(ControlChecks, FlagsOfTheCurrentRecord) {
    Add("NULL", {{"SELECTED", jet::Null{}}});
    Add("EMPTY", {{"SELECTED", std::string{}}});
    Add("TWO", {{"SELECTED", std::string{"2"}}});
    Add("NINE", {{"SELECTED", std::string{"9"}}});
    for (const auto& [key, usable] : {std::pair{"NULL", false}, std::pair{"EMPTY", false},
                                      std::pair{"TWO", true}, std::pair{"NINE", false}}) {
        Find(key);
        EXPECT_EQ(IsSelectedUsable(adoDatabook.Recordset()), usable) << key;
    }
}

TEST_F(ControlChecks, EstimateOfTheRun) {
    EXPECT_EQ(GetValidityTimeEstimate(adoDatabook), "0 seconds");
    for (int i = 0; i < 100; ++i)
        Add("KEY " + std::to_string(i), {});
    EXPECT_EQ(GetValidityTimeEstimate(adoDatabook), "1 seconds");
}

}  // namespace
}  // namespace zenvora::analysis
