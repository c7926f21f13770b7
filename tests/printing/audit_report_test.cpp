// Where on which page the report puts its texts.

#include "printing/audit_report_fixture.h"

namespace zenvora::printing {
namespace {

const page::PageFont kTimes11{"Times New Roman", 11, false};
const page::PageFont kTimes12{"Times New Roman", 12, false};
const page::PageFont kTimes12Bold{"Times New Roman", 12, true};
const page::PageFont kRowBold{"Arial Narrow", 10, true};
const page::PageFont kNarrow12Bold{"Arial Narrow", 12, true};

TEST_F(AuditReportTest, WithoutRecordsPrintsBothHeadingsAndNothingElse) {
    const AuditCounts counts = Print();
    EXPECT_EQ(counts.listings, 0);
    EXPECT_EQ(counts.comps, 0);
    EXPECT_EQ(counts.pages, 1);
    const std::string rule(110, '_');
    struct Expected {
        std::string text;
        double x;
        double y;
        page::PageFont font;
    };
    // The title is 30 characters of 144 twips; two breaks are three lines of 384. The name of the Databook
    // stands beside its label of 16 characters of 108; a break in size 12 is two lines of 288. The heading is
    // 220 high, the rule 264. The second section is two lines of 220 and five of 264 below.
    const std::vector<Expected> expected{
        {"Market Conditions Audit Report", 5760, 1008, {"Times New Roman", 16, true}},
        {"Database Name:  ", kLeft, 2544, kTimes12Bold},
        {"LISTINGS.MDB", 2736, 2544, kTimes12},
        {"Listings:", kLeft, 3408, kTimes12Bold},
        {kHeading, kLeft, 4272, kRowBold},
        {rule, kLeft, 4492, kTimes11},
        {"Comps:", kLeft, 6516, kNarrow12Bold},
        {kHeading, kLeft, 7308, kRowBold},
        {rule, kLeft, 7528, kTimes11},
    };
    ASSERT_EQ(record.texts.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(record.texts[i].text, expected[i].text);
        EXPECT_EQ(record.texts[i].x, expected[i].x) << expected[i].text;
        EXPECT_EQ(record.texts[i].y, expected[i].y) << expected[i].text;
        EXPECT_EQ(record.texts[i].font, expected[i].font) << expected[i].text;
        EXPECT_EQ(record.texts[i].page, 1);
    }
    EXPECT_EQ(record.orientation, page::kLandscape);
    EXPECT_EQ(record.ended, 1);
    EXPECT_EQ(record.killed, 0);
}

TEST_F(AuditReportTest, OneListingStandsBelowTheRuleInItsColumns) {
    AddListing("12 OAK ST", {{"ADDRESS", std::string("12 Oak St")},
                             {"CITY", std::string("Troy")},
                             {"ST", std::string("MI")},
                             {"ZIP", std::string("48083")},
                             {"ORIGLISTDATE", Dated(Day(2010, 1, 30))},
                             {"ORIGLISTPRICE", 259900.0},
                             {"LASTLISTDATE", Dated(Day(2010, 4, 1))},
                             {"LASTLISTPRICE", 249900.0},
                             {"CONTRACTDATE", Dated(Day(2010, 6, 1))},
                             {"LISTCANCELDATE", Dated(Day(2010, 6, 2))},
                             {"SALEDATE", Dated(Day(2010, 7, 4))},
                             {"SELLINGPR", 245000.0}});
    Print();
    const char* const values[] = {"12 Oak St", "Troy",     "MI",       "48083",    "1/30/2010", " 259900 ",
                                  "4/1/2010",  " 249900 ", "6/1/2010", "6/2/2010", "7/4/2010",  " 245000 "};
    for (std::size_t i = 0; i < std::size(values); ++i) {
        ExpectAt(values[i], 1, kColumns[i], 4756);
        EXPECT_EQ(The(values[i]).font, kRow);
    }
    ExpectAt("Comps:", 1, kLeft, 6736);
}

TEST_F(AuditReportTest, MissingDatesAndPricesAreEmpty) {
    AddListing("BARE", {{"CITY", jet::Null{}}});
    Print();
    const auto row = std::count_if(record.texts.begin(), record.texts.end(),
                                   [](const DrawnText& drawn) { return drawn.y == 4756; });
    EXPECT_EQ(row, 1) << "the address alone";
    ExpectAt("Comps:", 1, kLeft, 6736);
}

TEST_F(AuditReportTest, ValuesAreTrimmedAndPricesAreWholeDollars) {
    AddListing("A", {{"ADDRESS", std::string("  12 Oak St ")}, {"ORIGLISTPRICE", 199999.5}});
    Print();
    EXPECT_TRUE(IsPrinted("12 Oak St"));
    EXPECT_TRUE(IsPrinted(" 200000 "));
}

TEST_F(AuditReportTest, RowsFollowEachOtherLineByLine) {
    AddListings(3);
    Print();
    ExpectAt("L1", 1, kLeft, 4756);
    ExpectAt("L2", 1, kLeft, 4976);
    ExpectAt("L3", 1, kLeft, 5196);
}

TEST_F(AuditReportTest, ACompStandsBelowTheSecondHeading) {
    AddComp("C1");
    Print();
    ExpectAt("C1", 1, kLeft, 7792);
    ExpectAt(" 100000 ", 1, kColumns[11], 7792);
    EXPECT_EQ(The("C1").font, kRow);
}

TEST_F(AuditReportTest, APageHoldsTwentyNineListings) {
    AddListings(28);
    Print();
    ExpectAt("L28", 1, kLeft, 4756 + 27 * 220);
    EXPECT_EQ(Headings().at(1).first, 2)
        << "the page is too full for the second section, and not for its rows";
    EXPECT_EQ(Headings().size(), 2U);
}

TEST_F(AuditReportTest, ExactlyAPageOfListingsStartsANewOneAndRepeatsTheHeading) {
    AddListings(29);
    Print();
    ExpectAt("L29", 1, kLeft, 4756 + 28 * 220);
    // The second page has the heading again, without a row, and then the other section. Below that heading
    // the font is still the default one: two lines of 264, five of 288.
    ExpectAt("Comps:", 2, kLeft, 3460);
    EXPECT_EQ(The("Comps:").font, kTimes12Bold);
    EXPECT_EQ(Headings(), (std::vector<std::pair<int, double>>{{1, 4272}, {2, 1008}, {2, 4324}}));
    EXPECT_EQ(record.pages, 2);
}

TEST_F(AuditReportTest, APageAndOneListing) {
    AddListings(30);
    Print();
    ExpectAt("L30", 2, kLeft, 1492);
    ExpectAt("Comps:", 2, kLeft, 3472);
    EXPECT_EQ(The("Comps:").font, kNarrow12Bold);
}

TEST_F(AuditReportTest, LaterPagesHoldNoMoreRowsThanTheFirst) {
    AddListings(59);
    const AuditCounts counts = Print();
    ExpectAt("L30", 2, kLeft, 1492);
    ExpectAt("L58", 2, kLeft, 1492 + 28 * 220);
    ExpectAt("L59", 3, kLeft, 1492);
    EXPECT_EQ(counts.listings, 59);
    EXPECT_EQ(counts.pages, 3);
    EXPECT_EQ(record.pages, 3);
}

TEST_F(AuditReportTest, SixFreeRowsAreEnoughForTheSecondSection) {
    AddListings(29 + 23);
    Print();
    ExpectAt("Comps:", 2, kLeft, 1492 + 23 * 220 + 2 * 220 + 5 * 264);
    EXPECT_EQ(record.pages, 2);
}

TEST_F(AuditReportTest, FiveFreeRowsAreNotAndStartANewPageForIt) {
    AddListings(29 + 24);
    AddComp("C1");
    Print();
    ExpectAt("Comps:", 3, kLeft, 1008);
    EXPECT_EQ(Headings().back(), (std::pair<int, double>{3, 1800}));
    ExpectAt("C1", 3, kLeft, 2284);
}

TEST_F(AuditReportTest, ThePageOfTheSecondSectionIsMeasuredFromItsOwnHeading) {
    // Below one listing the rows of the second section start at 8012. 3220 twips are left above the bottom
    // margin, 13 lines of the default font in size 10, which is 240 high.
    AddListings(1);
    AddComps(27);
    const AuditCounts counts = Print();
    ExpectAt("C1", 1, kLeft, 8012);
    ExpectAt("C13", 1, kLeft, 8012 + 12 * 220);
    ExpectAt("C14", 2, kLeft, 1492);
    ExpectAt("C26", 2, kLeft, 1492 + 12 * 220);
    ExpectAt("C27", 3, kLeft, 1492);
    EXPECT_EQ(counts.comps, 27);
    EXPECT_EQ(counts.pages, 3);
}

TEST_F(AuditReportTest, APageThatTheCompsFillExactlyIsFollowedByAHeadingAlone) {
    AddListings(1);
    AddComps(13);
    Print();
    EXPECT_EQ(record.pages, 2);
    ASSERT_EQ(record.OnPage(2).size(), 2U);
    EXPECT_EQ(record.OnPage(2)[0].text, kHeading);
    EXPECT_EQ(record.OnPage(2)[0].y, 1008);
    EXPECT_EQ(record.OnPage(2)[1].y, 1228);
}

TEST_F(AuditReportTest, TheTitleStandsOnTheFirstPageOnly) {
    AddListings(40);
    Print();
    ExpectAt("Market Conditions Audit Report", 1, 5760, 1008);
    ExpectAt("Database Name:  ", 1, kLeft, 2544);
    ExpectAt("Listings:", 1, kLeft, 3408);
}

// Once the listings left so little of the first page that the count of the rows to come was 0 or less, which
// no page ever reached: all further records ran off the lower edge of the paper.
TEST_F(AuditReportTest, NoRecordIsPrintedOffThePaperHoweverFullThePageIs) {
    for (int listings = 0; listings < 30; ++listings) {
        if (listings > 0) AddListing("L" + std::to_string(listings));
        if (listings == 0) AddComps(60);
        Forget();
        const AuditCounts counts = Print();
        EXPECT_EQ(counts.comps, 60) << listings;
        for (const DrawnText& drawn : record.texts) {
            const double height = drawn.font.Size * (drawn.font.Name == "Arial Narrow" ? 22 : 24);
            EXPECT_LE(drawn.y + height, 12240 - 504) << drawn.text << " with " << listings << " listings";
        }
    }
}

TEST_F(AuditReportTest, ASecondSectionThatStartsLowGoesOnAtTheLowestEdge) {
    AddListings(16);
    AddComps(48);
    Print();
    ExpectAt("Comps:", 1, kLeft, 6516 + 16 * 220);
    ExpectAt("C1", 1, kLeft, 11312);
    ExpectAt("C2", 2, kLeft, 1492);
    ExpectAt("C47", 2, kLeft, 1492 + 45 * 220);
    ExpectAt("C48", 3, kLeft, 1492);
}

TEST_F(AuditReportTest, ASecondSectionWithoutRoomForARowStartsANewPage) {
    AddListings(17);
    AddComp("C1");
    Print();
    ExpectAt("Comps:", 2, kLeft, 1008);
    ExpectAt("C1", 2, kLeft, 2284);
}

TEST_F(AuditReportTest, APageThatHoldsNoRowIsPrintedAllTheSame) {
    record.shortSide = 3000;
    AddListings(3);
    Print();
    EXPECT_TRUE(IsPrinted("L1"));
    EXPECT_TRUE(IsPrinted("L3"));
    EXPECT_EQ(record.ended, 1);
}

}  // namespace
}  // namespace zenvora::printing
