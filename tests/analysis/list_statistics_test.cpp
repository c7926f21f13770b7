#include "analysis/list_statistics.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/scripted_desktop.h"

namespace zenvora::analysis {
namespace {

using Texts = std::vector<std::string>;

void Fill(SortedList& list, const Texts& texts) {
    for (const std::string& text : texts)
        AddToSortedList(list, text);
}

struct MedianCase {
    const char* name;
    Texts entries;
    const char* median;
};

class Median : public testing::TestWithParam<MedianCase> {};

TEST_P(Median, IsTheMiddleAsText) {
    SortedList list{"lstData", 0};
    Fill(list, GetParam().entries);
    EXPECT_EQ(GetListMedian(list), GetParam().median);
}

INSTANTIATE_TEST_SUITE_P(
    Lists, Median,
    testing::Values(MedianCase{"Empty", {}, "0"}, MedianCase{"Single", {"5"}, "5"},
                    MedianCase{"SingleAsItStands", {"$5"}, "$5"},
                    MedianCase{"Odd", {"100", "200", "300", "400", "500"}, "300"},
                    MedianCase{"OddAsItStands", {"1", "2.50", "3"}, "2.50"},
                    MedianCase{"Even", {"100", "200", "300", "401"}, "250"},
                    MedianCase{"HalfIsDropped", {"3", "4"}, "3"},
                    MedianCase{"HalfIsDroppedOfPrices", {"200000", "200001"}, "200000"},
                    MedianCase{"HalfIsDroppedTowardZero", {"-4", "-3"}, "-3"},
                    // 1.5 + 2 = 3.5 rounds to the even 4, and 0.5 + 2 = 2.5 to the even 2.
                    MedianCase{"SumRoundsToEvenUp", {"1.5", "2"}, "2"},
                    MedianCase{"SumRoundsToEvenDown", {"0.5", "2"}, "1"},
                    // 18,000,001 lies midway between the single-precision numbers 18,000,000 and 18,000,002.
                    MedianCase{"SumAbove16777216", {"9000000", "9000001"}, "9000000"},
                    // 20,000,001 becomes 20,000,000 on its way; the sum 40,000,001 becomes 40,000,000.
                    // The upper entry becomes 20,000,004; the sum 40,000,003 becomes 40,000,004. Without the
                    // first of these
                    // steps 40,000,002 would lie midway and become 40,000,000.
                    MedianCase{"UpperEntryAbove16777216", {"19999999", "20000003"}, "20000002"},
                    MedianCase{"EntriesAbove16777216", {"20000001", "20000001"}, "20000000"},
                    MedianCase{"LargestExactSum", {"8388607", "8388609"}, "8388608"},
                    MedianCase{"TextsGiveTheLower", {"abc", "abd"}, "abc"},
                    MedianCase{"NumberBesideText", {"100", "abc"}, "100"},
                    MedianCase{"GroupedNumbers", {"1,000", "2,001"}, "1500"}),
    [](const auto& info) { return info.param.name; });

struct AverageCase {
    const char* name;
    Texts entries;
    double average;
};

class Average : public testing::TestWithParam<AverageCase> {};

TEST_P(Average, IsRoundedInTwoSteps) {
    testing_support::ScriptedDesktop desktop;
    SortedList list{"lstData", 0};
    Fill(list, GetParam().entries);
    EXPECT_EQ(GetListAverage(list, desktop), GetParam().average);
    EXPECT_TRUE(desktop.messages.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Lists, Average,
    testing::Values(AverageCase{"Empty", {}, 0}, AverageCase{"Single", {"5"}, 5},
                    AverageCase{"OneAndTwo", {"1", "2"}, 2}, AverageCase{"Zeroes", {"0", "0"}, 0},
                    AverageCase{"JustBelowTheFirstTie", {"10.449"}, 10},
                    AverageCase{"OnTheFirstTie", {"10.45"}, 11},
                    AverageCase{"BelowOne", {"0", "0", "1"}, 0},  // .3
                    AverageCase{"HalfOfOne", {"0", "1"}, 1},      // .5
                    AverageCase{"Whole", {"100", "200", "300"}, 200},
                    // 20,000,001 is no single-precision number; the even neighbour is 20,000,000.
                    AverageCase{"Above16777216", {"20000001"}, 20000000},
                    AverageCase{"LargestExact", {"16777216"}, 16777216}),
    [](const auto& info) { return info.param.name; });

TEST(GetListTotal, AddsUp) {
    testing_support::ScriptedDesktop desktop;
    SortedList list{"lstData", 0};
    EXPECT_EQ(GetListTotal(list, desktop), 0);
    Fill(list, {"100", "20", "-5", "0.5"});
    EXPECT_EQ(GetListTotal(list, desktop), 115.5);
    // The total is not held to single precision, unlike the average.
    Fill(list, {"20000001"});
    EXPECT_EQ(GetListTotal(list, desktop), 20000116.5);
    EXPECT_TRUE(desktop.messages.empty());
}

TEST(GetListTotal, TellsOfEachEntryThatIsNoNumberAndGoesOn) {
    testing_support::ScriptedDesktop desktop;
    SortedList list{"lstData", 0};
    Fill(list, {"1", "abc", "2", ""});
    desktop.Expect("List contains non numeric data.");
    desktop.Expect("List contains non numeric data.");
    EXPECT_EQ(GetListTotal(list, desktop), 3);
    ASSERT_EQ(desktop.messages.size(), 2U);
    for (const controls::MessageBox& message : desktop.messages) {
        EXPECT_EQ(message.title, "INVALID VALUE");
        EXPECT_EQ(message.icon, controls::Icon::Critical);
        EXPECT_EQ(message.buttons, controls::Buttons::Ok);
    }
}

TEST(GetListAverage, DividesByAllEntries) {
    testing_support::ScriptedDesktop desktop;
    SortedList list{"lstData", 0};
    Fill(list, {"10", "abc"});
    desktop.Expect("List contains non numeric data.");
    EXPECT_EQ(GetListAverage(list, desktop), 5);
}

struct CommaCase {
    const char* name;
    const char* text;
    const char* formatted;
};

class Commas : public testing::TestWithParam<CommaCase> {};

TEST_P(Commas, StandBetweenThreeDigits) {
    EXPECT_EQ(FormatWithCommas(GetParam().text), GetParam().formatted);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Commas,
    testing::Values(CommaCase{"Millions", "1234567", "1,234,567"}, CommaCase{"ThreeDigits", "999", "999"},
                    CommaCase{"FourDigits", "1000", "1,000"}, CommaCase{"SixDigits", "250000", "250,000"},
                    CommaCase{"Fraction", "1000.50", "1,000.50"},
                    CommaCase{"LonePointIsDropped", "1000.", "1,000"},
                    CommaCase{"ShortFraction", "12.5", "12.5"}, CommaCase{"NotNumeric", "abc", "ABC"},
                    CommaCase{"NotNumericTrimmed", " n/a ", "N/A"}, CommaCase{"Empty", "", ""},
                    CommaCase{"Zero", "0", ""}, CommaCase{"ZeroWithFraction", "0.97", ".97"},
                    CommaCase{"FractionAlone", ".97", ".97"}, CommaCase{"Negative", "-5000", ""},
                    CommaCase{"Dollars", "$1234567", "$1,234,567"}, CommaCase{"NoDollars", "$0", "$"},
                    CommaCase{"GroupedAlready", "1,234,567", "1,234,567"},
                    CommaCase{"Blanks", " 1000 ", "1,000"}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace zenvora::analysis
