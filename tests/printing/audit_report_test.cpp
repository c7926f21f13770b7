#include "printing/audit_report.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "analysis/databook_fixture.h"
#include "databook/field_access.h"
#include "platform/fault.h"
#include "support/recording_page.h"

namespace zenvora::printing {
namespace {

using analysis::Dated;
using analysis::Day;
using analysis::DaysBack;
using analysis::Fields;
using analysis::Flag;
using testing_support::DrawnText;
using testing_support::PageRecord;

constexpr double kLeft = 1008;
/// Where the columns begin by the metrics of the recording device: the margin and the characters of the
/// headings before, 70 twips each.
constexpr double kColumns[] = {1008, 3598, 5138, 5628, 6468, 7448, 8358, 9338, 10248, 11088, 12208, 13048};
constexpr const char* kHeading =
    "Address                              City                  State  Zip         "
    "Orig List Dt  Orig List $  Curr List Dt  Curr List $  Cont Dt     List Cancel Dt  Sale Dt     "
    "Sale $    ";

class Krn final : public OpenReport {
  public:
    [[nodiscard]] bool IsKrnRunning() override {
        ++asked;
        return running;
    }
    [[nodiscard]] std::string ReportName() override {
        if (fails) throw Fault{fault::kLinkFailed, "as the test wants it"};
        return name;
    }

    bool running = true;
    bool fails = false;
    int asked = 0;
    std::string name = R"(c:\reports\Smith.rpt)";
};

class AuditReportTest : public analysis::DatabookTest {
  protected:
    /// A selected listing: no sale date.
    void AddListing(const std::string& key, const Fields& others = {}) {
        Fields fields{{"ADDRESS", key}, {"SELECTED", Flag("1")}};
        fields.insert(fields.end(), others.begin(), others.end());
        Add(key, fields);
    }
    /// A selected sale of 30 days before the effective date.
    void AddComp(const std::string& key, const Fields& others = {}) {
        Fields fields{
            {"ADDRESS", key}, {"SELECTED", Flag("1")}, {"SALEDATE", DaysBack(30)}, {"SELLINGPR", 100000.0}};
        fields.insert(fields.end(), others.begin(), others.end());
        Add(key, fields);
    }
    void AddListings(int count) {
        adoDatabook.Recordset().BeginBatch();
        for (int i = 1; i <= count; ++i)
            AddListing("L" + std::to_string(i));
        adoDatabook.Recordset().EndBatch();
    }
    void AddComps(int count) {
        adoDatabook.Recordset().BeginBatch();
        for (int i = 1; i <= count; ++i)
            AddComp("C" + std::to_string(i));
        adoDatabook.Recordset().EndBatch();
    }

    [[nodiscard]] AuditReport Report() {
        return {.session = session,
                .adoDatabook = adoDatabook,
                .effectiveDate = analysis::Effective(),
                .databookName = "LISTINGS.MDB"};
    }
    AuditCounts Print() { return Print(Report()); }
    AuditCounts Print(const AuditReport& report) {
        const PrintDefaults defaults = InitPrinterDefaults(printer);
        return PrintAuditReport(report, printer, defaults);
    }
    /// A new record of the same device.
    void Forget() {
        record.texts.clear();
        record.pages = 1;
    }
    void Press() {
        const PrintDefaults defaults = InitPrinterDefaults(printer);
        cmdPrintAudit(Report(), printer, defaults);
    }

