#include <gtest/gtest.h>

#include "frame/program_fixture.h"

namespace zenvora::frame {
namespace {

namespace fs = std::filesystem;

struct PrintingTest : ProgramTest {
    PrintingTest() {
        path = MakeDatabook("HOUSES.MDB", {{.key = "1 ELM ST"},
                                           {.key = "2 OAK ST", .saleDate = "5/1/2010", .salePrice = 240000}});
    }
    void StartWithPrinter() {
        printer = testing_support::MakeRecordingPrinter(page);
        NewRun();
        StartWith(path);
    }
    [[nodiscard]] bool IsPrinted(std::string_view text) const {
        for (const testing_support::DrawnText& drawn : page.texts) {
            if (drawn.text == text) return true;
        }
        return false;
    }
    fs::path path;
};

TEST_F(PrintingTest, WithAPrinterBothButtonsAreOn) {
    StartWithPrinter();
    EXPECT_TRUE(Enabled("cmdPrintAudit"));
    EXPECT_TRUE(Enabled("cmdPrintCalc"));
}

TEST_F(PrintingTest, APrinterThatDoesNotAnswerAtTheStartIsNone) {
    page.hasPrinter = false;
    StartWithPrinter();
    EXPECT_FALSE(Enabled("cmdPrintAudit"));
    EXPECT_FALSE(Enabled("cmdPrintCalc"));
    EXPECT_TRUE(desktop->messages.empty());
}

TEST_F(PrintingTest, WithoutRecordsThereIsNoAuditReport) {
    path = MakeDatabook("EMPTY.MDB", {});
    StartWithPrinter();
    EXPECT_FALSE(Enabled("cmdPrintAudit"));
    EXPECT_TRUE(Enabled("cmdPrintCalc"));
}

TEST_F(PrintingTest, TheAuditReportPrintsTheRecordsAndLeavesTheGridWhereItStands) {
    StartWithPrinter();
    ClickCell(1, 1);
    Press("cmdPrintAudit");
    EXPECT_EQ(page.ended, 1);
    EXPECT_TRUE(IsPrinted("Market Conditions Audit Report"));
    EXPECT_TRUE(IsPrinted("HOUSES.MDB"));
    EXPECT_TRUE(IsPrinted("1 ELM ST"));
    EXPECT_TRUE(IsPrinted("2 OAK ST"));
    EXPECT_EQ(Main().tdbgData.Row(), 1);
    EXPECT_EQ(Main().adoDatabook.Recordset().Position(), 1);
    EXPECT_TRUE(desktop->messages.empty());
}

TEST_F(PrintingTest, WhileKrnRunsTheNameOfItsReportIsOffered) {
    OpenReport();
    machine.processes = {"KRN.EXE"};
    StartWithPrinter();
    desktop->Expect("Do you wish to include the report name SMITH in the print out?", controls::Answer::Yes);
    Press("cmdPrintAudit");
    EXPECT_TRUE(IsPrinted("SMITH"));
}

TEST_F(PrintingTest, TheCalculationsArePrintedAsThePageStands) {
    StartWithPrinter();
    Press("txtCalculate");
    Press("cmdPrintCalc");
    EXPECT_EQ(windowsPrinted, std::vector<int>{1});
}

TEST_F(PrintingTest, ThePdfEntriesNeedNoPrinter) {
    StartWith(path);
    EXPECT_TRUE(Enabled("mnuPdfAudit"));
    EXPECT_TRUE(Enabled("mnuPdfCalc"));
    desktop->ExpectFile((folder / "audit.pdf").string());
    Press("mnuPdfAudit");
    EXPECT_TRUE(folder.Read("audit.pdf").starts_with("%PDF-"));
    EXPECT_EQ(desktop->dialogs.back().fileName, "HOUSES Audit Report.pdf");
    EXPECT_EQ(fs::path(desktop->dialogs.back().directory), folder.Path());
    EXPECT_TRUE(IsPrinted("1 ELM ST"));
}

TEST_F(PrintingTest, ThePdfOfTheCalculationsIsThePageWithTheFigures) {
    StartWith(path);
    desktop->ExpectFile((folder / "figures.pdf").string());
    Press("mnuPdfCalc");
    EXPECT_EQ(Main().tdgViewer.Tab(), 1);
    EXPECT_EQ(Text("txtTotalC", 2), "1");
    EXPECT_EQ(windowsPrinted, std::vector<int>{1});
    EXPECT_TRUE(folder.Read("figures.pdf").starts_with("%PDF-"));
}

TEST_F(PrintingTest, BeforeTheCheckOfALargeDatabookThereIsNoSuchPdf) {
    desktop->ExpectAny();
    StartWith(MakeLargeDatabook("LARGE.MDB", 501));
    desktop->Expect("Please click the 'Check for Validity' button before doing your calculations.");
    Press("mnuPdfCalc");
    EXPECT_TRUE(windowsPrinted.empty());
    EXPECT_EQ(Main().tdgViewer.Tab(), 0);
}

TEST_F(PrintingTest, TheCheckOfTheMenuShrinksLongAddressesInThePdfAlone) {
    const std::string address = "10000 A Very Long Name of a Street That Goes On NE";
    path = MakeDatabook("LONG.MDB", {{.key = address}});
    StartWithPrinter();
    const auto sizeOfTheAddress = [&] {
        for (const testing_support::DrawnText& drawn : page.texts) {
            if (drawn.text == address) return drawn.font.Size;
        }
        return 0.0;
    };
    const auto save = [&] {
        page.texts.clear();
        desktop->ExpectFile((folder / "audit.pdf").string());
        Press("mnuPdfAudit");
    };
    save();
    EXPECT_EQ(sizeOfTheAddress(), 10.0);
    Press("mnuPdfFit");
    EXPECT_TRUE(Main().mnuPdfFit.Checked());
    save();
    EXPECT_GT(sizeOfTheAddress(), 0.0);
    EXPECT_LT(sizeOfTheAddress(), 10.0);
    page.texts.clear();
    Press("cmdPrintAudit");
    EXPECT_EQ(sizeOfTheAddress(), 10.0);
    Press("mnuPdfFit");
    EXPECT_FALSE(Main().mnuPdfFit.Checked());
}

}  // namespace
}  // namespace zenvora::frame
