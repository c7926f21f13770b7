#include "common/number_helpers.h"

#include <gtest/gtest.h>

namespace zenvora::common {
namespace {

struct Whole {
    const char* name;
    const char* text;
    int sixteen;
    int thirtyTwo;
};
class WholeNumbers : public testing::TestWithParam<Whole> {};

TEST_P(WholeNumbers, AreReadOrZero) {
    std::string text = GetParam().text;
    EXPECT_EQ(CInteger(text), GetParam().sixteen);
    text = GetParam().text;
    EXPECT_EQ(CLong(text), GetParam().thirtyTwo);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, WholeNumbers,
    testing::Values(Whole{"Plain", " 42 ", 42, 42}, Whole{"Negative", "-42", -42, -42},
                    Whole{"Grouped", "1,234", 1234, 1234}, Whole{"Dollar", "$5", 5, 5},
                    Whole{"Empty", "", 0, 0}, Whole{"Letters", "abc", 0, 0},
                    Whole{"NumberAndLetters", "5 acres", 0, 0}, Whole{"HalfToEvenDown", "2.5", 2, 2},
                    Whole{"HalfToEvenUp", "3.5", 4, 4}, Whole{"Largest16", "32767", 32767, 32767},
                    Whole{"Beyond16", "32768", 0, 32768}, Whole{"HalfBeyond16", "32767.5", 0, 32768},
                    Whole{"Smallest16", "-32768", -32768, -32768}, Whole{"Below16", "-32769", 0, -32769},
                    Whole{"Largest32", "2147483647", 0, 2147483647}, Whole{"Beyond32", "2147483648", 0, 0},
                    Whole{"FarBeyond", "1E300", 0, 0}, Whole{"TooLargeToBeNumeric", "1E400", 0, 0}),
    [](const auto& info) { return info.param.name; });

TEST(CInteger, UpperCasesAndTrimsItsTextInPlace) {
    std::string text = " 1e2 ";
    EXPECT_EQ(CInteger(text), 100);
    EXPECT_EQ(text, "1E2");
    text = " abc ";
    EXPECT_EQ(CLong(text), 0);
    EXPECT_EQ(text, "ABC");
}

struct Price {
    const char* name;
    const char* text;
    const char* digits;
};
class Prices : public testing::TestWithParam<Price> {};

TEST_P(Prices, AreReducedToTheirDigits) {
    std::string text = GetParam().text;
    EXPECT_EQ(PriceDigits(text), GetParam().digits);
}

INSTANTIATE_TEST_SUITE_P(Texts, Prices,
                         testing::Values(Price{"Plain", "250000", "250000"},
                                         Price{"Grouped", "$1,250,000", "1250000"},
                                         Price{"DecimalsAreCut", "999.50", "999"}, Price{"Small", "0.5", "0"},
                                         Price{"Blanks", " 5 ", "5"}, Price{"Zero", "0", ""},
                                         Price{"Negative", "-5", ""}, Price{"TrailingMinus", "5-", ""},
                                         Price{"Letters", "abc", "0"}, Price{"Empty", "", "0"}),
                         [](const auto& info) { return info.param.name; });

TEST(PriceDigits, TrimsItsTextInPlace) {
    std::string text = " $5.75 ";
    EXPECT_EQ(PriceDigits(text), "5");
    EXPECT_EQ(text, "$5.75");
}

}  // namespace
}  // namespace zenvora::common
