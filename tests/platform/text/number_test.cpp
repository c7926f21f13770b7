#include "platform/text/number.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace zenvora::text {
namespace {

struct Numeric {
    const char* name;
    const char* text;
    double value;
};
class NumericTexts : public testing::TestWithParam<Numeric> {};

TEST_P(NumericTexts, HaveTheirValue) {
    ASSERT_TRUE(IsNumeric(GetParam().text)) << GetParam().text;
    EXPECT_EQ(*NumericValue(GetParam().text), GetParam().value) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Forms, NumericTexts,
    testing::Values(
        Numeric{"Zero", "0", 0}, Numeric{"Whole", "250000", 250000}, Numeric{"Decimal", "12.5", 12.5},
        Numeric{"PointInFront", ".5", 0.5}, Numeric{"PointBehind", "5.", 5},
        Numeric{"BlanksAround", "  5  ", 5}, Numeric{"TabBehind", "5\t", 5},
        Numeric{"LineEndBehind", "5\r\n", 5}, Numeric{"LeadingZeros", "007", 7}, Numeric{"Minus", "-5", -5},
        Numeric{"Plus", "+5", 5}, Numeric{"TrailingMinus", "5-", -5}, Numeric{"TrailingPlus", "5+", 5},
        Numeric{"BlankBehindMinus", "- 5", -5}, Numeric{"BlankBeforeMinus", "5 -", -5},
        Numeric{"Dollar", "$5", 5}, Numeric{"MinusDollar", "-$5", -5}, Numeric{"DollarMinus", "$-5", -5},
        Numeric{"DollarBlank", "$ 5", 5}, Numeric{"Price", "$1,250,000", 1250000},
        Numeric{"PriceWithCents", "$1,234,567.89", 1234567.89}, Numeric{"CommasAnywhere", "1,2,3", 123},
        Numeric{"Brackets", "(5)", -5}, Numeric{"BracketsDollar", "($1,200.50)", -1200.5},
        Numeric{"BracketsBlanks", " ( 5 ) ", -5}, Numeric{"Exponent", "1e5", 1e5},
        Numeric{"ExponentD", "1D5", 1e5}, Numeric{"ExponentMinus", "25E-1", 2.5},
        Numeric{"ExponentPlus", "2.5E+3", 2500}, Numeric{"ExponentTrailingMinus", "1E2-", -100},
        Numeric{"Hexadecimal", "&HFF", 255}, Numeric{"HexadecimalLowerCase", "&hff", 255},
        Numeric{"Octal", "&O17", 15},
        Numeric{"ManyDigits", "123456789012345678901234567890", 123456789012345678901234567890.0},
        Numeric{"ManyDecimals", "0.1000000000000000055511151231257827", 0.1},
        Numeric{"TwentyDigits", "12345678901234567890", 12345678901234567890.0},
        Numeric{"ZerosBehindPoint", "0.00000000000000000000000001", 1e-26},
        Numeric{"Largest", "1.7976931348623157E308", 1.7976931348623157e308},
        Numeric{"TooSmallIsZero", "1E-400", 0}, Numeric{"ZeroWithLargeExponent", "0E999999999999", 0},
        Numeric{"HardToRound", "9007199254740993", 9007199254740992.0}),
    [](const auto& info) { return info.param.name; });

struct NotNumeric {
    const char* name;
    const char* text;
};
class OtherTexts : public testing::TestWithParam<NotNumeric> {};

TEST_P(OtherTexts, AreNotNumeric) {
    EXPECT_FALSE(IsNumeric(GetParam().text)) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Forms, OtherTexts,
    testing::Values(NotNumeric{"Empty", ""}, NotNumeric{"Blank", "  "}, NotNumeric{"Date", "3/15/2009"},
                    NotNumeric{"DashedDate", "2009-03-15"}, NotNumeric{"TwoSigns", "--5"},
                    NotNumeric{"SignOnBothSides", "-5-"}, NotNumeric{"MinusPlus", "-+5"},
                    NotNumeric{"Letters", "abc"}, NotNumeric{"LettersBehind", "5a"},
                    NotNumeric{"TwoPoints", "1.2.3"}, NotNumeric{"PointOnly", "."},
                    NotNumeric{"MinusOnly", "-"}, NotNumeric{"DollarOnly", "$"},
                    NotNumeric{"TwoDollars", "$$5"}, NotNumeric{"CommaInFront", ",5"},
                    NotNumeric{"CommaBehindPoint", "1.2,3"}, NotNumeric{"BlankAmongDigits", "1 000"},
                    NotNumeric{"OpenBracket", "(5"}, NotNumeric{"ClosedBracket", "5)"},
                    NotNumeric{"SignInBrackets", "(-5)"}, NotNumeric{"SignBeforeBrackets", "-(5)"},
                    NotNumeric{"EmptyBrackets", "()"}, NotNumeric{"OpenExponent", "1e"},
                    NotNumeric{"ExponentSignOnly", "1e+"}, NotNumeric{"ExponentOnly", "e5"},
                    NotNumeric{"TwoExponents", "1e5e5"}, NotNumeric{"HexWithoutDigits", "&H"},
                    NotNumeric{"HexBeyondF", "&HFG"}, NotNumeric{"Octal8", "&O8"},
                    NotNumeric{"HexTooLong", "&H10000000000000000"}, NotNumeric{"TooLarge", "1E309"},
                    NotNumeric{"TooLargeNegative", "-1E309"}, NotNumeric{"TooLargeDigits", "2E308"},
                    NotNumeric{"HugeExponent", "1E99999999999999999999"}, NotNumeric{"Percent", "5%"},
                    NotNumeric{"Infinity", "inf"}, NotNumeric{"Nan", "nan"}, NotNumeric{"CHexForm", "0x10"}),
    [](const auto& info) { return info.param.name; });

TEST(NumericValue, AgreesWithItsOwnTextForRandomNumbers) {
    std::mt19937_64 random(20090315);
    std::uniform_real_distribution<double> exponent(-300, 300);
    std::uniform_real_distribution<double> mantissa(-10, 10);
    for (int i = 0; i < 200000; ++i) {
        const double value = mantissa(random) * std::pow(10.0, std::floor(exponent(random)));
        const std::string text = DoubleText(value);
        const auto again = NumericValue(text);
        ASSERT_TRUE(again.has_value()) << text;
        // 15 digits name one text each: reading it and writing it again changes nothing.
        ASSERT_EQ(DoubleText(*again), text);
        ASSERT_NEAR(*again / value, 1.0, 1e-14) << text;
    }
}

TEST(LeadingNumber, ReadsAsFarAsItGoes) {
    EXPECT_EQ(LeadingNumber("12 Oak St"), 12);
    EXPECT_EQ(LeadingNumber("0.97"), 0.97);
    EXPECT_EQ(LeadingNumber("  -5.5x"), -5.5);
    EXPECT_EQ(LeadingNumber("1,250"), 1);
    EXPECT_EQ(LeadingNumber("$5"), 0);
    EXPECT_EQ(LeadingNumber("1.2.3"), 1.2);
    EXPECT_EQ(LeadingNumber(".5"), 0.5);
    EXPECT_EQ(LeadingNumber("1e3"), 1000);
    EXPECT_EQ(LeadingNumber("1ex"), 1);
    EXPECT_EQ(LeadingNumber("&H1F"), 31);
    EXPECT_EQ(LeadingNumber("1E999"), std::numeric_limits<double>::max());
}

TEST(LeadingNumber, SkipsBlanksAlsoAmongTheDigits) {
    EXPECT_EQ(LeadingNumber("1 615 Main St"), 1615);
}

TEST(LeadingNumber, OfNoNumberIsZero) {
    for (const char* text : {"", " ", "abc", "-", ".", "+", "&", "&H", "-x"}) {
        const double value = LeadingNumber(text);
        EXPECT_EQ(value, 0) << text;
        EXPECT_FALSE(std::signbit(value)) << text;
    }
}

struct Text {
    double value;
    const char* text;
};

TEST(DoubleText, IsPlainDigitsWithAtMostFifteenOfThem) {
    for (const Text& c : {Text{0, "0"},
                          {-0.0, "0"},
                          {5, "5"},
                          {-5, "-5"},
                          {100, "100"},
                          {250000, "250000"},
                          {0.5, "0.5"},
                          {-0.25, "-0.25"},
                          {12.34, "12.34"},
                          {1234567.875, "1234567.875"},
                          {0.1 + 0.2, "0.3"},
                          {1.0 / 3, "0.333333333333333"},
                          {2.0 / 3, "0.666666666666667"},
                          {100.0 / 3, "33.3333333333333"},
                          {123456789012345.0, "123456789012345"},
                          {999999999999999.0, "999999999999999"},
                          {0.000000000000001, "0.000000000000001"},
                          {0.001, "0.001"}}) {
        EXPECT_EQ(DoubleText(c.value), c.text);
    }
}

TEST(DoubleText, TurnsToExponentsFromFifteenPlacesOn) {
    for (const Text& c : {Text{1e15, "1E+15"},
                          {-1e15, "-1E+15"},
                          {1234567890123456.0, "1.23456789012346E+15"},
                          {999999999999999.9, "1E+15"},
                          {1e100, "1E+100"},
                          {1.5e300, "1.5E+300"},
                          {1e-16, "1E-16"},
                          {1.0 / 15, "6.66666666666667E-02"},
                          {1.0 / 3000, "3.33333333333333E-04"},
                          {2.5e-20, "2.5E-20"},
                          {5e-324, "4.94065645841247E-324"}}) {
        EXPECT_EQ(DoubleText(c.value), c.text);
    }
}

TEST(DoubleText, RoundsTrueHalvesAwayFromZero) {
    EXPECT_EQ(DoubleText(1.000030517578125), "1.00003051757813");  // 1 + 2^-15, exact
    EXPECT_EQ(DoubleText(-1.000030517578125), "-1.00003051757813");
    EXPECT_EQ(DoubleText(12345678901234.25), "12345678901234.3");
    EXPECT_EQ(DoubleText(100000000000000.5), "100000000000001");
}

TEST(DoubleText, NamesWhatIsNoNumber) {
    EXPECT_EQ(DoubleText(std::numeric_limits<double>::infinity()), "Infinity");
    EXPECT_EQ(DoubleText(-std::numeric_limits<double>::infinity()), "-Infinity");
    EXPECT_EQ(DoubleText(std::numeric_limits<double>::quiet_NaN()), "NaN");
}

TEST(SingleText, HasAtMostSevenDigits) {
    EXPECT_EQ(SingleText(0.0F), "0");
    EXPECT_EQ(SingleText(250000.0F), "250000");
    EXPECT_EQ(SingleText(0.1F), "0.1");
    EXPECT_EQ(SingleText(1.0F / 3), "0.3333333");
    EXPECT_EQ(SingleText(1.0F / 15), "6.666667E-02");
    EXPECT_EQ(SingleText(9999999.0F), "9999999");
    EXPECT_EQ(SingleText(10000000.0F), "1E+07");
    EXPECT_EQ(SingleText(12345678.0F), "1.234568E+07");
    EXPECT_EQ(SingleText(1234567.875F), "1234568");
    EXPECT_EQ(SingleText(-16777216.0F), "-1.677722E+07");
    EXPECT_EQ(SingleText(1000000.5F), "1000001");  // a true half
}

TEST(IntegerText, IsTheNumber) {
    EXPECT_EQ(IntegerText(0), "0");
    EXPECT_EQ(IntegerText(-42), "-42");
    EXPECT_EQ(IntegerText(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(RoundHalfEven, GoesToTheEvenNeighbour) {
    for (const auto& [value, whole] : {std::pair{0.5, 0.0},
                                       {1.5, 2.0},
                                       {2.5, 2.0},
                                       {-0.5, 0.0},
                                       {-1.5, -2.0},
                                       {-2.5, -2.0},
                                       {2.4999, 2.0},
                                       {2.5001, 3.0},
                                       {-0.6, -1.0},
                                       {7.0, 7.0},
                                       {1e300, 1e300},
                                       {4503599627370495.5, 4503599627370496.0}}) {
        EXPECT_EQ(RoundHalfEven(value), whole) << value;
    }
}

struct Formatted {
    double value;
    const char* pattern;
    const char* text;
};
class Formats : public testing::TestWithParam<Formatted> {};

TEST_P(Formats, FollowThePattern) {
    EXPECT_EQ(FormatNumber(GetParam().value, GetParam().pattern), GetParam().text)
        << GetParam().value << " by " << GetParam().pattern;
}

INSTANTIATE_TEST_SUITE_P(
    Patterns, Formats,
    testing::Values(Formatted{0, "0", "0"}, Formatted{123456.5, "0", "123457"}, Formatted{0.5, "0", "1"},
                    Formatted{1.5, "0", "2"}, Formatted{2.5, "0", "3"}, Formatted{-2.5, "0", "-3"},
                    Formatted{0.4, "0", "0"}, Formatted{-0.4, "0", "0"}, Formatted{99.5, "0", "100"},
                    Formatted{0.04, "0", "0"}, Formatted{5, "000", "005"}, Formatted{1, "0.00", "1.00"},
                    Formatted{0, "0.00", "0.00"}, Formatted{1.005, "0.00", "1.01"},
                    Formatted{2.675, "0.00", "2.68"}, Formatted{-1.005, "0.00", "-1.01"},
                    Formatted{0.005, "0.00", "0.01"}, Formatted{0.004, "0.00", "0.00"},
                    Formatted{-0.004, "0.00", "0.00"}, Formatted{5.0 / 6, "0.00", "0.83"},
                    Formatted{7.0 / 6, "0.00", "1.17"}, Formatted{10.45, "0.0", "10.5"},
                    Formatted{10.35, "0.0", "10.4"}, Formatted{0.97, "##,###,###.#0", ".97"},
                    Formatted{1, "##,###,###.#0", "1.00"}, Formatted{1.1, "##,###,###.#0", "1.10"},
                    Formatted{0, "##,###,###.#0", ".00"}, Formatted{1234.5, "##,###,###.#0", "1,234.50"},
                    Formatted{-0.5, "##,###,###.#0", "-.50"}, Formatted{0.995, "##,###,###.#0", "1.00"},
                    Formatted{0, "#########.#", "."}, Formatted{5, "#########.#", "5."},
                    Formatted{10.45, "#########.#", "10.5"}, Formatted{0.5, "#########.#", ".5"},
                    Formatted{12345678901.25, "#########.#", "12345678901.3"},
                    Formatted{0.04, "#########.#", "."}, Formatted{0, "#,##0", "0"},
                    Formatted{999, "#,##0", "999"}, Formatted{1000, "#,##0", "1,000"},
                    Formatted{123456.7, "#,##0", "123,457"}, Formatted{999999.5, "#,##0", "1,000,000"},
                    Formatted{-1234567, "#,##0", "-1,234,567"},
                    Formatted{1234567, "###,###,###", "1,234,567"}, Formatted{0, "###,###,###", ""},
                    Formatted{12345678901234.0, "###,###,###", "12,345,678,901,234"},
                    Formatted{1e20, "0", "100000000000000000000"},
                    Formatted{1234567890123456789.0, "0", "1234567890123460000"},
                    Formatted{1e-300, "0.00", "0.00"}, Formatted{250000, "0.###", "250000."}));

TEST(FormatNumber, NamesWhatIsNoNumber) {
    EXPECT_EQ(FormatNumber(std::numeric_limits<double>::quiet_NaN(), "0"), "NaN");
    EXPECT_EQ(FormatNumber(-std::numeric_limits<double>::infinity(), "0.00"), "-Infinity");
}

TEST(FormatNumber, RoundsEveryHalfCentUp) {
    // n + 0.005 has no exact double; the decimal value decides all the same.
    for (int cents = 0; cents < 200000; ++cents) {
        const double value = (cents * 10 + 5) / 1000.0;
        const std::string expected = IntegerText((cents + 1) / 100) + "." +
                                     ((cents + 1) % 100 < 10 ? "0" : "") + IntegerText((cents + 1) % 100);
        ASSERT_EQ(FormatNumber(value, "0.00"), expected) << cents;
    }
}

}  // namespace
}  // namespace zenvora::text
