#include "transfer/audit_text.h"

#include "audit_fixture.h"

namespace zenvora::transfer {
namespace {

class AuditTextTest : public AuditTest {
  protected:
    AuditText Build() { return BuildAuditText(adoDatabook, effective); }
    AuditText BuildOf(int listings, int sales) {
        AddListings(listings);
        AddSales(sales);
        Select();
        return Build();
    }
};

TEST_F(AuditTextTest, TenListingsAndFiveComparablesFillOnePart) {
    const AuditText text = BuildOf(10, 5);
    EXPECT_EQ(text.part1, kHead + Listings(1, 10) + "Comparables:\r\n" + Sales(1, 5));
    EXPECT_EQ(text.part2, "");
    EXPECT_EQ(text.leftOut, 0);
}

TEST_F(AuditTextTest, ALineHoldsTwelveFieldsEachWithItsComma) {
    Add("12 Oak St", {{"CITY", std::string("Troy")},
                      {"ST", std::string("MI")},
                      {"ZIP", std::string("02124")},
                      {"CONTRACTDATE", On(2010, 3, 9)},
                      {"SALEDATE", On(2010, 4, 1)},
                      {"SELLINGPR", 245500.0}});
    Select();
    std::string text = " before ";
    adoDatabook.Recordset().MoveFirst();
    AppendAuditLine(text, adoDatabook, effective);
    EXPECT_EQ(text,
              "before12 Oak St, Troy, MI, 02124, 1/30/2009, 259900, 2/15/2009, 249900, 3/9/2010, , 4/1/2010, "
              "245500, \r\n");
}

TEST_F(AuditTextTest, ListDatesAndPricesAreAlwaysShownTheOthersWhenTheyAreValid) {
    Add("L", {{"ORIGLISTDATE", jet::DateTime{2.0}},
              {"ORIGLISTPRICE", 0.0},
              {"LASTLISTDATE", jet::Value{}},
              {"LASTLISTPRICE", jet::Value{}},
              {"CONTRACTDATE", DaysBack(-1)},
              {"LISTCANCELDATE", DaysBack(3)},
              {"SELLINGPR", 0.0}});
    Select();
    EXPECT_EQ(Build().part1,
              std::string(kHead) + "L, , , , 1/1/1900, 0, 1/1/1900, 0, , 6/27/2010, , , \r\nComparables:\r\n")
        << "the contract lies after the effective date";
}

TEST_F(AuditTextTest, WithoutRecordsThereIsNoText) {
    EXPECT_EQ(Build().part1, "");
    EXPECT_EQ(Build().part2, "");
}

TEST_F(AuditTextTest, OnlyTheFlagsOneAndThreeAreUsed) {
    for (const char* flag : {"0", "1", "2", "3", "9", ""})
        Add(std::string("L") + flag, {{"SELECTED", std::string(flag)}});
    Add("LNull", {{"SELECTED", jet::Value{}}});
    Select();
    EXPECT_EQ(Build().part1,
              kHead + std::string("L1, , , , 1/30/2009, 259900, 2/15/2009, 249900, , , , , \r\n"
                                  "L3, , , , 1/30/2009, 259900, 2/15/2009, 249900, , , , , \r\n"
                                  "Comparables:\r\n"));
}

TEST_F(AuditTextTest, ASaleWithinTheYearIsAComparableAnOlderOneIsNowhere) {
    Add("A", {{"SALEDATE", DaysBack(0)}, {"SELLINGPR", 1.0}});
    Add("B", {{"SALEDATE", DaysBack(365)}, {"SELLINGPR", 2.0}});
    Add("C", {{"SALEDATE", DaysBack(366)}, {"SELLINGPR", 3.0}});
    Add("D", {{"SALEDATE", DaysBack(-1)}, {"SELLINGPR", 4.0}});
    Add("E", {{"SALEDATE", jet::Value{}}});
    Select();
    EXPECT_EQ(
        Build().part1,
        kHead + std::string("E, , , , 1/30/2009, 259900, 2/15/2009, 249900, , , , , \r\nComparables:\r\n"
                            "A, , , , 1/30/2009, 259900, 2/15/2009, 249900, , , 6/30/2010, 1, \r\n"
                            "B, , , , 1/30/2009, 259900, 2/15/2009, 249900, , , 6/30/2009, 2, \r\n"));
}

TEST_F(AuditTextTest, SixtyNineListingsLeaveTheComparablesToThePartBehind) {
    const AuditText text = BuildOf(69, 2);
    EXPECT_EQ(text.part1, kHead + Listings(1, 69));
    EXPECT_EQ(text.part2, "Comparables:\r\n" + Sales(1, 2));
}

TEST_F(AuditTextTest, ExactlySeventyListingsDropOutOfTheText) {
    const AuditText text = BuildOf(70, 2);
    EXPECT_EQ(text.part1, "");
    EXPECT_EQ(text.part2, "Comparables:\r\n" + Sales(1, 2));
    EXPECT_EQ(text.leftOut, 70);
}

TEST_F(AuditTextTest, SeventyOneListingsGoOnInTheSecondPart) {
    const AuditText text = BuildOf(71, 2);
    EXPECT_EQ(text.part1, kHead + Listings(1, 70));
    EXPECT_EQ(text.part2, Listing(71) + "Comparables:\r\n" + Sales(1, 2));
    EXPECT_EQ(text.leftOut, 0);
}

TEST_F(AuditTextTest, ManyComparablesGoOnInTheSecondPartWithoutAHead) {
    const AuditText text = BuildOf(10, 70);
    // The count stands at 13 before the first of them, so that 59 fill the first part.
    EXPECT_EQ(text.part1, kHead + Listings(1, 10) + "Comparables:\r\n" + Sales(1, 59));
    EXPECT_EQ(text.part2, Sales(60, 70));
}

TEST_F(AuditTextTest, ComparablesEndWithTheSecondPart) {
    const AuditText text = BuildOf(10, 140);
    EXPECT_EQ(text.part2, Sales(60, 131));
    EXPECT_EQ(text.leftOut, 140 - 131);
}

TEST_F(AuditTextTest, With141ListingsOnlyTheHeadOfTheComparablesFits) {
    const AuditText text = BuildOf(141, 3);
    EXPECT_EQ(text.part1, kHead + Listings(1, 70));
    EXPECT_EQ(text.part2, Listings(71, 141) + "Comparables:\r\n");
}

TEST_F(AuditTextTest, With142ListingsTheLast72DropOut) {
    const AuditText text = BuildOf(142, 2);
    EXPECT_EQ(text.part1, kHead + Listings(1, 70));
    EXPECT_EQ(text.part2, "Comparables:\r\n" + Sales(1, 2));
    EXPECT_EQ(text.leftOut, 72);
}

TEST_F(AuditTextTest, MoreThan142ListingsEndTheTextAtThe142ndLine) {
    const AuditText text = BuildOf(145, 2);
    EXPECT_EQ(text.part1, kHead + Listings(1, 70));
    EXPECT_EQ(text.part2, Listings(71, 142));
    EXPECT_EQ(text.leftOut, 3 + 2);
}

TEST_F(AuditTextTest, TheRecordsetComesBackToItsRecord) {
    AddListings(5);
    Select();
    adoDatabook.Recordset().MoveTo(3);
    Build();
    EXPECT_EQ(adoDatabook.Recordset().Position(), 3);
}

}  // namespace
}  // namespace zenvora::transfer