    /// The only text that reads so; fails the test when there is none or another.
    [[nodiscard]] DrawnText The(std::string_view text) const {
        std::vector<DrawnText> found;
        for (const DrawnText& drawn : record.texts) {
            if (drawn.text == text) found.push_back(drawn);
        }
        EXPECT_EQ(found.size(), 1U) << text;
        return found.empty() ? DrawnText{} : found[0];
    }
    void ExpectAt(std::string_view text, int page, double x, double y) const {
        const DrawnText drawn = The(text);
        EXPECT_EQ(drawn.page, page) << text;
        EXPECT_EQ(drawn.x, x) << text;
        EXPECT_EQ(drawn.y, y) << text;
    }
    /// Pages and heights of all headings, in the order of printing.
    [[nodiscard]] std::vector<std::pair<int, double>> Headings() const {
        std::vector<std::pair<int, double>> found;
        for (const DrawnText& drawn : record.texts) {
            if (drawn.text == kHeading) found.emplace_back(drawn.page, drawn.y);
        }
        return found;
    }
    [[nodiscard]] bool IsPrinted(std::string_view text) const {
        return std::any_of(record.texts.begin(), record.texts.end(),
                           [&](const DrawnText& drawn) { return drawn.text == text; });
    }
    /// Whether the record of this address stands above or below "Comps:", as "L", "C" or "LC"; "" for
    /// neither.
    [[nodiscard]] std::string SectionsOf(std::string_view address) const {
        std::string sections;
        char section = 'L';
        for (const DrawnText& drawn : record.texts) {
            if (drawn.text == "Comps:") section = 'C';
            if (drawn.text == address) sections += section;
        }
        return sections;
    }

