#include "printing/calculation_print.h"

#include <gtest/gtest.h>

#include "platform/fault.h"
#include "printing/pdf_files.h"
#include "support/temp_folder.h"
#include "support/test_session.h"

namespace zenvora::printing {
namespace {

/// A main window without a toolkit.
class Window final : public page::FormPrint {
  public:
    void PrintForm() override {
        if (faultNumber != 0) throw Fault{faultNumber, "as the test wants it"};
        ++printed;
    }
    [[nodiscard]] std::string PdfOfForm(const std::string& title) override {
        PrintForm();
        return "%PDF-1.4 " + title;
    }

    int faultNumber = 0;
    int printed = 0;
};

class CalculationPrint : public testing::Test {
  protected:
    testing_support::TestSession test;
    testing_support::TempFolder folder;
    Window window;
};

TEST_F(CalculationPrint, PrintsTheMainWindowOnceAndSaysNothing) {
    cmdPrintCalc(test.session, window);
    EXPECT_EQ(window.printed, 1);
    EXPECT_TRUE(test.desktop.messages.empty());
}

TEST_F(CalculationPrint, TellsThatThereIsNoPrinter) {
    window.faultNumber = fault::kPrinter;
    test.desktop.Expect("No printer is installed.");
    cmdPrintCalc(test.session, window);
    ASSERT_EQ(test.desktop.messages.size(), 1U);
    EXPECT_EQ(test.desktop.messages[0].title, "No Printer Found");
    EXPECT_EQ(test.desktop.messages[0].icon, controls::Icon::Critical);
    EXPECT_EQ(test.desktop.messages[0].buttons, controls::Buttons::Ok);
}

TEST_F(CalculationPrint, AnyOtherFailurePassesQuietly) {
    window.faultNumber = fault::kOutOfMemory;
    cmdPrintCalc(test.session, window);
    EXPECT_TRUE(test.desktop.messages.empty());
}

TEST_F(CalculationPrint, SavesThePictureAsAPdfFile) {
    const std::string path = (folder / "OUT.pdf").string();
    test.desktop.ExpectFile(path);
    SaveCalculationPdf(test.session, window, folder.Path().string(), "LISTINGS.MDB");
    EXPECT_EQ(folder.Read("OUT.pdf"), "%PDF-1.4 Calculations");
    ASSERT_EQ(test.desktop.dialogs.size(), 1U);
    EXPECT_EQ(test.desktop.dialogs[0].title, "Calculations as PDF");
    EXPECT_EQ(test.desktop.dialogs[0].fileName, "LISTINGS Calculations.pdf");
    EXPECT_EQ(test.desktop.dialogs[0].directory, folder.Path().string());
    EXPECT_TRUE(test.desktop.dialogs[0].forSaving);
    EXPECT_FALSE(test.desktop.hourglass);
    EXPECT_EQ(test.desktop.hourglassChanges, 2);
}

TEST_F(CalculationPrint, ACancelledDialogWritesNothing) {
    test.desktop.ExpectFile("");
    SaveCalculationPdf(test.session, window, folder.Path().string(), "LISTINGS.MDB");
    EXPECT_EQ(window.printed, 0);
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST_F(CalculationPrint, TellsWhenTheFileIsNotWritten) {
    window.faultNumber = fault::kPrinter;
    const std::string path = (folder / "OUT.pdf").string();
    test.desktop.ExpectFile(path);
    test.desktop.Expect("The file " + path + " was not written.\nas the test wants it");
    SaveCalculationPdf(test.session, window, folder.Path().string(), "LISTINGS.MDB");
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
    EXPECT_FALSE(test.desktop.hourglass);
}

TEST_F(CalculationPrint, LeavesAFileAloneThatIsNoPdf) {
    folder.Write("BOOK.mdb", "records");
    test.desktop.ExpectFile((folder / "BOOK.mdb").string());
    test.desktop.ExpectAny();
    SaveCalculationPdf(test.session, window, folder.Path().string(), "LISTINGS.MDB");
    EXPECT_EQ(folder.Read("BOOK.mdb"), "records");
    EXPECT_NE(test.desktop.messages.at(0).text.find("Name another one."), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(folder / "BOOK.mdb.bak"));
}

TEST_F(CalculationPrint, KeepsThePdfThatItReplaces) {
    folder.Write("OUT.pdf", "%PDF-1.4 of yesterday");
    test.desktop.ExpectFile((folder / "OUT.pdf").string());
    SaveCalculationPdf(test.session, window, folder.Path().string(), "LISTINGS.MDB");
    EXPECT_EQ(folder.Read("OUT.pdf"), "%PDF-1.4 Calculations");
    EXPECT_EQ(folder.Read("OUT.pdf.bak"), "%PDF-1.4 of yesterday");
}

}  // namespace
}  // namespace zenvora::printing
