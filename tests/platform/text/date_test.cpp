#include "platform/text/date.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace zenvora::text {
namespace {

constexpr int kThisYear = 2010;

Date Day(int year, int month, int day) {
    const auto date = DayNumber(year, month, day);
    EXPECT_TRUE(date.has_value()) << year << "-" << month << "-" << day;
    return date.value_or(0);
}

Date Clock(int hour, int minute, int second) {
    return (hour * 3600 + minute * 60 + second) / 86400.0;
}

TEST(DayNumber, HasItsKnownAnchors) {
    EXPECT_EQ(Day(1899, 12, 30), 0);
    EXPECT_EQ(Day(1900, 1, 1), 2);
    EXPECT_EQ(Day(1970, 1, 1), 25569);
    EXPECT_EQ(Day(2000, 1, 1), 36526);
    EXPECT_EQ(Day(100, 1, 1), kFirstDate);
    EXPECT_EQ(Day(9999, 12, 31), kLastDate);
}

TEST(DayNumber, RefusesDaysThatDoNotExist) {
    for (const CalendarDay& day : {CalendarDay{2009, 2, 29},
                                   {1900, 2, 29},
                                   {2100, 2, 29},
                                   {2009, 4, 31},
                                   {2009, 13, 1},
                                   {2009, 0, 1},
                                   {2009, 1, 0},
                                   {2009, 1, 32},
                                   {99, 12, 31},
                                   {10000, 1, 1},
                                   {2009, -1, 1},
                                   {2009, 1, -1}}) {
        EXPECT_FALSE(DayNumber(day.year, day.month, day.day).has_value())
            << day.year << "-" << day.month << "-" << day.day;
    }
    EXPECT_TRUE(DayNumber(2000, 2, 29).has_value());
    EXPECT_TRUE(DayNumber(2008, 2, 29).has_value());
}

TEST(DayNumber, AndCalendarDayAgreeOverTheWholeRange) {
    // Walks the calendar day by day with the plain rules of month lengths.
    CalendarDay day{100, 1, 1};
    constexpr int kMonth[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (Date number = kFirstDate; number <= kLastDate; ++number) {
        ASSERT_EQ(CalendarDayOf(number), day) << number;
        ASSERT_EQ(DayNumber(day.year, day.month, day.day), number);
        const bool leap = day.year % 400 == 0 || (day.year % 4 == 0 && day.year % 100 != 0);
        if (++day.day > kMonth[day.month - 1] + (day.month == 2 && leap ? 1 : 0)) {
            day.day = 1;
            if (++day.month > 12) {
                day.month = 1;
                ++day.year;
            }
        }
    }
}

TEST(CalendarDayOf, IgnoresTheTimeOfDay) {
    EXPECT_EQ(CalendarDayOf(40000.999), CalendarDayOf(40000));
    EXPECT_EQ(CalendarDayOf(-1.25), (CalendarDay{1899, 12, 29}));
    EXPECT_EQ(CalendarDayOf(-0.25), (CalendarDay{1899, 12, 30}));
}

TEST(CalendarDayOf, GivesTheNearestLegalDayOutsideTheRange) {
    EXPECT_EQ(CalendarDayOf(-1e9), (CalendarDay{100, 1, 1}));
    EXPECT_EQ(CalendarDayOf(1e300), (CalendarDay{9999, 12, 31}));
    EXPECT_EQ(CalendarDayOf(std::numeric_limits<double>::quiet_NaN()), (CalendarDay{100, 1, 1}));
}

TEST(DayPart, IsCutTowardZero) {
    EXPECT_EQ(DayPart(40000.75), 40000);
    EXPECT_EQ(DayPart(-1.25), -1);
    EXPECT_FALSE(std::signbit(DayPart(-0.25)));
}

TEST(SecondOfDay, IsTheNearestSecondAndStaysInItsDay) {
    EXPECT_EQ(SecondOfDay(40000), 0);
    EXPECT_EQ(SecondOfDay(40000.25), 6 * 3600);
    EXPECT_EQ(SecondOfDay(-1.25), 6 * 3600);
    EXPECT_EQ(SecondOfDay(Clock(9, 19, 1)), 9 * 3600 + 19 * 60 + 1);
    EXPECT_EQ(SecondOfDay(40000 + 0.4 / 86400), 0);
    EXPECT_EQ(SecondOfDay(40000 + 0.6 / 86400), 1);
    EXPECT_EQ(SecondOfDay(40000 + 86399.7 / 86400), 86399);
}

TEST(Weekday, CountsFromSunday) {
    EXPECT_EQ(Weekday(Day(1899, 12, 30)), 7);  // a Saturday
    EXPECT_EQ(Weekday(Day(1899, 12, 31)), 1);
    EXPECT_EQ(Weekday(Day(2009, 3, 15)), 1);
    EXPECT_EQ(Weekday(Day(2000, 1, 1)), 7);
    EXPECT_EQ(Weekday(Day(1776, 7, 4)), 5);  // a Thursday
}

struct Accepted {
    const char* name;
    const char* text;
    CalendarDay day;
    double time = 0;
};
class DateTexts : public testing::TestWithParam<Accepted> {};

TEST_P(DateTexts, AreRead) {
    const Accepted& c = GetParam();
    const auto date = TextToDate(c.text, kThisYear);
    ASSERT_TRUE(date.has_value()) << c.text;
    EXPECT_EQ(*date, Day(c.day.year, c.day.month, c.day.day) + c.time) << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    Forms, DateTexts,
    testing::Values(
        Accepted{"MonthDayYear", "3/15/2009", {2009, 3, 15}},
        Accepted{"LeadingZeros", "03/05/2009", {2009, 3, 5}},
        Accepted{"BlanksAround", "  3/15/2009  ", {2009, 3, 15}},
        Accepted{"DayFirstWhenAbove12", "15/3/2009", {2009, 3, 15}},
        Accepted{"TwelveIsStillAMonth", "12/3/2009", {2009, 12, 3}},
        Accepted{"ThirteenIsADay", "13/3/2009", {2009, 3, 13}},
        Accepted{"YearFirst", "2009-03-15", {2009, 3, 15}},
        Accepted{"YearFirstSlashes", "2009/3/15", {2009, 3, 15}},
        Accepted{"Dashes", "3-15-2009", {2009, 3, 15}}, Accepted{"Points", "3.15.2009", {2009, 3, 15}},
        Accepted{"Commas", "3,15,2009", {2009, 3, 15}}, Accepted{"Blanks", "3 15 2009", {2009, 3, 15}},
        Accepted{"BlanksBesideSlashes", "3 / 15 / 2009", {2009, 3, 15}},
        Accepted{"MixedSeparators", "3/15-2009", {2009, 3, 15}},
        Accepted{"MonthName", "March 15, 2009", {2009, 3, 15}},
        Accepted{"Abbreviation", "Mar 15, 2009", {2009, 3, 15}},
        Accepted{"AbbreviationWithPoint", "Mar. 15 2009", {2009, 3, 15}},
        Accepted{"NameInUpperCase", "MARCH 15 2009", {2009, 3, 15}},
        Accepted{"NameInTheMiddle", "15-mar-2009", {2009, 3, 15}},
        Accepted{"NameAtTheEnd", "15 2009 March", {2009, 3, 15}},
        Accepted{"NameBehindTheYear", "2009 Mar 15", {2009, 3, 15}},
        Accepted{"NameAndShortYear", "15-Mar-09", {2009, 3, 15}},
        Accepted{"NameGluedOn", "15MAR2009", {2009, 3, 15}},
        Accepted{"NameWithoutYear", "Mar 15", {kThisYear, 3, 15}},
        Accepted{"MayIsItsOwnShortForm", "May 1 09", {2009, 5, 1}},
        Accepted{"FourLetterSeptember", "Sept 9, 2009", {2009, 9, 9}},
        Accepted{"NameAndYearOnly", "March 2009", {2009, 3, 1}},
        Accepted{"MonthAndYearOnly", "3/2009", {2009, 3, 1}},
        Accepted{"YearAndMonthOnly", "2009-03", {2009, 3, 1}},
        Accepted{"YearMissing", "3/15", {kThisYear, 3, 15}},
        Accepted{"YearMissingDayFirst", "15/3", {kThisYear, 3, 15}},
        Accepted{"OneDigitYear", "1/1/7", {2007, 1, 1}}, Accepted{"Year00", "1/1/00", {2000, 1, 1}},
        Accepted{"Year29", "1/1/29", {2029, 1, 1}}, Accepted{"Year30", "1/1/30", {1930, 1, 1}},
        Accepted{"Year99", "1/1/99", {1999, 1, 1}}, Accepted{"FirstYear", "1/1/100", {100, 1, 1}},
        Accepted{"LastDay", "12/31/9999", {9999, 12, 31}}, Accepted{"LeapDay", "2/29/2008", {2008, 2, 29}},
        Accepted{"DayZeroOfTheCount", "12/30/1899", {1899, 12, 30}},
        Accepted{"Morning", "3/15/2009 9:19:00 AM", {2009, 3, 15}, (9 * 3600 + 19 * 60) / 86400.0},
        Accepted{"Evening", "3/15/2009 9:19:30 pm", {2009, 3, 15}, (21 * 3600 + 19 * 60 + 30) / 86400.0},
        Accepted{"NoBlankBeforeHalf", "3/15/2009 9:19pm", {2009, 3, 15}, (21 * 3600 + 19 * 60) / 86400.0},
        Accepted{"Noon", "3/15/2009 12:00 PM", {2009, 3, 15}, 0.5},
        Accepted{"Midnight", "3/15/2009 12:00 AM", {2009, 3, 15}},
        Accepted{"HourOnly", "3/15/2009 6 PM", {2009, 3, 15}, 0.75},
        Accepted{"TwentyFourHours", "2009-03-15 18:00:00", {2009, 3, 15}, 0.75},
        Accepted{"Zeros", "1/1/1900 00:00:00", {1900, 1, 1}},
        Accepted{"TimeAlone", "15:26", {1899, 12, 30}, (15 * 3600 + 26 * 60) / 86400.0},
        Accepted{"TimeAloneMorning", "9:19:00 AM", {1899, 12, 30}, (9 * 3600 + 19 * 60) / 86400.0},
        // Before day 0 the fraction is taken from the number, and still runs forward in the day.
        Accepted{"BeforeDayZero", "12/29/1899 6:00 AM", {1899, 12, 29}, -0.25}),
    [](const auto& info) { return info.param.name; });

struct Refused {
    const char* name;
    const char* text;
};
class NoDateTexts : public testing::TestWithParam<Refused> {};

TEST_P(NoDateTexts, AreRefused) {
    EXPECT_FALSE(TextToDate(GetParam().text, kThisYear)) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Forms, NoDateTexts,
    testing::Values(Refused{"Empty", ""}, Refused{"Blank", "   "}, Refused{"BareNumber", "39887"},
                    Refused{"BareSmallNumber", "3"}, Refused{"EightDigits", "20090315"},
                    Refused{"Decimal", "3.15"}, Refused{"Grouped", "1,20"}, Refused{"Letters", "abc"},
                    Refused{"YearWithLeadingZero", "20/09/0315"},
                    Refused{"ShortYearWithLeadingZero", "1/1/015"},
                    Refused{"YearFirstWithLeadingZero", "0315-01-01"}, Refused{"FiveDigitYear", "1/1/20090"},
                    Refused{"YearBelow100", "1/1/0099"}, Refused{"NoSuchDay", "2/30/2009"},
                    Refused{"NoLeapYear", "2/29/2009"}, Refused{"NoSuchMonth", "15/13/2009"},
                    Refused{"MonthZero", "0/1/2009"}, Refused{"DayZero", "1/0/2009"},
                    Refused{"ThreeDigitDay", "1/015/2009"}, Refused{"FourNumbers", "1/2/3/2009"},
                    Refused{"TwoSeparators", "3//15/2009"}, Refused{"SeparatorInFront", "/3/15/2009"},
                    Refused{"SeparatorBehind", "3/15/2009/"}, Refused{"MinusInFront", "-3/15/2009"},
                    Refused{"TwoMonthNames", "Mar Apr 2009"}, Refused{"NameAndThreeNumbers", "Mar 1 2 2009"},
                    Refused{"NameOnly", "March"}, Refused{"HalfAName", "Marc 15 2009"},
                    Refused{"Weekday", "Sunday, March 15, 2009"}, Refused{"HourTooHigh", "3/15/2009 24:00"},
                    Refused{"MinuteTooHigh", "3/15/2009 9:60"}, Refused{"SecondTooHigh", "3/15/2009 9:00:60"},
                    Refused{"ThirteenPm", "3/15/2009 13:00 PM"}, Refused{"TimeInFront", "9:19 3/15/2009"},
                    Refused{"TimeGluedOn", "3/15/2009-9:19"}, Refused{"OpenTime", "3/15/2009 9:"},
                    Refused{"NoHalf", "3/15/2009 9:19 XM"}, Refused{"OtherSeparator", "3_15_2009"},
                    Refused{"Quoted", "\"3/15/2009\""}),
    [](const auto& info) { return info.param.name; });

TEST(TextToDate, EveryDayTextReadsBackAsItsDay) {
    for (Date date = kFirstDate; date <= kLastDate; date += 13) {
        ASSERT_EQ(TextToDate(DateText(date), kThisYear), date) << DateText(date);
        // Years below 1000 would get a leading zero here, and such a number is no year.
        if (date > Day(1000, 1, 1)) {
            ASSERT_EQ(TextToDate(FormatDate(date, "yyyy-mm-dd"), kThisYear), date);
        }
    }
}

TEST(TextToDate, EverySecondOfADayReadsBack) {
    for (int second = 1; second < 86400; second += 7) {
        const Date date = 40000 + second / 86400.0;
        const auto again = TextToDate(DateText(date), kThisYear);
        ASSERT_TRUE(again.has_value()) << DateText(date);
        ASSERT_EQ(SecondOfDay(*again), second);
    }
}

TEST(DateText, IsTheShortDateWithoutLeadingZeros) {
    EXPECT_EQ(DateText(Day(2009, 3, 5)), "3/5/2009");
    EXPECT_EQ(DateText(Day(1900, 1, 1)), "1/1/1900");
    EXPECT_EQ(DateText(Day(100, 1, 1)), "1/1/100");
    EXPECT_EQ(DateText(kLastDate), "12/31/9999");
}

TEST(DateText, OfDayZeroIsItsDate) {
    EXPECT_EQ(DateText(0), "12/30/1899");
}

TEST(DateText, ShowsATimeOfDayWhenThereIsOne) {
    const Date day = Day(2009, 3, 5);
    EXPECT_EQ(DateText(day + Clock(9, 19, 0)), "3/5/2009 9:19:00 AM");
    EXPECT_EQ(DateText(day + Clock(15, 26, 7)), "3/5/2009 3:26:07 PM");
    EXPECT_EQ(DateText(day + Clock(12, 0, 0)), "3/5/2009 12:00:00 PM");
    EXPECT_EQ(DateText(day + Clock(0, 30, 0)), "3/5/2009 12:30:00 AM");
    EXPECT_EQ(DateText(day + 0.2 / 86400), "3/5/2009");
}

TEST(FormatDate, FollowsItsPattern) {
    const Date date = Day(2009, 3, 5) + Clock(15, 26, 7);
    EXPECT_EQ(FormatDate(date, "mm/dd/yyyy"), "03/05/2009");
    EXPECT_EQ(FormatDate(date, "MM/DD/YYYY"), "03/05/2009");
    EXPECT_EQ(FormatDate(date, "yyyy-mm-dd"), "2009-03-05");
    EXPECT_EQ(FormatDate(date, "m/d/yy"), "3/5/09");
    EXPECT_EQ(FormatDate(Day(2009, 11, 25), "m/d/yy"), "11/25/09");
    EXPECT_EQ(FormatDate(date, "yyyymmddhhnnss"), "20090305152607");
    EXPECT_EQ(FormatDate(Day(315, 1, 2), "yyyy-mm-dd"), "0315-01-02");
    EXPECT_EQ(FormatDate(0, "mm/dd/yyyy"), "12/30/1899");
    EXPECT_EQ(FormatDate(date, ""), "");
}

}  // namespace
}  // namespace zenvora::text
