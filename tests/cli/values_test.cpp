#include "cli/values.h"

#include <gtest/gtest.h>

#include "platform/text/number.h"

namespace zenvora::cli {
namespace {

using text::DayNumber;

struct DateCase {
    const char* name;
    const char* text;
    int year, month, day;  // 0: no date
};
class OptionDates : public testing::TestWithParam<DateCase> {};

TEST_P(OptionDates, AreTakenInTwoForms) {
    const auto& [name, text, year, month, day] = GetParam();
    const auto date = ParseDate(text);
    if (year == 0) {
        EXPECT_FALSE(date.has_value());
    } else {
        EXPECT_EQ(date, DayNumber(year, month, day));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, OptionDates,
    testing::Values(
        DateCase{"MonthFirst", "06/30/2010", 2010, 6, 30}, DateCase{"OneDigitEach", "6/3/2010", 2010, 6, 3},
        DateCase{"YearFirst", "2010-06-30", 2010, 6, 30}, DateCase{"LeapDay", "2/29/2012", 2012, 2, 29},
        DateCase{"NoLeapYear", "2/29/2011", 0, 0, 0}, DateCase{"NoSuchMonth", "13/1/2010", 0, 0, 0},
        DateCase{"DayFirst", "30/06/2010", 0, 0, 0}, DateCase{"TwoDigitYear", "6/30/10", 0, 0, 0},
        DateCase{"YearFirstWithoutZeros", "2010-6-30", 0, 0, 0}, DateCase{"Empty", "", 0, 0, 0},
        DateCase{"Word", "today", 0, 0, 0}, DateCase{"TwoParts", "6/2010", 0, 0, 0},
        DateCase{"FourParts", "6/30/2010/1", 0, 0, 0}, DateCase{"Blank", " 6/30/2010", 0, 0, 0},
        DateCase{"Sign", "-6/30/2010", 0, 0, 0}, DateCase{"Time", "6/30/2010 12:00", 0, 0, 0},
        DateCase{"SlashesYearFirst", "2010/06/30", 0, 0, 0}),
    [](const auto& info) { return info.param.name; });

TEST(JsonValues, AreWrittenByTheirKind) {
    EXPECT_EQ(Compact(ToJson(jet::Null{})), "null");
    EXPECT_EQ(Compact(ToJson(std::string("12 Oak \"St\""))), R"("12 Oak \"St\"")");
    EXPECT_EQ(Compact(ToJson(std::string())), R"("")");
    EXPECT_EQ(Compact(ToJson(250000.0)), "250000");
    EXPECT_EQ(Compact(ToJson(0.67)), "0.67");
    EXPECT_EQ(Compact(ToJson(-5.0)), "-5");
    EXPECT_EQ(Compact(ToJson(1e20)), "1e+20");
    EXPECT_EQ(Compact(ToJson(0.1F)), "0.1");
    EXPECT_EQ(Compact(ToJson(std::int32_t{7})), "7");
    EXPECT_EQ(Compact(ToJson(jet::Currency{125000})), "12.5");
    EXPECT_EQ(Compact(ToJson(true)), "true");
    EXPECT_EQ(Compact(ToJson(jet::DateTime{2.0})), R"("1900-01-01")");
    EXPECT_EQ(Compact(ToJson(jet::DateTime{*DayNumber(2009, 3, 1)})), R"("2009-03-01")");
    EXPECT_EQ(Compact(ToJson(jet::DateTime{*DayNumber(2009, 3, 1) + 0.5})), R"("2009-03-01T12:00:00")");
}

TEST(JsonValues, HoldOnlyValidUtf8) {
    EXPECT_EQ(Compact(ToJson(std::string("a\xFF"
                                         "b"))),
              "\"a\xEF\xBF\xBD"
              "b\"");
}

TEST(GridTexts, AreBlankForMissingDatesAndPrices) {
    EXPECT_EQ(ToGridText(jet::DateTime{2.0}), "");
    EXPECT_EQ(ToGridText(jet::DateTime{*DayNumber(2009, 3, 1)}), "3/1/2009");
    EXPECT_EQ(ToGridText(0.0), "");
    EXPECT_EQ(ToGridText(259900.0), "259900");
    EXPECT_EQ(ToGridText(jet::Null{}), "");
    EXPECT_EQ(ToGridText(std::string("0")), "0");
}

TEST(CsvValues, WriteDatesAsJsonDoes) {
    EXPECT_EQ(ToCsv(jet::DateTime{2.0}), "1900-01-01");
    EXPECT_EQ(ToCsv(259900.0), "259900");
    EXPECT_EQ(ToCsv(jet::Null{}), "");
}

TEST(CountLines, SayWhatWasCounted) {
    const auto date = *DayNumber(2010, 6, 30);
    EXPECT_EQ(CountLine(date, 120, 104), "Effective Appraisal Date 6/30/2010: 104 of 120 records are valid");
    EXPECT_EQ(CountLine(date, 1, 1), "Effective Appraisal Date 6/30/2010: 1 of 1 record is valid");
    EXPECT_EQ(CountLine(date, 120, std::nullopt),
              "Effective Appraisal Date 6/30/2010: 120 records, not checked");
}

}  // namespace
}  // namespace zenvora::cli
