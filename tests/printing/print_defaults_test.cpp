#include "printing/print_defaults.h"

#include <gtest/gtest.h>

#include "support/recording_page.h"

namespace zenvora::printing {
namespace {

using testing_support::PageRecord;

class Defaults : public testing::Test {
  protected:
    PageRecord record;
    std::unique_ptr<page::Printer> made = testing_support::MakeRecordingPrinter(record);
    page::Printer& printer = *made;
};

TEST_F(Defaults, AreThoseOfTheProgram) {
    const PrintDefaults defaults = InitPrinterDefaults(printer);
    EXPECT_EQ(defaults.orientation, 2);
    EXPECT_EQ(defaults.font, (page::PageFont{"Times New Roman", 11, false}));
    EXPECT_EQ(defaults.deviceName, "Recorder");
    EXPECT_EQ(defaults.leftMargin, 1008.0F);
    EXPECT_EQ(defaults.rightMargin, 1008.0F);
    EXPECT_EQ(defaults.topMargin, 1008.0F);
    EXPECT_EQ(defaults.bottomMargin, 1008.0F);
    EXPECT_EQ(defaults.lastLine, 15840.0F - 1008.0F) << "the page is upright still";
    EXPECT_EQ(defaults.lineWidth, 110 * 88.0F) << "110 digits of 88 twips";
}

TEST_F(Defaults, TheProbeTellsWhetherThereIsAPrinter) {
    EXPECT_TRUE(PrinterPresent(printer));
    EXPECT_TRUE(ProbePrinter(printer).has_value());
    record.hasPrinter = false;
    EXPECT_FALSE(PrinterPresent(printer));
    EXPECT_FALSE(ProbePrinter(printer).has_value());
}

TEST_F(Defaults, ApplyingThemSetsFontAndLeftMargin) {
    const PrintDefaults defaults = InitPrinterDefaults(printer);
    printer.Font = {"Arial Narrow", 16, true};
    printer.CurrentX = 1;
    printer.CurrentY = 5000;
    ApplyPrintDefaults(printer, defaults, false);
    EXPECT_EQ(printer.Font, defaults.font);
    EXPECT_EQ(printer.CurrentX, 1008);
    EXPECT_EQ(printer.CurrentY, 5000);
    ApplyPrintDefaults(printer, defaults, true);
    EXPECT_EQ(printer.CurrentY, 1008);
}

TEST_F(Defaults, MeasuresATextTrimmedAndInUpperCaseAndKeepsTheFont) {
    EXPECT_EQ(MeasurePrintWidth(printer, "  ab  ", "Arial Narrow", 10, true), 2 * 70);
    EXPECT_EQ(printer.Font, (page::PageFont{"Arial Narrow", 10, true}));
}

TEST_F(Defaults, MeasuresTheDigitsForABlankText) {
    EXPECT_EQ(MeasurePrintWidth(printer, "  ", "Times New Roman", 11, false), 110 * 88);
}

TEST_F(Defaults, CountsCharactersInTheCurrentFont) {
    const PrintDefaults defaults = InitPrinterDefaults(printer);
    EXPECT_EQ(CountCharsAcross(printer, defaults, "_"), 110);
    printer.Font.Size = 16;  // 9680 / 128 is 75.6
    EXPECT_EQ(CountCharsAcross(printer, defaults, "_"), 75);
}

TEST_F(Defaults, ACharacterWithoutAWidthIsAFault) {
    const PrintDefaults defaults = InitPrinterDefaults(printer);
    try {
        static_cast<void>(CountCharsAcross(printer, defaults, ""));
        FAIL() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, kDivisionByZero);
    }
}

TEST(WholeDivision, RoundsBothSidesHalfToEvenAndThenDropsTheRest) {
    EXPECT_EQ(WholeDivision(100, 30), 3);
    EXPECT_EQ(WholeDivision(99.5, 10), 10);  // 100 / 10
    EXPECT_EQ(WholeDivision(98.5, 10), 9);   // 98 / 10
    EXPECT_EQ(WholeDivision(100, 2.5), 50);  // 100 / 2
    EXPECT_EQ(WholeDivision(-7, 2), -3);
}

}  // namespace
}  // namespace zenvora::printing