    PageRecord record;
    std::unique_ptr<page::Printer> made = testing_support::MakeRecordingPrinter(record);
    page::Printer& printer = *made;
    Krn krn;
};

const page::PageFont kTimes11{"Times New Roman", 11, false};
const page::PageFont kTimes12{"Times New Roman", 12, false};
const page::PageFont kTimes12Bold{"Times New Roman", 12, true};
const page::PageFont kRow{"Arial Narrow", 10, false};
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

// Which records

TEST_F(AuditReportTest, OnlySelectedRecordsArePrinted) {
    for (const char* flag : {"0", "1", "2", "3", "9"}) {
        AddListing(std::string("L") + flag, {{"SELECTED", Flag(flag)}});
        AddComp(std::string("C") + flag, {{"SELECTED", Flag(flag)}});
    }
    AddListing("LNULL", {{"SELECTED", jet::Null{}}});
    Print();
    EXPECT_EQ(SectionsOf("L0") + SectionsOf("C0"), "");
    EXPECT_EQ(SectionsOf("L1") + SectionsOf("C1"), "LC");
    EXPECT_EQ(SectionsOf("L2") + SectionsOf("C2"), "");
    EXPECT_EQ(SectionsOf("L3") + SectionsOf("C3"), "LC");
    EXPECT_EQ(SectionsOf("L9") + SectionsOf("C9"), "");
    EXPECT_EQ(SectionsOf("LNULL"), "");
}

TEST_F(AuditReportTest, ASaleAfterTheEffectiveDateIsAListingWithItsSale) {
    AddComp("LATER", {{"SALEDATE", DaysBack(-1)}, {"SELLINGPR", 123000.0}});
    Print();
    EXPECT_EQ(SectionsOf("LATER"), "L");
    ExpectAt("7/1/2010", 1, kColumns[10], 4756);
    ExpectAt(" 123000 ", 1, kColumns[11], 4756);
}

TEST_F(AuditReportTest, ASaleOnTheEffectiveDateIsACompAndNoListing) {
    AddComp("TODAY", {{"SALEDATE", DaysBack(0)}});
    AddComp("NOON", {{"SALEDATE", Dated(analysis::Effective() + 0.5)}});
    Print();
    EXPECT_EQ(SectionsOf("TODAY"), "C");
    EXPECT_EQ(SectionsOf("NOON"), "L") << "a time of day is after the date, here as in the validity rules";
}

TEST_F(AuditReportTest, ARecordWithoutASaleIsAListingEvenWhenItsListingWasCancelled) {
    AddListing("CANCELLED", {{"LISTCANCELDATE", DaysBack(60)}});
    AddListing("NULLED", {{"SALEDATE", jet::Null{}}});
    Print();
    EXPECT_EQ(SectionsOf("CANCELLED"), "L");
    EXPECT_EQ(SectionsOf("NULLED"), "L");
}

TEST_F(AuditReportTest, ASaleCountsFor365Days) {
    AddComp("D365", {{"SALEDATE", DaysBack(365)}});
    AddComp("D366", {{"SALEDATE", DaysBack(366)}});
    Print();
    EXPECT_EQ(SectionsOf("D365"), "C");
    EXPECT_EQ(SectionsOf("D366"), "");
}

// The name of the report

TEST_F(AuditReportTest, WithoutKrnNothingIsAskedAndNoNameIsPrinted) {
    krn.running = false;
    AuditReport report = Report();
    report.openReport = &krn;
    Print(report);
    EXPECT_EQ(krn.asked, 1);
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_FALSE(IsPrinted("SMITH"));
    ExpectAt("Database Name:  ", 1, kLeft, 2544);
}

TEST_F(AuditReportTest, YesPrintsTheNameUnderTheTitle) {
    AuditReport report = Report();
    report.openReport = &krn;
    desktop.Expect("Do you wish to include the report name SMITH in the print out?", controls::Answer::Yes);
    Print(report);
    ASSERT_EQ(desktop.messages.size(), 1U);
    EXPECT_EQ(desktop.messages[0].title, "Report Name");
    EXPECT_EQ(desktop.messages[0].icon, controls::Icon::Question);
    EXPECT_EQ(desktop.messages[0].buttons, controls::Buttons::YesNo);
    // Five characters of 126 twips; then the breaks are three lines of 336.
    ExpectAt("SMITH", 1, 7605, 1392);
    EXPECT_EQ(The("SMITH").font, (page::PageFont{"Times New Roman", 14, true}));
    ExpectAt("Database Name:  ", 1, kLeft, 2736);
}

TEST_F(AuditReportTest, NoLeavesTheLineOutAndTheLayoutMovesUp) {
    AuditReport report = Report();
    report.openReport = &krn;
    desktop.Expect("Do you wish to include the report name SMITH in the print out?", controls::Answer::No);
    Print(report);
    EXPECT_FALSE(IsPrinted("SMITH"));
    ExpectAt("Database Name:  ", 1, kLeft, 2544);
}

TEST_F(AuditReportTest, ACentredTextStandsOnAWholeTwip) {
    record.longSide = 15841;
    Print();
    ExpectAt("Market Conditions Audit Report", 1, 5760, 1008);
}

// Long texts

TEST_F(AuditReportTest, ALongTextRunsOnIntoTheNextColumn) {
    const std::string address = "12345 Northeast Meadowlark Hollow Parkway Apt";
    AddListing("A", {{"ADDRESS", address}, {"CITY", std::string("Troy")}});
    Print();
    ExpectAt(address, 1, kLeft, 4756);
    EXPECT_EQ(The(address).font, kRow);
    ExpectAt("Troy", 1, kColumns[1], 4756);
}

TEST_F(AuditReportTest, FittedItIsSetSmallerOnTheLowerEdgeOfItsRow) {
    // 50 characters of 60 twips are 3000; the column has 2590, less a blank of 60. 8.43 points are 8.40 in
    // whole twips: 8.4 * 300 is 2520.
    const std::string address(50, 'x');
    AddListing("A", {{"ADDRESS", address}, {"CITY", std::string("Troy")}});
    AddListing("B");
    AuditReport report = Report();
    report.longText = LongText::Shrinks;
    Print(report);
    const DrawnText drawn = The(address);
    EXPECT_NEAR(drawn.font.Size, 8.4, 0.001);
    EXPECT_NEAR(drawn.y, 4756 + (10 - 8.4) * 22, 0.1);
    ExpectAt("Troy", 1, kColumns[1], 4756);
    EXPECT_EQ(The("Troy").font, kRow);
    ExpectAt("B", 1, kLeft, 4976);
}

TEST_F(AuditReportTest, FittingLeavesEveryTextThatFitsAsItIs) {
    AddListings(2);
    AddComps(20);
    Print();
    const std::vector<DrawnText> before = record.texts;
    Forget();
    AuditReport report = Report();
    report.longText = LongText::Shrinks;
    Print(report);
    ASSERT_EQ(record.texts.size(), before.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_EQ(record.texts[i].text, before[i].text);
        EXPECT_EQ(record.texts[i].x, before[i].x);
        EXPECT_EQ(record.texts[i].y, before[i].y);
        EXPECT_EQ(record.texts[i].font, before[i].font);
    }
}

TEST_F(AuditReportTest, FittedNoTextReachesTheNextColumn) {
    AddListing("A", {{"ADDRESS", std::string(50, 'W')},
                     {"CITY", std::string(30, 'W')},
                     {"ST", std::string("WW")},
                     {"ZIP", std::string("48083-1234")},
                     {"ORIGLISTPRICE", 123456789012.0},
                     {"SELLINGPR", 12345678901234.0},
                     {"SALEDATE", DaysBack(-1)}});
    AuditReport report = Report();
    report.longText = LongText::Shrinks;
    Print(report);
    int texts = 0;
    for (const DrawnText& drawn : record.texts) {
        if (drawn.y < 4756 || drawn.y > 4975) continue;
        ++texts;
        const auto* next = std::upper_bound(std::begin(kColumns), std::end(kColumns), drawn.x);
        const double end = next == std::end(kColumns) ? 15840 - 1008 : *next;
        EXPECT_LT(drawn.x + static_cast<double>(drawn.text.size()) * drawn.font.Size * 6, end) << drawn.text;
    }
    EXPECT_EQ(texts, 7);
}

// Failures

TEST_F(AuditReportTest, APrinterThatGoesAwayAbandonsTheDocumentWithoutAMessage) {
    AddListings(5);
    Find("L3");
    record.failAfter = 8;
    Press();
    EXPECT_EQ(record.killed, 1);
    EXPECT_EQ(record.ended, 0);
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_EQ(databook::adogetfield(adoDatabook, "CENTRALKEY"), "L3");
}

TEST_F(AuditReportTest, AnyOtherFailureLeavesTheDocumentOpenWithoutAMessage) {
    AddListings(5);
    Find("L3");
    record.failAfter = 8;
    record.failWith = fault::kOutOfMemory;
    Press();
    EXPECT_EQ(record.killed, 0);
    EXPECT_EQ(record.ended, 0);
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_EQ(databook::adogetfield(adoDatabook, "CENTRALKEY"), "L3");
}

TEST_F(AuditReportTest, AFailureOfTheAppraisalProgramEndsTheReportQuietly) {
    krn.fails = true;
    AuditReport report = Report();
    report.openReport = &krn;
    const PrintDefaults defaults = InitPrinterDefaults(printer);
    cmdPrintAudit(report, printer, defaults);
    EXPECT_EQ(record.ended + record.killed, 0);
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(AuditReportTest, APrinterThatIsGoneFromTheStartIsQuietToo) {
    const PrintDefaults defaults = InitPrinterDefaults(printer);
    record.hasPrinter = false;
    cmdPrintAudit(Report(), printer, defaults);
    EXPECT_EQ(record.killed, 1);
    EXPECT_TRUE(record.texts.empty());
}

TEST_F(AuditReportTest, WithoutARecordsetNothingHappens) {
    ado::Adodc closed(databooks, clock);
    const AuditReport report{
        .session = session, .adoDatabook = closed, .effectiveDate = analysis::Effective()};
    const PrintDefaults defaults = InitPrinterDefaults(printer);
    cmdPrintAudit(report, printer, defaults);
    EXPECT_TRUE(record.texts.empty());
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(AuditReportTest, TheRecordOfTheGridStaysTheCurrentOne) {
    AddListings(40);
    Find("L7");
    Print();
    EXPECT_EQ(databook::adogetfield(adoDatabook, "CENTRALKEY"), "L7");
    EXPECT_EQ(record.ended, 1);
}

}  // namespace
}  // namespace zenvora::printing
