// Which records and texts the report holds, and what a failure leaves of it.

#include "databook/field_access.h"
#include "printing/audit_report_fixture.h"

namespace zenvora::printing {
namespace {

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
