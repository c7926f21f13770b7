#include "common/dates.h"

#include <gtest/gtest.h>

#include "common/detail/normalized_day.h"
#include "platform/fault.h"

namespace zenvora::common {
namespace {

Date Day(int year, int month, int day) {
    return text::DayNumber(year, month, day).value_or(-1e9);
}

const shell::FixedClock kClock(Day(2010, 6, 30));

struct Test {
    const char* name;
    const char* text;
    bool holds;
};
class IsDateCases : public testing::TestWithParam<Test> {};

TEST_P(IsDateCases, AreToldApart) {
    EXPECT_EQ(IsDate(GetParam().text, kClock), GetParam().holds) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, IsDateCases,
    testing::Values(Test{"Plain", "3/15/2009", true}, Test{"SixCharacters", "1/1/07", true},
                    Test{"FiveCharacters", "1/1/7", false}, Test{"FiveAndBlanks", "  1/1/7  ", false},
                    Test{"MonthAndDayOnly", "1/5", false}, Test{"Empty", "", false},
                    Test{"Letters", "abcdef", false}, Test{"FarAway", "12/31/2999", true},
                    Test{"BareNumber", "20090315", false}, Test{"NoSuchDay", "2/30/2009", false},
                    Test{"YearOfFourDigitsWithZero", "20/09/0315", false},
                    // The table of years turns 1899 into day zero, so that this text is a date like others.
                    Test{"StartOfTheCount", "12/30/1899", true}, Test{"TimeAlone", "9:19:00 AM", true},
                    Test{"WithTime", "3/15/2009 9:19:00 AM", true},
                    Test{"LowerCaseName", "mar 15 2009", true}),
    [](const auto& info) { return info.param.name; });

TEST(ConvDate, GivesTheDateAndTrimsTheText) {
    std::string text = "  mar 15, 2009 ";
    EXPECT_EQ(ConvDate(text, kClock), Day(2009, 3, 15));
    EXPECT_EQ(text, "MAR 15, 2009");
}

TEST(ConvDate, KeepsTheTimeOfDay) {
    const std::string text = "3/15/2009 12:00 PM";
    EXPECT_EQ(ConvDate(text, kClock), Day(2009, 3, 15) + 0.5);
}

TEST(ConvDate, OfNoDateIsDayZero) {
    for (const char* text : {"", "abc", "1/5", "1/1/7", "2/30/2009"}) {
        EXPECT_EQ(ConvDate(std::string_view(text), kClock), kDayZero) << text;
    }
    EXPECT_EQ(kDayZero, Day(1900, 1, 1));
}

struct Normal {
    const char* name;
    const char* text;
    const char* result;
};
class NormalizeCases : public testing::TestWithParam<Normal> {};

TEST_P(NormalizeCases, FollowTheTableOfYears) {
    EXPECT_EQ(NormalizeDateText(GetParam().text, kClock), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Texts, NormalizeCases,
                         testing::Values(Normal{"Empty", "", ""}, Normal{"Blank", "   ", ""},
                                         Normal{"NoLeadingZeros", "03/05/2009", "3/5/2009"},
                                         Normal{"NineteenHundreds", "12/31/1999", "12/31/1999"},
                                         Normal{"TwoThousand", "1/1/2000", "1/1/2000"},
                                         Normal{"TheClocksYear", "12/31/2010", "12/31/2010"},
                                         Normal{"LaterThanTheClock", "1/1/2011", "01/01/1900"},
                                         Normal{"FarAway", "12/31/2999", "01/01/1900"},
                                         Normal{"Before1900", "12/31/1899", "01/01/1900"},
                                         Normal{"StartOfTheCount", "12/30/1899", "01/01/1900"},
                                         Normal{"FirstYear", "5/5/100", "01/01/1900"},
                                         Normal{"DayZeroItself", "01/01/1900", "1/1/1900"},
                                         Normal{"TwoDigitYear", "3/5/09", "3/5/2009"},
                                         Normal{"TwoDigitYearOf1900s", "3/5/85", "3/5/1985"},
                                         Normal{"TwoDigitYearAhead", "3/5/29", "01/01/1900"},
                                         Normal{"YearMissing", "3/5", "3/5/2010"},
                                         Normal{"TimeIsDropped", "3/5/2009 9:19 AM", "3/5/2009"}),
                         [](const auto& info) { return info.param.name; });

TEST(NormalizeDateText, FaultsOnWhatIsNoDate) {
    for (const char* text : {"abc", "2/30/2009", "39887"}) {
        try {
            static_cast<void>(NormalizeDateText(text, kClock));
            ADD_FAILURE() << text;
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.number, fault::kTypeMismatch);
        }
        EXPECT_THROW(static_cast<void>(IsDayZero(text, kClock)), Fault);
    }
}

TEST(NormalizeDateText, MovesTheYearsOfTheNextCenturyBack) {
    const shell::FixedClock later(Day(2105, 1, 1));
    EXPECT_EQ(NormalizeDateText("3/5/2104", later), "3/5/2004");
}

struct YearRow {
    const char* name;
    int year;
    int currentYear;
    text::CalendarDay result;
};
class YearTable : public testing::TestWithParam<YearRow> {};

TEST_P(YearTable, HasItsBounds) {
    const YearRow& c = GetParam();
    EXPECT_EQ(detail::NormalizedDay({c.year, 3, 15}, c.currentYear), c.result);
}

INSTANTIATE_TEST_SUITE_P(Years, YearTable,
                         testing::Values(YearRow{"Negative", -1, 2010, {1900, 1, 1}},
                                         YearRow{"Zero", 0, 2010, {2010, 3, 15}},
                                         YearRow{"UpToTheClocksDigits", 10, 2010, {2010, 3, 15}},
                                         YearRow{"AboveTheClocksDigits", 11, 2010, {1910, 3, 15}},
                                         YearRow{"NinetyNine", 99, 2010, {1910, 3, 15}},
                                         YearRow{"Hundred", 100, 2010, {1900, 1, 1}},
                                         YearRow{"EighteenNinetyNine", 1899, 2010, {1900, 1, 1}},
                                         YearRow{"NineteenHundred", 1900, 2010, {1900, 3, 15}},
                                         YearRow{"NineteenNinetyNine", 1999, 2010, {1999, 3, 15}},
                                         YearRow{"TwoThousand", 2000, 2010, {2000, 3, 15}},
                                         YearRow{"TheClocks", 2010, 2010, {2010, 3, 15}},
                                         YearRow{"AfterTheClocks", 2011, 2010, {1900, 1, 1}},
                                         YearRow{"OneDigitClock", 5, 2005, {2005, 3, 15}},
                                         YearRow{"OneDigitClockAbove", 6, 2005, {1905, 3, 15}}),
                         [](const auto& info) { return info.param.name; });

TEST(IsDayZero, HoldsForDayZeroAndForWhatBecomesIt) {
    for (const char* text :
         {"1/1/1900", "01/01/1900", " 1/1/1900 ", "12/30/1899", "12/31/2999", "1/1/2011", "6/6/1776"}) {
        EXPECT_TRUE(IsDayZero(text, kClock)) << text;
    }
    for (const char* text : {"", "1/2/1900", "1/1/2000", "12/31/2010", "1/1/1901"}) {
        EXPECT_FALSE(IsDayZero(text, kClock)) << text;
    }
}

TEST(SepDate, GivesYearMonthAndDay) {
    int year = 0;
    int month = 0;
    int day = 0;
    SepDate(Day(2009, 3, 15) + 0.75, year, month, day);
    EXPECT_EQ(year, 2009);
    EXPECT_EQ(month, 3);
    EXPECT_EQ(day, 15);
}

class ValidEntries : public testing::TestWithParam<Test> {};

TEST_P(ValidEntries, NeedAFourDigitYear) {
    EXPECT_EQ(IsValidDateEntry(GetParam().text, kClock), GetParam().holds) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ValidEntries,
    testing::Values(Test{"Plain", "3/15/2009", true}, Test{"Blanks", " 3/15/2009 ", true},
                    Test{"TwoDigitYear", "3/15/09", false},
                    Test{"TwoDigitYearTwoDigitDay", "03/15/09", false}, Test{"DayZero", "1/1/1900", false},
                    Test{"DayZeroLong", "01/01/1900", false}, Test{"DayAfterDayZero", "1/2/1900", true},
                    Test{"StartOfTheCount", "12/30/1899", true}, Test{"FarAway", "12/31/2999", true},
                    Test{"YearFirst", "2009-03-15", false}, Test{"NameAndYear", "Mar 15, 2009", true},
                    Test{"WithTime", "3/15/2009 9:19:00 AM", false},
                    Test{"ThreeDigitYear", "11/11/315", false}, Test{"NoDate", "13/13/2009", false},
                    Test{"FourDigitsOnly", "2009", false}, Test{"Empty", "", false},
                    Test{"DigitsAlone", "03152009", false}),
    [](const auto& info) { return info.param.name; });

TEST(DateNumbers, GiveTheAnswersOfTheirTexts) {
    for (const int clockYear : {1999, 2010, 2105}) {
        const shell::FixedClock clock(Day(clockYear, 6, 30));
        const auto agree = [&clock](Date date) {
            const std::string text = text::DateText(date);
            ASSERT_TRUE(IsDate(text, clock)) << text;
            ASSERT_EQ(IsDayZero(date, clock), IsDayZero(text, clock)) << text;
            ASSERT_EQ(IsValidDateEntry(date, clock), IsValidDateEntry(text, clock)) << text;
        };
        for (Date date = text::kFirstDate; date <= text::kLastDate; date += 97) {
            agree(date);
        }
        for (Date date = -400; date <= 400; ++date) {
            agree(date);
        }
        for (int year = 1895; year <= 2120; ++year) {
            for (const Date date :
                 {Day(year, 1, 1), Day(year, 2, 28), Day(year, 12, 31), Day(year, 12, 30)}) {
                for (const double time : {0.0, 1e-9, 0.4 / 86400, 0.6 / 86400, 0.5, 0.99999, 0.9999999}) {
                    agree(date < 0 ? date - time : date + time);
                }
            }
        }
        agree(-1e9);
        agree(1e9);
    }
}

TEST(IsValidPriceEntry, NeedsANumberAboveZero) {
    for (const char* text : {"1", " 250000 ", "$1,250,000", ".5", "0.01", "1e5", "&H1", "1d2"}) {
        EXPECT_TRUE(IsValidPriceEntry(text)) << text;
    }
    for (const char* text : {"", " ", "0", "0.00", "-5", "(5)", "5-", "abc", "$", "3/15/2009", "5a"}) {
        EXPECT_FALSE(IsValidPriceEntry(text)) << text;
    }
}

}  // namespace
}  // namespace zenvora::common
