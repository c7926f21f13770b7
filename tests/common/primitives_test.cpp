#include "common/primitives.h"

#include <gtest/gtest.h>

namespace zenvora::common {
namespace {

TEST(UpTrim, GivesUpperCaseWithoutOuterBlanks) {
    EXPECT_EQ(UpTrim("  12 Oak St "), "12 OAK ST");
    EXPECT_EQ(UpTrim("   "), "");
    EXPECT_EQ(UpTrim("ca\xC3\xB1on"), "CA\xC3\x91ON");
}

TEST(CkRSlash, AddsOneBackslashInPlace) {
    std::string text = "  C:\\ZVR ";
    EXPECT_EQ(CkRSlash(text), "C:\\ZVR\\");
    EXPECT_EQ(text, "C:\\ZVR\\");
    EXPECT_EQ(CkRSlash(text), "C:\\ZVR\\");
    const std::string kept = "C:\\ZVR";
    EXPECT_EQ(CkRSlash(kept), "C:\\ZVR\\");
    EXPECT_EQ(kept, "C:\\ZVR");
}

TEST(CkRSlash, OfABlankTextIsEmpty) {
    std::string text = "   ";
    EXPECT_EQ(CkRSlash(text), "");
    EXPECT_EQ(text, "");
}

struct Replacement {
    const char* name;
    const char* text;
    const char* from;
    const char* to;
    const char* result;
};
class ReplaceCharCases : public testing::TestWithParam<Replacement> {};

TEST_P(ReplaceCharCases, GoLeftToRight) {
    const Replacement& c = GetParam();
    EXPECT_EQ(ReplaceChar(c.text, c.from, c.to), c.result);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ReplaceCharCases,
    testing::Values(Replacement{"EveryOccurrence", "a-b-c", "-", "+", "a+b+c"},
                    Replacement{"ReplacementIsNotScannedAgain", "O'Brien's", "'", "''", "O''Brien''s"},
                    Replacement{"LongerText", "aXXbXX", "XX", "Y", "aYbY"},
                    Replacement{"ToNothing", "a-b-", "-", "", "ab"},
                    Replacement{"BlanksBehindTheLastHitAreDropped", "a-b-   ", "-", "+", "a+b+"},
                    Replacement{"BlanksBehindOtherTextStay", "a-b   ", "-", "+", "a+b   "},
                    Replacement{"BlanksBeforeStay", "  -", "-", "+", "  +"},
                    Replacement{"WithoutAHitNothingChanges", "ab   ", "-", "+", "ab   "},
                    Replacement{"EmptyFromChangesNothing", "ab ", "", "+", "ab "},
                    Replacement{"EmptyText", "", "-", "+", ""}),
    [](const auto& info) { return info.param.name; });

struct Conversion {
    const char* name;
    const char* text;
    double value;
};
class CDoubleCases : public testing::TestWithParam<Conversion> {};

TEST_P(CDoubleCases, GiveTheirNumber) {
    EXPECT_EQ(CDouble(GetParam().text), GetParam().value) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CDoubleCases,
    testing::Values(Conversion{"Price", "$123,456", 123456},
                    Conversion{"SinglePrecision", "1,234,567.89", 1234567.875},
                    Conversion{"LargestExact", "16,777,216", 16777216},
                    Conversion{"FirstInexact", "16,777,217", 16777216}, Conversion{"Empty", "", 0},
                    Conversion{"Blank", "  ", 0}, Conversion{"Minus", "-", 0}, Conversion{"Point", ".", 0},
                    Conversion{"MinusPoint", "-.", 0}, Conversion{"Letters", "abc", 0},
                    Conversion{"MinusInside", "12-34", 0}, Conversion{"TwoPoints", "1.2.3", 0},
                    Conversion{"TwoMinus", "--5", 0}, Conversion{"Negative", "-5", -5},
                    Conversion{"MinusBehindLetters", "USD -5.50", -5.5},
                    Conversion{"TrailingMinus", "5-", -5}, Conversion{"BracketsDropOut", "(500)", 500},
                    Conversion{"ExponentDropsOut", "1e5", 15}, Conversion{"BlanksDropOut", "1 000", 1000},
                    Conversion{"BeyondSingle", "9999999999999999999999999999999999999999", 0}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace zenvora::common
