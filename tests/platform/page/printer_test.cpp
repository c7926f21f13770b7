#include "platform/page/printer.h"

#include <gtest/gtest.h>

#include "support/recording_page.h"

namespace zenvora::page {
namespace {

using testing_support::PageRecord;

class PageSurface : public testing::Test {
  protected:
    PageSurface() { printer.Font = {"Times New Roman", 10, false}; }

    PageRecord record;
    std::unique_ptr<Printer> made = testing_support::MakeRecordingPrinter(record);
    Printer& printer = *made;
};

TEST_F(PageSurface, PrintsAtThePlaceAndGoesToTheStartOfTheNextLine) {
    printer.CurrentX = 700;
    printer.CurrentY = 1000;
    printer.Print("Listings:");
    ASSERT_EQ(record.texts.size(), 1U);
    EXPECT_EQ(record.texts[0].text, "Listings:");
    EXPECT_EQ(record.texts[0].x, 700);
    EXPECT_EQ(record.texts[0].y, 1000);
    EXPECT_EQ(record.texts[0].font, (PageFont{"Times New Roman", 10, false}));
    EXPECT_EQ(printer.CurrentX, 0);
    EXPECT_EQ(printer.CurrentY, 1240);
}

TEST_F(PageSurface, AnEmptyTextMovesALineDown) {
    printer.CurrentX = 700;
    printer.Print("");
    EXPECT_TRUE(record.texts.empty());
    EXPECT_EQ(printer.CurrentX, 0);
    EXPECT_EQ(printer.CurrentY, 240);
}

TEST_F(PageSurface, ALineBreakMovesALineMore) {
    printer.Print("\n");
    EXPECT_EQ(printer.CurrentY, 2 * 240);
    printer.Print("\n\n\n\n");
    EXPECT_EQ(printer.CurrentY, 7 * 240);
    EXPECT_TRUE(record.texts.empty());
}

TEST_F(PageSurface, ABreakIsOneInEachOfItsThreeForms) {
    for (const char* text : {"a\nb", "a\rb", "a\r\nb"}) {
        record.texts.clear();
        printer.CurrentX = 500;
        printer.CurrentY = 0;
        printer.Print(text);
        ASSERT_EQ(record.texts.size(), 2U) << text;
        EXPECT_EQ(record.texts[0].x, 500);
        EXPECT_EQ(record.texts[1].x, 0);
        EXPECT_EQ(record.texts[1].y, 240);
        EXPECT_EQ(printer.CurrentY, 480);
    }
}

TEST_F(PageSurface, MeasuresInTheCurrentFont) {
    EXPECT_EQ(printer.TextWidth("abc  "), 5 * 80) << "blanks at the end count";
    EXPECT_EQ(printer.TextHeight("W"), 240);
    printer.Font.Bold = true;
    EXPECT_EQ(printer.TextWidth("abc"), 3 * 90);
    printer.Font.Size = 20;
    EXPECT_EQ(printer.TextHeight("W"), 480);
    EXPECT_EQ(printer.TextWidth("ab\r\nabcd\na"), 4 * 180) << "the widest line";
    EXPECT_EQ(printer.TextHeight("ab\r\nabcd\na"), 3 * 480);
    EXPECT_EQ(printer.TextWidth(""), 0);
}

TEST_F(PageSurface, NewPageStartsAtTheTopLeftWithTheSameFont) {
    printer.Font.Bold = true;
    printer.Print("one");
    printer.CurrentX = 100;
    printer.NewPage();
    EXPECT_EQ(printer.CurrentX, 0);
    EXPECT_EQ(printer.CurrentY, 0);
    EXPECT_TRUE(printer.Font.Bold);
    printer.Print("two");
    EXPECT_EQ(record.texts[1].page, 2);
}

TEST_F(PageSurface, AChangeOfTheOrientationTurnsThePageAndResetsTheFont) {
    printer.Font = {"Arial Narrow", 12, true};
    printer.SetOrientation(kPortrait);
    EXPECT_EQ(printer.Font.Name, "Arial Narrow") << "it is portrait already";
    EXPECT_EQ(printer.Width(), 12240);
    printer.SetOrientation(kLandscape);
    EXPECT_EQ(printer.Width(), 15840);
    EXPECT_EQ(printer.Height(), 12240);
    EXPECT_EQ(printer.Font, (PageFont{std::string(kDeviceFontName), kDeviceFontSize, false}));
}

TEST_F(PageSurface, EndDocAndKillDocStartOverAtTheTopLeft) {
    printer.Print("one");
    printer.EndDoc();
    EXPECT_EQ(printer.CurrentY, 0);
    EXPECT_EQ(record.ended, 1);
    EXPECT_EQ(record.killed, 0);
    printer.Print("two");
    printer.KillDoc();
    EXPECT_EQ(printer.CurrentY, 0);
    EXPECT_EQ(record.ended, 1);
    EXPECT_EQ(record.killed, 1);
}

TEST(PrintedValues, ADateIsTheShortDateWithoutATime) {
    EXPECT_EQ(PrintedDate(*text::DayNumber(2010, 6, 3)), "6/3/2010");
    EXPECT_EQ(PrintedDate(*text::DayNumber(2010, 12, 31) + 0.75), "12/31/2010");
}

TEST(PrintedValues, ANumberHasABlankOnBothSides) {
    EXPECT_EQ(PrintedNumber(259900), " 259900 ");
    EXPECT_EQ(PrintedNumber(0), " 0 ");
    EXPECT_EQ(PrintedNumber(12.5), " 12.5 ");
    EXPECT_EQ(PrintedNumber(-3), "-3 ") << "the sign stands where the blank does";
}

}  // namespace
}  // namespace zenvora::page
