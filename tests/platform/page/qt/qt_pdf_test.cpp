#include "platform/page/qt_pdf.h"

#include <gtest/gtest.h>

#include "platform/fault.h"
#include "platform/page/qt/pdf_tools.h"
#include "support/temp_folder.h"

namespace zenvora::page {
namespace {

using testing_support::OutputOf;

class QtPdf : public testing::Test {
  protected:
    [[nodiscard]] std::string Tool(const std::string& name, const std::string& options = "") const {
        const auto path = folder.Write("OUT.pdf", bytes).string();
        const bool toText = name == "pdftotext";
        return OutputOf(name + " " + options + " " + path + (toText ? " -" : ""));
    }

    testing_support::TempFolder folder;
    std::string bytes;
    std::unique_ptr<Printer> made = QtPdfMaker()("A title – with a dash", bytes);
    Printer& printer = *made;
};

TEST_F(QtPdf, HasTitleAndPagesOfItsSize) {
    NEEDS_POPPLER();
    printer.SetOrientation(kLandscape);
    EXPECT_EQ(printer.Width(), 15840);
    EXPECT_EQ(printer.Height(), 12240);
    printer.Print("one");
    printer.NewPage();
    printer.Print("two");
    printer.EndDoc();
    const std::string info = Tool("pdfinfo");
    EXPECT_NE(info.find("A title – with a dash\n"), std::string::npos) << info;
    EXPECT_NE(info.find("792 x 612 pts (letter)"), std::string::npos) << info;
    EXPECT_NE(info.find("Pages:           2\n"), std::string::npos) << info;
}

TEST_F(QtPdf, TextCanBeSelectedAndStandsWhereItWasPrinted) {
    NEEDS_POPPLER();
    printer.Font = {"Times New Roman", 11, false};
    printer.CurrentX = 1440;
    printer.CurrentY = 2880;
    printer.Print("René's “Court” 12½");
    printer.EndDoc();
    EXPECT_EQ(Tool("pdftotext").find("René's “Court” 12½\n"), 0U);
    // In points: one inch from the left, two from the top, where the line's box begins.
    const std::string box = Tool("pdftotext", "-bbox");
    EXPECT_NE(box.find("xMin=\"72.0"), std::string::npos) << box;
    EXPECT_NE(box.find("yMin=\"144."), std::string::npos) << box;
}

TEST_F(QtPdf, EveryFontIsEmbedded) {
    NEEDS_POPPLER();
    for (const char* name : {"Times New Roman", "Arial Narrow", "Some Font That Nobody Has"}) {
        for (const bool bold : {false, true}) {
            printer.Font = {name, 10, bold};
            printer.Print("12 Oak St");
        }
    }
    printer.EndDoc();
    const std::string fonts = Tool("pdffonts");
    std::size_t lines = 0;
    for (std::size_t at = fonts.find('\n', fonts.find("---")); at + 1 < fonts.size(); ++lines) {
        const auto end = fonts.find('\n', at + 1);
        const std::string line = fonts.substr(at + 1, end - at - 1);
        EXPECT_NE(line.find(" yes "), std::string::npos) << line;
        at = end;
    }
    EXPECT_GE(lines, 2U) << fonts;
}

TEST_F(QtPdf, MeasuresLikeTheFontsOfTheReport) {
    // Digits of both serif faces are half as wide as the size: 10 digits in 11 points are 55 points.
    printer.Font = {"Times New Roman", 11, false};
    EXPECT_NEAR(printer.TextWidth("1234567890"), 55 * 20, 3);
    EXPECT_NEAR(printer.TextWidth("_"), 5.5 * 20, 0.5);
    // Those of the narrow face are 0.456 of it.
    printer.Font = {"Arial Narrow", 10, true};
    EXPECT_NEAR(printer.TextWidth("1234567890"), 45.6 * 20, 3);
    EXPECT_GT(printer.TextWidth("Zip         "), printer.TextWidth("Zip")) << "blanks at the end count";
    EXPECT_GT(printer.TextHeight("W"), 200);
    EXPECT_LT(printer.TextHeight("W"), 300);
}

TEST_F(QtPdf, AnAbandonedDocumentLeavesNoBytes) {
    printer.Print("one");
    printer.KillDoc();
    EXPECT_TRUE(bytes.empty());
    printer.Print("two");
    printer.EndDoc();
    EXPECT_EQ(bytes.substr(0, 5), "%PDF-");
}

TEST_F(QtPdf, ADocumentThatIsNeverEndedLeavesNoBytes) {
    printer.Print("one");
    made.reset();
    EXPECT_TRUE(bytes.empty());
}

TEST_F(QtPdf, AnEndWithoutATextIsAnEmptyPage) {
    NEEDS_POPPLER();
    printer.EndDoc();
    EXPECT_NE(Tool("pdfinfo").find("Pages:           1\n"), std::string::npos);
}

// The two below run with other sets of fonts: see CMakeLists.txt of the tests.

TEST_F(QtPdf, OtherFonts_AWiderStandInIsMadeAsNarrow) {
    std::string ascii;
    for (char character = ' '; character <= '~'; ++character)
        ascii += character;
    for (const bool bold : {false, true}) {
        printer.Font = {"Arial Narrow", 10, bold};
        EXPECT_LE(printer.TextWidth(ascii), (bold ? 42.941 : 41.051) * 200 * 1.003);
        EXPECT_GE(printer.TextWidth(ascii), (bold ? 42.941 : 41.051) * 200 * 0.9);
        printer.Font = {"Times New Roman", 11, bold};
        EXPECT_LE(printer.TextWidth(ascii), (bold ? 50.845 : 48.458) * 220 * 1.003);
    }
}

TEST_F(QtPdf, NoFonts_IsAPrinterFaultThatSaysWhatToInstall) {
    if (std::getenv("ZENVORA_TEST_NO_FONTS") == nullptr) GTEST_SKIP() << "this machine has fonts";
    try {
        printer.Print("one");
        FAIL() << "something was drawn";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kPrinter);
        EXPECT_NE(fault.description.find("fonts-liberation"), std::string::npos);
    }
}

}  // namespace
}  // namespace zenvora::page
