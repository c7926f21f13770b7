#include "import/field_vocabulary.h"

#include <gtest/gtest.h>

namespace zenvora::importing {
namespace {

TEST(FieldVocabulary, ComparesLettersDigitsAndNumberSigns) {
    for (const char* name : {"ListPrice", "LIST_PRICE", "List Price", "list price"})
        EXPECT_EQ(PlainName(name), "listprice");
    EXPECT_EQ(PlainName("Unit #"), "unit#");
    EXPECT_EQ(PlainName("$/SQUARE FEET"), "squarefeet");
}

TEST(FieldVocabulary, PrefersTheStandardName) {
    EXPECT_LT(*RankOf("CloseDate", Meaning::SaleDate), *RankOf("SOLD DATE", Meaning::SaleDate));
    EXPECT_LT(*RankOf("DOM", Meaning::DaysOnMarket), *RankOf("CDOM", Meaning::DaysOnMarket));
    EXPECT_LT(*RankOf("Agent Days On Market", Meaning::DaysOnMarket),
              *RankOf("Cumulative DOM", Meaning::DaysOnMarket));
    EXPECT_LT(*RankOf("sold_price", Meaning::SalePrice), *RankOf("amount", Meaning::SalePrice));
    EXPECT_LT(*RankOf("CancellationDate", Meaning::CancelDate),
              *RankOf("WithdrawnDate", Meaning::CancelDate));
}

struct Known {
    const char* name;
    Meaning meaning;
};
class KnownName : public testing::TestWithParam<Known> {};

TEST_P(KnownName, IsUnderstood) {
    EXPECT_TRUE(RankOf(GetParam().name, GetParam().meaning)) << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(
    Of, KnownName,
    testing::Values(
        Known{"UnparsedAddress", Meaning::Address}, Known{"full_street_line", Meaning::Address},
        Known{"Street Number", Meaning::StreetNumber}, Known{"Street #", Meaning::StreetNumber},
        Known{"St#", Meaning::StreetNumber}, Known{"STREET_NO", Meaning::StreetNumber},
        Known{"CP", Meaning::DirectionBefore}, Known{"Str Name", Meaning::StreetName},
        Known{"Sfx", Meaning::StreetSuffix}, Known{"StreetDirSuffix", Meaning::DirectionAfter},
        Known{"UNIT_NO", Meaning::Unit}, Known{"Unit #", Meaning::Unit},
        Known{"ListingContractDate", Meaning::ListDate}, Known{"listingdate", Meaning::ListDate},
        Known{"On Market Date", Meaning::OnMarketDate}, Known{"Orig LIst Price", Meaning::OriginalPrice},
        Known{"PriceOrig", Meaning::OriginalPrice}, Known{"Orig $", Meaning::OriginalPrice},
        Known{"Back on Market Date", Meaning::CurrentListDate}, Known{"LIST_PRICE", Meaning::ListPrice},
        Known{"List Px", Meaning::ListPrice}, Known{"List $", Meaning::ListPrice},
        Known{"List Price ($)", Meaning::ListPrice}, Known{"Current Price", Meaning::ListPrice},
        Known{"Under Contract Date", Meaning::ContractDate}, Known{"pending_date", Meaning::ContractDate},
        Known{"Contract Date", Meaning::ContractOrListDate}, Known{"Cancel Date", Meaning::CancelDate},
        Known{"Off Mkt Dt", Meaning::OffMarketDate}, Known{"Sale Dt", Meaning::SaleDate},
        Known{"Sold date (MM/DD/YYYY)", Meaning::SaleDate}, Known{"lastSoldDate", Meaning::SaleDate},
        Known{"Sold Pr", Meaning::SalePrice}, Known{"Property price", Meaning::SalePrice},
        Known{"PRICE", Meaning::AnyPrice}, Known{"TOWN", Meaning::City},
        Known{"STATE OR PROVINCE", Meaning::State}, Known{"ZIP OR POSTAL CODE", Meaning::Zip},
        Known{"MT", Meaning::DaysOnMarket}, Known{"Stat", Meaning::Status},
        Known{"Original Listing Price", Meaning::OriginalPrice},
        Known{"Current Listing Date", Meaning::CurrentListDate},
        Known{"Listing Cancel Date", Meaning::CancelDate}));

TEST(FieldVocabulary, TakesNoNameForAnotherThatItHolds) {
    for (const char* name : {"List Price/SqFt", "Sold Price/SqFt", "List Price Low", "ListPriceLow", "LP/SP",
                             "SP/LP%", "SP:OLP", "$/SQUARE FEET", "Sold Terms", "Prev Price",
                             "PreviousListPrice", "list_price_min", "price_per_sqft"}) {
        for (const Meaning price : {Meaning::OriginalPrice, Meaning::ListPrice, Meaning::SalePrice})
            EXPECT_FALSE(RankOf(name, price)) << name;
    }
    for (const char* name : {"Projected Closing Date", "ANTICCLOSEDDATE", "undercontract", "Photo Date",
                             "Status Change Date", "Expiration Date", "Sale Type"}) {
        for (const Meaning date :
             {Meaning::ListDate, Meaning::OnMarketDate, Meaning::ContractDate, Meaning::ContractOrListDate,
              Meaning::CancelDate, Meaning::OffMarketDate, Meaning::SaleDate})
            EXPECT_FALSE(RankOf(name, date)) << name;
    }
    for (const char* name :
         {"Directions", "Agent Email Address", "Address Display", "Area", "Subdivision", "URL"}) {
        EXPECT_FALSE(RankOf(name, Meaning::Address)) << name;
    }
    EXPECT_FALSE(RankOf("TOWN_NUM", Meaning::City));
    EXPECT_FALSE(RankOf("PostalCodePlus4", Meaning::Zip));
    EXPECT_FALSE(RankOf("", Meaning::Address));
}

}  // namespace
}  // namespace zenvora::importing
